// Symmetric matrices whose lower triangle is in a file, such as force constants.
#pragma once

#include <functional>
#include <span>

#include "linalg/array.hpp"     // for array2
#include "text/input_file.hpp"  // for input_file

namespace vbn {

// The matrix of the force constants of `natom` atoms, (3 natom, 3 natom), to be filled. A file that is too
// short for half of their number ends the run.
array2<double> force_constant_matrix(const input_file& file, int natom);

// Reads a lower triangle that is printed in blocks of `width` columns. A block begins at its own diagonal, so
// each of its first rows has one number more than the row before. `heading` skips the heading of the block
// from a column on; `row` reads the numbers of the next row. Row i is stored in column i, from its first
// element on; `mirror_upper` then completes the matrix.
void read_lower_blocks(array2<double>& a, int width, const std::function<void(int)>& heading,
                       const std::function<void(std::span<double>)>& row);

// a(i,j) = a(j,i) for all j below i.
void mirror_upper(array2<double>& a);

}  // namespace vbn
