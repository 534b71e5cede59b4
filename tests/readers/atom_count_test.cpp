// Tests of the atom counts of a state and of the layers of ONIOM logs.
#include "readers/atom_count.hpp"  // for get_na

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/end_to_end/whole_run.hpp"  // for whole_run, a folder of its own
#include "tests/readers/sample_files.hpp"  // for the sample files, ending_of

namespace vbn {
namespace {

class atom_count : public testing::Test {
 protected:
  atom_count() { std::filesystem::current_path(folder_.path(".")); }
  ~atom_count() override { std::filesystem::current_path(before_); }

  // The state of a file with this content.
  states state_of(const std::string& content, const char* name = "mol.log") {
    folder_.write(name, content);
    states s;
    s.file.ffreq = name;
    get_na(s.file, s.atoms);
    return s;
  }

  const std::filesystem::path before_ = std::filesystem::current_path();
  end_to_end::whole_run folder_;
};

// A log whose molecule specification stands behind three charge lines.
std::string oniom_log(const std::string& layers) {
  std::string atoms(" #p oniom(b3lyp/6-31g*:uff) freq\n Charge =  0 for low\n Charge =  0 for high\n");
  for (const char layer : layers) atoms += std::string(" C    0   0.0  0.5  1.0  ") + layer + " H 1\n";
  return changed(gaussian_log(sample_molecule(static_cast<int>(layers.size()))), " #p b3lyp/6-31g* freq\n",
                 atoms);
}

TEST_F(atom_count, checkpoint_of_a_log_lies_in_the_working_directory_and_nowhere_else) {
  std::filesystem::create_directory("run");
  folder_.write("run/mol.opt.fchk", gaussian_fchk(sample_molecule()));
  const std::string log = gaussian_log(sample_molecule());
  const ending e = ending_of([&] { state_of(log, "run/mol.opt.log"); });
  EXPECT_EQ(e.told, " Error! Can not find Gaussian fchk file!\n Stop!\n");
  folder_.write("mol.opt.fchk", gaussian_fchk(sample_molecule()));
  const states s = state_of(log, "run/mol.opt.log");
  EXPECT_EQ(s.file.fhess, "mol.opt.fchk");
}

TEST_F(atom_count, layer_h_is_kept_and_other_layers_are_left_out) {
  folder_.write("mol.fchk", gaussian_fchk(sample_molecule(5)));
  states s = state_of(oniom_log("HLHhL"));
  EXPECT_EQ(s.atoms.natom, 2);
  EXPECT_EQ(s.file.nqmmm, 5);
  qm_file log = open_qm_file("mol.log");
  get_oniom_index(log, s.atoms.natom, s.file);
  const int places[] = {1, 2, 3, 7, 8, 9};
  ASSERT_EQ(s.file.iqm3.size(), 6);
  for (int k = 1; k <= 6; ++k) EXPECT_EQ(s.file.iqm3(k), places[k - 1]);
}

TEST_F(atom_count, files_whose_count_cannot_be_true_end_the_run_before_arrays_are_made) {
  folder_.write("mol.fchk", gaussian_fchk(sample_molecule(3)));
  const std::string log = oniom_log("HLH");
  const std::string output = numforce_output(sample_molecule());
  const struct {
    std::string content;
    int status;
  } broken[] = {{changed(log, " 1.0  H H 1", " 1.0"), 1},
                {changed(log, " NAtoms=      3", " NAtoms=9999999"), 1},
                {changed(output, "NAtoms      4", "NAtoms 2000000000"), 1},
                {changed(output, "NAtoms      4", "NAtoms 700"), 1},
                {" TURBOMOLE 7.4.1\n", 0}};
  for (const auto& b : broken) {
    const ending e = ending_of([&] { state_of(b.content); });
    EXPECT_EQ(e.status, b.status) << e.error << e.told;
    EXPECT_NE((e.error + e.warned).find("mol.log"), std::string::npos) << e.error << e.warned;
  }
}

}  // namespace
}  // namespace vbn
