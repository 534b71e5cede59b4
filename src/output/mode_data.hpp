// The mode data files of a run: ".dat", ".abs" and, with `if_rrs`, ".rrs1" and ".rrs2".
#pragma once

#include <string_view>

#include "input/keys.hpp"       // for input_keys
#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states

namespace vbn {

// Both write the files of the stem `fname` from the pair of states, replacing files of these names: the
// pairing of the modes with displacements, Huang-Rhys factors and reorganisation energies, and both
// Duschinsky matrices in the order of the pairing. Energies are in cm-1, displacements in atomic units.
// `write_vbn` writes the results in Cartesian coordinates, `write_vbn_int` those in internal coordinates;
// frequencies, pairing and Duschinsky blocks are the same in both. Of the keys they use `if_rrs` and
// `eps_test_orth`. A file that cannot be written ends the run.
void write_vbn(const array1<states>& state, std::string_view fname, const input_keys& keys);
void write_vbn_int(const array1<states>& state, std::string_view fname, const input_keys& keys);

// The deviation of the Duschinsky matrix from a pure pairing of the modes: 1 less the mean of |S| over the
// pairs 7 to n3; 0 if there are none (a diatomic molecule has its one vibration at 6).
double delta_s(const array2<double>& s_order);

}  // namespace vbn
