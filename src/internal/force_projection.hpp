// Projection of the force constants on the space of the internal coordinates.
#pragma once

#include "linalg/array.hpp"              // for array2
#include "molecule/force_constants.hpp"  // for force_constants

namespace vbn {

// `fc` becomes its projection bm^T bm fc bm^T bm; the mass-weighted form and the modes are unchanged. Shape:
// bm (n3,n3).
void get_proj_f0(const array2<double>& bm, force_constants& force);

}  // namespace vbn
