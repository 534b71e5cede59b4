// The analysis of two states, from their files to everything that relates them, with nothing written.
#pragma once

#include "app/run_data.hpp"  // for run_data

namespace vbn {

// Reads the files that the keys name, computes the two states and relates them by both routes (by the
// Cartesian one alone with `set_cart`). The caller sets `input`, `say` and `fout` before; no other file is
// written, and the log may lead nowhere. A stop is thrown as `run_end`. Calls in several threads do not
// disturb each other.
void analyse(run_data& run);

// Its two parts, for a caller that writes files after each: `relate_states` goes from the files to the
// Cartesian route and the couplings along the modes; `compare_internal_coordinates` is the route through
// internal coordinates.
void relate_states(run_data& run);
void compare_internal_coordinates(run_data& run);

}  // namespace vbn
