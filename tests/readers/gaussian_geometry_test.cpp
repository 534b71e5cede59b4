// Tests of the choice among the geometries of a Gaussian calculation.
#include "readers/gaussian_geometry.hpp"  // for fit_gaussian_coord

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "readers/programs.hpp"            // for gaussian_log_coord
#include "readers/qm_file.hpp"             // for the readers
#include "tests/readers/sample_files.hpp"  // for the sample files

namespace vbn {
namespace {

// Springs between all atoms, which feel neither a shift nor a turn of the molecule.
void join_by_springs(molecule& m) {
  m.fc = array2<double>(m.fc.rows(), m.fc.cols());
  for (int i = 1; i <= m.x.cols(); ++i) {
    for (int j = 1; j < i; ++j) {
      double d[3];
      double d2 = 0.0;
      for (int k = 0; k < 3; ++k) {
        d[k] = m.x(k + 1, i) - m.x(k + 1, j);
        d2 += d[k] * d[k];
      }
      for (int k = 0; k < 3; ++k) {
        for (int l = 0; l < 3; ++l) {
          const double f = 0.3 * d[k] * d[l] / d2;
          m.fc(3 * i - 2 + k, 3 * i - 2 + l) += f;
          m.fc(3 * j - 2 + k, 3 * j - 2 + l) += f;
          m.fc(3 * i - 2 + k, 3 * j - 2 + l) -= f;
          m.fc(3 * j - 2 + k, 3 * i - 2 + l) -= f;
        }
      }
    }
  }
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

struct choice {
  array2<double> x;
  std::string warned;
};

choice chosen(const std::string& log, const std::string& checkpoint) {
  choice c;
  qm_file log_file = opened(log);
  qm_file checkpoint_file = opened(checkpoint);
  array2<double> fc;
  int info = 0;
  qm_file_coord(log_file, 4, c.x, info);
  qm_file_fc(checkpoint_file, 4, fc, info);
  testing::internal::CaptureStderr();
  fit_gaussian_coord(log_file, checkpoint_file, fc, c.x);
  c.warned = testing::internal::GetCapturedStderr();
  return c;
}

bool same(const array2<double>& a, const array2<double>& b) {
  for (int i = 1; i <= a.cols(); ++i) {
    for (int k = 1; k <= 3; ++k) {
      if (std::abs(a(k, i) - b(k, i)) > 2e-6) return false;
    }
  }
  return true;
}

class gaussian_geometry : public testing::Test {
 protected:
  void SetUp() override { join_by_springs(m); }
  molecule m = sample_molecule();
};

TEST_F(gaussian_geometry, log_in_another_frame_than_the_force_constants_gives_way_to_the_checkpoint) {
  const choice c = chosen(gaussian_log(turned(m)), gaussian_fchk(m));
  EXPECT_TRUE(same(c.x, m.x));
  EXPECT_NE(c.warned.find("coordinates of that file"), std::string::npos) << c.warned;
}

TEST_F(gaussian_geometry, log_of_several_jobs_gives_the_geometry_of_the_frequencies) {
  molecule later = m;
  later.x(1, 1) += 0.3;
  later.x(3, 4) -= 0.2;
  // The checkpoint has the force constants of the first job and the geometry of the last.
  molecule mixed = later;
  mixed.fc = m.fc;
  const choice overwritten = chosen(two_jobs(m, later), gaussian_fchk(mixed));
  EXPECT_TRUE(same(overwritten.x, m.x));
  EXPECT_NE(overwritten.warned.find("before the frequencies"), std::string::npos) << overwritten.warned;
  // It is as it was when the first job ended.
  const choice kept = chosen(two_jobs(m, later), gaussian_fchk(m));
  EXPECT_TRUE(same(kept.x, m.x));
  EXPECT_NE(kept.warned, "");
}

TEST_F(gaussian_geometry, geometry_that_fits_or_cannot_be_judged_stays_to_the_bit) {
  molecule shifted = m;
  for (int i = 1; i <= 4; ++i) shifted.x(2, i) += 5.0;
  molecule elsewhere = turned(m);
  elsewhere.x(1, 2) += 1.0;
  const std::string log = gaussian_log(m);
  const std::string no_coordinates = changed(gaussian_fchk(m), "Current cartesian", "Earlier cartesian");
  for (const std::string& checkpoint :
       {gaussian_fchk(m), gaussian_fchk(shifted), no_coordinates,
        changed(gaussian_fchk(turned(m)), "N=          12", "N=          15")}) {
    const choice c = chosen(log, checkpoint);
    array2<double> last(3, 4);
    qm_file file = opened(log);
    gaussian_log_coord(file.file, last);
    EXPECT_EQ(c.x, last);
    EXPECT_EQ(c.warned, "");
  }
  // Neither geometry fits: the last one of the log is kept.
  molecule foreign = elsewhere;
  foreign.fc = m.fc;
  const choice c = chosen(gaussian_log(turned(m)), gaussian_fchk(foreign));
  EXPECT_TRUE(same(c.x, turned(m).x));
  EXPECT_EQ(c.warned, "");
}

}  // namespace
}  // namespace vbn
