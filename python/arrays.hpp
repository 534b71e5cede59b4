// Texts and arrays of the library as those of Python.
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "linalg/array.hpp"     // for array1, array2
#include "text/fixed_text.hpp"  // for text
#include "text/stop.hpp"        // for run_end

namespace vbn::python {

namespace py = pybind11;

// Text for Python. File names may hold any bytes.
inline py::str decoded(std::string_view text) {
  return py::reinterpret_steal<py::str>(
      PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape"));
}

inline py::list decoded(const std::vector<std::string>& texts) {
  py::list list;
  for (const std::string& text : texts) list.append(decoded(text));
  return list;
}

template <std::size_t n>
py::list decoded(const array1<text<n>>& texts) {
  py::list list;
  for (const text<n>& each : texts) list.append(decoded(each.trimmed()));
  return list;
}

// Copies of arrays in C order, multiplied by the factor of their unit.
inline py::array_t<double> copied(std::span<const double> from, double unit = 1.0) {
  py::array_t<double> to(static_cast<py::ssize_t>(from.size()));
  double* next = to.mutable_data();
  for (const double element : from) *next++ = unit * element;
  return to;
}

inline py::array_t<double> copied(const array1<double>& from, double unit = 1.0) {
  return copied(from.span(), unit);
}

template <class T>
py::array_t<T> copied(const array2<T>& from, T unit = T{1}) {
  py::array_t<T> to({from.rows(), from.cols()});
  auto element = to.template mutable_unchecked<2>();
  for (int i = 0; i < from.rows(); ++i)
    for (int j = 0; j < from.cols(); ++j) element(i, j) = unit * from(i + 1, j + 1);
  return to;
}

inline py::array_t<double> transposed_copy(const array2<double>& from, double unit = 1.0) {
  return copied(from, unit).attr("T").attr("copy")().cast<py::array_t<double>>();
}

// Whole numbers that count from 0 in Python.
template <class Numbers>
py::array_t<int> counted_from_0(const Numbers& from) {
  py::array_t<int> to(static_cast<py::ssize_t>(from.span().size()));
  int* next = to.mutable_data();
  for (const int number : from.span()) *next++ = number - 1;
  return to;
}

// How a run ended, for the error that Python raises.
inline py::dict end_of(const run_end& end) {
  py::dict ended;
  ended["what"] = decoded(end.cause.what);
  ended["file"] = decoded(end.cause.file);
  ended["line"] = end.cause.line;
  ended["expected"] = decoded(end.cause.expected);
  ended["message"] = decoded(end.text + end.printed);
  return ended;
}

}  // namespace vbn::python
