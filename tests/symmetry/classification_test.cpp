// Tests of the block diagonalisation by representation and of its section of the log.
#include "symmetry/classification.hpp"  // for get_point_group, print_point_group

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "frame/hessian.hpp"             // for fc_to_fcm, get_freq
#include "frame/inertial.hpp"            // for get_inertial, max_abs
#include "frame/projection.hpp"          // for get_proj_hessian
#include "linalg/matmul.hpp"             // for matmul
#include "molecule/storage.hpp"          // for vbn_allocate
#include "symmetry/enforcement.hpp"      // for get_enforce_symm
#include "tests/symmetry/molecules.hpp"  // for molecule, textbook_cases
#include "tests/written_file.hpp"        // for scratch, content_of
#include "text/output_file.hpp"          // for output_file
#include "text/stop.hpp"                 // for run_end

namespace vbn {
namespace {

// Takes a molecule through the stages of a run up to its frequencies.
void to_frequencies(states& state, bool enforce_symm) {
  get_inertial(state);
  get_enforce_symm(state, enforce_symm);
  get_proj_hessian(state, 1);
  get_freq(state);
}

// What `print_point_group` writes to the log.
std::string section_of(const states& state) {
  output_file fout(scratch("log"));
  try {
    print_point_group(state, fout);
  } catch (const run_end&) {
    fout.close();
    throw;
  }
  fout.close();
  return content_of(fout.name());
}

// The modes solve the eigenproblem of the Hessian, each has the parity of its representation, and each
// representation has the modes that belong to it.
void expect_sound_modes(const states& state) {
  const array2<double> turned = matmul(state.fcm, state.cm);
  const array2<double> adapted = matmul(state.trans_symm, state.cm);
  const array2<double> unit = matmul(state.cm, state.cm, op::transposed);
  for (int k = 1; k <= state.n3; ++k)
    for (int i = 1; i <= state.n3; ++i) {
      const double eigenvalue = state.freq(k) * std::abs(state.freq(k));
      EXPECT_NEAR(turned(i, k), eigenvalue * state.cm(i, k), 1e-16);
      EXPECT_NEAR(unit(i, k), i == k ? 1.0 : 0.0, 1e-13);
      EXPECT_NEAR(state.fc(i, k), state.sqtmass(i) * state.fcm(i, k) * state.sqtmass(k), 1e-15);
    }
  for (int k = 1; k <= state.n3; ++k) EXPECT_GT(max_abs(state.cm.column(k)), 0.0);
  array1<bool_> seen(state.n3);
  for (int r = 1; r <= state.nrep; ++r)
    for (int row = state.nr_lw(r); row > 0 && row <= state.nr_hi(r); ++row) {
      const int k = state.ir_idx(row, r);
      EXPECT_FALSE(seen(k));
      seen(k) = true;
      EXPECT_EQ(state.irrep(k).str(), state.ir_name(r).str());
      double within = 0.0;
      for (int i = state.nr_lw(r); i <= state.nr_hi(r); ++i) within += adapted(i, k) * adapted(i, k);
      EXPECT_NEAR(within, 1.0, 1e-13);
      const int place_before = row > state.nr_lw(r) ? state.ir_idx(row - 1, r) : 0;
      EXPECT_LT(place_before, k);
    }
}

TEST(classification, textbook_molecules_keep_their_frequencies_and_give_each_representation_its_modes) {
  for (const textbook_case& c : textbook_cases()) {
    SCOPED_TRACE(c.name);
    states state = molecule(c.list);
    to_frequencies(state, false);
    state.fc = array2<double>(state.n3, state.n3);
    get_point_group(state);
    // The axes in the plane of the two symmetric tops are any, and need not be those of the subgroup.
    const bool top = c.name == "ammonia" || c.name == "benzene";
    EXPECT_TRUE(top || state.new_pgrp.str() == c.group) << state.new_pgrp.str();
    const std::vector<int> ns(state.ns.begin(), state.ns.begin() + state.nrep);
    EXPECT_TRUE(state.new_pgrp.str() != c.group || ns == c.modes);
    EXPECT_EQ(std::accumulate(ns.begin(), ns.end(), 0), state.n3);
    expect_sound_modes(state);
    for (int i = 1; i <= state.n3; ++i) {
      const double eigenvalue = state.freq(i) * std::abs(state.freq(i));
      EXPECT_NEAR(eigenvalue, state.freq1(i) * std::abs(state.freq1(i)), 1e-17);
    }
    EXPECT_EQ(section_of(state).find("Warning"), std::string::npos);
  }
}

TEST(classification, without_symmetry_nothing_changes_and_all_modes_are_a) {
  states state = molecule(of_case(textbook_cases(), "four different atoms"));
  to_frequencies(state, true);
  const states before = state;
  get_point_group(state);
  EXPECT_EQ(state.freq, before.freq);
  EXPECT_EQ(state.cm, before.cm);
  EXPECT_EQ(state.fcm, before.fcm);
  EXPECT_EQ(state.irrep, (array1<text<6>>(12, "A")));
  EXPECT_EQ(state.ns(1), 12);
}

// Disturbs the force constants of water by an element between A1 and B1 motions of hydrogen 1.
states disturbed_water(double size) {
  states state = molecule(of_case(textbook_cases(), "water"));
  get_inertial(state);
  state.fc(4, 4) += size;
  int info = 0;
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, 1, info);
  return state;
}

TEST(classification, disturbed_hessian_is_told_or_stops_the_run_and_is_clean_when_enforced) {
  const std::string warning = "\nWarning: frequences are changed after finding symmetry!\n\n  file type";
  states state = disturbed_water(0.005);
  to_frequencies(state, false);
  get_point_group(state);
  EXPECT_NE(section_of(state).find(warning), std::string::npos);

  state = disturbed_water(0.1);
  to_frequencies(state, false);
  get_point_group(state);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_THROW(section_of(state), run_end);
  const std::string out = testing::internal::GetCapturedStdout();
  EXPECT_NE(testing::internal::GetCapturedStderr().find("eckart_rot = 1"), std::string::npos);
  // The log ends with the row that standard output shows.
  const std::string head = " Symmetric diagonalization are not same as diagonalization\n", end = " Stop!\n";
  ASSERT_EQ(out.substr(0, head.size()), head);
  ASSERT_EQ(out.substr(out.size() - end.size()), end);
  const std::string row = out.substr(head.size(), out.size() - head.size() - end.size());
  EXPECT_EQ(row.size(), 49u);
  const std::string log = content_of(scratch("log"));
  EXPECT_EQ(log.substr(log.size() - row.size()), row);

  state = disturbed_water(0.009);
  to_frequencies(state, true);
  get_point_group(state);
  EXPECT_EQ(state.new_pgrp.str(), "C2V(y)");
  EXPECT_EQ(section_of(state).find("Warning"), std::string::npos);
  for (int i = 7; i <= 9; ++i) EXPECT_NEAR(state.freq(i), state.freq1(i), 1e-12);
}

TEST(classification, section_of_the_log_is_the_hand_made_one) {
  states state;
  state.natom = 3;
  state.n3 = 9;
  vbn_allocate(state);
  state.new_pgrp = "C2V(x)";
  state.nrep = 3;
  state.ir_name(1) = "A1";
  state.ir_name(2) = "A2";
  state.ir_name(3) = "B1";
  state.nr_lw(1) = 1;
  state.nr_hi(1) = 2;
  state.nr_lw(3) = 3;
  state.nr_hi(3) = 9;
  const int place[9] = {7, 9, 1, 2, 3, 4, 5, 6, 8};
  const double freq[9] = {-10, 0, 0, 0, 0, 0, 1000, 2000, 3000};
  for (int i = 1; i <= 9; ++i) {
    state.ir_idx(i, i <= 2 ? 1 : 3) = place[i - 1];
    state.freq(i) = freq[i - 1] / au_to_cm;
    state.freq1(i) = state.freq(i);
    state.irrep(i) = i == 7 || i == 9 ? "A1" : "B1";
  }
  state.freq1(8) = 2000.5 / au_to_cm;
  state.ffreq_type = "GAUSSIAN LOG";
  state.ffreq_version = "a version longer than 20";
  const int nat[3] = {6, 17, 1};
  const char* symbol[3] = {"C", "Cl", "H"};
  const double mass[3] = {12.0, 34.9688527, 1.00784};
  for (int i = 1; i <= 3; ++i) {
    state.nat(i) = nat[i - 1];
    state.symbol(i) = symbol[i - 1];
    state.mass(i) = mass[i - 1];
  }
  const std::string rule = std::string(80, '-') + "\n";
  EXPECT_EQ(section_of(state),
            "Point group:  C2V(x)\n"
            " A1\n"
            "        1000.00\n"
            "        3000.00\n"
            " A2\n"
            " B1\n"
            "         -10.00\n"
            "           0.00\n"
            "           0.00\n"
            "           0.00\n"
            "           0.00\n"
            "           0.00\n"
            "        2000.00\n" +
                rule + " irrep                nosymm           symm_diag\n" + rule +
                "    A1               1000.00             1000.00\n"
                "    B1               2000.50             2000.00\n"
                "    A1               3000.00             3000.00\n" +
                rule +
                "\n"
                "Warning: frequences are changed after finding symmetry!\n"
                "\n"
                "  file type          :        GAUSSIAN LOG\n"
                "  file version       :a version longer tha\n"
                "\n"
                "  Number of atoms    :                   3\n"
                "\n"
                "  Atomic number      :\n"
                "           6        17         1\n"
                "\n"
                "  Atomic symbol      :\n"
                "          C         Cl        H \n"
                "\n"
                "  Atomic masses      :\n"
                "    12.00000  34.96885   1.00784\n");
}

TEST(classification, diatomic_has_no_row_and_its_group_is_shown_in_six_characters) {
  states state = molecule(of_case(textbook_cases(), "nitrogen"));
  to_frequencies(state, false);
  get_point_group(state);
  const std::string log = section_of(state), rule = std::string(80, '-') + "\n";
  EXPECT_EQ(log.substr(0, 21), "Point group:  D2H   \n");
  EXPECT_NE(
      log.find(rule + " irrep                nosymm           symm_diag\n" + rule + rule + "\n  file type"),
      std::string::npos);
}

}  // namespace
}  // namespace vbn
