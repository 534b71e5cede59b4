// Takes the couplings of a state from the coupling file.
#pragma once

#include "molecule/record.hpp"  // for states

namespace vbn {

// Reads geometry, couplings, transition field and vertical energy from `fnacm` into the state and sets
// `ifnac` when the geometry of the file is that of the state to 0.001 bohr, both taken to their principal
// axes. Of an ONIOM file the atoms of the high layer are taken. A file of another number of atoms or of other
// masses (whole numbers of amu are compared) is told on standard output and ends the run with status 1; a
// file that cannot be read ends it with a message. Needs `natom`, `n3`, `mass`, `x`, `symbol`, `ffreq` and
// `fnacm`.
void get_nacme(states& state);

}  // namespace vbn
