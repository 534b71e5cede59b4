// The Wilson G matrix and the non-redundant basis from its eigenvectors.
#include "internal/gmatrix.hpp"  // for get_int_gmatrix

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "internal/fragments.hpp"  // for ways_on
#include "linalg/eigen.hpp"        // for diag_symm, sort_vec_large
#include "linalg/matmul.hpp"       // for matmul, transposed
#include "molecule/constants.hpp"  // for external_modes
#include "text/layout.hpp"         // for layout
#include "text/stop.hpp"           // for stop_printed, fail

namespace vbn {

namespace {

constexpr double rounding_below_zero =
    1.0e-6;                             // a negative eigenvalue above minus this is a rounding error of zero
constexpr double overlap_power = -0.5;  // of the G matrix of the kept combinations
constexpr int block_width = 8;          // columns of G for one pass over a dense B

const layout gcut_line(R"((2x,"G cut                              = ", es11.2))");
const layout vibrations_line(R"((2x,"3N-6                               = ", i10   ))");
const layout found_line(R"((2x,"nber non-redundant internal coords = ", i10   ))");
const layout eigenvalues_title(R"((2x, "G eigenvalues:"))");
const layout eigenvalue_rows("(10es15.6)");
const layout error_line(R"((2x, "Error! nv is incorrect"))");
const layout remedy_line(R"((2x, "Try to set set_cart = t"))");
const layout stop_line(R"(("Stop!"))");
const layout overlap_title(R"(("Check on Eigenvals of non-red overlap matrix:"))");
const layout overlap_rows("(10f12.8)");

// a := the lower triangle of a on both sides of the diagonal.
void mirror(array2<double>& a) {
  for (int j = 1; j <= a.cols(); ++j)
    for (int i = 1; i < j; ++i) a(i, j) = a(j, i);
}

// Rows, from 1, of the elements of column k that are not zero.
void filled_rows(const array2<double>& b, int k, std::vector<int>& rows) {
  rows.clear();
  for (int i = 1; i <= b.rows(); ++i)
    if (b(i, k) != 0.0) rows.push_back(i);
}

bool mostly_zero(const array2<double>& b) {
  const auto zeros = std::count(b.span().begin(), b.span().end(), 0.0);
  return 2 * static_cast<std::size_t>(zeros) > b.span().size();
}

// Lower triangle of G for a B that is mostly zeros. Zero terms do not change any bit of a sum that began at
// +0.0, so only the filled rows of each column are used.
void sparse_g(const array1<double>& mass, const array2<double>& b, array2<double>& g) {
  std::vector<int> rows;
  for (int k = 1; k <= b.cols(); ++k) {
    const double m = mass((k - 1) / 3 + 1);
    filled_rows(b, k, rows);
    for (std::size_t q = 0; q < rows.size(); ++q)
      for (std::size_t p = q; p < rows.size(); ++p) g(rows[p], rows[q]) += b(rows[p], k) * b(rows[q], k) / m;
  }
}

// Lower triangle of G for a full B. The hot path of large molecules: k is the outer loop, so each element
// gets its terms in the order of the plain triple loop while the loop over i runs in vector registers; a
// block of columns of G stays in cache for one pass over B.
void dense_g(const array1<double>& mass, const array2<double>& b, array2<double>& g) {
  const int m = b.rows();
  for (int first = 1; first <= m; first += block_width)
    for (int k = 1; k <= b.cols(); ++k) {
      const double mass_k = mass((k - 1) / 3 + 1);
      const double* column = &b(1, k);
      for (int j = first; j <= std::min(m, first + block_width - 1); ++j) {
        const double b_jk = column[j - 1];
        double* sums = &g(1, j);
        for (int i = j - 1; i < m; ++i) sums[i] += column[i] * b_jk / mass_k;
      }
    }
}

double raised(double eigenvalue, double power) {
  if (eigenvalue == 0.0 && power < 0.0) return 0.0;
  if (power == -1.0) return 1.0 / eigenvalue;
  if (power < 0.0 && eigenvalue > -rounding_below_zero && eigenvalue < 0.0) return 0.0;
  const double result = std::pow(eigenvalue, power);
  if (std::isnan(result))
    fail({.what = "a matrix of the internal coordinates has the eigenvalue " + std::to_string(eigenvalue) +
                  ", which has no power " + std::to_string(power),
          .expected = "internal coordinates that span the vibrations, or set_cart = t"});
  return result;
}

[[noreturn]] void tell_wrong_count(const array1<double>& e, output_file& fout) {
  fout.line("");
  fout.write(eigenvalues_title);
  fout.line("");
  fout.write(eigenvalue_rows, e.span());
  fout.line("");
  fout.write(error_line);
  fout.write(remedy_line);
  fout.write(stop_line);
  stop_printed("");
}

// The eigenvectors of G with eigenvalues above the cut, as columns in the order of the eigenvalues.
array2<double> kept_vectors(const array1<double>& e, const array2<double>& v, double gcut, int nv) {
  array2<double> a(v.rows(), nv);
  int kept = 0;
  for (int i = 1; i <= e.size(); ++i)
    if (std::abs(e(i)) > gcut) {
      ++kept;
      std::ranges::copy(v.column(i), a.column(kept).begin());
    }
  sort_vec_large(a.rows(), nv, a);
  return a;
}

}  // namespace

array2<double> get_wilson_g_matrix(const array1<double>& mass, const array2<double>& b) {
  array2<double> g(b.rows(), b.rows());
  if (mostly_zero(b)) {
    sparse_g(mass, b, g);
  } else {
    dense_g(mass, b, g);
  }
  mirror(g);
  return g;
}

array2<double> times_sparse(const array2<double>& a, const array2<double>& b) {
  array2<double> product(a.rows(), b.cols());
  for (int k = 1; k <= b.cols(); ++k) {
    const auto sums = product.column(k);
    for (int i = 1; i <= b.rows(); ++i) {
      const double factor = b(i, k);
      if (factor == 0.0) continue;
      const auto column = a.column(i);
      for (std::size_t v = 0; v < sums.size(); ++v) sums[v] += column[v] * factor;
    }
  }
  return product;
}

void matrix_power(double power, const array2<double>& a, array1<double>& e, array2<double>& v,
                  array2<double>& ap) {
  const int n = a.rows();
  int info = 0;
  diag_symm(a, e, v, info);
  sort_vec_large(n, n, v);
  array2<double> weighted = v;
  for (int k = 1; k <= n; ++k) {
    e(k) = raised(e(k), power);
    for (double& component : weighted.column(k)) component *= e(k);
  }
  ap = matmul(weighted, v, op::plain, op::transposed);
  mirror(ap);
}

non_redundant_basis get_int_gmatrix(const atom_data& atoms, const internal_coordinates& internal,
                                    const std::string& ffreq, const input_data& input, output_file& fout,
                                    const messages& say) {
  const int nr = internal.br.cols();
  const int n3 = atoms.n3;
  const double gcut = input.gcut;
  const array2<double> b = transposed(internal.br);
  array1<double> e;
  array2<double> v;
  int info = 0;
  diag_symm(get_wilson_g_matrix(atoms.massau, b), e, v, info);
  const int nv = static_cast<int>(
      std::ranges::count_if(e, [gcut](double eigenvalue) { return std::abs(eigenvalue) > gcut; }));
  fout.write(gcut_line, {gcut});
  fout.write(vibrations_line, {n3 - external_modes});
  fout.write(found_line, {nv});
  if (nv != n3 - external_modes && nv != n3 - 5) {
    say.warn(ffreq + ": " + std::to_string(nv) + " independent internal coordinates, but 3N-6 is " +
             std::to_string(n3 - external_modes) + ": " + ways_on(atoms, internal, input));
    tell_wrong_count(e, fout);
  }
  non_redundant_basis basis;
  basis.nv = n3 - external_modes;
  if (nv != basis.nv)
    say.warn(ffreq + ": " + std::to_string(nv) + " independent internal coordinates, but 3N-6 is " +
             std::to_string(basis.nv) + ": the route through them uses the first " +
             std::to_string(basis.nv));

  const array2<double> at = transposed(kept_vectors(e, v, gcut, nv));
  const array2<double> b1 = times_sparse(at, b);
  array2<double> g12;
  matrix_power(overlap_power, get_wilson_g_matrix(atoms.massau, b1), e, v, g12);
  std::vector<double> shown;
  for (const double root : e) shown.push_back(std::pow(root, -overlap_power));
  fout.write(overlap_title);
  fout.write(overlap_rows, std::span<const double>(shown));

  const array2<double> b2 = matmul(g12, b1);
  const array2<double> gt = matmul(g12, at);
  basis.bm = array2<double>(n3, n3);
  basis.ga = array2<double>(n3, nr);
  for (int i = 1; i <= nv; ++i) {
    for (int j = 1; j <= n3; ++j) basis.bm(i, j) = b2(i, j) / atoms.sqtmass(j);
    for (int j = 1; j <= nr; ++j) basis.ga(i, j) = gt(i, j);
  }
  return basis;
}

}  // namespace vbn
