// How a run ends early: every stop is a `run_end`, which only `main` catches.
#pragma once

#include <string>
#include <string_view>

namespace vbn {

// The exit status of a run, and the lines for the error stream (empty for none).
struct run_end {
  int status = 0;
  std::string text;
};

// Ends the run with "STOP", a blank and the text on the error stream, exit status 0.
[[noreturn]] void stop(std::string_view text);

// Ends the run without a message, exit status 0; the caller has printed the reason to standard output.
[[noreturn]] void stop();

// Ends the run without a message, with the given status.
[[noreturn]] void exit_run(int status);

// What is wrong with an input. Empty fields and a line of 0 are left out of the message.
struct fault {
  std::string what = {};      // what is wrong: lower case, no full stop
  std::string file = {};      // the file with the fault
  int line = 0;               // its line, from 1
  std::string text = {};      // the text of that line
  int column = 0;             // the position in the line, from 1; 0 for none
  std::string expected = {};  // what was expected, or what the user can do
};

// The message of a fault: "error: what", the file and line number, the line with the position marked, and
// what was expected.
std::string fault_message(const fault& f);

// Ends the run with the message of the fault on the error stream, exit status 1.
[[noreturn]] void fail(const fault& f);
// The same for a fault of a whole file, without a line.
[[noreturn]] void fail_in(std::string_view file, std::string_view what, std::string_view expected);

// One line "warning: ..." on the error stream. The run goes on; no file and no status changes.
void warn(std::string_view text);

}  // namespace vbn
