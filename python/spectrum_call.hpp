// The call of vbn._core that calculates spectra from the arrays of an analysis.
#pragma once

#include <pybind11/pybind11.h>

namespace vbn::python {

// `analysis` holds the arrays of vbn.Analysis that a spectrum needs, `group` the text of a group &spectrum.
// The result holds the warnings in any case, and either what was computed or how the calculation ended.
pybind11::dict spectrum_of(const pybind11::dict& analysis, const pybind11::bytes& group);

}  // namespace vbn::python
