// The symmetric eigenproblem with the sign rule.
#include "linalg/eigen.hpp"  // for diag_symm, sort_vec_large

#include <cmath>

namespace vbn {

void sort_vec_large(int m, int n, array2<double>& c) {
  if (m <= 0) return;
  for (int i = 1; i <= n; ++i) {
    int largest = 1;
    for (int j = 2; j <= m; ++j)
      if (std::abs(c(j, i)) > std::abs(c(largest, i))) largest = j;
    if (c(largest, i) < 0.0)
      for (int j = 1; j <= m; ++j) c(j, i) = -c(j, i);
  }
}

void diag_symm(const array2<double>& matrix, array1<double>& eval, array2<double>& vector, int& info) {
  array1<double> e;
  tred2e(matrix, eval, e, vector);
  tql2e(eval, e, vector, info);
  sort_vec_large(vector.rows(), vector.cols(), vector);
}

array1<double> eigenvalues_symm(const array2<double>& matrix) {
  array1<double> eval;
  array1<double> e;
  array2<double> none;
  int info = 0;
  tred1e(matrix, eval, e);
  tql2e(eval, e, none, info);
  return eval;
}

}  // namespace vbn
