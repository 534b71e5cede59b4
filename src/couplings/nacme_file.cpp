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

constexpr double root_half = 0.7071067811865475;       // 1/sqrt(2)
constexpr double atomic_time_in_s = 2.4188843265e-17;  // s, atomic unit of time

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

void write_row(output_file& file, int i, double energy, double w, const text<6>& irrep, double nacme) {
  const double nacm_bf_q1 = nacme;
  const double nacm_bf_q = nacm_bf_q1 / std::sqrt(std::abs(w));
  const double nacm_af_q = energy * nacm_bf_q;
  const double nacm_lin = root_half * (w / energy) * nacm_af_q;
  const double ratio = nacm_af_q / energy;
  const double nacm_jpca = ratio * ratio * w;
  file.write(mode_row,
             {i, i - external_modes, irrep.trimmed(), au_to_cm * w, nacm_bf_q1, nacm_bf_q, nacm_af_q,
              std::abs(au_to_cm * nacm_af_q), std::abs(au_to_ev * nacm_af_q), std::abs(nacm_lin) * au_to_cm,
              std::abs(nacm_jpca) * au_to_cm, std::abs(nacm_jpca) / atomic_time_in_s});
}

// Writes the table of all modes: `freq` (n3) in atomic units, `irrep` and `nacme` (n3) in the order of the
// rows. `nacm_lin` and `nacm_jpca` are the linear coupling and the rate factor of internal conversion.
void write_nacme(std::string_view fname, double energy, const array1<double>& freq,
                 const array1<text<6>>& irrep, const array1<double>& nacme) {
  output_file file{std::string(fname)};
  file.line("");
  file.write(number_of_modes, {"N3:", freq.size()});
  file.line("");
  file.line(" Energy Difference at present geometry:");
  file.line("");
  file.write(energies, {energy, au_to_ev * energy, au_to_cm * energy});
  file.line(explanation);
  file.write(column_heads,
             {"m", "n", "irrep", "freq(cm-1)", "nacm_before(au)", "nacm_before(1)", "nacm_after(au)",
              "nacm_after(cm-1)", "nacm_after(eV)", "nacm_lin(cm-1)", "nacm_jpca(cm-1)", "nacm_jpca(s-1)"});
  file.line("");
  for (int i = 1; i <= freq.size(); ++i) write_row(file, i, energy, freq(i), irrep(i), nacme(i));
  file.line(" End");
  file.close();
}

}  // namespace

void get_nacme_n3(const array1<states>& state, std::string_view fname) {
  for (const states& each : state) {
    if (!each.couplings.ifnac) continue;
    const nacme_forms own = proj_nacm(each.couplings.nacme_x, each.atoms, each.modes.cm, 1);
    const int n3 = each.atoms.n3;
    array1<double> freq(n3);
    array1<text<6>> irrep(n3);
    array1<double> nacme(n3);
    for (int i = 1; i <= n3; ++i) {
      const int j = each.modes.order(i);
      freq(i) = each.modes.freq(j);
      irrep(i) = each.modes.irrep(j);
      nacme(i) = own.q(j);
    }
    write_nacme(std::string(trim(fname)) + ".nac", each.couplings.e_vert, freq, irrep, nacme);
  }
}

}  // namespace vbn
