// The dense symmetric eigenproblem: Householder reduction, implicit QL iteration and the sign rule.
#pragma once

#include "linalg/array.hpp"  // for array1, array2

namespace vbn {

struct lane_kernels;

// Eigenvalues of the n x n matrix in increasing order into eval (n), eigenvectors into the columns of vector
// (n,n), each with its element of largest magnitude positive. Only the lower triangle of matrix is read. info
// as in `tql2e`.
void diag_symm(const array2<double>& matrix, array1<double>& eval, array2<double>& vector, int& info);

// Only the eigenvalues, the same bits in a third of the time.
array1<double> eigenvalues_symm(const array2<double>& matrix);

// Householder reduction of the n x n matrix a, of which only the lower triangle is read, to tridiagonal form:
// diagonal d (n), subdiagonal in e(2..n) with e(1) = 0, accumulated transformation z (n,n). Martin, Reinsch,
// Wilkinson, Numerische Mathematik 11 (1968) 181, with rows scaled as in EISPACK's TRED2.
void tred2e(const array2<double>& a, array1<double>& d, array1<double>& e, array2<double>& z);
// The same with the inner loops of one vector width; all widths give the same bits.
void tred2e(const array2<double>& a, array1<double>& d, array1<double>& e, array2<double>& z,
            const lane_kernels& kernels);

// The same without the transformation.
void tred1e(const array2<double>& a, array1<double>& d, array1<double>& e);

// QL iteration on the result of `tred2e`: eigenvalues in d, in increasing order, eigenvectors in the columns
// of z, or none for an empty z; e is destroyed. ierr = 0, or the number of the eigenvalue that has not
// converged after 30 iterations; the values are then unsorted. NaN in the input gives NaN in the results or a
// non-zero ierr. Bowdler, Martin, Reinsch, Wilkinson, Numerische Mathematik 11 (1968) 293.
void tql2e(array1<double>& d, array1<double>& e, array2<double>& z, int& ierr);
void tql2e(array1<double>& d, array1<double>& e, array2<double>& z, int& ierr, const lane_kernels& kernels);

// Negates each of the n columns of c(m,n) whose element of largest magnitude, the first of equal ones, is
// negative. Does nothing if m or n is not positive.
void sort_vec_large(int m, int n, array2<double>& c);

}  // namespace vbn
