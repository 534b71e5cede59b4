// Tests of the warnings about physical doubts: each is given where it is due and only there.
#include "checks/plausibility.hpp"  // for warn_of_modes, warn_of_distance, warn_of_routes

#include <gtest/gtest.h>

#include "molecule/constants.hpp"  // for amu_to_au, au_to_cm
#include "tests/one_state.hpp"     // for zero_arrays

namespace vbn {
namespace {

// Two masses on a spring along `axis`, in a state that lies along x.
states diatomic(int axis) {
  states s;
  s.atoms.natom = 2;
  s.atoms.n3 = 6;
  zero_arrays(s);
  s.file.ffreq = "a.out";
  s.atoms.x(1, 2) = 2.0;
  array2<double> fcm(6, 6);
  for (int i = 1; i <= 2; ++i) {
    s.atoms.nat(i) = 1;
    s.atoms.symbol(i) = "H";
    s.atoms.massau(i) = amu_to_au;
    for (int j = 1; j <= 2; ++j) {
      fcm(3 * (i - 1) + axis, 3 * (j - 1) + axis) = (i == j ? 1.0 : -1.0) * 0.3 / amu_to_au;
    }
  }
  s.force.set_fcm(s.atoms.sqtmass, fcm);
  for (int i = 1; i <= 6; ++i) s.modes.freq(i) = i == 6 ? 0.01 : 0.0;
  return s;
}

array1<states> pair_of(const states& one, const states& two) {
  array1<states> pair(2);
  pair(1) = one;
  pair(2) = two;
  return pair;
}

template <class Routine>
std::string told_by(Routine routine, const array1<states>& state) {
  testing::internal::CaptureStderr();
  routine(state);
  return testing::internal::GetCapturedStderr();
}

TEST(doubts, linear_molecules_imaginary_and_surplus_zero_frequencies_are_counted) {
  states bent = diatomic(1);
  bent.atoms.natom = 3;
  bent.atoms.n3 = 9;
  zero_arrays(bent);
  bent.atoms.massau = array1<double>(3, amu_to_au);
  bent.atoms.x(1, 2) = 2.0;
  bent.atoms.x(2, 3) = 2.0;
  for (int i = 7; i <= 9; ++i) bent.modes.freq(i) = 500.0 * i / au_to_cm;
  EXPECT_EQ(told_by(warn_of_modes, pair_of(bent, bent)), "");

  states worse = bent;
  worse.atoms.x(2, 3) = 0.0;
  worse.modes.freq(1) = -300.0 / au_to_cm;
  worse.modes.freq(7) = 0.0;
  worse.modes.freq(8) = 5.0 / au_to_cm;
  const std::string told = told_by(warn_of_modes, pair_of(bent, worse));
  EXPECT_NE(told.find("the molecule is linear"), std::string::npos) << told;
  EXPECT_NE(told.find("1 imaginary frequencies, the lowest -300.00 cm-1"), std::string::npos) << told;
  EXPECT_NE(told.find("7 frequencies below 10.0 cm-1"), std::string::npos) << told;
}

TEST(doubts, distant_geometries_unlike_modes_and_unequal_totals_are_told) {
  states one = diatomic(1);
  one.atoms.natom = 3;
  one.atoms.n3 = 9;
  zero_arrays(one);
  for (int i = 7; i <= 9; ++i) one.modes.s(i, i) = 1.0;
  states two = one;
  EXPECT_EQ(told_by(warn_of_distance, pair_of(one, two)), "");
  two.atoms.x(1, 1) = 2.0;
  one.modes.s = array2<double>(9, 9, 0.4);
  const std::string told = told_by(warn_of_distance, pair_of(one, two));
  EXPECT_NE(told.find("0.611 angstrom"), std::string::npos) << told;
  EXPECT_NE(told.find("(mean square of the largest overlaps 0.16)"), std::string::npos) << told;

  one.cart.lamt = two.cart.lamt = 1000.0 / au_to_cm;
  one.dint.lamt = 1100.0 / au_to_cm;
  two.dint.lamt = 400.0 / au_to_cm;
  const std::string routes = told_by(warn_of_routes, pair_of(one, two));
  EXPECT_EQ(routes.find("state 1"), std::string::npos) << routes;
  EXPECT_NE(routes.find("state 2"), std::string::npos) << routes;
  EXPECT_NE(routes.find("1000.0 cm-1 with Cartesian and 400.0 cm-1 with internal"), std::string::npos) << routes;
}

}  // namespace
}  // namespace vbn
