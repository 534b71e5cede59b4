// The redundant internal coordinates of a state on its bond graph.
#pragma once

#include <string>

#include "input/keys.hpp"       // for input_data
#include "molecule/record.hpp"  // for atom_data, internal_coordinates
#include "text/messages.hpp"    // for messages

namespace vbn {

// Kinds of a coordinate, the values of `iztype`. The centre of a bend is its second atom.
inline constexpr int kind_stretch = 1;
inline constexpr int kind_linear_bend = 2;
inline constexpr int kind_bend = 3;
inline constexpr int kind_dihedral = 4;
inline constexpr int kind_improper = 5;
inline constexpr int kind_linear_torsion = 6;

// The bond graph and the redundant coordinates of a state, from its geometry and elements; `ffreq` names it
// in messages. Atoms without a neighbour, more than `max_redundant` coordinates or more than ten collinear
// chains stop the run; so do two atoms at the same place. Stretches, bends and dihedrals on the bond graph
// after Pulay, Fogarasi, Pang, Boggs, J. Am. Chem. Soc. 101 (1979) 2550.
internal_coordinates get_int_coord(const atom_data& atoms, const std::string& ffreq, const input_data& input,
                                   const messages& say);

// Looks a coordinate up in the lists of the input, the atoms compared in order and the kind of an entry
// ignored: 1 if it is in the list of added coordinates, otherwise -1 if it is in the list of deleted ones,
// otherwise 0. For int_type 'b' the first two atoms are compared, for 'a' three, for 'd' four; another
// int_type stops the run. A list whose `if_` key is false has no effect.
int def_int(const input_data& input, char int_type, int i, int j, int k, int l);

}  // namespace vbn
