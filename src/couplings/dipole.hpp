// Derivatives of the transition dipole: from the file to the normal modes.
#pragma once

#include <span>
#include <string_view>

#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for states, dipole_data, atom_data
#include "text/messages.hpp"    // for messages

namespace vbn {

// Reads geometry, transition dipole and its derivatives from `ftdipd` of the first state into all of them,
// which have equally many atoms, and sets `ifdip` of each whose geometry is that of the file to 0.001 bohr,
// both along their principal axes. A file with another number of atoms or other masses (whole numbers of amu
// are compared) gives lines on standard output and stops the run; a file that cannot be read ends it with a
// message.
void get_tdipd(std::span<states> state, const messages& say);

// The derivatives mass-weighted and projected on the modes cm (n3,n3), which may be those of the other state:
// (3,n3). Only the dipole component of the derivatives follows the rotations of the frame; if these are not
// the identity (to 1e-6), a warning says that the displacements are still in the frame of the file.
array2<double> proj_dip(const dipole_data& dipole, const atom_data& atoms, const array2<double>& cm,
                        const messages& say);

// Writes `prefix`.dip: the dipole with index 0, then the derivatives by the modes 7 to n3.
void write_tdipd(const array1<double>& dip0, const array2<double>& tdipd_q, std::string_view prefix);

}  // namespace vbn
