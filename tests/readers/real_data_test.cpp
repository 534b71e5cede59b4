// Reads real calculations of the programs; the folder that holds them is named by VBN_REAL_DATA.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "readers/file_type.hpp"           // for open_qm_file
#include "readers/qm_file.hpp"             // for the readers
#include "readers/scan.hpp"                // for name_main
#include "tests/readers/sample_files.hpp"  // for ending_of

namespace vbn {
namespace {

struct contents {
  std::string kind;
  int natom = 0;
  array1<int> nat;
  array1<double> mass;
  array2<double> x;
  array2<double> fc;
};

std::string folder() {
  const char* named = std::getenv("VBN_REAL_DATA");
  return named == nullptr ? "" : std::string(named) + "/";
}

contents read_all(const std::string& path) {
  contents c;
  int info = -1;
  qm_file file = open_qm_file(path);
  c.kind = file.type.str();
  qm_file_natom(file, c.natom, info);
  qm_file_nat(file, c.natom, c.nat, info);
  qm_file_mass(file, c.natom, c.mass, info);
  qm_file_coord(file, c.natom, c.x, info);
  if (c.kind == "GAUSSIAN LOG") {
    qm_file checkpoint = open_qm_file(path.substr(0, path.rfind('.')) + ".fchk");
    qm_file_fc(checkpoint, c.natom, c.fc, info);
  } else {
    qm_file_fc(file, c.natom, c.fc, info);
  }
  return c;
}

// Largest force on any coordinate when all atoms move together by 1 bohr, and the largest asymmetry.
double translation_residue(const array2<double>& fc) {
  double largest = 0.0;
  for (int i = 1; i <= fc.rows(); ++i) {
    for (int c = 1; c <= 3; ++c) {
      double force = 0.0;
      for (int j = c; j <= fc.cols(); j += 3) force += fc(i, j);
      largest = std::max(largest, std::abs(force));
    }
  }
  return largest;
}

double asymmetry(const array2<double>& fc) {
  double largest = 0.0;
  for (int i = 1; i <= fc.rows(); ++i) {
    for (int j = 1; j < i; ++j) largest = std::max(largest, std::abs(fc(i, j) - fc(j, i)));
  }
  return largest;
}

double distance(const contents& c, int i, int j) {
  double d2 = 0.0;
  for (int k = 1; k <= 3; ++k) d2 += (c.x(k, i) - c.x(k, j)) * (c.x(k, i) - c.x(k, j));
  return std::sqrt(d2);
}

TEST(real_data, every_frequency_file_gives_a_molecule_that_feels_no_force_when_it_moves_as_a_whole) {
  if (folder().empty()) GTEST_SKIP() << "VBN_REAL_DATA names no folder of real calculations";
  struct real_file {
    const char* path;
    int natom;
    double residue = 2e-3;  // hartree/bohr^2
  };
  const std::vector<real_file> files = {
      {"nwchem/water/neutral.out", 3},
      {"nwchem/formaldehyde/s0.out", 4},
      {"nwchem/formaldehyde_s1/s1.out", 4},
      {"nwchem/ethylene/cation.out", 6},
      {"nwchem/ammonia/neutral.out", 4},
      {"nwchem/glyoxal/t1.out", 6},
      {"nwchem/butadiene/s0.out", 10},
      {"nwchem/formamide/cation.out", 6},
      {"nwchem/hcn/cation.out", 3},
      {"nwchem/n2/neutral.out", 2},
      {"xtb/naphthalene/gaussian/cation.log", 18},
      {"xtb/naphthalene/numforce/cation.dat", 18},
      {"xtb/azobenzene/gaussian/t1.log", 24},
      {"xtb/coumarin153/gaussian/s0.log", 36},
      {"xtb/nitrobenzene/gaussian/anion.log", 14},
      {"xtb/beta_carotene/gaussian/neutral.log", 96},
      {"xtb/octa3ht/gaussian/cation.log", 202},
      {"xtb/octa3ht/numforce/cation.dat", 202},
      {"oniom/formaldehyde_2w/s0.log", 10},
      {"couplings/glyoxal/s0.dat", 6},
      {"public/dvb_gaussian/g09.out", 20},
      {"public/dvb_gaussian/g16.out", 20},
      {"public/dvb_gaussian_turbomole/aoforce.out", 20},
      {"public/dvb_nwchem/dvb_ir.out", 20},
      {"public/propane_gaussian/propane.out", 11},
      {"public/cyclopentane_gaussian/halfchair.log", 15},
      {"public/cyclopentane_gaussian/envelope.log", 15},
      {"public/formic_acid_molpro/hcooh_amended.out", 5},
      {"public/formic_acid_molpro/cation.out", 5},
  };
  for (const real_file& f : files) {
    const contents c = read_all(folder() + f.path);
    EXPECT_EQ(c.natom, f.natom) << f.path;
    EXPECT_LT(asymmetry(c.fc), 1e-6) << f.path;
    EXPECT_LT(translation_residue(c.fc), f.residue) << f.path;
    for (int i = 1; i <= c.natom; ++i) {
      EXPECT_GT(c.mass(i), 0.99 * c.nat(i)) << f.path;
      EXPECT_LT(c.mass(i), 3.1 * c.nat(i)) << f.path;
      double nearest = 1e9;
      for (int j = 1; j <= c.natom; ++j) {
        if (j != i) nearest = std::min(nearest, distance(c, i, j));
      }
      EXPECT_GT(nearest, 1.3) << f.path << " atom " << i;  // bohr
      EXPECT_LT(nearest, 3.5) << f.path << " atom " << i;
    }
  }
}

TEST(real_data, formaldehyde_is_the_same_in_the_files_of_six_programs) {
  if (folder().empty()) GTEST_SKIP() << "VBN_REAL_DATA names no folder of real calculations";
  struct source {
    const char* s0;
    const char* cation;
    double mass, x, fc;  // the digits of the file
  };
  // Files without masses have those of the table, which differ from newer ones in the seventh digit.
  const source sources[] = {{"chemshell/s0.out", "chemshell/cation.out", 2e-7, 1e-8, 1e-8},
                            {"gaussian/s0.log", "gaussian/cation.log", 1e-5, 2e-6, 1e-8},
                            {"molpro/s0.out", "molpro/cation.out", 6e-7, 1e-8, 6e-8},
                            {"nwchem/s0.out", "nwchem/cation.out", 1e-7, 2e-8, 3e-4},
                            {"turbomole/s0.out", "turbomole/cation.out", 1e-5, 1e-8, 6e-8}};
  for (const bool cation : {false, true}) {
    const std::string base = folder() + "formats/formaldehyde/";
    const contents exact = read_all(base + (cation ? "numforce/cation.dat" : "numforce/s0.dat"));
    ASSERT_EQ(exact.natom, 4);
    for (const source& s : sources) {
      const std::string path = base + (cation ? s.cation : s.s0);
      const contents c = read_all(path);
      EXPECT_EQ(c.nat, exact.nat) << path;
      for (int i = 1; i <= 4; ++i) {
        EXPECT_NEAR(c.mass(i), exact.mass(i), s.mass) << path;
        for (int k = 1; k <= 3; ++k) EXPECT_NEAR(c.x(k, i), exact.x(k, i), s.x) << path;
      }
      for (int i = 1; i <= 12; ++i) {
        for (int j = 1; j <= 12; ++j)
          EXPECT_NEAR(c.fc(i, j), exact.fc(i, j), s.fc) << path << " " << i << " " << j;
      }
    }
  }
}

}  // namespace
}  // namespace vbn
