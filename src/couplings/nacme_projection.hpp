// Projects the couplings of a state on normal modes and writes every form to the log.
#pragma once

#include <span>

#include "linalg/array.hpp"      // for array1, array2
#include "molecule/record.hpp"   // for states, atom_data
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// The couplings of a state in every form of the projection, with their norms. The norm over the modes counts
// those from `start_mode` on.
struct nacme_forms {
  array2<double> x;   // (3,natom) as given
  array2<double> xq;  // (3,natom) over the root of the masses
  array1<double> q;   // (n3) along each mode
  double x_norm = 0.0;
  double xq_norm = 0.0;
  double q_norm = 0.0;
};

// Mass-weights the couplings nacme_x (3,natom) and projects them on the modes cm (n3,n3), which may be those
// of the other state.
nacme_forms proj_nacm(const array2<double>& nacme_x, const atom_data& atoms, const array2<double>& cm,
                      int start_mode);

// Writes the section of the log: every form, from the couplings as read (`before`) and in the final frame
// (`after`), side by side.
void print_nacm(const states& state, const nacme_forms& before, const nacme_forms& after, int istate,
                int start_mode, output_file& fout);

// Root of the sum of squares over all elements, atom after atom.
double v3n_norm(const array2<double>& v);
// Root of the sum of squares of v(a..b), which count from 1; 0 when a is above b.
double vn_norm_part(std::span<const double> v, int a, int b);

}  // namespace vbn
