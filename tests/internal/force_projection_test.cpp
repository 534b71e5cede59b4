// Tests of the projection of force constants on the space of the internal coordinates.
#include "internal/force_projection.hpp"  // for get_proj_f0

#include <gtest/gtest.h>

#include "tests/molecules.hpp"  // for state_of

namespace vbn {
namespace {

TEST(force_projection, keeps_what_is_in_the_space_of_the_rows_and_nothing_else) {
  force_constants force = state_of(water).force;
  const array2<double> fc = force.fc(), fcm = force.fcm();
  array2<double> bm(9, 9);
  bm(1, 2) = 1.0;  // orthonormal rows: the space of coordinates 2 and 9
  bm(2, 9) = -1.0;
  get_proj_f0(bm, force);
  for (int i = 1; i <= 9; ++i)
    for (int j = 1; j <= 9; ++j) {
      const bool inside = (i == 2 || i == 9) && (j == 2 || j == 9);
      EXPECT_EQ(force.fc()(i, j), inside ? fc(i, j) : 0.0) << i << ' ' << j;
    }
  EXPECT_EQ(force.fcm(), fcm);
}

}  // namespace
}  // namespace vbn
