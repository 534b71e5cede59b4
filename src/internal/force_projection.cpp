// Projection of the force constants on the space of the internal coordinates.
#include "internal/force_projection.hpp"  // for get_proj_f0

#include "linalg/matmul.hpp"  // for matmul

namespace vbn {

void get_proj_f0(states& state, bool proj_f0) {
  if (!proj_f0) return;
  const array2<double>& b = state.bm;
  const array2<double> internal = matmul(matmul(b, state.fc), b, op::plain, op::transposed);
  state.fc = matmul(matmul(b, internal, op::transposed), b);
}

}  // namespace vbn
