// Replaces every element by the signed value of its symmetry-unique representative.
#include "symmetry/enforcement.hpp"  // for get_enforce_symm

#include <cmath>
#include <string>
#include <utility>

#include "frame/inertial.hpp"     // for get_inertial
#include "frame/rotation.hpp"     // for set_sym_matrix
#include "molecule/geometry.hpp"  // for root_mean_square_of_coordinates
#include "text/fixed_text.hpp"    // for text
#include "text/layout.hpp"        // for layout
#include "text/messages.hpp"      // for messages, lines_of
#include "text/stop.hpp"          // for stop_printed

namespace vbn {

namespace {

// The representative of coordinate ix of atom ia, and its sign.
struct signed_coordinate {
  int atom;
  int coordinate;
  int sign;
};

signed_coordinate representative_of(const array3<int>& id3, int ix, int ia) {
  return {id3(1, ix, ia), id3(2, ix, ia), id3(3, ix, ia)};
}

// Ends the run when the root-mean-square change dx is above tol.
void stop_if_changed(double dx, double tol) {
  if (!(dx > tol)) return;
  stop_printed(lines_of(layout(R"((2x,"tol = ", f15.7))"), {tol}) +
               lines_of(layout(R"((2x,"dx  = ", f15.7))"), {dx}) +
               lines_of(layout(R"((2x,"dx > tol, fs is not the same as f0, stop!"))")));
}

}  // namespace

void set_mirror(array2<double>& x, array2<double>& fc, const array1<bool_>& mirror, double tol,
                const messages& say) {
  const int n = x.cols();
  const auto on_plane = [&](int p, int i) { return std::abs(x(p, i)) < tol; };
  for (int p = 1; p <= 3; ++p)
    for (int i = 1; mirror(p) && i <= n; ++i)
      if (on_plane(p, i)) x(p, i) = 0.0;

  const layout kept(R"x(("Set mirror fc(",i6," ,",i6," ) = ",f15.7," > tol(",f15.7," )"))x");
  for (int p = 1; p <= 3; ++p)
    for (int k1 = 1; mirror(p) && k1 <= 3 * n; ++k1) {
      const int i1 = (k1 + 2) / 3;
      const int j1 = k1 - 3 * (i1 - 1);
      if (!on_plane(p, i1)) continue;
      for (int i2 = 1; i2 <= n; ++i2)
        for (int j2 = 1; on_plane(p, i2) && j2 <= 3; ++j2) {
          if ((j1 == p) == (j2 == p)) continue;
          const int k2 = 3 * (i2 - 1) + j2;
          if (std::abs(fc(k1, k2)) > tol) {
            say.tell(kept, {k1, k2, fc(k1, k2), tol});
          } else {
            fc(k1, k2) = 0.0;
          }
        }
    }
}

void set_axis(const symmetry_search& found, const array1<bool_>& mirror, array2<double>& x,
              array2<double>& fc, double tol, const messages& say) {
  const int n = x.cols();
  int kept = 0;
  for (int p = op_e + 1; p <= op_i; ++p) {
    bool on_planes = false;  // the axis or the centre is on mirror planes, which have treated its atoms
    for (int a = 1; a <= 3; ++a) on_planes = on_planes || (mirror(a) && symm_op(a, p) < 0);
    if (!found.op(p) || on_planes) continue;
    const auto in_place = [&](int i) { return found.jreln(i, p) == i; };
    for (int i = 1; i <= n; ++i) {
      if (!in_place(i)) continue;
      for (int a = 1; a <= 3; ++a)
        if (symm_op(a, p) < 0) x(a, i) = 0.0;
      for (int j = 1; j <= n; ++j)
        for (int a = 1; in_place(j) && a <= 3; ++a)
          for (int b = 1; b <= 3; ++b) {
            if (symm_op(a, p) == symm_op(b, p)) continue;
            double& element = fc(3 * (j - 1) + b, 3 * (i - 1) + a);
            if (std::abs(element) > tol) {
              ++kept;
            } else {
              element = 0.0;
            }
          }
    }
  }
  if (kept > 0)
    say.warn(
        std::to_string(kept) +
        " force constants between motions along an axis of rotation and across it are above symm_tol and "
        "are kept");
}

void get_array3(const array3<int>& id3, array2<double>& v0, double tol, const messages& say) {
  const layout changed(R"(("get_array3: ", 4i4, 4f15.7))");
  const int na = v0.cols();
  array2<double> vs(3, na);
  for (int ia = 1; ia <= na; ++ia)
    for (int ix = 1; ix <= 3; ++ix) {
      const auto [ja, jx, sg] = representative_of(id3, ix, ia);
      vs(ix, ia) = sg * v0(jx, ja);
      const double s = std::abs(v0(ix, ia) - vs(ix, ia));
      if (s > tol) say.tell(changed, {ia, ix, ja, jx, v0(ix, ia), v0(jx, ja), vs(ix, ia), s});
    }
  stop_if_changed(root_mean_square_of_coordinates(v0, vs), tol);
  v0 = vs;
}

void get_array3s(const array3<int>& id3, array2<double>& v0, double tol) {
  const int na = v0.cols();
  bool lsame = true;
  bool ldiff = true;
  for (int ia = 1; ia <= na; ++ia)
    for (int ix = 1; ix <= 3; ++ix) {
      const auto [ja, jx, sg] = representative_of(id3, ix, ia);
      if (ia == ja) continue;
      if (std::abs(v0(ix, ia) - sg * v0(jx, ja)) > tol) lsame = false;
      if (std::abs(v0(ix, ia) + sg * v0(jx, ja)) > tol) ldiff = false;
    }
  if (!lsame && !ldiff) return;
  const int isym = lsame ? 1 : -1;

  array2<double> vs(3, na);
  for (int ia = 1; ia <= na; ++ia)
    for (int ix = 1; ix <= 3; ++ix) {
      const auto [ja, jx, sg] = representative_of(id3, ix, ia);
      vs(ix, ia) = (ia == ja ? sg : sg * isym) * v0(jx, ja);
    }
  stop_if_changed(root_mean_square_of_coordinates(v0, vs), tol);
  v0 = vs;
}

void get_array9(const symmetry_search& found, array2<double>& f0, double tol, const messages& say) {
  const layout changed(R"(("get_array9:", 4(i4,2x), 4x, 4(2i4,2x), 4x, i4, 4f15.7))");
  const int n3 = f0.rows();
  array2<double> fs(n3, n3);
  double dx = 0.0;
  for (int ii = 1; ii <= n3; ++ii)
    for (int jj = 1; jj <= n3; ++jj) {
      const int ia = (ii + 2) / 3;
      const int ix = ii - 3 * (ia - 1);
      const int ja = (jj + 2) / 3;
      const int jx = jj - 3 * (ja - 1);
      const auto [ka, kx, la, lx, sg] = id9(found, jx, ja, ix, ia);
      const int kk = 3 * (ka - 1) + kx;
      const int ll = 3 * (la - 1) + lx;
      fs(jj, ii) = sg * f0(ll, kk);
      const double s = (fs(jj, ii) - f0(jj, ii)) * (fs(jj, ii) - f0(jj, ii));
      dx += s;
      if (std::sqrt(s) > tol)
        say.tell(changed,
                 {ii, jj, kk, ll, jx, ja, ix, ia, lx, la, kx, ka, sg, s, fs(jj, ii), f0(jj, ii), f0(ll, kk)});
    }
  stop_if_changed(std::sqrt(dx / n3 / n3), tol);
  f0 = fs;
  set_sym_matrix(f0);
}

void get_enforce_symm(bool enforce_symm, double symm_tol, states& state, const messages& say) {
  const symmetry_search found = point_group1(state.atoms, symm_tol, state.symmetry, say);
  if (!enforce_symm || state.symmetry.new_pgrp == text<6>("C1")) return;
  const symmetry_data& symmetry = state.symmetry;
  array2<double>& x = state.atoms.x;
  array2<double> fc = state.force.fc();
  set_mirror(x, fc, symmetry.mirror, symm_tol, say);
  set_axis(found, symmetry.mirror, x, fc, symm_tol, say);
  get_array3(symmetry.id3, x, symm_tol, say);
  get_array9(found, fc, symm_tol, say);
  if (state.couplings.ifnac) {
    get_array3(symmetry.id3, state.couplings.x_nac, symm_tol, say);
    get_array3s(symmetry.id3, state.couplings.nacme_x, symm_tol);
  }
  state.force.set_fc(state.atoms.sqtmass, std::move(fc));
  get_inertial(state, say);
}

}  // namespace vbn
