// Tests of what newer Turbomole versions and heavier elements change in a file.
#include <gtest/gtest.h>

#include <string>

#include "readers/qm_file.hpp"             // for the readers
#include "tests/readers/sample_files.hpp"  // for the sample files

namespace vbn {
namespace {

TEST(turbomole, version_7_4_names_its_revision) {
  const std::string newer =
      changed(turbomole_output(sample_molecule()), "TURBOMOLE V6.4", "TURBOMOLE rev. V7.4.1 (2bfdd732)");
  const qm_file file = opened(newer);
  EXPECT_EQ(file.type, "TURBOMOLE");
  EXPECT_EQ(file.version, "7.4.1");
  EXPECT_EQ(file.info, 1);
  // Any kind that is known otherwise goes before it.
  EXPECT_EQ(opened("Number of atoms\n TURBOMOLE rev. V7.4.1\n").type, "GAUSSIAN FCHK");
  EXPECT_EQ(opened(" NWChem\n TURBOMOLE rev. V7.4.1\n").type, "NWCHEM");
}

TEST(turbomole, numbers_of_a_row_do_not_begin_behind_the_d_of_its_element) {
  molecule m = sample_molecule(5);
  m.nat(1) = 48;  // Cd
  m.nat(3) = 66;  // Dy, as the label of a row
  m.nat(4) = 60;  // Nd
  m.nat(5) = 46;  // Pd
  qm_file file = opened(turbomole_output(m));
  array2<double> fc;
  array1<int> nat;
  int info = 0;
  qm_file_nat(file, 5, nat, info);
  qm_file_fc(file, 5, fc, info);
  EXPECT_EQ(nat, m.nat);
  EXPECT_EQ(fc, m.fc);

  qm_file broken = opened(changed(turbomole_output(m), "   1 cd    dx ", "   1 cd    qx "));
  EXPECT_EQ(ending_of([&] { qm_file_fc(broken, 5, fc, info); }).status, 1);
}

}  // namespace
}  // namespace vbn
