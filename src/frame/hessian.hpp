// The Hessian of a state: from the frequency file to the record, isotopes and frequencies.
#pragma once

#include "input/keys.hpp"         // for input_data
#include "linalg/array.hpp"       // for array1, array2
#include "molecule/record.hpp"    // for file_data, atom_data, force_constants, normal_modes
#include "readers/file_type.hpp"  // for qm_file

namespace vbn {

// Reads atoms, masses and geometry from `freq_file`, the frequency file as `get_na` opened it, and the force
// constants from `fhess`, of an ONIOM run those of the atoms `iqm`; bohr, amu, hartree/bohr^2. A mass that
// the file does not have is taken from the keys. Stops the run where the readers do, for a mass that is not
// positive and for a number that is not finite.
void get_hess(qm_file freq_file, const input_data& input, const file_data& file, atom_data& atoms,
              force_constants& force);

// Replaces masses: atom i takes mass_atom(i), then every atom of element k takes mass_type(k), so that the
// mass of an element overrides that of an atom (amu; an entry that is not positive changes nothing). If a
// mass has changed, the force constants are weighted again. Shapes: both keys (n), n at least 118. Stops the
// run: more atoms than `mass_atom` has entries.
void get_isotope(const file_data& file, int n, const array1<double>& mass_atom,
                 const array1<double>& mass_type, atom_data& atoms, force_constants& force);

// `freq` and `cm` from the mass-weighted force constants, a mode a column by increasing frequency; every
// `irrep` becomes "A".
void get_freq(const force_constants& force, normal_modes& modes);

// Only the frequencies of mass-weighted force constants (n3,n3), in increasing order.
array1<double> frequencies_of(const array2<double>& fcm);

// Converts eigenvalues of a mass-weighted Hessian to frequencies: the root of the magnitude with the sign of
// the eigenvalue, so that an imaginary frequency is a negative number.
void eigenvalues_to_frequencies(array1<double>& freq);

}  // namespace vbn
