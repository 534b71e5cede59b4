// Derivatives of the transition dipole: from the file to the normal modes.
#pragma once

#include <string_view>

#include "linalg/array.hpp"     // for array1, array2, array3
#include "molecule/record.hpp"  // for states, dipole_data, atom_data

namespace vbn {

struct qm_file;

// Reads geometry, transition dipole and its derivatives from `ftdipd` into the state and sets `ifdip` when
// the geometry of the file is that of the state to 0.001 bohr, both taken to their principal axes. A file of
// another number of atoms or of other masses (whole numbers of amu are compared) is told on standard output
// and ends the run; a file that cannot be read ends it with a message.
void get_tdipd(states& state);

// Reads the transition dipole `dip0` (3) and its derivatives `tdipd_x` (dipole component, coordinate, atom),
// atomic units. Served is the kind "NUMFORCE". `info` is 0 on return; another kind, a missing marker and
// numbers that do not read end the run with a message that names the file.
void qm_file_tdipd(qm_file& file, int natom, array1<double>& dip0, array3<double>& tdipd_x, int& info);

// The derivatives mass-weighted and projected on the modes cm (n3,n3), which may be those of the other state:
// (3,n3). Only the dipole component of the derivatives follows the rotations of the frame; where these were
// not the identity (to 1e-6), a warning says that the displacements still are those of the file's frame.
array2<double> proj_dip(const dipole_data& dipole, const atom_data& atoms, const array2<double>& cm);

// Writes `prefix`.dip: the dipole with index 0, then the derivatives by the modes 7 to n3.
void write_tdipd(const array1<double>& dip0, const array2<double>& tdipd_q, std::string_view prefix);

}  // namespace vbn
