// Rotation of lists of vectors and of force constants, used for every change of frame.
#pragma once

#include <span>

#include "linalg/array.hpp"              // for array1, array2
#include "molecule/force_constants.hpp"  // for force_constants

namespace vbn {

// Rotates every 3-vector of `v`, which holds them one after the other: v := r v. Shapes: r (3,3); the length
// of v is a multiple of 3 (coordinates (3,natom), a mode (n3), a dipole (3)).
void rotn(const array2<double>& r, std::span<double> v);

// The force constants in the frame rotated by `vector`, symmetrised at the end. The 3 x 3 block of each pair
// of atoms becomes R block R^T. Terms of the sum below 1e-300 in magnitude count as zero. Shapes: vector
// (3,3); fc (n3,n3), whose index is 3(i-1)+a for coordinate a of atom i.
void rot_fc(const array2<double>& vector, array2<double>& fc);

// The same for both forms of the force constants.
void rotate_force(const array2<double>& r, const array1<double>& sqtmass, force_constants& force);

// The symmetric part of a square matrix, in place. A symmetric matrix keeps its bits.
void set_sym_matrix(array2<double>& a);

}  // namespace vbn
