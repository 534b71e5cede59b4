// A folder in memory for the files of a fuzz target.
#pragma once

#include <string>
#include <string_view>

namespace vbn::fuzzing {

// Makes a new folder below /dev/shm the working directory, once.
void enter_scratch_folder();

// Writes a file into the working directory.
void write_scratch(const std::string& name, std::string_view content);

}  // namespace vbn::fuzzing
