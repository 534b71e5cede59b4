// The geometry and frequency tables of the log.
#pragma once

#include <string_view>

#include "molecule/record.hpp"   // for atom_data, normal_modes
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// Each writes one titled section on `fout`; `istate` is the number of the state in the title, 1 or 2, and
// `massage` the title text of a geometry. Geometries are written in angstrom with the masses in amu,
// frequencies in cm-1, negative for an imaginary mode.
void print_coord(output_file& fout, const atom_data& atoms, int istate, std::string_view massage);
void print_freq0(output_file& fout, const normal_modes& modes, int istate);  // before the projection
void print_freq(output_file& fout, const normal_modes& modes, int istate);   // the current ones

}  // namespace vbn
