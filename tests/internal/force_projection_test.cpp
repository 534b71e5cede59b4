// Tests of the projection of force constants on the space of the internal coordinates.
#include "internal/force_projection.hpp"  // for get_proj_f0

#include <gtest/gtest.h>

#include "tests/frame/molecule.hpp"  // for spring_molecule

namespace vbn {
namespace {

TEST(force_projection, keeps_what_lies_in_the_space_of_the_rows_and_nothing_else) {
  states state = spring_molecule(water);
  const array2<double> fc = state.force.fc();
  state.basis.bm = array2<double>(9, 9);
  state.basis.bm(1, 2) = 1.0;  // orthonormal rows: the space of coordinates 2 and 9
  state.basis.bm(2, 9) = -1.0;
  const array2<double> fcm = state.force.fcm();
  get_proj_f0(state.basis.bm, state.force);
  for (int i = 1; i <= 9; ++i) {
    for (int j = 1; j <= 9; ++j) {
      const bool inside = (i == 2 || i == 9) && (j == 2 || j == 9);
      EXPECT_EQ(state.force.fc()(i, j), inside ? fc(i, j) : 0.0) << i << ' ' << j;
    }
  }
  EXPECT_EQ(state.force.fcm(), fcm);
}

}  // namespace
}  // namespace vbn
