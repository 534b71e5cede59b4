// The bond graph of a state: distance rules, added and deleted bonds, and neighbours.
#pragma once

#include "input/keys.hpp"     // for input_data
#include "linalg/array.hpp"   // for array1, array2
#include "text/messages.hpp"  // for messages

namespace vbn {

// The bond graph (natom,natom) by the distance rules from x(3,natom) in angstrom and the atomic numbers
// nat(natom): covalent radii, fixed limits for some element classes, and hydrogen bridges between N and O.
// Symmetric, no atom with itself. Atoms of an element without a radius are bonded by the fixed limits only,
// with a warning if the element is not in the radius table.
array2<bool_> get_bond(const array2<double>& x, const array1<int>& nat, const messages& say);

// Sets the bonds in the list of added coordinates, then clears those in the list of deleted ones, each list
// only if its `if_` key is true.
void def_bond(const input_data& input, array2<bool_>& bond);

// How many neighbours each atom has (natom).
array1<int> get_bond_num(const array2<bool_>& bond);

}  // namespace vbn
