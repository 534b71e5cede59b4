// Tests of the redundant coordinates against lists written by hand.
#include "internal/int_coord.hpp"  // for get_int_coord

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <random>

#include "text/stop.hpp"                // for run_end
#include "tests/internal/molecule.hpp"  // for the molecules and list_of

namespace vbn {
namespace {

using namespace internal_molecules;

using entry = std::array<int, 4>;

char type_of(const entry& atoms) { return atoms[2] == 0 ? 'b' : atoms[3] == 0 ? 'a' : 'd'; }

input_data with_lists(std::initializer_list<entry> added, std::initializer_list<entry> deleted) {
  input_data input;
  for (const entry& atoms : added) {
    const int m = ++input.n_add_int_coord;
    for (int a = 1; a <= 4; ++a) input.def_add_int_coord(a, m) = atoms[static_cast<std::size_t>(a - 1)];
    input.def_add_int_type(m) = type_of(atoms);
  }
  for (const entry& atoms : deleted) {
    const int m = ++input.n_del_int_coord;
    for (int a = 1; a <= 4; ++a) input.def_del_int_coord(a, m) = atoms[static_cast<std::size_t>(a - 1)];
    input.def_del_int_type(m) = type_of(atoms);
  }
  input.if_add_int_coord = added.size() > 0;
  input.if_del_int_coord = deleted.size() > 0;
  return input;
}

run_end end_of(const std::vector<test_atom>& atoms, const input_data& input = {}) {
  states state = molecule(atoms);
  try {
    get_int_coord(state, input);
  } catch (const run_end& end) {
    return end;
  }
  return {-1, "no stop"};
}

TEST(int_coord, small_molecules_have_the_coordinates_of_a_careful_reader) {
  EXPECT_EQ(list_of({{7, {0, 0, 0}}, {7, {0, 0, 1.1}}}), "1(1,2)");
  EXPECT_EQ(list_of(water), "1(1,2) 1(1,3) 3(2,1,3)");
  EXPECT_EQ(list_of(disulfane(1.5)), "1(1,2) 1(2,3) 1(3,4) 3(1,2,3) 4(1,2,3,4) 3(2,3,4)");
  EXPECT_EQ(list_of(ammonia), "1(1,2) 1(1,3) 1(1,4) 3(2,1,3) 5(2,1,3,4) 3(2,1,4) 3(3,1,4)");
  EXPECT_EQ(list_of({{16, {0, 0, 0}}, {16, {2.05, 0, 0}}, {16, {2.05, 2.05, 0.3}}, {16, {0, 2.05, 0}}}),
            "1(1,2) 1(1,4) 1(2,3) 1(3,4) 3(1,2,3) 4(1,2,3,4) 3(1,4,3) 3(2,1,4) 4(2,1,4,3) 3(2,3,4) "
            "4(2,3,4,1) 4(4,1,2,3)");
}

TEST(int_coord, hydrogen_bridges_of_hydrogen_peroxide_make_bonds_bends_and_dihedrals) {
  EXPECT_EQ(list_of({{1, {-0.17, 0.95, 0}}, {8, {0, 0, 0}}, {8, {1.45, 0, 0}}, {1, {1.62, -0.35, 0.88}}}),
            "1(1,2) 1(1,3) 1(2,3) 1(2,4) 1(3,4) 3(1,2,3) 4(1,2,3,4) 3(1,2,4) 4(1,2,4,3) 3(1,3,2) 3(1,3,4) "
            "4(1,3,4,2) 3(2,1,3) 4(2,1,3,4) 3(2,3,4) 3(2,4,3) 4(3,1,2,4) 3(3,2,4) 4(4,2,3,1)");
}

TEST(int_coord, two_substituted_neighbours_turn_about_their_bond_in_nine_ways) {
  std::vector<test_atom> ethane{{6, {0, 0, 0}}, {6, {1.53, 0, 0}}};
  for (int h = 0; h < 6; ++h) {
    const double turn = pi_value / 3.0 * h + 0.2;
    ethane.push_back({1, {h % 2 == 0 ? -0.39 : 1.92, 1.02 * std::cos(turn), 1.02 * std::sin(turn)}});
  }
  states state = molecule(ethane);
  get_int_coord(state, {});
  EXPECT_EQ(state.internal.nb, 7);
  EXPECT_EQ(state.internal.na, 12);
  EXPECT_EQ(state.internal.nt, 9);
  EXPECT_EQ(state.internal.nr, 28);
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

TEST(int_coord, what_hangs_on_the_ends_of_a_chain_turns_about_it) {
  states state = molecule(allene);
  get_int_coord(state, {});
  EXPECT_EQ(listed(state),
            "1(1,2) 1(1,4) 1(1,5) 1(2,3) 1(3,6) 1(3,7) 2(1,2,3) 3(2,1,4) 3(2,1,5) 3(2,3,6) 3(2,3,7) 3(4,1,5) "
            "3(6,3,7) 6(4,1,3,6) 6(4,1,3,7) 6(5,1,3,6) 6(5,1,3,7)");
  EXPECT_EQ(state.internal.nlt, 4);
  for (int m = 1; m <= state.internal.nr; ++m) EXPECT_EQ(state.internal.scales(m), m <= 6 ? 1.0 : rad_to_deg);
}

TEST(int_coord, a_nearly_straight_angle_is_a_bend_only_at_a_centre_of_two_bonds) {
  const double lean = std::asin(0.21);
  std::vector<test_atom> bent{
      {17, {-2.0, 0, 0}}, {16, {0, 0, 0}}, {17, {2.0 * std::cos(lean), 2.0 * std::sin(lean), 0}}};
  EXPECT_EQ(list_of(bent), "1(1,2) 1(2,3) 3(1,2,3)");
  bent.push_back({17, {0, -2.0, 0}});
  bent.push_back({17, {0, 0.3, 2.0}});
  EXPECT_EQ(list_of(bent).find("3(1,2,3)"), std::string::npos);
  EXPECT_NE(list_of(bent).find("3(1,2,4)"), std::string::npos);
}

TEST(int_coord, impropers_that_have_no_value_are_left_out) {
  // A square around one centre: opposite atoms and the centre stand in a line.
  const std::vector<test_atom> square{
      {54, {0, 0, 0}}, {9, {1.95, 0, 0}}, {9, {0, 1.95, 0}}, {9, {-1.95, 0, 0}}, {9, {0, -1.95, 0}}};
  states state = molecule(square);
  get_int_coord(state, {});
  for (const double component : state.internal.br.span()) EXPECT_TRUE(std::isfinite(component));
  EXPECT_EQ(listed(state).find("5(2,1,3,5)"), std::string::npos);  // 3 and 5 are opposite
  EXPECT_NE(listed(state).find("5(2,1,3,4)"), std::string::npos);
  EXPECT_EQ(state.internal.nit, 2);
}

TEST(int_coord, added_and_deleted_coordinates_change_the_list) {
  // A dihedral to an atom that is not bonded takes the place of the improper, and its first three atoms name
  // an angle that is there already.
  EXPECT_EQ(list_of(ammonia, with_lists({{2, 1, 3, 4}}, {})),
            "1(1,2) 1(1,3) 1(1,4) 3(2,1,3) 4(2,1,3,4) 3(2,1,4) 3(3,1,4)");
  EXPECT_EQ(list_of(ammonia, with_lists({}, {{2, 1, 3, 0}})), "1(1,2) 1(1,3) 1(1,4) 3(2,1,4) 3(3,1,4)");
  EXPECT_EQ(list_of(disulfane(1.5), with_lists({}, {{1, 2, 3, 4}})), "1(1,2) 1(2,3) 1(3,4) 3(2,3,4)");
  EXPECT_EQ(list_of(disulfane(1.5), with_lists({}, {{4, 3, 2, 1}})),
            "1(1,2) 1(2,3) 1(3,4) 3(1,2,3) 4(1,2,3,4) 3(2,3,4)");
  EXPECT_EQ(list_of(disulfane(1.5), with_lists({}, {{2, 3, 0, 0}})), "1(1,2) 1(3,4)");
  EXPECT_EQ(
      list_of(disulfane(1.5), with_lists({{1, 4, 0, 0}}, {})),
      "1(1,2) 1(1,4) 1(2,3) 1(3,4) 3(1,2,3) 4(1,2,3,4) 3(1,4,3) 3(2,1,4) 4(2,1,4,3) 3(2,3,4) 4(2,3,4,1) "
      "4(4,1,2,3)");
  // A bond that both lists name ends as deleted.
  EXPECT_EQ(list_of(disulfane(1.5), with_lists({{1, 4, 0, 0}}, {{1, 4, 0, 0}})), list_of(disulfane(1.5)));
  // An angle about a bond that leads on to an atom without a bond to the centre.
  EXPECT_EQ(list_of(disulfane(1.5), with_lists({{1, 2, 4, 0}}, {})),
            "1(1,2) 1(2,3) 1(3,4) 3(1,2,3) 4(1,2,3,4) 3(1,2,4) 4(1,2,4,3) 3(2,3,4)");
}

TEST(int_coord, an_added_entry_outranks_a_deleted_one_and_a_list_without_its_flag_has_no_effect) {
  input_data input = with_lists({{1, 2, 3, 4}}, {{1, 2, 3, 0}});
  EXPECT_EQ(list_of(disulfane(1.5), input), list_of(disulfane(1.5)));
  EXPECT_EQ(def_int(input, 'b', 1, 2, 9, 9), 1);
  EXPECT_EQ(def_int(input, 'd', 1, 2, 3, 5), 0);
  EXPECT_EQ(def_int(input, 'a', 3, 2, 1, 0), 0);
  input.if_add_int_coord = false;
  EXPECT_EQ(def_int(input, 'a', 1, 2, 3, 0), -1);
  EXPECT_EQ(def_int(input, 'd', 1, 2, 3, 4), 0);
  input.if_del_int_coord = false;
  EXPECT_EQ(def_int(input, 'a', 1, 2, 3, 0), 0);
  EXPECT_EQ(list_of(disulfane(1.5), input), list_of(disulfane(1.5)));
}

TEST(int_coord, the_mark_l_makes_a_bent_angle_a_linear_bend_when_its_list_is_in_use) {
  input_data input = with_lists({{2, 1, 3, 0}}, {});
  input.def_add_int_coord_c(1, 1) = "l";
  EXPECT_EQ(list_of(water, input), "1(1,2) 1(1,3) 2(2,1,3)");
  input.if_add_int_coord = false;
  EXPECT_EQ(list_of(water, input), "1(1,2) 1(1,3) 3(2,1,3)");
}

TEST(int_coord, a_requested_dihedral_along_a_line_is_left_out_with_a_warning) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(list_of(chain_of_carbon(4), with_lists({{1, 2, 3, 4}}, {})),
            "1(1,2) 1(2,3) 1(3,4) 2(1,2,3) 2(2,3,4)");
  EXPECT_NE(testing::internal::GetCapturedStderr().find("1 2 3 4"), std::string::npos);
}

TEST(int_coord, a_ring_of_bends_called_linear_leaves_no_axis_and_no_undefined_value) {
  input_data input = with_lists({{1, 2, 3, 0}, {1, 3, 2, 0}, {2, 1, 3, 0}}, {});
  for (int m = 1; m <= 3; ++m) input.def_add_int_coord_c(1, m) = "l";
  states state = molecule({{16, {0, 0, 0}}, {16, {2.0, 0, 0}}, {16, {1.0, 1.7, 0}}});
  get_int_coord(state, input);
  for (const double component : state.internal.br.span()) EXPECT_TRUE(std::isfinite(component));
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
