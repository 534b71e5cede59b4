// Atoms and masses of the table that Turbomole and ChemShell files share.
#include "readers/isotope_table.hpp"  // for the routines

#include <string>

#include "readers/rows.hpp"  // for symbol_rows, mass_rows, element_masses, fail_missing
#include "readers/scan.hpp"  // for search_word, search_word_first_number, search_word_first_letter

namespace vbn {

void isotope_table_nat(input_file& file, array1<int>& nat) {
  constexpr std::string_view heading = "Atomic coordinate, charge and isotop information";
  std::string_view line;
  if (!search_word(file, 17, heading, line) || !file.read_line(line) ||
      !search_word_first_letter(file, line)) {
    fail_missing(file, "the atoms", "\"" + std::string(heading) + "\" in columns 17 to 64, followed by rows");
  }
  symbol_rows(file, 4, nat);
}

void weights_or_isotope_table_mass(input_file& file, bool listed, std::string_view heading,
                                   array1<double>& mass) {
  if (listed) {
    std::string_view line;
    if (!search_word_first_number(file, line)) {
      fail_missing(file, "the masses", "rows after \"" + std::string(heading) + "\"");
    }
    file.back_line();
    return mass_rows(file, 3, mass);
  }
  file.rewind();
  array1<int> nat(mass.size());
  isotope_table_nat(file, nat);
  element_masses(nat, mass);
}

}  // namespace vbn
