// The data of a whole run.
#pragma once

#include "input/keys.hpp"        // for input_data
#include "linalg/array.hpp"      // for array1
#include "molecule/record.hpp"   // for states
#include "text/messages.hpp"     // for messages
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// The keys, the two states, the log and the places of the messages.
struct run_data {
  input_data input;
  array1<states> state{2};  // state(1) the ground state g, state(2) the excited state e
  output_file fout;         // the log
  messages say;
};

}  // namespace vbn
