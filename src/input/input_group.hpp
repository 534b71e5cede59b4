// The input file of a run: the defaults of its keys, the group read from it, and the check of the keys.
#pragma once

#include "input/keys.hpp"       // for input_data
#include "text/input_file.hpp"  // for input_file
#include "text/messages.hpp"    // for messages

namespace vbn {

// Sets every key to its default, except `ffreq`, which has none and is unchanged.
void init(input_data& input);

// Reads the group "&vbn" of the file `finp`, and derives from it the counters `n_mode_block`, `n_dush_block`,
// `n_add_int_coord` and `n_del_int_coord`, and `def_add_int_coord` for coordinates in the text form
// `def_add_int_coord_c`. A counter counts the entries of its list; gaps are not closed.
//
// A file that cannot be read, a group that is absent or not closed, an unknown key, a value of another type
// than its key, an index outside the array, too many values: each ends the run with a message that shows the
// place, exit status 1.
void read_input(input_data& input, const messages& say);
// The same for a file that is open.
void read_group(input_data& input, const input_file& file);

// Checks the keys that depend on the number of atoms of the run, `natom`. Sets `if_block` and, with
// `if_add_int_coord` and `if_del_int_coord`, the kinds `def_add_int_type` and `def_del_int_type` of the
// entries: 'b' a bond, 'a' an angle, 'd' a dihedral. A key that fails stops the run.
// Warns of values that have no effect.
void check(input_data& input, int natom, const messages& say);

}  // namespace vbn
