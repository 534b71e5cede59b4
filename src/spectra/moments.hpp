// Exact mean and standard deviation of a line shape, and the modes that make them.
#pragma once

#include <cstddef>
#include <vector>

#include "spectra/transition.hpp"  // for transition

namespace vbn {

// What a mode adds to a moment, or a mode of i together with one of f.
struct mode_part {
  int mode = 0;
  int final = 0;  // the mode of f of a pair; 0 for the sum over all of them
  double value = 0.0;
};

// Energies in hartree from the 0-0 line.
struct line_moments {
  double reorganisation = 0.0;  // energy of f at the minimum of i
  double mean = 0.0;
  double sd = 0.0;
};

// The moments at `kt` (hartree; 0 for the ground level alone): with G = J^-T W_f^2 J^-1, g = -G K, H = G -
// W_i^2 and s_k = coth(w_i,k / 2kT)/(2 w_i,k), the mean is K.G K/2 + sum H_kk s_k/2 - (zero-point energies),
// the variance sum g_k^2 s_k + sum H_kl^2 s_k s_l/2 (Kubo and Toyozawa, 1955).
line_moments moments_of(const transition& t, double kt);

// The largest parts of the moments, the largest first and at most `count` of each.
struct moment_parts {
  std::vector<mode_part> reorganisation;  // hartree, of the modes of f
  std::vector<mode_part> growth;          // hartree: of the mean, between 0 and kt, of the modes of i
  std::vector<mode_part> variance;        // share, of the modes of i
};

// Which modes make the moments at `kt`. Each mode of `growth` is followed by the `pairs` modes of f onto
// which it falls: the energy of a pair is J_kl^2 w_f,l^2 s_k/2, that of the mode their sum less its own part
// w_i,k^2 s_k/2.
moment_parts parts_of_moments(const transition& t, double kt, std::size_t count, std::size_t pairs);

}  // namespace vbn
