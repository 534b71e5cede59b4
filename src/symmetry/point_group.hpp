// The point group of a molecule in its inertial frame, its symmetry-adapted coordinates and unique atoms.
#pragma once

#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for atom_data, symmetry_data
#include "symmetry/tables.hpp"  // for n_symm_op
#include "text/messages.hpp"    // for messages

namespace vbn {

// The results of the search for a molecule of n atoms.
struct symmetry_search {
  array1<bool_> op{n_symm_op};  // whether the molecule has the operation
  int nop = 0;                  // number of true flags
  int npg = 1;                  // the group that they form
  array2<int> jreln;   // (n,8) the atom onto which an operation sends an atom, 0 for a rejected operation
  array2<int> jreln3;  // (n3,8) the same for coordinates, with the sign of the coordinate
};

// The whole search on the geometry, elements and masses, with `symm_tol` in bohr: sets all of `symmetry`
// except `ir_idx`. Stops the run when two atoms are closer than 0.1 bohr, and when the geometry built from
// the unique atoms differs by more than `symm_tol`.
symmetry_search point_group1(const atom_data& atoms, double symm_tol, symmetry_data& symmetry,
                             const messages& say);

// Whether all atoms of x(3,n) are at least 0.1 bohr apart.
bool check_x(const array2<double>& x);

// Tests the eight operations on x(3,n): the molecule has an operation when the image of each atom is within
// tol of an atom of the same mass and element. Of several such atoms the first is used; if the maps then do
// not multiply as the operations do, only E is kept, with a warning.
symmetry_search search_op1(const array2<double>& x, const array1<int>& nat, const array1<double>& mass,
                           double tol, const messages& say);

// The group of the flags, 1 (C1) when they form none.
int search_pg(const array1<bool_>& op);

// Symmetry-adapted coordinates, the projections of the Cartesian ones on each irreducible representation, as
// the rows of c(n3,n3), representation after representation. ir_lw and ir_hi (8): first and last row of each,
// both 0 for a representation without coordinates.
void search_op3(const symmetry_search& found, array1<int>& ir_lw, array1<int>& ir_hi, array2<double>& c);

// The representative of an atom or of a pair of atoms: the lowest-numbered one that an operation maps onto
// it.
struct representative {
  int atom;        // of a pair, the first
  int other_atom;  // of a pair, the second; else 0
  int ip;          // the lowest-numbered operation that does so
};

// The representative of atom iat, the lowest-numbered atom of its orbit.
representative in_coord_basis(const symmetry_search& found, int iat);

// The representative of the ordered pair (iat,jat): the pair of its orbit with the lowest first, then the
// lowest second atom.
representative in_coord_basis2(const symmetry_search& found, int iat, int jat);

// The representative of an element of the force constants: the element of coordinate kx of atom ka and lx of
// atom la, and the relative sign.
struct pair_element {
  int ka, kx, la, lx, sg;
};

// The representative of the element of coordinate a of atom i and b of atom j. A table of all would have 45
// n^2 integers.
pair_element id9(const symmetry_search& found, int b, int j, int a, int i);

}  // namespace vbn
