// Tests of the atom counts of a state and of the layers of ONIOM logs.
#include "readers/atom_count.hpp"  // for get_na

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/readers/sample_files.hpp"  // for the sample files, ending_of

namespace vbn {
namespace {

// Each test runs in an empty folder of its own.
class atom_count : public testing::Test {
 protected:
  void SetUp() override {
    before_ = std::filesystem::current_path();
    folder_ =
        std::filesystem::path(testing::TempDir()) /
        ("vbn_atom_count_" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_ / "run");
    std::filesystem::current_path(folder_);
  }
  void TearDown() override {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }

  void write(const std::string& name, const std::string& content) {
    std::ofstream(name, std::ios::binary) << content;
  }

  states state_of(const char* ffreq) {
    states s;
    s.ffreq = ffreq;
    get_na(s);
    return s;
  }

 private:
  std::filesystem::path before_;
  std::filesystem::path folder_;
};

// A log whose molecule specification stands behind three charge lines.
std::string oniom_log(const char* layers) {
  std::string atoms;
  for (const char* layer = layers; *layer != '\0'; ++layer) {
    atoms +=
        std::string(" C                    0   0.0  0.5  1.0  ") + *layer + (*layer == 'L' ? " H 1\n" : "\n");
  }
  return changed(gaussian_log(sample_molecule(static_cast<int>(std::string(layers).size()))),
                 " #p b3lyp/6-31g* freq\n Charge =  0 Multiplicity = 1\n",
                 " #p oniom(b3lyp/6-31g*:uff) freq\n"
                 " Charge =  0 Multiplicity = 1 for low   level calculation on real  system.\n"
                 " Charge =  0 Multiplicity = 1 for high  level calculation on model system.\n"
                 " Charge =  0 Multiplicity = 1 for low   level calculation on model system.\n" +
                     atoms);
}

TEST_F(atom_count, state_takes_kind_version_and_count_of_its_file) {
  write("run/mol.dat", numforce_output(sample_molecule(5)));
  const states s = state_of("run/mol.dat");
  EXPECT_EQ(s.ffreq_type, "NUMFORCE");
  EXPECT_EQ(s.ffreq_version, "1.2");
  EXPECT_EQ(s.fhess, "run/mol.dat");
  EXPECT_EQ(s.natom, 5);
  EXPECT_EQ(s.n3, 15);
  EXPECT_FALSE(s.ifoniom);
}

TEST_F(atom_count, checkpoint_of_a_log_lies_in_the_working_directory_and_nowhere_else) {
  write("run/mol.opt.log", gaussian_log(sample_molecule()));
  write("run/mol.opt.fchk", gaussian_fchk(sample_molecule()));
  std::filesystem::create_directory("mol.opt.fchk");
  for (int folder_there = 1; folder_there >= 0; --folder_there) {
    const ending e = ending_of([&] { state_of("run/mol.opt.log"); });
    EXPECT_EQ(e.status, 1);
    EXPECT_EQ(e.told, " Error! Can not find Gaussian fchk file!\n Stop!\n");
    std::filesystem::remove("mol.opt.fchk");
  }
  write("mol.opt.fchk", gaussian_fchk(sample_molecule()));
  const states s = state_of("run/mol.opt.log");
  EXPECT_EQ(s.fhess, "mol.opt.fchk");
  EXPECT_EQ(s.natom, 4);
}

TEST_F(atom_count, layer_h_is_kept_and_other_layers_are_left_out) {
  write("mol.log", oniom_log("HLHhL"));
  write("mol.fchk", gaussian_fchk(sample_molecule(5)));
  states s = state_of("mol.log");
  EXPECT_TRUE(s.ifoniom);
  EXPECT_EQ(s.natom, 2);
  EXPECT_EQ(s.nqmmm, 5);
  EXPECT_EQ(s.n3, 6);
  get_oniom_index(s);
  const int places[] = {1, 2, 3, 7, 8, 9};
  ASSERT_EQ(s.iqm.size(), 2);
  EXPECT_EQ(s.iqm(1), 1);
  EXPECT_EQ(s.iqm(2), 3);
  ASSERT_EQ(s.iqm3.size(), 6);
  for (int k = 1; k <= 6; ++k) EXPECT_EQ(s.iqm3(k), places[k - 1]);
}

TEST_F(atom_count, only_the_lower_case_word_in_a_gaussian_log_makes_an_oniom_state) {
  write("mol.fchk", gaussian_fchk(sample_molecule()));
  write("mol.log", changed(gaussian_log(sample_molecule()), "b3lyp", "ONIOM"));
  EXPECT_FALSE(state_of("mol.log").ifoniom);
  write("mol.dat", numforce_output(sample_molecule()) + " oniom\n");
  EXPECT_FALSE(state_of("mol.dat").ifoniom);
  const std::string far(490, '-');
  write("mol.log", gaussian_log(sample_molecule()) + far + "oniom\n");
  EXPECT_TRUE(ending_of([&] { EXPECT_TRUE(state_of("mol.log").ifoniom); }).status == 1);  // without layers
  write("mol.log", gaussian_log(sample_molecule()) + far + "-------oniom\n");
  EXPECT_FALSE(state_of("mol.log").ifoniom);
}

TEST_F(atom_count, broken_oniom_logs_end_the_run) {
  write("mol.fchk", gaussian_fchk(sample_molecule(3)));
  const std::string log = oniom_log("HLH");
  const char* no_layer = "0   0.0  0.5  1.0  ";
  struct broken {
    std::string log;
    int status;
  };
  const broken logs[] = {{changed(log, std::string(no_layer) + "H", no_layer), 1},
                         {log.substr(0, log.find(" C   ")), 0},
                         {log.substr(0, log.find("Charge =")), 0},
                         {changed(log, " NAtoms=", " natoms="), 0},
                         {changed(log, " NAtoms=      3", " NAtoms=9999999"), 1}};
  for (const broken& b : logs) {
    write("mol.log", b.log);
    const ending e = ending_of([&] { state_of("mol.log"); });
    EXPECT_EQ(e.status, b.status) << e.error << e.told;
    EXPECT_NE((e.error + e.warned).find("mol.log"), std::string::npos) << e.error << e.warned;
  }
}

TEST_F(atom_count, a_file_without_atoms_is_named_and_stops_as_told) {
  write("probe.out", " TURBOMOLE 7.4.1\n");
  const ending e = ending_of([&] { state_of("probe.out"); });
  EXPECT_EQ(e.status, 0);
  EXPECT_EQ(e.told, "  Error!\n  natom =                   0\n  Stop!\n");
  EXPECT_NE(e.warned.find("probe.out"), std::string::npos) << e.warned;
}

TEST_F(atom_count, missing_names_and_files_end_the_run) {
  for (const char* name : {"", "none.out", "run"}) {
    const ending e = ending_of([&] { state_of(name); });
    EXPECT_EQ(e.status, 1) << name;
    EXPECT_NE(e.error.find(name[0] == '\0' ? "ffreq" : name), std::string::npos) << e.error;
  }
}

TEST_F(atom_count, a_count_that_the_file_cannot_fill_ends_the_run_before_arrays_are_made) {
  const std::string output = numforce_output(sample_molecule());
  for (const char* count : {"NAtoms 2000000000", "NAtoms 700"}) {
    write("mol.dat", changed(output, "NAtoms      4", count));
    const ending e = ending_of([&] { state_of("mol.dat"); });
    EXPECT_EQ(e.status, 1) << count;
    EXPECT_NE(e.error.find("mol.dat"), std::string::npos) << e.error;
  }
  write("mol.log", changed(gaussian_log(sample_molecule()), "NAtoms=      4", "NAtoms=    400"));
  write("mol.fchk", gaussian_fchk(sample_molecule()));
  EXPECT_EQ(ending_of([&] { state_of("mol.log"); }).status, 1);
}

}  // namespace
}  // namespace vbn
