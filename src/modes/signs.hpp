// Conventions for the arbitrary signs of the modes.
#pragma once

#include "input/keys.hpp"       // for input_keys
#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states
#include "text/messages.hpp"    // for messages

namespace vbn {

// With `positive_diag`: makes the largest component of every mode of both states positive, then negates modes
// of state 2 so that no diagonal element of the paired Duschinsky matrix is negative. `get_vbn` runs again
// before and after.
void set_positive_diag(array1<states>& state, bool positive_diag, const input_keys& keys,
                       const messages& say);

// With `proper_rotation`: a state whose matrix of modes has a negative determinant negates its mode of the
// pair with the smallest (signed) element of the Duschinsky matrix, so that both determinants are +1;
// `get_vbn` runs again.
void set_proper_rotation(array1<states>& state, bool proper_rotation, const input_keys& keys,
                         const messages& say);

}  // namespace vbn
