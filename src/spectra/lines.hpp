// The lines of a vibronic transition, all of them above a threshold.
#pragma once

#include <cstddef>
#include <vector>

#include "spectra/transition.hpp"  // for transition

namespace vbn {

struct mode_quanta {
  int mode = 0, quanta = 0;
};

struct vibronic_line {
  double energy = 0.0;    // hartree from the 0-0 line
  double strength = 0.0;  // population of the initial level times `overlap` squared
  double overlap = 0.0;   // root of `strength` with the sign of the overlap
  std::vector<mode_quanta> initial, final;
};

struct line_list {
  std::vector<vibronic_line> lines;  // by energy
  double complete_above = 0.0;       // no line of at least this strength is missing
  bool finished = false;             // the threshold asked for was reached within the time
  double sum = 0.0;
  std::size_t marginals = 0;  // probabilities of patterns that were computed
};

// All lines of at least `threshold` at `kt` (0 for cold lines alone), by branch and bound: the probability
// that some modes hold given quanta, whatever the others hold, bounds every line with these quanta, and
// follows exactly from their part of the covariances. Levels of the initial state are traced by a copy of
// each mode that is entangled with it, so hot lines are patterns of 2n modes. When `seconds` are over, the
// list is that of the last larger threshold that was reached. The recursion is that of Doktorov, Malkin and
// Man'ko (1977).
line_list find_lines(const transition& t, double kt, double threshold, double seconds);

// The overlap of a level of i with a level of f.
double overlap_of(const transition& t, const std::vector<mode_quanta>& initial,
                  const std::vector<mode_quanta>& final);

}  // namespace vbn
