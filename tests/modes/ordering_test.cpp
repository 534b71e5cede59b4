// Tests of the pairing of modes.
#include "modes/ordering.hpp"  // for vbn_ord, large_elements

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "linalg/sorting.hpp"  // for indexx

namespace vbn {
namespace {

struct pair {
  int j, k;
};

// The plain assignment: all elements sorted, each compared with all pairs accepted before.
std::vector<pair> plain_large_elements(const array1<int>& idx_j, const array1<int>& idx_k,
                                       const array2<double>& matrix, int sort_mode) {
  std::vector<pair> all, taken;
  std::vector<double> size;
  for (int j = 1; j <= idx_j.size(); ++j)
    for (int k = 1; k <= idx_k.size(); ++k) {
      all.push_back({idx_j(j), idx_k(k)});
      size.push_back(std::abs(matrix(j, k)));
    }
  array1<int> order;
  indexx(size, order);
  for (int i = order.size(); i >= 1; --i) {
    const pair& next = all[static_cast<std::size_t>(order(i) - 1)];
    if (std::ranges::none_of(taken, [&](const pair& p) { return p.j == next.j || p.k == next.k; }))
      taken.push_back(next);
  }
  if (sort_mode == 1) std::ranges::sort(taken, {}, &pair::j);
  if (sort_mode == 2) std::ranges::sort(taken, {}, &pair::k);
  return taken;
}

// The numbers 7, 9, 11... in disorder.
array1<int> shuffled(int n, unsigned seed) {
  array1<int> idx(n);
  for (int i = 1; i <= n; ++i) idx(i) = 2 * i + 5;
  std::shuffle(idx.begin(), idx.end(), std::mt19937(seed));
  return idx;
}

TEST(ordering, looking_up_what_is_taken_gives_the_pairs_of_the_full_scan_ties_included) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    const int nj = 1 + static_cast<int>(seed % 9), nk = 1 + static_cast<int>(seed % 7);
    std::mt19937 draw(seed);
    std::uniform_int_distribution<int> tenths(-6, 6);  // many are equal
    array2<double> m(nj, nk);
    for (double& element : m.span()) element = seed % 10 == 0 ? 0.0 : 0.1 * tenths(draw);
    for (const int sort_mode : {1, 2, 3}) {
      const array1<int> from_j = shuffled(nj, seed), from_k = shuffled(nk, seed + 1);
      array1<int> j = from_j, k = from_k;
      large_elements(j, k, m, sort_mode);
      int p = 0;
      for (const pair& expected : plain_large_elements(from_j, from_k, m, sort_mode)) {
        ++p;
        EXPECT_TRUE(j(p) == expected.j && k(p) == expected.k) << seed << ' ' << sort_mode;
      }
      EXPECT_EQ(p, std::min(nj, nk));
      // The rest of the longer side follows, so that no mode is lost or repeated.
      EXPECT_TRUE(std::is_permutation(j.begin(), j.end(), from_j.begin()));
      EXPECT_TRUE(std::is_permutation(k.begin(), k.end(), from_k.begin()));
    }
  }
}

// The pairs of `n3` modes with overlaps s(n3,n3), the partners in state 2 of the modes in their order.
mode_pairs pairs_of(const array2<double>& s, const input_keys& keys,
                    const std::vector<const char*>& irrep1 = {},
                    const std::vector<const char*>& irrep2 = {}) {
  const int n3 = s.rows();
  normal_modes g, e;
  g.s = s;
  g.freq = e.freq = array1<double>(n3);
  g.irrep = e.irrep = array1<text<6>>(n3, "A");
  for (int i = 1; i <= n3; ++i) {
    g.freq(i) = e.freq(i) = 0.001 * i;
    if (irrep1.empty()) continue;
    g.irrep(i) = irrep1[static_cast<std::size_t>(i - 1)];
    e.irrep(i) = irrep2[static_cast<std::size_t>(i - 1)];
  }
  symmetry_data symmetry;
  symmetry.nrep = 3;
  symmetry.ir_name(1) = "A2";
  symmetry.ir_name(2) = "B2";
  symmetry.ir_name(3) = "A1";
  return vbn_ord(g, e, symmetry, keys);
}

std::vector<int> listed(const array1<int>& order) { return {order.begin(), order.end()}; }

array2<double> unit(int n) {
  array2<double> s(n, n);
  for (int i = 1; i <= n; ++i) s(i, i) = 1.0;
  return s;
}

const std::vector<int> one_to_nine = {1, 2, 3, 4, 5, 6, 7, 8, 9};

TEST(ordering, the_six_lowest_modes_pair_row_by_row_and_an_empty_row_keeps_its_number) {
  input_keys keys;
  keys.sort_mode = 1;
  array2<double> s = unit(9);
  for (int i = 1; i <= 6; ++i) s(i, i) = 0.0;
  s(1, 3) = 0.5;
  s(1, 4) = -0.5;  // equal: the lower one wins
  s(2, 3) = 0.9;   // the column is taken by row 1, though this is larger
  s(2, 1) = 0.1;
  s(3, 3) = 0.7;  // the only element other than zero that is free
  s(4, 9) = 1.0;  // never used
  EXPECT_EQ(listed(pairs_of(s, keys).order_e), (std::vector<int>{3, 1, 3, 4, 5, 6, 7, 8, 9}));
  s = unit(9);
  s(2, 8) = s(8, 2) = 0.95;
  s(2, 2) = s(8, 8) = 0.31;
  EXPECT_EQ(listed(pairs_of(s, keys).order_e), one_to_nine);
  keys.n3all = true;  // a vibration may pair with a rotation
  EXPECT_EQ(listed(pairs_of(s, keys).order_e), (std::vector<int>{1, 8, 3, 4, 5, 6, 7, 2, 9}));
  keys.sort_mode = 0;
  EXPECT_EQ(listed(pairs_of(s, keys).order_e), one_to_nine);
}

// Modes 7 and 8 are of a representation without a name in state 1 and of A2 in state 2.
TEST(ordering, a_representation_of_one_state_only_is_skipped_and_surplus_modes_are_counted) {
  input_keys keys;
  keys.sort_mode = 1;
  keys.if_symm = true;
  const mode_pairs pairs =
      pairs_of(unit(12), keys, {"A1", "A1", "A1", "A1", "A1", "A1", "B1", "B1", "A1", "A1", "B2", "B2"},
               {"A1", "A1", "A1", "A1", "A1", "A1", "A2", "A2", "A1", "A1", "B2", "B2"});
  EXPECT_EQ(pairs.unpaired, 2);
  EXPECT_EQ(listed(pairs.order_g), (std::vector<int>{1, 2, 3, 4, 5, 6, 11, 12, 9, 10, 11, 12}));
  EXPECT_EQ(pairs.order_e, pairs.order_g);
}

}  // namespace
}  // namespace vbn
