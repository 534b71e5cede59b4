// Finds the geometry of a Gaussian calculation that its force constants belong to.
#pragma once

#include "readers/file_type.hpp"  // for qm_file
#include "linalg/array.hpp"       // for array2

namespace vbn {

// x(3,natom), bohr, is the last geometry of the log, and fc(n3,n3) the force constants of its checkpoint,
// which may be in another frame, or belong to an earlier job of the log. A rotation of the whole molecule
// changes no force at a stationary point: if the coordinates of the checkpoint, or the last geometry before
// the frequencies, fulfil this far better than `x`, they replace it, with a warning. Files of other kinds
// leave `x` unchanged.
void fit_gaussian_coord(qm_file& log, qm_file& checkpoint, const array2<double>& fc, array2<double>& x);

}  // namespace vbn
