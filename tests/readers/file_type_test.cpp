// Tests of how a file's kind and version are found.
#include "readers/file_type.hpp"  // for qm_file_type

#include <gtest/gtest.h>

#include <string>

#include "tests/readers/sample_files.hpp"  // for opened

namespace vbn {
namespace {

struct marked {
  std::string content;
  const char* type;
  const char* version;
  int info;
};

std::string columns(int first, std::string_view word) {
  return std::string(static_cast<std::size_t>(first - 1), ' ') + std::string(word) + "\n";
}

// Every kind by its marker, in the order in which they are tested.
std::vector<marked> all_kinds() {
  return {{" * ChemShell version 3.7 *\n", "CHEMSHELL", "version", 4},
          {" Entering Gaussian System\n *****************\n Gaussian 16:  ES64L-G16RevC.01 3-Jul\n",
           "GAUSSIAN LOG", "G16RevC.01", 2},
          {columns(62, "MOLPRO"), "MOLPRO", "", 3},
          {" aoforce : TURBOMOLE V6.4 22 Sep\n", "TURBOMOLE", "6.4", 1},
          {" NUMERICAL FREQUENCY\n VERSION 1.2\n", "NUMFORCE", "1.2", 3},
          {" Program PWSCF v.5.0 starts\n", "PWOUT", "5.0", 3},
          {" vasp.5.2.12 built\n", "VASP", "5.2.12", 3},
          {" Northwest Computational Chemistry Package (NWChem) 7.0.2\n", "NWCHEM", "7.0.2", 0},
          {"_cell_length_a 4.0\n", "CIF", "0", 0},
          {columns(11, "POTENTIAL PARAMETERS"), "WIEN2K_1", "0", 0},
          {columns(3, "bandindex:"), "WIEN2K_spe", "0", 0}};
}

TEST(file_type, a_file_with_two_markers_is_of_the_kind_that_is_tested_first) {
  const std::vector<marked> kinds = all_kinds();
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    std::string content = kinds[i].content;
    for (std::size_t later = kinds.size(); --later > i;) content = kinds[later].content + content;
    const qm_file file = opened(content);
    EXPECT_EQ(file.type, kinds[i].type);
    EXPECT_EQ(file.version, kinds[i].version) << kinds[i].type;
    EXPECT_EQ(file.info, kinds[i].info) << kinds[i].type;
  }
}

TEST(file_type, a_checkpoint_and_a_log_without_stars_give_way_to_any_later_marker) {
  const std::string checkpoint = "title\nNumber of atoms   I   4\n";
  qm_file file = opened(checkpoint);
  EXPECT_EQ(file.type, "GAUSSIAN FCHK");
  EXPECT_EQ(file.version, "UNKNOWN");
  EXPECT_EQ(file.info, -1);
  EXPECT_EQ(opened(checkpoint + "in /home/vasp/mol\n").type, "VASP");

  const std::string cut = " Entering Gaussian System, Link 0=g16\n";
  file = opened(cut);
  EXPECT_EQ(file.type, "GAUSSIAN LOG");
  EXPECT_EQ(file.version, "");
  EXPECT_EQ(file.info, -1);
  EXPECT_EQ(opened(cut + checkpoint).type, "GAUSSIAN FCHK");
  EXPECT_EQ(opened("*****************\n" + cut).info, -1);  // stars count behind the marker only
}

TEST(file_type, version_5_9_of_turbomole_loses_its_dashes_and_short_lines_give_no_version) {
  EXPECT_EQ(opened(" force : TURBOMOLE V5-9-0 29 Nov\n").version, "5 9 0");
  EXPECT_EQ(opened(" TURBOMOLE V").version, "");
  EXPECT_EQ(opened(" ChemShell").version, "");
  EXPECT_EQ(opened(" vasp").version, "");
  EXPECT_EQ(opened(" NUMERICAL FREQUENCY\n").version, "");
  EXPECT_EQ(opened(" Entering Gaussian System\n *****************").version, "");
}

TEST(file_type, a_file_without_markers_leaves_kind_and_version_as_they_were) {
  input_file file = input_file::from_memory("f", "TURBOMOLE rev. 7.4\nMOLPRO\nchemshell\n");
  text<100> type = "before";
  text<100> version = "v";
  int info = 7;
  qm_file_type(file, type, version, info);
  EXPECT_EQ(type, "before");
  EXPECT_EQ(version, "v");
  EXPECT_EQ(info, -1);
}

TEST(file_type, a_missing_file_and_a_folder_end_the_run_with_their_name) {
  for (const char* name : {"no/such/file.log", "/tmp"}) {
    const ending e = ending_of([&] { open_qm_file(name); });
    EXPECT_EQ(e.status, 1);
    EXPECT_NE(e.error.find(name), std::string::npos) << e.error;
  }
}

}  // namespace
}  // namespace vbn
