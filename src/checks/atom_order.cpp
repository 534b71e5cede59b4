// Searches the isomorphisms of two bond graphs by branch and bound.
#include "checks/atom_order.hpp"  // for the routines

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "checks/wording.hpp"      // for with_digits
#include "internal/bond.hpp"       // for get_bond
#include "molecule/constants.hpp"  // for bohr_to_ang
#include "molecule/geometry.hpp"   // for superposed_distance

namespace vbn {

namespace {

constexpr long most_compared = 10'000'000;  // compared distances before the search is given up
constexpr double far_apart = 0.1;           // angstrom; nearer geometries have their atoms in one order
constexpr double pair_slack =
    0.002;  // bohr a pair of atoms; orders that differ less are compared by rotation
constexpr double clearly_nearer = 0.7;  // the distance with the other order over that with the given one
constexpr int listed_atoms = 200;       // in the message

using classes = std::vector<int>;

// Atoms that elements and bonds cannot tell apart get the same number, in both graphs (Morgan, 1965).
std::pair<classes, classes> refined(const atom_data& one, const array2<bool_>& bond1, const atom_data& two,
                                    const array2<bool_>& bond2) {
  const int n = one.natom;
  classes a(one.nat.begin(), one.nat.end());
  classes b(two.nat.begin(), two.nat.end());
  std::size_t found = 0;
  for (;;) {
    std::map<std::pair<int, classes>, int> names;
    const auto renamed = [&](const classes& old, const array2<bool_>& bond) {
      classes fresh;
      for (int i = 1; i <= n; ++i) {
        classes around;
        for (int j = 1; j <= n; ++j)
          if (bond(i, j)) around.push_back(old[static_cast<std::size_t>(j - 1)]);
        std::ranges::sort(around);
        const auto key = std::pair(old[static_cast<std::size_t>(i - 1)], around);
        fresh.push_back(names.try_emplace(key, static_cast<int>(names.size())).first->second);
      }
      return fresh;
    };
    a = renamed(a, bond1);
    b = renamed(b, bond2);
    if (names.size() == found) return {a, b};
    found = names.size();
  }
}

array2<double> distances(const array2<double>& x) {
  array2<double> d(x.cols(), x.cols());
  for (int j = 1; j <= x.cols(); ++j)
    for (int i = 1; i <= x.cols(); ++i)
      d(i, j) = std::hypot(x(1, i) - x(1, j), x(2, i) - x(2, j), x(3, i) - x(3, j));
  return d;
}

array2<double> reordered(const array2<double>& x, const array1<int>& place, double sign) {
  array2<double> y(3, x.cols());
  for (int i = 1; i <= x.cols(); ++i)
    for (int a = 1; a <= 3; ++a) y(a, i) = sign * x(a, place(i));
  return y;
}

struct search {
  const array2<double>& x1;
  const array2<double>& x2;
  const array2<bool_>& bond1;
  const array2<bool_>& bond2;
  classes class1, class2;
  array2<double> d1, d2;
  std::vector<int> order =
      {};  // atoms of the first graph, each but the first of a part bonded to an earlier one
  std::vector<int> parent = {};  // that earlier one, 0 for none
  array1<int> place;             // by atom of the first graph
  std::vector<bool> taken;       // atoms of the second graph
  // The least sum of the differences of all distances. They are the same in a mirror image, so of the orders
  // near it the rotation decides.
  double least = std::numeric_limits<double>::infinity();
  double limit = std::numeric_limits<double>::infinity();  // of the sum, for an order to be compared
  atom_order as_is = {}, mirrored = {};                    // the nearest of each
  long compared = 0, most = most_compared;

  bool fits(std::size_t step, int i, int k, double& cost) {
    compared += 1 + static_cast<long>(step);
    if (class1[static_cast<std::size_t>(i - 1)] != class2[static_cast<std::size_t>(k - 1)]) return false;
    for (std::size_t s = 0; s < step && cost < limit; ++s) {
      const int j = order[s];
      const int m = place(j);
      if (bond1(i, j) != bond2(k, m)) return false;
      cost += std::abs(d1(i, j) - d2(k, m));
    }
    return cost < limit;
  }

  void keep(atom_order& nearest, double sign) const {
    const double distance = superposed_distance(x1, reordered(x2, place, sign));
    if (nearest.place.size() == 0 || distance < nearest.distance) nearest = {place, distance, sign < 0.0};
  }

  // Places the atoms from `order[step]` on.
  void place_next(std::size_t step, double cost) {
    if (step == order.size()) {
      if (cost < least) {
        least = cost;
        limit = cost + pair_slack * static_cast<double>(step * step);
      }
      keep(as_is, 1.0);
      keep(mirrored, -1.0);
      return;
    }
    const int i = order[step];
    const int near = parent[step];
    std::vector<std::pair<double, int>> candidates;
    for (int k = 1; k <= static_cast<int>(taken.size()); ++k) {
      if (taken[static_cast<std::size_t>(k - 1)]) continue;
      if (near > 0 && !bond2(k, place(near))) continue;
      double with = cost;
      if (fits(step, i, k, with)) candidates.emplace_back(with, k);
    }
    std::ranges::sort(candidates);
    if (step == 0) most = most_compared / std::max<long>(1, static_cast<long>(candidates.size()));
    for (const auto& [with, k] : candidates) {
      if (step == 0) compared = 0;  // each place of the first atom gets its share
      if (with >= limit || compared > most) return;
      place(i) = k;
      taken[static_cast<std::size_t>(k - 1)] = true;
      place_next(step + 1, with);
      taken[static_cast<std::size_t>(k - 1)] = false;
    }
  }
};

// The atoms along the bonds, beginning in each part with an atom of the rarest class.
void lay_order(search& s) {
  std::map<int, int> count;
  for (const int c : s.class1) ++count[c];
  const std::size_t n = s.class1.size();
  std::vector<bool> reached(n);
  while (s.order.size() < n) {
    std::size_t root = n;
    for (std::size_t i = 0; i < n; ++i)
      if (!reached[i] && (root == n || count[s.class1[i]] < count[s.class1[root]])) root = i;
    std::size_t next = s.order.size();
    s.order.push_back(static_cast<int>(root) + 1);
    s.parent.push_back(0);
    reached[root] = true;
    for (; next < s.order.size(); ++next) {
      for (std::size_t k = 0; k < n; ++k) {
        if (reached[k] || !s.bond1(s.order[next], static_cast<int>(k) + 1)) continue;
        reached[k] = true;
        s.order.push_back(static_cast<int>(k) + 1);
        s.parent.push_back(s.order[next]);
      }
    }
  }
}

std::string list_of(const array1<int>& place) {
  std::string text;
  for (int i = 1; i <= std::min(place.size(), listed_atoms); ++i) {
    if (i > 1) text += ", ";
    text += std::to_string(place(i));
  }
  return place.size() > listed_atoms ? text + ", ..." : text;
}

}  // namespace

array2<bool_> bonds_of(const atom_data& atoms) {
  array2<double> x = atoms.x;
  for (double& component : x.span()) component *= bohr_to_ang;
  return get_bond(x, atoms.nat, {});
}

std::optional<atom_order> matching_order(const atom_data& one, const array2<bool_>& bond1,
                                         const atom_data& two, const array2<bool_>& bond2) {
  auto [class1, class2] = refined(one, bond1, two, bond2);
  classes sorted1 = class1;
  classes sorted2 = class2;
  std::ranges::sort(sorted1);
  std::ranges::sort(sorted2);
  if (sorted1 != sorted2) return std::nullopt;
  search s{.x1 = one.x,
           .x2 = two.x,
           .bond1 = bond1,
           .bond2 = bond2,
           .class1 = std::move(class1),
           .class2 = std::move(class2),
           .d1 = distances(one.x),
           .d2 = distances(two.x),
           .place = array1<int>(one.natom),
           .taken = std::vector<bool>(static_cast<std::size_t>(one.natom))};
  lay_order(s);
  s.place_next(0, 0.0);
  if (s.as_is.place.size() == 0) return std::nullopt;
  // A flat molecule is its own mirror image.
  const bool mirrored =
      bohr_to_ang * s.as_is.distance > far_apart && s.mirrored.distance < clearly_nearer * s.as_is.distance;
  return mirrored ? s.mirrored : s.as_is;
}

bool warn_of_atom_order(const array1<states>& state, const messages& say) {
  const atom_data& one = state(1).atoms;
  const atom_data& two = state(2).atoms;
  int other = 1;
  while (other <= one.natom && one.nat(other) == two.nat(other)) ++other;
  const bool same_elements = other > one.natom;
  const double given = superposed_distance(one.x, two.x);
  if (same_elements && bohr_to_ang * given < far_apart) return false;
  const std::optional<atom_order> found = matching_order(one, bonds_of(one), two, bonds_of(two));
  if (found && (!same_elements || found->distance < clearly_nearer * given)) {
    const std::string distances = with_digits(bohr_to_ang * found->distance, 3) +
                                  " angstrom (root mean square) apart, as given " +
                                  with_digits(bohr_to_ang * given, 3);
    if (std::ranges::is_sorted(found->place)) {
      say.warn("the states are mirror images: with one of them mirrored the geometries are " + distances);
    } else {
      say.warn("the atoms of the states are in another order: atoms 1 to " + std::to_string(one.natom) +
               " of " + state(1).file.ffreq.str() + " are atoms " + list_of(found->place) + " of " +
               state(2).file.ffreq.str() + (found->mirrored ? " (its mirror image)" : "") +
               "; so the geometries are " + distances + ". Give both files in one order");
    }
    return true;
  }
  if (!same_elements) {
    say.warn("atom " + std::to_string(other) + " is " + one.symbol(other).str() + " in " +
             state(1).file.ffreq.str() + " and " + two.symbol(other).str() + " in " +
             state(2).file.ffreq.str() +
             ": displacements are reliable only with the same order of the atoms in both files");
  }
  return !same_elements;
}

}  // namespace vbn
