// Tests of the displacements through internal coordinates.
#include "internal/displacement.hpp"  // for check_int_coord

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "internal/gmatrix.hpp"         // for get_int_gmatrix
#include "tests/internal/molecule.hpp"  // for ammonia, disulfane, set_modes
#include "tests/written_file.hpp"       // for scratch
#include "text/output_file.hpp"         // for output_file

namespace vbn {
namespace {

using namespace internal_molecules;

constexpr double strength = 0.4;

void prepare(states& state, double spring) {
  output_file log(scratch("basis"));
  get_int_coord(state, {});
  get_int_gmatrix(state, 1.0e-8, log);
  set_modes(state, spring);
}

array1<states> pair_of(const std::vector<test_atom>& atoms1, const std::vector<test_atom>& atoms2) {
  array1<states> state(2);
  state(1) = molecule(atoms1);
  state(2) = molecule(atoms2);
  prepare(state(1), strength);
  prepare(state(2), 0.9 * strength);
  return state;
}

// A displacement along the vibrations of state 1 is the same in both routes to first order.
TEST(displacement, small_ones_equal_those_of_the_cartesian_route) {
  array1<states> state(2);
  state(1) = state(2) = molecule(ammonia);
  prepare(state(1), strength);
  array1<double> dx(12);
  for (int i = 1; i <= 12; ++i)
    for (int mode = 7; mode <= 12; ++mode)
      dx(i) += 0.02 * (mode - 9.4) * state(1).modes.cm(i, mode) / state(1).atoms.sqtmass(i);
  for (int i = 1; i <= 12; ++i) state(2).atoms.x.span()[static_cast<std::size_t>(i - 1)] += dx(i);
  prepare(state(2), strength);
  check_int_coord(state, false);
  for (int k = 1; k <= 2; ++k) {
    double lamt = 0.0;
    for (int i = 7; i <= 12; ++i) {
      double d = 0.0;
      for (int j = 1; j <= 12; ++j) d += state(k).modes.cm(j, i) * state(k).atoms.sqtmass(j) * dx(j);
      const double d0 = d * std::sqrt(state(k).modes.freq(i));
      EXPECT_NEAR(state(k).dint.d(i), state(1).dint.d(i) * d < 0.0 ? -d : d, 0.0005);
      EXPECT_NEAR(std::abs(state(k).dint.d0(i)), std::abs(d0), 0.01 * std::abs(d0) + 1.0e-5);
      EXPECT_EQ(state(k).dint.hr(i), 0.5 * state(k).dint.d0(i) * state(k).dint.d0(i));
      EXPECT_DOUBLE_EQ(state(k).dint.lam(i), state(k).dint.hr(i) * state(k).modes.freq(i));
      EXPECT_GE(state(1).dint.d0(i) * state(2).dint.d0(i), 0.0);
      lamt += state(k).dint.lam(i);
    }
    EXPECT_NEAR(state(k).dint.lamt, lamt, 1.0e-12);
    EXPECT_GT(lamt, 0.0);
  }
}

TEST(displacement, a_dihedral_across_180_degrees_takes_the_short_way) {
  array1<states> state = pair_of(disulfane(3.1), disulfane(-3.1));
  check_int_coord(state, false);
  ASSERT_EQ(state(1).internal.iztype(5), kind_dihedral);
  EXPECT_NEAR(state(1).internal.zd(5), 2.0 * pi_value - 6.2, 1.0e-9);
  EXPECT_EQ(state(2).internal.zd(5), -state(1).internal.zd(5));
  // A length is never brought back.
  state(1).internal.z(2) = -5.0;
  check_int_coord(state, false);
  EXPECT_NEAR(state(1).internal.zd(2), 7.05, 1.0e-9);
}

}  // namespace
}  // namespace vbn
