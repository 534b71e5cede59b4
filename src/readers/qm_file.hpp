// Reads atoms, masses, coordinates and force constants of a file of any kind.
#pragma once

#include "readers/file_type.hpp"  // for qm_file
#include "linalg/array.hpp"       // for array1, array2

namespace vbn {

// Number of atoms of the file. `info` is 0; -1, with `natom` = 0, for a kind or a file that does not tell it.
void qm_file_natom(qm_file& file, int& natom, int& info);

// Each of the readers below gives its array the extent of `natom` atoms and fills all of it; `info` is then
// 0. Each ends the run with a message: `natom` below 1 or more than the file has room for, a kind that does
// not hold what is asked for, a marker that is missing, a line that does not read, a file that ends too
// early.

// Atomic numbers nat(1..natom). A number outside 1 to 118 passes and is stopped by `nat_to_symbol`.
void qm_file_nat(qm_file& file, int natom, array1<int>& nat, int& info);

// Masses mass(1..natom) in amu. An element without a mass in the table has 0.0, and a mass passes as the file
// states it: whoever uses an atom tests that its mass is above zero.
void qm_file_mass(qm_file& file, int natom, array1<double>& mass, int& info);

// Coordinates x(1..3,1..natom) in bohr.
void qm_file_coord(qm_file& file, int natom, array2<double>& x, int& info);

// Force constants fc(n3,n3), n3 = 3 x natom, in hartree/bohr^2, full and symmetric (of a NUMFORCE file as
// they stand in it).
void qm_file_fc(qm_file& file, int natom, array2<double>& fc, int& info);

}  // namespace vbn
