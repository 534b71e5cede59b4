// Duschinsky matrices, displacements and the quantities derived from them for each mode.
#include "modes/duschinsky.hpp"  // for get_vbn

#include <cmath>
#include <string>
#include <utility>

#include "linalg/matmul.hpp"       // for matmul, transposed, transposed_product
#include "modes/ordering.hpp"      // for vbn_ord
#include "molecule/constants.hpp"  // for bohr_to_ang, first_vibration
#include "text/layout.hpp"         // for layout
#include "text/messages.hpp"       // for messages, lines_of
#include "text/stop.hpp"           // for stop

namespace vbn {

namespace {

constexpr double orthogonality_eps = 1.0e-12;
constexpr double length_of_rest = 10.0;  // `zptlen` of the modes before the first vibration

array1<double> zero_point_lengths(const array1<double>& freq) {
  array1<double> zptlen(freq.size(), length_of_rest);
  for (int i = first_vibration; i <= freq.size(); ++i) zptlen(i) = bohr_to_ang * std::sqrt(1.0 / freq(i));
  return zptlen;
}

double sum_of_vibrations(const array1<double>& freq) {
  double freqt = 0.0;
  for (int i = first_vibration; i <= freq.size(); ++i) freqt += std::abs(freq(i));
  return freqt;
}

// The quantities derived from displacement and frequency of each mode, and their total.
mode_results reorganisation(array1<double> d, const array1<double>& freq) {
  const int n3 = freq.size();
  mode_results results{std::move(d), array1<double>(n3), array1<double>(n3), array1<double>(n3)};
  for (int i = 1; i <= n3; ++i) {
    results.d0(i) = results.d(i) * std::sqrt(std::abs(freq(i)));
    results.hr(i) = results.d0(i) * results.d0(i) * 0.5;
    results.lam(i) = results.hr(i) * freq(i);
    results.lamt += results.lam(i);
  }
  return results;
}

}  // namespace

void test_fc(const array2<double>& c) {
  static const layout element(R"((a8," (",i4,",",i4," ) = ",e18.6))");
  const int n = c.rows();
  const array2<double> c1 = matmul(c, c, op::transposed);
  bool failed = false;
  std::string printed;
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= n; ++j) {
      if (i == j && c1(i, i) - 1.0 > orthogonality_eps) {
        printed += lines_of(element, {"c * c ", i, j, c1(i, i)});
        failed = true;
      }
      if (i != j && c1(i, j) > orthogonality_eps) failed = true;
    }
  }
  if (failed) stop(" Test fc: fc matrix is not orthogonal! Stop!", printed);
}

void get_vbn(array1<states>& state, const input_keys& keys, const messages& say) {
  states& g = state(1);
  states& e = state(2);
  const int n3 = g.atoms.n3;

  for (states& each : state) {
    each.modes.zptlen = zero_point_lengths(each.modes.freq);
    each.modes.freqt = sum_of_vibrations(each.modes.freq);
    test_fc(each.modes.cm);
  }
  g.modes.s = matmul(g.modes.cm, e.modes.cm, op::transposed);
  e.modes.s = transposed(g.modes.s);

  // The masses of state 1 weigh the displacement on both sides.
  array1<double> dq1(n3);
  array1<double> dq2(n3);
  for (int i = 1; i <= g.atoms.natom; ++i) {
    for (int a = 1; a <= 3; ++a) {
      const int k = 3 * (i - 1) + a;
      dq1(k) = (e.atoms.x(a, i) - g.atoms.x(a, i)) * g.atoms.sqtmass(k);
      dq2(k) = -dq1(k);
    }
  }
  g.cart = reorganisation(transposed_product(g.modes.cm, dq1.span()), g.modes.freq);
  e.cart = reorganisation(transposed_product(e.modes.cm, dq2.span()), e.modes.freq);

  mode_pairs pairs = vbn_ord(g.modes, e.modes, g.symmetry, keys);
  // Other signs of the modes give the same pairing; the warning is printed once.
  if (pairs.unpaired > 0 && pairs.order_g != g.modes.order) {
    say.warn(
        "if_symm pairs modes within representations: the last " + std::to_string(pairs.unpaired) +
        " rows of the tables are modes without a partner; use point_group = t and the same point group in "
        "both states");
  }
  g.modes.order = std::move(pairs.order_g);
  e.modes.order = std::move(pairs.order_e);
}

}  // namespace vbn
