// Tests of the Eckart step: candidates, choice, report and what is turned.
#include "frame/eckart.hpp"  // for do_eckart

#include <gtest/gtest.h>

#include <string>

#include "frame/inertial.hpp"        // for inertm
#include "run/matmul.hpp"            // for matmul
#include "tests/frame/molecule.hpp"  // for spring_molecule
#include "tests/written_file.hpp"    // for scratch, content_of

namespace vbn {
namespace {

// State 1 is state 2 turned by `r`, both centred.
run_data turned_pair(const std::vector<test_atom>& atoms, const array2<double>& r) {
  run_data run;
  run.state(2) = spring_molecule(atoms);
  inertm(run.state(2).mass, run.state(2).x);
  run.state(1) = run.state(2);
  move_molecule(run.state(1), r, {0.0, 0.0, 0.0});
  return run;
}

// Runs the step and gives what it wrote to the log.
std::string log_of_step(run_data& run) {
  const std::string name = scratch("eckart.out");
  run.fout = output_file(name);
  do_eckart(run);
  run.fout.close();
  return content_of(name);
}

void expect_near(const array2<double>& a, const array2<double>& b, double eps) {
  for (int j = 1; j <= a.cols(); ++j)
    for (int i = 1; i <= a.rows(); ++i) EXPECT_NEAR(a(i, j), b(i, j), eps) << i << ' ' << j;
}

TEST(eckart, all_candidates_are_proper_rotations_for_general_planar_and_linear_pairs) {
  for (const auto& atoms : {chiral_molecule, water, hydrogen_cyanide}) {
    const run_data run = turned_pair(atoms, random_rotation(21));
    const array3<double> t = get_eckart_rot(run.state(1).x, run.state(2).x, run.state(1).mass);
    for (int j = 1; j <= 4; ++j) {
      array2<double> r(3, 3);
      for (int k = 1; k <= 3; ++k)
        for (int i = 1; i <= 3; ++i) r(i, k) = t(i, k, j);
      EXPECT_NEAR(determinant3(r), 1.0, 1e-12) << j;
      array2<double> unit(3, 3);
      for (int a = 1; a <= 3; ++a) unit(a, a) = 1.0;
      expect_near(matmul(r, r, op::plain, op::transposed), unit, 1e-12);
    }
  }
}

TEST(eckart, a_turned_state_comes_back_onto_the_other_with_everything_in_its_frame) {
  for (const auto& atoms : {chiral_molecule, water, hydrogen_cyanide}) {
    const array2<double> r = random_rotation(22);
    run_data run = turned_pair(atoms, r);
    states& g = run.state(1);
    states reference = run.state(2);
    int info = 0;
    fc_to_fcm(reference.n3, reference.sqtmass, reference.fc, reference.fcm, 1, info);
    for (double& element : reference.cm.span()) element = 0.1;
    g.cm = reference.cm;
    rotn(r, g.cm.span());
    run.state(2).fc = array2<double>(g.n3, g.n3);
    log_of_step(run);
    expect_near(g.x, reference.x, 1e-7);  // the least moment of a planar pair is the root of a rounding error
    if (g.natom == 5) {                   // a linear pair leaves the turn about its axis open
      expect_near(g.fc, reference.fc, 1e-9);
      expect_near(g.fcm, reference.fcm, 1e-9);
      expect_near(g.cm, reference.cm, 1e-9);
      EXPECT_NEAR(g.c(4, 2), g.sqtmass(4) * 0.1, 1e-6);
    }
  }
}

TEST(eckart, the_log_tells_the_choice_all_candidates_and_the_one_selected) {
  run_data run;
  // Unit masses on the axes: the cross moment is diagonal with falling size from x to z.
  const std::vector<test_atom> cross = {{1, 1.0, {3.0, 0.0, 0.0}}, {1, 1.0, {-3.0, 0.0, 0.0}},
                                        {1, 1.0, {0.0, 2.0, 0.0}}, {1, 1.0, {0.0, -2.0, 0.0}},
                                        {1, 1.0, {0.0, 0.0, 1.0}}, {1, 1.0, {0.0, 0.0, -1.0}}};
  run.state(1) = run.state(2) = spring_molecule(cross);
  const std::string log = log_of_step(run);
  const std::string rule = std::string(80, '_') + "\n";
  // Two axes turned round move their atoms by twice the coordinate: `sum` is the sum of the squares over 18.
  const auto candidate = [&](int j, double sum, int sx, int sy, int sz) {
    char rows[300];
    std::snprintf(rows, sizeof rows,
                  "Eckart rotation%4d  Delta x = %14.7f\n%15.7f%15.7f%15.7f\n%15.7f%15.7f%15.7f\n"
                  "%15.7f%15.7f%15.7f\n",
                  j, bohr_to_ang * std::sqrt(sum / 18.0), double(sx), 0.0, 0.0, 0.0, double(sy), 0.0, 0.0,
                  0.0, double(sz));
    return rule + rows;
  };
  EXPECT_EQ(log, rule +
                     "Do Eckart rotation\n\nSet Eckart rotation matrix automatically\n"
                     "The index of Eckart matrix order = 1\n" +
                     candidate(1, 0.0, 1, 1, 1) + candidate(2, 40.0, 1, -1, -1) +
                     candidate(3, 104.0, -1, -1, 1) + candidate(4, 80.0, -1, 1, -1) + rule +
                     "Select rotation   1\n");

  run.state(1) = run.state(2);
  run.input.set_eckart_order = 3;
  const std::string forced = log_of_step(run);
  EXPECT_EQ(forced.find("Set Eckart rotation matrix manually\nThe index of Eckart matrix order = 3\n"),
            rule.size() + 20u);
  EXPECT_TRUE(forced.ends_with("Select rotation   3\n"));
  EXPECT_NEAR(run.state(1).x(1, 1), -3.0, 1e-12);

  run.input.set_eckart_order = 5;  // no candidate: chosen by the program
  for (double& element : run.state(2).x.span()) element *= 2.0e6;
  const std::string far = log_of_step(run);
  EXPECT_NE(far.find("Delta x =      1.3199993E+06\n"), std::string::npos) << far;
}

TEST(eckart, equal_distances_take_the_lowest_number) {
  run_data run;
  run.state(1) = run.state(2) = spring_molecule(chiral_molecule);
  for (double& element : run.state(2).x.span()) element = 0.0;
  const std::string log = log_of_step(run);
  EXPECT_TRUE(log.ends_with("Select rotation   1\n")) << log;
}

TEST(eckart, couplings_and_dipoles_turn_only_where_they_are_projected_on_state_1) {
  const array2<double> r = random_rotation(23);
  for (const int projected : {1, 2}) {
    run_data run = turned_pair(chiral_molecule, r);
    states& g = run.state(1);
    run.input.do_nacme = run.input.do_tdipd = true;
    run.input.proj_nacme = run.input.proj_tdipd = projected;
    g.nacme_x = g.x;
    for (int a = 1; a <= 3; ++a) g.dip0(a) = g.x(a, 2);
    for (int a = 1; a <= 3; ++a) g.tdipd_x(a, 3, 4) = g.x(a, 3);
    const states before = g;
    log_of_step(run);
    expect_near(g.nacme_x, projected == 1 ? g.x : before.x, 1e-13);
    const array2<double>& expected = projected == 1 ? g.x : before.x;
    for (int a = 1; a <= 3; ++a) EXPECT_NEAR(g.dip0(a), expected(a, 2), 1e-13);
    for (int a = 1; a <= 3; ++a) EXPECT_NEAR(g.tdipd_x(a, 3, 4), expected(a, 3), 1e-13);
  }
}

TEST(eckart, cartesian_modes_follow_the_weighted_ones_in_both_directions) {
  states state = spring_molecule(water);
  for (double& element : state.cm.span()) element = 0.5;
  int info = 9;
  c_to_cm(state.n3, state.sqtmass, state.c, state.cm, -1, info);
  EXPECT_EQ(info, 0);
  EXPECT_EQ(state.c(4, 7), state.sqtmass(4) * 0.5);
  array2<double> cm(state.n3, state.n3);
  c_to_cm(state.n3, state.sqtmass, state.c, cm, 1, info);
  expect_near(cm, state.cm, 1e-15);
  c_to_cm(0, state.sqtmass, state.c, cm, 1, info);
  EXPECT_EQ(info, -1);
  c_to_cm(state.n3, state.sqtmass, state.c, cm, 0, info);
  EXPECT_EQ(info, -2);
}

}  // namespace
}  // namespace vbn
