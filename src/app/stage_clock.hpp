// Wall time of each step on the error stream, in builds with VBN_STAGE_TIMES.
#pragma once

#ifdef VBN_STAGE_TIMES
#include <chrono>
#include <cstdio>
#endif

namespace vbn {

// Call with the name of the step that ends. Costs nothing in a build without the option.
class stage_clock {
 public:
#ifdef VBN_STAGE_TIMES
  void ends(const char* name) {
    const auto now = std::chrono::steady_clock::now();
    std::fprintf(stderr, "%-28s %10.4f s\n", name, std::chrono::duration<double>(now - last_).count());
    last_ = now;
  }

 private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
#else
  void ends(const char*) {}
#endif
};

}  // namespace vbn
