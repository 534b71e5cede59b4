// Tests of the kind and version that are found for a file.
#include "readers/file_type.hpp"  // for qm_file

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "readers/qm_file.hpp"        // for name_of, qm_file_natom
#include "tests/readers/samples.hpp"  // for opened

namespace vbn {
namespace {

struct marked {
  std::string content;
  const char* type;
  const char* version;
};

void expect_kind(const qm_file& file, const marked& expected) {
  EXPECT_EQ(name_of(file.kind), expected.type);
  EXPECT_EQ(file.version, expected.version) << expected.content;
}

std::string columns(int first, std::string_view word) {
  return std::string(static_cast<std::size_t>(first - 1), ' ') + std::string(word) + "\n";
}

// Every kind by its marker, in the order in which they are tested.
std::vector<marked> all_kinds() {
  return {{" * ChemShell version 3.7 *\n", "CHEMSHELL", "version"},
          {" Entering Gaussian System\n *****************\n Gaussian 16:  ES64L-G16RevC.01 3-Jul\n",
           "GAUSSIAN LOG", "G16RevC.01"},
          {columns(62, "MOLPRO"), "MOLPRO", ""},
          {" aoforce : TURBOMOLE V6.4 22 Sep\n", "TURBOMOLE", "6.4"},
          {" NUMERICAL FREQUENCY\n VERSION 1.2\n", "NUMFORCE", "1.2"},
          {" Program PWSCF v.5.0 starts\n", "PWOUT", "5.0"},
          {" vasp.5.2.12 built\n", "VASP", "5.2.12"},
          {" Northwest Computational Chemistry Package (NWChem) 7.0.2\n", "NWCHEM", "7.0.2"},
          {"_cell_length_a 4.0\n", "CIF", "0"},
          {columns(11, "POTENTIAL PARAMETERS"), "WIEN2K_1", "0"},
          {columns(3, "bandindex:"), "WIEN2K_spe", "0"}};
}

TEST(file_type, a_file_with_two_markers_is_of_the_kind_that_is_tested_first) {
  const std::vector<marked> kinds = all_kinds();
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    std::string content = kinds[i].content;
    for (std::size_t later = kinds.size(); --later > i;) content = kinds[later].content + content;
    expect_kind(opened(content), kinds[i]);
  }
}

TEST(file_type, provisional_kinds_give_way_to_later_markers_and_markers_out_of_place_do_not_count) {
  const std::string checkpoint = "title\nNumber of atoms   I   4\n";
  const std::string cut = " Entering Gaussian System, Link 0=g16\n";
  const marked files[] = {{checkpoint, "GAUSSIAN FCHK", "UNKNOWN"},
                          {checkpoint + " vasp.5\n", "VASP", "5"},
                          {"*****************\n" + cut, "GAUSSIAN LOG", ""},
                          {cut + checkpoint, "GAUSSIAN FCHK", "UNKNOWN"},
                          {" force : TURBOMOLE V5-9-0 29 Nov\n", "TURBOMOLE", "5 9 0"},
                          {" TURBOMOLE rev. V7.4.1 (2bfdd732)\n", "TURBOMOLE", "7.4.1"},
                          {columns(61, "MOLPRO") + columns(63, "MOLPRO") + columns(198, "vasp"), "", ""},
                          {"TURBOMOLE rev. 7.4\nMOLPRO\nchemshell\n", "", ""}};
  for (const marked& f : files) expect_kind(opened(f.content), f);
}

TEST(file_type, a_crystals_number_of_atoms_is_read_from_its_columns) {
  const std::pair<const char*, int> files[] = {
      {"_cell_length_a 1\n_atom_site_occupancy\nheading\nC 0\nO 0\nloop_\nH 0\n", 2},
      {" Program PWSCF v.5.0\n     number of atoms/cell      =           12\n", 12},
      {" vasp.5.2\n   number of dos      NEDOS =    301   number of ions     NIONS =      8\n", 8}};
  for (const auto& [content, natom] : files) {
    qm_file file = opened(content);
    EXPECT_EQ(qm_file_natom(file), natom);
  }
}

}  // namespace
}  // namespace vbn
