// Reads Turbomole files (aoforce).
#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "readers/couplings.hpp"      // for energy_word, check_divisors
#include "readers/isotope_table.hpp"  // for weights_or_isotope_table_mass
#include "readers/programs.hpp"       // for the routines
#include "readers/rows.hpp"           // for the rows of the tables
#include "readers/scan.hpp"  // for search_word, search_word_free, search_word_del_space, search_word_first_letter
#include "readers/triangle.hpp"  // for force_constant_matrix, read_lower_blocks, mirror_upper
#include "text/layout.hpp"       // for layout
#include "text/messages.hpp"     // for free_line
#include "text/number.hpp"       // for to_real
#include "text/stop.hpp"         // for stop_printed, fail, fail_in
#include "text/words.hpp"        // for trim, word_of, is_number

namespace vbn {

namespace {

constexpr int block_columns = 6;            // numbers in a row of a block of force constants
constexpr std::size_t constant_width = 10;  // columns of each
constexpr int block_atoms = 5;  // in a block of couplings, with a newer layout above this release:
constexpr double newer_block_release = 6.489999771118164;  // 6.49 in single precision

// The row from three characters after the "d" at `d` on.
std::string_view behind_d(std::string_view row, std::size_t d) {
  return trim(row.substr(d == std::string_view::npos ? row.size() : std::min(d + 3, row.size())));
}

// Place of the "d" of the label "dx", "dy" or "dz" in a row whose first "d" is in the element symbol, as in "
// 1 cd dx 0.1".
std::size_t label_d(std::string_view row) {
  const std::string_view label = word_of(row, is_number(word_of(row, 1)) ? 3 : 1);
  if (label.size() < 2 || label[0] != 'd' || label[1] < 'x' || label[1] > 'z') return std::string_view::npos;
  return static_cast<std::size_t>(label.data() - row.data());
}

// The numbers of a row in their fields, none of which may be blank.
bool read_row(std::string_view fields, std::span<double> numbers) {
  static const layout columns("(6f10.7)");
  return fields.size() > constant_width * (numbers.size() - 1) && read_fixed(fields, columns, numbers);
}

// Release of a version word such as "6.5", "7.4.1" or "5 9 0": its first two numbers.
double release(const qm_file& from) {
  std::string number;
  int points = 0;
  for (const char c : from.version.trimmed()) {
    if (c == '.' || c == ' ') {
      if (++points == 2) break;
      number += '.';
    } else {
      number += c;
    }
  }
  double release = 0.0;
  if (!to_real(number, release)) {
    fail_in(from.file.name(), "cannot read the version \"" + from.version.str() + "\" of the program",
            "a version such as V6.5 after \"TURBOMOLE\", which decides the layout of the couplings");
  }
  return release;
}

// Couplings in blocks of up to five atoms, a component a line. All blocks have the layout of the first.
void read_coupling_blocks(input_file& file, bool newer, array2<double>& nacme) {
  const int natom = nacme.cols();
  const int first_columns = std::min(block_atoms, natom);
  const std::string n = std::to_string(first_columns);
  const layout columns(newer ? "(5x," + n + "(x,E14.7))" : "(7x," + n + "(  E14.7))");
  const std::size_t label_width = newer ? 5 : 7;
  const std::size_t field_width = newer ? 15 : 14;
  const std::string expected = "the coupling of " + n + " atoms or less in fields of 14 columns";

  for (int ib = 1; ib <= natom; ib += block_atoms) {
    const std::size_t count = static_cast<std::size_t>(std::min(block_atoms, natom - ib + 1));
    skip_rows(file, 2, "a block of couplings");
    for (int c = 1; c <= 3; ++c) {
      std::string_view line;
      std::array<double, block_atoms> numbers{};
      // The numbers end at the right edge of their fields, so a shorter line has been cut.
      if (!file.read_line(line) || trim(line).size() < label_width + count * field_width ||
          !read_fixed(line, columns, std::span(numbers).first(count))) {
        fail(file.here("cannot read a line of couplings", expected));
      }
      for (std::size_t k = 0; k < count; ++k) nacme(c, ib + static_cast<int>(k)) = numbers[k];
    }
  }
}

}  // namespace

std::optional<int> turbomole_natom(input_file& file) {
  std::string_view line;
  if (!search_word_del_space(file, "total:", line)) return std::nullopt;
  return row_integer(file, line, 2, "\"total:\" and the number of atoms");
}

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

// The lower triangle in blocks of six columns.
array2<double> turbomole_fc(input_file& file, int natom) {
  const std::string expected = "\"dx\", \"dy\" or \"dz\" and up to six force constants of ten columns";
  std::string_view line;
  if (!search_word_free(file, "CARTESIAN FORCE CONSTANT MATRIX", line)) {
    file.warn(file.name() + " has no force constants; use the output of aoforce");
    tell_and_stop({"Error!", "Can not find force constant matrix in turbomole log file. Stop!"});
  }
  array2<double> fc = force_constant_matrix(file, natom);
  const auto heading = [&](int ib) {
    if (!search_word_free(file, "ATOM", line)) {
      fail_missing(file, "the block of force constants from column " + std::to_string(ib) + " on",
                   "a line with \"ATOM\"");
    }
    skip_rows(file, 1, "a block of force constants");
  };
  const auto row = [&](std::span<double> numbers) {
    if (!file.read_line(line)) fail(file.here("the file ends too early", expected));
    if (!read_row(behind_d(line, line.find('d')), numbers) &&
        !read_row(behind_d(line, label_d(line)), numbers)) {
      fail(file.here("cannot read the line", expected));
    }
  };
  read_lower_blocks(fc, block_columns, heading, row);
  mirror_upper(fc);
  return fc;
}

namespace {

// Moves to the heading of the excitation that the file says it has followed, or to the first: "1 singlet a
// excitation", in columns 38 to 47 where the label of the representation has one letter.
bool to_excitation(input_file& file) {
  constexpr std::string_view marker = "Excited state no.";
  std::string_view line;
  const std::size_t after_atoms = file.position();
  const std::size_t at = file.content().find(marker, after_atoms);
  int followed = 1;
  if (at != std::string_view::npos) {
    const std::string_view rest = file.content().substr(at + marker.size(), 40);
    if (rest.find("chosen for optimization") == std::string_view::npos ||
        !to_integer(word_of(rest, 1), followed))
      followed = 1;
  }
  const std::string number = std::to_string(followed);
  while (search_word_free(file, " excitation", line)) {
    if (word_of(line, 1) == number && word_of(line, number_of_words(line)) == "excitation") return true;
  }
  return false;
}

}  // namespace

void turbomole_nacme(qm_file& from, file_couplings& read) {
  constexpr std::string_view heading = "Atomic coordinate, charge and isotop information";
  input_file& file = from.file;
  std::string_view line;
  if (!search_word_free(file, heading, line)) {
    stop_printed(free_line({"Can not find", heading}) + free_line({"in", file.name()}) +
                 free_line({"Stop!"}));
  }
  if (!search_word_first_letter(file, line))
    fail_missing(file, "the atoms", "the heading of the table of atoms");
  // Coordinates and symbol, in older versions the shells too, then the charge.
  const int words = word_of(line, 4) == "charge" ? 4 : 5;
  const std::string atom_row =
      "x, y, z and symbol of an atom, and its charge as word " + std::to_string(words + 1);
  for (double& z : read.z) row_numbers(file, next_row(file, atom_row), words, {&z, 1}, atom_row);

  if (!to_excitation(file) || !search_word(file, 2, "Excitation energy:", line)) {
    fail_missing(file, "the vertical energy",
                 "\"excitation\" in columns 38 to 47, then \"Excitation energy:\" in columns 2 to 19");
  }
  read.e_vert = energy_word(file, line, 3, "the energy in hartree");

  if (!search_word(file, 12, "cartesian nonadiabatic coupling matrix elements", line)) {
    fail_missing(file, "the couplings",
                 "\"cartesian nonadiabatic coupling matrix elements\" in columns 12 to 58 after the energy");
  }
  skip_rows(file, 1, "the couplings");
  read_coupling_blocks(file, release(from) > newer_block_release, read.nacme);
  check_divisors(file, read);
  for (int i = 1; i <= read.natom(); ++i) {
    for (int c = 1; c <= 3; ++c) read.tranele(c, i) = read.e_vert * read.nacme(c, i) / read.z(i);
  }
}

}  // namespace vbn
