// Tests of the internal coordinates at the edges of their range.
#include "internal/wilson_rows.hpp"  // for the rows

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "molecule/constants.hpp"  // for pi_value

namespace vbn {
namespace {

using atoms3 = std::array<vector3, 3>;

// The bend in the plane of the line r and the direction u, which passes pi without a turn.
double bend_in_plane(const atoms3& x, const vector3& r, const vector3& u) {
  const direction ij = get_r_d(x[0], x[1]);
  const direction kj = get_r_d(x[2], x[1]);
  return pi_value + std::atan2(dot(ij.r, u), dot(ij.r, r)) - std::atan2(-dot(kj.r, u), -dot(kj.r, r));
}

TEST(wilson_rows, linear_bend_is_the_bend_in_one_plane_and_has_one_even_along_the_fixed_direction) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> draw(-1.0, 1.0);
  const vector3 origin{0.0, 0.0, 0.0};
  for (int n = 0; n < 20; ++n) {
    vector3 r = get_r_d({draw(random), draw(random), draw(random)}, origin).r;
    if (n == 0) r = {std::sqrt(0.5), std::sqrt(0.5), 0.0};  // nothing of the fixed direction is across it
    const double along = (r[0] + r[1]) * std::sqrt(0.5);
    const vector3 across{std::sqrt(0.5) - along * r[0], std::sqrt(0.5) - along * r[1], -along * r[2]};
    const vector3 u = n == 0 ? vector3{0.0, 0.0, 1.0} : get_r_d(across, origin).r;
    const atoms3 x{vector3{1.1 * r[0], 1.1 * r[1], 1.1 * r[2]}, origin,
                   vector3{-1.4 * r[0], -1.4 * r[1], -1.4 * r[2]}};
    const wilson_row row = linear_bend_row(get_r_d(x[0], x[1]), get_r_d(x[2], x[1]));
    EXPECT_NEAR(row.z, pi_value, 1.0e-7);
    for (std::size_t atom = 0; atom < 3; ++atom)
      for (std::size_t a = 0; a < 3; ++a) {
        const double h = 1.0e-4;
        atoms3 plus = x, minus = x;
        plus[atom][a] += h;
        minus[atom][a] -= h;
        EXPECT_NEAR(row.b[atom][a], (bend_in_plane(plus, r, u) - bend_in_plane(minus, r, u)) / (2.0 * h),
                    1.0e-6);
      }
  }
}

TEST(wilson_rows, cosines_beyond_1_by_rounding_give_straight_and_flat_angles) {
  const double beyond = std::nextafter(1.0, 2.0);
  const direction one{{beyond, 0.0, 0.0}, 1.0};
  const direction other{{-beyond, 0.0, 0.0}, 1.0};
  EXPECT_EQ(sine_of(beyond), 0.0);
  EXPECT_EQ(linear_bend_row(one, other).z, pi_value);
  // Two right angles, the outer bonds parallel and antiparallel, all lengths a bit too large.
  const direction up{{0.0, beyond, 0.0}, 1.0};
  const direction down{{0.0, -beyond, 0.0}, 1.0};
  EXPECT_EQ(dihedral_row(up, one, up).z, 0.0);
  EXPECT_EQ(std::abs(dihedral_row(up, one, down).z), pi_value);
}

TEST(wilson_rows, improper_without_a_plane_or_along_its_normal_is_refused) {
  wilson_row row;
  const auto along = [](double x, double y, double z) { return get_r_d({x, y, z}, {0.0, 0.0, 0.0}); };
  EXPECT_FALSE(improper_row(along(0, 1, 0), along(1, 0, 0), along(-1, 1.0e-5, 0), row));
  EXPECT_FALSE(improper_row(along(0, 0, 1), along(1, 0, 0), along(-0.5, 0.8, 0), row));
  EXPECT_TRUE(improper_row(along(0.001, 0, 1), along(1, 0, 0), along(-0.5, 0.8, 0), row));
}

}  // namespace
}  // namespace vbn
