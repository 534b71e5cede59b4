// Words and numbers of warnings.
#include "checks/wording.hpp"  // for with_digits, of_state

#include "text/number.hpp"  // for write_fixed
#include "text/words.hpp"   // for adjustl

namespace vbn {

std::string with_digits(double number, int digits) {
  std::string shown(24, ' ');
  write_fixed(shown.data(), number, 24, digits);
  return std::string(adjustl(shown));
}

std::string of_state(const states& state, int k) {
  return "state " + std::to_string(k) + " (" + state.file.ffreq.str() + ")";
}

}  // namespace vbn
