// Differences of the internal coordinates, in the non-redundant basis and along the modes.
#include "internal/displacement.hpp"  // for check_int_coord

#include <algorithm>
#include <cmath>
#include <string>

#include "internal/gmatrix.hpp"         // for times_sparse
#include "internal/int_coord.hpp"       // for kind_stretch
#include "internal/reorganisation.hpp"  // for proj_reorg_ene, mode_length
#include "linalg/matmul.hpp"            // for matmul
#include "text/fixed_text.hpp"          // for text
#include "text/layout.hpp"              // for layout
#include "text/stop.hpp"                // for stop, fail

namespace vbn {

namespace {

constexpr double two_pi = 6.283185307179586;
constexpr double large_change = 0.01;  // of a bond, angstrom

const layout changed_line(R"(("Changed internal coordinate", i6))");
const layout definitions_line("(4i6, 4x, 4i6)");
const layout definitions_error(R"(("Error: Definitions of internal coordinates are changed!"))");
const layout numbers_error(R"(("Error: numbers of internal coordinates are not same:", 2i6))");
const layout large_title(R"(("Large changes in internal coords:"))");
const layout large_line("(a,i5,i2,4(3x,a5),3f8.3)");
const layout atom_label("(a2,i3)");
const layout rule(R"((80("-")))");
const layout estimate_title(R"(("print xd and zd"))");
const layout estimate_heads("(a5,a7,a9,3a9)");
const layout estimate_line("(i5,i7,f9.4,3f9.5, 2(2x, 4i6) )");

// Tells coordinates that other atoms define in the other state, and stops on unequal numbers of them.
void compare_definitions(const states& s1, const states& s2) {
  const int nr = std::min(s1.nr, s2.nr);
  for (int i = 1; i <= nr; ++i)
    for (int j = 1; j <= 4; ++j)
      if (s1.intdef(j, i) != s2.intdef(j, i)) {
        tell(changed_line, {i});
        tell(definitions_line, {s1.intdef(1, i), s1.intdef(2, i), s1.intdef(3, i), s1.intdef(4, i),
                                s2.intdef(1, i), s2.intdef(2, i), s2.intdef(3, i), s2.intdef(4, i)});
        tell(definitions_error);
      }
  if (s1.nr != s2.nr) {
    tell(numbers_error, {s1.nr, s2.nr});
    stop();
  }
}

text<5> label(const states& state, int atom) {
  if (atom == 0) return "";
  std::string line;
  atom_label.write(line, {state.symbol(atom).trimmed(), atom});
  line.pop_back();  // the line's end
  return line;
}

// `zd` of both states, an angle brought back once from beyond half a turn; large changes of bonds to the log.
void set_differences(states& s1, states& s2, output_file& fout) {
  fout.write(large_title);
  s1.zd = s2.zd = array1<double>(s1.nr);
  for (int i = 1; i <= s1.nr; ++i) {
    double zd = s2.z(i) - s1.z(i);
    if (s1.scales(i) > 1.0) {
      if (zd > pi_value) zd -= two_pi;
      if (zd < -pi_value) zd += two_pi;
    }
    if (s1.iztype(i) == kind_stretch && std::abs(zd) > large_change)
      fout.write(large_line, {" zd", i, s1.iztype(i), label(s1, s1.intdef(1, i)), label(s1, s1.intdef(2, i)),
                              label(s1, s1.intdef(3, i)), label(s1, s1.intdef(4, i)), s1.z(i), s2.z(i), zd});
    s1.zd(i) = zd;
    s2.zd(i) = -zd;
  }
}

// The change of each coordinate to first order, B dx, beside the true one.
void print_linear_estimate(const states& s1, const states& s2, output_file& fout) {
  fout.write(rule);
  fout.write(estimate_title);
  fout.write(estimate_heads, {"nr", "iztype", "scale", "xd", "zd", "|xd-zd|"});
  for (int i = 1; i <= s1.nr; ++i) {
    double xd = 0.0;
    const auto row = s1.br.column(i);
    for (std::size_t j = 0; j < row.size(); ++j) xd += (s2.x.span()[j] - s1.x.span()[j]) * row[j];
    const double zzd = std::abs(std::abs(xd) * bohr_to_ang - std::abs(s1.zd(i)));
    fout.write(estimate_line, {i, s1.iztype(i), s1.scales(i), bohr_to_ang * xd, s1.zd(i), zzd,
                               s1.intdef(1, i), s1.intdef(2, i), s1.intdef(3, i), s1.intdef(4, i),
                               s2.intdef(1, i), s2.intdef(2, i), s2.intdef(3, i), s2.intdef(4, i)});
  }
}

// The first rows of a.
array2<double> top(const array2<double>& a, int rows) {
  array2<double> cut(rows, a.cols());
  for (int j = 1; j <= a.cols(); ++j)
    for (int i = 1; i <= rows; ++i) cut(i, j) = a(i, j);
  return cut;
}

// zd in the non-redundant coordinates of its state (nv).
array1<double> non_redundant(const states& state, int nv) {
  array1<double> sums(nv);
  for (int j = 1; j <= state.nr; ++j)
    for (int v = 1; v <= nv; ++v) sums(v) += state.ga(v, j) * state.zd(j);
  return sums;
}

// ga B M^-1/2 L: the modes L of `state` in the non-redundant coordinates whose `ga` is given (nv,n3).
array2<double> modes_through(const array2<double>& ga, const states& state, int nv) {
  array2<double> weighted_b(state.nr, state.n3);
  for (int i = 1; i <= state.nr; ++i)
    for (int k = 1; k <= state.n3; ++k) weighted_b(i, k) = state.br(k, i) / state.sqtmass(k);
  return matmul(times_sparse(top(ga, nv), weighted_b), state.cm);
}

// Every column to length 1. A column of zeros, a mode that moves no coordinate, stays as it is.
void normalise_columns(array2<double>& a) {
  for (int i = 1; i <= a.cols(); ++i) {
    double square = 0.0;
    for (const double component : a.column(i)) square += component * component;
    const double norm = std::sqrt(square);
    if (norm == 0.0) continue;
    for (double& component : a.column(i)) component /= norm;
  }
}

// The Duschinsky matrices of this route. ga B M^-1/2 of a state is its `bm`, so that `cmr2` serves for the
// modes in the state's own coordinates too.
void set_duschinsky(states& s1, states& s2, int nv) {
  s1.cmr2 = matmul(top(s1.bm, nv), s1.cm);
  s2.cmr2 = matmul(top(s2.bm, nv), s2.cm);
  s1.s_o = matmul(s1.cmr2, s2.cmr2, op::transposed, op::plain);
  s2.s_o = matmul(s2.cmr2, s1.cmr2, op::transposed, op::plain);
  s1.s_c = matmul(s1.cmr2, modes_through(s1.ga, s2, nv), op::transposed, op::plain);
  s2.s_c = matmul(s2.cmr2, modes_through(s2.ga, s1, nv), op::transposed, op::plain);
  normalise_columns(s1.s_c);
  normalise_columns(s2.s_c);
}

// Displacement zd along each mode, in root electron masses times angstrom.
array1<double> along_modes(const states& state, const array1<double>& zd) {
  array1<double> p(state.n3);
  for (int i = 1; i <= state.n3; ++i)
    for (int j = 1; j <= zd.size(); ++j) p(i) += zd(j) * state.cmr2(j, i);
  return p;
}

// In units of the mode's zero-point length.
array1<double> dimensionless(const states& state, const array1<double>& p) {
  array1<double> d0 = p;
  for (int i = 1; i <= state.n3; ++i) d0(i) /= mode_length(state, i);
  return d0;
}

// The results that follow from `d0_c`. A mode of no frequency has no finite length: its `d_c` is p itself.
void set_mode_results(states& state, const array1<double>& p) {
  const int n3 = state.n3;
  state.d_c = state.lam_c = state.hr_c = array1<double>(n3);
  state.lamt_c = 0.0;
  for (int i = 1; i <= n3; ++i) {
    const double length = mode_length(state, i);
    const double d0 = state.d0_c(i);
    state.d_c(i) = (std::isfinite(length) ? length * d0 : p(i)) / bohr_to_ang;
    state.lam_c(i) = d0 * d0 * state.freq(i) / 2.0;
    state.lamt_c += state.lam_c(i);
    state.hr_c(i) = d0 * d0 * 0.5;
  }
}

void take_signs_of_cartesian_route(states& state) {
  for (int i = 1; i <= state.n3; ++i)
    for (array1<double>* field : {&state.d_c, &state.d0_c, &state.hr_c}) {
      const double magnitude = std::abs((*field)(i));
      (*field)(i) = state.d_sign_cart(i) < 0.0 ? -magnitude : magnitude;
    }
}

}  // namespace

void check_int_coord(array1<states>& state, const input_data& input, output_file& fout) {
  states& s1 = state(1);
  states& s2 = state(2);
  const int nv = s1.nv;
  compare_definitions(s1, s2);
  if (s1.n3 != s2.n3)
    fail({"the states have " + std::to_string(s1.natom) + " and " + std::to_string(s2.natom) + " atoms",
          s2.ffreq.str(), 0, "", 0, "the same molecule in both states"});
  set_differences(s1, s2, fout);
  print_linear_estimate(s1, s2, fout);
  set_duschinsky(s1, s2, nv);
  proj_reorg_ene(state, input.proj_reorg);

  const array1<double> p1 = along_modes(s1, non_redundant(s1, nv));
  const array1<double> p2 = along_modes(s2, non_redundant(s2, nv));
  s1.d0_c = dimensionless(s1, p1);
  s2.d0_c = dimensionless(s2, p2);
  for (int i = 1; i <= s1.n3; ++i)
    if (s2.d0_c(i) * s1.d0_c(i) < 0.0) s2.d0_c(i) = -s2.d0_c(i);
  set_mode_results(s1, p1);
  set_mode_results(s2, p2);
  if (input.d_sign_same_to_cart) {
    take_signs_of_cartesian_route(s1);
    take_signs_of_cartesian_route(s2);
  }
}

}  // namespace vbn
