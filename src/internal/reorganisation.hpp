// The reorganisation energy of each state, split over the redundant internal coordinates.
#pragma once

#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states

namespace vbn {

// Writes the table `proj_reorg.dat`, the coordinates by falling share, from `zd` of state(1) and `ag`,
// `cmr2`, `freq` and `zptlen` of both states; modes 7 to n3 take part. Nothing in the records changes. Does
// nothing unless proj_reorg is true.
void proj_reorg_ene(const array1<states>& state, bool proj_reorg);

// Zero-point length of mode i as held in `zptlen` or, of a mode whose frequency is not positive and leaves
// that without a value, the length that the magnitude of the frequency gives (infinite for zero).
double mode_length(const states& state, int i);

// Exchanges element i with element n+1-i.
void reverse_order(array1<int>& order);

}  // namespace vbn
