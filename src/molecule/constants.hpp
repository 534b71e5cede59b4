// The physical constants and the limits of the whole program.
#pragma once

namespace vbn {

inline constexpr double au_to_cm = 219474.6307;          // hartree to cm-1
inline constexpr double bohr_to_ang = 0.529177249;       // bohr to angstrom
inline constexpr double au_to_ev = 27.21139617;          // hartree to eV
inline constexpr double amu_to_au = 1822.88853;          // atomic mass unit to electron masses
inline constexpr double pi_value = 3.141592653589793;    // pi
inline constexpr double rad_to_deg = 57.29577951308232;  // degrees per radian

// The lowest six modes count as translations and rotations by position, also of a linear molecule and
// whatever the key start_mode says.
inline constexpr int external_modes = 6;
inline constexpr int first_vibration = external_modes + 1;

inline constexpr int max_list = 1500;       // entries of the list keys, and atoms that `mass_atom` reaches
inline constexpr int max_redundant = 6000;  // redundant internal coordinates of a state
inline constexpr int max_element = 118;     // highest atomic number
inline constexpr int max_rep = 8;           // irreducible representations of a point group

}  // namespace vbn
