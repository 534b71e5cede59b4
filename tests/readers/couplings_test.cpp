// Tests of the coupling readers: a file of each program, and what is said of broken ones.
#include "readers/qm_file.hpp"  // for qm_file_nacme

#include <gtest/gtest.h>

#include <algorithm>

#include "readers/file_type.hpp"  // for open_qm_file
#include "text/layout.hpp"        // for layout, value
#include "text/stop.hpp"          // for run_end

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
    "    1 Atom     -14.700000\n"
    "              Electrostatic Properties (Atomic Units)\n"
    " -----------------------------------------------------------------\n"
    "    Center     Electric         -------- Electric Field --------\n"
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

// A Turbomole file of six atoms, C O H H H H, two blocks of couplings. Element (c,i) is -0.01 i - 0.001 c.
std::string turbomole_out(const std::string& version, bool newer_layout) {
  std::string out = " egrad(node1) : TURBOMOLE V" + version +
                    " 22 Sep 2012\n"
                    "              | Atomic coordinate, charge and isotop information |\n"
                    "              +--------------------------------------------------+\n"
                    "                    atomic coordinates            atom ";
  const bool shells = version[0] == '5';  // a column that later releases leave out
  out += shells ? "shells charge pseudo isotop\n" : "   charge  isotop\n";
  for (int i = 1; i <= 6; ++i)
    out += "    0.00000000    0.00000000    " + std::to_string(i) + ".00000000    " + "cohhhh"[i - 1] +
           (shells ? "       3    " : "       ") + "681111"[i - 1] + ".000     0\n";
  out +=
      "                         1 singlet a excitation\n\n"
      " Excitation energy:                      0.2000000000000000    \n\n"
      "           cartesian nonadiabatic coupling matrix elements (1/bohr)\n"
      "           --------------------------------------------------------\n";
  const layout row(newer_layout ? "(a5,5(x,e14.7))" : "(a5,2x,5e14.7)");
  for (int ib = 1; ib <= 6; ib += 5) {
    out += "\n  ATOM        1 c            2 o            3 h            4 h            5 h       \n";
    for (int c = 1; c <= 3; ++c) {
      std::vector<value> values = {c == 1 ? "dE/dx" : c == 2 ? "dE/dy" : "dE/dz"};
      for (int i = ib; i <= std::min(ib + 4, 6); ++i) values.emplace_back(-0.01 * i - 0.001 * c);
      row.write(out, values);
    }
  }
  return out + "\n    egrad : all done  ****\n";
}

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
      {gaussian_log, 3, "-0.004000", "-1.0E+308", "beyond the range"},
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
