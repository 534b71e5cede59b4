// Answers --help and --version.
#include "app/command_line.hpp"  // for answer_to

#include <filesystem>
#include <system_error>

namespace vbn {

std::string_view version() { return VBN_VERSION; }

std::optional<std::string> answer_to(std::string_view argument, std::string_view name,
                                     std::string_view help) {
  std::error_code none;
  if (std::filesystem::exists(argument, none)) return std::nullopt;
  if (argument == "--version") return std::string(name) + " " VBN_VERSION "\n";
  if (argument == "--help" || argument == "-h") return std::string(help);
  return std::nullopt;
}

}  // namespace vbn
