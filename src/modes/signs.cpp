// Conventions for the arbitrary signs of the modes.
#include "modes/signs.hpp"  // for set_positive_diag, set_proper_rotation

#include "linalg/eigen.hpp"        // for sort_vec_large
#include "modes/duschinsky.hpp"    // for get_vbn
#include "linalg/blas.hpp"         // for dgetrf_
#include "linalg/blas_memory.hpp"  // for require_blas_memory

namespace vbn {

namespace {

void negate_column(array2<double>& c, int j) {
  for (double& element : c.column(j)) element = -element;
}

// The determinant from the LU factorisation; each exchange of rows changes its sign. The product of the
// diagonal cannot overflow since the matrix is orthogonal.
double determinant(array2<double> c) {
  const int n = c.rows();
  array1<int> ipiv(n);
  int info = 0;
  require_blas_memory();
  dgetrf_(&n, &n, c.data(), &n, ipiv.data(), &info);
  double det = 1.0;
  for (int i = 1; i <= n; ++i) {
    det *= c(i, i);
    if (ipiv(i) != i) det = -det;
  }
  return det;
}

}  // namespace

void set_positive_diag(array1<states>& state, bool positive_diag, const input_keys& keys,
                       const messages& say) {
  if (!positive_diag) return;
  states& g = state(1);
  states& e = state(2);
  const int n3 = g.atoms.n3;
  sort_vec_large(n3, n3, g.modes.cm);
  sort_vec_large(n3, n3, e.modes.cm);
  get_vbn(state, keys, say);
  // Each test reads the matrix from before this call, so the changes of sign do not affect each other.
  for (int i = 1; i <= n3; ++i) {
    const int j2 = e.modes.order(i);
    if (g.modes.s(g.modes.order(i), j2) < 0.0) negate_column(e.modes.cm, j2);
  }
  get_vbn(state, keys, say);
}

void set_proper_rotation(array1<states>& state, bool proper_rotation, const input_keys& keys,
                         const messages& say) {
  if (!proper_rotation) return;
  states& g = state(1);
  states& e = state(2);
  double smin = 1.0e99;
  int k1 = 1;
  int k2 = 1;
  for (int i = 1; i <= g.atoms.n3; ++i) {
    const int j1 = g.modes.order(i);
    const int j2 = e.modes.order(i);
    if (g.modes.s(j1, j2) < smin) {
      smin = g.modes.s(j1, j2);
      k1 = j1;
      k2 = j2;
    }
  }
  if (determinant(g.modes.cm) < 0.0) negate_column(g.modes.cm, k1);
  if (determinant(e.modes.cm) < 0.0) negate_column(e.modes.cm, k2);
  get_vbn(state, keys, say);
}

}  // namespace vbn
