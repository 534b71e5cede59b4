// The redundant internal coordinates of a state on its bond graph.
#pragma once

#include "input/keys.hpp"       // for input_data
#include "molecule/record.hpp"  // for states

namespace vbn {

// Kinds of a coordinate, as `iztype` holds them. A bend's centre is its second atom.
inline constexpr int kind_stretch = 1;
inline constexpr int kind_linear_bend = 2;
inline constexpr int kind_bend = 3;
inline constexpr int kind_dihedral = 4;
inline constexpr int kind_improper = 5;
inline constexpr int kind_linear_torsion = 6;

// Builds the bond graph and the redundant coordinates of the state from its `x` (bohr) and `nat`: `bond`,
// `bond_num`, `z`, `scales`, `iztype`, `intdef`, `br` (angstrom and radians), the counts of the kinds, the
// collinear chains `linbon`, and `nv` = n3 - 6. `zd` gets its extent. Atoms with no neighbour, more than
// `max_redundant` coordinates or more than ten collinear chains stop the run; so do two atoms at one place.
// Stretches, bends and dihedrals on the bond graph after Pulay, Fogarasi, Pang, Boggs, J. Am. Chem. Soc. 101
// (1979) 2550.
void get_int_coord(states& state, const input_data& input);

// What the input's lists say of a coordinate, the atoms compared in order and without regard to the kind of
// an entry: 1 when the list of added coordinates names it, otherwise -1 when the list of deleted ones does,
// otherwise 0. Of int_type 'b' the first two atoms count, of 'a' three, of 'd' four; another int_type stops
// the run. A list whose `if_` key is false has no effect.
int def_int(const input_data& input, char int_type, int i, int j, int k, int l);

}  // namespace vbn
