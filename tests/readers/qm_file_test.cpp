// Tests of the readers: one molecule in the files of every program, and files that are damaged.
#include "readers/qm_file.hpp"  // for the readers

#include <gtest/gtest.h>

#include <cmath>
#include <span>
#include <string>
#include <utility>

#include "molecule/elements.hpp"      // for nat_to_mass
#include "tests/ending.hpp"           // for ending_of
#include "tests/readers/samples.hpp"  // for sample, opened, changed

namespace vbn {
namespace {

// Coordinates in bohr and artificial force constants, with four decimals each.
struct molecule {
  array1<int> nat;
  array1<double> mass;
  array2<double> x, fc;
};

// The content of the samples with this number of atoms. The symbols Cd and Dy look like the labels of
// Turbomole. The 3, 12, 18 and 36 columns of force constants end in the blocks of 5, 6, 9 and 10 columns
// everywhere.
molecule sample_molecule(int natom) {
  constexpr int chain[] = {6, 8, 1, 1, 7, 48, 66};
  molecule m{array1<int>(natom), array1<double>(natom), array2<double>(3, natom),
             array2<double>(3 * natom, 3 * natom)};
  for (int i = 1; i <= natom; ++i) {
    m.nat(i) = chain[(i - 1) % 7];
    m.mass(i) = nat_to_mass(m.nat(i));
    m.x(1, i) = 1.25 * i - 2.5;
    m.x(2, i) = i % 2 == 0 ? 0.75 : -0.5;
    m.x(3, i) = 0.125 * (i * i % 11);
  }
  for (int i = 1; i <= m.fc.rows(); ++i)
    for (int j = 1; j <= i; ++j)
      m.fc(i, j) = m.fc(j, i) = ((i == j ? 5000 : -2500) + (37 * i + 11 * j) % 1000) / 1e4;
  return m;
}

struct sample_kind {
  std::string name, end, end_fc;            // of its file, and of the file with the force constants
  double mass_digits, x_digits, fc_digits;  // uncertainty from the digits of the file, of fc relative

  std::string output(int natom) const { return sample(name + "_" + std::to_string(natom) + end); }
  std::string fc_output(int natom) const { return sample(name + "_" + std::to_string(natom) + end_fc); }
};

const sample_kind kinds[] = {
    {"chemshell", ".out", ".out", 5e-8, 1e-15, 0.0},    {"molpro", ".out", ".out", 5e-7, 1e-15, 0.0},
    {"molpro_newer", ".out", ".out", 5e-7, 1e-15, 0.0}, {"numforce", ".dat", ".dat", 5e-9, 1e-15, 0.0},
    {"nwchem", ".out", ".out", 0.0, 1e-8, 5e-6},        {"turbomole", ".out", ".out", 5e-6, 1e-15, 0.0},
    {"gaussian", ".log", ".fchk", 5e-8, 1e-6, 0.0},     {"orca", ".hess", ".hess", 5e-7, 1e-15, 1e-15},
    {"qchem", ".out", ".out", 5e-6, 1e-11, 0.0},        {"psi4", ".out", ".out", 5e-9, 1e-11, 0.0},
    {"gamess", ".out", ".out", 5e-6, 1e-15, 0.0},       {"cp2k", ".out", ".out", 5e-5, 1e-6, 1e-4},
    {"mopac", ".aux", ".aux", 5e-9, 1e-12, 1e-9},       {"bagel", ".out", ".out", 1e-5, 1e-15, 0.0},
    {"jaguar", ".in", ".in", 0.0, 1e-11, 1e-15},        {"cfour", ".out", ".out", 5e-9, 1e-15, 0.0},
    {"dalton", ".out", ".out", 5e-7, 1e-15, 0.0}};

// Everything that a run reads.
molecule read_all(const std::string& output, const std::string& fc_file) {
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
  for (const int natom : {1, 4, 6, 12})
    for (const sample_kind& kind : kinds) {
      SCOPED_TRACE(kind.name + std::to_string(natom));
      expect_same(read_all(kind.output(natom), kind.fc_output(natom)), sample_molecule(natom), kind);
    }
}

TEST(qm_file, a_file_cut_after_any_line_ends_the_run_or_still_holds_everything) {
  for (const sample_kind& kind : kinds) {
    const std::string log = kind.output(6), fc = kind.fc_output(6);
    int ended = 0;
    for (std::size_t cut = 0; cut < fc.size(); cut = fc.find('\n', cut) + 1) {
      SCOPED_TRACE(kind.name + std::to_string(cut));
      const std::string part = fc.substr(0, cut);
      molecule c;
      const ending e = ending_of([&] { c = read_all(log == fc ? part : log, part); });
      if (e.status == -1) {
        expect_same(c, sample_molecule(6), kind);
      } else {
        ++ended;
        EXPECT_FALSE(e.error.empty() && e.printed.empty());
      }
    }
    EXPECT_GT(ended, 20) << kind.name;
  }
}

std::string all_changed(std::string output, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = output.find(from, at)) != std::string::npos; at += to.size()) {
    output.replace(at, from.size(), to);
  }
  return output;
}

TEST(qm_file, line_ends_of_other_systems_tabs_and_long_lines_lose_no_value) {
  for (const sample_kind& kind : kinds) {
    SCOPED_TRACE(kind.name);
    const std::pair<std::string, std::string> changes[] = {
        {"\n", "\r\n"}, {"\n", std::string(600, ' ') + "\n"}, {"\n        ", "\n\t"}};
    for (const auto& [from, to] : changes)
      expect_same(read_all(all_changed(kind.output(12), from, to), all_changed(kind.fc_output(12), from, to)),
                  sample_molecule(12), kind);
  }
}

TEST(qm_file, damage_is_reported_with_its_line_or_in_the_words_of_the_program_that_stops) {
  const std::string chemshell = kinds[0].output(12), molpro = kinds[1].output(12),
                    newer = kinds[2].output(12), numforce = kinds[3].output(12), nwchem = kinds[4].output(12),
                    turbomole = kinds[5].output(12), fchk = kinds[6].fc_output(12),
                    orca = sample("orca_12.hess"), mopac = sample("mopac_12.aux"),
                    cfour = sample("cfour_12.out");
  const struct {
    std::string output;
    const char* from;
    const char* to;
    int status;
    const char* words;
  } damages[] = {
      {molpro, "   2   O ", "   2   Q1", 1, "in sample.out, line 8"},
      {molpro, "   12.000000", " *********", 1, "****"},
      {newer, "\n   7   Dy2", "\n   8   Dy2", 1, "this is not row 7"},
      {newer, "\n\n Frequencies", "\n  13   H13    1.00  0  0  0\n\n Frequencies", 1, "too many rows"},
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
      {orca, "$hessian\n36", "$hessian\n33", 1, "does not belong to 12 atoms"},
      {orca, "$atoms\n12", "$atoms\n13", 1, "12 rows of atoms"},
      {orca, "\n    7  ", "\n    8  ", 1, "this is not the next row of the matrix"},
      {orca, "        5        ", "        6        ", 1, "these are not the next columns"},
      {orca, " H      1.007825", " Xx     1.007825", 1, "2 rows of atoms"},
      {sample("qchem_6.out"), " Final Hessian.", " No Hessian.", 1, "gui = 2"},
      {sample("qchem_6.out"), "    6      Cd", "    6      ??", 1, "of 15 columns"},
      {sample("psi4_6.out"), "  Irrep", "Using finite-differences of gradients\n  Irrep", 1,
       "set hessian_write true"},
      {sample("gamess_6.out"), "  Y-0.2415", "  Z-0.2415", 1, "this is not the next row of the matrix"},
      {sample("gamess_6.out"), "                3 ", "                5 ", 1, "not the next block"},
      {sample("jaguar_6.in"), "\n&\n&hess\n", "\n H7 1.0 1.0 1.0\n&\n&hess\n", 1, "is not number"},
      {sample("jaguar_6.in"), "Cd6", "Cd6 1.0", 1, "is not number 6 of the matrix"},
      {mopac, "[0666]", "[0665]", 1, "does not belong to the atoms"},
      {mopac, "ATOM_EL[12]", "ATOM_EL[1000000000]", 1, "too short for 1000000000 atoms"},
      {mopac, "HESSIAN_MATRIX", "HESSIAN", 1, "FORCE with AUX"},
      {cfour, "\n           C#", "\n  Symmetry 1\n           C#", 1, "SYMMETRY=OFF"},
      {cfour, "analysis: \n      12.0", "analysis: \n      22.0", 1, "atom 1 is C in the geometry"},
      {chemshell, "  Input Coord", " Input Coord", 0,
       "Error!\nCan not find coordinate in ChemShell output file, stop!\n"}};
  for (const auto& d : damages) {
    const std::string output = changed(d.output, d.from, d.to);
    const ending e = ending_of([&] { read_all(d.output == fchk ? kinds[6].output(12) : output, output); });
    EXPECT_EQ(e.status, d.status) << d.from;
    const bool as_expected =
        d.status == 0 ? e.printed == d.words : e.error.find(d.words) != std::string::npos;
    EXPECT_TRUE(as_expected) << d.words << e.printed << e.error;
  }
}

TEST(qm_file, a_matrix_that_is_not_symmetric_gives_its_mean_and_a_warning) {
  const std::string other = changed(sample("orca_4.hess"), "  -2.4150000000E-01", "  -2.2150000000E-01");
  const ending e = ending_of([&](const messages& say) {
    qm_file file = open_qm_file(input_file::from_memory("sample.hess", other, say));
    EXPECT_NEAR(qm_file_fc(file, 4)(2, 1), -0.2315, 1e-12);
  });
  EXPECT_NE(e.warned.find("differ by up to 0.02 hartree/bohr^2"), std::string::npos) << e.warned;
}

}  // namespace
}  // namespace vbn
