// Factors block columns from the left: products of the blocks before by zgemm, the block itself by own loops.
#include "linalg/ldlt.hpp"  // for factor_ldlt

#include <algorithm>
#include <cstddef>

#include "linalg/blas.hpp"         // for zgemm_, ztrsm_
#include "linalg/blas_memory.hpp"  // for require_blas_memory

namespace vbn {

namespace {

constexpr std::ptrdiff_t width = 24;  // columns of a block; a multiple of `group`
constexpr int group = 4;              // columns whose products are subtracted together

// Every clone does the same operations in the same order on each element, so all vector widths give the same
// bits.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define VBN_EACH_WIDTH __attribute__((target_clones("default", "avx2", "arch=skylake-avx512")))
#else
#define VBN_EACH_WIDTH
#endif

// c := c - sum over `group` columns of l(k) w(k), for the `m` elements of a column; real and imaginary parts
// apart, columns `ld` elements apart.
VBN_EACH_WIDTH
void subtract_group(std::ptrdiff_t m, std::ptrdiff_t ld, const double* __restrict re,
                    const double* __restrict im, const double* __restrict w_re, const double* __restrict w_im,
                    double* __restrict c_re, double* __restrict c_im) {
  for (std::ptrdiff_t i = 0; i < m; ++i) {
    double sum_re = c_re[i];
    double sum_im = c_im[i];
    for (int k = 0; k < group; ++k) {
      const double l_re = re[i + k * ld];
      const double l_im = im[i + k * ld];
      sum_re -= l_re * w_re[k] - l_im * w_im[k];
      sum_im -= l_re * w_im[k] + l_im * w_re[k];
    }
    c_re[i] = sum_re;
    c_im[i] = sum_im;
  }
}

VBN_EACH_WIDTH
void subtract_one(std::ptrdiff_t m, const double* __restrict re, const double* __restrict im, double w_re,
                  double w_im, double* __restrict c_re, double* __restrict c_im) {
  for (std::ptrdiff_t i = 0; i < m; ++i) {
    c_re[i] -= re[i] * w_re - im[i] * w_im;
    c_im[i] -= re[i] * w_im + im[i] * w_re;
  }
}

VBN_EACH_WIDTH
void scale(std::ptrdiff_t m, double by_re, double by_im, double* __restrict c_re, double* __restrict c_im) {
  for (std::ptrdiff_t i = 0; i < m; ++i) {
    const double re = c_re[i];
    c_re[i] = re * by_re - c_im[i] * by_im;
    c_im[i] = re * by_im + c_im[i] * by_re;
  }
}

// Factors the `m` x `columns` block whose columns are `m` apart, real and imaginary parts apart. The elements
// of D L^T of its own rows are collected in `row`, column c at c `width`.
void factor_block(std::ptrdiff_t m, std::ptrdiff_t columns, ldlt_panel& p) {
  for (std::ptrdiff_t c = 0; c < columns; ++c) {
    double* const c_re = p.re.data() + c * m;
    double* const c_im = p.im.data() + c * m;
    const double* const w_re = p.row_re.data() + c * width;
    const double* const w_im = p.row_im.data() + c * width;
    std::ptrdiff_t k = 0;
    for (; k + group <= c; k += group) {
      subtract_group(m - c, m, p.re.data() + k * m + c, p.im.data() + k * m + c, w_re + k, w_im + k, c_re + c,
                     c_im + c);
    }
    for (; k < c; ++k) {
      subtract_one(m - c, p.re.data() + k * m + c, p.im.data() + k * m + c, w_re[k], w_im[k], c_re + c,
                   c_im + c);
    }
    for (std::ptrdiff_t r = c + 1; r < columns; ++r) {  // D L^T before the column is divided by D
      p.row_re[static_cast<std::size_t>(r * width + c)] = c_re[r];
      p.row_im[static_cast<std::size_t>(r * width + c)] = c_im[r];
    }
    const complex inverse = 1.0 / complex(c_re[c], c_im[c]);
    scale(m - c - 1, inverse.real(), inverse.imag(), c_re + c + 1, c_im + c + 1);
  }
}

}  // namespace

void factor_ldlt(array2<complex>& a, ldlt_panel& p) {
  const int n = a.rows();
  require_blas_memory();
  p.re.resize(static_cast<std::size_t>(n) * width);
  p.im.resize(p.re.size());
  p.row_re.resize(static_cast<std::size_t>(width) * width);
  p.row_im.resize(p.row_re.size());
  const complex minus = -1.0;
  const complex one = 1.0;
  for (int j = 1; j <= n; j += static_cast<int>(width)) {
    const int columns = std::min(static_cast<int>(width), n - j + 1);
    const int m = n - j + 1;
    const int before = j - 1;
    if (before > 0)
      zgemm_("N", "N", &m, &columns, &before, &minus, &a(j, 1), &n, &a(1, j), &n, &one, &a(j, j), &n);
    for (int c = 0; c < columns; ++c) {
      const complex* const from = &a(j, j + c);
      double* const re = p.re.data() + std::ptrdiff_t{c} * m;
      double* const im = p.im.data() + std::ptrdiff_t{c} * m;
      for (int i = c; i < m; ++i) {
        re[i] = from[i].real();
        im[i] = from[i].imag();
      }
    }
    factor_block(m, columns, p);
    for (int c = 0; c < columns; ++c) {
      complex* const to = &a(j, j + c);
      const double* const re = p.re.data() + std::ptrdiff_t{c} * m;
      const double* const im = p.im.data() + std::ptrdiff_t{c} * m;
      for (int i = c; i < m; ++i) to[i] = {re[i], im[i]};
      const complex d = to[c];
      for (int i = c + 1; i < m; ++i) {
        a(j + c, j + i) = {re[i] * d.real() - im[i] * d.imag(), re[i] * d.imag() + im[i] * d.real()};
      }
    }
  }
}

void solve_lower(const array2<complex>& a, array2<complex>& b) {
  const int n = a.rows();
  const int columns = b.cols();
  const complex one = 1.0;
  ztrsm_("L", "L", "N", "U", &n, &columns, &one, a.data(), &n, b.data(), &n);
}

void solve_ldlt(const array2<complex>& a, array2<complex>& b) {
  const int n = a.rows();
  const int columns = b.cols();
  const complex one = 1.0;
  solve_lower(a, b);
  for (int c = 1; c <= columns; ++c)
    for (int i = 1; i <= n; ++i) b(i, c) /= a(i, i);
  ztrsm_("L", "L", "T", "U", &n, &columns, &one, a.data(), &n, b.data(), &n);
}

}  // namespace vbn
