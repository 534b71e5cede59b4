// Files for molecule viewers: the two geometries superimposed, the displacement, and the modes.
#pragma once

#include <span>
#include <string_view>

#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for states
#include "text/fixed_text.hpp"  // for text
#include "text/messages.hpp"    // for messages

namespace vbn {

// Writes the five files ".dx.x.com", ".dx.x.xyz", ".dx.v.xyz", ".vib1.xyz" and ".vib2.xyz" of the stem
// `prefix`. A state whose bonds were never searched (an empty `bond`) has no bonds in ".dx.x.com". A file
// that cannot be written ends the run.
void write_file_coord(const array1<states>& state, std::string_view prefix, const messages& say);

// Gaussian input with both geometries, the second under partner symbols, and their bonds. `xg`, `xe`
// (3,natom) in bohr, written in angstrom; `bondg`, `bonde` (natom,natom), or empty for no bonds. The format
// lists at most ten partners of higher number for an atom; further ones are left out with a warning.
void write_gjf_dx(std::string_view fgauss, const array2<double>& xg, const array2<double>& xe,
                  const array2<bool_>& bondg, const array2<bool_>& bonde, const array1<text<2>>& symbol,
                  const messages& say);

// Both geometries (3,n), as given in bohr, the second under the symbols of partner elements.
void write_xyz_dx(std::string_view fxyz_x, const array2<double>& x1, const array2<double>& x2,
                  const array1<int>& nat);

// The geometry `x` (3,n) in angstrom with the displacement `d21` (3n) of each atom, scaled to 1 for the
// largest component. Equal geometries have no scale: their vector columns are NaN.
void write_xyz_dv(std::string_view fxyz_v, const array2<double>& x, std::span<const double> d21,
                  const array1<int>& nat);

// One frame for each mode: the geometry `x` (3,n) in bohr, written in angstrom, and the mode vectors `v`
// (3n,3n), a mode a column, scaled so that the largest component of the whole file is 2. `freq` (3n) in
// atomic units.
void write_xyz_vib(std::string_view fxyz, const array1<text<2>>& symbol, const array2<double>& x,
                   const array2<double>& v, const array1<double>& freq);

// Element symbols by atomic number, two characters: those of 1 to 100, and "X " for any other number.
void get_element_name(const array1<int>& nat, array1<text<2>>& symbol);

// The element for an atom of the second geometry: a neighbour in the same group, so that a viewer gives it
// another colour.
void change_nat(const array1<int>& nat, array1<int>& nat1);

}  // namespace vbn
