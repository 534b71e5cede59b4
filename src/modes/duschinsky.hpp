// Duschinsky matrices, displacements, Huang-Rhys factors and reorganisation energies.
#pragma once

#include "input/keys.hpp"       // for input_keys
#include "linalg/array.hpp"     // for array1, array2
#include "molecule/record.hpp"  // for states
#include "text/messages.hpp"    // for messages

namespace vbn {

// Relates the normal modes of the two states, Qg = S(g,e) Qe + Dg and Qe = S(e,g) Qg + De, from modes,
// frequencies, geometries and the masses of state 1. Fills `s`, `order`, `zptlen` and `freqt` of the modes
// and the results `cart` of both states. Stops the run: modes that are not orthonormal (see test_fc).
// Published method: F. Duschinsky (1937).
void get_vbn(array1<states>& state, const input_keys& keys, const messages& say);

// Stops the run when a diagonal element of c^T c exceeds 1 or another element exceeds 0 by more than 1e-12;
// each such diagonal element is printed to standard output. Shape: c (n,n).
void test_fc(const array2<double>& c);

}  // namespace vbn
