// The Eckart step: state 1 turned so that its geometry lies as near as possible to that of state 2.
#pragma once

#include "input/keys.hpp"        // for input_data
#include "linalg/array.hpp"      // for array1, array2, array3
#include "molecule/record.hpp"   // for states
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// Turns everything of state 1 that lives in its frame (`x`, `fc`, `fcm`, `cm`, `c`, and its couplings and
// dipole derivatives where they are projected on it) by the one of the four candidate rotations that leaves
// the smallest distance to state 2, or by the one that the key `set_eckart_order` names. Reports to the log.
void do_eckart(states& g, const states& e, const input_data& input, output_file& fout);

// The four proper rotations (3,3,4) that take the principal axes of the mass-weighted cross moment of `x1` to
// those of `x2`. Shapes: x1, x2 (3,natom), mass (natom).
// Published method: A. Y. Dymarsky, K. N. Kudin (2005), for the rotation in closed form.
array3<double> get_eckart_rot(const array2<double>& x1, const array2<double>& x2, const array1<double>& mass);

// Between the modes in Cartesian and in mass-weighted coordinates: direction 1 gives cm = c / sqtmass by
// rows, -1 gives c = sqtmass cm. Shapes: sqtmass (n3); c, cm (n3,n3), a mode a column. info: 0, -1 when n3 is
// not positive, -2 for another direction; nothing is done then.
void c_to_cm(int n3, const array1<double>& sqtmass, array2<double>& c, array2<double>& cm, int direction,
             int& info);

}  // namespace vbn
