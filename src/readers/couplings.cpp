// Energies and fields of coupling files, and the relation of coupling vector and transition field.
#include "readers/couplings.hpp"  // for the routines

#include <cmath>

#include "readers/rows.hpp"  // for row_numbers, next_row, fail_missing
#include "readers/scan.hpp"  // for search_word_del_space, search_word_first_number
#include "text/number.hpp"   // for to_real
#include "text/stop.hpp"     // for fail, fail_in
#include "text/words.hpp"    // for number_of_words, word_of

namespace vbn {

double energy_word(const input_file& file, std::string_view line, int k, const std::string& expected) {
  double energy = 0.0;
  if (!to_real(word_of(line, k), energy)) {
    fail(file.here("cannot read the vertical energy", expected + " as word " + std::to_string(k)));
  }
  return energy;
}

void read_fields(input_file& file, int words, array2<double>& tranele) {
  constexpr std::string_view heading = "Electrostatic Properties (Atomic Units)";
  constexpr int components = 3;
  std::string_view line;
  while (search_word_del_space(file, heading, line)) {
    if (!search_word_first_number(file, line)) break;
    if (number_of_words(line) < words + components) continue;
    file.back_line();
    const std::string expected = std::to_string(words) + " words, then the field x, y and z of an atom";
    for (int i = 1; i <= tranele.cols(); ++i) {
      row_numbers(file, next_row(file, expected), words, tranele.column(i), expected);
    }
    return;
  }
  fail_missing(file, "the transition field at the nuclei",
               "a table under \"" + std::string(heading) + "\" with three field columns");
}

void check_divisors(const input_file& file, const file_couplings& read) {
  if (!std::isnormal(read.e_vert)) {
    fail_in(file.name(), "the vertical energy of the coupling file is zero",
            "an energy difference of the two states, by which the couplings are scaled");
  }
  for (int i = 1; i <= read.natom(); ++i) {
    if (read.z(i) != 0.0) continue;
    fail_in(file.name(), "the nuclear charge of atom " + std::to_string(i) + " is zero",
            "a charge for each atom; leave out atoms without a nucleus");
  }
}

void nacme_of_field(const input_file& file, file_couplings& read) {
  check_divisors(file, read);
  for (int i = 1; i <= read.natom(); ++i) {
    for (int c = 1; c <= 3; ++c) read.nacme(c, i) = read.tranele(c, i) * read.z(i) / read.e_vert;
  }
}

}  // namespace vbn
