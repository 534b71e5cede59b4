// Reads Turbomole files (aoforce).
#include <algorithm>
#include <span>
#include <string>

#include "readers/programs.hpp"  // for the routines
#include "readers/rows.hpp"      // for the rows of the tables
#include "readers/scan.hpp"  // for search_word, search_word_free, search_word_del_space, search_word_first_number, search_word_first_letter
#include "text/layout.hpp"   // for layout
#include "text/stop.hpp"     // for fail, warn
#include "text/words.hpp"    // for trim, word_of, is_number

namespace vbn {

namespace {

constexpr int block_columns = 6;         // numbers in a row of a block of force constants
constexpr std::size_t field_width = 10;  // columns of each

// What stands from three characters behind the "d" at `d` on.
std::string_view behind_d(std::string_view row, std::size_t d) {
  return trim(row.substr(d == std::string_view::npos ? row.size() : std::min(d + 3, row.size())));
}

// Place of the "d" of the label "dx", "dy" or "dz" in a row whose first "d" stands in the element symbol, as
// in " 1 cd    dx  0.1".
std::size_t label_d(std::string_view row) {
  const std::string_view label = word_of(row, is_number(word_of(row, 1)) ? 3 : 1);
  if (label.size() < 2 || label[0] != 'd' || label[1] < 'x' || label[1] > 'z') return std::string_view::npos;
  return static_cast<std::size_t>(label.data() - row.data());
}

// The numbers of a row in their fields, none of which may be blank.
bool read_row(std::string_view fields, std::span<double> numbers) {
  static const layout columns("(6f10.7)");
  return fields.size() > field_width * (numbers.size() - 1) && read_fixed(fields, columns, numbers);
}

}  // namespace

bool turbomole_natom(input_file& file, int& natom) {
  std::string_view line;
  if (!search_word_del_space(file, "total:", line)) return false;
  natom = row_integer(file, line, 2, "\"total:\" and the number of atoms");
  return true;
}

void isotope_table_nat(input_file& file, array1<int>& nat) {
  constexpr std::string_view heading = "Atomic coordinate, charge and isotop information";
  std::string_view line;
  if (!search_word(file, 17, 64, heading, line) || !file.read_line(line) ||
      !search_word_first_letter(file, line)) {
    fail_missing(file, "the atoms",
                 "\"" + std::string(heading) + "\" in columns 17 to 64 and rows behind it");
  }
  symbol_rows(file, 4, nat);
}

void weights_or_isotope_table_mass(input_file& file, bool listed, std::string_view heading,
                                   array1<double>& mass) {
  if (listed) {
    std::string_view line;
    if (!search_word_first_number(file, line)) {
      fail_missing(file, "the masses", "rows behind \"" + std::string(heading) + "\"");
    }
    file.back_line();
    return mass_rows(file, 3, mass);
  }
  file.rewind();
  array1<int> nat(mass.size());
  isotope_table_nat(file, nat);
  element_masses(nat, mass);
}

void turbomole_nat(input_file& file, array1<int>& nat) { isotope_table_nat(file, nat); }

void turbomole_mass(input_file& file, array1<double>& mass) {
  std::string_view line;
  const bool listed = search_word_free(file, "ATOMIC WEIGHTS", line);
  weights_or_isotope_table_mass(file, listed, "ATOMIC WEIGHTS", mass);
}

void turbomole_coord(input_file& file, array2<double>& x) {
  std::string_view line;
  if (!search_word_free(file, "atomic coordinates", line)) {
    tell_and_stop({"Error!", "Can not find coordinate in TURBOMOLE output file, stop!"});
  }
  coordinate_rows(file, 0, false, x);
}

// The lower triangle in blocks of six columns. The rows of a block begin with its own diagonal, so the first
// of them grow by one number each.
void turbomole_fc(input_file& file, int natom, array2<double>& fc) {
  constexpr std::string_view expected =
      "\"dx\", \"dy\" or \"dz\" and up to six force constants of ten columns";
  std::string_view line;
  if (!search_word_free(file, "CARTESIAN FORCE CONSTANT MATRIX", line)) {
    warn(file.name() + " has no force constants; give the output of aoforce");
    tell_and_stop({"Error!", "Can not find force constant matrix in turbomole log file. Stop!"});
  }
  fc = force_constant_matrix(file, natom);
  const int n3 = fc.rows();
  for (int ib = 1; ib <= n3; ib += block_columns) {
    if (!search_word_free(file, "ATOM", line)) {
      fail_missing(file, "the block of force constants from column " + std::to_string(ib) + " on",
                   "a line with \"ATOM\"");
    }
    skip_rows(file, 1, "a block of force constants");
    for (int i = ib; i <= n3; ++i) {
      if (!file.read_line(line)) fail(file.here("the file ends too early", std::string(expected)));
      const int count = std::min(i - ib + 1, block_columns);
      double held[block_columns];
      const std::span numbers = std::span(held).first(static_cast<std::size_t>(count));
      if (!read_row(behind_d(line, line.find('d')), numbers) &&
          !read_row(behind_d(line, label_d(line)), numbers)) {
        fail(file.here("cannot read the line", std::string(expected)));
      }
      for (int j = ib; j < ib + count; ++j) fc(i, j) = fc(j, i) = held[j - ib];
    }
  }
}

}  // namespace vbn
