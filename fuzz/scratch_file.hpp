// A folder in memory for the files of a fuzz target, and its streams switched off.
#pragma once

#include <string>
#include <string_view>

namespace vbn::fuzzing {

// Makes a new folder below /dev/shm the working directory, once, and discards standard output and, except for
// the reports of the sanitizers, the error stream.
void enter_scratch_folder();

// Writes a file into the working directory.
void write_scratch(const std::string& name, std::string_view content);

}  // namespace vbn::fuzzing
