// Normal modes by irreducible representation, from the Hessian diagonalised block by block.
#pragma once

#include "linalg/array.hpp"      // for array1
#include "molecule/record.hpp"   // for states, symmetry_data, force_constants, normal_modes
#include "text/messages.hpp"     // for messages
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// Diagonalises the mass-weighted force constants in the basis `trans_symm`, each representation separately,
// and sorts the modes by increasing eigenvalue: replaces force constants and modes with their `irrep`, and
// fills `ir_idx`. Elements that couple different representations are dropped.
void get_point_group(const array1<double>& sqtmass, symmetry_data& symmetry, force_constants& force,
                     normal_modes& modes);

// Writes to the log the point group, the frequencies of each representation, `freq1` and `freq` of each mode
// from the 7th on (cm-1), then the file and the atoms. A change above 5 cm-1 stops the run, with lines on
// standard output and advice on the error stream; a change above 0.01 cm-1 gives a warning in the log.
void print_point_group(const states& state, output_file& fout, const messages& say);

}  // namespace vbn
