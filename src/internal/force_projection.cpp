// Projection of the force constants on the space of the internal coordinates.
#include "internal/force_projection.hpp"  // for get_proj_f0

#include "linalg/matmul.hpp"  // for matmul

namespace vbn {

void get_proj_f0(const array2<double>& bm, force_constants& force) {
  const array2<double> internal = matmul(matmul(bm, force.fc()), bm, op::plain, op::transposed);
  force.set_projected_fc(matmul(matmul(bm, internal, op::transposed), bm));
}

}  // namespace vbn
