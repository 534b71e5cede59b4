// A folder in memory that a fuzz target may write into, and the silence it works in.
#pragma once

#include <string>
#include <string_view>

namespace vbn::fuzzing {

// Makes a folder of the process's own below /dev/shm the working directory, once, and sends standard output
// and, save for the sanitizers' reports, the error stream nowhere.
void enter_scratch_folder();

// Writes a file into the working directory.
void write_scratch(const std::string& name, std::string_view content);

}  // namespace vbn::fuzzing
