// The BLAS and LAPACK routines that are called, as the Fortran libraries export them (32-bit integers).
#pragma once

#include <complex>

extern "C" {

double ddot_(const int* n, const double* x, const int* incx, const double* y, const int* incy);
void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
            const double* beta, double* c, const int* ldc);
void dgesvd_(const char* jobu, const char* jobvt, const int* m, const int* n, double* a, const int* lda,
             double* s, double* u, const int* ldu, double* vt, const int* ldvt, double* work,
             const int* lwork, int* info);
void dgetri_(const int* n, double* a, const int* lda, const int* ipiv, double* work, const int* lwork,
             int* info);
void dpotrf_(const char* uplo, const int* n, double* a, const int* lda, int* info);
void zgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const std::complex<double>* alpha, const std::complex<double>* a, const int* lda,
            const std::complex<double>* b, const int* ldb, const std::complex<double>* beta,
            std::complex<double>* c, const int* ldc);
void zgetrf_(const int* m, const int* n, std::complex<double>* a, const int* lda, int* ipiv, int* info);
void zgetrs_(const char* trans, const int* n, const int* nrhs, const std::complex<double>* a, const int* lda,
             const int* ipiv, std::complex<double>* b, const int* ldb, int* info);
void ztrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const std::complex<double>* alpha, const std::complex<double>* a, const int* lda,
            std::complex<double>* b, const int* ldb);
void dgetrf_(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info);

}  // extern "C"
