// What symmetry, and its use, does to the results: near symmetry, dropped elements, degenerate pairs, rows.
#pragma once

#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for states
#include "text/messages.hpp"    // for messages

namespace vbn {

// Each of these gives at most one warning for a state, and changes no result.

// On the geometry on which the point group was searched: the operation that is nearest to being one, with the
// tolerance (bohr) that would take it in.
void warn_of_near_symmetry(const states& state, int k, double symm_tol, const messages& say);

// `enforce_symm` has made `after` of `before`, geometry (3,natom) and raw frequencies (n3).
void warn_of_enforcement(const states& state, int k, const array2<double>& before_x,
                         const array1<double>& before_freq, const array2<double>& after_x,
                         const array1<double>& after_freq, const messages& say);

// The classification has made the mass-weighted force constants (n3,n3) of `it` from `whole`: warns when the
// energy of `it` at the geometry of the other state has changed. Both geometries in one frame.
void warn_of_dropped_elements(const array1<states>& state, int k, const array2<double>& whole,
                              const messages& say);

// After the displacements: equal moments of inertia, with the sums over degenerate pairs.
void warn_of_equal_moments(const states& state, int k, bool point_group, const messages& say);

// After the pairing within representations: modes that are in no row of the tables.
void warn_of_missing_rows(const states& state, int k, const messages& say);

}  // namespace vbn
