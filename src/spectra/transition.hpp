// A transition between two displaced, distorted and rotated harmonic surfaces.
#pragma once

#include "linalg/array.hpp"  // for array1, array2

namespace vbn {

// Coordinates of the initial state i in those of the final state f: Q_i = J Q_f + K. Mass-weighted, atomic
// units; n vibrations in each state. J need not be orthogonal, but it has an inverse.
struct transition {
  array1<double> w_i, w_f;  // (n) frequencies, positive
  array2<double> j;         // (n,n) rows the modes of i, columns those of f
  array1<double> k;         // (n)

  int n() const { return w_i.size(); }
};

// What couples the states, along the modes of the final state and about its minimum.
struct transition_operator {
  array1<double> mu0;  // (3) transition dipole; empty for the Franck-Condon factor alone
  array2<double> mu1;  // (3,n) its derivatives; empty without Herzberg-Teller terms
  array1<double> v;    // (n) coupling of each momentum (internal conversion); empty without
};

// The transition with both frequency lists and K over the root of the frequencies: J~ = W_i^1/2 J W_f^-1/2,
// d = W_i^1/2 K.
struct scaled_transition {
  array2<double> j;        // (n,n) J~
  array2<double> inverse;  // (n,n) its inverse
  array1<double> d;        // (n)
  double log_det = 0.0;    // ln |det J~|
};
scaled_transition scaled(const transition& t);

// The decay of the other direction: initial and final state exchanged, J^-1 and -J^-1 K.
transition exchanged(const transition& t);

// The inverse of a real matrix and the logarithm of its determinant's magnitude; throws std::domain_error for
// a singular one.
array2<double> inverse_of(array2<double> a, double& log_det);

}  // namespace vbn
