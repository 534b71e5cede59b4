// Tests of how a coupling file is matched with a state.
#include "couplings/nacme.hpp"  // for get_nacme

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "couplings/nacme_projection.hpp"  // for proj_nacm
#include "frame/hessian.hpp"               // for get_hess and get_freq
#include "frame/inertial.hpp"              // for get_inertial
#include "frame/projection.hpp"            // for get_proj_hessian
#include "readers/atom_count.hpp"          // for get_na
#include "readers/elements.hpp"            // for element_symbol
#include "run/stop.hpp"                    // for run_end
#include "tests/frame/molecule.hpp"        // for spring_molecule and move_molecule
#include "tests/written_file.hpp"          // for scratch and write_text

namespace vbn {
namespace {

states molecule() {
  states state = spring_molecule(chiral_molecule);
  for (int i = 1; i <= state.natom; ++i) state.symbol(i) = element_symbol(state.nat(i));
  return state;
}

array2<double> some_couplings(int natom) {
  array2<double> v(3, natom);
  for (std::size_t k = 0; k < v.span().size(); ++k)
    v.span()[k] = 0.3 * std::sin(1.3 * static_cast<double>(k) + 1.0);
  return v;
}

// A Molpro coupling file at the geometry `x` (bohr).
std::string coupling_file(const states& state, const array2<double>& x, const array2<double>& nacme,
                          const array1<double>& mass) {
  std::string out = "                                         ***  PROGRAM SYSTEM MOLPRO  ***\n";
  out += " ATOMIC COORDINATES\n\n NR  ATOM    CHARGE       X              Y              Z\n\n";
  const layout atom("(i4,2x,a2,f10.2,3f16.10)");
  const layout xyz("(a2,3f20.12)");
  const layout masses("(\"   1-  5\",10f12.6)");
  const layout coupling("(3f20.12)");
  for (int i = 1; i <= state.natom; ++i) {
    atom.write(out, {i, state.symbol(i), static_cast<double>(state.nat(i)), x(1, i), x(2, i), x(3, i)});
  }
  out += "\n Dump information in style XYZ to output\n\n    5\n a molecule\n";
  for (int i = 1; i <= state.natom; ++i) xyz.write(out, {state.symbol(i), x(1, i), x(2, i), x(3, i)});
  out += "\n Atomic Masses\n";
  masses.write(out, mass.span());
  out +=
      "\n Energy Difference at present geometry       0.150000000\n\n Derivative Coupling before scaling\n";
  for (int i = 1; i <= state.natom; ++i) coupling.write(out, nacme.column(i));
  return out + "\n";
}

// The state after reading a coupling file of this content.
states with_couplings(states state, const std::string& content) {
  const std::string name = scratch("nac.out");
  write_text(name, content);
  state.fnacm = name;
  get_nacme(state);
  return state;
}

TEST(nacme, turned_and_shifted_file_is_recognised_and_gives_the_couplings_of_the_unturned_one) {
  const states state = molecule();
  const array2<double> v = some_couplings(state.natom);
  states straight = with_couplings(state, coupling_file(state, state.x, v, state.mass));
  EXPECT_TRUE(straight.ifnac);
  EXPECT_EQ(straight.fnacm_type, "MOLPRO");
  EXPECT_EQ(straight.e_vert, 0.15);
  EXPECT_NEAR(straight.nacme_x0(2, 4), v(2, 4), 1e-12);
  EXPECT_EQ(straight.nacme_x, straight.nacme_x0);
  EXPECT_EQ(straight.tranele, straight.tranele0);
  get_inertial(straight);
  for (unsigned seed = 1; seed <= 5; ++seed) {
    states moved = state;
    const array2<double> r = random_rotation(seed);
    move_molecule(moved, r, {3.0, -7.0, 11.0});
    array2<double> turned_v = v;
    rotn(r, turned_v.span());
    states turned = with_couplings(state, coupling_file(state, moved.x, turned_v, state.mass));
    EXPECT_TRUE(turned.ifnac) << seed;
    EXPECT_NEAR(turned.nacme_x(1, 3), turned_v(1, 3), 1e-12) << "kept as read";
    get_inertial(turned);
    for (std::size_t k = 0; k < v.span().size(); ++k) {
      EXPECT_NEAR(turned.nacme_x.span()[k], straight.nacme_x.span()[k], 1e-9) << seed;
    }
  }
}

TEST(nacme, another_geometry_or_the_mirror_image_is_not_the_states_own) {
  const states state = molecule();
  const array2<double> v = some_couplings(state.natom);
  array2<double> x = state.x;
  x(1, 2) += 0.0005;
  EXPECT_TRUE(with_couplings(state, coupling_file(state, x, v, state.mass)).ifnac);
  x(1, 2) += 0.002;
  EXPECT_FALSE(with_couplings(state, coupling_file(state, x, v, state.mass)).ifnac);
  x = state.x;
  for (int i = 1; i <= state.natom; ++i) x(3, i) = -x(3, i);
  EXPECT_FALSE(with_couplings(state, coupling_file(state, x, v, state.mass)).ifnac);
}

// What is told on standard output, when the run ends with status 1.
std::string told(const states& state, const std::string& content) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  try {
    with_couplings(state, content);
    ADD_FAILURE() << "the run goes on";
  } catch (const run_end& end) {
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.text, "");
  }
  testing::internal::GetCapturedStderr();
  return testing::internal::GetCapturedStdout();
}

TEST(nacme, other_atoms_and_other_masses_are_told_with_status_1) {
  const states state = molecule();
  const array2<double> v = some_couplings(state.natom);
  const std::string file = coupling_file(state, state.x, v, state.mass);
  const std::string name = scratch("nac.out");
  states larger = spring_molecule({{6, 12.0, {0, 0, 0}}, {8, 15.99491, {0, 0, 2}}});
  EXPECT_EQ(told(larger, file),
            "  The number of atoms in filemolecule.out is not equal to that in the file " + name +
                "\n  2  5\n  Stop!\n");
  EXPECT_EQ(told(state, "no program wrote this\n"),
            "  The number of atoms in filemolecule.out is not equal to that in the file " + name +
                "\n  5  0\n  Stop!\n");

  array1<double> mass = state.mass;
  mass(2) += 0.0009;  // 18.9993: the whole number counts
  EXPECT_TRUE(with_couplings(state, coupling_file(state, state.x, v, mass)).ifnac);
  states deuterated = state;
  deuterated.mass(4) = 2.014101779;
  EXPECT_EQ(told(deuterated, file),
            "  The mass of atom in file molecule.out is not equal to that in the file " + name +
                "\n       4  H          2.014102         1.007825\n  Stop!\n");
}

TEST(nacme, file_that_is_not_there_ends_the_run_and_is_named) {
  states state = molecule();
  state.fnacm = "no_such_coupling_file.out";
  try {
    get_nacme(state);
    FAIL();
  } catch (const run_end& end) {
    EXPECT_NE(end.status, 0);
    EXPECT_NE(end.text.find("no_such_coupling_file.out"), std::string::npos) << end.text;
  }
}

TEST(nacme, oniom_file_gives_the_atoms_of_its_high_layer) {
  const std::string oniom_log =
      " Entering Gaussian System, Link 0=g16\n"
      " ******************************************\n"
      " Gaussian 16:  ES64L-G16RevC.01  3-Jul-2019\n"
      " #p oniom(td/3-21g:uff) prop=field\n"
      " Charge =  0 Multiplicity = 1 for low   level calculation on real  system.\n"
      " Charge =  0 Multiplicity = 1 for high  level calculation on model system.\n"
      " O                -1     0.000000    0.000000    4.000000 L\n"
      " C                 0     0.000000    0.000000    0.000000 H\n"
      " O                 0     0.000000    0.000000    1.058354 H\n"
      " \n"
      " NAtoms=      3 NQM=        2\n"
      " Center     Atomic      Atomic             Coordinates (Angstroms)\n"
      " ---------------------------------------------------------------------\n"
      "      1          8           0        0.000000    0.000000    4.000000\n"
      "      2          6           0        0.000000    0.000000    0.000000\n"
      "      3          8           0        0.000000    0.000000    1.058354\n"
      " ---------------------------------------------------------------------\n"
      " Excited State   1:      Singlet-A       5.4422 eV  227.82 nm  f=0.0000  <S**2>=0.000\n"
      " Electrostatic Properties (Atomic Units)\n"
      "    1 Atom       0.000000      9.000000      9.000000      9.000000\n"
      "    2 Atom       0.000000      0.001000      0.002000     -0.003000\n"
      "    3 Atom       0.000000     -0.004000      0.005000      0.006000\n"
      " ---------------------------------------------------------------------\n";
  const states state = with_couplings(
      spring_molecule({{6, 12.0, {1.0, 0.0, 0.0}}, {8, 15.99491, {3.0, 0.0, 0.0}}}), oniom_log);
  EXPECT_TRUE(state.ifoniom_nacme);
  EXPECT_TRUE(state.ifnac);
  EXPECT_EQ(state.tranele(3, 1), -0.003);
  EXPECT_EQ(state.tranele(1, 2), -0.004);
  EXPECT_EQ(state.nacme_x(2, 2), 0.005 * 8.0 / state.e_vert);
  EXPECT_EQ(state.x_nac.cols(), 2);
}

// State 1 of a real case with its modes and the couplings of a file on them.
states real_state(const std::filesystem::path& folder, const char* ffreq, const char* fnacm) {
  states state;
  state.ffreq = (folder / ffreq).string();
  state.fnacm = (folder / fnacm).string();
  get_na(state);
  vbn_allocate(state);
  get_oniom_index(state);
  get_hess(state);
  get_nacme(state);
  get_inertial(state);
  get_proj_hessian(state, 1);
  get_freq(state);
  proj_nacm(state, state);
  return state;
}

TEST(nacme, coupling_files_of_four_programs_give_the_same_couplings_by_mode) {
  const char* data = std::getenv("VBN_REAL_DATA");
  if (data == nullptr) GTEST_SKIP() << "VBN_REAL_DATA does not name the folder of the real cases";
  const std::filesystem::path folder = std::filesystem::path(data) / "couplings" / "glyoxal";
  const states reference = real_state(folder, "s0.dat", "nac_molpro.out");
  EXPECT_TRUE(reference.ifnac);
  for (const char* fnacm :
       {"nac_gaussian.log", "nac_nwchem.out", "nac_turbomole63.out", "nac_turbomole65.out"}) {
    const states state = real_state(folder, "s0.dat", fnacm);
    EXPECT_TRUE(state.ifnac) << fnacm;
    for (int m = 1; m <= state.n3; ++m) {
      // The fields have six or seven decimals and the energy of the Gaussian file four.
      EXPECT_NEAR(state.nacme_q(m), reference.nacme_q(m), 2e-6) << fnacm << " mode " << m;
    }
  }
  EXPECT_FALSE(real_state(folder, "s0.dat", "nac_elsewhere.out").ifnac);
  EXPECT_FALSE(real_state(folder, "s0.dat", "nac_state2.out").ifnac);
  EXPECT_TRUE(real_state(folder, "t1.dat", "nac_state2.out").ifnac);
}

}  // namespace
}  // namespace vbn
