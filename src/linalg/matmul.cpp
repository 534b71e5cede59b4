// Products of dense matrices by BLAS dgemm, and of a matrix and a vector in a fixed order.
#include "linalg/matmul.hpp"  // for matmul

#include <stdexcept>

#include "linalg/blas.hpp"         // for dgemm_
#include "linalg/blas_memory.hpp"  // for require_blas_memory

namespace vbn {

void matmul_add(double alpha, const array2<double>& a, op op_a, const array2<double>& b, op op_b, double beta,
                array2<double>& c) {
  const int m = op_a == op::plain ? a.rows() : a.cols();
  const int k = op_a == op::plain ? a.cols() : a.rows();
  const int k_of_b = op_b == op::plain ? b.rows() : b.cols();
  const int n = op_b == op::plain ? b.cols() : b.rows();
  if (k != k_of_b || c.rows() != m || c.cols() != n)
    throw std::logic_error("matrix product of unequal extents");
  if (m == 0 || n == 0) return;
  const char ta = op_a == op::plain ? 'N' : 'T';
  const char tb = op_b == op::plain ? 'N' : 'T';
  const int lda = a.rows() > 0 ? a.rows() : 1;
  const int ldb = b.rows() > 0 ? b.rows() : 1;
  require_blas_memory();
  dgemm_(&ta, &tb, &m, &n, &k, &alpha, a.data(), &lda, b.data(), &ldb, &beta, c.data(), &m);
}

array2<double> matmul(const array2<double>& a, const array2<double>& b, op op_a, op op_b) {
  array2<double> c(op_a == op::plain ? a.rows() : a.cols(), op_b == op::plain ? b.cols() : b.rows());
  matmul_add(1.0, a, op_a, b, op_b, 0.0, c);
  return c;
}

array1<double> transposed_product(const array2<double>& a, std::span<const double> v) {
  array1<double> product(a.cols());
  for (int j = 1; j <= a.cols(); ++j) {
    const std::span<const double> column = a.column(j);
    double sum = 0.0;
    for (std::size_t k = 0; k < column.size(); ++k) sum += column[k] * v[k];
    product(j) = sum;
  }
  return product;
}

array2<double> transposed(const array2<double>& a) {
  array2<double> t(a.cols(), a.rows());
  for (int j = 1; j <= a.cols(); ++j)
    for (int i = 1; i <= a.rows(); ++i) t(j, i) = a(i, j);
  return t;
}

}  // namespace vbn
