// The inner loops of the eigensolver, compiled for each vector width that a processor may have.
#pragma once

#include <cstddef>
#include <span>

namespace vbn {

// Lanes of a strip: the number of columns (or rows) of the transformation that are processed together.
// Element k of lane t of a strip is at k strip_lanes + t, both from 0. The strip of a matrix of 1500 rows
// fits into the second-level cache.
constexpr int strip_lanes = 16;

// A plane rotation.
struct rotation {
  double c = 1.0, s = 0.0;
};

// A QL sweep: rotations of the neighbouring columns i and i+1 for i = high-1 down to low, counted from 0. The
// rotation of column i is rotations[i].
struct sweep {
  int low, high;
  const rotation* rotations;
};

// The inner loops for one vector width. Each element undergoes the same operations in the same order for
// every width, and no product is contracted with a sum, so all widths give the same bits.
struct lane_kernels {
  // A step of the reduction, on the leading l x l part of the symmetric matrix a whose element (j,k), k <= j,
  // is w[j ld + k], all from 0: the update postponed from the step before, a(j,k) := a(j,k) - x(j) y(k) -
  // y(j) x(k), then p := a u, each sum in the order of its terms.
  void (*update_and_multiply)(int l, double* w, std::ptrdiff_t ld, const double* x, const double* y,
                              const double* u, double* p);

  // g(lane) := sum of u(k) strip(k,lane) over the first l elements.
  void (*multiply_strip)(int l, const double* u, const double* strip, double* g);

  // strip(k,lane) := strip(k,lane) - g(lane) v(k) for the first l elements, then `multiply_strip` for l+1.
  void (*update_and_multiply_strip)(int l, const double* v, const double* u, double* strip, double* g);

  // Applies the sweeps, one after the other, to the strip of rows: its element k is that of column k.
  void (*rotate_strip)(const sweep* sweeps, std::size_t count, double* strip);
};

// The kernels that this processor can run, the widest last.
std::span<const lane_kernels> available_kernels();

}  // namespace vbn
