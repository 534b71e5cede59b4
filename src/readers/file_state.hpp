// What a frequency file holds: one electronic state, and the results that its program printed.
#pragma once

#include "linalg/array.hpp"              // for array1, array2
#include "molecule/printed_results.hpp"  // for printed_results

namespace vbn {

// Atoms, geometry and force constants, all from one calculation.
struct file_state {
  array1<int> nat;      // (natom) atomic numbers
  array1<double> mass;  // (natom) amu; 0.0 for an element without a mass
  array2<double> x;     // (3,natom) bohr
  array2<double> fc;    // (n3,n3) hartree/bohr^2, full and symmetric
  printed_results printed;
  std::string geometry_file;  // the file of the geometry if it is another one

  int natom() const { return nat.size(); }
};

}  // namespace vbn
