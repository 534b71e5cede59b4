// Tests of the B rows against numerical derivatives.
#include "internal/wilson_rows.hpp"  // for the rows

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "run/constants.hpp"  // for pi_value

namespace vbn {
namespace {

using atoms4 = std::array<vector3, 4>;
constexpr double step = 1.0e-3;  // angstrom
constexpr double agreement = 1.0e-6;

// Derivative of an angle or length by one coordinate, by central differences of fourth order. An angle may
// pass from pi to -pi on the way.
template <class function>
double numerical(const function& z, atoms4 x, std::size_t atom, std::size_t a) {
  const double at = x[atom][a];
  const auto change = [&](double h) {
    x[atom][a] = at + h;
    const double plus = z(x);
    x[atom][a] = at - h;
    return std::remainder(plus - z(x), 2.0 * pi_value);
  };
  return (8.0 * change(step) - change(2.0 * step)) / (12.0 * step);
}

template <class row_function, class value_function>
void expect_derivatives(const row_function& row, const value_function& z, const atoms4& x) {
  const wilson_row r = row(x);
  for (std::size_t atom = 0; atom < 4; ++atom)
    for (std::size_t a = 0; a < 3; ++a)
      EXPECT_NEAR(r.b[atom][a], numerical(z, x, atom, a), agreement) << "atom " << atom << " axis " << a;
}

template <class row_function>
void expect_derivatives(const row_function& row, const atoms4& x) {
  expect_derivatives(
      row, [&row](const atoms4& at) { return row(at).z; }, x);
}

wilson_row stretch(const atoms4& x) { return stretch_row(get_r_d(x[0], x[1])); }
wilson_row normal_bend(const atoms4& x) { return bend_row(get_r_d(x[0], x[1]), get_r_d(x[2], x[1])); }
wilson_row linear_bend(const atoms4& x) { return linear_bend_row(get_r_d(x[0], x[1]), get_r_d(x[2], x[1])); }
wilson_row dihedral(const atoms4& x) {
  return dihedral_row(get_r_d(x[0], x[1]), get_r_d(x[2], x[1]), get_r_d(x[3], x[2]));
}
wilson_row improper(const atoms4& x) {
  wilson_row row;
  EXPECT_TRUE(improper_row(get_r_d(x[0], x[1]), get_r_d(x[2], x[1]), get_r_d(x[3], x[1]), row));
  return row;
}

class random_points {
 public:
  vector3 point() { return {draw_(random_), draw_(random_), draw_(random_)}; }
  // Four points far from each other and from lines through three of them.
  atoms4 atoms() {
    for (;;) {
      const atoms4 x{point(), point(), point(), point()};
      bool apart = true;
      for (std::size_t i = 0; i < 4; ++i)
        for (std::size_t j = 0; j < 4; ++j)
          for (std::size_t k = 0; k < 4; ++k)
            if (i != j && j != k && k != i)
              apart = apart && get_r_d(x[i], x[j]).d > 0.6 &&
                      sine_of(dot(get_r_d(x[i], x[j]).r, get_r_d(x[k], x[j]).r)) > 0.4;
      if (apart) return x;
    }
  }

 private:
  std::mt19937 random_{7};
  std::uniform_real_distribution<double> draw_{-1.5, 1.5};
};

TEST(wilson_rows, stretches_bends_and_dihedrals_have_the_derivatives_of_their_values) {
  random_points draw;
  for (int n = 0; n < 50; ++n) {
    const atoms4 x = draw.atoms();
    expect_derivatives(stretch, x);
    expect_derivatives(normal_bend, x);
    expect_derivatives(dihedral, x);
  }
}

TEST(wilson_rows, impropers_have_the_derivatives_of_their_values) {
  random_points draw;
  for (int tried = 0, n = 0; n < 50; ++tried) {
    ASSERT_LT(tried, 1000);
    const atoms4 x = draw.atoms();
    if (std::abs(improper(x).z) > 1.2) continue;  // close to the normal of the plane
    expect_derivatives(improper, x);
    ++n;
  }
}

TEST(wilson_rows, dihedral_has_its_sign_and_is_smooth_across_180_degrees) {
  for (const double z : {0.5, -2.0, pi_value - 3.0e-5, -pi_value + 3.0e-5}) {
    const atoms4 x{vector3{-0.3, 1.1, 0.1}, vector3{0.0, 0.1, 0.1}, vector3{1.4, 0.1, 0.1},
                   vector3{1.8, 0.1 + std::cos(z), 0.1 + std::sin(z)}};
    EXPECT_NEAR(dihedral(x).z, z, 1.0e-9);
    expect_derivatives(dihedral, x);
  }
}

// The bend in the plane of the line r and the direction u, which passes pi without a turn.
double bend_in_plane(const atoms4& x, const vector3& r, const vector3& u) {
  const direction ij = get_r_d(x[0], x[1]);
  const direction kj = get_r_d(x[2], x[1]);
  return pi_value + std::atan2(dot(ij.r, u), dot(ij.r, r)) - std::atan2(-dot(kj.r, u), -dot(kj.r, r));
}

TEST(wilson_rows, linear_bend_is_the_bend_in_one_plane_and_has_one_even_along_the_fixed_direction) {
  random_points draw;
  for (int n = 0; n < 20; ++n) {
    vector3 r = get_r_d(draw.point(), {0.0, 0.0, 0.0}).r;
    if (n == 0) r = {std::sqrt(0.5), std::sqrt(0.5), 0.0};  // nothing of the fixed direction is across it
    const double along = (r[0] + r[1]) * std::sqrt(0.5);
    const vector3 across{std::sqrt(0.5) - along * r[0], std::sqrt(0.5) - along * r[1], -along * r[2]};
    const vector3 u = n == 0 ? vector3{0.0, 0.0, 1.0} : get_r_d(across, {0.0, 0.0, 0.0}).r;
    const atoms4 x{vector3{0.2 + 1.1 * r[0], 1.1 * r[1], 1.1 * r[2]}, vector3{0.2, 0.0, 0.0},
                   vector3{0.2 - 1.4 * r[0], -1.4 * r[1], -1.4 * r[2]}, vector3{3.0, 3.0, 3.0}};
    EXPECT_NEAR(linear_bend(x).z, pi_value, 1.0e-7);
    expect_derivatives(
        linear_bend, [&](const atoms4& at) { return bend_in_plane(at, r, u); }, x);
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
