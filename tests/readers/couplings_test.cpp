// Tests of the coupling readers: a file of each program, and what is said of broken ones.
#include "readers/qm_file.hpp"  // for qm_file_nacme

#include <gtest/gtest.h>

#include <string>

#include "readers/file_type.hpp"   // for open_qm_file
#include "tests/written_file.hpp"  // for content_of
#include "text/stop.hpp"           // for run_end

namespace vbn {
namespace {

std::string sample(const std::string& name) {
  return content_of(std::string(VBN_SAMPLES) + "/couplings_" + name);
}

// Carbon monoxide and a far proton: atoms C, O, H.
const std::string gaussian_log = sample("gaussian.log");
const std::string nwchem_out = sample("nwchem.out");
const std::string molpro_out = sample("molpro.out");

file_couplings read(const std::string& content, int natom) {
  qm_file file = open_qm_file(input_file::from_memory("nac.out", content));
  return qm_file_nacme(file, natom);
}

// The message that ends the run; empty when it goes on.
std::string message(const std::string& content, int natom) {
  try {
    read(content, natom);
  } catch (const run_end& end) {
    EXPECT_EQ(end.status, 1) << end.text;
    return end.text;
  }
  return "";
}

std::string replaced(std::string in, const std::string& from, const std::string& to) {
  const std::size_t at = in.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return in.replace(at, from.size(), to);
}

// A Turbomole file of six atoms, C O H H H H, two blocks of couplings. Element (c,i) is -0.01 i - 0.001 c.
std::string turbomole_out(const std::string& version, bool newer_layout) {
  return replaced(sample(newer_layout ? "turbomole.out" : "turbomole_older.out"), "VERSION", version);
}

TEST(nacme_readers,
     fields_and_couplings_of_three_programs_are_of_their_atoms_and_scaled_by_charge_and_energy) {
  for (const std::string& file : {gaussian_log, nwchem_out, molpro_out}) {
    const file_couplings got = read(file, 3);
    EXPECT_NEAR(got.e_vert, 0.2, 1e-5);
    const double field[] = {0.001, 0.002, -0.003, -0.004, 0.005, 0.006, 0.007, -0.008, 0.009};
    for (int k = 0; k < 9; ++k) {
      const double charge = k < 3 ? 6.0 : k < 6 ? 8.0 : 1.0;
      EXPECT_NEAR(got.tranele(k % 3 + 1, k / 3 + 1), field[k], 1e-12);
      EXPECT_NEAR(got.nacme(k % 3 + 1, k / 3 + 1), field[k] * charge / got.e_vert, 1e-12);
    }
  }
}

TEST(nacme_readers, turbomole_blocks_of_five_in_the_layout_of_the_release) {
  for (const std::string version : {"5-9-0", "6.3", "6.48", "6.49", "6.5", "7.4.1"}) {
    const bool newer = version > "6.48";
    const file_couplings got = read(turbomole_out(version, newer), 6);
    for (int i = 1; i <= 6; ++i) {
      for (int c = 1; c <= 3; ++c) EXPECT_NEAR(got.nacme(c, i), -0.01 * i - 0.001 * c, 1e-9) << version;
    }
    EXPECT_EQ(got.tranele(3, 2), 0.2 * got.nacme(3, 2) / 8.0) << version;
    // The other layout is shifted by two columns or more, and no number is taken from there.
    EXPECT_NE(message(turbomole_out(version, !newer), 6), "") << version;
  }
}

TEST(nacme_readers, broken_files_end_the_run_with_a_message_that_names_file_and_lack) {
  const std::string turbomole = turbomole_out("6.5", true);
  const struct {
    const std::string& file;
    int natom;
    const char *from, *to, *told;
  } cases[] = {
      {gaussian_log, 3, " Charge =", " charge =", "\"Charge =\""},
      {gaussian_log, 3, "Excited State   1", "Excited State   3", "\"Excited State   1\""},
      {gaussian_log, 3, "5.4422 eV", "5,4q eV", "cannot read the vertical energy"},
      {gaussian_log, 3, "5.4422 eV", "0.0000 eV", "the vertical energy of the coupling file is zero"},
      {gaussian_log, 3, " 3          1  ", " 3          0  ", "the nuclear charge of atom 3 is zero"},
      {gaussian_log, 3, "-0.004000", "-0.0o4000", "2 Atom"},
      {gaussian_log, 3, "-0.004000", "-1.0E+308", "not finite"},
      {nwchem_out, 3, "Root   1", "Root   2", "\"Root   1\""},
      {nwchem_out, 3, "0.200000000 a.u.                5.4423", "a.u.", "in columns 25 to 55"},
      {nwchem_out, 3, " h ", " Qq", "no element has this symbol"},
      {nwchem_out, 3, "Electrostatic", "Other", "the transition field at the nuclei"},
      {molpro_out, 3, "Energy Difference", "Energy Gap", "\"Energy Difference at present geometry\""},
      {molpro_out, 3, "0.030000000", "***********", "the coupling x, y and z of an atom"},
      {molpro_out, 3, "PROGRAM SYSTEM MOLPRO", "PROGRAM SYSTEM ORCA..", "has no couplings that can be read"},
      {turbomole, 6, "a excitation", "a Excitation", "\"excitation\" in columns 38 to 47"},
      {turbomole, 6, "V6.5", "Vers", "cannot read the version"},
      {turbomole, 6, "-0.6300000E-01", "-0.63", "a line of couplings"},
  };
  for (const auto& it : cases) {
    const std::string told = message(replaced(it.file, it.from, it.to), it.natom);
    EXPECT_NE(told.find("nac.out"), std::string::npos) << it.to << ": " << told;
    EXPECT_NE(told.find(it.told), std::string::npos) << it.to << ": " << told;
  }
}

}  // namespace
}  // namespace vbn
