// Index sorts, and the routines that put an array into the order of an index.
#pragma once

#include <span>
#include <string_view>

#include "linalg/array.hpp"     // for array1, array2
#include "text/fixed_text.hpp"  // for text

namespace vbn {

// indx (n) such that arr(indx(1..n)) increases; with ntype = -1 the same index in reverse, so that it
// decreases. The order of equal keys is not defined, but always the same. Quicksort with the median of three
// and straight insertion for short pieces (Hoare 1962, Sedgewick 1978). Stops the run when the stack of 50
// entries overflows; since the shorter piece is sorted first, this cannot happen below 2^25 elements.
void dorder(std::span<const double> arr, array1<int>& indx, int ntype);

// `dorder` in increasing order.
void indexx(std::span<const double> arr, array1<int>& indx);

// a(i) := a(indx(i)) for the i of indx.
void sort_array_d(array1<double>& a, const array1<int>& indx);

// The same for texts.
template <std::size_t length>
void sort_array_a(array1<text<length>>& a, const array1<int>& indx) {
  const array1<text<length>> from = a;
  for (int i = 1; i <= indx.size(); ++i) a(i) = from(indx(i));
}

// The same for columns: a(:,i) := a(:,indx(i)).
void sort_matrix(array2<double>& a, const array1<int>& indx);

}  // namespace vbn
