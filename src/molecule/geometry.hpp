// Geometries: their centre of mass, and the distance of two of them by each of its norms.
#pragma once

#include "linalg/array.hpp"  // for array1, array2

namespace vbn {

// Shapes: mass (natom), masses of any one unit; x, x1, x2 (3,natom), or as many vectors of the atoms.

// Shifts `x` so that its centre of mass is the origin.
void com(const array1<double>& mass, array2<double>& x);

// The distances, from the differences of the coordinates. Sums run atom by atom: their order fixes the last
// bits.
double largest_difference(const array2<double>& x1, const array2<double>& x2);
double root_sum_square(const array2<double>& x1, const array2<double>& x2);
double root_mean_square_of_coordinates(const array2<double>& x1, const array2<double>& x2);
double root_mean_square_of_atoms(const array2<double>& x1, const array2<double>& x2);

// The root mean square over the atoms after the best translation and rotation, each atom with the same
// weight: by the largest eigenvalue of the matrix of Horn, J. Opt. Soc. Am. A 4 (1987) 629.
double superposed_distance(const array2<double>& x1, const array2<double>& x2);

}  // namespace vbn
