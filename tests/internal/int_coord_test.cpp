// Tests of the redundant coordinates: rows of B as derivatives, and limits.
#include "internal/int_coord.hpp"  // for get_int_coord

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/ending.hpp"     // for ending_of
#include "tests/molecules.hpp"  // for molecule, state_of, disulfane

namespace vbn {
namespace {

internal_coordinates coordinates_of(const molecule& atoms) {
  return get_int_coord(state_of(atoms).atoms, "molecule.out", {}, {});
}

// Every atom moved at random by up to `reach`.
molecule shaken(molecule atoms, double reach, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> draw(-reach, reach);
  for (test_atom& atom : atoms)
    for (double& component : atom.x) component += draw(random);
  return atoms;
}

TEST(int_coord, rows_are_the_derivatives_in_angstrom) {
  const molecule allene{{6, {0, 0, 0}},           {6, {2.475, 0, 0}},     {6, {4.95, 0, 0}},
                        {1, {-1.06, 1.76, 0}},    {1, {-1.06, -1.76, 0}}, {1, {6.01, 0.57, 1.66}},
                        {1, {6.01, -0.57, -1.66}}};
  std::vector<molecule> molecules{allene, disulfane(pi_value - 3.0e-5), disulfane(3.0e-5 - pi_value)};
  for (unsigned seed = 1; seed <= 5; ++seed) {
    molecules.push_back(shaken(ammonia, 0.15, seed));
    molecules.push_back(shaken(disulfane(1.3 * seed), 0.15, seed));
  }
  for (const molecule& atoms : molecules) {
    const internal_coordinates at = coordinates_of(atoms);
    // A chain must not bend so far that the list changes.
    const double step = at.nlin == 0 ? 1.0e-3 : 2.0e-5;
    for (int k = 1; k <= 3 * static_cast<int>(atoms.size()); ++k) {
      const auto values_at = [&](double h) {
        molecule displaced = atoms;
        displaced[static_cast<std::size_t>((k - 1) / 3)].x[static_cast<std::size_t>((k - 1) % 3)] +=
            h / bohr_to_ang;
        const internal_coordinates there = coordinates_of(displaced);
        EXPECT_TRUE(there.intdef == at.intdef && there.iztype == at.iztype);
        return there.z;
      };
      const auto a = values_at(step), b = values_at(-step), c = values_at(2 * step), d = values_at(-2 * step);
      for (int m = 1; m <= at.nr; ++m) {
        if (at.iztype(m) == kind_linear_bend) continue;  // its value is not differentiable at 180 degrees
        const double near = std::remainder(a(m) - b(m), 2.0 * pi_value);
        const double far = std::remainder(c(m) - d(m), 2.0 * pi_value);
        EXPECT_NEAR(at.br(k, m), (8.0 * near - far) / (12.0 * step), 1.0e-6) << k << " " << m;
      }
    }
  }
}

TEST(int_coord, limits_stop_the_run_with_their_messages) {
  molecule many;
  for (int i = 0; i < 11; ++i)
    for (int a = -1; a <= 1; ++a) many.push_back({a == 0 ? 6 : 8, {2.19 * a, 19.0 * i, 0.0}});
  EXPECT_EQ(ending_of([&] { coordinates_of(many); }).error, "STOP too many linear bends in bmatred\n");
  many.resize(30);
  EXPECT_EQ(ending_of([&] { coordinates_of(many); }).status, -1);
  const molecule dense = shaken(molecule(111, {6, {}}), 0.95, 1);
  EXPECT_EQ(ending_of([&] { coordinates_of(dense); }).error, "STOP dimension mr\n");
  molecule twice = water;
  twice[2].x = twice[1].x;
  const ending e = ending_of([&] { coordinates_of(twice); });
  EXPECT_EQ(e.status, 1);
  EXPECT_NE(e.error.find("atoms 2 and 3"), std::string::npos);
}

}  // namespace
}  // namespace vbn
