// Reads the rows of tables in other programs' files and words the messages when there are none.
#pragma once

#include <initializer_list>
#include <span>
#include <string_view>

#include "linalg/array.hpp"     // for array1, array2
#include "text/input_file.hpp"  // for input_file

namespace vbn {

// Stops the run, as told on standard output, for `natom` below 1; ends it with a message for more atoms than
// the file has room for.
void check_natom(const input_file& file, int natom);

// Warns when the read that came last has ended at the end of a file without a line end: its last number may
// have lost digits.
void warn_if_cut(const input_file& file);

// Ends the run: `what` was looked for in the file, by the line that `marker` describes, and is not there.
[[noreturn]] void fail_missing(const input_file& file, std::string_view what, std::string_view marker);

// Tells the lines on standard output and stops the run, as the messages of missing tables do.
[[noreturn]] void tell_and_stop(std::initializer_list<std::string_view> lines);

// Skips lines that belong to a table. A file that ends before ends the run.
void skip_rows(input_file& file, int count, std::string_view table);

// The next line that is not blank. At the end of the file the run ends.
std::string_view next_row(input_file& file, std::string_view expected);

// The line as free-form values: drops `words` words and reads all numbers behind them. A line that does not
// hold them all ends the run; `expected` says in the message what it should hold.
void row_numbers(const input_file& file, std::string_view line, int words, std::span<double> numbers,
                 std::string_view expected);

// The same, asking for the outcome.
bool try_row_numbers(std::string_view line, int words, std::span<double> numbers);

// Free-form read of all numbers, over as many lines as they take. A number that is missing ends the run.
void all_numbers(input_file& file, std::span<double> numbers, std::string_view expected);

// Word k of the line as an integer. A line without it ends the run.
int row_integer(const input_file& file, std::string_view line, int k, std::string_view expected);

// The tables of atoms, an atom a row, from the next line that is not blank on.
// Word k of each row is the element's symbol, of which at most `width` characters count. A label that is no
// symbol is taken as one with something behind it, as H1, and holds when the nuclear charge in word
// `charge_word` (0 for no such word) allows it.
void symbol_rows(input_file& file, int k, array1<int>& nat, std::size_t width = std::string_view::npos,
                 int charge_word = 0);
// Word k of each row is the atomic number.
void number_rows(input_file& file, int k, array1<int>& nat);
// Word k of each row is the mass.
void mass_rows(input_file& file, int k, array1<double>& mass);
// Behind `words` words each row has x, y and z, which are taken in bohr or, with `angstrom`, converted.
void coordinate_rows(input_file& file, int words, bool angstrom, array2<double>& x);

// Number of rows up to the next blank line. A file that ends inside the table ends the run.
int rows_to_blank(input_file& file);

// Table masses of the elements.
void element_masses(const array1<int>& nat, array1<double>& mass);

}  // namespace vbn
