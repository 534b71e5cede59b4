// Reads the rows of tables in the files of other programs, with messages when they are missing.
#pragma once

#include <initializer_list>
#include <span>
#include <string_view>

#include "linalg/array.hpp"     // for array1, array2
#include "text/input_file.hpp"  // for input_file

namespace vbn {

// Stops the run, with lines on standard output, for `natom` below 1; ends it with a message for more atoms
// than the size of the file allows.
void check_natom(const input_file& file, int natom);

// Warns if the last read ended at the end of a file without a line end: its last number may have lost digits.
void warn_if_cut(const input_file& file);

// Ends the run: `what`, at the line that `marker` describes, is not in the file.
[[noreturn]] void fail_missing(const input_file& file, std::string_view what, std::string_view marker);

// Prints the lines to standard output and stops the run.
[[noreturn]] void tell_and_stop(std::initializer_list<std::string_view> lines);

// Skips lines of a table. A file with fewer lines ends the run.
void skip_rows(input_file& file, int count, std::string_view table);

// The next line that is not blank. At the end of the file the run ends.
std::string_view next_row(input_file& file, std::string_view expected);

// The line as free-form values: drops `words` words and reads all numbers after them. A line without them all
// ends the run; `expected` says in the message what it should hold.
void row_numbers(const input_file& file, std::string_view line, int words, std::span<double> numbers,
                 std::string_view expected);

// The same; the result says whether it succeeded.
bool try_row_numbers(std::string_view line, int words, std::span<double> numbers);

// Free-form read of all numbers, over as many lines as they take. A number that is missing ends the run.
void all_numbers(input_file& file, std::span<double> numbers, std::string_view expected);

// Word k of the line as an integer. A line without it ends the run.
int row_integer(const input_file& file, std::string_view line, int k, std::string_view expected);

// The tables of atoms, an atom a row, from the next line that is not blank on. Word k of each row is the
// element symbol, of which at most `width` characters count. A label that is no symbol may be a symbol
// followed by other characters, as H1, if the nuclear charge in word `charge_word` (0 for no such word)
// agrees.
void symbol_rows(input_file& file, int k, array1<int>& nat, std::size_t width = std::string_view::npos,
                 int charge_word = 0);
// Word k of each row is the atomic number.
void number_rows(input_file& file, int k, array1<int>& nat);
// Word k of each row is the mass.
void mass_rows(input_file& file, int k, array1<double>& mass);
// After `words` words each row has x, y and z, in bohr or, with `angstrom`, in angstrom.
void coordinate_rows(input_file& file, int words, bool angstrom, array2<double>& x);

// Number of rows up to the next blank line. A file that ends inside the table ends the run.
int rows_to_blank(input_file& file);

// Masses of the elements from the table of the most abundant isotopes.
void element_masses(const array1<int>& nat, array1<double>& mass);

}  // namespace vbn
