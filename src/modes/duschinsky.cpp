// Duschinsky matrices, displacements and what follows from them mode by mode.
#include "modes/duschinsky.hpp"  // for get_vbn

#include <cmath>
#include <string>

#include "linalg/matmul.hpp"       // for matmul, transposed
#include "modes/ordering.hpp"      // for vbn_ord
#include "molecule/constants.hpp"  // for bohr_to_ang
#include "text/layout.hpp"         // for layout
#include "text/output_file.hpp"    // for tell
#include "text/stop.hpp"           // for stop, warn

namespace vbn {

namespace {

constexpr double orthogonality_eps = 1.0e-12;
constexpr int first_vibration = 7;       // by position, whatever the key start_mode says
constexpr double length_of_rest = 10.0;  // `zptlen` of the modes before

void zero_point_lengths(states& state) {
  for (double& length : state.zptlen) length = length_of_rest;
  for (int i = first_vibration; i <= state.n3; ++i)
    state.zptlen(i) = bohr_to_ang * std::sqrt(1.0 / state.freq(i));
}

// d := cm^T dq.
void project_displacement(const array2<double>& cm, const array1<double>& dq, array1<double>& d) {
  for (int i = 1; i <= cm.cols(); ++i) {
    double sum = 0.0;
    for (int k = 1; k <= cm.rows(); ++k) sum += cm(k, i) * dq(k);
    d(i) = sum;
  }
}

// What follows from `d` and `freq`, mode by mode, and the totals.
void reorganisation(states& state) {
  state.lamt = 0.0;
  state.freqt = 0.0;
  for (int i = 1; i <= state.n3; ++i) {
    state.d0(i) = state.d(i) * std::sqrt(std::abs(state.freq(i)));
    state.hr(i) = state.d0(i) * state.d0(i) * 0.5;
    state.lam(i) = state.hr(i) * state.freq(i);
    state.lamt += state.lam(i);
    if (i >= first_vibration) state.freqt += std::abs(state.freq(i));
    state.d_sign_cart(i) = state.d(i) < 0.0 ? -1.0 : 1.0;
  }
}

}  // namespace

void test_fc(const array2<double>& c) {
  static const layout element(R"((a8," (",i4,",",i4," ) = ",e18.6))");
  const int n = c.rows();
  const array2<double> c1 = matmul(c, c, op::transposed);
  bool failed = false;
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= n; ++j) {
      if (i == j && c1(i, i) - 1.0 > orthogonality_eps) {
        tell(element, {"c * c ", i, j, c1(i, i)});
        failed = true;
      }
      if (i != j && c1(i, j) > orthogonality_eps) failed = true;
    }
  }
  if (failed) stop(" Test fc: fc matrix is not orthogonal! Stop!");
}

void get_vbn(array1<states>& state, const input_keys& keys) {
  states& g = state(1);
  states& e = state(2);
  const int natom = g.natom;
  const int n3 = g.n3;

  zero_point_lengths(g);
  zero_point_lengths(e);
  test_fc(g.cm);
  test_fc(e.cm);
  g.s = matmul(g.cm, e.cm, op::transposed);
  e.s = transposed(g.s);

  // The masses of state 1 weigh the displacement on both sides.
  array1<double> dq1(n3);
  array1<double> dq2(n3);
  for (int i = 1; i <= natom; ++i) {
    for (int a = 1; a <= 3; ++a) {
      const int k = 3 * (i - 1) + a;
      dq1(k) = (e.x(a, i) - g.x(a, i)) * g.sqtmass(k);
      dq2(k) = -dq1(k);
    }
  }
  project_displacement(g.cm, dq1, g.d);
  project_displacement(e.cm, dq2, e.d);
  reorganisation(g);
  reorganisation(e);

  const array2<int> order_before = g.order;
  const int unpaired =
      vbn_ord(n3, g.freq, e.freq, g.s, g.irrep, e.irrep, g.order, e.order, g.nrep, g.ir_name, keys);
  // Other signs of the modes give the same pairing; it is told once.
  if (unpaired > 0 && g.order != order_before) {
    warn("if_symm pairs modes within representations: the last " + std::to_string(unpaired) +
         " rows of the tables hold modes without a partner; point_group = T and the same point group in both "
         "states give every mode one");
  }
}

}  // namespace vbn
