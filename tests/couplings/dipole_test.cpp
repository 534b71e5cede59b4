// Tests of the transition dipole derivatives: their file, the match with a state, and the modes.
#include "couplings/dipole.hpp"  // for get_tdipd, proj_dip

#include <gtest/gtest.h>

#include <cmath>

#include "frame/hessian.hpp"         // for get_freq
#include "frame/inertial.hpp"        // for get_inertial
#include "frame/projection.hpp"      // for get_proj_hessian
#include "tests/frame/molecule.hpp"  // for spring_molecule and move_molecule
#include "tests/written_file.hpp"    // for scratch, write_text
#include "text/layout.hpp"           // for layout
#include "text/stop.hpp"             // for run_end

namespace vbn {
namespace {

const double some_dipole[] = {0.25, -0.5, 0.125};

// A file of numerical frequencies at the geometry of the state, in bohr.
std::string dipole_file(const states& state, const array3<double>& derivatives) {
  std::string out =
      " NUMERICAL FREQUENCY\n VERSION 1.2\n\n NAtoms  " + std::to_string(state.atoms.natom) +
      "\n\n Coordinate Bohr\n   No    Z        mass               x               y               z\n";
  const layout atom("(2i5,4f20.12)");
  const layout row("(i5,2x,a1,3x,a1,i5,3f18.12)");
  for (int i = 1; i <= state.atoms.natom; ++i) {
    atom.write(out, {i, state.atoms.nat(i), state.atoms.mass(i), state.atoms.x(1, i), state.atoms.x(2, i),
                     state.atoms.x(3, i)});
  }
  out += "\n Transition dipole moment derivative (Atomic unit)\n";
  row.write(out, {0, "r", "-", 0, some_dipole[0], some_dipole[1], some_dipole[2]});
  for (int i = 1; i <= state.atoms.natom; ++i) {
    for (int k = 1; k <= 3; ++k) {
      row.write(out, {i, "C", std::string_view("xyz").substr(static_cast<std::size_t>(k - 1), 1),
                      3 * (i - 1) + k, derivatives(1, k, i), derivatives(2, k, i), derivatives(3, k, i)});
    }
  }
  return out + "\n";
}

states with_dipole(states state, const std::string& content) {
  const std::string name = scratch("tdip.dat");
  write_text(name, content);
  state.dipole.ftdipd = name;
  get_tdipd({&state, 1});
  return state;
}

// A dipole that is linear in the normal coordinates of a molecule in its principal frame: component l grows
// by 0.01 l m for a unit of mode m, and by nothing for the external modes.
TEST(dipole, linear_dipole_in_the_principal_frame_gives_its_slopes_and_another_frame_is_told) {
  states state = spring_molecule(chiral_molecule);
  get_inertial(state);
  get_proj_hessian(state, 1);
  get_freq(state);
  array3<double> derivatives(3, 3, state.atoms.natom);
  for (int i = 1; i <= state.atoms.natom; ++i)
    for (int k = 1; k <= 3; ++k)
      for (int l = 1; l <= 3; ++l)
        for (int m = 7; m <= state.atoms.n3; ++m)
          derivatives(l, k, i) +=
              0.01 * l * m * std::sqrt(state.atoms.massau(i)) * state.modes.cm(3 * (i - 1) + k, m);
  states got = with_dipole(state, dipole_file(state, derivatives));
  EXPECT_TRUE(got.dipole.ifdip);
  EXPECT_EQ(got.dipole.dip0(2), -0.5);
  testing::internal::CaptureStderr();
  get_inertial(got);
  const array2<double> slopes = proj_dip(got.dipole, got.atoms, state.modes.cm);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the file stands in the frame of the modes";
  for (int m = 1; m <= got.atoms.n3; ++m) {
    for (int l = 1; l <= 3; ++l) EXPECT_NEAR(slopes(l, m), m < 7 ? 0.0 : 0.01 * l * m, 1e-7) << m;
  }

  states moved = state;
  move_molecule(moved, random_rotation(7), {1.0, 2.0, -3.0});
  states turned = with_dipole(state, dipole_file(moved, derivatives));
  EXPECT_TRUE(turned.dipole.ifdip);
  get_inertial(turned);
  testing::internal::CaptureStderr();
  proj_dip(turned.dipole, turned.atoms, state.modes.cm);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("another frame"), std::string::npos);
  moved.atoms.x(2, 3) += 0.003;
  EXPECT_FALSE(with_dipole(state, dipole_file(moved, derivatives)).dipole.ifdip);
}

TEST(dipole, file_of_other_masses_stops_as_told_and_broken_ones_with_a_message) {
  const states state = spring_molecule(chiral_molecule);
  const std::string file = dipole_file(state, array3<double>(3, 3, state.atoms.natom));
  states deuterated = state;
  deuterated.atoms.mass(4) = 2.014101779;
  deuterated.atoms.symbol(4) = "H";
  const struct {
    states state;
    std::string content, out, message;
    int status;
  } cases[] = {
      {deuterated, file,
       "  The mass of atom in file molecule.out is not equal to that in the file " + scratch("tdip.dat") +
           "\n       4  H          2.014102         1.007825\n  Stop!\n",
       "", 0},
      {state, file.substr(0, file.find(" Transition")), "", "cannot find the dipole derivatives", 1},
      {state, file.substr(0, file.rfind("    5  C   z")), "", "the file ends too early", 1},
      {state, file.substr(0, file.rfind(" ") - 20) + "\n", "", "cannot read the line", 1},
  };
  for (const auto& it : cases) {
    testing::internal::CaptureStdout();
    run_end end{-1, ""};
    try {
      with_dipole(it.state, it.content);
    } catch (const run_end& thrown) {
      end = thrown;
    }
    EXPECT_EQ(end.status, it.status);
    EXPECT_NE(end.text.find(it.message), std::string::npos) << end.text;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), it.out);
  }
}

}  // namespace
}  // namespace vbn
