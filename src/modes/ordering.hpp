// Pairing of the modes of the two states by their overlap.
#pragma once

#include <span>

#include "input/keys.hpp"       // for input_keys
#include "linalg/array.hpp"     // for array1, array2
#include "text/fixed_text.hpp"  // for text

namespace vbn {

// Fills column 1 of `idx1` and `idx2` (n3,2) with the modes of state 1 and of state 2 that stand side by
// side, row by row; column 2 becomes the identity. Keys: `sort_mode` (0, or a value outside 1..3, gives the
// identity), `if_symm` (pairs within representations), `n3all` (the six lowest modes are no block of their
// own).
// Shapes: freq1, freq2 (n3); s1 (n3,n3), S(g,e); symm1, symm2 (n3); nrep representations with the names
// nmrep. Returns the number of last rows whose modes are not paired: 0 unless the two states have different
// numbers of modes of a representation. There the pairs come first; the modes left over in a representation
// that both states have follow them, and what is then still free keeps the identity.
int vbn_ord(int n3, const array1<double>& freq1, const array1<double>& freq2, const array2<double>& s1,
            const array1<text<6>>& symm1, const array1<text<6>>& symm2, array2<int>& idx1, array2<int>& idx2,
            int nrep, const array1<text<3>>& nmrep, const input_keys& keys);

// Greedy one-to-one assignment: of all elements of `matrix` (nj,nk) the largest in magnitude makes the first
// pair, then the largest in the rows and columns left, and so on. `idx_j` (nj) and `idx_k` (nk) hold the
// distinct mode numbers of rows and columns; the min(nj,nk) pairs replace their first entries, ordered by
// idx_j (sort_mode 1), by idx_k (2) or as they were found (3). The modes of the longer side that found no
// partner follow in the order in which they came.
void large_elements(array1<int>& idx_j, array1<int>& idx_k, const array2<double>& matrix, int sort_mode);

}  // namespace vbn
