// The displacement of the two states in internal coordinates, and its projection on their modes.
#pragma once

#include "input/keys.hpp"        // for input_data
#include "linalg/array.hpp"      // for array1
#include "molecule/record.hpp"   // for states
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// Compares the states in their internal coordinates and fills, of both, `zd` (angstrom, radians; opposite
// signs), `cmr2` and the results `dint`. Two sections go to the log: the large changes of bonds, and each
// change beside its linear estimate from the B matrix. Needs the non-redundant basis and the modes. With
// `proj_reorg` it writes the reorganisation energies by coordinate. Coordinates with other definitions in the
// two states are printed to standard output; unequal numbers of them stop the run.
void check_int_coord(array1<states>& state, const input_data& input, output_file& fout);

}  // namespace vbn
