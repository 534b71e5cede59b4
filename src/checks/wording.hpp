// The words that warnings have in common.
#pragma once

#include <string>

#include "molecule/record.hpp"  // for states

namespace vbn {

// The number with as many digits after its point, without blanks.
std::string with_digits(double number, int digits);

// "state 1 (s0.log)".
std::string of_state(const states& state, int k);

}  // namespace vbn
