// Tests of the point-group search, the symmetry-adapted coordinates and the representatives.
#include "symmetry/point_group.hpp"  // for point_group1

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "linalg/matmul.hpp"    // for matmul
#include "tests/molecules.hpp"  // for molecule, state_of, of_group

namespace vbn {
namespace {

constexpr double tol = 0.01;  // bohr, of all searches but one

std::string group_of(const molecule& atoms) {
  symmetry_data symmetry;
  point_group1(state_of(atoms).atoms, tol, symmetry, {});
  return symmetry.new_pgrp.str();
}

TEST(point_group, hand_made_tables_are_groups_with_orthogonal_characters_that_multiply) {
  for (int p = 1; p <= n_symm_op; ++p) {
    const std::string name(op_name(p));
    const int normal = name.back() == 'z' ? 3 : name.back() == 'x' ? 1 : 2;
    for (int a = 1; a <= 3; ++a) {
      const int expected = name == "E"                   ? 1
                           : name == "I"                 ? -1
                           : name.substr(0, 2) == "C2"   ? (a == normal ? 1 : -1)
                           : name.find("xyz"[a - 1]) > 9 ? -1
                                                         : 1;
      EXPECT_EQ(symm_op(a, p), expected) << name << a;
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

struct textbook_case {
  molecule atoms;  // in the principal axes, x that of the smallest moment
  std::string group;
  std::vector<int> modes;  // coordinates of each representation, translations and rotations included
};

const molecule ethylene = {{6, {1.26, 0, 0}},     {6, {-1.26, 0, 0}},    {1, {2.32, 1.75, 0}},
                           {1, {2.32, -1.75, 0}}, {1, {-2.32, 1.75, 0}}, {1, {-2.32, -1.75, 0}}};
const std::vector<textbook_case> textbook = {
    // The rotation along y: A1, A2, then odd and even under the plane normal to x.
    {water, "C2V(y)", {3, 1, 3, 2}},
    // Ag, B1g (xy), B2g (xz), B3g (yz), Au, B1u (z), B2u (y), B3u (x).
    {ethylene, "D2H", {3, 3, 2, 1, 1, 2, 3, 3}},
    // Hydrogen peroxide: no atom on the axis, so that each function of A has its partner in B.
    {{{8, {1.37, 0.05, -0.06}},
      {8, {-1.37, -0.05, -0.06}},
      {1, {1.75, 1.45, 0.95}},
      {1, {-1.75, -1.45, 0.95}}},
     "C2(z)",
     {6, 6}},
    // Three atoms in the plane xy: two functions each in the plane, one normal to it.
    {{{7, {1.1, -0.2, 0}}, {8, {-1.15, 0.05, 0}}, {1, {2.3, 1.5, 0}}}, "CS(z)", {6, 3}},
    {chiral_molecule, "C1", {15}},
    // Linear along x: for each atom one function along the axis and two across it; the exchange of the ends
    // gives g and u. B3g (yz) and Au stay empty.
    {{{6, {0, 0, 0}}, {8, {2.19, 0, 0}}, {8, {-2.19, 0, 0}}}, "D2H", {1, 1, 1, 0, 0, 2, 2, 2}},
    // A2 stays empty.
    {{{6, {0.1, 0, 0}}, {7, {2.2, 0, 0}}, {1, {-1.9, 0, 0}}}, "C2V(x)", {3, 0, 3, 3}},
    // C3V of ammonia by the one mirror plane along an axis, with N and one H in it.
    {{{7, {0, 0, 0.12}}, {1, {1.77, 0, -0.6}}, {1, {-0.885, 1.533, -0.6}}, {1, {-0.885, -1.533, -0.6}}},
     "CS(y)",
     {7, 5}},
    {{{2, {0, 0, 0}}}, "D2H", {0, 0, 0, 0, 0, 1, 1, 1}}};

TEST(point_group, small_molecules_have_the_group_and_the_reduction_of_the_textbook) {
  for (const textbook_case& c : textbook) {
    SCOPED_TRACE(c.group);
    symmetry_data symmetry;
    point_group1(state_of(c.atoms).atoms, tol, symmetry, {});
    EXPECT_EQ(symmetry.new_pgrp.str(), c.group);
    ASSERT_EQ(symmetry.nrep, static_cast<int>(c.modes.size()));
    int rows = 0;  // the rows of all representations follow each other without a gap
    for (int r = 1; r <= symmetry.nrep; ++r) {
      const int modes = c.modes[static_cast<std::size_t>(r - 1)];
      EXPECT_EQ(symmetry.nr_lw(r), modes == 0 ? 0 : rows + 1);
      EXPECT_EQ(symmetry.nr_hi(r), modes == 0 ? 0 : rows + modes);
      rows += modes;
    }
    const array2<double> unit = matmul(symmetry.trans_symm, symmetry.trans_symm, op::plain, op::transposed);
    for (int j = 1; j <= rows; ++j)
      for (int i = 1; i <= rows; ++i) EXPECT_NEAR(unit(i, j), i == j ? 1.0 : 0.0, 1e-14) << i << ' ' << j;
  }
}

// The representatives by the plain method: a scan of all found so far, with the lowest operation that maps
// one of them onto the atom or the pair.
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

TEST(point_group, in_every_group_representatives_are_those_of_the_scan_over_all_found_so_far) {
  for (int npg = 1; npg <= n_point_group; ++npg) {
    SCOPED_TRACE(pg_name(npg));
    const atom_data atoms = state_of(of_group(npg, 0.002)).atoms;
    symmetry_data symmetry;
    const symmetry_search found = point_group1(atoms, tol, symmetry, {});
    EXPECT_EQ(symmetry.new_pgrp.str(), pg_name(npg));
    plain_search single{found, {}}, pairs{found, {}};
    for (int i = 1; i <= atoms.natom; ++i) {
      const representative own = single.of(i, i);
      for (int a = 1; a <= 3; ++a) {
        EXPECT_TRUE(symmetry.id3(1, a, i) == own.atom && symmetry.id3(2, a, i) == a);
        EXPECT_EQ(symmetry.id3(3, a, i) * (3 * (i - 1) + a), found.jreln3(3 * (own.atom - 1) + a, own.ip));
      }
      for (int j = 1; j <= atoms.natom; ++j) {
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
  const auto heavy = [](molecule atoms, std::initializer_list<std::size_t> places, double mass = 2.01410178) {
    for (const std::size_t i : places) atoms[i].mass = mass;
    return group_of(atoms);
  };
  EXPECT_EQ(heavy(water, {1}), "CS(z)");
  EXPECT_EQ(heavy(water, {1, 2}), "C2V(y)");
  EXPECT_EQ(heavy(water, {1}, 1.00782504), "CS(z)");
  EXPECT_EQ(heavy(ethylene, {2, 3}), "C2V(x)");  // both on one carbon
  EXPECT_EQ(heavy(ethylene, {2, 4}), "C2V(y)");  // cis
  EXPECT_EQ(heavy(ethylene, {2, 5}), "C2H(z)");  // trans
}

TEST(point_group, operations_that_form_no_group_leave_the_molecule_without_symmetry) {
  // C2z and C2x hold within the tolerance, their product C2y does not.
  const double d = 0.004;
  symmetry_data symmetry;
  const symmetry_search found = point_group1(state_of({{6, {0, 0, 0}},
                                                       {1, {1, 2, 3}},
                                                       {1, {-1 + d, -2, 3}},
                                                       {1, {-1, 2 + d, -3}},
                                                       {1, {1 + d, -2, -3 - 2 * d}}})
                                                 .atoms,
                                             0.0105, symmetry, {});
  EXPECT_EQ(symmetry.new_pgrp.str(), "C1");
  EXPECT_EQ(found.nop, 1);
}

}  // namespace
}  // namespace vbn
