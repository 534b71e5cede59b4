// The dipole and the couplings of a spectrum, from what the analysis has read.
#pragma once

#include <string>

#include "input/spectrum_keys.hpp"  // for spectrum_keys
#include "linalg/array.hpp"         // for array1, array2
#include "molecule/record.hpp"      // for dipole_data, atom_data
#include "spectra/spectrum.hpp"     // for spectrum_operators, vibration_pair

namespace vbn {

// What files give along all modes of g; empty arrays where there is no file.
struct operator_source {
  int dipole_state = 0;        // 1 or 2: whose minimum the dipole belongs to
  array1<double> dipole;       // (3) e bohr
  array2<double> derivatives;  // (3,n3) e / root of electron mass
  array1<double> couplings;    // (n3) 1/(root of electron mass x bohr)
};

// The derivatives of the dipole of a file along the modes cm (n3,n3) of g. Both the components of the dipole
// and the displacements of the atoms are brought to the frame of the modes; in the record the components are
// there already.
array2<double> dipole_along_modes(const dipole_data& dipole, const atom_data& atoms,
                                  const array2<double>& cm);

// The operators of both directions along the vibrations `v`: the dipole of the keys, or else that of the
// source, and the couplings for internal conversion. Ends the run (messages name `file`) when these are
// missing.
spectrum_operators operators_of(const operator_source& source, const vibration_pair& v,
                                const spectrum_keys& keys, const std::string& file);

}  // namespace vbn
