// Normal modes by irreducible representation, from the Hessian diagonalised block by block.
#pragma once

#include "molecule/record.hpp"   // for states
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// Diagonalises `fcm` of the state in the basis `trans_symm`, each representation by itself, and puts the
// modes in the order of rising eigenvalues: replaces `fcm`, `fc`, `cm`, `freq` (atomic units) and `irrep`,
// and fills `ns` and `ir_idx`. What couples different representations is dropped.
void get_point_group(states& state);

// Writes to the log the point group, the frequencies of each representation and, beside `freq1`, of each mode
// from the 7th on (cm-1), then the file and the atoms. A change above 5 cm-1 stops the run, with lines on
// standard output and a way out on the error stream; one above 0.01 cm-1 is told in the log.
void print_point_group(const states& state, output_file& fout);

}  // namespace vbn
