// The Hessian of a state: from the frequency file to the record, mass-weighting, isotopes and frequencies.
#pragma once

#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for states

namespace vbn {

// Fills the record of a state from its files: `nat`, `mass`, `x` from `ffreq` and `fc` from `fhess`, with
// `symbol`, `sym_num`, `massau`, `sqtmass`, the copies as read `mass0`, `x0`, `fc0`, and `fcm`, `fcm0`,
// `cm0`, `freq0`. Of an ONIOM run the whole system is read and the atoms `iqm` are kept. Bohr, amu,
// hartree/bohr^2; frequencies in atomic units, negative for a negative eigenvalue.
// Stops the run: what the readers stop for; a mass that is not positive; a number that is not finite.
void get_hess(states& state);

// Replaces masses: atom i takes mass_atom(i), then every atom of element k takes mass_type(k), so that an
// element's mass goes over an atom's (amu; an entry that is not positive changes nothing). `massau` and
// `sqtmass` follow, and where a mass did change `fcm` is weighted anew from `fc`.
// Shapes: both keys (n), n at least 118. Stops the run: more atoms than `mass_atom` has entries.
void get_isotope(states& state, int n, const array1<double>& mass_atom, const array1<double>& mass_type);

// Direction 1: fcm = fc / sqtmass / sqtmass; direction -1: fc = sqtmass fcm sqtmass. The triangle with the
// first index at most the second is read, and the other one is set to it.
// Shapes: sqtmass (n3), root of the electron masses; fc, fcm (n3,n3).
// info: 0, -1 when n3 is not positive, -2 for another direction; nothing is done then.
void fc_to_fcm(int n3, const array1<double>& sqtmass, array2<double>& fc, array2<double>& fcm, int direction,
               int& info);

// `freq` and `cm` from the current `fcm`: roots of the eigenvalues with their sign, in atomic units, rising,
// and the eigenvectors, a mode a column.
void get_freq(states& state);

// Turns eigenvalues of a mass-weighted Hessian into frequencies: the root of the magnitude with the sign of
// the eigenvalue, so that an imaginary frequency is a negative number.
void eigenvalues_to_frequencies(array1<double>& freq);

}  // namespace vbn
