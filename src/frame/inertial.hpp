// The inertial frame: centre of mass at the origin, principal axes of inertia along x, y, z.
#pragma once

#include <span>

#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for states, dipole_data
#include "text/messages.hpp"    // for messages

namespace vbn {

// In all routines here: mass (natom), x (3,natom); masses of any one unit. The axes are in the order of
// increasing moment, so a linear molecule is along x and a planar one in the xy plane, and they form a
// right-handed frame. The component of largest magnitude of the first and of the second axis is positive.

// Moves `x` to its principal frame. The rule for the axes is applied to the eigenvectors of the inertia
// tensor as the solver returns them.
void inertm(const array1<double>& mass, array2<double>& x);

// Moves `x` to its principal frame and rotates the force constants `fc` (n3,n3) with it. `vector` (3,3)
// becomes the rotation.
void inertm_fc(const array1<double>& mass, array2<double>& x, array2<double>& fc, array2<double>& vector);

// Moves `x` to the nearest to the reference `x1` of its four right-handed principal frames (two axes reversed
// at a time), and rotates the vectors `v` of every atom with it. Of equally near frames the first in the
// order +++, +--, -+-, --+ is used. Returns the rotation (3,3).
array2<double> inertmv_ref(const array1<double>& mass, const array2<double>& x1, array2<double>& x,
                           std::span<double> v);

// The same with two lists of 3-vectors of their own lengths.
array2<double> inertmv2_ref(const array1<double>& mass, const array2<double>& x1, array2<double>& x,
                            std::span<double> v1, std::span<double> v2);

// The element of largest magnitude with its sign, the first of equal ones; 0 for an empty vector.
double max_abs(std::span<const double> v);

// Moves a state to its inertial frame: geometry and force constants and, if the geometry of the coupling file
// or of the dipole file is that of the state, the couplings or the dipole and the dipole index of its
// derivatives, each to the frame of its own geometry that is nearest to `x`. A geometry of a file that then
// differs by more than 0.001 bohr is printed to standard output, and the run continues.
void get_inertial(states& state, const messages& say);

// Adds the rotation `rot` (3,3) of the dipole derivatives to `dip_turn`.
void add_dipole_turn(dipole_data& dipole, const array2<double>& rot);

// Warns when the frame of the dipole file is not that of the modes (to 1e-6): the displacement index of the
// derivatives stays in the frame of the file.
void warn_of_dipole_turn(const dipole_data& dipole, const messages& say);

}  // namespace vbn
