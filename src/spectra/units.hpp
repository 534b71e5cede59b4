// Units of spectra and rates, and the constants of their formulae.
#pragma once

#include "molecule/constants.hpp"  // for the units of energy

namespace vbn {

inline constexpr double au_to_fs = 0.024188843265857;       // atomic unit of time to fs
inline constexpr double au_to_rate = 4.1341373335182e16;    // 1 / atomic unit of time to 1/s
inline constexpr double kelvin_to_au = 3.1668115634556e-6;  // K to hartree
inline constexpr double light_speed = 137.035999084;        // atomic units
inline constexpr double cm_to_nm = 1.0e7;                   // 1/(wavenumber in cm-1) to nm

// The molar absorption coefficient (dm3 mol-1 cm-1, decadic) is this x wavenumber (cm-1) x squared dipole (e2
// bohr2) x line shape (cm): 4 pi^2 w mu^2 F/(3 c) as a cross section.
inline constexpr double absorption_factor = 703.3011;

}  // namespace vbn
