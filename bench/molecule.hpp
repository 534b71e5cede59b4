// Force-field-like molecules of any size, for timing: chains of carbon and hydrogen in a network of springs.
#pragma once

#include "linalg/array.hpp"  // for array1, array2

namespace vbn::bench {

// A geometry at rest and its force constants. Lengths in bohr, masses in amu, force constants in
// hartree/bohr^2, index 3(i-1)+a for coordinate a of atom i.
struct molecule {
  array1<int> nat;
  array1<double> mass;
  array2<double> x;   // (3,natom)
  array2<double> fc;  // (n3,n3)
};

// An alkane chain cut off at `natom` atoms, crumpled so that it has no symmetry. Springs join the atoms that
// are up to three bonds apart. `state` 2 has slightly different bond lengths and softer springs than state 1.
molecule chain(int natom, int state);

// The force constants of `m` divided by the square roots of the masses in electron masses.
array2<double> mass_weighted(const molecule& m);

}  // namespace vbn::bench
