// The run from its first stage to its last.
#pragma once

#include <string_view>

#include "app/run_data.hpp"  // for run_data

namespace vbn {

// Runs all stages on the input file `argument` (at most 200 characters), in the working
// directory. A stop of any stage is thrown as `run_end`; warnings and printed lines go to `run.say`; the log
// is `run.fout`, which closes with `run`.
void run_stages(run_data& run, std::string_view argument);

}  // namespace vbn
