// Conventions for the arbitrary signs of the modes.
#pragma once

#include "input/keys.hpp"       // for input_keys
#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states

namespace vbn {

// With `positive_diag` on: every mode of both states gets a positive largest component, then modes of state 2
// are negated so that no diagonal element of the paired Duschinsky matrix is negative. `get_vbn` runs again
// before and after. Off, nothing is done.
void set_positive_diag(array1<states>& state, bool positive_diag, const input_keys& keys);

// With `proper_rotation` on: the pair with the smallest (signed) element of the Duschinsky matrix gives each
// state whose mode matrix has a negative determinant the mode that is negated, so that both determinants are
// +1; `get_vbn` runs again. Off, nothing is done.
void set_proper_rotation(array1<states>& state, bool proper_rotation, const input_keys& keys);

}  // namespace vbn
