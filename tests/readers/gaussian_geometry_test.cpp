// Tests of the choice among the geometries of a Gaussian calculation.
#include "readers/gaussian_geometry.hpp"  // for fit_gaussian_coord

#include <gtest/gtest.h>

#include <string>

#include "readers/qm_file.hpp"             // for the readers
#include "tests/readers/sample_files.hpp"  // for the sample files

namespace vbn {
namespace {

// A spring between the first two atoms, which feels neither a shift nor a turn of the molecule.
molecule joined_by_a_spring() {
  molecule m = sample_molecule();
  double pull[12] = {};
  for (int k = 0; k < 3; ++k) pull[k] = -(pull[k + 3] = m.x(k + 1, 1) - m.x(k + 1, 2));
  for (int i = 0; i < 12; ++i) {
    for (int j = 0; j < 12; ++j) m.fc(i + 1, j + 1) = 0.1 * pull[i] * pull[j];
  }
  return m;
}

molecule turned(const molecule& m) {
  molecule t = m;
  for (int i = 1; i <= m.x.cols(); ++i) {
    t.x(1, i) = 0.6 * m.x(1, i) - 0.8 * m.x(2, i);
    t.x(2, i) = 0.8 * m.x(1, i) + 0.6 * m.x(2, i);
  }
  return t;
}

// A log with the frequencies and, behind them, the tables of another job.
std::string two_jobs(const molecule& first, const molecule& second) {
  const std::string later = gaussian_log(second);
  return gaussian_log(first) + " Harmonic frequencies (cm**-1), IR intensities (KM/Mole)\n" +
         later.substr(later.find(" NAtoms="));
}

// Takes the geometry for log and checkpoint; `warned` is a word of the warning, empty for none.
void expect_choice(const molecule& m, const std::string& log, const std::string& checkpoint,
                   const char* warned) {
  qm_file log_file = opened(log);
  qm_file checkpoint_file = opened(checkpoint);
  array2<double> x = qm_file_coord(log_file, 4);
  const array2<double> fc = qm_file_fc(checkpoint_file, 4);
  const array2<double> last = x;
  const ending e = ending_of([&] { fit_gaussian_coord(log_file, checkpoint_file, fc, x); });
  for (int k = 0; k < 12; ++k) EXPECT_NEAR(x.data()[k], m.x.data()[k], 2e-6);
  EXPECT_EQ(e.warned.empty(), *warned == '\0') << e.warned;
  EXPECT_NE(e.warned.find(warned), std::string::npos) << e.warned;
  EXPECT_EQ(x == last, *warned == '\0');  // to the bit
}

TEST(gaussian_geometry, the_geometry_that_the_force_constants_fit_is_taken) {
  const molecule m = joined_by_a_spring();
  expect_choice(m, gaussian_log(turned(m)), gaussian_fchk(m), "coordinates of that file");
  // The checkpoint has the force constants of the first job and the geometry of the last.
  molecule later = m;
  later.x(1, 1) += 0.3;
  later.x(3, 4) -= 0.2;
  molecule mixed = later;
  mixed.fc = m.fc;
  expect_choice(m, two_jobs(m, later), gaussian_fchk(mixed), "before the frequencies");
  expect_choice(m, two_jobs(m, later), gaussian_fchk(m), "geometry");
  // One that fits, or that cannot be judged, stays.
  expect_choice(m, gaussian_log(m), gaussian_fchk(m), "");
  molecule shifted = m;
  for (int i = 1; i <= 4; ++i) shifted.x(2, i) += 5.0;
  expect_choice(m, gaussian_log(m), gaussian_fchk(shifted), "");
  const std::string none = changed(gaussian_fchk(m), "Current cartesian", "Earlier cartesian");
  expect_choice(turned(m), gaussian_log(turned(m)), none, "");
  expect_choice(turned(m), gaussian_log(turned(m)), gaussian_fchk(mixed), "");
}

}  // namespace
}  // namespace vbn
