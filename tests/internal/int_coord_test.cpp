// Tests of the redundant coordinates against lists written by hand.
#include "internal/int_coord.hpp"  // for get_int_coord

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <random>

#include "text/stop.hpp"                // for run_end
#include "tests/internal/molecule.hpp"  // for the molecules

namespace vbn {
namespace {

using namespace internal_molecules;

run_end end_of(const std::vector<test_atom>& atoms, const input_data& input = {}) {
  states state = molecule(atoms);
  try {
    get_int_coord(state, input);
  } catch (const run_end& end) {
    return end;
  }
  return {-1, "no stop"};
}

TEST(int_coord, straight_chains_have_one_bend_a_triple_and_grow_outward) {
  states state = molecule({{8, {-1.16, 0, 0}}, {6, {0, 0, 0}}, {8, {1.16, 0, 0}}});
  get_int_coord(state, {});
  EXPECT_EQ(listed(state), "1(1,2) 1(2,3) 2(1,2,3)");
  state = molecule({{1, {-1.66, 0, 0}}, {6, {-0.6, 0, 0}}, {6, {0.6, 0, 0}}, {1, {1.66, 0, 0}}});
  get_int_coord(state, {});
  EXPECT_EQ(listed(state), "1(1,2) 1(2,3) 1(3,4) 2(1,2,3) 2(2,3,4)");
  // The chain is known by the centre of its first triple: the third triple begins another one.
  state = molecule(chain_of_carbon(5));
  get_int_coord(state, {});
  // Numbered from the middle outward: the chain grows at its first end, then at its last.
  state = molecule({{6, {1.3, 0, 0}}, {6, {2.6, 0, 0}}, {6, {0, 0, 0}}, {6, {3.9, 0, 0}}});
  get_int_coord(state, {});
  EXPECT_EQ(listed(state), "1(1,2) 1(1,3) 1(2,4) 2(1,2,4) 2(2,1,3)");
}

// Every atom moved at random by up to `reach`.
std::vector<test_atom> shaken(std::vector<test_atom> atoms, double reach, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> draw(-reach, reach);
  for (test_atom& atom : atoms)
    for (double& component : atom.x) component += draw(random);
  return atoms;
}

TEST(int_coord, rows_stand_in_the_places_of_their_atoms_and_are_derivatives_in_angstrom) {
  std::vector<std::vector<test_atom>> molecules{allene, disulfane(pi_value - 3.0e-5),
                                                disulfane(3.0e-5 - pi_value)};
  for (unsigned seed = 1; seed <= 5; ++seed) {
    molecules.push_back(shaken(ammonia, 0.08, seed));
    molecules.push_back(shaken(disulfane(1.3 * seed), 0.08, seed));
  }
  for (const auto& atoms : molecules) {
    states state = molecule(atoms);
    get_int_coord(state, {});
    // A chain must bend too little to change the list.
    const double step = state.internal.nlin == 0 ? 1.0e-3 : 2.0e-5;
    for (int k = 1; k <= state.atoms.n3; ++k) {
      const auto values_at = [&](double h) {
        states moved = molecule(atoms);
        moved.atoms.x((k - 1) % 3 + 1, (k - 1) / 3 + 1) += h / bohr_to_ang;
        get_int_coord(moved, {});
        EXPECT_EQ(listed(moved), listed(state));
        return moved.internal.z;
      };
      const auto a = values_at(step), b = values_at(-step), c = values_at(2 * step), d = values_at(-2 * step);
      for (int m = 1; m <= state.internal.nr; ++m) {
        if (state.internal.iztype(m) == kind_linear_bend) continue;  // its value has an edge at 180 degrees
        const double near = std::remainder(a(m) - b(m), 2.0 * pi_value);
        const double far = std::remainder(c(m) - d(m), 2.0 * pi_value);
        EXPECT_NEAR(state.internal.br(k, m), (8.0 * near - far) / (12.0 * step), 1.0e-6) << k << " " << m;
      }
    }
  }
}

TEST(int_coord, limits_stop_the_run_with_their_messages) {
  std::vector<test_atom> many;
  for (int i = 0; i < 11; ++i)
    for (int a = -1; a <= 1; ++a) many.push_back({a == 0 ? 6 : 8, {1.16 * a, 10.0 * i, 0.0}});
  EXPECT_EQ(end_of(many).text, "STOP too many linear bends in bmatred\n");
  many.resize(30);
  EXPECT_EQ(end_of(many).text, "no stop");
  std::mt19937 random(1);
  std::uniform_real_distribution<double> draw(-0.5, 0.5);
  std::vector<test_atom> dense;
  for (int i = 0; i < 111; ++i) dense.push_back({6, {draw(random), draw(random), draw(random)}});
  EXPECT_EQ(end_of(dense).text, "STOP dimension mr\n");
  std::vector<test_atom> twice = water;
  twice[2].x = twice[1].x;
  EXPECT_EQ(end_of(twice).status, 1);
  EXPECT_NE(end_of(twice).text.find("atoms 2 and 3"), std::string::npos);
}

}  // namespace
}  // namespace vbn
