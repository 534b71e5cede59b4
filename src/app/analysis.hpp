// The analysis of two states, from their files to everything that relates them, with nothing written.
#pragma once

#include "app/run_data.hpp"      // for run_data
#include "input/keys.hpp"        // for input_data
#include "text/messages.hpp"     // for messages
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// Reads the files that the keys name, computes the two states and relates them by both routes (by the
// Cartesian one alone with `set_cart`). Writes no file besides the log, which may lead nowhere. A stop is
// thrown as `run_end`. Calls in several threads do not disturb each other.
run_data analyse(const input_data& input, const messages& say, output_file log);

// Its two parts, for a caller that writes files after each. Before the first, `input`, `say` and `fout` are
// set. `relate_states` goes from the files to the Cartesian route and the couplings along the modes;
// `compare_internal_coordinates` is the route through internal coordinates.
void relate_states(run_data& run);
void compare_internal_coordinates(run_data& run);

}  // namespace vbn
