// Each state against what its own file prints, and the two files against each other.
#pragma once

#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states
#include "text/messages.hpp"    // for messages

namespace vbn {

// To be called when both states are read and nothing has been changed.

// Ends the run when the two states are different molecules: other elements, or another number of one.
void require_one_molecule(const array1<states>& state);

// Warns of a state whose frequencies are not those that its file prints, whose geometry is not a stationary
// point, or whose lengths or force constants seem to be read in the wrong unit; of masses, methods and basis
// sets that differ between the states; and of states that are the same.
void warn_of_sources(const array1<states>& state, const messages& say);

}  // namespace vbn
