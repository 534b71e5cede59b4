// The BLAS and LAPACK routines that are called, as the Fortran libraries export them (32-bit integers).
#pragma once

extern "C" {

double ddot_(const int* n, const double* x, const int* incx, const double* y, const int* incy);
void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
            const double* beta, double* c, const int* ldc);
void dgetrf_(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info);

}  // extern "C"
