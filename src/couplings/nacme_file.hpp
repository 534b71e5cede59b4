// The table of couplings by mode, file ".nac".
#pragma once

#include <string_view>

#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states

namespace vbn {

// For each state with couplings (`ifnac`): projects them on its own modes and writes the table `fname`.nac in
// the order of its modes in the pairing. With couplings on both states the table is that of state 2. A mode
// of zero frequency has no dimensionless coupling: its columns are not finite.
void get_nacme_n3(const array1<states>& state, std::string_view fname);

}  // namespace vbn
