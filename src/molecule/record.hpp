// The record of one electronic state, the input keys, and the data of the whole run.
#pragma once

#include "linalg/array.hpp"        // for array1, array2, array3
#include "molecule/constants.hpp"  // for the extents of the key arrays
#include "text/fixed_text.hpp"     // for text

namespace vbn {

// All numerical data of one electronic state. Lengths in bohr, energies and frequencies in atomic units,
// `mass` in amu and `massau` in electron masses. n3 is 3 x natom; index 3(i-1)+a is coordinate a of atom i. A
// final 0 marks data as read, a final 1 the copy kept after the projection, `_c` the route through internal
// coordinates.
struct states {
  // Sizes, names and file data.
  int n3 = 0;
  int natom = 0;        // atoms in the analysis; of an ONIOM run those of the high layer
  int nqmmm = 0;        // of an ONIOM run all atoms in the file
  int start_mode = 7;   // first mode counted in the coupling report
  double e_vert = 0.0;  // vertical energy from the coupling file, hartree
  double lamt = 0.0;    // total reorganisation energy, hartree
  double lamt_c = 0.0;
  double freqt = 0.0;  // sum of the absolute frequencies of modes 7 to n3
  text<200> ffreq;     // frequency file
  text<200> fhess;     // file of the force constants: `ffreq` or its ".fchk" sibling
  text<200> fnacm;     // coupling file
  text<200> ftdipd;    // file of the transition dipole derivatives
  text<100> ffreq_type;
  text<100> fnacm_type;
  text<100> ftdipd_type;
  text<100> ffreq_version;
  text<100> fnacm_version;
  text<100> ftdipd_version;
  bool ifoniom = false;
  bool ifoniom_nacme = false;
  bool ifnac = false;   // the geometry of the coupling file is the one of this state
  bool ifdip = false;   // the same for the dipole derivatives
  array1<double> dip0;  // (3) transition dipole at the reference geometry

  // Atoms and geometry.
  array1<int> nat;           // (natom) atomic numbers
  array1<text<2>> symbol;    // (natom)
  array1<text<10>> sym_num;  // (natom) symbol and running number, as " C(3)"
  array1<int> iqm;           // (natom) place in the file of each analysed atom; with ONIOM only
  array1<int> iqm3;          // (n3) the same for Cartesian indices
  array1<double> mass;       // (natom)
  array1<double> mass0;      // (natom) as read
  array1<double> massau;     // (natom)
  array1<double> sqtmass;    // (n3) root of `massau`, three equal entries an atom
  array2<double> x;          // (3,natom) in the current frame
  array2<double> x0;         // (3,natom) as read
  array2<double> x_nac;      // (3,natom) from the coupling file
  array2<double> x_dip;      // (3,natom) from the dipole derivative file

  // Force constants and modes, all (n3,n3) and (n3).
  array2<double> fc, fc0, fc1;        // Cartesian, hartree/bohr^2
  array2<double> fcm, fcm0, fcm1;     // mass-weighted
  array2<double> c;                   // Cartesian form of the modes
  array2<double> cm, cm0, cm1;        // eigenvectors of `fcm`, `fcm0`, `fcm1`, a mode a column
  array2<double> cmr2;                // (nv,n3) modes in the non-redundant internal coordinates
  array1<double> freq, freq0, freq1;  // negative for a negative eigenvalue
  array1<double> zptlen;              // (n3) zero-point length of each mode
  array2<int> order;                  // (n3,2) pairing of the modes in column 1

  // Correspondence of the two states.
  array2<double> s, s_o, s_c;       // Duschinsky matrices
  array1<double> d, d_c, d0, d0_c;  // displacements, and in dimensionless form
  array1<double> d_sign_cart;       // sign of `d`
  array1<double> hr, hr_c;          // Huang-Rhys factors
  array1<double> lam, lam_c;        // reorganisation energy of each mode

  // Couplings.
  array2<double> nacme_x, nacme_x0, nacme_x1, nacme_xq, nacme_xq0, tranele, tranele0;  // (3,natom)
  array1<double> nacme_xq_n3, nacme_xq_n30, nacme_q, nacme_q0;                         // (n3)
  double nacme_x_norm = 0.0, nacme_x_norm0 = 0.0;
  double nacme_xq_norm = 0.0, nacme_xq_norm0 = 0.0;
  double nacme_q_norm = 0.0, nacme_q_norm0 = 0.0;
  array3<double> tdipd_x, tdipd_xq, tdipd_x0, tdipd_x1;  // (3,3,natom): dipole component, coordinate, atom
  array2<double> tdipd_q;                                // (3,n3)
  array2<double>
      dip_turn;  // (3,3) turn of the derivatives from the frame of their file; of no extent before any

  // Symmetry.
  double symm_tol = 0.01;
  int nrep = 1;    // irreducible representations
  array1<int> ns;  // (8) modes of each representation
  array1<int> nr_lw,
      nr_hi;           // (8) first and last row of `trans_symm` of each representation, 0 for an empty one
  array2<int> ir_idx;  // (n3,8) place in the mode order of each representation's modes
  array2<double> trans_symm;  // (n3,n3) row k is the k-th symmetry-adapted coordinate
  array1<bool_> mirror;       // (3) the plane normal to the axis is a symmetry plane
  array3<int> id3;            // (3,3,natom) representative of each coordinate: atom, coordinate, sign
  array1<text<3>> ir_name;    // (8)
  text<6> new_pgrp;           // the point group found
  array1<text<6>> irrep;      // (n3) representation of each mode, "A" until they are classified

  // Internal coordinates. Lengths in angstrom and angles in radians.
  int nr = 0;                                            // redundant coordinates in use
  int nv = 0;                                            // n3 - 6
  int nb = 0, nl = 0, na = 0, nt = 0, nit = 0, nlt = 0;  // bonds, linear bends, bends, dihedrals, impropers,
                                                         // torsions about a linear bend
  int nlin = 0;                                          // collinear chains
  bool impropt = false;                                  // impropers are in use
  array1<int> bond_num;                                  // (natom) neighbours of each atom
  array2<bool_> bond;     // (natom,natom) bond graph; of no extent when it was never searched
  array1<double> z;       // (nr) values
  array1<double> zd;      // (nr) differences between the states
  array1<double> scales;  // (nr) factor to the reported unit
  array1<int> iztype;     // (nr) kind
  array2<int> intdef;     // (4,nr) atoms that define each coordinate
  array2<int> linbon;     // (3,nlin)
  array2<double> br;      // (n3,nr) rows of the Wilson B matrix, a coordinate a column
  array2<double> bmbt;    // (nr,nr) redundant G matrix
  array2<double> bm;      // (n3,n3)
  array2<double> ga;      // (n3,nr)
  array2<double> ag;      // (nr,n3)
};

}  // namespace vbn
