// Tests of the coupling readers: a file of each program, and what is said of broken ones.
#include "couplings/nacme_readers.hpp"  // for qm_file_nacme

#include <gtest/gtest.h>

#include <cmath>

#include "readers/file_type.hpp"  // for qm_file and qm_file_type
#include "run/constants.hpp"      // for au_to_ev
#include "run/stop.hpp"           // for run_end

namespace vbn {
namespace {

// Carbon monoxide and a far proton: atoms C, O, H.
const std::string gaussian_log =
    " Entering Gaussian System, Link 0=g16\n"
    " ******************************************\n"
    " Gaussian 16:  ES64L-G16RevC.01  3-Jul-2019\n"
    " Charge =  1 Multiplicity = 1\n"
    " C                      0.00000   0.00000   0.00000 \n"
    " O                      0.00000   0.00000   1.12800 \n"
    " H                      0.00000   0.00000   9.00000 \n"
    " \n"
    " NAtoms=      3 NQM=        3\n"
    "                         Input orientation:\n"
    " Center     Atomic      Atomic             Coordinates (Angstroms)\n"
    " Number     Number       Type             X           Y           Z\n"
    " ---------------------------------------------------------------------\n"
    "      1          6           0        0.000000    0.000000    0.000000\n"
    "      2          8           0        0.000000    0.000000    1.128000\n"
    "      3          1           0        0.000000    0.000000    9.000000\n"
    " ---------------------------------------------------------------------\n"
    "              Electrostatic Properties (Atomic Units)\n"
    "    Center     Electric         -------- Electric Field --------\n"
    "    1 Atom       0.000000      9.000000      9.000000      9.000000\n"
    " Excited State   1:      Singlet-A       5.4422 eV  227.82 nm  f=0.0000  <S**2>=0.000\n"
    " Excited State   2:      Singlet-A       9.9999 eV  123.98 nm  f=0.0000  <S**2>=0.000\n"
    "              Electrostatic Properties (Atomic Units)\n"
    "    Center     Electric\n"
    "               Potential\n"
    "    1 Atom     -14.700000\n"
    "    2 Atom     -22.300000\n"
    "    3 Atom      -1.100000\n"
    "              Electrostatic Properties (Atomic Units)\n"
    " -----------------------------------------------------------------\n"
    "    Center     Electric         -------- Electric Field --------\n"
    "               Potential          X             Y             Z\n"
    " -----------------------------------------------------------------\n"
    "    1 Atom       0.000000      0.001000      0.002000     -0.003000\n"
    "    2 Atom       0.000000     -0.004000      0.005000      0.006000\n"
    "    3 Atom       0.000000      0.007000     -0.008000      0.009000\n"
    " -----------------------------------------------------------------\n";

const std::string nwchem_out =
    "             Northwest Computational Chemistry Package (NWChem) 7.0.2\n"
    " Output coordinates in angstroms (scale by  1.889725989 to convert to a.u.)\n"
    "\n"
    "  No.       Tag          Charge          X              Y              Z\n"
    " ---- ---------------- ---------- -------------- -------------- --------------\n"
    "    1 C                    6.0000     0.00000000     0.00000000     0.00000000\n"
    "    2 O                    8.0000     0.00000000     0.00000000     1.12800000\n"
    "    3 h                    1.0000     0.00000000     0.00000000     9.00000000\n"
    "\n"
    "  Root   1 singlet a              0.200000000 a.u.                5.4423 eV \n"
    "\n"
    "              Electrostatic Properties (Atomic Units)\n"
    "   Atom            Electric Field\n"
    "    1 C        0.0010000      0.0020000     -0.0030000\n"
    "    2 O       -0.0040000      0.0050000      0.0060000\n"
    "    3 H        0.0070000     -0.0080000      0.0090000\n";

const std::string molpro_out =
    "                                         ***  PROGRAM SYSTEM MOLPRO  ***\n"
    " Derivative Coupling before scaling\n"
    "       9.0  9.0  9.0\n"
    " ATOMIC COORDINATES\n"
    "\n"
    " NR  ATOM    CHARGE       X              Y              Z\n"
    "\n"
    "   1  C       6.00    0.000000000    0.000000000    0.000000000\n"
    "   2  O       8.00    0.000000000    0.000000000    2.131611073\n"
    "   3  H       1.00    0.000000000    0.000000000   17.007535138\n"
    "\n"
    " Energy Difference at present geometry       0.200000000\n"
    "\n"
    " Derivative Coupling before scaling\n"
    "       0.030000000       0.060000000      -0.090000000\n"
    "      -0.160000000       0.200000000       0.240000000\n"
    "       0.035000000      -0.040000000       0.045000000\n"
    "\n";

// A Turbomole file of six atoms, C O H H H H, two blocks of couplings. Element (c,i) is 0.01 i + 0.001 c.
std::string turbomole_out(const std::string& version, bool newer_layout, bool newer_head) {
  std::string out = " egrad(node1) : TURBOMOLE V" + version +
                    " 22 Sep 2012 at 17:26:03\n"
                    "              | Atomic coordinate, charge and isotop information |\n"
                    "              +--------------------------------------------------+\n";
  out += newer_head ? "                    atomic coordinates            atom    charge  isotop\n"
                    : "              atomic coordinates              atom shells charge pseudo isotop\n";
  for (int i = 1; i <= 6; ++i) {
    const std::string symbol = i == 1 ? "c" : i == 2 ? "o" : "h";
    const std::string charge = i == 1 ? "6.000" : i == 2 ? "8.000" : "1.000";
    out += "    0.00000000    0.00000000    " + std::to_string(i) + ".00000000    " + symbol +
           (newer_head ? "       " : "       3    ") + charge + "     0\n";
  }
  out +=
      "                         1 singlet a excitation\n\n"
      " Excitation energy:                      0.2000000000000000    \n\n"
      "           cartesian nonadiabatic coupling matrix elements (1/bohr)\n"
      "           --------------------------------------------------------\n";
  const layout first(newer_layout ? "(a5,5(x,e14.7))" : "(a5,2x,5e14.7)");
  const char* labels[] = {"dE/dx", "dE/dy", "dE/dz"};
  for (int ib = 1; ib <= 6; ib += 5) {
    out += "\n  ATOM        1 c            2 o            3 h            4 h            5 h       \n";
    for (int c = 1; c <= 3; ++c) {
      std::vector<value> values = {labels[c - 1]};
      for (int i = ib; i <= std::min(ib + 4, 6); ++i) values.emplace_back(-0.01 * i - 0.001 * c);
      first.write(out, values);
    }
  }
  return out + "\n    egrad : all done  ****\n";
}

struct result {
  array2<double> nacme, tranele;
  double e_vert = 0.0;
};

result read(const std::string& content, int natom) {
  qm_file file{input_file::from_memory("nac.out", content), "", "", -1};
  qm_file_type(file.file, file.type, file.version, file.info);
  result got;
  int info = -1;
  qm_file_nacme(file, natom, got.nacme, got.tranele, got.e_vert, info);
  EXPECT_EQ(info, 0);
  return got;
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

TEST(nacme_readers, gaussian_field_of_the_first_excited_state_passing_by_tables_without_fields) {
  const result got = read(gaussian_log, 3);
  EXPECT_EQ(got.e_vert, 5.4422 / au_to_ev);
  EXPECT_EQ(got.tranele(3, 1), -0.003);
  EXPECT_EQ(got.tranele(1, 2), -0.004);
  EXPECT_EQ(got.nacme(3, 1), -0.003 * 6.0 / got.e_vert);
  EXPECT_EQ(got.nacme(2, 2), 0.005 * 8.0 / got.e_vert);
  EXPECT_EQ(got.nacme(1, 3), 0.007 / got.e_vert);
}

TEST(nacme_readers, nwchem_field_with_charges_by_symbol) {
  const result got = read(nwchem_out, 3);
  EXPECT_EQ(got.e_vert, 0.2);
  EXPECT_EQ(got.tranele(2, 3), -0.008);
  EXPECT_EQ(got.nacme(3, 1), -0.003 * 6.0 / 0.2);
  EXPECT_EQ(got.nacme(1, 3), 0.007 / 0.2);
}

TEST(nacme_readers, molpro_couplings_behind_the_energy) {
  const result got = read(molpro_out, 3);
  EXPECT_EQ(got.e_vert, 0.2);
  EXPECT_EQ(got.nacme(3, 2), 0.24);
  EXPECT_EQ(got.tranele(3, 2), 0.24 / 8.0 * 0.2);
  EXPECT_EQ(got.tranele(1, 1), 0.03 / 6.0 * 0.2);
}

TEST(nacme_readers, turbomole_blocks_of_five_in_the_layout_of_the_release) {
  const struct {
    const char* version;
    bool newer;
  } files[] = {{"6.3", false}, {"5-9-0", false}, {"6.48", false},
               {"6.49", true}, {"6.5", true},    {"7.4.1", true}};
  for (const auto& [version, newer] : files) {
    const result got = read(turbomole_out(version, newer, version[0] != '5'), 6);
    EXPECT_EQ(got.e_vert, 0.2) << version;
    for (int i = 1; i <= 6; ++i) {
      const double z = i == 1 ? 6.0 : i == 2 ? 8.0 : 1.0;
      for (int c = 1; c <= 3; ++c) {
        EXPECT_NEAR(got.nacme(c, i), -0.01 * i - 0.001 * c, 1e-9) << version;
        EXPECT_EQ(got.tranele(c, i), 0.2 * got.nacme(c, i) / z) << version;
      }
    }
    // The other layout is shifted by two columns or more, and no number is taken from there.
    EXPECT_NE(message(turbomole_out(version, !newer, true), 6), "") << version;
  }
}

TEST(nacme_readers, first_block_of_turbomole_may_hold_fewer_than_five_atoms) {
  std::string out = turbomole_out("6.5", true, true);
  const std::string head = out.substr(0, out.find("\n  ATOM"));
  out = head +
        "\n  ATOM        1 c            2 o     \n"
        "dE/dx -0.1000000D-01  0.2000000D-01\n"
        "dE/dy -0.3000000D-01  0.4000000D-01\n"
        "dE/dz -0.5000000D-01  0.6000000D-01\n";
  const result got = read(out, 2);
  EXPECT_EQ(got.nacme(3, 2), 0.06);
  EXPECT_EQ(got.nacme(2, 1), -0.03);
}

TEST(nacme_readers, broken_files_end_the_run_with_a_message_that_names_file_and_lack) {
  const struct {
    const std::string& file;
    int natom;
    const char *from, *to;
    const char* told;
  } cases[] = {
      {gaussian_log, 3, " Charge =", " charge =", "\"Charge =\""},
      {gaussian_log, 3, "Center     Atomic      Atomic", "Centre", "the atomic numbers"},
      {gaussian_log, 3, "Excited State   1", "Excited State   3", "\"Excited State   1\""},
      {gaussian_log, 3, "5.4422 eV", "5,4q eV", "cannot read the vertical energy"},
      {gaussian_log, 3, "5.4422 eV", "0.0000 eV", "the vertical energy of the coupling file is zero"},
      {gaussian_log, 3, " 3          1  ", " 3          0  ", "the nuclear charge of atom 3 is zero"},
      {gaussian_log, 3, "-0.004000", "-0.0o4000", "2 Atom"},
      {gaussian_log, 3, "-0.004000", "-1.0E+308", "beyond the range"},
      {gaussian_log, 4, "C", "C", "nac.out"},
      {nwchem_out, 3, "Output coordinates", "output coordinates", "the table \"Output coordinates"},
      {nwchem_out, 3, "Root   1", "Root   2", "\"Root   1\""},
      {nwchem_out, 3, "0.200000000 a.u.                5.4423", "a.u.", "in columns 25 to 55"},
      {nwchem_out, 3, " h ", " Qq", "no element has this symbol"},
      {nwchem_out, 3, "Electrostatic", "Other", "the transition field at the nuclei"},
      {nwchem_out, 3, "0.200000000", "0.000000000", "the vertical energy of the coupling file is zero"},
      {molpro_out, 3, "ATOMIC COORDINATES", "COORDINATES", "\"ATOMIC COORDINATES\""},
      {molpro_out, 3, "Energy Difference", "Energy Gap", "\"Energy Difference at present geometry\""},
      {molpro_out, 3, "0.030000000", "***********", "the coupling x, y and z of an atom"},
      {molpro_out, 3, "O       8.00", "O       0.00", "the nuclear charge of atom 2 is zero"},
      {molpro_out, 3, "0.200000000\n", "1.0E-320\n", "the vertical energy of the coupling file is zero"},
      {molpro_out, 3, "PROGRAM SYSTEM MOLPRO", "PROGRAM SYSTEM ORCA..", "has no couplings that can be read"},
  };
  for (const auto& broken : cases) {
    const std::string told = message(replaced(broken.file, broken.from, broken.to), broken.natom);
    EXPECT_NE(told.find("nac.out"), std::string::npos) << broken.to << ": " << told;
    EXPECT_NE(told.find(broken.told), std::string::npos) << broken.to << ": " << told;
  }
}

TEST(nacme_readers,
     turbomole_without_its_box_of_atoms_stops_as_told_and_without_other_markers_with_a_message) {
  const std::string file = turbomole_out("6.5", true, true);
  testing::internal::CaptureStdout();
  try {
    read(replaced(file, "Atomic coordinate, charge", "Coordinate, charge"), 6);
    FAIL();
  } catch (const run_end& end) {
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.text, "");
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            " Can not find Atomic coordinate, charge and isotop information\n in nac.out\n Stop!\n");
  const struct {
    const char *from, *to;
    const char* told;
  } cases[] = {
      {"a excitation", "a Excitation", "\"excitation\" in columns 38 to 47"},
      {"Excitation energy:", "Energy:", "\"Excitation energy:\""},
      {"cartesian nonadiabatic", "nonadiabatic", "\"cartesian nonadiabatic coupling matrix elements\""},
      {"V6.5", "Vers", "cannot read the version"},
      {"-0.6300000E-01", "-0.63", "a line of couplings"},
      {"-0.6100000E-01", "-0.61ooooE-01 ", "a line of couplings"},
      {"8.000", "0.000", "the nuclear charge of atom 2 is zero"},
      {"0.2000000000000000", "0.0000000000000000", "the vertical energy of the coupling file is zero"},
  };
  for (const auto& broken : cases) {
    const std::string told = message(replaced(file, broken.from, broken.to), 6);
    EXPECT_NE(told.find("nac.out"), std::string::npos) << broken.to << ": " << told;
    EXPECT_NE(told.find(broken.told), std::string::npos) << broken.to << ": " << told;
  }
}

// Behind a whole line nothing tells that a file goes on, so the lines that hold the couplings decide.
TEST(nacme_readers, file_cut_before_its_last_coupling_never_gives_couplings) {
  const struct {
    std::string content, last;
    int natom;
  } files[] = {{gaussian_log, "    3 Atom       0.000000      0.007", 3},
               {nwchem_out, "    3 H ", 3},
               {molpro_out, "       0.035", 3},
               {turbomole_out("6.3", false, false), "dE/dz  -0.63", 6}};
  for (const auto& file : files) {
    const std::size_t end = file.content.find(file.last);
    ASSERT_NE(end, std::string::npos) << file.last;
    for (std::size_t at = file.content.find('\n'); at < end; at = file.content.find('\n', at + 1)) {
      testing::internal::CaptureStdout();
      bool ended = false;
      try {
        read(file.content.substr(0, at + 1), file.natom);
      } catch (const run_end&) {
        ended = true;
      }
      testing::internal::GetCapturedStdout();
      EXPECT_TRUE(ended) << "cut behind: " << file.content.substr(0, at);
    }
  }
}

TEST(nacme_readers, number_at_the_end_of_a_file_without_line_end_is_doubted) {
  testing::internal::CaptureStderr();
  const std::string cut = molpro_out.substr(0, molpro_out.rfind("45000000"));
  EXPECT_EQ(read(cut, 3).nacme(3, 3), 0.0);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("warning: nac.out ends with a number"),
            std::string::npos);
}

}  // namespace
}  // namespace vbn
