// The one way out of a run: every stop is a `run_end`, which `main` alone catches.
#pragma once

#include <string>
#include <string_view>

namespace vbn {

// How the run ends: the exit status, and the lines for the error stream (empty for none).
struct run_end {
  int status = 0;
  std::string text;
};

// Ends the run with "STOP", a blank and the text on the error stream, exit status 0.
[[noreturn]] void stop(std::string_view text);

// Ends the run in silence, exit status 0. What is to be told stands on standard output by then.
[[noreturn]] void stop();

// Ends the run in silence with the status given.
[[noreturn]] void exit_run(int status);

// What is wrong with an input, in the program's own words. Empty fields and a zero line are left out of the
// message.
struct fault {
  std::string what = {};      // what is wrong: lower case, no full stop
  std::string file = {};      // the file it stands in
  int line = 0;               // its line, from 1
  std::string text = {};      // that line as it stands
  int column = 0;             // the spot in the line, from 1; 0 marks none
  std::string expected = {};  // what was expected, or what the user can do
};

// The message of a fault: "error: what", the place, the line with its spot marked, and what was expected.
std::string fault_message(const fault& f);

// Ends the run with the message of the fault on the error stream, exit status 1.
[[noreturn]] void fail(const fault& f);
// The same for a fault of a file as a whole, at none of its lines.
[[noreturn]] void fail_in(std::string_view file, std::string_view what, std::string_view expected);

// One line "warning: ..." on the error stream. The run goes on; no file and no status changes.
void warn(std::string_view text);

}  // namespace vbn
