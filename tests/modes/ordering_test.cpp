// Tests of the pairing of modes on all its paths.
#include "modes/ordering.hpp"  // for vbn_ord, large_elements

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "linalg/sorting.hpp"  // for indexx

namespace vbn {
namespace {

// The assignment as it is described: all elements sorted, each compared with all pairs accepted before.
void plain_large_elements(array1<int>& idx_j, array1<int>& idx_k, const array2<double>& matrix,
                          int sort_mode) {
  const int nj = idx_j.size();
  const int nk = idx_k.size();
  const int n = nj * nk;
  array1<int> j1(n), k1(n), j2(n), k2(n), ord;
  array1<double> array(n);
  int i = 0;
  for (int j = 1; j <= nj; ++j) {
    for (int k = 1; k <= nk; ++k) {
      ++i;
      j1(i) = idx_j(j);
      k1(i) = idx_k(k);
      array(i) = std::abs(matrix(j, k));
    }
  }
  indexx(array.span(), ord);
  for (i = 1; i <= n; ++i) {
    j2(i) = j1(ord(n + 1 - i));
    k2(i) = k1(ord(n + 1 - i));
  }
  int n1 = 1;
  idx_j(1) = j2(1);
  idx_k(1) = k2(1);
  for (i = 2; i <= n; ++i) {
    bool lock = false;
    for (int p = 1; p <= n1; ++p) lock = lock || j2(i) == idx_j(p) || k2(i) == idx_k(p);
    if (lock) continue;
    ++n1;
    idx_j(n1) = j2(i);
    idx_k(n1) = k2(i);
  }
  if (sort_mode == 3) return;
  array1<double> key(n1);
  for (int p = 1; p <= n1; ++p) key(p) = sort_mode == 1 ? idx_j(p) : idx_k(p);
  array1<int> rank;
  indexx(key.span(), rank);
  const array1<int> from_j = idx_j;
  const array1<int> from_k = idx_k;
  for (int p = 1; p <= n1; ++p) {
    idx_j(p) = from_j(rank(p));
    idx_k(p) = from_k(rank(p));
  }
}

// Elements in steps of 0.1, so that many are equal.
array2<double> matrix_with_ties(int nj, int nk, unsigned seed) {
  std::mt19937 draw(seed);
  std::uniform_int_distribution<int> tenths(-6, 6);
  array2<double> m(nj, nk);
  for (double& element : m.span()) element = 0.1 * tenths(draw);
  return m;
}

array1<int> shuffled(int n, unsigned seed) {
  array1<int> idx(n);
  for (int i = 1; i <= n; ++i) idx(i) = 2 * i + 5;
  std::shuffle(idx.begin(), idx.end(), std::mt19937(seed));
  return idx;
}

TEST(ordering, looking_up_what_is_taken_gives_the_pairs_of_the_full_scan_ties_included) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    const int nj = 1 + static_cast<int>(seed % 9);
    const int nk = 1 + static_cast<int>(seed % 7);
    const array2<double> m = seed % 10 == 0 ? array2<double>(nj, nk) : matrix_with_ties(nj, nk, seed);
    for (const int sort_mode : {1, 2, 3}) {
      array1<int> fast_j = shuffled(nj, seed), plain_j = fast_j;
      array1<int> fast_k = shuffled(nk, seed + 1), plain_k = fast_k;
      large_elements(fast_j, fast_k, m, sort_mode);
      plain_large_elements(plain_j, plain_k, m, sort_mode);
      for (int p = 1; p <= std::min(nj, nk); ++p) {
        EXPECT_EQ(fast_j(p), plain_j(p)) << seed << ' ' << sort_mode;
        EXPECT_EQ(fast_k(p), plain_k(p)) << seed << ' ' << sort_mode;
      }
      // What is left of the longer side follows, so that no mode is lost or repeated.
      array1<int> all = shuffled(nj, seed);
      EXPECT_TRUE(std::is_permutation(fast_j.begin(), fast_j.end(), all.begin()));
      all = shuffled(nk, seed + 1);
      EXPECT_TRUE(std::is_permutation(fast_k.begin(), fast_k.end(), all.begin()));
    }
  }
}

// A call of vbn_ord with what it needs.
struct pairing {
  input_keys keys;
  normal_modes g, e;
  symmetry_data symmetry;
  mode_pairs pairs;
  array2<double>& s1 = g.s;

  explicit pairing(int n3) {
    g.s = array2<double>(n3, n3);
    g.freq = e.freq = array1<double>(n3);
    g.irrep = e.irrep = array1<text<6>>(n3, "A");
    for (int i = 1; i <= n3; ++i) g.freq(i) = e.freq(i) = 0.001 * i;
    for (int i = 1; i <= n3; ++i) s1(i, i) = 1.0;
    keys.sort_mode = 1;
  }
  pairing(const pairing& p) : keys(p.keys), g(p.g), e(p.e), symmetry(p.symmetry) {}
  void run() { pairs = vbn_ord(g, e, symmetry, keys); }
  std::vector<int> first() const { return {pairs.order_g.begin(), pairs.order_g.end()}; }
  std::vector<int> second() const { return {pairs.order_e.begin(), pairs.order_e.end()}; }
  // Mode j of state 1 overlaps with mode k of state 2 by `value`, besides the unit matrix.
  void exchange(int j, int k, double value) {
    s1(j, k) = s1(k, j) = value;
    s1(j, j) = s1(k, k) = std::sqrt(1.0 - value * value);
  }
};

const std::vector<int> one_to_nine = {1, 2, 3, 4, 5, 6, 7, 8, 9};

TEST(ordering, the_six_lowest_modes_pair_row_by_row_and_an_empty_row_keeps_its_number) {
  pairing p(9);
  for (int i = 1; i <= 6; ++i) p.s1(i, i) = 0.0;
  p.s1(1, 3) = 0.5;
  p.s1(1, 4) = -0.5;  // equal: the lower one wins
  p.s1(2, 3) = 0.9;   // taken by row 1, though this is larger
  p.s1(2, 1) = 0.1;
  p.s1(3, 3) = 0.7;  // all that is not zero is taken
  p.s1(4, 9) = 1.0;  // never looked at
  p.run();
  EXPECT_EQ(p.second(), (std::vector<int>{3, 1, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(p.first(), one_to_nine);

  pairing q(9);
  q.exchange(2, 8, 0.95);
  q.run();
  EXPECT_EQ(q.second(), one_to_nine);
  q.keys.n3all = true;  // a vibration may pair with a rotation
  q.run();
  EXPECT_EQ(q.second(), (std::vector<int>{1, 8, 3, 4, 5, 6, 7, 2, 9}));
}

}  // namespace
}  // namespace vbn
