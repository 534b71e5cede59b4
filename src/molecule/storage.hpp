// Takes and gives back the arrays of a state's record.
#pragma once

#include "molecule/record.hpp"  // for states

namespace vbn {

// Gives every array of the record its extent from `natom` and `n3`, save those of the internal coordinates,
// all zero; `iqm` and `iqm3` only with `ifoniom`. Every `irrep` becomes "A".
void vbn_allocate(states& state);

// Takes `bmbt`, `bm`, `ga` and `ag` from `nr` and `n3`, all zero.
void int_allocate(states& state);

// Gives back what `int_allocate` took.
void int_deallocate(states& state);

// Gives back everything that `vbn_allocate` took.
void dush_deallocate(states& state);

}  // namespace vbn
