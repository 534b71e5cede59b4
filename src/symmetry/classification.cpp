// Block diagonalisation of the mass-weighted Hessian by representation, and its section of the log.
#include "symmetry/classification.hpp"  // for get_point_group

#include <cmath>
#include <utility>
#include <vector>

#include "frame/hessian.hpp"       // for eigenvalues_to_frequencies
#include "linalg/eigen.hpp"        // for diag_symm, sort_vec_large
#include "linalg/matmul.hpp"       // for matmul
#include "linalg/sorting.hpp"      // for dorder, sort_array_d, sort_array_a, sort_matrix
#include "molecule/constants.hpp"  // for au_to_cm, first_vibration
#include "text/fixed_text.hpp"     // for text
#include "text/layout.hpp"         // for layout, value
#include "text/messages.hpp"       // for messages, lines_of, free_line
#include "text/stop.hpp"           // for stop_printed

namespace vbn {

namespace {

constexpr double told_change = 0.01;  // cm-1; a larger change of a frequency gives a warning in the log
constexpr double worst_change = 5.0;  // cm-1; a larger change stops the run

// Diagonalises rows first to first + j - 1 of fcm1 (n3,n3), and stores the block, its eigenvectors and its
// eigenvalues at the same place of fcm (n3,n3), cm (n3,n3) and evm (n3).
void diag_block(const array2<double>& fcm1, int first, int j, array2<double>& fcm, array2<double>& cm,
                array1<double>& evm) {
  array2<double> block(j, j);
  for (int j2 = 1; j2 <= j; ++j2)
    for (int i2 = 1; i2 <= j; ++i2) block(i2, j2) = fcm1(first - 1 + i2, first - 1 + j2);
  array1<double> eval;
  array2<double> vector;
  int info = 0;
  diag_symm(block, eval, vector, info);
  for (int j2 = 1; j2 <= j; ++j2) {
    evm(first - 1 + j2) = eval(j2);
    for (int i2 = 1; i2 <= j; ++i2) {
      fcm(first - 1 + i2, first - 1 + j2) = block(i2, j2);
      cm(first - 1 + i2, first - 1 + j2) = vector(i2, j2);
    }
  }
}

// The frequencies without symmetry and those by representation, side by side. The first six modes are left
// out; they count as translations and rotations also for a linear molecule.
void print_comparison(const normal_modes& modes, const symmetry_data& symmetry, output_file& fout,
                      const messages& say) {
  const layout rule("(80(1h-))");
  const layout row("(a6, 2x, 2f20.2)");
  fout.write(rule);
  fout.write(layout("(a6, 2x, 2a20  )"), {"irrep", "nosymm", "symm_diag"});
  fout.write(rule);
  bool changed = false;
  for (int i = first_vibration; i <= modes.freq.size(); ++i) {
    const double df = std::abs(modes.freq(i) - modes.freq1(i)) * au_to_cm;
    const value irrep = modes.irrep(i).trimmed();
    const value nosymm = au_to_cm * modes.freq1(i);
    const value symm_diag = au_to_cm * modes.freq(i);
    fout.write(row, {irrep, nosymm, symm_diag});
    if (df > told_change && df < worst_change) changed = true;
    if (df > worst_change) {
      say.warn(
          "the Hessian does not have the symmetry of point group " + symmetry.new_pgrp.str() +
          " in the present axes: if the default eckart_rot = 2 has rotated state 1 away from its symmetry "
          "axes, use eckart_rot = 1 with set_cart = t; if the Hessian itself is not symmetric, use "
          "enforce_symm = t");
      stop_printed(free_line({"Symmetric diagonalization are not same as diagonalization"}) +
                   lines_of(row, {irrep, nosymm, symm_diag}) + free_line({"Stop!"}));
    }
  }
  fout.write(rule);
  if (changed) {
    fout.line("");
    fout.write(layout(R"(("Warning: frequences are changed after finding symmetry!"))"));
  }
}

void print_atoms(const file_data& file, const atom_data& atoms, output_file& fout) {
  fout.line("");
  fout.write(layout(R"((2x,"file type   ",7x,":",a20))"), {file.ffreq_type.trimmed()});
  fout.write(layout(R"((2x,"file version",7x,":",a20))"), {file.ffreq_version.trimmed()});
  fout.line("");
  fout.write(layout(R"((2x,"Number of atoms",4x,":",i20))"), {atoms.natom});
  fout.line("");
  fout.write(layout(R"((2x,"Atomic number",6x,":"    ))"));
  fout.write(layout("(2x,10i10  )"), std::vector<value>(atoms.nat.begin(), atoms.nat.end()));
  fout.line("");
  fout.write(layout(R"((2x,"Atomic symbol",6x,":"    ))"));
  fout.write(layout("(2x,10a10  )"), std::vector<value>(atoms.symbol.begin(), atoms.symbol.end()));
  fout.line("");
  fout.write(layout(R"((2x,"Atomic masses",6x,":"    ))"));
  fout.write(layout("(2x,10f10.5)"), atoms.mass.span());
}

}  // namespace

void get_point_group(const array1<double>& sqtmass, symmetry_data& symmetry, force_constants& force,
                     normal_modes& modes) {
  const int n3 = sqtmass.size();
  const array2<double>& t = symmetry.trans_symm;
  const array2<double> fcm1 = matmul(matmul(t, force.fcm()), t, op::plain, op::transposed);
  array2<double> fcm(n3, n3);
  array2<double> cm(n3, n3);
  array1<double> evm(n3);
  modes.irrep = array1<text<6>>(n3, "A");
  for (int i = 1; i <= symmetry.nrep; ++i) {
    const int first = symmetry.nr_lw(i);
    if (first == 0) continue;
    diag_block(fcm1, first, symmetry.nr_hi(i) - first + 1, fcm, cm, evm);
    for (int k = first; k <= symmetry.nr_hi(i); ++k) modes.irrep(k) = symmetry.ir_name(i).trimmed();
  }

  array1<int> indx(n3);
  dorder(evm.span(), indx, 1);
  sort_array_d(evm, indx);
  sort_array_a(modes.irrep, indx);
  sort_matrix(cm, indx);
  array1<int> place(n3);
  for (int q = 1; q <= n3; ++q) place(indx(q)) = q;
  symmetry.ir_idx = array2<int>(n3, max_rep);
  for (int i = 1; i <= symmetry.nrep; ++i)
    for (int k = symmetry.nr_lw(i); k > 0 && k <= symmetry.nr_hi(i); ++k) symmetry.ir_idx(k, i) = place(k);

  force.set_fcm(sqtmass, matmul(matmul(t, fcm, op::transposed), t));
  modes.cm = matmul(t, cm, op::transposed);
  sort_vec_large(n3, n3, modes.cm);
  eigenvalues_to_frequencies(evm);
  modes.freq = std::move(evm);
}

void print_point_group(const states& state, output_file& fout, const messages& say) {
  const symmetry_data& symmetry = state.symmetry;
  fout.write(layout(R"(("Point group:", 2x, a))"), {symmetry.new_pgrp});
  const layout frequency("(f15.2)");
  for (int i = 1; i <= symmetry.nrep; ++i) {
    fout.free_form({symmetry.ir_name(i).trimmed()});
    for (int j = symmetry.nr_lw(i); j > 0 && j <= symmetry.nr_hi(i); ++j)
      fout.write(frequency, {au_to_cm * state.modes.freq(symmetry.ir_idx(j, i))});
  }
  print_comparison(state.modes, symmetry, fout, say);
  print_atoms(state.file, state.atoms, fout);
}

}  // namespace vbn
