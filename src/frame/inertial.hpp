// The inertial frame: centre of mass at the origin, principal axes of inertia along x, y, z.
#pragma once

#include <span>

#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for states, dipole_data

namespace vbn {

// In all routines here: mass (natom), x (3,natom); masses of any one unit. The axes come in the order of
// rising moment, so that a linear molecule lies along x and a planar one in the xy plane, and they form a
// right-handed frame. The component of largest magnitude of the first and of the second axis is positive.

// Brings `x` to its principal frame. The eigenvectors of the inertia tensor are taken as the solver leaves
// them before the rule for the axes is applied.
void inertm(const array1<double>& mass, array2<double>& x);

// Brings `x` to its principal frame and turns the force constants `fc` (n3,n3) with it. `vector` (3,3)
// becomes the rotation.
void inertm_fc(const array1<double>& mass, array2<double>& x, array2<double>& fc, array2<double>& vector);

// Brings `x` to that of its four principal frames of equal handedness (two axes turned round at a time) that
// lies nearest to the reference `x1`, and turns the vectors `v` of every atom with it. Of equally near ones
// the first in the order +++, +--, -+-, --+ is taken. Returns the rotation (3,3).
array2<double> inertmv_ref(const array1<double>& mass, const array2<double>& x1, array2<double>& x,
                           std::span<double> v);

// The same with two lists of 3-vectors of their own lengths.
array2<double> inertmv2_ref(const array1<double>& mass, const array2<double>& x1, array2<double>& x,
                            std::span<double> v1, std::span<double> v2);

// The element of largest magnitude with its sign, the first of equal ones; 0 of an empty vector.
double max_abs(std::span<const double> v);

// Brings a state to its inertial frame: geometry and force constants and, where the geometry of the coupling
// file or of the dipole file is that of the state, the couplings or the dipole and the dipole index of its
// derivatives, each by the frame of its own geometry that lies nearest to `x`. A file whose geometry is then
// more than 0.001 bohr away is reported on standard output and the run goes on.
void get_inertial(states& state);

// Notes in `dip_turn` that the dipole derivatives are rotated (further) by `rot` (3,3).
void add_dipole_turn(dipole_data& dipole, const array2<double>& rot);

// Warns on the error stream when the frame of the dipole file is not the frame of the modes (to 1e-6): the
// displacement index of the derivatives stays in the frame of the file.
void warn_of_dipole_turn(const dipole_data& dipole);

}  // namespace vbn
