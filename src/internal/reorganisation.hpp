// The reorganisation energy of each state, split over the redundant internal coordinates.
#pragma once

#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states, normal_modes

namespace vbn {

// Shares of each coordinate in the energy of one state, cm-1: the diagonal and the non-diagonal part, and
// their sum.
struct reorganisation_shares {
  array1<double> xx, xy, x;  // (nr)
  double xx_tot = 0.0, xy_tot = 0.0, x_tot = 0.0;
};

// The shares in both states, and the sum of both for each coordinate.
struct reorganisation_table {
  reorganisation_shares s1, s2;
  array1<double> total;  // (nr)
};

// The shares from the differences of the coordinates of state(1) and the modes of both states in these
// coordinates; modes 7 to n3 count.
reorganisation_table proj_reorg_ene(const array1<states>& state);

// Writes the table `proj_reorg.dat`, the coordinates of state 1 by decreasing share.
void write_proj_reorg(const states& state, const reorganisation_table& table);

// Zero-point length of mode i from `zptlen` or, for a mode whose frequency is not positive and has none
// there, from the magnitude of the frequency (infinite for zero).
double mode_length(const normal_modes& modes, int i);

// Exchanges element i with element n+1-i.
void reverse_order(array1<int>& order);

}  // namespace vbn
