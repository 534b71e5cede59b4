// Projection of the force constants on the space of the internal coordinates.
#pragma once

#include "molecule/record.hpp"  // for states

namespace vbn {

// With `proj_f0` on, `fc` becomes its projection bm^T bm fc bm^T bm; `fcm` and the modes stay as they are.
// Shapes: fc, bm (n3,n3). Off, nothing is done.
void get_proj_f0(states& state, bool proj_f0);

}  // namespace vbn
