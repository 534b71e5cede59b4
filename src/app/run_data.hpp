// The data of a whole run.
#pragma once

#include "couplings/nacme_file.hpp"        // for nacme_table
#include "couplings/nacme_projection.hpp"  // for nacme_forms
#include "input/keys.hpp"                  // for input_data
#include "internal/reorganisation.hpp"     // for reorganisation_table
#include "linalg/array.hpp"                // for array1, array2
#include "molecule/record.hpp"             // for states
#include "text/messages.hpp"               // for messages
#include "text/output_file.hpp"            // for output_file

namespace vbn {

// The keys, the two states, the log, the places of the messages, and what relates the states besides the
// parts of their records.
struct run_data {
  input_data input;
  array1<states> state{2};  // state(1) the ground state g, state(2) the excited state e
  output_file fout;         // the log
  messages say;
  bool for_tables = true;    // the modes go to the tables, with what they leave out or do not rotate
  bool apart = false;        // the states are in different orientations; a warning has said so
  bool other_order = false;  // the atoms of the states do not correspond; a warning has said so
  bool other_axes = false;  // the representations of state 1 are not those of its axes; a warning has said so
  bool late_rotation = false;  // the internal coordinates of state 1 have other axes; a warning has said so

  // With couplings: in every form along the modes of state 1, from the vectors as read and in the final
  // frame.
  nacme_forms nacme_before, nacme_after;
  array1<nacme_table> nacme_n3{2};      // the couplings of each state along its modes; empty without
  array2<double> tdipd_q;               // (3,n3) dipole derivatives along the modes of state 1; empty without
  reorganisation_table reorganisation;  // with `proj_reorg`
};

}  // namespace vbn
