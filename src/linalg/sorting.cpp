// Index sorts, and the routines that put an array into the order of an index.
#include "linalg/sorting.hpp"  // for dorder, indexx, sort_array_d, sort_matrix

#include <algorithm>
#include <array>
#include <utility>

#include "text/output_file.hpp"  // for tell_free
#include "text/stop.hpp"         // for stop

namespace vbn {
namespace {

constexpr int nstack = 50;
constexpr int longest_insertion = 7;  // longest piece that straight insertion sorts

}  // namespace

void indexx(std::span<const double> arr, array1<int>& indx) {
  const int n = static_cast<int>(arr.size());
  indx = array1<int>(n);
  for (int j = 1; j <= n; ++j) indx(j) = j;
  const auto key = [&](int place) { return arr[offset(indx(place), n)]; };
  const auto put_in_order = [&](int low, int high) {
    if (key(low) > key(high)) std::swap(indx(low), indx(high));
  };

  std::array<std::pair<int, int>, nstack / 2> stack;  // pieces still to be sorted, two entries each
  std::size_t held = 0;
  int l = 1;
  int ir = n;
  while (true) {
    if (ir - l < longest_insertion) {
      for (int j = l + 1; j <= ir; ++j) {
        const int taken = indx(j);
        const double a = key(j);
        int i = j - 1;
        for (; i >= l && !(key(i) <= a); --i) indx(i + 1) = indx(i);
        indx(i + 1) = taken;
      }
      if (held == 0) return;
      --held;
      l = stack[held].first;
      ir = stack[held].second;
      continue;
    }
    std::swap(indx((l + ir) / 2), indx(l + 1));
    put_in_order(l, ir);
    put_in_order(l + 1, ir);
    put_in_order(l, l + 1);
    int i = l + 1;
    int j = ir;
    const int pivot = indx(l + 1);
    const double a = key(l + 1);
    while (true) {
      do ++i;
      while (key(i) < a);
      do --j;
      while (key(j) > a);
      if (j < i) break;
      std::swap(indx(i), indx(j));
    }
    indx(l + 1) = indx(j);
    indx(j) = pivot;
    if (held == stack.size()) {
      tell_free({"NSTACK too small in indexx"});
      tell_free({"Stop"});
      stop();
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
