// Reads back a file that the program has written in a test.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace vbn {

// The folder of this process for scratch files, which goes with it; a forked child leaves it to its parent.
struct scratch_folder {
  pid_t owner = getpid();
  std::string path = testing::TempDir() + "vbn_" + std::to_string(owner) + "/";

  scratch_folder() { std::filesystem::create_directories(path); }
  ~scratch_folder() {
    std::error_code none;
    if (getpid() == owner) std::filesystem::remove_all(path, none);
  }
};

// Name of a scratch file of the running test, short enough for the names of the program.
inline std::string scratch(const std::string& name) {
  static const scratch_folder folder;
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  const std::size_t own = std::hash<std::string>{}(std::string(test->test_suite_name()) + "." + test->name());
  return folder.path + std::to_string(own) + "_" + name;
}

inline std::string content_of(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

inline std::vector<std::string> lines_of(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

inline void write_text(const std::string& name, const std::string& content) {
  std::ofstream(name, std::ios::binary) << content;
}

}  // namespace vbn
