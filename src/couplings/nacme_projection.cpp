// Projection of the couplings on normal modes and its section of the log.
#include "couplings/nacme_projection.hpp"  // for the interface

#include <cmath>
#include <string>

#include "linalg/matmul.hpp"       // for transposed_product
#include "molecule/constants.hpp"  // for au_to_cm, au_to_ev, external_modes
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

// A row for each atom: the vectors before and after the rotation side by side.
void print_atoms(const atom_data& atoms, const array2<double>& before, const array2<double>& after,
                 output_file& fout) {
  for (int i = 1; i <= atoms.natom; ++i) {
    fout.write(atom_row, {i, atoms.symbol(i), before(1, i), before(2, i), before(3, i), after(1, i),
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

nacme_forms proj_nacm(const array2<double>& nacme_x, const atom_data& atoms, const array2<double>& cm,
                      int start_mode) {
  nacme_forms forms{nacme_x, nacme_x, {}};
  for (int i = 1; i <= atoms.natom; ++i)
    for (int a = 1; a <= 3; ++a) forms.xq(a, i) = nacme_x(a, i) / std::sqrt(atoms.massau(i));
  forms.q = transposed_product(cm, forms.xq.span());
  forms.x_norm = v3n_norm(forms.x);
  forms.xq_norm = v3n_norm(forms.xq);
  forms.q_norm = vn_norm_part(forms.q.span(), start_mode, atoms.n3);
  return forms;
}

void print_nacm(const states& state, const nacme_forms& before, const nacme_forms& after, int istate,
                int start_mode, output_file& fout) {
  const coupling_data& couplings = state.couplings;
  fout.write(line_rule);
  fout.write(section_title);
  fout.write(line_rule);
  fout.line("");
  fout.line("  NACME file " + std::to_string(istate) + "       :  " + couplings.fnacm.str());
  fout.write(file_type, {couplings.fnacm_type.trimmed()});
  fout.write(file_version, {couplings.fnacm_version.trimmed()});
  fout.write(energy, {couplings.e_vert, au_to_ev * couplings.e_vert, au_to_cm * couplings.e_vert});
  fout.line("");

  fout.write(field_title);
  fout.write(column_title);
  fout.line("");
  print_atoms(state.atoms, couplings.tranele, couplings.tranele, fout);
  fout.line("");
  fout.write(double_rule);
  fout.line("");

  fout.write(x_title);
  fout.write(x_meaning_1);
  fout.write(x_meaning_2);
  fout.write(column_title);
  fout.line("");
  print_atoms(state.atoms, before.x, after.x, fout);
  fout.line("");
  fout.write(x_norm_rule);
  fout.write(x_norm, {before.x_norm, after.x_norm});
  fout.write(x_end);
  fout.line("");

  fout.write(q_title);
  fout.write(q_meaning);
  fout.write(column_title);
  fout.line("");
  print_atoms(state.atoms, before.xq, after.xq, fout);
  fout.line("");
  fout.write(line_rule);
  fout.write(q_norm, {before.xq_norm, after.xq_norm});
  fout.write(double_rule);
  fout.line("");

  fout.write(mode_title);
  fout.write(column_title);
  fout.line("");
  fout.write(mode_heads, {"m", "n", "freq(cm-1)", "nacme_L(au)"});
  fout.line("");
  for (int i = start_mode; i <= state.atoms.n3; ++i) {
    fout.write(mode_row, {i, i - external_modes, au_to_cm * state.modes.freq(i), before.q(i), after.q(i)});
  }
  fout.line("");
  fout.write(line_rule);
  fout.write(mode_norm, {before.q_norm, after.q_norm});
  fout.write(double_rule);
  fout.line("");
  fout.write(line_rule);
}

}  // namespace vbn
