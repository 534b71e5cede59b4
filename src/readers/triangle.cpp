// Lower triangles in blocks of columns, and the matrix for force constants.
#include "readers/triangle.hpp"  // for the routines

#include <algorithm>
#include <cstdint>
#include <string>

#include "text/stop.hpp"  // for fail_in

namespace vbn {

array2<double> force_constant_matrix(const input_file& file, int natom) {
  const std::int64_t n3 = 3 * static_cast<std::int64_t>(natom);
  // Half a symmetric matrix, a digit and a blank a number.
  if (n3 * (n3 + 1) > static_cast<std::int64_t>(file.content().size())) {
    fail_in(file.name(),
            "the file is too short for the force constants of " + std::to_string(natom) + " atoms",
            std::to_string(n3 * (n3 + 1) / 2) + " force constants; the file may be incomplete");
  }
  return {static_cast<int>(n3), static_cast<int>(n3)};
}

void read_lower_blocks(array2<double>& a, int width, const std::function<void(int)>& heading,
                       const std::function<void(std::span<double>)>& row) {
  for (int ib = 1; ib <= a.cols(); ib += width) {
    heading(ib);
    for (int i = ib; i <= a.cols(); ++i) {
      const int count = std::min(i - ib + 1, width);
      row(a.column(i).subspan(static_cast<std::size_t>(ib - 1), static_cast<std::size_t>(count)));
    }
  }
}

void mirror_upper(array2<double>& a) {
  for (int i = 1; i <= a.rows(); ++i) {
    for (int j = 1; j < i; ++j) a(i, j) = a(j, i);
  }
}

}  // namespace vbn
