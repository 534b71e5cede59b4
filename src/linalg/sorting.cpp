// Index sorts, and the routines that put an array into the order of an index.
#include "linalg/sorting.hpp"  // for dorder, indexx, sort_array_d, sort_matrix

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "text/messages.hpp"  // for free_line
#include "text/stop.hpp"      // for stop_printed

namespace vbn {
namespace {

constexpr int nstack = 50;
constexpr int longest_insertion = 7;  // longest piece that straight insertion sorts

// The index of an array while its places are sorted piece by piece.
class index_sort {
 public:
  index_sort(std::span<const double> arr, array1<int>& indx) : arr_(arr), indx_(indx) {}

  // Straight insertion of the places l to ir.
  void insert(int l, int ir) {
    for (int j = l + 1; j <= ir; ++j) {
      const int taken = indx_(j);
      const double a = key(j);
      int i = j - 1;
      for (; i >= l && !(key(i) <= a); --i) indx_(i + 1) = indx_(i);
      indx_(i + 1) = taken;
    }
  }

  // Divides the places l to ir about the median of the first, middle and last: the keys of l to j-1 are not
  // above it and those of i to ir not below it. Returns j and i.
  std::pair<int, int> divide(int l, int ir) {
    std::swap(indx_((l + ir) / 2), indx_(l + 1));
    put_in_order(l, ir);
    put_in_order(l + 1, ir);
    put_in_order(l, l + 1);
    int i = l + 1;
    int j = ir;
    const int pivot = indx_(l + 1);
    const double a = key(l + 1);
    while (true) {
      do ++i;
      while (key(i) < a);
      do --j;
      while (key(j) > a);
      if (j < i) break;
      std::swap(indx_(i), indx_(j));
    }
    indx_(l + 1) = indx_(j);
    indx_(j) = pivot;
    return {j, i};
  }

 private:
  double key(int place) const { return arr_[offset(indx_(place), indx_.size())]; }
  void put_in_order(int low, int high) {
    if (key(low) > key(high)) std::swap(indx_(low), indx_(high));
  }

  std::span<const double> arr_;
  array1<int>& indx_;
};

}  // namespace

void indexx(std::span<const double> arr, array1<int>& indx) {
  const int n = static_cast<int>(arr.size());
  indx = array1<int>(n);
  std::iota(indx.begin(), indx.end(), 1);
  index_sort sort(arr, indx);

  std::array<std::pair<int, int>, nstack / 2> stack;  // pieces still to be sorted, two entries each
  std::size_t held = 0;
  int l = 1;
  int ir = n;
  while (true) {
    if (ir - l < longest_insertion) {
      sort.insert(l, ir);
      if (held == 0) return;
      --held;
      l = stack[held].first;
      ir = stack[held].second;
      continue;
    }
    const auto [j, i] = sort.divide(l, ir);
    if (held == stack.size()) {
      stop_printed(free_line({"NSTACK too small in indexx"}) + free_line({"Stop"}));
    }
    if (ir - i + 1 >= j - l) {
      stack[held++] = {i, ir};
      ir = j - 1;
    } else {
      stack[held++] = {l, j - 1};
      l = i;
    }
  }
}

void dorder(std::span<const double> arr, array1<int>& indx, int ntype) {
  indexx(arr, indx);
  if (ntype == -1) std::reverse(indx.begin(), indx.end());
}

void sort_array_d(array1<double>& a, const array1<int>& indx) {
  const array1<double> from = a;
  for (int i = 1; i <= indx.size(); ++i) a(i) = from(indx(i));
}

void sort_matrix(array2<double>& a, const array1<int>& indx) {
  const array2<double> from = a;
  for (int i = 1; i <= indx.size(); ++i) std::ranges::copy(from.column(indx(i)), a.column(i).begin());
}

}  // namespace vbn
