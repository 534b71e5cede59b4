// Vectors of three components.
#include "linalg/vector3.hpp"  // for vector3

#include <algorithm>

namespace vbn {

double dot(const vector3& a, const vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

vector3 v3_cross(const vector3& v1, const vector3& v2) {
  return {v1[1] * v2[2] - v1[2] * v2[1], v1[2] * v2[0] - v1[0] * v2[2], v1[0] * v2[1] - v1[1] * v2[0]};
}

void make_right_handed(array2<double>& z) {
  const vector3 third = v3_cross({z(1, 1), z(2, 1), z(3, 1)}, {z(1, 2), z(2, 2), z(3, 2)});
  std::ranges::copy(third, z.column(3).begin());
}

}  // namespace vbn
