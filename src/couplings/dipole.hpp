// Derivatives of the transition dipole: from the file to the normal modes.
#pragma once

#include <string_view>

#include "linalg/array.hpp"     // for array1, array3
#include "molecule/record.hpp"  // for states

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

// Mass-weights the derivatives of the state and projects them on the modes `cm` of `modes`, which may be the
// record of the other state: `tdipd_q` (3,n3). Only the dipole component of the derivatives is turned with
// the frame of the run; when that turn was not the identity (to 1e-6), a warning says that the displacements
// still are those of the file's frame.
void proj_dip(states& state, const states& modes);

// Writes `prefix`.dip: the dipole with index 0, then the derivatives by the modes 7 to n3.
void write_tdipd(const states& state, std::string_view prefix);

}  // namespace vbn
