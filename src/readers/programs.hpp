// The readers of each program's files, and the table of the kinds of files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "linalg/array.hpp"        // for array1, array2
#include "readers/file_state.hpp"  // for file_state
#include "readers/file_type.hpp"   // for file_kind, qm_file

namespace vbn {

struct file_couplings;
struct file_dipole;

// The readers of a kind of file; nullptr for a quantity that such files do not hold. Each reader starts at
// the beginning of the file and, except `natom`, ends the run when the file does not hold the quantity. A
// kind has either one reader of the whole state, or one for each quantity.
struct kind_readers {
  file_kind kind = file_kind::unknown;
  std::string_view name = {};                              // as printed
  std::string_view job = {};                               // what to ask of the program
  file_state (*state)(input_file&) = nullptr;              // the whole state
  std::optional<int> (*natom)(input_file&) = nullptr;      // number of atoms
  void (*nat)(input_file&, array1<int>&) = nullptr;        // atomic numbers of as many atoms as the array has
  void (*mass)(input_file&, array1<double>&) = nullptr;    // their masses, amu
  void (*coord)(input_file&, array2<double>&) = nullptr;   // their coordinates (3,natom), bohr
  array2<double> (*fc)(input_file&, int natom) = nullptr;  // force constants (n3,n3), hartree/bohr^2
  printed_results (*printed)(input_file&) = nullptr;       // what the program printed of its own results
  void (*nacme)(qm_file&, file_couplings&) = nullptr;      // couplings, in arrays that have their sizes
  void (*tdipd)(input_file&, file_dipole&) = nullptr;  // dipole derivatives, in arrays that have their sizes
};

// The row of a kind in the table of all kinds.
const kind_readers& readers_of(file_kind kind);

// The names of the kinds that hold force constants, each with the job to run, separated by commas.
std::string names_of_kinds();

// ChemShell (chemshell.cpp)
std::optional<int> chemshell_natom(input_file& file);
void chemshell_nat(input_file& file, array1<int>& nat);
void chemshell_mass(input_file& file, array1<double>& mass);
void chemshell_coord(input_file& file, array2<double>& x);
array2<double> chemshell_fc(input_file& file, int natom);

// Gaussian: the log, and the formatted checkpoint (gaussian.cpp)
std::optional<int> gaussian_log_natom(input_file& file);
void gaussian_log_nat(input_file& file, array1<int>& nat);
void gaussian_log_mass(input_file& file, array1<double>& mass);
void gaussian_log_coord(input_file& file, array2<double>& x);
// The last coordinates before the byte at `end`; false when there are none.
bool gaussian_log_coord_before(input_file& file, std::size_t end, array2<double>& x);
void gaussian_log_nacme(qm_file& from, file_couplings& read);
printed_results gaussian_log_printed(input_file& file);
// The state in the archive entry of a log; none when no entry has force constants.
std::optional<file_state> gaussian_archive_state(input_file& file);
std::optional<int> gaussian_fchk_natom(input_file& file);
void gaussian_fchk_nat(input_file& file, array1<int>& nat);
void gaussian_fchk_mass(input_file& file, array1<double>& mass);
void gaussian_fchk_state_coord(input_file& file, array2<double>& x);
printed_results gaussian_fchk_printed(input_file& file);
// The coordinates of the checkpoint; false when it has none, or of another number of atoms.
bool gaussian_fchk_coord(input_file& file, array2<double>& x);
// Atomic numbers and masses of the checkpoint, each empty where it has none of `natom` atoms.
struct gaussian_fchk_atoms {
  array1<int> nat;
  array1<double> mass;
};
gaussian_fchk_atoms gaussian_fchk_atoms_of(input_file& file, int natom);
array2<double> gaussian_fchk_fc(input_file& file, int natom);

// Molpro (molpro.cpp)
std::optional<int> molpro_natom(input_file& file);
void molpro_nat(input_file& file, array1<int>& nat);
void molpro_mass(input_file& file, array1<double>& mass);
void molpro_coord(input_file& file, array2<double>& x);
// The coordinates of "ATOMIC COORDINATES", bohr, at the start of the job; false when there are none.
bool molpro_start_coord(input_file& file, array2<double>& x);
array2<double> molpro_fc(input_file& file, int natom);
printed_results molpro_printed(input_file& file);
void molpro_nacme(qm_file& from, file_couplings& read);

// Numerical frequencies (numforce.cpp)
std::optional<int> numforce_natom(input_file& file);
void numforce_nat(input_file& file, array1<int>& nat);
void numforce_mass(input_file& file, array1<double>& mass);
void numforce_coord(input_file& file, array2<double>& x);
array2<double> numforce_fc(input_file& file, int natom);
void numforce_tdipd(input_file& file, file_dipole& read);

// NWChem (nwchem.cpp)
std::optional<int> nwchem_natom(input_file& file);
void nwchem_nat(input_file& file, array1<int>& nat);
void nwchem_mass(input_file& file, array1<double>& mass);
void nwchem_coord(input_file& file, array2<double>& x);
array2<double> nwchem_fc(input_file& file, int natom);
printed_results nwchem_printed(input_file& file);
void nwchem_nacme(qm_file& from, file_couplings& read);

// Turbomole (turbomole.cpp)
std::optional<int> turbomole_natom(input_file& file);
void turbomole_mass(input_file& file, array1<double>& mass);
void turbomole_coord(input_file& file, array2<double>& x);
array2<double> turbomole_fc(input_file& file, int natom);
printed_results turbomole_printed(input_file& file);
void turbomole_nacme(qm_file& from, file_couplings& read);

// Programs for crystals, without force constants (crystals.cpp)
std::optional<int> cif_natom(input_file& file);
std::optional<int> pwout_natom(input_file& file);
std::optional<int> vasp_natom(input_file& file);
void vasp_coord(input_file& file, array2<double>& x);

// Programs whose files are read as a whole.
file_state orca_hess_state(input_file& file);      // the Hessian file (orca.cpp)
file_state orca_output_state(input_file& file);    // from the Hessian file beside the output
file_state qchem_state(input_file& file);          // Q-Chem (qchem.cpp)
file_state psi4_output_state(input_file& file);    // Psi4 (psi4.cpp)
file_state psi4_hess_state(input_file& file);      // the Hessian file, with the output beside it
file_state unsym_state(input_file& file);          // OpenMolcas (openmolcas.cpp)
file_state qcschema_state(input_file& file);       // JSON (json.cpp)
file_state ase_state(input_file& file);            // the VibrationsData of ASE
file_state orca_property_state(input_file& file);  // the results of ORCA in JSON
file_state hessian_block_state(
    input_file& file);  // xtb and Turbomole, with the geometry beside it (hessian_block.cpp)
file_state gamess_output_state(input_file& file);  // GAMESS-US and Firefly (gamess.cpp)
file_state gamess_punch_state(input_file& file);   // the punch file, with the output beside it
file_state cp2k_state(input_file& file);           // CP2K (cp2k.cpp)
file_state mopac_aux_state(input_file& file);      // MOPAC (mopac.cpp)
file_state bagel_state(input_file& file);          // BAGEL (bagel.cpp)
file_state cfour_state(input_file& file);          // CFOUR (cfour.cpp)
file_state dalton_state(input_file& file);         // DALTON (cfour.cpp)
file_state jaguar_state(input_file& file);         // the restart file of Jaguar (jaguar.cpp)
file_state molden_state(input_file& file);         // normal modes alone (molden.cpp)

}  // namespace vbn
