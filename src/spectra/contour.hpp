// The line shape far from its mean, by a path of the times into the complex plane.
#pragma once

#include <vector>

#include "spectra/transition.hpp"  // for transition

namespace vbn {

// Values per hartree.
struct tail_value {
  double fc = 0.0;               // line shape without operator
  double ic = 0.0;               // with the momentum couplings
  std::vector<double> ic_share;  // the part of each mode of f in `ic`
  double eta = 0.0;              // shift of the path
  int points = 0;
  double precision = 0.0;  // relative rounding error: large in a gap between narrow lines
  bool converged = false;  // twice the step gives the same
};

// F(E) for a Gaussian of standard deviation `sigma` (hartree), with the times t + i eta. Eta is the saddle
// point of -E eta + ln chi(i eta) + sigma^2 eta^2/2, so that the integrand is of the size of the result and
// the result keeps its relative precision where F is below the rounding errors of a direct sum.
tail_value line_shape_at(const transition& t, const transition_operator& o, double kt, double energy,
                         double sigma, int threads);

}  // namespace vbn
