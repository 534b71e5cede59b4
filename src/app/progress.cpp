// Judges from its first stage how long a run will take, and writes over one line.
#include "app/progress.hpp"  // for progress

#include <unistd.h>

#include <cstdio>
#include <string>

namespace vbn {

namespace {

constexpr double long_run = 2.0;  // seconds
// A run with internal coordinates takes up to this many times as long as reading its files and the raw
// frequencies, which grow with the number of atoms in the same way.
constexpr double whole_to_first_stage = 25.0;

void write(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); }

}  // namespace

progress::progress() : on_terminal_(::isatty(STDERR_FILENO) == 1) {}

void progress::stage(std::string_view name) {
  if (!on_terminal_) return;
  const double so_far = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  if (so_far > long_run || (!judged_ && so_far * whole_to_first_stage > long_run)) long_run_ = true;
  judged_ = true;
  if (!long_run_) return;
  clear();
  std::string line("vbn: ");
  line.append(name).append(" ...");
  write(line);
  shown_ = line.size();
}

void progress::clear() {
  if (shown_ == 0) return;
  write("\r");
  write(std::string(shown_, ' '));
  write("\r");
  shown_ = 0;
}

}  // namespace vbn
