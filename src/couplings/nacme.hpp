// Reads the couplings of the states from the coupling file.
#pragma once

#include <span>

#include "molecule/record.hpp"  // for states
#include "text/messages.hpp"    // for messages

namespace vbn {

// Reads geometry, couplings, transition field and vertical energy from `fnacm` of the first state into all of
// them, which have equally many atoms, and sets `ifnac` of each whose geometry is that of the file to 0.001
// bohr, both along their principal axes. Of an ONIOM file the atoms of the high layer are used. A file with
// another number of atoms or other masses (whole numbers of amu are compared) gives lines on standard output
// and ends the run with status 1; a file that cannot be read ends it with a message. Needs `fnacm`, `ffreq`
// and the atoms.
void get_nacme(std::span<states> state, const messages& say);

}  // namespace vbn
