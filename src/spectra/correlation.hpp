// The time correlation function of a vibronic transition.
#pragma once

#include <complex>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "linalg/array.hpp"        // for array2
#include "linalg/ldlt.hpp"         // for complex
#include "spectra/transition.hpp"  // for transition, transition_operator

namespace vbn {

// chi(t) = Tr[exp(-(1/kT - i t) H_i) O exp(-i t H_f) O+] / Tr exp(-H_i/kT), the energies of both surfaces
// counted from their zero-point levels, so that 1 = chi_FC(0) and F(E) = 1/(2 pi) Int exp(i E t) chi(t) dt
// has its 0-0 line at E = 0. chi(-t) is the conjugate.
struct correlation_value {
  complex fc;                                  // without operator
  complex dipole_fc, dipole_mixed, dipole_ht;  // mu0^2; mu0 with the derivatives; derivatives alone
  complex ic;                                  // with the momentum couplings
};

struct correlation {
  double kt = 0.0;                        // hartree
  std::vector<double> time;               // atomic units
  std::vector<correlation_value> values;  // one a time
  array2<complex> ic_share;               // (n,times) the part of each mode in `ic`; empty without
};

// What the caller gives while time points are computed: a count of those that are ready. Called from several
// threads.
using progress_counter = std::function<void(std::size_t)>;

// The values at the times, each on its own, `threads` at a time; the bits do not depend on `threads`. Two
// complex symmetric matrices a time, whose pivots have positive real parts: the roots of the determinants
// are products of principal roots. `kt` is 0 for the lowest level of i alone.
correlation correlate(const transition& t, const transition_operator& o, double kt,
                      std::span<const double> times, int threads, const progress_counter& done = {});

// Bytes that `correlate` takes for one thread.
std::size_t correlation_memory(int n);

}  // namespace vbn
