// Projects the couplings of a state on normal modes and reports every stage in the log.
#pragma once

#include <span>

#include "linalg/array.hpp"      // for array2
#include "molecule/record.hpp"   // for states
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// Mass-weights the couplings of the state (`nacme_xq` = `nacme_x` / root of `massau`) and projects them on
// the modes `cm` of `modes`, which may be the record of the other state: `nacme_q`, a value for each mode,
// and the norms of all three. A final 0 marks the same for the couplings as read, before any turn of the
// frame. The norm over the modes counts those from `start_mode` on.
void proj_nacm(states& state, const states& modes);

// Writes the section of the log: all stages of the projection, as read and in the final frame side by side.
void print_nacm(const states& state, int istate, output_file& fout);

// Root of the sum of squares over all elements, atom after atom.
double v3n_norm(const array2<double>& v);
// Root of the sum of squares of v(a..b), which count from 1; 0 when a is above b.
double vn_norm_part(std::span<const double> v, int a, int b);

}  // namespace vbn
