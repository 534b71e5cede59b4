// Finds the geometry of a Gaussian calculation that its force constants belong to.
#pragma once

#include "readers/file_type.hpp"  // for qm_file
#include "linalg/array.hpp"       // for array1, array2

namespace vbn {

// x(3,natom), bohr, is the last geometry of the log, and fc(n3,n3) the force constants of its checkpoint. If
// the last geometry before the frequencies has another shape, the log goes on with another job, and the
// geometry of the frequencies replaces `x`, in the frame of the checkpoint where it is there too. If only the
// orientation differs, a rotation of the whole molecule decides, which changes no force at a stationary
// point: another orientation replaces `x` when it fulfils this far better. Each replacement gives a warning.
// Files of other kinds leave `x` unchanged.
void fit_gaussian_coord(qm_file& log, qm_file& checkpoint, const array2<double>& fc, array2<double>& x);

// Compares atoms, masses (amu) and geometry (bohr) with those of the checkpoint: other elements end the run,
// other masses and a geometry of another shape give a warning.
void compare_checkpoint(qm_file& log, qm_file& checkpoint, const array1<int>& nat, const array1<double>& mass,
                        const array2<double>& x);

}  // namespace vbn
