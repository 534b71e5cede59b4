// How a call of a routine of the program ended and what it printed.
#pragma once

#include <concepts>
#include <string>
#include <string_view>

#include "text/messages.hpp"  // for messages
#include "text/stop.hpp"      // for run_end, warning_line

namespace vbn {

// Status and error text of the end of the run; status -1 when the call returned.
struct ending {
  int status = -1;
  std::string error;
  std::string printed;  // on standard output
  std::string warned;   // on the error stream
};

// The call may take the messages.
template <class Call>
ending ending_of(Call call) {
  ending e;
  const messages say([&](std::string_view text) { e.warned += warning_line(text); },
                     [&](std::string_view lines) { e.printed += lines; });
  try {
    if constexpr (std::invocable<Call, const messages&>) {
      call(say);
    } else {
      call();
    }
  } catch (const run_end& end) {
    e.status = end.status;
    e.error = end.text;
    e.printed += end.printed;
  }
  return e;
}

}  // namespace vbn
