// Shared by the readers of coupling files: energy, fields, and the relation of coupling vector and field.
#pragma once

#include <string>
#include <string_view>

#include "linalg/array.hpp"     // for array2
#include "readers/qm_file.hpp"  // for file_couplings
#include "text/input_file.hpp"  // for input_file

namespace vbn {

// Word k of the line last read as the vertical energy.
double energy_word(const input_file& file, std::string_view line, int k, const std::string& expected);

// The fields at the nuclei after `words` words of each row. A table under this heading without fields, such
// as potentials only, is skipped.
void read_fields(input_file& file, int words, array2<double>& tranele);

// Ends the run where the relation of coupling vector and transition field, or the scales of the coupling by
// mode, would divide by zero: by the energy or by a charge. A denormal energy counts as zero.
void check_divisors(const input_file& file, const file_couplings& read);

// nacme(c,i) = tranele(c,i) x Z(i) / e_vert, after the check of the divisors.
void nacme_of_field(const input_file& file, file_couplings& read);

}  // namespace vbn
