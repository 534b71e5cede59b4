// The readers of each program's files, as `qm_file.cpp` lists them by kind.
#pragma once

#include <string_view>

#include "linalg/array.hpp"     // for array1, array2
#include "text/input_file.hpp"  // for input_file

namespace vbn {

// Each takes a file that stands at its start.
//   natom  number of atoms; false when the file does not tell it
//   nat    atomic numbers of as many atoms as the array has
//   mass   their masses, amu
//   coord  their coordinates x(3,natom), bohr
//   fc     their force constants, hartree/bohr^2, into a matrix that it makes, (3 natom, 3 natom)
// The last four end the run when the file does not hold what they read.

// ChemShell (chemshell.cpp)
bool chemshell_natom(input_file& file, int& natom);
void chemshell_nat(input_file& file, array1<int>& nat);
void chemshell_mass(input_file& file, array1<double>& mass);
void chemshell_coord(input_file& file, array2<double>& x);
void chemshell_fc(input_file& file, int natom, array2<double>& fc);

// Gaussian: the log, and the formatted checkpoint (gaussian.cpp)
bool gaussian_log_natom(input_file& file, int& natom);
void gaussian_log_nat(input_file& file, array1<int>& nat);
void gaussian_log_mass(input_file& file, array1<double>& mass);
void gaussian_log_coord(input_file& file, array2<double>& x);
bool gaussian_fchk_natom(input_file& file, int& natom);
// The coordinates of the checkpoint; false when it has none of as many atoms.
bool gaussian_fchk_coord(input_file& file, array2<double>& x);
void gaussian_fchk_mass(input_file& file, array1<double>& mass);
void gaussian_fchk_fc(input_file& file, int natom, array2<double>& fc);

// Molpro (molpro.cpp)
bool molpro_natom(input_file& file, int& natom);
void molpro_nat(input_file& file, array1<int>& nat);
void molpro_mass(input_file& file, array1<double>& mass);
void molpro_coord(input_file& file, array2<double>& x);
void molpro_fc(input_file& file, int natom, array2<double>& fc);

// Numerical frequencies (numforce.cpp)
bool numforce_natom(input_file& file, int& natom);
void numforce_nat(input_file& file, array1<int>& nat);
void numforce_mass(input_file& file, array1<double>& mass);
void numforce_coord(input_file& file, array2<double>& x);
void numforce_fc(input_file& file, int natom, array2<double>& fc);

// NWChem (nwchem.cpp)
bool nwchem_natom(input_file& file, int& natom);
void nwchem_nat(input_file& file, array1<int>& nat);
void nwchem_mass(input_file& file, array1<double>& mass);
void nwchem_coord(input_file& file, array2<double>& x);
void nwchem_fc(input_file& file, int natom, array2<double>& fc);

// Turbomole (turbomole.cpp)
bool turbomole_natom(input_file& file, int& natom);
void turbomole_nat(input_file& file, array1<int>& nat);
void turbomole_mass(input_file& file, array1<double>& mass);
void turbomole_coord(input_file& file, array2<double>& x);
void turbomole_fc(input_file& file, int natom, array2<double>& fc);

// The atomic numbers of the box "Atomic coordinate, charge and isotop information", which ChemShell prints
// too.
void isotope_table_nat(input_file& file, array1<int>& nat);

// Masses in the third word of the rows behind the heading `heading`, where it was found (`listed`); otherwise
// those of the elements of the table of isotopes.
void weights_or_isotope_table_mass(input_file& file, bool listed, std::string_view heading,
                                   array1<double>& mass);

// Programs for crystals, which give no force constants (crystals.cpp)
bool cif_natom(input_file& file, int& natom);
bool pwout_natom(input_file& file, int& natom);
bool vasp_natom(input_file& file, int& natom);
void vasp_coord(input_file& file, array2<double>& x);

}  // namespace vbn
