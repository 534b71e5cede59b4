// How a run ends early: every stop is a `run_end`, which only `main` catches.
#pragma once

#include <string>
#include <string_view>

namespace vbn {

// What is wrong with an input. Empty fields and a line of 0 are left out of the message.
struct fault {
  std::string what = {};      // what is wrong: lower case, no full stop
  std::string file = {};      // the file with the fault
  int line = 0;               // its line, from 1
  std::string text = {};      // the text of that line
  int column = 0;             // the position in the line, from 1; 0 for none
  std::string expected = {};  // what was expected, or what the user can do
};

// How a run ended: its exit status, the lines for the error stream and those for standard output (each whole,
// or empty), and of an error the fault.
struct run_end {
  int status = 0;
  std::string text = {};
  std::string printed = {};
  fault cause = {};
};

// Ends the run with "STOP", a blank and the text on the error stream, exit status 0.
[[noreturn]] void stop(std::string_view text);
// The same with lines on standard output too.
[[noreturn]] void stop(std::string_view text, std::string printed);

// Ends the run with lines on standard output that give the reason, and an exit status.
[[noreturn]] void stop_printed(std::string printed, int status = 0);

// The message of a fault: "error: what", the file and line number, the line with the position marked, and
// what was expected.
std::string fault_message(const fault& f);

// Ends the run with the message of the fault on the error stream, exit status 1.
[[noreturn]] void fail(const fault& f);
// The same for a fault of a whole file, without a line.
[[noreturn]] void fail_in(std::string_view file, std::string_view what, std::string_view expected);

// The line of a warning for the error stream, "warning: " and the text.
std::string warning_line(std::string_view text);

}  // namespace vbn
