// Coupling files of Gaussian, Molpro, NWChem and Turbomole.
#include "couplings/nacme_readers.hpp"  // for the interface

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "molecule/constants.hpp"  // for au_to_ev
#include "readers/file_type.hpp"   // for qm_file
#include "readers/rows.hpp"        // for the rows of the tables
#include "readers/scan.hpp"  // for search_word, search_word_free, search_word_del_space, search_word_first_number, search_word_first_letter
#include "text/layout.hpp"   // for layout
#include "text/number.hpp"   // for to_real
#include "text/output_file.hpp"  // for tell_free
#include "text/stop.hpp"         // for fail, fail_in, stop
#include "text/words.hpp"        // for trim, number_of_words, word_of

namespace vbn {

namespace {

constexpr int block_columns = 5;                           // atoms in a block of a Turbomole file
constexpr double newer_block_release = 6.489999771118164;  // its newer layout, above 6.49 in single precision

// What is read of a coupling file. A kind fills `nacme` or `tranele` and leaves the other one to `nacme_of`
// or `tranele_of`.
struct couplings {
  array1<double> z;  // (natom) nuclear charges
  double e_vert = 0.0;
  array2<double> nacme;
  array2<double> tranele;

  int natom() const { return z.size(); }
};

// The relation of coupling vector and transition field divides by the energy and by the charges, and so do
// the scales of the coupling by mode. An energy with fewer digits than a double holds counts as zero.
void check_divisors(const input_file& file, const couplings& read) {
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

// nacme(c,i) = tranele(c,i) x Z(i) / e_vert
void nacme_of_field(couplings& read) {
  for (int i = 1; i <= read.natom(); ++i) {
    for (int c = 1; c <= 3; ++c) read.nacme(c, i) = read.tranele(c, i) * read.z(i) / read.e_vert;
  }
}

// The first word of a text that is a real number; false when there is none.
bool first_real(std::string_view a, double& r) {
  for (int k = 1; k <= number_of_words(a); ++k) {
    if (to_real(word_of(a, k), r)) return true;
  }
  return false;
}

// Word k of the line last read as the vertical energy.
double energy_word(const input_file& file, std::string_view line, int k, const std::string& expected) {
  double energy = 0.0;
  if (!to_real(word_of(line, k), energy)) {
    fail(file.here("cannot read the vertical energy", expected + " as word " + std::to_string(k)));
  }
  return energy;
}

// The fields at the nuclei behind `words` words of each row. A table under this heading without fields, as
// one of the potentials alone, is passed by.
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

void read_gaussian(input_file& file, couplings& read) {
  std::string_view line;
  if (!search_word(file, 2, 9, "Charge =", line)) {
    fail_missing(file, "the atoms", "\"Charge =\" in columns 2 to 9 and a row for each atom behind it");
  }
  for (int i = 1; i <= read.natom(); ++i) next_row(file, "the symbol of an atom");

  if (!search_word_del_space(file, "Center Atomic Atomic Coordinates", line) ||
      !search_word_first_number(file, line)) {
    fail_missing(file, "the atomic numbers", "the table \"Center Atomic Atomic Coordinates\"");
  }
  file.back_line();
  array1<int> nat(read.natom());
  number_rows(file, 2, nat);
  std::copy(nat.begin(), nat.end(), read.z.begin());

  if (!search_word(file, 2, 18, "Excited State   1", line)) {
    fail_missing(file, "the vertical energy", "\"Excited State   1\" in columns 2 to 18 behind the geometry");
  }
  read.e_vert = energy_word(file, line, 5, "the energy in eV") / au_to_ev;

  read_fields(file, 3, read.tranele);
}

void read_molpro(input_file& file, couplings& read) {
  std::string_view line;
  if (!search_word(file, 2, 19, "ATOMIC COORDINATES", line)) {
    fail_missing(file, "the atoms", "\"ATOMIC COORDINATES\" in columns 2 to 19");
  }
  skip_rows(file, 3, "the table of atoms");
  const std::string atom_row = "number, symbol and charge of an atom";
  for (double& z : read.z) row_numbers(file, next_row(file, atom_row), 2, {&z, 1}, atom_row);

  file.rewind();
  if (!search_word(file, 2, 38, "Energy Difference at present geometry", line)) {
    fail_missing(file, "the vertical energy", "\"Energy Difference at present geometry\" in columns 2 to 38");
  }
  read.e_vert = energy_word(file, line, 6, "the energy in hartree");

  if (!search_word(file, 2, 35, "Derivative Coupling before scaling", line)) {
    fail_missing(file, "the couplings",
                 "\"Derivative Coupling before scaling\" in columns 2 to 35 behind the energy");
  }
  const std::string coupling_row = "the coupling x, y and z of an atom";
  for (int i = 1; i <= read.natom(); ++i) {
    row_numbers(file, next_row(file, coupling_row), 0, read.nacme.column(i), coupling_row);
  }
}

void read_nwchem(input_file& file, couplings& read) {
  std::string_view line;
  if (!search_word_free(file, "Output coordinates in angstroms", line) ||
      !search_word_free(file, "No.", line)) {
    fail_missing(file, "the atoms", "the table \"Output coordinates in angstroms\"");
  }
  skip_rows(file, 1, "the table of atoms");
  array1<int> nat(read.natom());
  symbol_rows(file, 2, nat);
  std::copy(nat.begin(), nat.end(), read.z.begin());

  if (!search_word_free(file, "Root   1", line)) {
    fail_missing(file, "the vertical energy", "\"Root   1\" behind the geometry");
  }
  const std::string_view columns = line.substr(std::min<std::size_t>(line.size(), 24), 31);
  if (!first_real(columns, read.e_vert)) {
    fail(file.here("cannot read the vertical energy", "the energy in hartree in columns 25 to 55"));
  }

  read_fields(file, 2, read.tranele);
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
            "a version such as V6.5 behind \"TURBOMOLE\", which decides the layout of the couplings");
  }
  return release;
}

// Couplings of up to five atoms a block, a component a line. All blocks have the layout of the first.
void read_coupling_blocks(input_file& file, bool newer, array2<double>& nacme) {
  const int natom = nacme.cols();
  const int first_columns = std::min(block_columns, natom);
  const std::string n = std::to_string(first_columns);
  const layout columns(newer ? "(5x," + n + "(x,E14.7))" : "(7x," + n + "(  E14.7))");
  const std::size_t label_width = newer ? 5 : 7;
  const std::size_t field_width = newer ? 15 : 14;
  const std::string expected = "the coupling of " + n + " atoms or less in fields of 14 columns";

  for (int ib = 1; ib <= natom; ib += block_columns) {
    const std::size_t count = static_cast<std::size_t>(std::min(block_columns, natom - ib + 1));
    skip_rows(file, 2, "a block of couplings");
    for (int c = 1; c <= 3; ++c) {
      std::string_view line;
      std::array<double, block_columns> numbers{};
      // The numbers end at the right edge of their fields: a shorter line has been cut.
      if (!file.read_line(line) || trim(line).size() < label_width + count * field_width ||
          !read_fixed(line, columns, std::span(numbers).first(count))) {
        fail(file.here("cannot read a line of couplings", expected));
      }
      for (std::size_t k = 0; k < count; ++k) nacme(c, ib + static_cast<int>(k)) = numbers[k];
    }
  }
}

void read_turbomole(qm_file& from, couplings& read) {
  constexpr std::string_view heading = "Atomic coordinate, charge and isotop information";
  input_file& file = from.file;
  std::string_view line;
  if (!search_word_free(file, heading, line)) {
    tell_free({"Can not find", heading});
    tell_free({"in", file.name()});
    tell_free({"Stop!"});
    stop();
  }
  if (!search_word_first_letter(file, line))
    fail_missing(file, "the atoms", "the head of the table of atoms");
  // Coordinates and symbol, in older versions the shells too, then the charge.
  const int words = word_of(line, 4) == "charge" ? 4 : 5;
  const std::string atom_row =
      "x, y, z and symbol of an atom, and its charge as word " + std::to_string(words + 1);
  for (double& z : read.z) row_numbers(file, next_row(file, atom_row), words, {&z, 1}, atom_row);

  if (!search_word(file, 38, 47, "excitation", line) ||
      !search_word(file, 2, 19, "Excitation energy:", line)) {
    fail_missing(file, "the vertical energy",
                 "\"excitation\" in columns 38 to 47, then \"Excitation energy:\" in columns 2 to 19");
  }
  read.e_vert = energy_word(file, line, 3, "the energy in hartree");

  if (!search_word(file, 12, 58, "cartesian nonadiabatic coupling matrix elements", line)) {
    fail_missing(file, "the couplings",
                 "\"cartesian nonadiabatic coupling matrix elements\" in columns 12 to 58 behind the energy");
  }
  skip_rows(file, 1, "the couplings");
  read_coupling_blocks(file, release(from) > newer_block_release, read.nacme);
}

}  // namespace

void qm_file_nacme(qm_file& file, int natom, array2<double>& nacme, array2<double>& tranele, double& e_vert,
                   int& info) {
  check_natom(file.file, natom);
  info = -1;
  couplings read{array1<double>(natom), 0.0, array2<double>(3, natom), array2<double>(3, natom)};
  file.file.rewind();
  if (file.type == "GAUSSIAN LOG") {
    read_gaussian(file.file, read);
    check_divisors(file.file, read);
    nacme_of_field(read);
  } else if (file.type == "NWCHEM") {
    read_nwchem(file.file, read);
    check_divisors(file.file, read);
    nacme_of_field(read);
  } else if (file.type == "MOLPRO") {
    read_molpro(file.file, read);
    check_divisors(file.file, read);
    for (int i = 1; i <= natom; ++i) {
      for (int c = 1; c <= 3; ++c) read.tranele(c, i) = read.nacme(c, i) / read.z(i) * read.e_vert;
    }
  } else if (file.type == "TURBOMOLE") {
    read_turbomole(file, read);
    check_divisors(file.file, read);
    for (int i = 1; i <= natom; ++i) {
      for (int c = 1; c <= 3; ++c) read.tranele(c, i) = read.e_vert * read.nacme(c, i) / read.z(i);
    }
  } else {
    fail_in(file.file.name(), "a file of kind \"" + file.type.str() + "\" has no couplings that can be read",
            "an output of Gaussian, Molpro, NWChem or Turbomole");
  }
  warn_if_cut(file.file);
  const auto finite = [](double r) { return std::isfinite(r); };
  if (!std::ranges::all_of(read.nacme.span(), finite) || !std::ranges::all_of(read.tranele.span(), finite)) {
    fail_in(file.file.name(), "the couplings are beyond the range of numbers",
            "energy, charges and couplings of a sound calculation");
  }
  nacme = std::move(read.nacme);
  tranele = std::move(read.tranele);
  e_vert = read.e_vert;
  info = 0;
}

}  // namespace vbn
