// Tests of the readers: one molecule in the files of every program, and files that are damaged.
#include "readers/qm_file.hpp"  // for the readers

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <span>
#include <string>
#include <utility>

#include "molecule/elements.hpp"           // for nat_to_mass
#include "tests/readers/sample_files.hpp"  // for the sample files

namespace vbn {
namespace {

struct sample_kind {
  const char* type;
  std::function<std::string(const molecule&)> output;
  double mass_digits, x_digits, fc_digits;  // what the digits of the file leave uncertain; fc relatively
};

const sample_kind frequency_files[] = {
    {"CHEMSHELL", chemshell_output, 5e-8, 1e-15, 0.0}, {"MOLPRO", molpro_output, 5e-7, 1e-15, 0.0},
    {"newer MOLPRO", molpro_newer, 5e-7, 1e-15, 0.0},  {"NUMFORCE", numforce_output, 5e-9, 1e-15, 0.0},
    {"NWCHEM", nwchem_output, 0.0, 1e-8, 5e-6},        {"TURBOMOLE", turbomole_output, 5e-6, 1e-15, 0.0},
    {"GAUSSIAN LOG", gaussian_log, 5e-8, 1e-6, 0.0}};

// The file that holds the force constants.
std::string fc_output(const sample_kind& kind, const molecule& m) {
  return kind.type == std::string("GAUSSIAN LOG") ? gaussian_fchk(m) : kind.output(m);
}

// Everything that a run reads.
molecule read_all(std::string_view output, std::string_view fc_file) {
  molecule m;
  qm_file file = opened(output);
  const int natom = qm_file_natom(file).value_or(0);
  m.nat = qm_file_nat(file, natom);
  m.mass = qm_file_mass(file, natom);
  m.x = qm_file_coord(file, natom);
  qm_file hessian = opened(fc_file);
  m.fc = qm_file_fc(hessian, natom);
  return m;
}

void expect_near(std::span<const double> a, std::span<const double> b, double within, double relatively) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t k = 0; k < a.size(); ++k) EXPECT_NEAR(a[k], b[k], within + relatively * std::abs(b[k]));
}

void expect_same(const molecule& c, const molecule& m, const sample_kind& kind) {
  EXPECT_EQ(c.nat, m.nat);
  expect_near(c.mass.span(), m.mass.span(), kind.mass_digits, 0.0);
  expect_near(c.x.span(), m.x.span(), kind.x_digits, 0.0);
  expect_near(c.fc.span(), m.fc.span(), 0.0, kind.fc_digits);
}

TEST(qm_file, one_molecule_is_the_same_in_the_files_of_all_programs) {
  // 12, 15, 18, 33 and 36 force constant columns end in the blocks of 5, 6, 9 and 10 columns everywhere.
  for (const int natom : {1, 2, 3, 4, 5, 6, 11, 12}) {
    molecule m = sample_molecule(natom);
    for (const int element : {0, 48, 66}) {  // symbols Cd and Dy, which look like the labels of Turbomole
      if (element != 0) m.nat(1) = element;
      m.mass(1) = nat_to_mass(m.nat(1));
      for (const sample_kind& kind : frequency_files) {
        SCOPED_TRACE(kind.type + std::to_string(natom));
        expect_same(read_all(kind.output(m), fc_output(kind, m)), m, kind);
      }
    }
  }
}

TEST(qm_file, a_file_cut_after_any_line_ends_the_run_or_still_holds_everything) {
  const molecule m = sample_molecule(6);
  for (const sample_kind& kind : frequency_files) {
    const std::string log = kind.output(m);
    const std::string fc = fc_output(kind, m);
    int ended = 0;
    for (std::size_t cut = 0; cut < fc.size(); cut = fc.find('\n', cut) + 1) {
      SCOPED_TRACE(kind.type + std::to_string(cut));
      const std::string part = fc.substr(0, cut);
      molecule c;
      const ending e = ending_of([&] { c = read_all(log == fc ? part : log, part); });
      if (e.status == -1) {
        expect_same(c, m, kind);
      } else {
        ++ended;
        EXPECT_FALSE(e.error.empty() && e.told.empty());
      }
    }
    EXPECT_GT(ended, 20) << kind.type;
  }
}

std::string all_changed(std::string output, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = output.find(from, at)) != std::string::npos; at += to.size()) {
    output.replace(at, from.size(), to);
  }
  return output;
}

TEST(qm_file, line_ends_of_other_systems_tabs_and_long_lines_lose_no_value) {
  const molecule m = sample_molecule(20);  // their masses make a line of 250 columns in a Molpro file
  for (const sample_kind& kind : frequency_files) {
    SCOPED_TRACE(kind.type);
    const std::string log = kind.output(m);
    const std::string fc = fc_output(kind, m);
    const std::pair<std::string, std::string> changes[] = {
        {"\n", "\r\n"}, {"\n", std::string(600, ' ') + "\n"}, {"\n        ", "\n\t"}};
    for (const auto& [from, to] : changes) {
      expect_same(read_all(all_changed(log, from, to), all_changed(fc, from, to)), m, kind);
    }
  }
}

TEST(qm_file, damage_is_told_with_its_line_or_in_the_words_of_the_program_that_stops) {
  const molecule m = sample_molecule(12);
  const std::string molpro = molpro_output(m);
  const std::string newer = molpro_newer(m);
  const std::string turbomole = turbomole_output(m);
  const std::string chemshell = chemshell_output(m);
  const std::string numforce = numforce_output(m);
  const std::string nwchem = nwchem_output(m);
  const std::string fchk = gaussian_fchk(m);
  const struct {
    std::string output;
    const char* from;
    const char* to;
    int status;
    const char* words;
  } damages[] = {
      {molpro, "   2   O ", "   2   Q1", 1, "in sample.out, line 8"},
      {molpro, "   12.000000", " *********", 1, "****"},
      {newer, "\n   7   O2", "\n   8   O2", 1, "this is not row 7"},
      {newer, "\n\n Frequencies", "\n  13   H13    1.00  0  0  0\n\n Frequencies", 1, "has too many rows"},
      {newer, "  11- 12", "  12- 12", 1, "masses from atom 11 on"},
      {newer, " 15.994915", "  1.007825", 1, "atom 2 is O in the table of atoms, but its mass is 1.007825"},
      {nwchem, "    2 O ", "    2 Q ", 1, "2 Q"},
      {turbomole, "    o    ", "    xx    ", 1, "xx"},
      {turbomole, "   1 c     dx ", "   1 cd    qx ", 1, "qx"},
      {chemshell, "C   x          0", "C   x          z", 1, "x          z"},
      {chemshell, "  0.54320000\n", "\n", 1, "cannot read the line"},
      {numforce, " row      2\n  ", " row      2\n ,", 1, "value is missing"},
      {nwchem, "MASS-WEIGHTED", "WEIGHTED", 1, "sample.out"},
      {fchk, "N=         666", "N=         528", 1, "666 force constants for 12 atoms"},
      {fchk, "Cartesian Force", "Gradient", 0,
       "\n Error! Can not find 'Cartesian Force Constants'\n sample.out\n\n"},
      {chemshell, "cartesian force constant", "none", 0, " No force matrix information found\n"},
      {molpro, "Force Constants", "none", 0, " No force matrix information found\n"},
      {molpro, "Dump information", "none", 0,
       "Error!\nCan not find coordinate in Molpro output file, stop!\n"},
      {turbomole, "CARTESIAN FORCE", "none", 0,
       "Error!\nCan not find force constant matrix in turbomole log file. Stop!\n"},
      {turbomole, "atomic coordinates", "none", 0,
       "Error!\nCan not find coordinate in TURBOMOLE output file, stop!\n"},
      {chemshell, "  Input Coord", " Input Coord", 0,
       "Error!\nCan not find coordinate in ChemShell output file, stop!\n"}};
  for (const auto& d : damages) {
    const std::string output = changed(d.output, d.from, d.to);
    const ending e = ending_of([&] { read_all(d.output == fchk ? gaussian_log(m) : output, output); });
    EXPECT_EQ(e.status, d.status) << d.from;
    const bool as_told = d.status == 0 ? e.told == d.words : e.error.find(d.words) != std::string::npos;
    EXPECT_TRUE(as_told) << d.words << e.told << e.error;
  }
}

}  // namespace
}  // namespace vbn
