// The table "Atomic coordinate, charge and isotop information", in Turbomole and ChemShell outputs.
#pragma once

#include <string_view>

#include "linalg/array.hpp"     // for array1
#include "text/input_file.hpp"  // for input_file

namespace vbn {

// The atomic numbers of the table.
void isotope_table_nat(input_file& file, array1<int>& nat);

// Masses in the third word of the rows after the heading `heading`, if it was found (`listed`); otherwise
// those of the elements of the table.
void weights_or_isotope_table_mass(input_file& file, bool listed, std::string_view heading,
                                   array1<double>& mass);

}  // namespace vbn
