// Formulas of the six kinds of internal coordinate.
#include "internal/wilson_rows.hpp"  // for wilson_row

#include <algorithm>
#include <cmath>

namespace vbn {

namespace {

constexpr double least_sine = 0.0001;       // of k-j-l, and least cosine of the angle out of the plane
constexpr double least_component = 1.0e-6;  // of the fixed direction perpendicular to a linear bend
constexpr double diagonal = 0.7071067811865476;
constexpr vector3 xy_diagonal{diagonal, diagonal, 0.0};
constexpr vector3 z_axis{0.0, 0.0, 1.0};

double angle_of(double cosine) { return std::acos(std::clamp(cosine, -1.0, 1.0)); }

// The part of v perpendicular to the unit vector r.
vector3 across(const vector3& v, const vector3& r) {
  const double along = dot(r, v);
  return {v[0] - r[0] * along, v[1] - r[1] * along, v[2] - r[2] * along};
}

// Minus the sum of the derivatives of the other atoms: a shift of the whole molecule changes no coordinate.
vector3 balance(const vector3& a, const vector3& b, const vector3& c = {}) {
  return {-(a[0] + b[0] + c[0]), -(a[1] + b[1] + c[1]), -(a[2] + b[2] + c[2])};
}

}  // namespace

direction get_r_d(const vector3& x1, const vector3& x2) {
  const vector3 difference{x1[0] - x2[0], x1[1] - x2[1], x1[2] - x2[2]};
  const double d = std::sqrt(dot(difference, difference));
  return {{difference[0] / d, difference[1] / d, difference[2] / d}, d};
}

double sine_of(double cosine) { return std::sqrt(std::max(0.0, 1.0 - cosine * cosine)); }

wilson_row stretch_row(const direction& ij) {
  wilson_row row;
  row.z = ij.d;
  row.b[0] = ij.r;
  row.b[1] = {-ij.r[0], -ij.r[1], -ij.r[2]};
  return row;
}

wilson_row linear_bend_row(const direction& ij, const direction& kj) {
  vector3 u = across(xy_diagonal, ij.r);
  double length = std::sqrt(dot(u, u));
  if (length < least_component) {
    u = across(z_axis, ij.r);
    length = std::sqrt(dot(u, u));
  }
  wilson_row row;
  row.z = angle_of(dot(kj.r, ij.r));
  for (std::size_t a = 0; a < 3; ++a) {
    const double component = u[a] / length;
    row.b[0][a] = component / ij.d;
    row.b[2][a] = component / kj.d;
  }
  row.b[1] = balance(row.b[0], row.b[2]);
  return row;
}

wilson_row bend_row(const direction& ij, const direction& kj) {
  const double cosphi = dot(kj.r, ij.r);
  const double sinphi = sine_of(cosphi);
  wilson_row row;
  row.z = angle_of(cosphi);
  for (std::size_t a = 0; a < 3; ++a) {
    row.b[0][a] = (ij.r[a] * cosphi - kj.r[a]) / (ij.d * sinphi);
    row.b[2][a] = (kj.r[a] * cosphi - ij.r[a]) / (kj.d * sinphi);
  }
  row.b[1] = balance(row.b[0], row.b[2]);
  return row;
}

wilson_row dihedral_row(const direction& ij, const direction& kj, const direction& lk) {
  const double cosphi = dot(kj.r, ij.r);
  const double sinphi = sine_of(cosphi);
  const double cosph3 = -dot(lk.r, kj.r);
  const double sinph3 = sine_of(cosph3);
  const vector3 a = v3_cross(kj.r, ij.r);
  const vector3 b = v3_cross(kj.r, lk.r);

  wilson_row row;
  row.z = angle_of(dot(b, a) / (sinphi * sinph3));
  if (dot(kj.r, v3_cross(a, b)) < 0.0) row.z = -row.z;
  const double square = sinphi * sinphi;
  const double square3 = sinph3 * sinph3;
  for (std::size_t c = 0; c < 3; ++c) {
    row.b[0][c] = -a[c] / (ij.d * square);
    row.b[1][c] = a[c] * (kj.d - ij.d * cosphi) / (square * ij.d * kj.d) - b[c] * cosph3 / (square3 * kj.d);
    row.b[2][c] = a[c] * cosphi / (square * kj.d) - b[c] * (kj.d - lk.d * cosph3) / (square3 * lk.d * kj.d);
    row.b[3][c] = b[c] / (lk.d * square3);
  }
  return row;
}

bool improper_row(const direction& ij, const direction& kj, const direction& lj, wilson_row& row) {
  const double coskjl = dot(kj.r, lj.r);
  const double sinkjl = sine_of(coskjl);
  if (!(sinkjl > least_sine)) return false;
  const vector3 c = v3_cross(kj.r, lj.r);
  const double sinth = std::clamp(dot(ij.r, c) / sinkjl, -1.0, 1.0);
  const double costh = sine_of(sinth);
  if (!(costh > least_sine)) return false;

  const double tanth = sinth / costh;
  const vector3 lj_ij = v3_cross(lj.r, ij.r);
  const vector3 ij_kj = v3_cross(ij.r, kj.r);
  row.z = std::asin(sinth);
  for (std::size_t a = 0; a < 3; ++a) {
    row.b[0][a] = (c[a] / (costh * sinkjl) - ij.r[a] * tanth) / ij.d;
    row.b[2][a] =
        (lj_ij[a] / (costh * sinkjl) - (kj.r[a] - lj.r[a] * coskjl) * tanth / (sinkjl * sinkjl)) / kj.d;
    row.b[3][a] =
        (ij_kj[a] / (costh * sinkjl) - (lj.r[a] - kj.r[a] * coskjl) * tanth / (sinkjl * sinkjl)) / lj.d;
  }
  row.b[1] = balance(row.b[0], row.b[2], row.b[3]);
  return true;
}

}  // namespace vbn
