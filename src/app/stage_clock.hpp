// Wall time of each stage on the error stream, in builds that are asked for it (VBN_STAGE_TIMES).
#pragma once

#ifdef VBN_STAGE_TIMES
#include <chrono>
#include <cstdio>
#endif

namespace vbn {

// Call with the number and the name of the stage that ends. Costs nothing in a build without the option.
class stage_clock {
 public:
#ifdef VBN_STAGE_TIMES
  void ends(int stage, const char* name) {
    const auto now = std::chrono::steady_clock::now();
    std::fprintf(stderr, "stage %2d %-28s %10.4f s\n", stage, name,
                 std::chrono::duration<double>(now - last_).count());
    last_ = now;
  }

 private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
#else
  void ends(int, const char*) {}
#endif
};

}  // namespace vbn
