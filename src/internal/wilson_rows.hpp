// Values of single internal coordinates and their rows of the Wilson B matrix.
#pragma once

#include <array>

#include "linalg/vector3.hpp"  // for vector3

namespace vbn {

// An internal coordinate of given atoms: its value (angstrom for a stretch, radians for an angle) and its
// derivatives with respect to the atomic coordinates in angstrom, b[0] those of the first atom of its
// definition. Formulas after Wilson, Decius, Cross, Molecular Vibrations (1955), section 4-1.
struct wilson_row {
  double z = 0.0;
  std::array<vector3, 4> b{};
};

// Unit vector from one atom to another and their distance.
struct direction {
  vector3 r{};
  double d = 0.0;
};

// d = |x1 - x2|, r = (x1 - x2) / d.
direction get_r_d(const vector3& x1, const vector3& x2);

// sqrt(1 - cosine^2), 0 for a cosine that is beyond 1 by rounding.
double sine_of(double cosine);

// Bond stretch i-j.
wilson_row stretch_row(const direction& ij);

// Bend i-j-k about a centre j with i, j and k nearly in a line: the derivatives are those of a bend in one
// plane, spanned by the line and the diagonal of the x and y axes, or by the line and the z axis if the line
// is along that diagonal.
wilson_row linear_bend_row(const direction& ij, const direction& kj);

// Bend i-j-k about j. The sine of the angle must not be zero.
wilson_row bend_row(const direction& ij, const direction& kj);

// Dihedral i-j-k-l, from -pi to pi. The sines of the angles at j and k must not be zero.
wilson_row dihedral_row(const direction& ij, const direction& kj, const direction& lk);

// Angle of the bond i-j out of the plane k-j-l, from -pi/2 to pi/2. False, with `row` unchanged, if the
// coordinate has no value or no derivatives: k, j and l in a line, or i-j along the normal of their plane.
bool improper_row(const direction& ij, const direction& kj, const direction& lj, wilson_row& row);

}  // namespace vbn
