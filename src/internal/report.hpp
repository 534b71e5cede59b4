// The section of the log that lists the redundant internal coordinates of a state.
#pragma once

#include "molecule/record.hpp"   // for internal_coordinates, atom_data
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// Writes counts, definitions, values (angstrom, degrees) and B-matrix rows of all coordinates, kind by kind.
void print_int_coord(const internal_coordinates& internal, const atom_data& atoms, output_file& fout);

}  // namespace vbn
