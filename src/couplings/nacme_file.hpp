// The table of couplings by mode, file ".nac".
#pragma once

#include <string_view>

#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states
#include "text/fixed_text.hpp"  // for text

namespace vbn {

inline constexpr double atomic_time_in_s = 2.4188843265e-17;  // s, atomic unit of time

// One mode of the table, in atomic units.
struct nacme_row {
  double freq = 0.0;
  text<6> irrep = {};
  double nacme = 0.0;   // coupling along the mode
  double before = 0.0;  // along its dimensionless coordinate; not finite for zero frequency, as those below
  double after = 0.0;   // times the energy difference
  double linear = 0.0;  // linear coupling
  double jpca = 0.0;    // rate factor of internal conversion, an energy
};

struct nacme_table {
  double e_vert = 0.0;     // hartree
  array1<nacme_row> rows;  // (n3)
};

// The couplings of a state along its own modes, in the order of its modes in the pairing.
nacme_table get_nacme_n3(const states& state);

// Writes the table `fname`.nac; nothing for a table without rows.
void write_nacme_n3(const nacme_table& table, std::string_view fname);

}  // namespace vbn
