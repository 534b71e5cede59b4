// Tests of orientation: symmetry axes, internal coordinates, copied force constants, superposition.
// constants.
#pragma once

#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for states, normal_modes
#include "text/messages.hpp"    // for messages

namespace vbn {

// Each of these gives at most one warning, and changes no result. `rot` (3,3) is the rotation of state 1 onto
// state 2.

// State 1 has been rotated between the search of its symmetry, on the geometry `before` (3,natom), and the
// classification of its modes: warns when axes have changed places and an operation of its group no longer
// maps the geometry onto itself as it did. Returns whether it warned.
bool warn_of_symmetry_axes(const states& g, const array2<double>& before, const array2<double>& rot,
                           double symm_tol, const messages& say);

// After the Duschinsky matrix: warns of modes that are nearly the same motion in both states but have
// different representations of one group.
void warn_of_representations(const array1<states>& state, const messages& say);

// State 1 has been rotated after its internal coordinates were set up: warns unless the rotation is none, and
// returns whether it did.
bool warn_of_late_rotation(const array2<double>& rot, const messages& say);

// Before the force constants of `from` are given to `to`, both as in their files: warns when the two
// geometries are in different orientations.
void warn_of_copied_force_constants(const states& from, const states& to, const messages& say);

// Before the modes of `from` replace those of `to`, which keeps its frequencies: warns of frequencies that
// belong to other motions than the modes of the same number.
void warn_of_copied_modes(const normal_modes& from, const normal_modes& to, const messages& say);

// After the states have been `rotated` onto each other, or left as they are: warns when another rotation
// would bring them much nearer, and returns whether it did.
bool warn_of_alignment(const array2<double>& x1, const array2<double>& x2, bool rotated, const messages& say);

}  // namespace vbn
