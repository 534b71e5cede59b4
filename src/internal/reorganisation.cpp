// Shares of the internal coordinates in the reorganisation energy, and their table.
#include "internal/reorganisation.hpp"  // for proj_reorg_ene

#include <algorithm>
#include <cmath>
#include <utility>

#include "linalg/matmul.hpp"       // for matmul
#include "linalg/sorting.hpp"      // for indexx
#include "molecule/constants.hpp"  // for au_to_cm, bohr_to_ang, first_vibration
#include "text/layout.hpp"         // for layout
#include "text/output_file.hpp"    // for output_file

namespace vbn {

namespace {

const layout atom_line("(i4,a8)");
const layout zd_line(R"_(("zd(i) = z2(i) - z1(i)      (Angstrom) "))_");
const layout rule("(132(1H-))");
const layout legend[] = {
    layout(R"(("Internal coordinate type"))"), layout(R"(("1: bond stretch"))"),
    layout(R"(("2: linear bend"))"),           layout(R"(("3: normal bend"))"),
    layout(R"(("4: proper dihedral angle"))"), layout(R"(("5: improper dihedral angle"))"),
    layout(R"(("6: proper torsion angle"))"),
};
const layout heads(R"((a6,a6,2x," |",a16," |",a9," |",a33," |",a33," ||",a13))");
const layout share_heads(R"((6x,6x,2x," |",16x," |",9x," |",3a11," |",3a11," ||",13x))");
const layout sum_line(R"((a6,6x,2x," |",16x," |",9x," |",3f11.4," |",3f11.4," ||",f13.4))");
const layout row_line(R"((i6,i6,2x," |",4i4," |",f9.4," |",3f11.4," |",3f11.4," ||",f13.4))");

// Force constants over the coordinates, cm-1 over the squared unit of the coordinate.
array2<double> force_constants_of(const non_redundant_basis& basis, const normal_modes& modes) {
  const int nr = basis.ga.cols();
  const int nmode = modes.freq.size() - first_vibration + 1;
  array2<double> ag(nr, basis.nv);
  array2<double> cmr2(basis.nv, nmode);
  for (int k = 1; k <= basis.nv; ++k) {
    for (int j = 1; j <= nr; ++j) ag(j, k) = basis.ga(k, j);
    for (int i = 1; i <= nmode; ++i) cmr2(k, i) = basis.cmr2(k, i + first_vibration - 1);
  }
  array2<double> gc = matmul(ag, cmr2);
  for (int i = 1; i <= nmode; ++i) {
    const int mode = i + first_vibration - 1;
    const double root = std::sqrt(std::abs(modes.freq(mode)) * au_to_cm) / mode_length(modes, mode);
    for (double& component : gc.column(i)) component *= root;
  }
  return matmul(gc, gc, op::plain, op::transposed);
}

reorganisation_shares split(const array2<double>& fc, const array1<double>& zd) {
  const int nr = zd.size();
  reorganisation_shares s{array1<double>(nr), array1<double>(nr), array1<double>(nr)};
  for (int j = 1; j <= nr; ++j) {
    for (int k = 1; k <= nr; ++k) (j == k ? s.xx : s.xy)(j) += 0.5 * fc(j, k) * zd(j) * zd(k);
    s.x(j) = s.xx(j) + s.xy(j);
    s.xx_tot += s.xx(j);
    s.xy_tot += s.xy(j);
    s.x_tot += s.x(j);
  }
  return s;
}

void write_sums(output_file& out, const reorganisation_shares& s1, const reorganisation_shares& s2) {
  out.write(sum_line,
            {"sum:", s1.xx_tot, s1.xy_tot, s1.x_tot, s2.xx_tot, s2.xy_tot, s2.x_tot, s1.x_tot + s2.x_tot});
}

}  // namespace

double mode_length(const normal_modes& modes, int i) {
  const double held = modes.zptlen(i);
  if (std::isfinite(held) && held > 0.0) return held;
  return bohr_to_ang * std::sqrt(1.0 / std::abs(modes.freq(i)));
}

void reverse_order(array1<int>& order) {
  const int n = order.size();
  for (int i = 1; i <= n / 2; ++i) std::swap(order(i), order(n + 1 - i));
}

reorganisation_table proj_reorg_ene(const array1<states>& state) {
  const internal_coordinates& first = state(1).internal;
  reorganisation_table table{split(force_constants_of(state(1).basis, state(1).modes), first.zd),
                             split(force_constants_of(state(2).basis, state(2).modes), first.zd),
                             array1<double>(first.nr)};
  for (int j = 1; j <= first.nr; ++j) table.total(j) = table.s1.x(j) + table.s2.x(j);
  return table;
}

void write_proj_reorg(const states& state, const reorganisation_table& table) {
  const internal_coordinates& internal = state.internal;
  const auto& [s1, s2, lam_tot] = table;
  array1<int> order(internal.nr);
  indexx(lam_tot.span(), order);
  reverse_order(order);

  output_file out("proj_reorg.dat");
  out.line("");
  for (int i = 1; i <= state.atoms.natom; ++i) out.write(atom_line, {i, state.atoms.symbol(i)});
  out.line("");
  out.write(zd_line);
  out.line("");
  out.write(rule);
  for (const layout& line : legend) out.write(line);
  out.write(rule);
  out.write(heads, {"n", "type", "int-def", "zd", "Reorganization energy 1 (cm-1)",
                    "Reorganization energy 2 (cm-1)", "Total (cm-1)"});
  out.write(share_heads, {"diag", "non-diag", "sum", "diag", "non-diag", "sum"});
  out.write(rule);
  write_sums(out, s1, s2);
  out.write(rule);
  for (int i = 1; i <= internal.nr; ++i) {
    const int k = order(i);
    out.write(row_line, {i, internal.iztype(k), internal.intdef(1, k), internal.intdef(2, k),
                         internal.intdef(3, k), internal.intdef(4, k), internal.zd(k), s1.xx(k), s1.xy(k),
                         s1.x(k), s2.xx(k), s2.xy(k), s2.x(k), lam_tot(k)});
  }
  out.write(rule);
  write_sums(out, s1, s2);
  out.close();
}

}  // namespace vbn
