// Tests of the index sorts and of the routines that apply an index.
#include "linalg/sorting.hpp"  // for dorder, indexx

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

namespace vbn {
namespace {

// Whether indx holds each of 1..n once and the keys never fall along it.
bool rises(const std::vector<double>& keys, const array1<int>& indx) {
  std::vector<int> seen(indx.begin(), indx.end());
  std::ranges::sort(seen);
  for (std::size_t i = 0; i < seen.size(); ++i)
    if (seen[i] != static_cast<int>(i) + 1) return false;
  for (int i = 2; i <= indx.size(); ++i)
    if (keys[static_cast<std::size_t>(indx(i - 1) - 1)] > keys[static_cast<std::size_t>(indx(i) - 1)])
      return false;
  return indx.size() == static_cast<int>(keys.size());
}

TEST(sorting, index_rises_for_every_length_and_every_pattern_of_keys) {
  std::mt19937 draw(1);
  for (const int n : {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 100, 1000}) {
    const auto keys = [&](auto key) {
      std::vector<double> all;
      for (int i = 1; i <= n; ++i) all.push_back(key(i));
      return all;
    };
    const auto random = [&] { return static_cast<int>(draw() % 1000); };
    for (const std::vector<double>& a :
         {keys([&](int) { return random(); }), keys([&](int) { return random() % 3; }),
          keys([](int i) { return i; }), keys([](int i) { return -i; }), keys([](int) { return 1.0; }),
          keys([&](int i) { return i < n / 2 ? i : n - i; })}) {
      array1<int> indx;
      indexx(a, indx);
      EXPECT_TRUE(rises(a, indx)) << n;
      array1<int> falling, rising;
      dorder(a, falling, -1);
      dorder(a, rising, 1);
      EXPECT_EQ(rising, indx) << n;
      std::ranges::reverse(falling);
      EXPECT_EQ(falling, indx) << "falling is the reverse of rising, equal keys included";
    }
  }
}

// Worked out by hand: a short stretch is sorted by insertion and keeps equal keys in place; from 8 elements
// on the median of first, middle and last parts the stretch, and equal keys change places.
TEST(sorting, equal_keys_come_in_the_order_that_the_partition_leaves) {
  array1<int> indx;
  indexx(std::vector<double>(7, 2.0), indx);
  EXPECT_TRUE(std::ranges::equal(indx, std::vector<int>{1, 2, 3, 4, 5, 6, 7}));
  indexx(std::vector<double>(8, 2.0), indx);
  EXPECT_TRUE(std::ranges::equal(indx, std::vector<int>{1, 6, 7, 4, 5, 2, 3, 8}))
      << ::testing::PrintToString(std::vector<int>(indx.begin(), indx.end()));
}

TEST(sorting, keys_that_are_no_numbers_end_in_an_index_of_all_elements) {
  std::mt19937 draw(4);
  for (int trial = 0; trial < 200; ++trial) {
    std::vector<double> keys(1 + draw() % 60);
    for (double& key : keys)
      key = draw() % 4 == 0 ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(draw() % 10);
    array1<int> indx;
    indexx(keys, indx);
    std::ranges::sort(indx);
    for (int i = 1; i <= indx.size(); ++i) ASSERT_EQ(indx(i), i);
  }
}

}  // namespace
}  // namespace vbn
