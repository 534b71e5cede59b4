// What readers of whole states share: tables of atoms, matrices in blocks of columns, and checks of a state.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "linalg/array.hpp"        // for array2
#include "readers/file_state.hpp"  // for file_state
#include "text/input_file.hpp"     // for input_file

namespace vbn {

// Where the parts of a row of atoms are, in words from 1.
struct atom_row {
  int label = 1;          // the symbol, to which digits may be appended
  int charge = 0;         // the nuclear charge, which then gives the element; 0 for none
  int before_x = 1;       // words before x, y and z
  int mass = 0;           // word of the mass, 0 for none
  bool angstrom = false;  // the coordinates are in angstrom, otherwise in bohr
};

// Atomic number of a symbol that digits may follow, as C12; 0 for none.
int element_of_label(std::string_view label);

// A state of so many atoms with arrays of their sizes. A file that is too short for their force constants
// ends the run before anything is allocated.
file_state sized_state(const input_file& file, int natom);

// The atoms of a table, an atom a row, from the next line that is not blank up to the first row that is no
// atom or has another number of words. Rows of charge 0 (dummy atoms) are left out. Without masses in the
// rows those of the most abundant isotopes are taken. A table without atoms ends the run. The force constants
// have their size.
file_state read_atoms(input_file& file, const atom_row& row, std::string_view table);

// Reads a full square that is printed in blocks of columns with a line of column numbers over each block. A
// row has `words` words before its numbers, the first of which is the number of the row. Columns and rows
// count from `first`. A number out of order, or another number of columns, ends the run.
void read_square_blocks(input_file& file, int first, int words, array2<double>& a);

// Reads a lower triangle that is printed in blocks of six columns, with a label in the first seven characters
// of each row, and completes the matrix.
void read_labelled_triangle(input_file& file, array2<double>& a);

// Makes a matrix of force constants (hartree/bohr^2) symmetric with the means of both triangles. A difference
// between the triangles above 0.01 gives a warning, one above 0.1 ends the run.
void take_mean_of_triangles(const input_file& file, array2<double>& fc);

// Force constants from a matrix that is divided by the roots of the masses of its rows and columns; `factor`
// converts its unit, for masses in amu, to hartree/bohr^2.
void remove_masses(const array1<double>& mass, double factor, array2<double>& fc);

// Appends the numbers of a line after `words` words, up to the first word that is no number. An imaginary
// frequency, as 825.18i or 825.18 I, is appended as a negative number.
void append_numbers(std::string_view line, int words, std::vector<double>& numbers);

// The same for all rows from here to the byte at `end` that begin with `label`, after the label.
void append_rows(input_file& file, std::string_view label, std::size_t end, std::vector<double>& numbers);

// The offset of the last `word` before the byte at `end`; npos for none.
std::size_t last_before(const input_file& file, std::string_view word, std::size_t end);

// The word after the last `marker` before the byte at `end`, in the line of the marker; empty for none.
std::string word_after_last(const input_file& file, std::string_view marker, std::size_t end);

// As `last_before`; without the word the run ends, since `what` is missing.
std::size_t need_before(const input_file& file, std::string_view word, std::size_t end,
                        std::string_view what);

// The name of the first existing file that has the name of this one with another of the endings, as ".out";
// empty for none.
std::string beside(const input_file& file, std::initializer_list<std::string_view> endings);

// Ends the run if the parts of a state do not have the same number of atoms, or if its geometry is from
// another file and is in another frame than the force constants.
void check_state(const input_file& file, const file_state& state);

}  // namespace vbn
