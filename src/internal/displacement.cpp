// Differences of the internal coordinates, in the non-redundant basis and along the modes.
#include "internal/displacement.hpp"  // for check_int_coord

#include <algorithm>
#include <cmath>
#include <utility>

#include "internal/reorganisation.hpp"  // for mode_length
#include "linalg/matmul.hpp"            // for matmul
#include "text/layout.hpp"              // for layout
#include "text/messages.hpp"            // for messages, lines_of
#include "text/stop.hpp"                // for stop_printed

namespace vbn {

namespace {

constexpr double two_pi = 6.283185307179586;

const layout changed_line(R"(("Changed internal coordinate", i6))");
const layout definitions_line("(4i6, 4x, 4i6)");
const layout definitions_error(R"(("Error: Definitions of internal coordinates are changed!"))");
const layout numbers_error(R"(("Error: numbers of internal coordinates are not same:", 2i6))");

// Prints coordinates with other atoms in the other state, and stops if their numbers differ.
void compare_definitions(const internal_coordinates& c1, const internal_coordinates& c2,
                         const messages& say) {
  const int nr = std::min(c1.nr, c2.nr);
  for (int i = 1; i <= nr; ++i)
    for (int j = 1; j <= 4; ++j)
      if (c1.intdef(j, i) != c2.intdef(j, i)) {
        say.tell(changed_line, {i});
        say.tell(definitions_line, {c1.intdef(1, i), c1.intdef(2, i), c1.intdef(3, i), c1.intdef(4, i),
                                    c2.intdef(1, i), c2.intdef(2, i), c2.intdef(3, i), c2.intdef(4, i)});
        say.tell(definitions_error);
      }
  if (c1.nr != c2.nr) {
    stop_printed(lines_of(numbers_error, {c1.nr, c2.nr}));
  }
}

// z of state 2 less z of state 1; an angle beyond half a revolution is shifted by one revolution.
array1<double> differences(const internal_coordinates& c1, const internal_coordinates& c2) {
  array1<double> zd(c1.nr);
  for (int i = 1; i <= c1.nr; ++i) {
    zd(i) = c2.z(i) - c1.z(i);
    if (c1.scales(i) > 1.0) {
      if (zd(i) > pi_value) zd(i) -= two_pi;
      if (zd(i) < -pi_value) zd(i) += two_pi;
    }
  }
  return zd;
}

array1<double> negative(array1<double> a) {
  for (double& element : a) element = -element;
  return a;
}

// The first rows of a.
array2<double> top(const array2<double>& a, int rows) {
  array2<double> cut(rows, a.cols());
  for (int j = 1; j <= a.cols(); ++j)
    for (int i = 1; i <= rows; ++i) cut(i, j) = a(i, j);
  return cut;
}

// The differences zd of a state in its non-redundant coordinates (nv).
array1<double> non_redundant(const non_redundant_basis& basis, const array1<double>& zd) {
  array1<double> sums(basis.nv);
  for (int j = 1; j <= zd.size(); ++j)
    for (int v = 1; v <= basis.nv; ++v) sums(v) += basis.ga(v, j) * zd(j);
  return sums;
}

// Non-redundant displacements along each mode, in root electron masses times angstrom.
array1<double> along_modes(const non_redundant_basis& basis, const array1<double>& zd) {
  array1<double> p(basis.cmr2.cols());
  for (int i = 1; i <= p.size(); ++i)
    for (int j = 1; j <= zd.size(); ++j) p(i) += zd(j) * basis.cmr2(j, i);
  return p;
}

// In units of the zero-point length of the mode.
array1<double> dimensionless(const normal_modes& modes, const array1<double>& p) {
  array1<double> d0 = p;
  for (int i = 1; i <= p.size(); ++i) d0(i) /= mode_length(modes, i);
  return d0;
}

// The results from the dimensionless displacements d0. A mode of zero frequency has no finite length: its
// displacement is p itself.
mode_results results_of(array1<double> d0, const array1<double>& p, const normal_modes& modes) {
  const int n3 = p.size();
  mode_results results{array1<double>(n3), std::move(d0), array1<double>(n3), array1<double>(n3)};
  for (int i = 1; i <= n3; ++i) {
    const double length = mode_length(modes, i);
    const double delta = results.d0(i);
    results.d(i) = (std::isfinite(length) ? length * delta : p(i)) / bohr_to_ang;
    results.lam(i) = delta * delta * modes.freq(i) / 2.0;
    results.lamt += results.lam(i);
    results.hr(i) = delta * delta * 0.5;
  }
  return results;
}

void take_signs(const array1<double>& d, mode_results& results) {
  for (int i = 1; i <= d.size(); ++i)
    for (array1<double>* field : {&results.d, &results.d0, &results.hr}) {
      const double magnitude = std::abs((*field)(i));
      (*field)(i) = d(i) < 0.0 ? -magnitude : magnitude;
    }
}

}  // namespace

void check_int_coord(array1<states>& state, bool d_sign_same_to_cart, const messages& say) {
  states& s1 = state(1);
  states& s2 = state(2);
  compare_definitions(s1.internal, s2.internal, say);
  s1.internal.zd = differences(s1.internal, s2.internal);
  s2.internal.zd = negative(s1.internal.zd);
  for (states& each : state) each.basis.cmr2 = matmul(top(each.basis.bm, each.basis.nv), each.modes.cm);

  const array1<double> p1 = along_modes(s1.basis, non_redundant(s1.basis, s1.internal.zd));
  const array1<double> p2 = along_modes(s2.basis, non_redundant(s2.basis, s2.internal.zd));
  const array1<double> d1 = dimensionless(s1.modes, p1);
  array1<double> d2 = dimensionless(s2.modes, p2);
  for (int i = 1; i <= d1.size(); ++i)
    if (d2(i) * d1(i) < 0.0) d2(i) = -d2(i);
  s1.dint = results_of(d1, p1, s1.modes);
  s2.dint = results_of(std::move(d2), p2, s2.modes);
  if (d_sign_same_to_cart) {
    take_signs(s1.cart.d, s1.dint);
    take_signs(s2.cart.d, s2.dint);
  }
}

}  // namespace vbn
