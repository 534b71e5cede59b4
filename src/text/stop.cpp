// How a run ends early, and the form of its messages.
#include "text/stop.hpp"  // for run_end

#include <algorithm>
#include <utility>

namespace vbn {

namespace {

constexpr std::size_t shown_width = 160;  // characters of a faulty line that are shown

// The line as a terminal can show it: tabs become blanks, other control characters and non-ASCII bytes dots.
std::string printable(std::string_view line) {
  std::string shown(line);
  for (char& c : shown) {
    if (c == '\t' || c == '\r') {
      c = ' ';
    } else if (static_cast<unsigned char>(c) < 32 || static_cast<unsigned char>(c) > 126) {
      c = '.';
    }
  }
  return shown;
}

}  // namespace

void stop(std::string_view text) { stop(text, ""); }

void stop(std::string_view text, std::string printed) {
  throw run_end{0, "STOP " + std::string(text) + "\n", std::move(printed)};
}

void stop_printed(std::string printed, int status) { throw run_end{status, "", std::move(printed)}; }

std::string fault_message(const fault& f) {
  std::string message = "error: " + f.what + "\n";
  if (!f.file.empty()) {
    message += "  in " + f.file;
    if (f.line > 0) message += ", line " + std::to_string(f.line);
    message += "\n";
  }
  if (f.line > 0 && !f.text.empty()) {
    // Of a long line the part around the fault is shown.
    const std::size_t spot = f.column > 0 ? static_cast<std::size_t>(f.column - 1) : 0;
    const std::size_t from = spot < shown_width ? 0 : std::min(spot, f.text.size()) - shown_width / 2;
    message += "  | " + printable(std::string_view(f.text).substr(from, shown_width)) + "\n";
    if (f.column > 0) message += "  | " + std::string(spot - from, ' ') + "^\n";
  }
  if (!f.expected.empty()) message += "  expected: " + f.expected + "\n";
  return message;
}

void fail(const fault& f) { throw run_end{1, fault_message(f), "", f}; }

void fail_in(std::string_view file, std::string_view what, std::string_view expected) {
  fail({.what = std::string(what), .file = std::string(file), .expected = std::string(expected)});
}

std::string warning_line(std::string_view text) { return "warning: " + std::string(text) + "\n"; }

}  // namespace vbn
