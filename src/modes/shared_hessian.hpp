// One Hessian for both states, so that only the displacement acts.
#pragma once

#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states

namespace vbn {

// Copies force constants and modes from state 1 to state 2 (same_hessian 1) or from state 2 to state 1 (2);
// any other value copies nothing. Each state keeps its own frequencies, geometry and masses.
void use_same_hessian(array1<states>& state, int same_hessian);

}  // namespace vbn
