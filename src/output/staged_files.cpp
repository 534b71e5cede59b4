// Renames complete files and removes the others.
#include "output/staged_files.hpp"  // for staged_files

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "text/stop.hpp"  // for fail_in

namespace vbn {

namespace {

constexpr const char* cannot_replace = "cannot replace this file";
constexpr const char* another_folder = "a working directory in which files can be replaced";

std::string beside(const std::string& name) { return name + ".new"; }

}  // namespace

staged_files::~staged_files() {
  if (done_) return;
  std::error_code none;
  for (const staged& it : files_) std::filesystem::remove(beside(it.name), none);
}

output_file& staged_files::open(const std::string& name) {
  std::error_code none;
  if (std::filesystem::is_directory(name, none)) fail_in(name, cannot_replace, another_folder);
  files_.push_back({name, output_file(beside(name))});
  return files_.back().file;
}

void staged_files::commit() {
  for (staged& it : files_) it.file.close();
  for (const staged& it : files_) {
    std::error_code failed;
    std::filesystem::rename(beside(it.name), it.name, failed);
    if (failed) fail_in(it.name, cannot_replace, another_folder);
  }
  done_ = true;
}

std::vector<std::string> staged_files::names() const {
  std::vector<std::string> all;
  for (const staged& it : files_) all.push_back(it.name);
  return all;
}

}  // namespace vbn
