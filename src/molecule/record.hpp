// The record of one electronic state, in named parts.
#pragma once

#include "linalg/array.hpp"              // for array1, array2, array3
#include "molecule/constants.hpp"        // for max_rep
#include "molecule/printed_results.hpp"  // for printed_results
#include "molecule/force_constants.hpp"  // for force_constants
#include "text/fixed_text.hpp"           // for text

namespace vbn {

// Lengths in bohr, energies and frequencies in atomic units. n3 is 3 natom; index 3(i-1)+a is coordinate a of
// atom i.

// The frequency file and what it is.
struct file_data {
  text<200> ffreq;  // frequency file
  text<200> fhess;  // file of the force constants: `ffreq` or its ".fchk" sibling
  text<100> ffreq_type;
  text<100> ffreq_version;
  bool ifoniom = false;
  int nqmmm = 0;            // atoms in an ONIOM file, of which those of the high layer are analysed
  array1<int> iqm;          // (natom) place in the file of each analysed atom; with ONIOM only
  array1<int> iqm3;         // (n3) the same for Cartesian indices
  printed_results printed;  // what the program printed of its own results
};

// Atoms, masses and the geometry in the current frame.
struct atom_data {
  int natom = 0;
  int n3 = 0;
  array1<int> nat;           // (natom) atomic numbers
  array1<text<2>> symbol;    // (natom)
  array1<text<10>> sym_num;  // (natom) symbol and running number, as " C(3)"
  array1<double> mass;       // (natom) amu
  array1<double> massau;     // (natom) electron masses
  array1<double> sqtmass;    // (n3) root of `massau`, three equal entries an atom
  array2<double> x;          // (3,natom)
};

// The normal modes, and their relation to those of the other state.
struct normal_modes {
  array2<double> cm;      // (n3,n3) eigenvectors of the mass-weighted force constants, a mode a column
  array1<double> freq;    // (n3) negative for a negative eigenvalue
  array1<double> freq0;   // (n3) before translations and rotations are projected out
  array1<double> freq1;   // (n3) after that, before the modes are classified; with `point_group` only
  array1<text<6>> irrep;  // (n3) representation of each mode, "A" until they are classified
  array1<double> zptlen;  // (n3) zero-point length, root of electron mass x angstrom
  array2<double> s;       // (n3,n3) Duschinsky matrix, rows the modes of this state
  array1<int> order;      // (n3) the modes in the order of the pairs with the other state
  double freqt = 0.0;     // sum of the absolute frequencies of the vibrations
};

// The results of one route, Cartesian or through internal coordinates, for each mode (n3).
struct mode_results {
  array1<double> d;    // displacement, root of electron mass x bohr
  array1<double> d0;   // the same without dimension, delta
  array1<double> hr;   // Huang-Rhys factor
  array1<double> lam;  // reorganisation energy
  double lamt = 0.0;   // total of `lam`
};

// The point group, and the symmetry-adapted coordinates of each of its representations.
struct symmetry_data {
  int nrep = 1;                      // irreducible representations
  text<6> new_pgrp;                  // the point group found
  array1<text<3>> ir_name{max_rep};  // their names
  array1<int> nr_lw{max_rep};        // first row of `trans_symm` of each, 0 for an empty one
  array1<int> nr_hi{max_rep};        // last row
  array2<int> ir_idx;                // (n3,8) place in the mode order of each representation's modes
  array2<double> trans_symm;         // (n3,n3) row k is the k-th symmetry-adapted coordinate
  array1<bool_> mirror{3};           // the plane normal to the axis is a symmetry plane
  array3<int> id3;                   // (3,3,natom) representative of each coordinate: atom, coordinate, sign
};

// The coupling file and its couplings, (3,natom).
struct coupling_data {
  text<200> fnacm;
  text<100> fnacm_type;
  text<100> fnacm_version;
  bool ifnac = false;       // the geometry of the file is that of this state
  double e_vert = 0.0;      // vertical energy
  array2<double> x_nac;     // geometry
  array2<double> nacme_x0;  // couplings as read
  array2<double> nacme_x;   // couplings in the current frame
  array2<double> tranele;   // transition field at the nuclei as read
};

// The file of the transition dipole and its derivatives.
struct dipole_data {
  text<200> ftdipd;
  bool ifdip = false;      // the geometry of the file is that of this state
  array1<double> dip0;     // (3) transition dipole at the reference geometry
  array2<double> x_dip;    // (3,natom) geometry
  array3<double> tdipd_x;  // (3,3,natom): dipole component, coordinate, atom
  array2<double>
      dip_turn;  // (3,3) rotation of the derivatives from the frame of their file; empty if there was none
};

// The redundant internal coordinates. Lengths in angstrom and angles in radians.
struct internal_coordinates {
  int nr = 0;             // coordinates in use
  int nb = 0;             // bonds
  int na = 0;             // bends
  int nt = 0;             // dihedrals
  int nit = 0;            // impropers
  int nlt = 0;            // torsions about a linear bend
  int nlin = 0;           // collinear chains
  array2<bool_> bond;     // (natom,natom) bond graph; empty when it was never searched
  array1<double> z;       // (nr) values
  array1<double> zd;      // (nr) differences to the other state
  array1<double> scales;  // (nr) factor to the reported unit
  array1<int> iztype;     // (nr) kind
  array2<int> intdef;     // (4,nr) atoms that define each coordinate
  array2<double> br;      // (n3,nr) rows of the Wilson B matrix, a coordinate a column
};

// The non-redundant basis of the internal coordinates, nv = n3 - 6 combinations of them, and the modes in
// this basis.
struct non_redundant_basis {
  int nv = 0;
  array2<double> bm;    // (n3,n3) rows: its combinations over mass-weighted Cartesian coordinates
  array2<double> ga;    // (n3,nr) rows: the same over the redundant coordinates
  array2<double> cmr2;  // (nv,n3) modes, a mode a column
};

struct states {
  file_data file;
  atom_data atoms;
  force_constants force;
  normal_modes modes;
  symmetry_data symmetry;
  coupling_data couplings;
  dipole_data dipole;
  internal_coordinates internal;
  non_redundant_basis basis;
  mode_results cart;  // of the Cartesian route
  mode_results dint;  // of the route through internal coordinates
};

}  // namespace vbn
