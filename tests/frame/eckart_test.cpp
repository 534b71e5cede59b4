// Tests of the Eckart step: candidates, choice, report and what is turned.
#include "frame/eckart.hpp"  // for do_eckart

#include <gtest/gtest.h>

#include <string>

#include "app/run_data.hpp"          // for run_data
#include "frame/inertial.hpp"        // for inertm
#include "app/run_data.hpp"          // for run_data
#include "tests/frame/molecule.hpp"  // for spring_molecule
#include "tests/written_file.hpp"    // for scratch, content_of
#include "text/output_file.hpp"      // for output_file

namespace vbn {
namespace {

// Runs the step and gives what it wrote to the log.
std::string log_of_step(run_data& run) {
  const std::string name = scratch("eckart.out");
  run.fout = output_file(name);
  states& g = run.state(1);
  const array2<double> rot =
      do_eckart(g.atoms.x, run.state(2).atoms.x, g.atoms.mass, run.input.set_eckart_order, run.fout);
  rotate_state(rot, run.input.proj_nacme == 1, run.input.proj_tdipd == 1, g);
  run.fout.close();
  return content_of(name);
}

TEST(eckart, a_turned_state_comes_back_onto_the_other_with_everything_in_its_frame) {
  for (const auto& atoms : {chiral_molecule, water, hydrogen_cyanide}) {
    for (const int projected : {1, 2}) {
      run_data run;
      run.input.do_nacme = run.input.do_tdipd = true;
      run.input.proj_nacme = run.input.proj_tdipd = projected;
      run.state(2) = spring_molecule(atoms);
      states& g = run.state(1);
      states& e = run.state(2);
      inertm(e.atoms.mass, e.atoms.x);
      g = e;
      move_molecule(g, random_rotation(22), {});
      g.couplings.nacme_x = g.atoms.x;
      for (int a = 1; a <= 3; ++a) g.dipole.dip0(a) = g.dipole.tdipd_x(a, 3, 2) = g.atoms.x(a, 3);
      for (int k = 1; k <= g.atoms.n3; ++k)
        g.modes.cm(k, 2) = g.atoms.x.span()[static_cast<std::size_t>(k - 1)];
      const states before = g;

      const array3<double> t = get_eckart_rot(g.atoms.x, e.atoms.x, g.atoms.mass);
      for (int j = 1; j <= 4; ++j) {
        array2<double> r(3, 3);
        for (int k = 1; k <= 3; ++k)
          for (int i = 1; i <= 3; ++i) r(i, k) = t(i, k, j);
        EXPECT_NEAR(determinant3(r), 1.0, 1e-12) << j;
      }
      log_of_step(run);
      expect_near(g.atoms.x, e.atoms.x,
                  1e-7);  // the least moment of a planar pair is the root of a rounding error
      const array2<double>& coupled = projected == 1 ? g.atoms.x : before.atoms.x;
      expect_near(g.couplings.nacme_x, coupled, 1e-13);
      for (int a = 1; a <= 3; ++a) EXPECT_NEAR(g.dipole.dip0(a), coupled(a, 3), 1e-13);
      for (int a = 1; a <= 3; ++a) EXPECT_NEAR(g.dipole.tdipd_x(a, 3, 2), coupled(a, 3), 1e-13);
      EXPECT_NEAR(g.modes.cm(5, 2), g.atoms.x(2, 2), 1e-13);
      if (atoms.size() > 3) {  // a linear pair leaves the turn about its axis open
        expect_near(g.force.fc(), e.force.fc(), 1e-9);
        EXPECT_EQ(g.force.fcm()(2, 7), g.force.fc()(2, 7) / g.atoms.sqtmass(2) / g.atoms.sqtmass(7));
      }
    }
  }
}

}  // namespace
}  // namespace vbn
