// The displacement of the two states in internal coordinates, and its projection on their modes.
#pragma once

#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states
#include "text/messages.hpp"    // for messages

namespace vbn {

// Compares the states in their internal coordinates and fills, of both, `zd` (angstrom, radians; opposite
// signs), `cmr2` and the results `dint`, with the signs of the Cartesian route if the key is set. Needs the
// non-redundant basis and the modes. Coordinates with other definitions in the two states are printed to
// standard output; different numbers of them stop the run.
void check_int_coord(array1<states>& state, bool d_sign_same_to_cart, const messages& say);

}  // namespace vbn
