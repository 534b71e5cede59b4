// Exact mean and standard deviation of a line shape, and the modes that make them.
#pragma once

#include <vector>

#include "spectra/transition.hpp"  // for transition

namespace vbn {

// The part of a pair of modes in the mean.
struct pair_share {
  int initial = 0, final = 0;  // mode of i, mode of f; `final` is 0 for the sum over f less the own part of i
  double energy = 0.0;         // hartree
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

// The modes of i whose share of the mean grows most between 0 and `kt`, the largest first, at most `count`;
// each followed by the `pairs` of modes of f onto which it falls.
std::vector<pair_share> growth_of_mean(const transition& t, double kt, std::size_t count, std::size_t pairs);

}  // namespace vbn
