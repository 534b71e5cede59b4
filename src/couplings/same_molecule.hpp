// Whether a file of couplings or dipole derivatives belongs to a state: atoms, masses and geometry.
#pragma once

#include "linalg/array.hpp"       // for array1
#include "molecule/record.hpp"    // for states
#include "readers/file_type.hpp"  // for qm_file

namespace vbn {

inline constexpr double same_geometry = 0.001;  // bohr, root of the summed squares over all coordinates

// Ends the run with the exit status unless the file has as many atoms (`count`) as the state, or the same
// masses (`mass` in amu, whole numbers compared). For a file without atoms a warning says as what it was
// read.
void require_same_count(const states& state, const qm_file& file, int count, int status);
void require_same_masses(const states& state, qm_file& file, const array1<double>& mass, int status);

}  // namespace vbn
