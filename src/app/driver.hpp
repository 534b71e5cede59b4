// The run from its first stage to its last.
#pragma once

#include <string_view>

#include "app/run_data.hpp"  // for run_data

namespace vbn {

// Runs all stages on the input file `argument` (200 characters, a longer name is cut), in the working
// directory. A stop of any stage leaves as `run_end`; the log stands in `run.fout` and is written out with
// it.
void run_stages(run_data& run, std::string_view argument);

}  // namespace vbn
