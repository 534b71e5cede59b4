// Builds the bond graph from distances and from the lists of the input.
#include "internal/bond.hpp"  // for get_bond

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "molecule/elements.hpp"  // for nat_to_radius
#include "text/messages.hpp"      // for messages

namespace vbn {

namespace {

constexpr double radius_factor = 1.1;  // of the sum of two radii, below which two atoms are bonded
constexpr double bridge_length = 2.0;  // angstrom, from N or O to a hydrogen atom of another N or O
constexpr int any_element = std::numeric_limits<int>::max();

// A pair is bonded below `limit` (angstrom) when one atom has an atomic number from `low` to `high` and the
// other one above `partner_above`. Some limits are single-precision numbers: 1.8f is 1.7999999523162842, and
// a distance of exactly 1.8 is no bond.
struct fixed_limit {
  int low;
  int high;
  int partner_above;
  double limit;
};

constexpr fixed_limit fixed_limits[] = {
    {2, any_element, 1, 1.8f},  // two heavy atoms
    {10, any_element, 1, 2.0},  // one of the second row or beyond
    {1, 1, 1, 1.3f},            // hydrogen to a heavy atom
    {12, 12, 8, 3.8f},          // Mg to F and beyond; O is not among them
    {14, 14, 1, 2.0},           // Si
    {77, 77, 1, 2.2f},          // Ir
};

double distance(const array2<double>& x, int i, int j) {
  const double dx = x(1, i) - x(1, j);
  const double dy = x(2, i) - x(2, j);
  const double dz = x(3, i) - x(3, j);
  return std::sqrt(dx * dx + dy * dy + dz * dz);
}

void set_bond(array2<bool_>& bond, int i, int j, bool bonded) { bond(i, j) = bond(j, i) = bonded; }

// Covalent radii in angstrom, 0 for an element without one.
array1<double> radii(const array1<int>& nat, const messages& say) {
  array1<double> radius(nat.size());
  for (int i = 1; i <= nat.size(); ++i) {
    const std::optional<double> known = nat_to_radius(nat(i));
    radius(i) = known.value_or(0.0);
    if (!known)
      say.warn("no bond radius is known for atomic number " + std::to_string(nat(i)) + " of atom " +
               std::to_string(i) + ": only the fixed distance limits give it bonds");
  }
  return radius;
}

bool within_fixed_limit(int nat_i, int nat_j, double d) {
  return std::ranges::any_of(fixed_limits, [&](const fixed_limit& rule) {
    return nat_i >= rule.low && nat_i <= rule.high && nat_j > rule.partner_above && d < rule.limit;
  });
}

}  // namespace

array2<bool_> get_bond(const array2<double>& x, const array1<int>& nat, const messages& say) {
  const int n = nat.size();
  array2<bool_> bond(n, n);
  const array1<double> radius = radii(nat, say);
  for (int i = 1; i < n; ++i)
    for (int j = i + 1; j <= n; ++j) {
      const double d = distance(x, i, j);
      if (d < radius_factor * (radius(i) + radius(j)) || within_fixed_limit(nat(i), nat(j), d) ||
          within_fixed_limit(nat(j), nat(i), d))
        set_bond(bond, i, j, true);
    }

  const auto bridges = [&nat](int i) { return nat(i) == 7 || nat(i) == 8; };
  for (int i = 1; i <= n; ++i) {
    if (nat(i) != 1) continue;
    for (int j = 1; j <= n; ++j) {
      if (!bond(i, j) || !bridges(j)) continue;
      for (int k = 1; k <= n; ++k)
        if (k != j && bridges(k) && distance(x, k, i) < bridge_length) set_bond(bond, k, i, true);
    }
  }
  return bond;
}

void def_bond(const input_data& input, array2<bool_>& bond) {
  if (input.if_add_int_coord)
    for (int i = 1; i <= input.n_add_int_coord; ++i)
      if (input.def_add_int_type(i) == 'b')
        set_bond(bond, input.def_add_int_coord(1, i), input.def_add_int_coord(2, i), true);
  if (input.if_del_int_coord)
    for (int i = 1; i <= input.n_del_int_coord; ++i)
      if (input.def_del_int_type(i) == 'b')
        set_bond(bond, input.def_del_int_coord(1, i), input.def_del_int_coord(2, i), false);
}

array1<int> get_bond_num(const array2<bool_>& bond) {
  const int n = bond.rows();
  array1<int> bond_num(n);
  for (int i = 1; i <= n; ++i)
    for (int j = 1; j <= n; ++j)
      if (j != i && bond(j, i)) ++bond_num(i);
  return bond_num;
}

}  // namespace vbn
