// Compiles the inner loops of the eigensolver for each vector width and says which the processor can run.
//
// Each width has its own namespace: otherwise the linker would merge functions of the same name and use one
// for all widths. For the same reason no template of the standard library is instantiated inside. g++ (from
// 12, which has __builtin_shufflevector) and clang each have their own pragma for the instructions of a
// namespace, and ignore the other's.
#include "linalg/lane_kernels.hpp"  // for lane_kernels

#include <cstring>

namespace vbn {
namespace {

constexpr int block = 4;  // columns that the reduction processes together

namespace width2 {  // what every processor has
constexpr std::ptrdiff_t width = 2;
constexpr int group = 4;  // registers of lanes that `wave` holds for each sweep
constexpr int waves = 2;  // sweeps in progress at once
using lanes = double __attribute__((vector_size(width * sizeof(double))));
void transpose(lanes* a) {
  const lanes first = a[0];
  a[0] = __builtin_shufflevector(first, a[1], 0, 2);
  a[1] = __builtin_shufflevector(first, a[1], 1, 3);
}
#include "linalg/strip_kernels.inc"     // for the three kernels over strips
#include "linalg/reduction_kernel.inc"  // for update_and_multiply
}  // namespace width2

#ifdef __x86_64__
#ifdef __clang__
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif
namespace width4 {
constexpr std::ptrdiff_t width = 4;
constexpr int group = 4;
constexpr int waves = 2;
using lanes = double __attribute__((vector_size(width * sizeof(double))));
void transpose(lanes* a) {
  const lanes low01 = __builtin_shufflevector(a[0], a[1], 0, 4, 2, 6);
  const lanes high01 = __builtin_shufflevector(a[0], a[1], 1, 5, 3, 7);
  const lanes low23 = __builtin_shufflevector(a[2], a[3], 0, 4, 2, 6);
  const lanes high23 = __builtin_shufflevector(a[2], a[3], 1, 5, 3, 7);
  a[0] = __builtin_shufflevector(low01, low23, 0, 1, 4, 5);
  a[1] = __builtin_shufflevector(high01, high23, 0, 1, 4, 5);
  a[2] = __builtin_shufflevector(low01, low23, 2, 3, 6, 7);
  a[3] = __builtin_shufflevector(high01, high23, 2, 3, 6, 7);
}
#include "linalg/strip_kernels.inc"     // for the three kernels over strips
#include "linalg/reduction_kernel.inc"  // for update_and_multiply
}  // namespace width4
#ifdef __clang__
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#ifdef __clang__
#pragma clang attribute push(__attribute__((target("avx512f"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx512f")
#endif
namespace width8 {  // the strips only: in the reduction, transposing wider tiles costs more than it gains
constexpr std::ptrdiff_t width = 8;
constexpr int group = 2;
constexpr int waves = 3;
using lanes = double __attribute__((vector_size(width * sizeof(double))));
#include "linalg/strip_kernels.inc"  // for the three kernels over strips
}  // namespace width8
#ifdef __clang__
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif
#endif

constexpr lane_kernels all_kernels[] = {
    {width2::update_and_multiply, width2::multiply_strip, width2::update_and_multiply_strip,
     width2::rotate_strip},
#ifdef __x86_64__
    {width4::update_and_multiply, width4::multiply_strip, width4::update_and_multiply_strip,
     width4::rotate_strip},
    {width4::update_and_multiply, width8::multiply_strip, width8::update_and_multiply_strip,
     width8::rotate_strip},
#endif
};

}  // namespace

std::span<const lane_kernels> available_kernels() {
  const std::span<const lane_kernels> kernels(all_kernels);
#ifdef __x86_64__
  if (!__builtin_cpu_supports("avx2")) return kernels.first(1);
  if (!__builtin_cpu_supports("avx512f")) return kernels.first(2);
#endif
  return kernels;
}

}  // namespace vbn
