// Tests of the transition dipole derivatives: their file, the match with a state, and the modes.
#include "couplings/dipole.hpp"  // for get_tdipd, proj_dip and write_tdipd

#include <gtest/gtest.h>

#include <cmath>

#include "frame/hessian.hpp"         // for get_freq
#include "frame/inertial.hpp"        // for get_inertial
#include "frame/projection.hpp"      // for get_proj_hessian
#include "readers/file_type.hpp"     // for qm_file
#include "run/stop.hpp"              // for run_end
#include "tests/frame/molecule.hpp"  // for spring_molecule and move_molecule
#include "tests/written_file.hpp"    // for scratch, content_of and write_text

namespace vbn {
namespace {

const double some_dipole[] = {0.25, -0.5, 0.125};

array3<double> some_derivatives(int natom) {
  array3<double> d(3, 3, natom);
  for (std::size_t k = 0; k < d.span().size(); ++k)
    d.span()[k] = 0.05 * std::cos(0.7 * static_cast<double>(k));
  return d;
}

// A file of numerical frequencies at the geometry of the state, in bohr.
std::string dipole_file(const states& state, const array3<double>& derivatives) {
  std::string out =
      " NUMERICAL FREQUENCY\n VERSION 1.2\n\n NAtoms  " + std::to_string(state.natom) +
      "\n\n Coordinate Bohr\n   No    Z        mass               x               y               z\n";
  const layout atom("(2i5,4f20.12)");
  const layout row("(i5,2x,a1,3x,a1,i5,3f18.12)");
  for (int i = 1; i <= state.natom; ++i) {
    atom.write(out, {i, state.nat(i), state.mass(i), state.x(1, i), state.x(2, i), state.x(3, i)});
  }
  out += "\n Transition dipole moment derivative (Atomic unit)\n";
  row.write(out, {0, "r", "-", 0, some_dipole[0], some_dipole[1], some_dipole[2]});
  for (int i = 1; i <= state.natom; ++i) {
    for (int k = 1; k <= 3; ++k) {
      row.write(out, {i, "C",
                      k == 1   ? "x"
                      : k == 2 ? "y"
                               : "z",
                      3 * (i - 1) + k, derivatives(1, k, i), derivatives(2, k, i), derivatives(3, k, i)});
    }
  }
  return out + "\n";
}

states with_dipole(states state, const std::string& content) {
  const std::string name = scratch("tdip.dat");
  write_text(name, content);
  state.ftdipd = name;
  get_tdipd(state);
  return state;
}

TEST(dipole, derivatives_of_each_displacement_are_read_and_the_turned_file_is_recognised) {
  const states state = spring_molecule(chiral_molecule);
  const array3<double> derivatives = some_derivatives(state.natom);
  const states got = with_dipole(state, dipole_file(state, derivatives));
  EXPECT_TRUE(got.ifdip);
  EXPECT_EQ(got.ftdipd_type, "NUMFORCE");
  EXPECT_EQ(got.dip0(2), -0.5);
  for (std::size_t k = 0; k < derivatives.span().size(); ++k) {
    EXPECT_NEAR(got.tdipd_x.span()[k], derivatives.span()[k], 1e-12);
  }
  EXPECT_EQ(got.tdipd_x0, got.tdipd_x);

  states moved = state;
  move_molecule(moved, random_rotation(3), {1.0, 2.0, -3.0});
  EXPECT_TRUE(with_dipole(state, dipole_file(moved, derivatives)).ifdip);
  moved.x(2, 3) += 0.003;
  EXPECT_FALSE(with_dipole(state, dipole_file(moved, derivatives)).ifdip);
}

TEST(dipole, other_atoms_and_masses_are_told_and_stop_with_status_0) {
  const states state = spring_molecule(chiral_molecule);
  const std::string file = dipole_file(state, some_derivatives(state.natom));
  const std::string name = scratch("tdip.dat");
  states deuterated = state;
  deuterated.mass(4) = 2.014101779;
  deuterated.symbol(4) = "H";
  const struct {
    states state;
    std::string told;
  } cases[] = {
      {spring_molecule(water), "  The number of atoms in filemolecule.out is not equal to that in the file " +
                                   name + "\n  3  5\n  Stop!\n"},
      {deuterated, "  The mass of atom in file molecule.out is not equal to that in the file " + name +
                       "\n       4  H          2.014102         1.007825\n  Stop!\n"},
  };
  for (const auto& other : cases) {
    testing::internal::CaptureStdout();
    try {
      with_dipole(other.state, file);
      ADD_FAILURE() << "the run goes on";
    } catch (const run_end& end) {
      EXPECT_EQ(end.status, 0);
      EXPECT_EQ(end.text, "");
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), other.told);
  }
}

TEST(dipole, broken_files_end_the_run_with_a_message) {
  const states state = spring_molecule(chiral_molecule);
  const std::string file = dipole_file(state, some_derivatives(state.natom));
  const struct {
    std::string content;
    const char* told;
  } cases[] = {
      {file.substr(0, file.find(" Transition")), "cannot find the dipole derivatives"},
      {file.substr(0, file.rfind("    5  C   z")), "the file ends too early"},
      {file.substr(0, file.rfind(" ") - 20) + "\n", "cannot read the line"},
      {std::string(file).replace(file.find("-0.500000000000"), 15, "-0.5000oo000000"),
       "cannot read the line"},
  };
  for (const auto& broken : cases) {
    try {
      with_dipole(state, broken.content);
      ADD_FAILURE() << broken.told;
    } catch (const run_end& end) {
      EXPECT_EQ(end.status, 1);
      EXPECT_NE(end.text.find(broken.told), std::string::npos) << end.text;
      EXPECT_NE(end.text.find("tdip.dat"), std::string::npos) << end.text;
    }
  }
  qm_file other{input_file::from_memory("other.out", std::string(2000, '\n')), "NWCHEM", "7.0.2", 0};
  array1<double> dip0;
  array3<double> tdipd_x;
  int info = 0;
  EXPECT_THROW(qm_file_tdipd(other, 3, dip0, tdipd_x, info), run_end);
}

// A dipole that is linear in the normal coordinates of a molecule in its principal frame: component l grows
// by 0.01 l m for a unit of mode m, and by nothing for the external modes.
TEST(dipole, linear_dipole_in_the_principal_frame_gives_its_slopes_along_the_modes) {
  states state = spring_molecule(chiral_molecule);
  get_inertial(state);
  get_proj_hessian(state, 1);
  get_freq(state);
  array3<double> derivatives(3, 3, state.natom);
  for (int i = 1; i <= state.natom; ++i) {
    for (int k = 1; k <= 3; ++k) {
      for (int l = 1; l <= 3; ++l) {
        for (int m = 7; m <= state.n3; ++m) {
          derivatives(l, k, i) += 0.01 * l * m * std::sqrt(state.massau(i)) * state.cm(3 * (i - 1) + k, m);
        }
      }
    }
  }
  states got = with_dipole(state, dipole_file(state, derivatives));
  ASSERT_TRUE(got.ifdip);
  testing::internal::CaptureStderr();
  get_inertial(got);
  proj_dip(got, state);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the file stands in the frame of the modes";
  for (int m = 1; m <= got.n3; ++m) {
    for (int l = 1; l <= 3; ++l) EXPECT_NEAR(got.tdipd_q(l, m), m < 7 ? 0.0 : 0.01 * l * m, 1e-7) << m;
  }

  states moved = state;
  const array2<double> r = random_rotation(7);
  move_molecule(moved, r, {0.0, 0.0, 0.0});
  states turned = with_dipole(state, dipole_file(moved, derivatives));
  ASSERT_TRUE(turned.ifdip);
  get_inertial(turned);
  testing::internal::CaptureStderr();
  proj_dip(turned, state);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("another frame"), std::string::npos);
}

TEST(dipole, file_has_the_reference_with_index_0_and_the_modes_from_7_on) {
  states state = spring_molecule(water);
  state.start_mode = 1;
  std::copy_n(some_dipole, 3, state.dip0.data());
  for (int m = 1; m <= 9; ++m) {
    for (int l = 1; l <= 3; ++l) state.tdipd_q(l, m) = (l == 2 ? -0.1 : 0.1) * m + 0.0001 * l;
  }
  const std::string stem = scratch("vbn.cart");
  write_tdipd(state, stem);
  EXPECT_EQ(content_of(stem + ".dip"),
            "     0      0.2500000     -0.5000000      0.1250000\n"
            "     7      0.7001000     -0.6998000      0.7003000\n"
            "     8      0.8001000     -0.7998000      0.8003000\n"
            "     9      0.9001000     -0.8998000      0.9003000\n");
}

TEST(dipole, modes_are_those_of_the_record_given_and_masses_those_of_the_state) {
  states state = spring_molecule(water);
  states modes = spring_molecule(water);
  modes.cm(4, 9) = 1.0;  // mode 9 moves atom 2 along x
  state.tdipd_x(3, 1, 2) = 0.5;
  proj_dip(state, modes);
  EXPECT_EQ(state.tdipd_q(3, 9), 0.5 / std::sqrt(state.massau(2)));
  EXPECT_EQ(state.tdipd_xq(3, 1, 2), state.tdipd_q(3, 9));
  EXPECT_EQ(state.tdipd_q(3, 8), 0.0);
}

}  // namespace
}  // namespace vbn
