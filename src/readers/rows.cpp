// Rows of tables: words and numbers of a line, and the messages when they are missing.
#include "readers/rows.hpp"  // for the routines

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "molecule/constants.hpp"  // for bohr_to_ang, max_element
#include "molecule/elements.hpp"   // for symbol_to_nat, element_symbol, nat_to_mass
#include "text/free_form.hpp"      // for read_free_after
#include "text/layout.hpp"         // for layout
#include "text/messages.hpp"       // for lines_of
#include "text/number.hpp"         // for to_integer
#include "text/stop.hpp"           // for stop_printed, fail, fail_in
#include "text/words.hpp"          // for word_of, is_number, is_letter, lowercase

namespace vbn {

namespace {

constexpr std::size_t bytes_per_atom = 6;  // at least: three coordinates of a digit, and what separates them

// A number that a read leaves unchanged (a comma without a value before it, a slash) keeps this mark.
constexpr double unread = std::numeric_limits<double>::quiet_NaN();

void mark_unread(std::span<double> numbers) { std::fill(numbers.begin(), numbers.end(), unread); }

// Atomic number of a label that is an element symbol followed by other characters; 0 for none. With a nuclear
// charge in the row the label must begin with the symbol of that charge (Hw with 1.0, CA2 with 6.0), or the
// charge must be smaller, as with a pseudopotential for the core. Without a charge only digits may follow the
// symbol.
int nat_of_label(std::string_view label, std::string_view charge) {
  const auto letters_end = std::find_if_not(label.begin(), label.end(), [](char c) {
    return is_letter({&c, 1});
  });
  const std::string_view letters(label.begin(), letters_end);
  const int by_letters = symbol_to_nat(letters);
  if (charge.empty()) return is_number(label.substr(letters.size())) ? by_letters : 0;
  double z = 0.0;
  if (!to_real(charge, z) || z != std::floor(z) || z < 1.0 || z > max_element) return 0;
  const int by_charge = static_cast<int>(z);
  const std::string_view symbol = element_symbol(by_charge);
  if (lowercase(label.substr(0, symbol.size())) == lowercase(symbol)) return by_charge;
  return by_letters > by_charge ? by_letters : 0;
}

bool all_read(std::span<const double> numbers) {
  return std::none_of(numbers.begin(), numbers.end(), [](double r) { return std::isnan(r); });
}

}  // namespace

void check_natom(const input_file& file, int natom) {
  if (natom < 1) {
    static const layout error(R"x((2x,"Error!"))x");
    static const layout count(R"x((2x,"natom =", i20))x");
    static const layout stopped(R"x((2x,"Stop!"))x");
    stop_printed(lines_of(error) + lines_of(count, {natom}) + lines_of(stopped));
  }
  if (static_cast<std::size_t>(natom) > file.content().size() / bytes_per_atom) {
    fail_in(file.name(), "the file is too short for " + std::to_string(natom) + " atoms",
            "a line for every atom; the number of atoms in the file may be wrong");
  }
}

void warn_if_cut(const input_file& file) {
  if (file.at_end() && !file.content().empty() && file.content().back() != '\n') {
    file.warn(file.name() + " ends with a number and without a line end: the file may be cut off");
  }
}

void fail_missing(const input_file& file, std::string_view what, std::string_view marker) {
  fail_in(file.name(), "cannot find " + std::string(what),
          std::string(marker) + "; the file may be incomplete, or of a job that does not print it");
}

void tell_and_stop(std::initializer_list<std::string_view> lines) {
  static const layout whole_line("(a)");
  std::string printed;
  for (const std::string_view line : lines) printed += lines_of(whole_line, {line});
  stop_printed(std::move(printed));
}

void skip_rows(input_file& file, int count, std::string_view table) {
  if (!file.skip_lines(count)) fail(file.here("the file ends too early", std::string(table)));
}

std::string_view next_row(input_file& file, std::string_view expected) {
  std::string_view line;
  while (file.read_line(line)) {
    if (!word_of(line, 1).empty()) return line;
  }
  fail(file.here("the file ends too early", std::string(expected)));
}

void row_numbers(const input_file& file, std::string_view line, int words, std::span<double> numbers,
                 std::string_view expected) {
  if (!try_row_numbers(line, words, numbers)) fail(file.here("cannot read the line", std::string(expected)));
}

bool try_row_numbers(std::string_view line, int words, std::span<double> numbers) {
  mark_unread(numbers);
  return read_free_after(line, words, numbers) && all_read(numbers);
}

void all_numbers(input_file& file, std::span<double> numbers, std::string_view expected) {
  mark_unread(numbers);
  file.read(numbers, expected);
  if (!all_read(numbers)) fail(file.here("a value is missing", std::string(expected)));
}

int row_integer(const input_file& file, std::string_view line, int k, std::string_view expected) {
  int i = 0;
  if (!to_integer(word_of(line, k), i)) {
    fail(file.here("cannot read the line", std::string(expected)));
  }
  return i;
}

namespace {

// Whether the charge can be that of the element: its atomic number, or this less the electrons of a core that
// an effective potential replaces. The tag CA beside a charge of 6 is a carbon, not calcium.
bool charge_fits(int number, std::string_view charge) {
  constexpr int cores[] = {0, 2, 10, 18, 28, 36, 46, 54, 60, 68, 78};
  double z = 0.0;
  if (!to_real(charge, z) || z != std::floor(z) || z < 1.0) return true;
  return std::ranges::find(cores, number - static_cast<int>(std::min(z, 200.0))) != std::end(cores);
}

}  // namespace

void symbol_rows(input_file& file, int k, array1<int>& nat, std::size_t width, int charge_word) {
  const std::string expected = "an atom with its element symbol as word " + std::to_string(k);
  for (int& number : nat) {
    const std::string_view row = next_row(file, expected);
    const std::string_view label = word_of(row, k);
    number = symbol_to_nat(label.substr(0, width));
    if (charge_word > 0 && !charge_fits(number, word_of(row, charge_word))) number = 0;
    if (number == 0) number = nat_of_label(label, charge_word == 0 ? "" : word_of(row, charge_word));
    if (number == 0) fail(file.here("no element has this symbol", expected));
  }
}

void number_rows(input_file& file, int k, array1<int>& nat) {
  const std::string expected = "an atom with its atomic number as word " + std::to_string(k);
  for (int& number : nat) number = row_integer(file, next_row(file, expected), k, expected);
}

void mass_rows(input_file& file, int k, array1<double>& mass) {
  const std::string expected = "an atom with its mass as word " + std::to_string(k);
  for (double& m : mass) row_numbers(file, next_row(file, expected), k - 1, {&m, 1}, expected);
}

void coordinate_rows(input_file& file, int words, bool angstrom, array2<double>& x) {
  const std::string expected = "an atom: " + std::to_string(words) + " words, then x, y and z";
  for (int i = 1; i <= x.cols(); ++i)
    row_numbers(file, next_row(file, expected), words, x.column(i), expected);
  if (angstrom) {
    for (double& r : x.span()) r /= bohr_to_ang;
  }
}

int rows_to_blank(input_file& file) {
  std::string_view line;
  for (int n = 0; file.read_line(line); ++n) {
    if (word_of(line, 1).empty()) return n;
  }
  fail(file.here("the file ends inside the table of atoms", "a blank line after its last row"));
}

void element_masses(const array1<int>& nat, array1<double>& mass) {
  for (int i = 1; i <= nat.size(); ++i) mass(i) = nat_to_mass(nat(i));
}

}  // namespace vbn
