// Tests of the enforcement of symmetry on geometry, force constants and couplings.
#include "symmetry/enforcement.hpp"  // for get_enforce_symm

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "frame/inertial.hpp"   // for get_inertial
#include "linalg/matmul.hpp"    // for matmul
#include "tests/ending.hpp"     // for ending_of
#include "tests/molecules.hpp"  // for state_of, of_group

namespace vbn {
namespace {

// The largest element of the matrix between coordinates of different representations.
double largest_between_representations(const symmetry_data& symmetry, const array2<double>& matrix) {
  const array2<double> blocks =
      matmul(matmul(symmetry.trans_symm, matrix), symmetry.trans_symm, op::plain, op::transposed);
  double largest = 0.0;
  for (int r = 1; r <= symmetry.nrep; ++r)
    for (int i = symmetry.nr_lw(r); i > 0 && i <= symmetry.nr_hi(r); ++i)
      for (int j = 1; j <= blocks.cols(); ++j)
        if (j < symmetry.nr_lw(r) || j > symmetry.nr_hi(r))
          largest = std::max(largest, std::abs(blocks(i, j)));
  return largest;
}

TEST(enforcement, noise_below_the_tolerance_is_gone_from_geometry_and_hessian_in_every_group) {
  std::mt19937 draw(5);
  std::uniform_real_distribution<double> noise(-0.001, 0.001);
  for (int npg = 2; npg <= n_point_group; ++npg) {
    SCOPED_TRACE(pg_name(npg));
    states state = state_of(of_group(npg, 0.0002));
    get_inertial(state, {});
    array2<double> fc = state.force.fc();
    for (int j = 1; j <= fc.cols(); ++j)
      for (int i = 1; i <= j; ++i) fc(i, j) = fc(j, i) = fc(i, j) + noise(draw);
    state.force.set_fc(state.atoms.sqtmass, fc);
    const ending e = ending_of([&](const messages& say) { get_enforce_symm(true, 0.01, state, say); });
    ASSERT_EQ(e.status, -1);
    EXPECT_EQ(e.printed, "");
    const std::string group = state.symmetry.new_pgrp.str();
    EXPECT_EQ(group.substr(0, group.find('(')), pg_name(npg).substr(0, pg_name(npg).find('(')));
    EXPECT_LT(largest_between_representations(state.symmetry, state.force.fc()), 1e-13);
    EXPECT_LT(largest_between_representations(state.symmetry, state.force.fcm()), 1e-16);
    point_group1(state.atoms, 1e-12, state.symmetry, {});
    EXPECT_EQ(state.symmetry.new_pgrp.str(), group);
  }
}

TEST(enforcement, mirror_cleaning_keeps_large_couplings_and_atoms_off_the_plane) {
  array2<double> x(3, 2), fc(6, 6, 0.005);
  x(3, 1) = -0.009;
  x(3, 2) = 0.01;  // not below the tolerance
  fc(1, 3) = -0.02;
  array1<bool_> mirror(3);
  mirror(3) = true;
  EXPECT_EQ(ending_of([&](const messages& say) { set_mirror(x, fc, mirror, 0.01, say); }).printed,
            "Set mirror fc(     1 ,     3 ) =      -0.0200000 > tol(      0.0100000 )\n");
  EXPECT_TRUE(x(3, 1) == 0.0 && x(3, 2) == 0.01);
  EXPECT_TRUE(fc(1, 3) == -0.02 && fc(2, 3) == 0.0 && fc(3, 2) == 0.0);
  EXPECT_TRUE(fc(1, 2) == 0.005 && fc(3, 3) == 0.005) << "both along the plane or normal to it";
  EXPECT_EQ(fc(1, 6), 0.005) << "the other atom is off the plane";
}

TEST(enforcement, atoms_on_an_axis_without_planes_lose_what_the_rotation_reverses) {
  // C2(z) with two atoms on the axis and a pair off it.
  states state =
      state_of({{8, {0.003, -0.002, 1}}, {16, {0, 0, -2}}, {1, {1.5, 0.5, 2}}, {1, {-1.5, -0.5, 2}}});
  const symmetry_search found = point_group1(state.atoms, 0.01, state.symmetry, {});
  ASSERT_EQ(state.symmetry.new_pgrp.str(), "C2(z)");
  array2<double>& x = state.atoms.x;
  array2<double> fc(12, 12, 0.005);
  fc(6, 1) = 0.02;
  const ending e =
      ending_of([&](const messages& say) { set_axis(found, state.symmetry.mirror, x, fc, 0.01, say); });
  EXPECT_NE(e.warned.find("warning: 1 force constants"), std::string::npos);
  EXPECT_TRUE(x(1, 1) == 0.0 && x(2, 1) == 0.0 && x(3, 1) == 1.0 && x(1, 3) == 1.5);
  EXPECT_TRUE(fc(6, 1) == 0.02 && fc(1, 6) == 0.0);
  EXPECT_TRUE(fc(1, 2) == 0.005 && fc(1, 9) == 0.005) << "both across the axis; the other atom is beside it";
}

// Two atoms, the second the image of the first under the reflection of x.
array3<int> reflected_pair() {
  array3<int> id3(3, 3, 2);
  for (int i = 1; i <= 2; ++i)
    for (int a = 1; a <= 3; ++a) {
      id3(1, a, i) = 1;
      id3(2, a, i) = a;
      id3(3, a, i) = i == 2 && a == 1 ? -1 : 1;
    }
  return id3;
}

array2<double> vectors(std::initializer_list<double> values) {
  array2<double> v(3, static_cast<int>(values.size()) / 3);
  std::copy(values.begin(), values.end(), v.data());
  return v;
}

TEST(enforcement, vector_field_takes_its_representatives_and_large_changes_stop_the_run) {
  array2<double> v = vectors({1, 2, 3, -1.02, 2, 3.001});
  ending e = ending_of([&](const messages& say) { get_array3(reflected_pair(), v, 0.01, say); });
  EXPECT_EQ(e.status, -1);
  EXPECT_EQ(e.printed,
            "get_array3:    2   1   1   1     -1.0200000      1.0000000     -1.0000000      0.0200000\n");
  EXPECT_EQ(v, vectors({1, 2, 3, -1, 2, 3}));
  v = vectors({1, 2, 3, -1.03, 2, 3});
  e = ending_of([&](const messages& say) { get_array3(reflected_pair(), v, 0.01, say); });
  EXPECT_EQ(e.status, 0);
  EXPECT_NE(e.printed.find("  dx  =       0.0122474\n  dx > tol"), std::string::npos);
}

TEST(enforcement, couplings_may_be_odd_and_those_of_no_parity_stay) {
  const auto enforced = [](array2<double> v) {
    get_array3s(reflected_pair(), v, 0.01);
    return v;
  };
  EXPECT_EQ(enforced(vectors({1, 2, 3, -1.004, 2, 3})), vectors({1, 2, 3, -1, 2, 3}));
  EXPECT_EQ(enforced(vectors({1, 2, 3, 1.004, -2, -3})), vectors({1, 2, 3, 1, -2, -3}));
  EXPECT_EQ(enforced(vectors({1, 2, 3, 1, 2, 3})), vectors({1, 2, 3, 1, 2, 3}));
  // Small couplings count as even first.
  EXPECT_EQ(enforced(vectors({0.001, 0, 0, 0.001, 0, 0})), vectors({0.001, 0, 0, -0.001, 0, 0}));
}

}  // namespace
}  // namespace vbn
