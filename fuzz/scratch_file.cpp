// A folder in memory for the files of a fuzz target.
#include "fuzz/scratch_file.hpp"  // for write_scratch

#include <sanitizer/common_interface_defs.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>

namespace vbn::fuzzing {

namespace {

bool enter() {
  std::string name = "/dev/shm/vbn_fuzz_XXXXXX";
  if (mkdtemp(name.data()) == nullptr || chdir(name.c_str()) != 0) abort();
  __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<long>(dup(2))));
  return true;
}

}  // namespace

void enter_scratch_folder() {
  static const bool entered = enter();
  (void)entered;
}

void write_scratch(const std::string& name, std::string_view content) {
  std::FILE* file = std::fopen(name.c_str(), "wb");
  if (file == nullptr) abort();
  std::fwrite(content.data(), 1, content.size(), file);
  std::fclose(file);
}

}  // namespace vbn::fuzzing
