// Atoms in another order in the two files.
#pragma once

#include <optional>

#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for atom_data, states
#include "text/messages.hpp"    // for messages

namespace vbn {

// The bonds (natom,natom) of a geometry by the distances alone.
array2<bool_> bonds_of(const atom_data& atoms);

// An order of the atoms of the second state, and how near it brings the two geometries.
struct atom_order {
  array1<int> place;      // (natom) atom i of the first state is atom place(i) of the second
  double distance = 0.0;  // root mean square over the atoms after the best rotation, bohr
  bool mirrored = false;  // of the mirror image of the second state
};

// The order that maps the elements and bonds of the first state onto those of the second with the least
// difference of all distances between atoms, and of such orders that nearest after the best rotation; none
// when the bonds are not those of one molecule, or the search takes too long. The bonds (natom,natom) are
// those of each geometry.
std::optional<atom_order> matching_order(const atom_data& one, const array2<bool_>& bond1,
                                         const atom_data& two, const array2<bool_>& bond2);

// Warns when the atoms of the states do not correspond, with the order that makes them, where there is one.
// Nothing is reordered. Returns whether it has warned.
bool warn_of_atom_order(const array1<states>& state, const messages& say);

}  // namespace vbn
