// Tests of Molpro files as versions 2012 to 2022 write them: no dump of the geometry, numbered labels, masses
// ten to a line.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "readers/elements.hpp"            // for element_symbol
#include "readers/qm_file.hpp"             // for the readers
#include "tests/readers/sample_files.hpp"  // for the sample files

namespace vbn {
namespace {

template <class... values>
std::string put(const char* format, values... v) {
  char line[256];
  std::snprintf(line, sizeof line, format, v...);
  return line;
}

// The block of masses as the program prints it, the range of the atoms in front of each line.
std::string mass_block(const molecule& m) {
  std::string block = " Atomic Masses\n";
  for (int ib = 1; ib <= m.nat.size(); ib += 10) {
    const int ie = std::min(ib + 9, m.nat.size());
    block += ib < 100 ? put(" %3d-%3d", ib, ie) : put("%4d-%3d", ib, ie);
    for (int i = ib; i <= ie; ++i) block += put("%12.6f", m.mass(i));
    block += "\n";
  }
  return block + "\n";
}

// A frequency job: the first table has the atoms from the last to the first, at another geometry, and
// numbered.
std::string frequency_job(const molecule& m) {
  const int natom = m.nat.size();
  std::string first;
  std::string second = " Atomic Coordinates\n\n  Nr  Atom  Charge       X              Y              Z\n\n";
  for (int i = 1; i <= natom; ++i) {
    const int last = natom + 1 - i;
    first += put("%4d  %-7s%5.2f%15.9f%15.9f%15.9f\n", i,
                 (std::string(element_symbol(m.nat(last))) + std::to_string(last)).c_str(),
                 static_cast<double>(m.nat(last)), 1.0 * i, 0.0, 0.0);
    second += put("%4d   %-6s%5.2f%15.9f%15.9f%15.9f\n", i,
                  (std::string(element_symbol(m.nat(i))) + std::to_string(i)).c_str(),
                  static_cast<double>(m.nat(i)), m.x(1, i), m.x(2, i), m.x(3, i));
  }
  const std::string old = molpro_output(m);
  const std::size_t matrix = old.find(" Force Constants");
  return put("%61s%s\n\n ATOMIC COORDINATES\n\n NR  ATOM    CHARGE       X  Y  Z\n\n", "", "MOLPRO  ***") +
         first + "\n" + old.substr(matrix, old.find(" Atomic Masses") - matrix) + mass_block(m) + second +
         "\n Frequencies dumped to record   5400.2\n";
}

TEST(molpro, atoms_masses_and_geometry_stand_in_the_order_of_the_force_constants) {
  for (const int natom : {5, 10, 11, 102}) {
    const molecule m = sample_molecule(natom);
    qm_file file = opened(frequency_job(m));
    int count = 0;
    int info = 0;
    array1<int> nat;
    array1<double> mass;
    array2<double> x;
    array2<double> fc;
    qm_file_natom(file, count, info);
    qm_file_nat(file, natom, nat, info);
    qm_file_mass(file, natom, mass, info);
    qm_file_coord(file, natom, x, info);
    qm_file_fc(file, natom, fc, info);
    EXPECT_EQ(count, natom);
    EXPECT_EQ(nat, m.nat);
    EXPECT_EQ(fc, m.fc);
    for (int i = 1; i <= natom; ++i) {
      EXPECT_NEAR(mass(i), m.mass(i), 5e-7);
      for (int k = 1; k <= 3; ++k) EXPECT_NEAR(x(k, i), m.x(k, i), 1e-12);
    }
  }
}

TEST(molpro, a_dump_of_the_geometry_still_decides_and_only_the_labels_are_helped) {
  const molecule m = sample_molecule();
  const std::string output = molpro_output(m);
  const std::string numbered = changed(output, "   2  O ", "   2  O1") + frequency_job(sample_molecule(5));
  qm_file file = opened(numbered);
  array1<int> nat;
  array2<double> x;
  int info = 0;
  qm_file_nat(file, 4, nat, info);
  qm_file_coord(file, 4, x, info);
  EXPECT_EQ(nat, m.nat);
  EXPECT_EQ(x(1, 4), m.x(1, 4));
}

TEST(molpro, a_table_or_a_list_of_masses_that_does_not_fit_ends_the_run) {
  const molecule m = sample_molecule(12);
  const std::string job = frequency_job(m);
  const auto read = [](const std::string& output) {
    return ending_of([&] {
      qm_file file = opened(output);
      array1<int> nat;
      array1<double> mass;
      array2<double> x;
      int info = 0;
      qm_file_nat(file, 12, nat, info);
      qm_file_mass(file, 12, mass, info);
      qm_file_coord(file, 12, x, info);
    });
  };
  EXPECT_EQ(read(job).status, -1);
  struct damage {
    std::string output;
    const char* shown;
  };
  const damage damages[] = {
      {changed(job, "\n   7   O7", "\n   8   O7"), "this is no row 7"},
      {changed(job, "\n\n Frequencies", "\n  13   H13    1.00  0.0  0.0  0.0\n\n Frequencies"),
       "has more rows"},
      {changed(job, "  11- 12", "  12- 12"), "masses from atom 11 on"},
      {changed(job, "  11- 12", "  11- 13"), "masses from atom 11 on"},
      {changed(job, "   1- 10   12.000000   15.994915", "   1- 10   12.000000    1.007825"),
       "atom 2 is O in the table of atoms, but its mass is 1.007825"}};
  for (const damage& d : damages) {
    const ending e = read(d.output);
    EXPECT_NE(e.error.find(d.shown), std::string::npos) << d.shown << e.error;
    EXPECT_EQ(e.status, 1) << d.shown;
  }
  const ending no_geometry = read(job.substr(0, job.find("  Nr  Atom")));
  EXPECT_EQ(no_geometry.status, 0);
  EXPECT_EQ(no_geometry.told, "Error!\nCan not find coordinate in Molpro output file, stop!\n");
}

TEST(molpro, masses_of_another_order_than_the_first_table_are_warned_of) {
  const molecule m = sample_molecule();
  qm_file file = opened(changed(molpro_output(m), "12.000000   15.994915", "15.994915   12.000000"));
  array1<int> nat;
  int info = 0;
  testing::internal::CaptureStderr();
  qm_file_nat(file, 4, nat, info);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("another order of atoms"), std::string::npos);
  EXPECT_EQ(nat, m.nat);
}

}  // namespace
}  // namespace vbn
