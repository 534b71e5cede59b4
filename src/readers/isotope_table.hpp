// The box "Atomic coordinate, charge and isotop information", which Turbomole prints and ChemShell passes on.
#pragma once

#include <string_view>

#include "linalg/array.hpp"     // for array1
#include "text/input_file.hpp"  // for input_file

namespace vbn {

// The atomic numbers of the box.
void isotope_table_nat(input_file& file, array1<int>& nat);

// Masses in the third word of the rows behind the heading `heading`, where it was found (`listed`); otherwise
// those of the elements of the box.
void weights_or_isotope_table_mass(input_file& file, bool listed, std::string_view heading,
                                   array1<double>& mass);

}  // namespace vbn
