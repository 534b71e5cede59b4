// One small molecule as the output of every program that is read, for the tests of the readers.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "readers/file_type.hpp"  // for qm_file
#include "linalg/array.hpp"       // for array1, array2
#include "text/stop.hpp"          // for run_end

namespace vbn {

// Coordinates in bohr, table masses, and force constants of no real surface, with four decimals each.
struct molecule {
  array1<int> nat;
  array1<double> mass;
  array2<double> x;
  array2<double> fc;
};

// Formaldehyde, or a chain of H, C, N and O with more atoms.
molecule sample_molecule(int natom = 4);

// The molecule in the layouts of the programs; Molpro with a dump of the geometry or, as from version 2012
// on, with a table behind the force constants, before which stands one with the atoms in another order.
std::string gaussian_log(const molecule& m);
std::string gaussian_fchk(const molecule& m);
std::string molpro_output(const molecule& m);
std::string molpro_newer(const molecule& m);
std::string turbomole_output(const molecule& m);
std::string chemshell_output(const molecule& m);
std::string numforce_output(const molecule& m);
std::string nwchem_output(const molecule& m);

// The text as an opened file.
qm_file opened(std::string_view content);

// The text with the first `from` replaced, which must be there.
std::string changed(std::string_view content, std::string_view from, std::string_view to);

// How a call ended: status and error text of the end of the run, what was told on standard output, and the
// warnings. Status -1 when the call returned.
struct ending {
  int status = -1;
  std::string error;
  std::string told;
  std::string warned;
};

template <class routine>
ending ending_of(routine&& call) {
  ending e;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  try {
    call();
  } catch (const run_end& end) {
    e.status = end.status;
    e.error = end.text;
  }
  e.told = testing::internal::GetCapturedStdout();
  e.warned = testing::internal::GetCapturedStderr();
  return e;
}

}  // namespace vbn
