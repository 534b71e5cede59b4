// Readers of non-adiabatic couplings: one for each program whose coupling files can be read.
#pragma once

#include "linalg/array.hpp"  // for array2

namespace vbn {

struct qm_file;

// Reads the couplings of `natom` atoms: `nacme` (3,natom) the coupling vector of each atom, `tranele`
// (3,natom) the transition field at its nucleus, `e_vert` the vertical energy in hartree; all in atomic
// units. A file gives one of the two arrays and the relation nacme = tranele x Z / e_vert, with the nuclear
// charge Z, gives the other. Served are the kinds "GAUSSIAN LOG", "MOLPRO", "NWCHEM" and "TURBOMOLE". `info`
// is 0 on return. Another kind, a missing marker, a file that ends too early, a zero energy or nuclear
// charge, and numbers that do not read end the run with a message that names the file.
void qm_file_nacme(qm_file& file, int natom, array2<double>& nacme, array2<double>& tranele, double& e_vert,
                   int& info);

}  // namespace vbn
