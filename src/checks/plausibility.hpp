// Warnings about results that may not be reliable.
#pragma once

#include "linalg/array.hpp"     // for array1
#include "molecule/record.hpp"  // for states
#include "text/messages.hpp"    // for messages

namespace vbn {

// Each of these gives one warning for each problem, and changes no file and no exit status.

// After the files have been read: a Hessian in another frame than the geometry, or of a geometry that is not
// a stationary point; atoms of different elements in the two states.
void warn_of_files(const array1<states>& state, const messages& say);

// After the frequencies: a linear molecule, of which the tables leave out a vibration (only with
// `for_tables`), imaginary frequencies, more than six frequencies near zero.
void warn_of_modes(const array1<states>& state, bool for_tables, const messages& say);

// After the Duschinsky matrix: geometries far apart, or modes that do not resemble each other.
void warn_of_distance(const array1<states>& state, const messages& say);

}  // namespace vbn
