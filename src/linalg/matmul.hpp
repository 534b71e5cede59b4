// Products of dense matrices and vectors.
#pragma once

#include <span>

#include "linalg/array.hpp"  // for array1, array2

namespace vbn {

// Whether an operand is used as it is or transposed.
enum class op { plain, transposed };

// op(a) x op(b) by BLAS dgemm.
array2<double> matmul(const array2<double>& a, const array2<double>& b, op op_a = op::plain,
                      op op_b = op::plain);

// c := alpha op(a) x op(b) + beta c by BLAS dgemm; c has the extents of the product.
void matmul_add(double alpha, const array2<double>& a, op op_a, const array2<double>& b, op op_b, double beta,
                array2<double>& c);

// a^T v, as the projection of a vector on the modes in the columns of a. Each sum runs over the rows from the
// first to the last: BLAS promises no order, and the order fixes the last bits.
array1<double> transposed_product(const array2<double>& a, std::span<const double> v);

// The transpose of a.
array2<double> transposed(const array2<double>& a);

}  // namespace vbn
