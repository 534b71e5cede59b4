// Tests of the index sorts and of the routines that apply an index.
#include "linalg/sorting.hpp"  // for dorder, indexx

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <random>
#include <vector>

namespace vbn {
namespace {

TEST(sorting, index_increases_for_every_length_and_every_pattern_of_keys) {
  std::mt19937 draw(1);
  const double none = std::numeric_limits<double>::quiet_NaN();
  for (const int n : {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 100, 1000}) {
    const std::vector<std::function<double(int)>> patterns = {
        [&](int) { return draw() % 1000; },
        [&](int) { return draw() % 3; },
        [](int i) { return i; },
        [](int i) { return -i; },
        [](int) { return 1.0; },
        [&](int i) { return i < n / 2 ? i : n - i; },
        [&](int i) { return draw() % 4 == 0 ? none : i; }};
    for (const auto& key : patterns) {
      std::vector<double> a;
      for (int i = 0; i < n; ++i) a.push_back(key(i));
      array1<int> rising, falling;
      dorder(a, rising, 1);
      dorder(a, falling, -1);
      std::ranges::reverse(falling);
      EXPECT_EQ(falling, rising) << n << ": falling is the reverse of rising, equal keys included";
      for (int i = 2; i <= n; ++i)  // keys that are no numbers have no order
        EXPECT_FALSE(&key != &patterns.back() && a[static_cast<std::size_t>(rising(i - 1) - 1)] >
                                                     a[static_cast<std::size_t>(rising(i) - 1)]);
      std::ranges::sort(rising);
      for (int i = 1; i <= n; ++i) ASSERT_EQ(rising(i), i) << "each element once";
    }
  }
}

// Worked out by hand: a short piece is sorted by insertion and keeps equal keys in place; from 8 elements on
// the median of first, middle and last divides the piece, and equal keys change places.
TEST(sorting, equal_keys_come_in_the_order_that_the_partition_leaves) {
  array1<int> indx;
  indexx(std::vector<double>(7, 2.0), indx);
  EXPECT_TRUE(std::ranges::equal(indx, std::vector<int>{1, 2, 3, 4, 5, 6, 7}));
  indexx(std::vector<double>(8, 2.0), indx);
  EXPECT_TRUE(std::ranges::equal(indx, std::vector<int>{1, 6, 7, 4, 5, 2, 3, 8}))
      << ::testing::PrintToString(std::vector<int>(indx.begin(), indx.end()));
}

}  // namespace
}  // namespace vbn
