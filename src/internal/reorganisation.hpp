// The reorganisation energy of each state, split over the redundant internal coordinates.
#pragma once

#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states, normal_modes

namespace vbn {

// Writes the table `proj_reorg.dat`, the coordinates by decreasing share, from the differences of the
// coordinates of state(1) and the modes of both states in these coordinates; modes 7 to n3 count.
void proj_reorg_ene(const array1<states>& state);

// Zero-point length of mode i from `zptlen` or, for a mode whose frequency is not positive and has none
// there, from the magnitude of the frequency (infinite for zero).
double mode_length(const normal_modes& modes, int i);

// Exchanges element i with element n+1-i.
void reverse_order(array1<int>& order);

}  // namespace vbn
