// Projection of the couplings on normal modes and its section of the log.
#include "couplings/nacme_projection.hpp"  // for the interface

#include <cmath>
#include <string>

#include "molecule/constants.hpp"  // for au_to_cm and au_to_ev
#include "text/layout.hpp"         // for layout

namespace vbn {

namespace {

const layout line_rule("(80(1h_))");
const layout double_rule("(80(1h=))");
const layout section_title(R"_(("  Information of NACME"))_");
const layout file_type(R"((2x,"NACME file type    :",a20))");
const layout file_version(R"((2x,"NACME file version :",a20))");
const layout energy(R"(("  Excited energy = ", f11.6," au = ", f11.6, " eV =", f11.2," cm-1"))");
const layout column_title(R"(((30(1h=),"before rotation",34(1h=), "after rotation", 10(1h=))))");
const layout field_title(R"_(("========= Transition Elecric Field (atomic unit) ======"))_");
const layout x_title(R"_(("========= NACME(x) before scaling (atomic unit) ======="))_");
const layout x_meaning_1(R"(("    <\psi_f | d \psi_i / dR >  "))");
const layout x_meaning_2(R"(("=== <\psi_f | dV/dR | \psi_i> / \Delta_E  "))");
const layout x_norm_rule(R"(("  ----------------------------------------------------"))");
const layout x_norm(R"_((4x,"norm of NACME(x) is ",f15.6," au",f15.6," au"))_");
const layout x_end(R"(("======================================================"))");
const layout q_title(R"_(("========= NACME(q) before scaling (atomic unit) ======="))_");
const layout q_meaning(R"_(("==================== q = sqrt(m) x  ==================="))_");
const layout q_norm(R"_((4x,"norm of NACME(q) is ",f15.6," au",f15.6," au"))_");
const layout mode_title(R"_(("================ NACME(Q) (atomic unit) ==============="))_");
const layout mode_heads("(2a5, a15, a15)");
const layout mode_row("(2i5, f15.4,f15.9, 4x, f15.9)");
const layout mode_norm(R"_((4x,"norm of NACME(Q) is ",f15.6," au",f15.6," au"))_");
const layout atom_row("(i5,a4,3f15.6,4x,3f15.6)");

// v(k) mass-weighted, and its projection on each mode.
void project(const array2<double>& x, const array1<double>& massau, const array2<double>& cm,
             array2<double>& xq, array1<double>& xq_n3, array1<double>& q) {
  const int natom = x.cols();
  for (int i = 1; i <= natom; ++i) {
    const double root = std::sqrt(massau(i));
    for (int a = 1; a <= 3; ++a) xq_n3(3 * (i - 1) + a) = xq(a, i) = x(a, i) / root;
  }
  for (int m = 1; m <= q.size(); ++m) {
    double sum = 0.0;
    for (int k = 1; k <= q.size(); ++k) sum += xq_n3(k) * cm(k, m);
    q(m) = sum;
  }
}

// A row for each atom: what was read and what it has become side by side.
void print_atoms(const states& state, const array2<double>& before, const array2<double>& after,
                 output_file& fout) {
  for (int i = 1; i <= state.natom; ++i) {
    fout.write(atom_row, {i, state.symbol(i), before(1, i), before(2, i), before(3, i), after(1, i),
                          after(2, i), after(3, i)});
  }
}

}  // namespace

double v3n_norm(const array2<double>& v) {
  double sum = 0.0;
  for (const double component : v.span()) sum += component * component;
  return std::sqrt(sum);
}

double vn_norm_part(std::span<const double> v, int a, int b) {
  double sum = 0.0;
  for (int i = a; i <= b; ++i) {
    const double component = v[static_cast<std::size_t>(i - 1)];
    sum += component * component;
  }
  return std::sqrt(sum);
}

void proj_nacm(states& state, const states& modes) {
  project(state.nacme_x, state.massau, modes.cm, state.nacme_xq, state.nacme_xq_n3, state.nacme_q);
  project(state.nacme_x0, state.massau, modes.cm, state.nacme_xq0, state.nacme_xq_n30, state.nacme_q0);
  state.nacme_x_norm = v3n_norm(state.nacme_x);
  state.nacme_x_norm0 = v3n_norm(state.nacme_x0);
  state.nacme_xq_norm = v3n_norm(state.nacme_xq);
  state.nacme_xq_norm0 = v3n_norm(state.nacme_xq0);
  state.nacme_q_norm = vn_norm_part(state.nacme_q.span(), state.start_mode, state.n3);
  state.nacme_q_norm0 = vn_norm_part(state.nacme_q0.span(), state.start_mode, state.n3);
}

void print_nacm(const states& state, int istate, output_file& fout) {
  fout.write(line_rule);
  fout.write(section_title);
  fout.write(line_rule);
  fout.line("");
  fout.line("  NACME file " + std::to_string(istate) + "       :  " + state.fnacm.str());
  fout.write(file_type, {state.fnacm_type.trimmed()});
  fout.write(file_version, {state.fnacm_version.trimmed()});
  fout.write(energy, {state.e_vert, au_to_ev * state.e_vert, au_to_cm * state.e_vert});
  fout.line("");

  fout.write(field_title);
  fout.write(column_title);
  fout.line("");
  print_atoms(state, state.tranele0, state.tranele, fout);
  fout.line("");
  fout.write(double_rule);
  fout.line("");

  fout.write(x_title);
  fout.write(x_meaning_1);
  fout.write(x_meaning_2);
  fout.write(column_title);
  fout.line("");
  print_atoms(state, state.nacme_x0, state.nacme_x, fout);
  fout.line("");
  fout.write(x_norm_rule);
  fout.write(x_norm, {state.nacme_x_norm0, state.nacme_x_norm});
  fout.write(x_end);
  fout.line("");

  fout.write(q_title);
  fout.write(q_meaning);
  fout.write(column_title);
  fout.line("");
  print_atoms(state, state.nacme_xq0, state.nacme_xq, fout);
  fout.line("");
  fout.write(line_rule);
  fout.write(q_norm, {state.nacme_xq_norm0, state.nacme_xq_norm});
  fout.write(double_rule);
  fout.line("");

  fout.write(mode_title);
  fout.write(column_title);
  fout.line("");
  fout.write(mode_heads, {"m", "n", "freq(cm-1)", "nacme_L(au)"});
  fout.line("");
  for (int i = state.start_mode; i <= state.n3; ++i) {
    fout.write(mode_row, {i, i - 6, au_to_cm * state.freq(i), state.nacme_q0(i), state.nacme_q(i)});
  }
  fout.line("");
  fout.write(line_rule);
  fout.write(mode_norm, {state.nacme_q_norm0, state.nacme_q_norm});
  fout.write(double_rule);
  fout.line("");
  fout.write(line_rule);
}

}  // namespace vbn
