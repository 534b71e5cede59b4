// Rotations of vectors and force constants, and the symmetric part of a matrix.
#include "frame/rotation.hpp"  // for rotn, rot_fc

#include <cmath>
#include <utility>

namespace vbn {

namespace {

constexpr double smallest_term = 1.0e-300;  // a term below it counts as zero

}  // namespace

void rotn(const array2<double>& r, std::span<double> v) {
  for (std::size_t at = 0; at + 3 <= v.size(); at += 3) {
    double turned[3];
    for (int i = 1; i <= 3; ++i) {
      double sum = 0.0;
      for (int k = 1; k <= 3; ++k) sum += r(i, k) * v[at + static_cast<std::size_t>(k - 1)];
      turned[i - 1] = sum;
    }
    for (std::size_t i = 0; i < 3; ++i) v[at + i] = turned[i];
  }
}

void rot_fc(const array2<double>& vector, array2<double>& fc) {
  // Each element of a block is the sum of its nine terms R(ix,ix1) fc(ix1,jx1) R(jx,jx1) with jx1 running
  // fastest. Computing the first product outside of the loop over jx, and whole blocks in place, changes
  // neither the terms nor the order of the sum, and so keeps the bits.
  const int n = fc.rows() / 3;
  for (int jat = 1; jat <= n; ++jat) {
    for (int iat = 1; iat <= n; ++iat) {
      double block[3][3] = {};  // [jx][ix]
      for (int ix1 = 1; ix1 <= 3; ++ix1) {
        for (int jx1 = 1; jx1 <= 3; ++jx1) {
          const double element = fc(3 * (iat - 1) + ix1, 3 * (jat - 1) + jx1);
          for (int ix = 1; ix <= 3; ++ix) {
            const double left = vector(ix, ix1) * element;
            for (int jx = 1; jx <= 3; ++jx) {
              const double term = left * vector(jx, jx1);
              block[jx - 1][ix - 1] += std::abs(term) < smallest_term ? 0.0 : term;
            }
          }
        }
      }
      for (int jx = 1; jx <= 3; ++jx)
        for (int ix = 1; ix <= 3; ++ix) fc(3 * (iat - 1) + ix, 3 * (jat - 1) + jx) = block[jx - 1][ix - 1];
    }
  }
  set_sym_matrix(fc);
}

void rotate_force(const array2<double>& r, const array1<double>& sqtmass, force_constants& force) {
  array2<double> fc = fcm_to_fc(sqtmass, force.fcm());
  rot_fc(r, fc);
  force.set_fc(sqtmass, std::move(fc));
}

void set_sym_matrix(array2<double>& a) {
  for (int j = 1; j <= a.cols(); ++j) {
    for (int i = j + 1; i <= a.rows(); ++i) {
      a(i, j) = (a(j, i) + a(i, j)) / 2.0;
      a(j, i) = a(i, j);
    }
  }
}

}  // namespace vbn
