// Tests of how a coupling file is matched with a state.
#include "couplings/nacme.hpp"  // for get_nacme

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "frame/inertial.hpp"        // for get_inertial
#include "molecule/elements.hpp"     // for element_symbol
#include "tests/frame/molecule.hpp"  // for spring_molecule and move_molecule
#include "tests/written_file.hpp"    // for scratch and write_text
#include "text/layout.hpp"           // for layout

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

}  // namespace
}  // namespace vbn
