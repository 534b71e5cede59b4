// Physical doubts about a run: what makes its numbers mean less than they seem to.
#pragma once

#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states

namespace vbn {

// Each of these writes one line for each doubt, and changes no file and no exit status.

// After the files have been read: a Hessian that turning the molecule as a whole would change, which stands
// in another frame than the geometry beside it; atoms that are of different elements in the two states.
void warn_of_files(const array1<states>& state);

// After the frequencies: a linear molecule, imaginary frequencies, more than six frequencies near zero.
void warn_of_modes(const array1<states>& state);

// After the Duschinsky matrix: geometries far from each other, or modes that do not resemble each other.
void warn_of_distance(const array1<states>& state);

// After the internal route: total reorganisation energies of the two routes that differ by much.
void warn_of_routes(const array1<states>& state);

}  // namespace vbn
