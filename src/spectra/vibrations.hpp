// The vibrations of two states that enter a spectrum, and the transitions between them.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "linalg/array.hpp"        // for array1, array2
#include "molecule/record.hpp"     // for states
#include "spectra/transition.hpp"  // for transition

namespace vbn {

// Equally many vibrations of each state, by frequency. Rows of `s` are those of g, columns those of e.
struct vibration_pair {
  std::vector<int> mode_g, mode_e;  // their numbers among all modes of the state
  array1<double> w_g, w_e;          // hartree
  array1<double> d_g, d_e;          // displacements, root of electron mass x bohr
  array2<double> s;                 // orthogonal
  double deviation = 0.0;           // largest element of S S^T - 1 before it was made orthogonal
  std::vector<std::string> log;     // what was left out and why

  int n() const { return w_g.size(); }
};

// Chooses the vibrations by what they are: the modes that are least made of the exact translations and
// rotations (5 for a linear geometry). Imaginary modes, and the modes of g in `leave_out`, leave both states,
// each with the mode of the other state that overlaps most with it. S of what is left is replaced by the
// nearest orthogonal matrix. `internal`: the displacements of the route through internal coordinates, with
// the signs of the Cartesian ones. Ends the run (messages name `file`): states of different numbers of
// vibrations, none left, S further from orthogonal than 0.1, a number that is no vibration.
vibration_pair choose_vibrations(const array1<states>& state, std::span<const int> leave_out, bool internal,
                                 const std::string& file);

// i = g, f = e; and i = e, f = g.
transition absorption_of(const vibration_pair& v);
transition decay_of(const vibration_pair& v);

// The transition dipole about the minimum of the final state and its derivatives along the modes of f, from
// mu (3) at the minimum of g (`at` 1) or e (2) and its derivatives (3,n3) along all modes of g.
transition_operator dipole_operator(const vibration_pair& v, const array1<double>& mu,
                                    const array2<double>& derivatives, int at, bool absorption);

}  // namespace vbn
