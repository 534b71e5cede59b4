// The sections of the log on the redundant internal coordinates.
#pragma once

#include "molecule/record.hpp"   // for internal_coordinates, atom_data, states
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// Writes counts, definitions, values (angstrom, degrees) and B-matrix rows of all coordinates, kind by kind.
void print_int_coord(const internal_coordinates& internal, const atom_data& atoms, output_file& fout);

// Writes the large changes of bonds between the states, and each change of a coordinate with its linear
// estimate from the B matrix of state 1.
void print_differences(const states& s1, const states& s2, output_file& fout);

}  // namespace vbn
