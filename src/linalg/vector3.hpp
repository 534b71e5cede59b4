// Vectors of three components.
#pragma once

#include <array>

#include "linalg/array.hpp"  // for array2

namespace vbn {

using vector3 = std::array<double, 3>;

double dot(const vector3& a, const vector3& b);

// v1 x v2.
vector3 v3_cross(const vector3& v1, const vector3& v2);

// Makes the axes in the columns of z (3,3) right-handed: the third becomes the cross product of the others.
void make_right_handed(array2<double>& z);

}  // namespace vbn
