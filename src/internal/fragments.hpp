// The parts of a molecule that no bond joins, and how to go on with them.
#pragma once

#include <string>

#include "input/keys.hpp"       // for input_data
#include "molecule/record.hpp"  // for atom_data, internal_coordinates

namespace vbn {

// What keeps the internal coordinates from describing all vibrations, and the ways on: the Cartesian route
// alone, or bonds between the parts as keys of the input, each between the two nearest atoms of a part and of
// the parts before it.
std::string ways_on(const atom_data& atoms, const internal_coordinates& internal, const input_data& input);

}  // namespace vbn
