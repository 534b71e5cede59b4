// Vectors of three components.
#pragma once

#include <array>

namespace vbn {

using vector3 = std::array<double, 3>;

double dot(const vector3& a, const vector3& b);

// v1 x v2.
vector3 v3_cross(const vector3& v1, const vector3& v2);

}  // namespace vbn
