// Tests of the coupling readers: a file of each program, and the messages for broken ones.
#include "readers/qm_file.hpp"  // for qm_file_nacme

#include <gtest/gtest.h>

#include <regex>

#include "readers/file_type.hpp"      // for open_qm_file
#include "tests/ending.hpp"           // for ending_of
#include "tests/readers/samples.hpp"  // for sample, changed

namespace vbn {
namespace {

// Carbon monoxide and a far proton, and of Turbomole six atoms with couplings -0.01 i - 0.001 c.
constexpr const char *gaussian = "couplings_gaussian.log", *nwchem = "couplings_nwchem.out",
                     *molpro = "couplings_molpro.out", *turbomole_5 = "couplings_turbomole_5.9.out",
                     *turbomole_63 = "couplings_turbomole_6.3.out",
                     *turbomole_65 = "couplings_turbomole_6.5.out";

file_couplings read(const std::string& content, int natom) {
  qm_file file = open_qm_file(input_file::from_memory("nac.out", content));
  return qm_file_nacme(file, natom);
}

TEST(nacme_readers,
     fields_and_couplings_of_three_programs_are_of_their_atoms_and_scaled_by_charge_and_energy) {
  for (const char* file : {gaussian, nwchem, molpro}) {
    SCOPED_TRACE(file);
    const file_couplings got = read(sample(file), 3);
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
    const char* own = version < "6" ? turbomole_5 : version < "6.49" ? turbomole_63 : turbomole_65;
    const auto of_version = [&](const char* file) {
      return std::regex_replace(sample(file), std::regex("V[0-9.-]+"), "V" + version);
    };
    const file_couplings got = read(of_version(own), 6);
    for (int i = 1; i <= 6; ++i)
      for (int c = 1; c <= 3; ++c) EXPECT_NEAR(got.nacme(c, i), -0.01 * i - 0.001 * c, 1e-9) << version;
    EXPECT_EQ(got.tranele(3, 2), 0.2 * got.nacme(3, 2) / 8.0) << version;
    // The other layout is shifted by two columns or more, and no number is read there.
    const std::string other = of_version(own == turbomole_65 ? turbomole_63 : turbomole_65);
    EXPECT_EQ(ending_of([&] { read(other, 6); }).status, 1) << version;
  }
}

// Longer labels, further roots and tags of atoms: the same couplings, with the energy of the root.
TEST(nacme_readers, roots_and_labels_other_than_the_first_and_the_shortest_are_read) {
  const std::string second = " Excited State   2:      Singlet-A       5.4422 eV  227.82 nm\n";
  const struct {
    const char* file;
    int natom;
    std::string from, to;
  } cases[] = {
      {gaussian, 3, " Excited State   1:      Singlet-A       5.4422 eV  227.82 nm  f=0.0000  <S**2>=0.000\n",
       " Excited State   1:      Singlet-A       4.0 eV\n" + second +
           " This state for optimization and/or second-order correction.\n"},
      {nwchem, 3, "  Root   1", "     Target root =      2\n  Root   1 singlet a   0.1 a.u.\n  Root   2"},
      {nwchem, 3, "3 h ", "3 Hw"},
      {nwchem, 3, "1 C ", "1 CA"},
      {turbomole_65, 6, "1 singlet a excitation", "1 singlet b1u excitation"},
      {turbomole_65, 6, "                         1 singlet a excitation",
       "     Excited state no.    2 chosen for optimization\n                         1 singlet a "
       "excitation\n\n"
       " Excitation energy:  0.1\n                         2 singlet a excitation"},
  };
  for (const auto& it : cases) {
    const file_couplings plain = read(sample(it.file), it.natom);
    const std::string content = changed(sample(it.file), it.from, it.to);
    SCOPED_TRACE(it.to);
    const file_couplings got = read(content, it.natom);
    EXPECT_NEAR(got.e_vert, plain.e_vert, 1e-12);
    EXPECT_EQ(got.z, plain.z);
    EXPECT_TRUE(got.nacme == plain.nacme);
  }
}

TEST(nacme_readers, broken_files_end_the_run_with_a_message_that_names_file_and_fault) {
  const struct {
    const char* file;
    int natom;
    const char *from, *to, *message;
  } cases[] = {
      {gaussian, 3, " Charge =", " charge =", "\"Charge =\""},
      {gaussian, 3, "Excited State   1", "Excited State   3", "\"Excited State   1\""},
      {gaussian, 3, "5.4422 eV", "5,4q eV", "cannot read the vertical energy"},
      {gaussian, 3, "5.4422 eV", "0.0000 eV", "the vertical energy of the coupling file is zero"},
      {gaussian, 3, " 3          1  ", " 3          0  ", "the nuclear charge of atom 3 is zero"},
      {gaussian, 3, "-0.004000", "-0.0o4000", "2 Atom"},
      {gaussian, 3, "-0.004000", "-1.0E+308", "not finite numbers"},
      {nwchem, 3, "Root   1", "Root   2", "\"Root   1\""},
      {nwchem, 3, "0.200000000 a.u.                5.4423", "a.u.", "in columns 25 to 55"},
      {nwchem, 3, " h ", " Qq", "no element has this symbol"},
      {nwchem, 3, "Electrostatic", "Other", "the transition field at the nuclei"},
      {molpro, 3, "Energy Difference", "Energy Gap", "\"Energy Difference at present geometry\""},
      {molpro, 3, "0.030000000", "***********", "the coupling x, y and z of an atom"},
      {molpro, 3, "PROGRAM SYSTEM MOLPRO", "PROGRAM SYSTEM ORCA..", "has no couplings that can be read"},
      {turbomole_65, 6, "a excitation", "a Excitation", "\"excitation\" in columns 38 to 47"},
      {turbomole_65, 6, "V6.5", "Vers", "cannot read the version"},
      {turbomole_65, 6, "-0.6300000E-01", "-0.63", "a line of couplings"},
  };
  for (const auto& it : cases) {
    const std::string content = changed(sample(it.file), it.from, it.to);
    const std::string message = ending_of([&] { read(content, it.natom); }).error;
    EXPECT_NE(message.find("nac.out"), std::string::npos) << it.to << ": " << message;
    EXPECT_NE(message.find(it.message), std::string::npos) << it.to << ": " << message;
  }
}

}  // namespace
}  // namespace vbn
