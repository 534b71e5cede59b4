// The options that every program understands.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vbn {

// The version of the programs.
std::string_view version();

// What --help and --version print for the program `name`, whose --help text is `help`; none for any other
// argument. An argument that names a file is that file.
std::optional<std::string> answer_to(std::string_view argument, std::string_view name, std::string_view help);

}  // namespace vbn
