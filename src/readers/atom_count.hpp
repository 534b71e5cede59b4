// How many atoms a state has, and which of them a two-layer (ONIOM) calculation keeps.
#pragma once

#include "linalg/array.hpp"       // for array1
#include "molecule/record.hpp"    // for file_data, atom_data
#include "readers/file_type.hpp"  // for qm_file
#include "text/messages.hpp"      // for messages

namespace vbn {

// Opens the frequency file `ffreq` of a state and finds its kind, its atom count and the file of the force
// constants: sets `ffreq_type`, `ffreq_version`, `fhess`, `ifoniom`, `nqmmm`, `natom` and `n3`, and returns
// the open file. A Gaussian log needs its ".fchk" sibling in the working directory; without it, and for a
// file without atoms, the run ends with lines on standard output. A missing name, a file that cannot be
// opened and a count too large for the size of the files end the run with a message.
qm_file get_na(file_data& data, atom_data& atoms, const messages& say);

// Two different logs whose checkpoints would be one file: each takes the one beside it, with a warning; where
// one has none the run ends.
void part_checkpoints(file_data& one, file_data& two, const messages& say);

// For an ONIOM state: fills `iqm` and `iqm3`, the places in the file of the `natom` atoms of layer "H" and of
// their Cartesian indices. Does nothing for any other state.
void get_oniom_index(qm_file& file, int natom, file_data& data);

// The same for arrays of the caller: iqm(1..nqm) and iqm3(1..3 nqm) of the nqmmm atoms in the file.
void get_oniom_index1(qm_file& file, int nqm, int nqmmm, array1<int>& iqm, array1<int>& iqm3);

struct oniom_count {
  int nqm = 0;    // atoms in layer "H"; 0 for a log without charge lines
  int nqmmm = 0;  // atoms in total
};

// The atoms of a Gaussian ONIOM log; none of a file of another kind.
oniom_count qm_file_natom_oniom_qm(qm_file& file);

// The places in the file of the `nqm` atoms of layer "H" that `qm_file_natom_oniom_qm` counted, ascending.
array1<int> qm_file_oniom_index(qm_file& file, int nqm, int nqmmm);

}  // namespace vbn
