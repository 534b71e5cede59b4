// What a frequency file holds: one electronic state, and the results that its program printed.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "linalg/array.hpp"  // for array1, array2

namespace vbn {

// What the program printed of its own results; empty where the file does not say. The analysis is held
// against it.
struct printed_results {
  std::vector<double> freq;            // cm-1, of the vibrations, negative for imaginary ones
  std::optional<double> max_gradient;  // largest component of the gradient, hartree/bohr
  std::optional<bool> converged;       // whether the geometry was optimised
  std::optional<int> charge;
  std::optional<int> multiplicity;
  std::string method;
  std::string basis;
};

// Atoms, geometry and force constants, all from one calculation.
struct file_state {
  array1<int> nat;      // (natom) atomic numbers
  array1<double> mass;  // (natom) amu; 0.0 for an element without a mass
  array2<double> x;     // (3,natom) bohr
  array2<double> fc;    // (n3,n3) hartree/bohr^2, full and symmetric
  printed_results printed;

  int natom() const { return nat.size(); }
};

}  // namespace vbn
