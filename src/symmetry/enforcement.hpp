// Exactly symmetric geometry, Hessian and couplings, each element from its representative.
#pragma once

#include "linalg/array.hpp"          // for array1, array2, array3
#include "molecule/record.hpp"       // for states
#include "symmetry/point_group.hpp"  // for symmetry_search
#include "text/messages.hpp"         // for messages

namespace vbn {

// In all routines here `tol` is the number `symm_tol` in the unit of the array. Nothing is averaged over the
// operations.

// Searches the point group of the state. With the key on and a group above C1 then makes `x` and `fc`, and of
// a state with the couplings `x_nac` and `nacme_x`, symmetric, computes `fcm` again from this `fc` and moves
// the state to its inertial frame again. Stops the run where the search or one of the three routines below
// does.
void get_enforce_symm(bool enforce_symm, double symm_tol, states& state, const messages& say);

// Moves atoms that are within tol of a mirror plane onto it, and sets to zero the elements of fc(n3,n3) that
// couple motions in and normal to the plane for pairs of such atoms. An element above tol is printed to
// standard output and kept.
void set_mirror(array2<double>& x, array2<double>& fc, const array1<bool_>& mirror, double tol,
                const messages& say);

// The same without a plane: atoms that a rotation or the inversion leaves in place are moved onto the axis or
// the centre, and the elements of fc that couple motions along an axis and across it are set to zero for
// pairs of such atoms. Elements above tol are kept, and a warning gives their number.
void set_axis(const symmetry_search& found, const array1<bool_>& mirror, array2<double>& x,
              array2<double>& fc, double tol, const messages& say);

// Gives v0(3,n), which transforms like coordinates, the symmetry of `id3`. A component that changes by more
// than tol is printed to standard output; a root-mean-square change above tol stops the run.
void get_array3(const array3<int>& id3, array2<double>& v0, double tol, const messages& say);

// The same for a field of couplings, which may be even or odd under the operations that exchange atoms; a
// field that is neither within tol stays as it is.
void get_array3s(const array3<int>& id3, array2<double>& v0, double tol);

// The same for force constants f0(n3,n3), by representative pairs of atoms. They are exactly symmetric as a
// matrix afterwards.
void get_array9(const symmetry_search& found, array2<double>& f0, double tol, const messages& say);

}  // namespace vbn
