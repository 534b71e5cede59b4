// Sizes of the effects of symmetry that the tables do not show.
#include "checks/symmetry_effects.hpp"  // for warn_of_near_symmetry

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "checks/wording.hpp"        // for with_digits, of_state
#include "linalg/matmul.hpp"         // for transposed_product
#include "molecule/constants.hpp"    // for au_to_cm, bohr_to_ang, first_vibration
#include "symmetry/point_group.hpp"  // for search_pg
#include "symmetry/tables.hpp"       // for symm_op, op_name, pg_name, nrep

namespace vbn {

namespace {

constexpr double near_tolerance = 10.0;  // times symm_tol; further off it is another shape
constexpr double moved_atom = 1e-3;      // angstrom; geometries are printed to about 1e-5
constexpr double moved_frequency = 1.0;  // cm-1
constexpr double dropped_share = 1e-3;   // of the total reorganisation energy
constexpr double dropped_energy = 0.5;   // cm-1
constexpr double equal_moments = 1e-4;   // relative difference
constexpr double degenerate = 0.1;       // cm-1 between the frequencies of a pair
constexpr double told_pair = 0.1;        // cm-1 of reorganisation energy
constexpr std::size_t listed = 6;        // pairs in a message

// The largest distance (bohr) between the image of an atom under operation p and the nearest like atom;
// infinite when two atoms have the same nearest one.
double failure(const atom_data& atoms, int p) {
  double largest = 0.0;
  std::vector<bool> taken(static_cast<std::size_t>(atoms.natom) + 1);
  for (int i = 1; i <= atoms.natom; ++i) {
    double nearest = std::numeric_limits<double>::infinity();
    std::size_t at = 0;
    for (int j = 1; j <= atoms.natom; ++j) {
      if (atoms.nat(i) != atoms.nat(j) || atoms.mass(i) != atoms.mass(j)) continue;
      const double d = std::hypot(symm_op(1, p) * atoms.x(1, i) - atoms.x(1, j),
                                  symm_op(2, p) * atoms.x(2, i) - atoms.x(2, j),
                                  symm_op(3, p) * atoms.x(3, i) - atoms.x(3, j));
      if (d >= nearest) continue;
      nearest = d;
      at = static_cast<std::size_t>(j);
    }
    if (taken[at]) return std::numeric_limits<double>::infinity();
    taken[at] = true;
    largest = std::max(largest, nearest);
  }
  return largest;
}

// The number with two significant digits, rounded up.
double rounded_up(double a) {
  const double unit = std::pow(10.0, std::floor(std::log10(a)) - 1.0);
  return std::ceil(a / unit) * unit;
}

// Principal moments (amu bohr^2) of a geometry in its inertial frame or near it, the smallest first.
std::array<double, 3> moments(const atom_data& atoms) {
  std::array<double, 3> squares{};
  for (int i = 1; i <= atoms.natom; ++i)
    for (std::size_t a = 0; a < 3; ++a)
      squares[a] += atoms.mass(i) * atoms.x(static_cast<int>(a) + 1, i) * atoms.x(static_cast<int>(a) + 1, i);
  std::array<double, 3> all{squares[1] + squares[2], squares[0] + squares[2], squares[0] + squares[1]};
  std::ranges::sort(all);
  return all;
}

bool equal(double a, double b) { return b - a < equal_moments * b; }

}  // namespace

void warn_of_near_symmetry(const states& state, int k, double symm_tol, const messages& say) {
  if (!(symm_tol > 0.0)) return;
  std::array<double, n_symm_op + 1> off{};
  int nearest = op_e;
  double least = near_tolerance * symm_tol;
  for (int p = op_e + 1; p <= n_symm_op; ++p) {
    const auto at = static_cast<std::size_t>(p);
    off[at] = failure(state.atoms, p);
    if (off[at] <= symm_tol || off[at] >= least) continue;
    least = off[at];
    nearest = p;
  }
  if (nearest == op_e) return;
  const double tolerance = rounded_up(least);
  array1<bool_> op{n_symm_op};
  int count = 1;
  op(op_e) = true;
  for (int p = op_e + 1; p <= n_symm_op; ++p) {
    op(p) = off[static_cast<std::size_t>(p)] <= tolerance;
    count += op(p);
  }
  const int group = search_pg(op);
  if (nrep(group) != count) return;
  say.warn(of_state(state, k) + ": the molecule misses " + std::string(op_name(nearest)) + " by " +
           with_digits(least, 4) + " bohr and is treated as " + state.symmetry.new_pgrp.str() +
           "; with symm_tol = " + with_digits(tolerance, 4) + " it is " + std::string(pg_name(group)));
}

void warn_of_enforcement(const states& state, int k, const array2<double>& before_x,
                         const array1<double>& before_freq, const array2<double>& after_x,
                         const array1<double>& after_freq, const messages& say) {
  double distance = 0.0;
  int atom = 1;
  for (int i = 1; i <= before_x.cols(); ++i) {
    const double d = bohr_to_ang * std::hypot(after_x(1, i) - before_x(1, i), after_x(2, i) - before_x(2, i),
                                              after_x(3, i) - before_x(3, i));
    if (d <= distance) continue;
    distance = d;
    atom = i;
  }
  double change = 0.0;
  int mode = 1;
  for (int i = first_vibration; i <= before_freq.size(); ++i) {
    const double d = au_to_cm * std::abs(after_freq(i) - before_freq(i));
    if (d <= change) continue;
    change = d;
    mode = i;
  }
  if (distance < moved_atom && change < moved_frequency) return;
  say.warn(of_state(state, k) + ": enforce_symm has moved atom " + std::to_string(atom) + " by " +
           with_digits(distance, 4) + " angstrom and frequency " + std::to_string(mode) + " from " +
           with_digits(au_to_cm * before_freq(mode), 1) + " to " +
           with_digits(au_to_cm * after_freq(mode), 1) +
           " cm-1; it copies the first of like atoms and takes no average, so the result depends on their "
           "order: compute the state with its symmetry");
}

void warn_of_dropped_elements(const array1<states>& state, int k, const array2<double>& whole,
                              const messages& say) {
  const states& it = state(k);
  const int n3 = it.atoms.n3;
  std::vector<double> d;
  for (int i = 1; i <= it.atoms.natom; ++i)
    for (int a = 1; a <= 3; ++a)
      d.push_back((state(2).atoms.x(a, i) - state(1).atoms.x(a, i)) *
                  state(1).atoms.sqtmass(3 * (i - 1) + a));
  const array2<double>& kept = it.force.fcm();
  double largest = 0.0;
  double dropped = 0.0;
  for (int j = 1; j <= n3; ++j) {
    for (int i = 1; i <= n3; ++i) {
      largest = std::max(largest, std::abs(whole(i, j)));
      dropped = std::max(dropped, std::abs(whole(i, j) - kept(i, j)));
    }
  }
  const auto energy = [&](const array2<double>& h) {
    const array1<double> force = transposed_product(h, d);
    double sum = 0.0;
    for (int i = 1; i <= n3; ++i) sum += 0.5 * au_to_cm * d[static_cast<std::size_t>(i - 1)] * force(i);
    return sum;
  };
  const double before = energy(whole);
  const double after = energy(kept);
  if (std::abs(after - before) < std::max(dropped_energy, dropped_share * std::abs(before))) return;
  say.warn(of_state(it, k) +
           ": the classification of the modes drops force constants between representations, up to " +
           with_digits(100.0 * dropped / largest, 2) +
           " % of the largest: the total reorganisation energy becomes " + with_digits(after, 1) + " from " +
           with_digits(before, 1) +
           " cm-1; without point_group, or with eckart_rot = 1 and set_cart = t, it does not");
}

void warn_of_equal_moments(const states& state, int k, bool point_group, const messages& say) {
  const std::array<double, 3> m = moments(state.atoms);
  const bool linear = m[0] < equal_moments * m[2];
  if (linear || (!equal(m[0], m[1]) && !equal(m[1], m[2]))) return;
  std::string pairs;
  std::size_t count = 0;
  for (int i = first_vibration; i < state.atoms.n3; ++i) {
    if (au_to_cm * std::abs(state.modes.freq(i + 1) - state.modes.freq(i)) > degenerate) continue;
    const double sum = au_to_cm * (state.cart.lam(i) + state.cart.lam(i + 1));
    if (std::abs(sum) > told_pair && ++count <= listed) {
      pairs.append(pairs.empty() ? "" : ", ").append(std::to_string(i)).append(" and ");
      pairs.append(std::to_string(i + 1)).append(" ").append(with_digits(sum, 2));
    }
    ++i;
  }
  if (count == 0 && !point_group) return;
  std::string text = of_state(state, k) + ": " + (equal(m[0], m[2]) ? "three" : "two");
  text += " moments of inertia are equal, so that its axes";
  if (point_group) text += ", the point group found (" + state.symmetry.new_pgrp.str() + "), representations";
  text += " and the values within degenerate pairs depend on the orientation of the file";
  if (count > 0) text += "; the sums of their reorganisation energies do not: modes " + pairs + " cm-1";
  say.warn(text);
}

void warn_of_missing_rows(const states& state, int k, const messages& say) {
  std::vector<bool> shown(static_cast<std::size_t>(state.atoms.n3) + 1);
  for (const int mode : state.modes.order) shown[static_cast<std::size_t>(mode)] = true;
  std::string modes;
  double energy = 0.0;
  for (int i = 1; i <= state.atoms.n3; ++i) {
    if (shown[static_cast<std::size_t>(i)]) continue;
    modes.append(modes.empty() ? "" : ", ").append(std::to_string(i));
    energy += au_to_cm * state.cart.lam(i);
  }
  if (modes.empty()) return;
  say.warn(of_state(state, k) + ": modes " + modes + " are in no row of the tables; they hold " +
           with_digits(energy, 2) + " of " + with_digits(au_to_cm * state.cart.lamt, 2) +
           " cm-1 of the reorganisation energy");
}

}  // namespace vbn
