// The formula of a molecule.
#pragma once

#include <string>

#include "linalg/array.hpp"     // for array1
#include "text/fixed_text.hpp"  // for text

namespace vbn {

// The formula of the atoms with these element symbols, as C2H2O2, in the order of Hill, J. Am. Chem. Soc. 22
// (1900) 478.
std::string formula(const array1<text<2>>& symbols);

}  // namespace vbn
