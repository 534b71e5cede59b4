// The factorisation L D L^T of complex symmetric matrices without pivots.
#pragma once

#include <complex>
#include <vector>

#include "linalg/array.hpp"  // for array2

namespace vbn {

using complex = std::complex<double>;

// Scratch memory of `factor_ldlt`, to be kept from one matrix to the next.
struct ldlt_panel {
  std::vector<double> re, im, row_re, row_im;
};

// Factors the complex symmetric matrix whose lower triangle is in `a`. On return the unit lower triangle L is
// below the diagonal, D on it, and D L^T above. Only for matrices that need no pivots, such as those with a
// positive definite real part, whose pivots D have positive real parts too (a Schur complement inherits
// that). Blocked over columns; all sums have a fixed order, so the bits depend on the matrix alone.
void factor_ldlt(array2<complex>& a, ldlt_panel& panel);

// b := L^-1 b for the columns of b. With D it gives bilinear forms: v A^-1 w = sum of (L^-1 v)(L^-1 w)/D.
void solve_lower(const array2<complex>& a, array2<complex>& b);

// b := A^-1 b.
void solve_ldlt(const array2<complex>& a, array2<complex>& b);

}  // namespace vbn
