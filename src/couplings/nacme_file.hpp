// The table of couplings by mode, file ".nac".
#pragma once

#include <string_view>

#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states
#include "text/fixed_text.hpp"  // for text

namespace vbn {

// For each state with couplings (`ifnac`): projects them on its own modes and writes the table `fname`.nac in
// the order of its modes in the pairing. With couplings on both states the table is the one of state 2.
void get_nacme_n3(const array1<states>& state, std::string_view fname);

// Writes the table. `energy` in hartree, `freq` (n3) in atomic units, `irrep` and `nacme` (n3) in the order
// of the rows, which begin at `start_mode`, 1 or 7; another value is told on standard output and ends the
// run. `nacm_lin` and `nacm_jpca` are the linear coupling and the rate factor of internal conversion. A mode
// of zero frequency has no dimensionless coupling: its columns are no numbers.
void write_nacme(std::string_view fname, double energy, const array1<double>& freq,
                 const array1<text<6>>& irrep, const array1<double>& nacme, int start_mode);

}  // namespace vbn
