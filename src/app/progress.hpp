// One line at a terminal that shows the stage of a long run.
#pragma once

#include <chrono>
#include <string_view>

namespace vbn {

// Shows the stage on the error stream when that is a terminal and the run will take longer than two seconds;
// otherwise it prints nothing. Other lines may be printed after `clear`.
class progress {
 public:
  progress();

  // Begins the stage of this name. The first call comes when the files have been read.
  void stage(std::string_view name);
  void clear();
  bool on_terminal() const { return on_terminal_; }

 private:
  bool on_terminal_;
  bool long_run_ = false;
  bool judged_ = false;
  std::size_t shown_ = 0;  // characters on the line
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace vbn
