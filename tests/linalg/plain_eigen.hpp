// The published Householder and QL routines written out loop by loop, which the fast ones must match.
#pragma once

#include "linalg/array.hpp"  // for array1, array2

namespace vbn::plain {

// The arguments of vbn::tred2e and vbn::tql2e.
void tred2e(const array2<double>& a, array1<double>& d, array1<double>& e, array2<double>& z);
void tql2e(array1<double>& d, array1<double>& e, array2<double>& z, int& ierr);

}  // namespace vbn::plain
