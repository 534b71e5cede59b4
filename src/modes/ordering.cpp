// The greedy assignment and the blocks of modes that it works on.
#include "modes/ordering.hpp"  // for vbn_ord

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "linalg/sorting.hpp"      // for indexx
#include "molecule/constants.hpp"  // for external_modes, first_vibration

namespace vbn {

namespace {

// The mode numbers 1 to n.
array1<int> first_modes(int n) {
  array1<int> idx(n);
  for (int i = 1; i <= n; ++i) idx(i) = i;
  return idx;
}

// The elements of `s` at the rows `idx_j` and the columns `idx_k`.
array2<double> block(const array2<double>& s, const array1<int>& idx_j, const array1<int>& idx_k) {
  array2<double> part(idx_j.size(), idx_k.size());
  for (int k = 1; k <= idx_k.size(); ++k)
    for (int j = 1; j <= idx_j.size(); ++j) part(j, k) = s(idx_j(j), idx_k(k));
  return part;
}

// Pairs a block of modes; see large_elements.
void pair_block(const array2<double>& s, array1<int>& idx_j, array1<int>& idx_k, int sort_mode) {
  large_elements(idx_j, idx_k, block(s, idx_j, idx_k), sort_mode);
}

// The modes of representation `name` from place `from` on, in the order of frequency.
array1<int> modes_of(const array1<int>& ord, const array1<text<6>>& symm, const text<3>& name, int from) {
  std::vector<int> found;
  for (int i = from; i <= ord.size(); ++i)
    if (symm(ord(i)) == name.full()) found.push_back(ord(i));
  array1<int> modes(static_cast<int>(found.size()));
  std::copy(found.begin(), found.end(), modes.begin());
  return modes;
}

// Pairs each of the six lowest modes of state 1 in turn with the free mode of state 2 of largest overlap.
void pair_rest_by_rows(const array2<double>& s1, int n3, array1<int>& order_e) {
  const int n = std::min(external_modes, n3);
  array1<bool_> lock(n3, false);
  for (int i = 1; i <= n; ++i) {
    double smax = 0.0;
    for (int j = 1; j <= n; ++j) {
      if (std::abs(s1(i, j)) > std::abs(smax) && !lock(j)) {
        smax = s1(i, j);
        order_e(i) = j;
      }
    }
    lock(order_e(i)) = true;
  }
}

// The list of pairs by increasing mean frequency, from a pairing of all modes.
void preliminary_pairs(const array1<double>& freq1, const array1<double>& freq2, const array2<double>& s1,
                       int sort_mode, array1<int>& ord_g, array1<int>& ord_e) {
  const int n3 = s1.rows();
  array1<int> idx_g = first_modes(n3);
  array1<int> idx_e = first_modes(n3);
  large_elements(idx_g, idx_e, s1, sort_mode);
  array1<double> freq_abs_average(n3);
  for (int i = 1; i <= n3; ++i)
    freq_abs_average(i) = (std::abs(freq2(idx_e(i))) + std::abs(freq1(idx_g(i)))) / 2.0;
  array1<int> idx_1;
  indexx(freq_abs_average.span(), idx_1);
  for (int i = 1; i <= n3; ++i) {
    ord_g(i) = idx_g(idx_1(i));
    ord_e(i) = idx_e(idx_1(i));
  }
}

// The pairing while its rows are filled from the first on.
struct pair_list {
  mode_pairs& pairs;
  int rows_g = 0;
  int rows_e = 0;

  void add_g(int mode) { pairs.order_g(++rows_g) = mode; }
  void add_e(int mode) { pairs.order_e(++rows_e) = mode; }
};

// Pairs within the representations.
void pair_by_symmetry(const normal_modes& g, const normal_modes& e, const symmetry_data& symmetry,
                      int sort_mode, mode_pairs& pairs) {
  const array2<double>& s1 = g.s;
  const int n3 = s1.rows();
  const int n = std::min(external_modes, n3);
  array1<int> ord_g(n3);
  array1<int> ord_e(n3);
  preliminary_pairs(g.freq, e.freq, s1, sort_mode, ord_g, ord_e);

  pair_list list{pairs};
  array1<int> idx_g(n);
  array1<int> idx_e(n);
  for (int j = 1; j <= n; ++j) {
    idx_g(j) = ord_g(j);
    idx_e(j) = ord_e(j);
  }
  pair_block(s1, idx_g, idx_e, sort_mode);
  for (int j = 1; j <= n; ++j) {
    list.add_g(idx_g(j));
    list.add_e(idx_e(j));
  }

  // Modes without a partner in their representation are listed after all pairs, so that no row before the
  // last pair shows two modes that are not paired.
  std::vector<int> left_g;
  std::vector<int> left_e;
  for (int ir = 1; ir <= symmetry.nrep; ++ir) {
    idx_g = modes_of(ord_g, g.irrep, symmetry.ir_name(ir), first_vibration);
    idx_e = modes_of(ord_e, e.irrep, symmetry.ir_name(ir), first_vibration);
    if (idx_g.size() == 0 || idx_e.size() == 0) continue;
    pair_block(s1, idx_g, idx_e, sort_mode);
    const int npair = std::min(idx_g.size(), idx_e.size());
    for (int j = 1; j <= npair; ++j) {
      list.add_g(idx_g(j));
      list.add_e(idx_e(j));
    }
    left_g.insert(left_g.end(), idx_g.begin() + npair, idx_g.end());
    left_e.insert(left_e.end(), idx_e.begin() + npair, idx_e.end());
  }
  const int paired = list.rows_g;
  for (const int mode : left_g) list.add_g(mode);
  for (const int mode : left_e) list.add_e(mode);
  pairs.unpaired = n3 - paired;
}

}  // namespace

void large_elements(array1<int>& idx_j, array1<int>& idx_k, const array2<double>& matrix, int sort_mode) {
  const int nj = idx_j.size();
  const int nk = idx_k.size();
  if (nj == 0 || nk == 0) return;
  const int n = nj * nk;
  // Place i of the list is row (i-1)/nk, column (i-1)%nk: columns run fastest, which defines the order of
  // equal elements after the sort.
  array1<double> array(n);
  for (int k = 1; k <= nk; ++k)
    for (int j = 1; j <= nj; ++j) array((j - 1) * nk + k) = std::abs(matrix(j, k));
  array1<int> ord;
  indexx(array.span(), ord);

  // In the order of decreasing elements: an element whose row and column are free gives a pair.
  array1<bool_> taken_j(nj, false);
  array1<bool_> taken_k(nk, false);
  const int npair = std::min(nj, nk);
  std::vector<int> row;
  std::vector<int> col;
  for (int i = n; i >= 1 && static_cast<int>(row.size()) < npair; --i) {
    const int j = (ord(i) - 1) / nk + 1;
    const int k = (ord(i) - 1) % nk + 1;
    if (taken_j(j) || taken_k(k)) continue;
    taken_j(j) = true;
    taken_k(k) = true;
    row.push_back(j);
    col.push_back(k);
  }

  const array1<int> from_j = idx_j;
  const array1<int> from_k = idx_k;
  array1<int> rank = first_modes(npair);
  if (sort_mode == 1 || sort_mode == 2) {
    array1<double> key(npair);
    for (int p = 1; p <= npair; ++p) {
      const auto at = static_cast<std::size_t>(p - 1);
      key(p) = sort_mode == 1 ? from_j(row[at]) : from_k(col[at]);
    }
    indexx(key.span(), rank);
  }
  for (int p = 1; p <= npair; ++p) {
    const auto at = static_cast<std::size_t>(rank(p) - 1);
    idx_j(p) = from_j(row[at]);
    idx_k(p) = from_k(col[at]);
  }
  int next = npair;
  for (int j = 1; j <= nj; ++j)
    if (!taken_j(j)) idx_j(++next) = from_j(j);
  next = npair;
  for (int k = 1; k <= nk; ++k)
    if (!taken_k(k)) idx_k(++next) = from_k(k);
}

mode_pairs vbn_ord(const normal_modes& g, const normal_modes& e, const symmetry_data& symmetry,
                   const input_keys& keys) {
  const int n3 = g.s.rows();
  mode_pairs pairs{first_modes(n3), first_modes(n3)};
  const int sort_mode = keys.sort_mode;
  if (sort_mode < 1 || sort_mode > 3) return pairs;
  if (keys.if_symm) {
    pair_by_symmetry(g, e, symmetry, sort_mode, pairs);
    return pairs;
  }

  int from = 1;
  if (!keys.n3all) {
    pair_rest_by_rows(g.s, n3, pairs.order_e);
    from = first_vibration;
  }
  const int nmode = std::max(0, n3 - from + 1);
  array1<int> idx_g_ir(nmode);
  array1<int> idx_e_ir(nmode);
  for (int j = 1; j <= nmode; ++j) idx_g_ir(j) = idx_e_ir(j) = j + from - 1;
  pair_block(g.s, idx_g_ir, idx_e_ir, sort_mode);
  for (int j = 1; j <= nmode; ++j) {
    pairs.order_g(j + from - 1) = idx_g_ir(j);
    pairs.order_e(j + from - 1) = idx_e_ir(j);
  }
  return pairs;
}

}  // namespace vbn
