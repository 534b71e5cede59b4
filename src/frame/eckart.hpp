// The Eckart step: rotates state 1 so that its geometry is as close as possible to that of state 2.
#pragma once

#include "linalg/array.hpp"      // for array1, array2, array3
#include "molecule/record.hpp"   // for states
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// The rotation (3,3) that takes the geometry x1 of state 1 to that of state 2: of the four candidates that
// with the smallest distance, or that given by the key `set_eckart_order`. Writes its section of the log.
// Shapes: x1, x2 (3,natom), mass (natom) of state 1.
array2<double> do_eckart(const array2<double>& x1, const array2<double>& x2, const array1<double>& mass,
                         int set_eckart_order, output_file& fout);

// Rotates all data of a state that depend on its frame: geometry, force constants, modes and, where they are
// projected on this state, its couplings and dipole derivatives.
void rotate_state(const array2<double>& rot, bool with_couplings, bool with_dipole, states& g);

// The four proper rotations (3,3,4) that take the principal axes of the mass-weighted cross moment of `x1` to
// those of `x2`. Shapes: x1, x2 (3,natom), mass (natom).
// Published method: A. Y. Dymarsky, K. N. Kudin (2005), for the rotation in closed form.
array3<double> get_eckart_rot(const array2<double>& x1, const array2<double>& x2, const array1<double>& mass);

}  // namespace vbn
