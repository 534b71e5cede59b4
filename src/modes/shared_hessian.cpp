// One Hessian for both states, so that only the displacement acts.
#include "modes/shared_hessian.hpp"  // for use_same_hessian

namespace vbn {

namespace {

void copy_hessian(const states& from, states& to) {
  to.force = from.force;
  to.modes.cm = from.modes.cm;
}

}  // namespace

void use_same_hessian(array1<states>& state, int same_hessian) {
  if (same_hessian == 1) {
    copy_hessian(state(1), state(2));
  } else if (same_hessian == 2) {
    copy_hessian(state(2), state(1));
  }
}

}  // namespace vbn
