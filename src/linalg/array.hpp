// Arrays with indices from 1, column-major, each the owner of its memory.
#pragma once

#include <cstddef>
#include <span>
#include <vector>
#ifdef VBN_RANGE_CHECKS
#include <cstdio>
#include <cstdlib>
#endif

namespace vbn {

// Offset of index i of 1..n. In the debug and sanitizer builds an index out of range ends the process; the
// release build does not check.
inline std::size_t offset(int i, [[maybe_unused]] int n) {
#ifdef VBN_RANGE_CHECKS
  if (i < 1 || i > n) {
    std::fprintf(stderr, "array index %d is outside 1..%d\n", i, n);
    std::abort();
  }
#endif
  return static_cast<std::size_t>(i - 1);
}

// A logical value in an array (std::vector packs bool).
using bool_ = unsigned char;

// a(i), i = 1..n.
template <class T>
class array1 {
 public:
  array1() = default;
  explicit array1(int n, const T& value = T{}) : n_(n), held_(static_cast<std::size_t>(n), value) {}

  T& operator()(int i) { return held_[offset(i, n_)]; }
  const T& operator()(int i) const { return held_[offset(i, n_)]; }

  int size() const { return n_; }
  T* data() { return held_.data(); }
  const T* data() const { return held_.data(); }
  std::span<T> span() { return held_; }
  std::span<const T> span() const { return held_; }
  auto begin() { return held_.begin(); }
  auto begin() const { return held_.begin(); }
  auto end() { return held_.end(); }
  auto end() const { return held_.end(); }

  bool operator==(const array1&) const = default;

 private:
  int n_ = 0;
  std::vector<T> held_;
};

// a(i,j), i = 1..rows fastest, j = 1..cols.
template <class T>
class array2 {
 public:
  array2() = default;
  array2(int rows, int cols, const T& value = T{})
      : rows_(rows),
        cols_(cols),
        held_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols), value) {}

  T& operator()(int i, int j) { return held_[at(i, j)]; }
  const T& operator()(int i, int j) const { return held_[at(i, j)]; }

  int rows() const { return rows_; }
  int cols() const { return cols_; }
  T* data() { return held_.data(); }
  const T* data() const { return held_.data(); }
  std::span<T> span() { return held_; }
  std::span<const T> span() const { return held_; }
  // Column j as a view of `rows` elements, with indices from 0 as in every span.
  std::span<T> column(int j) {
    return std::span<T>(held_).subspan(offset(j, cols_) * row_count(), row_count());
  }
  std::span<const T> column(int j) const {
    return std::span<const T>(held_).subspan(offset(j, cols_) * row_count(), row_count());
  }

  bool operator==(const array2&) const = default;

 private:
  std::size_t row_count() const { return static_cast<std::size_t>(rows_); }
  std::size_t at(int i, int j) const { return offset(i, rows_) + row_count() * offset(j, cols_); }

  int rows_ = 0;
  int cols_ = 0;
  std::vector<T> held_;
};

// a(i,j,k), i fastest.
template <class T>
class array3 {
 public:
  array3() = default;
  array3(int n1, int n2, int n3, const T& value = T{})
      : n1_(n1),
        n2_(n2),
        n3_(n3),
        held_(static_cast<std::size_t>(n1) * static_cast<std::size_t>(n2) * static_cast<std::size_t>(n3),
              value) {}

  T& operator()(int i, int j, int k) { return held_[at(i, j, k)]; }
  const T& operator()(int i, int j, int k) const { return held_[at(i, j, k)]; }

  int extent1() const { return n1_; }
  int extent2() const { return n2_; }
  int extent3() const { return n3_; }
  T* data() { return held_.data(); }
  const T* data() const { return held_.data(); }
  std::span<T> span() { return held_; }
  std::span<const T> span() const { return held_; }

  bool operator==(const array3&) const = default;

 private:
  std::size_t at(int i, int j, int k) const {
    return offset(i, n1_) +
           static_cast<std::size_t>(n1_) * (offset(j, n2_) + static_cast<std::size_t>(n2_) * offset(k, n3_));
  }

  int n1_ = 0;
  int n2_ = 0;
  int n3_ = 0;
  std::vector<T> held_;
};

}  // namespace vbn
