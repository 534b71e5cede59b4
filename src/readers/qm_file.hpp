// Reads atoms, masses, coordinates, force constants, couplings and dipole derivatives of a file of any kind.
#pragma once

#include <optional>
#include <string>

#include "linalg/array.hpp"              // for array1, array2, array3
#include "molecule/printed_results.hpp"  // for printed_results
#include "readers/file_type.hpp"         // for qm_file

namespace vbn {

// The name of a kind as printed, "GAUSSIAN LOG"; empty for an unknown one.
std::string name_of(file_kind kind);

// Number of atoms of the file; none for a kind or a file that does not state it.
std::optional<int> qm_file_natom(qm_file& file);

// Each of the readers below ends the run with a message for `natom` below 1 or too large for the size of the
// file, a kind without the quantity, a missing marker, a line that cannot be read, a file that ends too
// early.

// Atomic numbers (natom). A number outside 1 to 118 is returned; `nat_to_symbol` stops the run.
array1<int> qm_file_nat(qm_file& file, int natom);

// Masses (natom) in amu. An element without a mass in the table has 0.0, and masses of the file are not
// checked: the caller tests that they are above zero.
array1<double> qm_file_mass(qm_file& file, int natom);

// Coordinates (3,natom) in bohr.
array2<double> qm_file_coord(qm_file& file, int natom);

// Force constants (n3,n3), n3 = 3 x natom, in hartree/bohr^2, full and symmetric (of a NUMFORCE file as in
// the file).
array2<double> qm_file_fc(qm_file& file, int natom);

// What the program printed of its own results; all empty for a kind that prints none.
printed_results qm_file_printed(qm_file& file);

// Non-adiabatic couplings of the atoms of a file, in atomic units. A file has one of the two arrays; the
// relation nacme = tranele x z / e_vert gives the other.
struct file_couplings {
  array1<double> z;        // (natom) nuclear charges
  double e_vert = 0.0;     // vertical energy, hartree
  array2<double> nacme;    // (3,natom) coupling vector of each atom
  array2<double> tranele;  // (3,natom) transition field at each nucleus

  int natom() const { return z.size(); }
};

// Also ends the run for a zero energy or nuclear charge, and for couplings that are not finite.
file_couplings qm_file_nacme(qm_file& file, int natom);

// Transition dipole and its derivatives, in atomic units.
struct file_dipole {
  array1<double> dip0;     // (3) at the reference geometry
  array3<double> tdipd_x;  // (3,3,natom): dipole component, coordinate, atom
};

file_dipole qm_file_tdipd(qm_file& file, int natom);

}  // namespace vbn
