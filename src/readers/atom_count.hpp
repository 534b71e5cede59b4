// How many atoms a state has, and which of them a two-layer (ONIOM) calculation keeps.
#pragma once

#include "linalg/array.hpp"       // for array1
#include "molecule/record.hpp"    // for states
#include "readers/file_type.hpp"  // for qm_file

namespace vbn {

// Finds kind, atom count and force-constant file of the state whose frequency file is `ffreq`: sets
// `ffreq_type`, `ffreq_version`, `fhess`, `ifoniom`, `natom`, `nqmmm` and `n3`. A Gaussian log needs its
// ".fchk" sibling in the working directory; without it, and for a file without atoms, the run ends as told on
// standard output. A missing name, a file that cannot be opened and a count that the files have no room for
// end the run with a message.
void get_na(states& state);

// For an ONIOM state: fills `iqm` and `iqm3`, the places in the file of the atoms of layer "H" and of their
// Cartesian indices. Does nothing for any other state.
void get_oniom_index(states& state);

// The same for a file and arrays of the caller: iqm(1..nqm) and iqm3(1..3 nqm) of the nqmmm atoms in the
// file.
void get_oniom_index1(qm_file& file, int nqm, int nqmmm, array1<int>& iqm, array1<int>& iqm3, int& info);

// Atoms in layer "H" and in total of a Gaussian ONIOM log. `info` is 0; -1 for another kind or a log
// without charge lines, and then `nqm` is 0.
void qm_file_natom_oniom_qm(qm_file& file, int& nqm, int& nqmmm, int& info);

// idx(1..nqm): the places in the file of the atoms of layer "H", ascending. `info` is 0; -1 for another kind
// or a log without charge lines, and then `idx` is as it was.
void qm_file_oniom_index(qm_file& file, int nqm, int nqmmm, array1<int>& idx, int& info);

}  // namespace vbn
