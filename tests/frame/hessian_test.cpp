// Tests of mass-weighting, replaced masses, frequencies and of what a frequency file must hold.
#include "frame/hessian.hpp"  // for get_isotope

#include <gtest/gtest.h>

#include <string>

#include "text/stop.hpp"             // for run_end
#include "tests/frame/molecule.hpp"  // for spring_molecule

namespace vbn {
namespace {

TEST(hessian, mass_of_an_element_goes_over_the_mass_of_an_atom_and_reaches_the_weighted_matrix) {
  states state = spring_molecule(water);
  const states before = state;
  array1<double> mass_atom(1500, -1.0);
  array1<double> mass_type(1500, -1.0);
  mass_atom(1) = state.atoms.mass(1);
  get_isotope(state.file, 1500, mass_atom, mass_type, state.atoms, state.force);
  EXPECT_EQ(state.force.fcm(), before.force.fcm());
  mass_atom(3) = 1.0;
  mass_type(1) = 2.014;
  get_isotope(state.file, 1500, mass_atom, mass_type, state.atoms, state.force);
  EXPECT_EQ(state.atoms.mass(3), 2.014);
  EXPECT_EQ(state.atoms.sqtmass(9), std::sqrt(amu_to_au * 2.014));
  EXPECT_EQ(state.force.fcm()(3, 9),
            before.force.fc()(3, 9) / state.atoms.sqtmass(3) / state.atoms.sqtmass(9));
  EXPECT_THROW(get_isotope(state.file, 2, mass_atom, mass_type, state.atoms, state.force), run_end);
}

}  // namespace
}  // namespace vbn
