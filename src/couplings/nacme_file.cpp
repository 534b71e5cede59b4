// The file ".nac": its texts, units and rows.
#include "couplings/nacme_file.hpp"  // for the interface

#include <cmath>
#include <string>

#include "couplings/nacme_projection.hpp"  // for proj_nacm
#include "molecule/constants.hpp"          // for au_to_cm, au_to_ev, external_modes
#include "text/layout.hpp"                 // for layout
#include "text/output_file.hpp"            // for output_file
#include "text/words.hpp"                  // for trim

namespace vbn {

namespace {

constexpr double root_half = 0.7071067811865475;  // 1/sqrt(2)

const layout number_of_modes("(x,a6, i8)");
const layout energies(R"((  f15.10," a.u. = ",f15.10," eV = ",f15.8," cm-1"))");
const layout column_heads("(  2a6,a6,a12,8a18)");
const layout mode_row("(2i6,a6,f12.2,3f18.10,f18.2,f18.6, 2f18.8, es18.8)");

constexpr std::string_view explanation = R"(
 Derivative Coupling before scaling and after scaling

 STEP 1:  Read nacm from output file.
          nacm_x = < \Psi_b | \frac{ \parital H }{ \partial x_{i \alpha} | \Psi_a > / ( E_a - E_b )  (au)

 STEP 2:  Transform the coordinates form x to q.
          nacm_q = < \Psi_b | \frac{ \parital H }{ \partial q_{i \alpha} | \Psi_a > / ( E_a - E_b )  (au)
          where q_{i \alpha} = \sqrt(m_i) * x_{i \alpha}

 STEP 3:  Transform the coordinates form q to normal mode coordinates Q.
          nacm_q = < \Psi_b | \frac{ \parital H }{ \partial Q_j | \Psi_a > / ( E_a - E_b )  (au)

 STEP 4:  Transform the normal mode coordinates Q to dimensionless coordinates Q^\prime.
          nacm_q = < \Psi_b | \frac{ \parital H }{ \partial Q^\prime_j | \Psi_a > / ( E_a - E_b )  (au)
          where Q^\prime = Q * SQRT(w),    and w is the corresponding frequency.

     nacm_before(  au):   < \Psi_b | d/dQ \Psi_a >                                (  au)
     nacm_before(   1):   < \Psi_b | d/dQ \Psi_a >  / SQRT(w/hbar)                (   1)
     nacm_after (  au):   < \Psi_b | d/dQ \Psi_a > * ( E_a - E_b ) / SQRT(w/hbar) (  au)
     nacm_after (cm-1):   < \Psi_b | d/dQ \Psi_a > * ( E_a - E_b ) / SQRT(w/hbar) (cm-1)
)";

}  // namespace

nacme_table get_nacme_n3(const states& state) {
  const nacme_forms own = proj_nacm(state.couplings.nacme_x, state.atoms, state.modes.cm, 1);
  const int n3 = state.atoms.n3;
  nacme_table table{state.couplings.e_vert, array1<nacme_row>(n3)};
  for (int i = 1; i <= n3; ++i) {
    const int j = state.modes.order(i);
    nacme_row& row = table.rows(i);
    row.freq = state.modes.freq(j);
    row.irrep = state.modes.irrep(j);
    row.nacme = own.q(j);
    row.before = row.nacme / std::sqrt(std::abs(row.freq));
    row.after = table.e_vert * row.before;
    row.linear = root_half * (row.freq / table.e_vert) * row.after;
    const double ratio = row.after / table.e_vert;
    row.jpca = ratio * ratio * row.freq;
  }
  return table;
}

void write_nacme_n3(const nacme_table& table, std::string_view fname) {
  if (table.rows.size() == 0) return;
  const double energy = table.e_vert;
  output_file file(std::string(trim(fname)) + ".nac");
  file.line("");
  file.write(number_of_modes, {"N3:", table.rows.size()});
  file.line("");
  file.line(" Energy Difference at present geometry:");
  file.line("");
  file.write(energies, {energy, au_to_ev * energy, au_to_cm * energy});
  file.line(explanation);
  file.write(column_heads,
             {"m", "n", "irrep", "freq(cm-1)", "nacm_before(au)", "nacm_before(1)", "nacm_after(au)",
              "nacm_after(cm-1)", "nacm_after(eV)", "nacm_lin(cm-1)", "nacm_jpca(cm-1)", "nacm_jpca(s-1)"});
  file.line("");
  int i = 0;
  for (const nacme_row& row : table.rows) {
    ++i;
    file.write(mode_row, {i, i - external_modes, row.irrep.trimmed(), au_to_cm * row.freq, row.nacme,
                          row.before, row.after, std::abs(au_to_cm * row.after),
                          std::abs(au_to_ev * row.after), std::abs(row.linear) * au_to_cm,
                          std::abs(row.jpca) * au_to_cm, std::abs(row.jpca) / atomic_time_in_s});
  }
  file.line(" End");
  file.close();
}

}  // namespace vbn
