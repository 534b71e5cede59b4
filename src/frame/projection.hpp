// Removal of translations and rotations from the Hessian of a state.
#pragma once

#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for atom_data, force_constants
#include "text/messages.hpp"    // for messages

namespace vbn {

// Projects translations and rotations out of the force constants, depending on the key:
//   1  mass-weighted vectors in the inertial frame, each normalised;
//   2  vectors without masses, orthonormalised, on the Cartesian force constants;
//   3  mass-weighted vectors, orthonormalised;
// any other value leaves the force constants unchanged. With 2 a rotation that is not independent (of a
// linear molecule) is printed to standard output. Published method: W. H. Miller, N. C. Handy, J. E. Adams
// (1980) for the projection of the Hessian.
void get_proj_hessian(const atom_data& atoms, int proj_hessian, force_constants& force, const messages& say);

// The three projections. Shapes: x (3,natom) bohr, mass (natom) electron masses, the matrix (n3,n3).
void projtrm_rot(const array2<double>& x, const array1<double>& mass, array2<double>& hess);
void project_xhessian_rot(const array2<double>& x, array2<double>& hess, const messages& say);
void project_mhessian_rot(const array2<double>& x, const array1<double>& mass, array2<double>& fcm);

}  // namespace vbn
