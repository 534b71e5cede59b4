// Translations and rotations of a molecule as vectors over its coordinates, and their residual force.
#pragma once

#include "linalg/array.hpp"  // for array1, array2

namespace vbn {

// Shapes: mass (natom), masses of any one unit; x (3,natom).

// The mass-weighted vectors (n3,6) of the translations along and the rotations about x, y, z for coordinates
// `x` that are relative to the centre of mass.
array2<double> get_trans_rot_vec(const array1<double>& mass, const array2<double>& x);

// The same, each column normalised unless its square is at most 1e-8.
array2<double> formtrm1(const array1<double>& mass, const array2<double>& xc);

// The largest change of the force by a rotation of the molecule about x, y or z, relative to the largest
// force of a step of unit length along one coordinate. `h` (n3,n3) are the force constants weighted with
// `mass`. If `h` is in the frame of a stationary geometry, this is the noise of the calculation.
double rotational_residual(const array2<double>& h, const array1<double>& mass, array2<double> x);

}  // namespace vbn
