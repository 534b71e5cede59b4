// Pairing of the modes of the two states by their overlap.
#pragma once

#include "input/keys.hpp"       // for input_keys
#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for normal_modes, symmetry_data

namespace vbn {

// The pairing of the modes: row by row, the modes of state 1 and of state 2 that are side by side.
struct mode_pairs {
  array1<int> order_g;  // (n3)
  array1<int> order_e;  // (n3)
  int unpaired = 0;     // last rows whose modes are not paired
};

// Keys: `sort_mode` (0, or a value outside 1..3, gives every mode its own row), `if_symm` (pairs within
// representations), `n3all` (the six lowest modes are not a separate block). Of the modes it reads `freq` and
// `irrep`, and `s` of state 1; the representations are those of state 1. There are rows without a pair only
// if the two states have different numbers of modes of a representation: the pairs come first; the remaining
// modes of a representation that both states have follow, and every other row has the mode of its own number.
mode_pairs vbn_ord(const normal_modes& g, const normal_modes& e, const symmetry_data& symmetry,
                   const input_keys& keys);

// Greedy one-to-one assignment: the element of largest magnitude of `matrix` (nj,nk) gives the first pair,
// then the largest in the remaining rows and columns, and so on. `idx_j` (nj) and `idx_k` (nk) hold the
// distinct mode numbers of rows and columns; the min(nj,nk) pairs replace their first entries, ordered by
// idx_j (sort_mode 1), by idx_k (2) or as they were found (3). The modes of the longer side without a partner
// follow in their original order.
void large_elements(array1<int>& idx_j, array1<int>& idx_k, const array2<double>& matrix, int sort_mode);

}  // namespace vbn
