// Tests of the readers: one molecule in the files of every program, and files that are damaged.
#include "readers/qm_file.hpp"  // for the readers

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "readers/scan.hpp"                // for number_of_words
#include "run/constants.hpp"               // for bohr_to_ang
#include "tests/readers/sample_files.hpp"  // for the sample files

namespace vbn {
namespace {

struct sample_kind {
  const char* type;
  std::function<std::string(const molecule&)> output;
  double mass_digits, x_digits, fc_digits;  // what the digits of the file leave uncertain; fc relatively
};

// A log is followed by its checkpoint under the same name.
std::vector<sample_kind> frequency_files() {
  return {{"CHEMSHELL", chemshell_output, 5e-8, 1e-15, 0.0}, {"MOLPRO", molpro_output, 5e-7, 1e-15, 0.0},
          {"NUMFORCE", numforce_output, 5e-9, 1e-15, 0.0},   {"NWCHEM", nwchem_output, 0.0, 1e-8, 5e-6},
          {"TURBOMOLE", turbomole_output, 5e-6, 1e-15, 0.0}, {"GAUSSIAN LOG", gaussian_log, 5e-8, 1e-6, 0.0}};
}

// The file that holds the force constants.
std::string fc_output(const sample_kind& kind, const molecule& m) {
  return kind.type == std::string("GAUSSIAN LOG") ? gaussian_fchk(m) : kind.output(m);
}

struct contents {
  int natom = 0;
  array1<int> nat;
  array1<double> mass;
  array2<double> x;
  array2<double> fc;
  bool operator==(const contents&) const = default;
};

// Everything that a run reads.
contents read_all(std::string_view output, std::string_view fc_file) {
  contents c;
  int info = -1;
  qm_file file = opened(output);
  qm_file_natom(file, c.natom, info);
  qm_file_nat(file, c.natom, c.nat, info);
  qm_file_mass(file, c.natom, c.mass, info);
  qm_file_coord(file, c.natom, c.x, info);
  EXPECT_EQ(info, 0);
  qm_file hessian = opened(fc_file);
  qm_file_fc(hessian, c.natom, c.fc, info);
  EXPECT_EQ(info, 0);
  return c;
}

TEST(qm_file, one_molecule_is_the_same_in_the_files_of_all_programs) {
  // 12, 15, 18, 33 and 36 force constant columns end in the blocks of 5, 6, 9 and 10 columns everywhere.
  for (const int natom : {1, 2, 3, 4, 5, 6, 11, 12}) {
    const molecule m = sample_molecule(natom);
    for (const sample_kind& kind : frequency_files()) {
      const contents c = read_all(kind.output(m), fc_output(kind, m));
      EXPECT_EQ(c.natom, natom) << kind.type;
      EXPECT_EQ(c.nat, m.nat) << kind.type;
      for (int i = 1; i <= natom; ++i) {
        EXPECT_NEAR(c.mass(i), m.mass(i), kind.mass_digits) << kind.type << " atom " << i;
        for (int k = 1; k <= 3; ++k) {
          EXPECT_NEAR(c.x(k, i), m.x(k, i), kind.x_digits) << kind.type << " atom " << i;
        }
      }
      ASSERT_EQ(c.fc.rows(), 3 * natom);
      for (int i = 1; i <= 3 * natom; ++i) {
        for (int j = 1; j <= 3 * natom; ++j) {
          EXPECT_NEAR(c.fc(i, j), m.fc(i, j), kind.fc_digits * std::abs(m.fc(i, j)))
              << kind.type << " " << i << " " << j;
        }
      }
    }
  }
}

TEST(qm_file, a_file_cut_after_any_line_ends_the_run_or_still_holds_everything) {
  const molecule m = sample_molecule(6);
  for (const sample_kind& kind : frequency_files()) {
    const std::string log = kind.output(m);
    const std::string fc = fc_output(kind, m);
    const contents whole = read_all(log, fc);
    int ended = 0;
    for (std::size_t cut = 0; cut < fc.size(); cut = fc.find('\n', cut) + 1) {
      const std::string part = fc.substr(0, cut);
      contents c;
      const ending e = ending_of([&] { c = read_all(log == fc ? part : log, part); });
      if (e.status == -1) {
        // A Molpro file without its last block has the masses of the table.
        for (int i = 1; i <= c.natom; ++i) EXPECT_NEAR(c.mass(i), whole.mass(i), 5e-7) << kind.type;
        c.mass = whole.mass;
        EXPECT_TRUE(c == whole) << kind.type << " cut at " << cut;
      } else {
        ++ended;
        EXPECT_FALSE(e.error.empty() && e.told.empty()) << kind.type << " cut at " << cut;
      }
    }
    EXPECT_GT(ended, 20) << kind.type;
  }
}

std::string at_line_ends(std::string output, const std::string& inserted) {
  for (std::size_t at = 0; (at = output.find('\n', at)) != std::string::npos; at += inserted.size() + 1) {
    output.insert(at, inserted);
  }
  return output;
}

// Blanks in front of every eighth column as a tab.
std::string with_tabs(const std::string& output) {
  std::string tabbed;
  std::string eight;
  for (const char c : output) {
    eight += c;
    if (c != '\n' && eight.size() < 8) continue;
    const std::size_t text = eight.find_last_not_of(' ') + 1;
    tabbed += text < eight.size() ? eight.substr(0, text) + "\t" : eight;
    eight.clear();
  }
  return tabbed + eight;
}

TEST(qm_file, line_ends_of_other_systems_tabs_and_long_lines_lose_no_value) {
  const std::pair<const char*, std::function<std::string(const std::string&)>> alterations[] = {
      {"carriage returns", [](const std::string& a) { return at_line_ends(a, "\r"); }},
      {"long lines", [](const std::string& a) { return at_line_ends(a, std::string(600, ' ')); }},
      {"tabs", with_tabs}};
  const molecule m = sample_molecule(20);  // their masses make a line of 250 columns in a Molpro file
  for (const sample_kind& kind : frequency_files()) {
    const std::string log = kind.output(m);
    const std::string fc = fc_output(kind, m);
    const contents plain = read_all(log, fc);
    for (const auto& [by, altered] : alterations) {
      EXPECT_TRUE(read_all(altered(log), altered(fc)) == plain) << kind.type << " with " << by;
    }
  }
}

TEST(qm_file, an_unreadable_number_or_symbol_ends_the_run_with_its_line) {
  struct damage {
    std::string output;
    const char* from;
    const char* to;
    const char* shown;
  };
  const molecule m = sample_molecule();
  const std::vector<damage> damages = {
      {molpro_output(m), "   2  O ", "   2  Q1", "Q1"},
      {molpro_output(m), "GX2       -0", "GX2       -x", "-x"},
      {molpro_output(m), " Atomic Masses\n   1-  4   12.000000", " Atomic Masses\n   1-  4 *********",
       "****"},
      {nwchem_output(m), "    2 O ", "    2 Q ", "2 Q"},
      {nwchem_output(m), "\n    1  ", "\n    1 /", "1 /"},
      {turbomole_output(m), "    o    ", "    xx    ", "xx"},
      {turbomole_output(m), "           dy -0.", "           dy -x.", "dy -x."},
      {chemshell_output(m), "C   x          0", "C   x          z", "x          z"},
      {chemshell_output(m), "     1  C ", "     1  6 ", "1  6"},
      {numforce_output(m), "    1    6 ", "    1  6.0 ", "6.0"},
      {numforce_output(m), " row      2\n  ", " row      2\n ,", "value is missing"}};
  for (const damage& d : damages) {
    const std::string output = changed(d.output, d.from, d.to);
    const ending e = ending_of([&] { read_all(output, output); });
    EXPECT_EQ(e.status, 1) << d.from;
    EXPECT_NE(e.error.find("in sample.out, line "), std::string::npos) << e.error;
    EXPECT_NE(e.error.find(d.shown), std::string::npos) << e.error;
  }
}

TEST(qm_file, missing_tables_that_are_told_stop_with_status_0_and_the_others_fail) {
  struct missing {
    std::string output;
    const char* marker;
    int status;
    const char* told;
  };
  const molecule m = sample_molecule();
  const char* no_matrix = " No force matrix information found\n";
  const std::vector<missing> markers = {
      {chemshell_output(m), "cartesian force constant", 0, no_matrix},
      {molpro_output(m), "Force Constants", 0, no_matrix},
      {molpro_output(m), "Dump information", 0,
       "Error!\nCan not find coordinate in Molpro output file, stop!\n"},
      {turbomole_output(m), "CARTESIAN FORCE", 0,
       "Error!\nCan not find force constant matrix in turbomole log file. Stop!\n"},
      {turbomole_output(m), "atomic coordinates", 0,
       "Error!\nCan not find coordinate in TURBOMOLE output file, stop!\n"},
      {numforce_output(m), "Unprojected", 1, ""},
      {nwchem_output(m), "MASS-WEIGHTED", 1, ""},
      {gaussian_log(m), "GAUSSIAN", 1, ""}};
  for (const missing& gone : markers) {
    std::string output = gone.output;
    if (gone.marker != std::string("GAUSSIAN"))
      output = changed(output, gone.marker, "zz" + std::string(gone.marker).substr(2));
    const ending e = ending_of([&] { read_all(output, output); });
    EXPECT_EQ(e.status, gone.status) << gone.marker;
    EXPECT_EQ(e.told, gone.told);
    EXPECT_EQ(e.error.empty(), gone.status == 0) << e.error;
  }
  const std::string chemshell = changed(chemshell_output(m), "  Input Coord", " Input Coord");
  const ending e = ending_of([&] { read_all(chemshell, chemshell); });
  EXPECT_EQ(e.told, "Error!\nCan not find coordinate in ChemShell output file, stop!\n");
  EXPECT_EQ(e.status, 0);

  const std::string log = gaussian_log(m);
  const std::string no_hessian = changed(gaussian_fchk(m), "Cartesian Force Constants", "Cartesian Gradient");
  const ending gaussian = ending_of([&] { read_all(log, no_hessian); });
  EXPECT_EQ(gaussian.status, 0);
  EXPECT_EQ(gaussian.told, "\n Error! Can not find 'Cartesian Force Constants'\n sample.out\n\n");
}

TEST(qm_file, a_kind_without_the_reader_and_no_atoms_end_the_run_in_their_own_ways) {
  array1<int> nat;
  array2<double> x;
  int info = 0;
  for (const char* content : {"Number of atoms I 4\n filler filler filler", " vasp.5 filler filler filler",
                              "_cell_length_a filler filler", "nothing known filler filler filler"}) {
    qm_file file = opened(content);
    const ending e = ending_of([&] { qm_file_nat(file, 4, nat, info); });
    EXPECT_EQ(e.status, 1);
    EXPECT_NE(e.error.find("sample.out"), std::string::npos) << e.error;
  }
  qm_file file = opened(numforce_output(sample_molecule()));
  const ending none = ending_of([&] { qm_file_coord(file, -3, x, info); });
  EXPECT_EQ(none.status, 0);
  EXPECT_EQ(none.told, "  Error!\n  natom =                  -3\n  Stop!\n");
  for (const int natom : {2000, 2147483647}) {
    EXPECT_EQ(ending_of([&] { qm_file_coord(file, natom, x, info); }).status, 1) << natom;
    EXPECT_EQ(ending_of([&] { qm_file_fc(file, natom, x, info); }).status, 1) << natom;
  }
}

TEST(qm_file, numbers_of_atoms_that_no_other_test_reads) {
  struct counted {
    const char* content;
    int natom;
  };
  const counted files[] = {
      {"_cell_length_a 1\n_atom_site_occupancy\nheading\nC 0\nO 0\nloop_\nH 0\n", 2},
      {"_cell_length_a 1\n_atom_site_occupancy\nheading\nC 0\nO 0\n", 2},
      {" Program PWSCF v.5.0\n     number of atoms/cell      =           12\n", 12},
      {" vasp.5.2\n   number of dos      NEDOS =    301   number of ions     NIONS =      8\n", 8},
      {"t\nNumber of atoms                            I                4\n", 4},
      {" vasp.5.2\n", 0},
      {"unknown\n", 0}};
  for (const counted& c : files) {
    qm_file file = opened(c.content);
    int natom = 7;
    int info = 7;
    qm_file_natom(file, natom, info);
    EXPECT_EQ(natom, c.natom) << c.content;
    EXPECT_EQ(info, c.natom == 0 ? -1 : 0) << c.content;
  }
  qm_file vasp = opened(" vasp.5.2\n POSITION\n ---\n 9 9 9 0\n POSITION\n ---\n 0.529177249 0 -1 0 0 0\n");
  array2<double> x;
  int info = 0;
  qm_file_coord(vasp, 1, x, info);
  EXPECT_EQ(x(1, 1), 1.0);
  EXPECT_EQ(x(3, 1), -1.0 / bohr_to_ang);
}

TEST(qm_file, masses_come_from_the_first_list_there_is_and_else_from_the_table) {
  const molecule m = sample_molecule();
  const auto mass_of = [](const std::string& output, int atom) {
    qm_file file = opened(output);
    array1<double> mass;
    int info = 0;
    qm_file_mass(file, 4, mass, info);
    return mass(atom);
  };
  std::string log = changed(gaussian_log(m), "   1.0078250   1.0078250\n", "   1.0078250   2.0141018\n");
  EXPECT_EQ(mass_of(log, 4), 2.0141018);
  log = changed(log, "AtmWgt=", "Weights ");
  EXPECT_EQ(mass_of(log, 4), 1.00783);
  log = changed(log, "Thermochemistry", "thermochemistry");
  EXPECT_EQ(mass_of(log, 4), m.mass(4));
  EXPECT_EQ(mass_of(changed(molpro_output(m), "Atomic Masses", "Atomic masses"), 2), m.mass(2));
  EXPECT_EQ(mass_of(changed(turbomole_output(m), "ATOMIC WEIGHTS", "atomic weights"), 2), m.mass(2));
  const std::string turbomole = turbomole_output(m);
  const std::size_t box = turbomole.find("              +---");
  const std::string chemshell = changed(chemshell_output(m), "          atomic weights\n",
                                        turbomole.substr(box, turbomole.find("   type   atoms") - box));
  EXPECT_EQ(mass_of(chemshell, 2), m.mass(2));
  EXPECT_EQ(mass_of(gaussian_fchk(m), 2), 15.9949146);
  // Promethium has no mass in the table; whoever uses the atom stops.
  const std::string pm = changed(molpro_output(m), "   1  C ", "   1  Pm");
  EXPECT_EQ(mass_of(changed(pm, "Atomic Masses", "Atomic masses"), 1), 0.0);
}

TEST(qm_file, unit_of_a_numforce_file_is_bohr_only_when_the_one_word_behind_the_marker_says_so) {
  const molecule m = sample_molecule();
  for (const char* marker : {" Coordinate bohr", " Coordinate BOHR"}) {
    qm_file file = opened(changed(numforce_output(m), " Coordinate Bohr", marker));
    array2<double> x;
    int info = 0;
    qm_file_coord(file, 4, x, info);
    EXPECT_EQ(x(1, 1), m.x(1, 1)) << marker;
  }
  for (const char* marker : {" Coordinate", " Coordinate Angstrom", " Coordinate in bohr"}) {
    qm_file file = opened(changed(numforce_output(m), " Coordinate Bohr", marker));
    array2<double> x;
    int info = 0;
    qm_file_coord(file, 4, x, info);
    EXPECT_EQ(x(1, 1), m.x(1, 1) / bohr_to_ang) << marker;
  }
}

TEST(qm_file, the_lower_triangle_of_chemshell_wins_and_must_not_be_blank) {
  molecule m = sample_molecule(2);
  const array2<double> symmetric = m.fc;
  for (int i = 1; i <= 6; ++i) {
    for (int j = i + 1; j <= 6; ++j) m.fc(i, j) = 9.0;
  }
  qm_file file = opened(chemshell_output(m));
  array2<double> fc;
  int info = 0;
  qm_file_fc(file, 2, fc, info);
  EXPECT_EQ(fc, symmetric);

  const std::string last_row = "     6 O   x";
  std::string output = chemshell_output(m);
  const std::size_t row = output.find(last_row);
  ASSERT_NE(row, std::string::npos);
  output = output.substr(0, row + 20 + 12 * 5) + "\n" + output.substr(output.find('\n', row) + 1);
  qm_file short_row = opened(output);
  EXPECT_EQ(ending_of([&] { qm_file_fc(short_row, 2, fc, info); }).status, 1);
}

TEST(qm_file, elements_come_from_the_first_gaussian_table_and_the_geometry_from_the_last) {
  const molecule m = sample_molecule();
  std::string log = gaussian_log(m);
  const std::size_t last = log.rfind("      2          8           0");
  log.replace(last, 18, "      2          7");
  const contents c = read_all(log, gaussian_fchk(m));
  EXPECT_EQ(c.nat(2), 8);
  EXPECT_NEAR(c.x(1, 1), m.x(1, 1), 1e-6);
}

TEST(qm_file, a_checkpoint_of_another_molecule_ends_the_run) {
  const ending e =
      ending_of([] { read_all(gaussian_log(sample_molecule(4)), gaussian_fchk(sample_molecule(5))); });
  EXPECT_EQ(e.status, 1);
  EXPECT_NE(e.error.find("78 force constants for 4 atoms"), std::string::npos) << e.error;
}

TEST(qm_file, a_last_number_without_a_line_end_is_read_and_warned_of) {
  std::string output = numforce_output(sample_molecule(2));
  output.pop_back();
  testing::internal::CaptureStderr();
  const contents c = read_all(output, output);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("sample.out ends with a number"), std::string::npos);
  EXPECT_EQ(c.fc(6, 6), sample_molecule(2).fc(6, 6));
}

}  // namespace
}  // namespace vbn
