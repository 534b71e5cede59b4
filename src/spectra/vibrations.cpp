// Tells vibrations from translations and rotations, pairs what leaves, and makes S orthogonal.
#include "spectra/vibrations.hpp"  // for choose_vibrations

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "checks/wording.hpp"            // for with_digits
#include "linalg/blas.hpp"               // for dgesvd_
#include "linalg/blas_memory.hpp"        // for require_blas_memory
#include "linalg/matmul.hpp"             // for matmul
#include "molecule/constants.hpp"        // for au_to_cm
#include "molecule/external_motion.hpp"  // for get_trans_rot_vec
#include "text/stop.hpp"                 // for fail

namespace vbn {

namespace {

constexpr double linear_limit = 1e-3;      // of a rotation's length, relative to the longest
constexpr double largest_deviation = 0.1;  // of S S^T from 1
constexpr double least_frequency = 1e-7;   // hartree: 0.02 cm-1

// Orthonormal translations and rotations of the geometry, as columns; five for a linear one.
std::vector<array1<double>> external_motions(const atom_data& atoms) {
  array2<double> x = atoms.x;
  array1<double> centre(3);
  const double total = std::accumulate(atoms.mass.begin(), atoms.mass.end(), 0.0);
  for (int i = 1; i <= atoms.natom; ++i)
    for (int a = 1; a <= 3; ++a) centre(a) += atoms.mass(i) * x(a, i) / total;
  for (int i = 1; i <= atoms.natom; ++i)
    for (int a = 1; a <= 3; ++a) x(a, i) -= centre(a);
  const array2<double> raw = get_trans_rot_vec(atoms.mass, x);
  // The longest remaining vector first, so that what is left of the rotation about the axis of a linear
  // molecule comes last and is rounding or the noise of its geometry.
  std::vector<array1<double>> left;
  for (int c = 1; c <= raw.cols(); ++c) {
    array1<double> v(raw.rows());
    std::ranges::copy(raw.column(c), v.begin());
    left.push_back(std::move(v));
  }
  const auto length = [](const array1<double>& v) {
    return std::sqrt(std::inner_product(v.begin(), v.end(), v.begin(), 0.0));
  };
  std::vector<array1<double>> basis;
  double longest = 0.0;
  while (!left.empty()) {
    const auto next = std::ranges::max_element(left, {}, length);
    array1<double> v = std::move(*next);
    left.erase(next);
    const double size = length(v);
    if (basis.size() == 3) longest = size;
    if (basis.size() > 3 && size < linear_limit * longest) break;
    for (double& a : v) a /= size;
    for (array1<double>& other : left) {
      const double along = std::inner_product(v.begin(), v.end(), other.begin(), 0.0);
      for (int i = 1; i <= v.size(); ++i) other(i) -= along * v(i);
    }
    basis.push_back(std::move(v));
  }
  return basis;
}

// The numbers of the modes that are vibrations.
std::vector<int> vibrations_of(const states& it) {
  const std::vector<array1<double>> external = external_motions(it.atoms);
  const int n3 = it.atoms.n3;
  std::vector<std::pair<double, int>> weights;
  for (int k = 1; k <= n3; ++k) {
    double weight = 0.0;
    for (const array1<double>& v : external) {
      const auto mode = it.modes.cm.column(k);
      const double along = std::inner_product(v.begin(), v.end(), mode.begin(), 0.0);
      weight += along * along;
    }
    weights.emplace_back(weight, k);
  }
  std::ranges::sort(weights);
  std::vector<int> modes;
  for (std::size_t k = 0; k + external.size() < weights.size(); ++k) modes.push_back(weights[k].second);
  std::ranges::sort(modes);
  return modes;
}

std::string mode_text(const char* state, int mode, double frequency) {
  return std::string("mode ") + std::to_string(mode) + " of state " + state + " (" +
         (frequency < 0.0 ? "imaginary, " : "") + with_digits(std::abs(frequency) * au_to_cm, 1) + " cm-1)";
}

// Takes a mode from one state and the mode that overlaps most with it from the other.
void leave(std::vector<int>& from, std::vector<int>& other, int mode, const array2<double>& s, bool from_g) {
  std::erase(from, mode);
  const auto overlap = [&](int m) { return std::abs(from_g ? s(mode, m) : s(m, mode)); };
  other.erase(std::ranges::max_element(other, {}, overlap));
}

void leave_with_partner(vibration_pair& v, const array1<states>& state, int mode, bool from_g,
                        const std::string& why) {
  std::vector<int>& from = from_g ? v.mode_g : v.mode_e;
  std::vector<int>& other = from_g ? v.mode_e : v.mode_g;
  const std::vector<int> before = other;
  leave(from, other, mode, state(1).modes.s, from_g);
  const auto partner =
      std::ranges::find_if(before, [&](int m) { return std::ranges::find(other, m) == other.end(); });
  const normal_modes& own = state(from_g ? 1 : 2).modes;
  const normal_modes& theirs = state(from_g ? 2 : 1).modes;
  v.log.push_back(mode_text(from_g ? "1" : "2", mode, own.freq(mode)) + " leaves with " +
                  mode_text(from_g ? "2" : "1", *partner, theirs.freq(*partner)) + ": " + why);
}

// The first imaginary mode of a state; 0 when there is none.
int imaginary_mode(const std::vector<int>& modes, const array1<double>& freq) {
  const auto found = std::ranges::find_if(modes, [&](int m) { return !(freq(m) > least_frequency); });
  return found == modes.end() ? 0 : *found;
}

void make_orthogonal(vibration_pair& v, const std::string& file) {
  const int n = v.n();
  const array2<double> product = matmul(v.s, v.s, op::plain, op::transposed);
  for (int l = 1; l <= n; ++l)
    for (int k = 1; k <= n; ++k)
      v.deviation = std::max(v.deviation, std::abs(product(k, l) - (k == l ? 1.0 : 0.0)));
  if (!(v.deviation <= largest_deviation)) {
    fail({.what = "the vibrations of the two states do not span the same motions: S S^T differs from 1 by " +
                  with_digits(v.deviation, 3),
          .file = file,
          .expected = "at most 0.1: two geometries of one structure, or leave_out for motions that differ"});
  }
  array2<double> a = v.s;
  array2<double> u(n, n);
  array2<double> vt(n, n);
  std::vector<double> values(static_cast<std::size_t>(n));
  const int lwork = 64 * n + 64;
  std::vector<double> work(static_cast<std::size_t>(lwork));
  int info = 0;
  require_blas_memory();
  dgesvd_("A", "A", &n, &n, a.data(), &n, values.data(), u.data(), &n, vt.data(), &n, work.data(), &lwork,
          &info);
  if (info != 0) fail({.what = "the singular values of S do not converge", .file = file});
  v.s = matmul(u, vt);
}

// The displacements of the chosen route.
double displacement(const states& it, int mode, bool internal) {
  const double cartesian = it.cart.d(mode);
  return internal ? std::copysign(it.dint.d(mode), cartesian) : cartesian;
}

}  // namespace

vibration_pair choose_vibrations(const array1<states>& state, std::span<const int> leave_out, bool internal,
                                 const std::string& file) {
  vibration_pair v;
  v.mode_g = vibrations_of(state(1));
  v.mode_e = vibrations_of(state(2));
  if (v.mode_g.size() != v.mode_e.size()) {
    fail({.what = "the states have different numbers of vibrations: " + std::to_string(v.mode_g.size()) +
                  " and " + std::to_string(v.mode_e.size()),
          .file = file,
          .expected = "two linear geometries or two bent ones"});
  }
  for (const int mode : leave_out) {
    if (std::ranges::find(v.mode_g, mode) == v.mode_g.end()) {
      fail({.what = "leave_out: mode " + std::to_string(mode) + " is no vibration of state 1",
            .file = file,
            .expected = "numbers of vibrations as in vbn.cart.dat, each once"});
    }
    leave_with_partner(v, state, mode, true, "left out by leave_out");
  }
  while (const int mode = imaginary_mode(v.mode_g, state(1).modes.freq))
    leave_with_partner(v, state, mode, true, "it is not a vibration about a minimum");
  while (const int mode = imaginary_mode(v.mode_e, state(2).modes.freq))
    leave_with_partner(v, state, mode, false, "it is not a vibration about a minimum");
  const int n = static_cast<int>(v.mode_g.size());
  if (n == 0)
    fail({.what = "no vibrations are left", .file = file, .expected = "a molecule with a vibration"});
  v.w_g = v.w_e = v.d_g = v.d_e = array1<double>(n);
  v.s = array2<double>(n, n);
  for (int k = 1; k <= n; ++k) {
    const int g = v.mode_g[static_cast<std::size_t>(k - 1)];
    const int e = v.mode_e[static_cast<std::size_t>(k - 1)];
    v.w_g(k) = state(1).modes.freq(g);
    v.w_e(k) = state(2).modes.freq(e);
    v.d_g(k) = displacement(state(1), g, internal);
    v.d_e(k) = displacement(state(2), e, internal);
    for (int l = 1; l <= n; ++l) v.s(k, l) = state(1).modes.s(g, v.mode_e[static_cast<std::size_t>(l - 1)]);
  }
  make_orthogonal(v, file);
  return v;
}

transition absorption_of(const vibration_pair& v) { return {v.w_g, v.w_e, v.s, v.d_g}; }

transition decay_of(const vibration_pair& v) { return {v.w_e, v.w_g, transposed(v.s), v.d_e}; }

transition_operator dipole_operator(const vibration_pair& v, const array1<double>& mu,
                                    const array2<double>& derivatives, int at, bool absorption) {
  const int n = v.n();
  array2<double> along_g(3, n);
  for (int k = 1; k <= n; ++k)
    for (int a = 1; a <= 3; ++a) along_g(a, k) = derivatives(a, v.mode_g[static_cast<std::size_t>(k - 1)]);
  const array2<double> along_e = matmul(along_g, v.s);
  transition_operator o{mu, absorption ? along_e : along_g, {}};
  // The final minimum: e in absorption, g in a decay. From the other minimum it is at Q_i = K.
  const int final = absorption ? 2 : 1;
  if (at == final) return o;
  const array2<double>& along_i = absorption ? along_g : along_e;
  const array1<double>& k = absorption ? v.d_g : v.d_e;
  for (int a = 1; a <= 3; ++a)
    for (int m = 1; m <= n; ++m) o.mu0(a) += along_i(a, m) * k(m);
  return o;
}

}  // namespace vbn
