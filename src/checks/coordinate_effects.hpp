// Internal coordinates that carry the reorganisation energy without a motion behind it.
#pragma once

#include "input/keys.hpp"       // for input_data
#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states
#include "text/messages.hpp"    // for messages

namespace vbn {

// All after the differences of the internal coordinates. None changes a result.

// Warns of bends that are linear in one state alone, and of nearly straight ones that bend to different
// sides: the value of a linear bend is an angle without sign, and its derivatives belong to a plane that the
// frame picks.
void warn_of_linear_bends(const array1<states>& state, const messages& say);

// Warns of totals of the two routes that differ by much, with the cause: torsions about nearly straight
// angles, with the keys that leave them out; a large motion, with the coordinates that carry it; or neither.
// `skip_first` leaves out state 1, whose internal route is known to be off.
void warn_of_routes(const array1<states>& state, const input_data& input, bool skip_first,
                    const messages& say);

}  // namespace vbn
