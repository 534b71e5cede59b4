// The section of the log that lists the redundant internal coordinates of a state.
#pragma once

#include "molecule/record.hpp"   // for states
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// Writes counts, definitions, values (angstrom, degrees) and B-matrix rows of all coordinates, kind by kind.
void print_int_coord(const states& state, output_file& fout);

}  // namespace vbn
