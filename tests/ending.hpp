// How a call of a routine of the program ended and what it printed.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "text/stop.hpp"  // for run_end

namespace vbn {

// Status and error text of the end of the run; status -1 when the call returned.
struct ending {
  int status = -1;
  std::string error;
  std::string printed;  // on standard output
  std::string warned;   // on the error stream
};

template <class Call>
ending ending_of(Call call) {
  ending e;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  try {
    call();
  } catch (const run_end& end) {
    e.status = end.status;
    e.error = end.text;
  }
  e.printed = testing::internal::GetCapturedStdout();
  e.warned = testing::internal::GetCapturedStderr();
  return e;
}

}  // namespace vbn
