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
#include "molecule/elements.hpp"           // for element_symbol
#include "readers/atom_count.hpp"          // for get_na
#include "tests/frame/molecule.hpp"        // for spring_molecule and move_molecule
#include "tests/written_file.hpp"          // for scratch and write_text
#include "text/layout.hpp"                 // for layout
#include "text/stop.hpp"                   // for run_end

namespace vbn {
namespace {

states molecule() {
  states state = spring_molecule(chiral_molecule);
  for (int i = 1; i <= state.atoms.natom; ++i) state.atoms.symbol(i) = element_symbol(state.atoms.nat(i));
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
  for (int i = 1; i <= state.atoms.natom; ++i) {
    atom.write(
        out, {i, state.atoms.symbol(i), static_cast<double>(state.atoms.nat(i)), x(1, i), x(2, i), x(3, i)});
  }
  out += "\n Dump information in style XYZ to output\n\n    5\n a molecule\n";
  for (int i = 1; i <= state.atoms.natom; ++i)
    xyz.write(out, {state.atoms.symbol(i), x(1, i), x(2, i), x(3, i)});
  out += "\n Atomic Masses\n";
  masses.write(out, mass.span());
  out +=
      "\n Energy Difference at present geometry       0.150000000\n\n Derivative Coupling before scaling\n";
  for (int i = 1; i <= state.atoms.natom; ++i) coupling.write(out, nacme.column(i));
  return out + "\n";
}

// The state after reading a coupling file of this content.
states with_couplings(states state, const std::string& content) {
  const std::string name = scratch("nac.out");
  write_text(name, content);
  state.couplings.fnacm = name;
  get_nacme({&state, 1});
  return state;
}

TEST(nacme, turned_file_gives_the_couplings_of_the_unturned_one_and_another_geometry_is_not_the_states) {
  const states state = molecule();
  const array2<double> v = some_couplings(state.atoms.natom);
  states straight = with_couplings(state, coupling_file(state, state.atoms.x, v, state.atoms.mass));
  EXPECT_TRUE(straight.couplings.ifnac);
  EXPECT_EQ(straight.couplings.e_vert, 0.15);
  EXPECT_NEAR(straight.couplings.nacme_x0(2, 4), v(2, 4), 1e-12);
  get_inertial(straight);
  states moved = state;
  const array2<double> r = random_rotation(1);
  move_molecule(moved, r, {3.0, -7.0, 11.0});
  array2<double> turned_v = v;
  rotn(r, turned_v.span());
  states turned = with_couplings(state, coupling_file(state, moved.atoms.x, turned_v, state.atoms.mass));
  EXPECT_TRUE(turned.couplings.ifnac);
  get_inertial(turned);
  for (std::size_t k = 0; k < v.span().size(); ++k)
    EXPECT_NEAR(turned.couplings.nacme_x.span()[k], straight.couplings.nacme_x.span()[k], 1e-9);

  array2<double> x = state.atoms.x;
  x(1, 2) += 0.0025;
  EXPECT_FALSE(with_couplings(state, coupling_file(state, x, v, state.atoms.mass)).couplings.ifnac);
  x = state.atoms.x;
  for (int i = 1; i <= state.atoms.natom; ++i) x(3, i) = -x(3, i);
  EXPECT_FALSE(with_couplings(state, coupling_file(state, x, v, state.atoms.mass)).couplings.ifnac)
      << "the mirror image";
}

TEST(nacme, other_atoms_and_other_masses_are_told_with_status_1) {
  const states state = molecule();
  const std::string file =
      coupling_file(state, state.atoms.x, some_couplings(state.atoms.natom), state.atoms.mass);
  states deuterated = state;
  deuterated.atoms.mass(4) = 2.014101779;
  const std::string files = "molecule.out is not equal to that in the file " + scratch("nac.out");
  const struct {
    states state;
    std::string told;
  } cases[] = {{spring_molecule(water), "  The number of atoms in file" + files + "\n  3  5\n  Stop!\n"},
               {deuterated, "  The mass of atom in file " + files +
                                "\n       4  H          2.014102         1.007825\n  Stop!\n"}};
  for (const auto& it : cases) {
    testing::internal::CaptureStdout();
    try {
      with_couplings(it.state, file);
      ADD_FAILURE() << "the run goes on";
    } catch (const run_end& end) {
      EXPECT_EQ(end.status, 1);
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), it.told);
  }
}

// State 1 of a real case with its modes and the couplings of a file on them.
states real_state(const std::filesystem::path& folder, const char* ffreq, const char* fnacm) {
  states state;
  state.file.ffreq = (folder / ffreq).string();
  state.couplings.fnacm = (folder / fnacm).string();
  qm_file file = get_na(state.file, state.atoms);
  get_hess(std::move(file), state.file, state.atoms, state.force);
  get_nacme({&state, 1});
  get_inertial(state);
  get_proj_hessian(state, 1);
  get_freq(state);
  return state;
}

TEST(nacme, coupling_files_of_four_programs_give_the_same_couplings_by_mode) {
  const char* data = std::getenv("VBN_REAL_DATA");
  if (data == nullptr) GTEST_SKIP() << "VBN_REAL_DATA does not name the folder of the real cases";
  const std::filesystem::path folder = std::filesystem::path(data) / "couplings" / "glyoxal";
  const auto along = [](const states& state) {
    return proj_nacm(state.couplings.nacme_x, state.atoms, state.modes.cm, 1).q;
  };
  const states reference = real_state(folder, "s0.dat", "nac_molpro.out");
  EXPECT_TRUE(reference.couplings.ifnac);
  for (const char* fnacm :
       {"nac_gaussian.log", "nac_nwchem.out", "nac_turbomole63.out", "nac_turbomole65.out"}) {
    const states state = real_state(folder, "s0.dat", fnacm);
    EXPECT_TRUE(state.couplings.ifnac) << fnacm;
    for (int m = 1; m <= state.atoms.n3; ++m) {
      // The fields have six or seven decimals and the energy of the Gaussian file four.
      EXPECT_NEAR(along(state)(m), along(reference)(m), 2e-6) << fnacm << " mode " << m;
    }
  }
  EXPECT_FALSE(real_state(folder, "s0.dat", "nac_elsewhere.out").couplings.ifnac);
  EXPECT_FALSE(real_state(folder, "s0.dat", "nac_state2.out").couplings.ifnac);
  EXPECT_TRUE(real_state(folder, "t1.dat", "nac_state2.out").couplings.ifnac);
}

}  // namespace
}  // namespace vbn
