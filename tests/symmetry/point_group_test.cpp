// Tests of the point-group search, the symmetry-adapted coordinates and the representatives.
#include "symmetry/point_group.hpp"  // for point_group1

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "linalg/matmul.hpp"             // for matmul
#include "tests/symmetry/molecules.hpp"  // for molecule, textbook_cases, of_group

namespace vbn {
namespace {

// The rows of all representations follow each other without gap or overlap, and are orthonormal.
void expect_sound_basis(const states& state) {
  int rows = 0;
  for (int r = 1; r <= max_rep; ++r) {
    if (state.symmetry.nr_lw(r) == 0) {
      EXPECT_EQ(state.symmetry.nr_hi(r), 0);
      continue;
    }
    EXPECT_EQ(state.symmetry.nr_lw(r), rows + 1);
    EXPECT_GE(state.symmetry.nr_hi(r), state.symmetry.nr_lw(r));
    rows = state.symmetry.nr_hi(r);
  }
  EXPECT_EQ(rows, state.atoms.n3);
  const array2<double> unit =
      matmul(state.symmetry.trans_symm, state.symmetry.trans_symm, op::plain, op::transposed);
  for (int j = 1; j <= state.atoms.n3; ++j)
    for (int i = 1; i <= state.atoms.n3; ++i)
      EXPECT_NEAR(unit(i, j), i == j ? 1.0 : 0.0, 1e-14) << i << ' ' << j;
}

std::vector<int> modes_of(const states& state) {
  std::vector<int> modes;
  for (int r = 1; r <= state.symmetry.nrep; ++r)
    modes.push_back(state.symmetry.nr_lw(r) == 0 ? 0 : state.symmetry.nr_hi(r) - state.symmetry.nr_lw(r) + 1);
  return modes;
}

// The representatives by the plain method, which scans all those found so far and takes the lowest operation
// that sends one of them to the atom or the pair.
struct plain_search {
  const symmetry_search& found;
  std::vector<representative> unique;

  representative of(int iat, int jat) {
    for (const representative& r : unique)
      for (int ip = 1; ip <= n_symm_op; ++ip)
        if (found.op(ip) && found.jreln(r.atom, ip) == iat && found.jreln(r.other_atom, ip) == jat)
          return {r.atom, r.other_atom, ip};
    unique.push_back({iat, jat, 1});
    return unique.back();
  }
};

std::string group_of_atoms(const atoms& list, double tol = 0.01) {
  states state = molecule(list);
  point_group1(state, tol);
  return state.symmetry.new_pgrp.str();
}

TEST(point_group, hand_made_tables_are_groups_with_orthogonal_characters_that_multiply) {
  for (int p = 1; p <= n_symm_op; ++p) {
    const std::string name(op_name(p));
    const int normal = name.back() == 'z' ? 3 : name.back() == 'x' ? 1 : 2;
    for (int a = 1; a <= 3; ++a) {
      const int told = name == "E"                   ? 1
                       : name == "I"                 ? -1
                       : name.substr(0, 2) == "C2"   ? (a == normal ? 1 : -1)
                       : name.find("xyz"[a - 1]) > 9 ? -1
                                                     : 1;
      EXPECT_EQ(symm_op(a, p), told) << name << a;
    }
  }
  for (int npg = 1; npg <= n_point_group; ++npg) {
    const int order = nrep(npg);
    array1<int> place(n_symm_op);
    for (int g = 1; g <= order; ++g) place(ir_op(g, npg)) = g;
    EXPECT_EQ(ir_op(1, npg), 1) << npg;
    for (int r = 1; r <= order; ++r) {
      const std::string name(ir_name(r, npg));
      EXPECT_TRUE(r == 1 || ir_op(r, npg) > ir_op(r - 1, npg)) << npg;
      if (place(op_i) > 0) {
        EXPECT_EQ(ir_table(place(op_i), r, npg), name.back() == 'g' ? 1 : -1) << npg << name;
      }
      if (npg > 5 && npg != 9 && npg != 16) {  // one axis
        EXPECT_EQ(ir_table(2, r, npg), name[0] == 'A' ? 1 : -1) << npg << name;
      }
      for (int q = 1; q <= order; ++q) {
        const int product = place(op_product(ir_op(r, npg), ir_op(q, npg)));
        ASSERT_NE(product, 0) << npg;
        int overlap = 0;
        for (int g = 1; g <= order; ++g) {
          EXPECT_EQ(ir_table(r, g, npg) * ir_table(q, g, npg), ir_table(product, g, npg)) << npg << ' ' << g;
          overlap += ir_table(g, r, npg) * ir_table(g, q, npg);
        }
        EXPECT_EQ(overlap, r == q ? order : 0) << npg;
      }
    }
  }
}

TEST(point_group, small_molecules_have_the_group_and_the_reduction_of_the_textbook) {
  for (const textbook_case& c : textbook_cases()) {
    SCOPED_TRACE(c.name);
    states state = molecule(c.list);
    point_group1(state);
    EXPECT_EQ(state.symmetry.new_pgrp.str(), c.group);
    EXPECT_EQ(state.symmetry.nrep, static_cast<int>(c.modes.size()));
    EXPECT_EQ(modes_of(state), c.modes);
    expect_sound_basis(state);
  }
}

TEST(point_group, in_every_group_representatives_are_those_of_the_scan_over_all_found_so_far) {
  for (int npg = 1; npg <= n_point_group; ++npg) {
    SCOPED_TRACE(pg_name(npg));
    states state = molecule(of_group(npg, 0.002));
    const symmetry_search found = point_group1(state);
    EXPECT_EQ(state.symmetry.new_pgrp.str(), pg_name(npg));
    plain_search single{found, {}}, pairs{found, {}};
    for (int i = 1; i <= state.atoms.natom; ++i) {
      const representative own = single.of(i, i);
      for (int a = 1; a <= 3; ++a) {
        EXPECT_EQ(state.symmetry.id3(1, a, i), own.atom);
        EXPECT_EQ(state.symmetry.id3(2, a, i), a);
        EXPECT_EQ(state.symmetry.id3(3, a, i) * 3 * (i - 1) + state.symmetry.id3(3, a, i) * a,
                  found.jreln3(3 * (own.atom - 1) + a, own.ip));
      }
      for (int j = 1; j <= state.atoms.natom; ++j) {
        const representative pair = pairs.of(i, j);
        for (int a = 1; a <= 3; ++a)
          for (int b = 1; b <= 3; ++b) {
            const auto [ka, kx, la, lx, sg] = id9(found, b, j, a, i);
            EXPECT_TRUE(ka == pair.atom && kx == a && la == pair.other_atom && lx == b);
            EXPECT_EQ(sg, symm_op(a, pair.ip) * symm_op(b, pair.ip));
          }
      }
    }
  }
}

TEST(point_group, heavy_isotopes_take_away_the_operations_that_exchange_them_with_light_ones) {
  const std::vector<textbook_case> cases = textbook_cases();
  const auto heavy = [&](const std::string& name, std::initializer_list<std::size_t> places) {
    atoms list = of_case(cases, name);
    for (const std::size_t i : places) list[i].mass = 2.01410178;
    return group_of_atoms(list);
  };
  EXPECT_EQ(heavy("water", {1}), "CS(z)");
  EXPECT_EQ(heavy("water", {1, 2}), "C2V(y)");
  EXPECT_EQ(heavy("ethylene", {2}), "CS(z)");
  EXPECT_EQ(heavy("ethylene", {2, 3}), "C2V(x)");  // both on one carbon
  EXPECT_EQ(heavy("ethylene", {2, 4}), "C2V(y)");  // cis
  EXPECT_EQ(heavy("ethylene", {2, 5}), "C2H(z)");  // trans
  EXPECT_EQ(heavy("hydrogen peroxide", {2}), "C1");
  atoms nearly = of_case(cases, "water");
  nearly[1].mass = 1.007825 + 1e-9;
  EXPECT_EQ(group_of_atoms(nearly), "CS(z)");
}

TEST(point_group, operations_that_form_no_group_leave_the_molecule_without_symmetry) {
  // C2z and C2x hold within the tolerance, their product C2y does not.
  const double d = 0.004;
  states state = molecule(
      {{6, 0, 0, 0}, {1, 1, 2, 3}, {1, -1 + d, -2, 3}, {1, -1, 2 + d, -3}, {1, 1 + d, -2, -3 - 2 * d}});
  const symmetry_search found = point_group1(state, 0.0105);
  EXPECT_EQ(state.symmetry.new_pgrp.str(), "C1");
  EXPECT_EQ(found.nop, 1);
  expect_sound_basis(state);
}

}  // namespace
}  // namespace vbn
