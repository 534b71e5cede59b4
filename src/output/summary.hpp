// What a run has found, in ten lines for a person at a terminal.
#pragma once

#include <string>

#include "input/keys.hpp"       // for input_data
#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states

namespace vbn {

// At most ten lines after a run that has ended well: the formula, both files with the kind and version of
// their program, the total reorganisation energies of both routes, the five modes of state 2 with the largest
// Huang-Rhys factors, and the files that were written. The modes are in the order of the factors by internal
// coordinates, with `set_cart` of those by Cartesian ones; factors that are printed as 0 are left out.
std::string summary(const array1<states>& state, const input_data& input);

}  // namespace vbn
