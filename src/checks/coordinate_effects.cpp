// Differences of internal coordinates, and their shares of the total of the internal route.
#include "checks/coordinate_effects.hpp"  // for warn_of_routes

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "checks/wording.hpp"           // for with_digits, of_state
#include "internal/int_coord.hpp"       // for kind_linear_bend, kind_stretch, kind_bend
#include "internal/reorganisation.hpp"  // for proj_reorg_ene, reorganisation_table
#include "molecule/constants.hpp"       // for au_to_cm, rad_to_deg

namespace vbn {

namespace {

constexpr double routes_ratio = 1.5;       // totals of the two routes
constexpr double routes_difference = 200;  // the same, cm-1
constexpr double flipped = 2.6;            // rad (150 degrees); a torsion that changes so has the other sign
constexpr double straight_sine = 0.22;     // of an angle at the axis of such a torsion
constexpr double carried = 0.3;            // share of the total that makes a cause
constexpr double large_motion = 0.35;      // rad (20 degrees) of a torsion, half of it of a bend
constexpr double told_side = 1.0;          // degrees off a straight line
constexpr std::size_t listed = 3;
constexpr std::size_t most_deleted = 20;

std::string atoms_of(const internal_coordinates& c, int n) {
  std::string text = std::to_string(c.intdef(1, n));
  for (int a = 2; a <= 4 && c.intdef(a, n) > 0; ++a) text.append("-").append(std::to_string(c.intdef(a, n)));
  return text;
}

// Cosine of the angle a-b-c, and with it the part of the place of b across the line from a to c (3).
double cosine(const array2<double>& x, int a, int b, int c) {
  double ab = 0.0;
  double cb = 0.0;
  double dot = 0.0;
  for (int i = 1; i <= 3; ++i) {
    const double p = x(i, a) - x(i, b);
    const double q = x(i, c) - x(i, b);
    ab += p * p;
    cb += q * q;
    dot += p * q;
  }
  return dot / std::sqrt(ab * cb);
}

array1<double> across_line(const array2<double>& x, int a, int b, int c) {
  double length = 0.0;
  double along = 0.0;
  for (int i = 1; i <= 3; ++i) {
    length += (x(i, c) - x(i, a)) * (x(i, c) - x(i, a));
    along += (x(i, b) - x(i, a)) * (x(i, c) - x(i, a));
  }
  array1<double> side(3);
  for (int i = 1; i <= 3; ++i) side(i) = x(i, b) - x(i, a) - along / length * (x(i, c) - x(i, a));
  return side;
}

bool about_straight_angle(const array1<states>& state, int n) {
  const internal_coordinates& c = state(1).internal;
  if (c.intdef(4, n) == 0) return false;
  for (const states& it : state) {
    for (int first = 1; first <= 2; ++first) {
      const double cos =
          cosine(it.atoms.x, c.intdef(first, n), c.intdef(first + 1, n), c.intdef(first + 2, n));
      if (1.0 - cos * cos < straight_sine * straight_sine) return true;
    }
  }
  return false;
}

// The coordinates by decreasing share.
std::vector<int> by_share(const array1<double>& share) {
  std::vector<int> order;
  for (int n = 1; n <= share.size(); ++n) order.push_back(n);
  std::ranges::stable_sort(order, [&](int a, int b) { return share(a) > share(b); });
  return order;
}

std::string percent(double part, double whole) {
  return std::to_string(std::lround(100.0 * part / whole)) + " %";
}

// The cause that torsions about straight angles are, with the keys that leave them out; empty when they are
// not.
std::string flipped_torsions(const array1<states>& state, const input_data& input,
                             const array1<double>& share, double total) {
  const internal_coordinates& c = state(1).internal;
  std::string torsions;
  std::string keys;
  double held = 0.0;
  std::size_t count = 0;
  int entry = input.if_del_int_coord ? input.n_del_int_coord : 0;
  for (const int n : by_share(share)) {
    if (std::abs(c.zd(n)) < flipped || !about_straight_angle(state, n)) continue;
    held += share(n);
    if (++count > most_deleted) continue;
    if (count <= listed) torsions.append(torsions.empty() ? "" : ", ").append(atoms_of(c, n));
    keys.append(", def_del_int_coord(:,").append(std::to_string(++entry)).append(") = ");
    for (int a = 1; a <= 4; ++a) keys.append(a == 1 ? "" : ", ").append(std::to_string(c.intdef(a, n)));
  }
  if (count == 0 || held < carried * total) return {};
  return "torsions about nearly straight angles (" + torsions + (count > listed ? ", ..." : "") +
         ") change by half a revolution, which is no motion, and hold " + percent(held, total) +
         " of the latter; take the Cartesian columns, or leave them out: if_del_int_coord = t" + keys;
}

// Bends and torsions that change much and carry the energy; empty when there are none.
std::string large_motions(const internal_coordinates& c, const array1<double>& share, double total) {
  std::string text;
  std::size_t count = 0;
  for (const int n : by_share(share)) {
    const bool angle = c.iztype(n) != kind_stretch;
    const double least = c.iztype(n) == kind_bend ? 0.5 * large_motion : large_motion;
    if (!angle || std::abs(c.zd(n)) < least || share(n) <= 0.0 || ++count > listed) continue;
    text.append(text.empty() ? "" : ", ").append(atoms_of(c, n)).append(" changes by ");
    text.append(std::to_string(std::lround(rad_to_deg * std::abs(c.zd(n))))).append(" degrees and holds ");
    text.append(percent(share(n), total));
  }
  return text;
}

std::string strongest(const internal_coordinates& c, const array1<double>& share, double total) {
  std::string text;
  const std::vector<int> order = by_share(share);
  for (std::size_t i = 0; i < std::min(listed, order.size()); ++i) {
    text.append(text.empty() ? "" : ", ").append(atoms_of(c, order[i])).append(" ");
    text.append(percent(share(order[i]), total));
  }
  return text;
}

// The cause where torsions about straight angles are none.
std::string other_cause(const internal_coordinates& c, const reorganisation_shares& shares) {
  const std::string motions = large_motions(c, shares.x, shares.x_tot);
  if (!motions.empty())
    return "the motion is too large for at least one of the two: " + motions + " of the latter";
  return "no bend or torsion changes by much: the internal coordinates describe the change badly, and most "
         "of the "
         "latter is in " +
         strongest(c, shares.x, shares.x_tot);
}

}  // namespace

void warn_of_linear_bends(const array1<states>& state, const messages& say) {
  const internal_coordinates& one = state(1).internal;
  const internal_coordinates& two = state(2).internal;
  std::string kinds;
  std::string sides;
  for (int n = 1; n <= one.nr; ++n) {
    const bool linear1 = one.iztype(n) == kind_linear_bend;
    const bool linear2 = two.iztype(n) == kind_linear_bend;
    if (!linear1 && !linear2) continue;
    const std::string angles =
        with_digits(rad_to_deg * one.z(n), 1) + " and " + with_digits(rad_to_deg * two.z(n), 1) + " degrees";
    if (linear1 != linear2) {
      kinds.append(kinds.empty() ? "" : ", ")
          .append(atoms_of(one, n))
          .append(" (")
          .append(angles)
          .append(")");
      continue;
    }
    const auto side = [&](const states& it) {
      return across_line(it.atoms.x, one.intdef(1, n), one.intdef(2, n), one.intdef(3, n));
    };
    const array1<double> a = side(state(1));
    const array1<double> b = side(state(2));
    const double off1 = 180.0 - rad_to_deg * one.z(n);
    const double off2 = 180.0 - rad_to_deg * two.z(n);
    if (std::min(off1, off2) < told_side || a(1) * b(1) + a(2) * b(2) + a(3) * b(3) >= 0.0) continue;
    sides.append(sides.empty() ? "" : ", ").append(atoms_of(one, n)).append(" (").append(angles).append(")");
  }
  if (!kinds.empty()) {
    say.warn("a bend is linear in one state alone: " + kinds +
             "; the plane of a linear bend depends on the orientation of the file, and the columns of "
             "vbn.dint.dat with it: use set_cart = t");
  }
  if (!sides.empty()) {
    say.warn("linear bends are bent to different sides in the two states: " + sides +
             "; their values have no sign, and the internal route takes the difference for the sum");
  }
}

void warn_of_routes(const array1<states>& state, const input_data& input, bool skip_first,
                    const messages& say) {
  for (int k = skip_first ? 2 : 1; k <= 2; ++k) {
    const double cart = au_to_cm * state(k).cart.lamt;
    const double dint = au_to_cm * state(k).dint.lamt;
    const double low = std::min(cart, dint);
    const double high = std::max(cart, dint);
    if (high - low < routes_difference || high < routes_ratio * low) continue;
    const reorganisation_table table = proj_reorg_ene(state);
    const reorganisation_shares& shares = k == 1 ? table.s1 : table.s2;
    const internal_coordinates& c = state(1).internal;
    const std::string flips = flipped_torsions(state, input, shares.x, shares.x_tot);
    const std::string cause = flips.empty() ? other_cause(c, shares) : flips;
    say.warn(of_state(state(k), k) + ": the total reorganisation energy is " + with_digits(cart, 1) +
             " cm-1 with Cartesian and " + with_digits(dint, 1) + " cm-1 with internal coordinates; " +
             cause);
    if (!flips.empty()) return;  // they are those of both states
  }
}

}  // namespace vbn
