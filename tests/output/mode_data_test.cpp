// Tests of the mode data files against lines written by hand.
#include "output/mode_data.hpp"  // for write_vbn

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>

#include "tests/one_state.hpp"     // for zero_arrays
#include "tests/written_file.hpp"  // for scratch, content_of and lines_of
#include "text/layout.hpp"         // for layout

namespace vbn {
namespace {

// Two states whose values tell state, field and mode apart; S is the unit matrix and modes pair one to one.
array1<states> pair_of_states(int natom) {
  array1<states> state(2);
  const double sign[] = {1.0, -1.0};
  for (int k = 1; k <= 2; ++k) {
    states& a = state(k);
    a.atoms.natom = natom;
    a.atoms.n3 = 3 * natom;
    zero_arrays(a);
    for (int j = 1; j <= a.atoms.n3; ++j) {
      a.modes.freq(j) = (k == 1 ? 0.001 : 0.0011) * j;
      a.cart.d(j) = sign[k - 1] * 0.5 * j;
      a.cart.d0(j) = sign[k - 1] * 0.25 * j;
      a.cart.hr(j) = 0.03125 * j * j * k;
      a.cart.lam(j) = 0.0001 * j * k;
      a.dint.d(j) = 2.0 * a.cart.d(j);
      a.dint.d0(j) = 2.0 * a.cart.d0(j);
      a.dint.hr(j) = 4.0 * a.cart.hr(j);
      a.dint.lam(j) = 4.0 * a.cart.lam(j);
      a.modes.order(j) = j;
      a.modes.s(j, j) = 1.0;
    }
    a.cart.lamt = 0.0021 * k;
    a.dint.lamt = 0.0084 * k;
    a.modes.freqt = 0.0060 + 0.0006 * (k - 1);
  }
  return state;
}

array1<states> diatomic() {
  array1<states> state = pair_of_states(2);
  state(1).modes.freq(2) = -0.002;
  state(2).modes.order(1) = 2;
  state(2).modes.order(2) = 1;
  state(2).modes.irrep = array1<text<6>>(6, "B1");
  state(1).modes.s(1, 1) = state(1).modes.s(2, 2) = 0.0;
  state(1).modes.s(1, 2) = -1.0;
  state(1).modes.s(2, 1) = 1.0;
  state(1).modes.s(3, 4) = 0.5;
  return state;
}

const std::string heavy(136, '=');
const std::string light(136, '-');

TEST(mode_data, main_file_of_a_diatomic_is_the_hand_made_one_byte_for_byte) {
  const std::string stem = scratch("vbn.cart");
  write_vbn(diatomic(), stem, {});
  const std::string expected =
      "BEGIN_BASIC_INFO\n"
      "   2  # num of atoms \n"
      "   6  # num of modes \n"
      "END_BASIC_INFO\n"
      "\n"
      "BEGIN_DATA_1\n"
      "  BEGIN_DESCRIPTION_1\n"
      "    Qg = S Qe + D\n"
      "    Fix g of S(g,e), change e of S(g,e)\n"
      "    DATA for Absorption\n"
      "    1              : ground  state\n"
      "    2              : excited state\n"
      "    n              : index of mode, from 1 to 3n\n"
      "    m              : index of mode, from 1 to 3n-6\n"
      "    sym            : irreducible representation\n"
      "    freq   (cm-1 ) : frequency\n"
      "    D      (a.u. ) : displacement of mode\n"
      "    delta  ( 1   ) : dimensionless projection, delta = D * SQRT(freq)\n"
      "    HR     ( 1   ) : Huang-Rhys factor, HR = 0.5 * delta^2 \n"
      "    lam    (cm-1 ) : reorganization energy, lam = HR * \\hbar * freq\n"
      "    ZPE1 (Ground ) :     658.4238921 cm-1\n"
      "    ZPE2 (Excited) :     724.2662813 cm-1\n"
      "    ZPE2 - ZPE1    :      65.8423892 cm-1\n"
      "  END_DESCRIPTION_1\n"
      "  BEGIN_OUTPUT_1\n" +
      heavy +
      "\n   n   m sym1   freq1         D1     delta1        HR1    lam1 sym2   freq2         D2     delta2"
      "        HR2    lam2    g    e   S(g,e)\n" +
      light +
      "\n"
      "   1   0    A  219.47     0.50000   0.25000    0.03125   21.95   B1  482.84    -1.00000  -0.50000"
      "    0.25000   87.79    1    2  -1.0000\n"
      "   2   0    A -438.95     1.00000   0.50000    0.12500   43.89   B1  241.42    -0.50000  -0.25000"
      "    0.06250   43.89    2    1   1.0000\n"
      "   3   0    A  658.42     1.50000   0.75000    0.28125   65.84   B1  724.27    -1.50000  -0.75000"
      "    0.56250  131.68    3    3   1.0000\n"
      "   4   0    A  877.90     2.00000   1.00000    0.50000   87.79   B1  965.69    -2.00000  -1.00000"
      "    1.00000  175.58    4    4   1.0000\n"
      "   5   0    A 1097.37     2.50000   1.25000    0.78125  109.74   B1 1207.11    -2.50000  -1.25000"
      "    1.56250  219.47    5    5   1.0000\n"
      "   6   0    A 1316.85     3.00000   1.50000    1.12500  131.68   B1 1448.53    -3.00000  -1.50000"
      "    2.25000  263.37    6    6   1.0000\n" +
      light + "\n  Total reorganization energy (cm-1):             460.896724           921.793449\n" +
      light +
      "\n"
      "  END_OUTPUT_1\n"
      "END_DATA_1\n"
      "\n"
      "BEGIN_DUSH_1     Delta DUSH =    0.00 %\n"
      "  BEGIN_DUSH_INFORMATION1\n"
      "  Qg = S(g,e) Qe + Dg\n"
      "  END_DUSH_INFORMATION1\n"
      "  BEGIN_DUSH_DATA_1\n" +
      light +
      "\n"
      "  MODE       1\n"
      "-1.000000E+00  0.000000E+00  0.000000E+00  0.000000E+00  0.000000E+00  0.000000E+00 \n"
      "  MODE       2\n";
  EXPECT_EQ(content_of(stem + ".dat").substr(0, expected.size()), expected);
  const std::vector<std::string> dat = lines_of(stem + ".dat");
  const std::vector<std::string> end_of_block = {light,
                                                 "  END_DUSH_DATA_2",
                                                 "  BEGIN_DUSH_ORTH_TEST EPS =      0.001000",
                                                 "     3     4     0.500000",
                                                 "     4     3     0.500000",
                                                 "     4     4     1.250000",
                                                 "  END_DUSH_ORTH_TEST",
                                                 "END_DUSH_2"};
  EXPECT_EQ(std::vector<std::string>(dat.end() - 8, dat.end()), end_of_block);
  EXPECT_EQ(content_of(stem + ".abs").substr(0, 94),
            "#DUSH1 Qg = S(g,e) Qe + Dg\n"
            "    1.00000    0.00000    0.00000    0.00000    0.00000    0.00000\n");
  EXPECT_FALSE(std::ifstream(stem + ".rrs1").is_open());
  EXPECT_FALSE(std::ifstream(stem + ".rrs2").is_open());
}

// Twelve modes, S with a value of its own at each place, and a pairing that is none of the usual ones.
array1<states> four_atoms() {
  array1<states> state = pair_of_states(4);
  for (int i = 1; i <= 12; ++i) {
    for (int j = 1; j <= 12; ++j) state(1).modes.s(i, j) = (i % 2 == 0 ? -0.01 : 0.01) * i + 0.0001 * j;
  }
  state(1).modes.s(12, 9) = 1.5e-105;
  state(1).modes.s(9, 12) = std::numeric_limits<double>::quiet_NaN();
  const int order_e[] = {2, 1, 3, 4, 5, 6, 9, 10, 11, 12, 7, 8};
  const int order_g[] = {1, 2, 3, 4, 5, 6, 8, 7, 9, 10, 12, 11};
  for (int i = 1; i <= 12; ++i) {
    state(1).modes.order(i) = order_g[i - 1];
    state(2).modes.order(i) = order_e[i - 1];
  }
  return state;
}

// The lines between the marker and the next rule after the one behind it.
std::vector<std::string> section(const std::vector<std::string>& lines, const std::string& marker) {
  std::size_t at = 0;
  while (at < lines.size() && lines[at] != marker) ++at;
  std::vector<std::string> found;
  for (at += 2; at < lines.size() && lines[at] != light; ++at) found.push_back(lines[at]);
  return found;
}

TEST(mode_data, both_matrix_blocks_are_what_their_layout_gives_in_the_order_of_the_pairing) {
  const array1<states> state = four_atoms();
  const std::string stem = scratch("vbn.cart");
  write_vbn(state, stem, {});
  const std::vector<std::string> dat = lines_of(stem + ".dat");
  const std::vector<std::string> abs = lines_of(stem + ".abs");
  const layout mode("(2x,\"MODE\",2x,i6)");
  const layout row("(10(ES13.6,X))");
  const layout abs_row("(12(2X,F9.5))");
  ASSERT_EQ(abs.size(), 26u);
  for (int p = 1; p <= 2; ++p) {
    std::string expected;
    for (int i = 1; i <= 12; ++i) {
      std::vector<double> s;
      for (int j = 1; j <= 12; ++j) {
        s.push_back(
            state(1).modes.s(state(1).modes.order(p == 1 ? i : j), state(2).modes.order(p == 1 ? j : i)));
      }
      mode.write(expected, {i});
      row.write(expected, s);
      for (double& element : s) element = std::abs(element);
      std::string abs_line;
      abs_row.write(abs_line, s);
      const std::string& written = abs[static_cast<std::size_t>((p - 1) * 13 + i)];
      EXPECT_EQ(written + "\n", abs_line);
      EXPECT_EQ(written.size(), 11u * 12u);
    }
    std::string written;
    for (const std::string& line : section(dat, "  BEGIN_DUSH_DATA_" + std::to_string(p))) {
      written += line + "\n";
    }
    EXPECT_EQ(written, expected);
  }
}

TEST(mode_data, delta_takes_the_paired_vibrations_only_and_is_0_where_there_are_none) {
  array2<double> s(9, 9, 0.125);
  s(7, 7) = -1.0;
  s(8, 8) = 0.5;
  s(9, 9) = 0.75;
  EXPECT_DOUBLE_EQ(delta_s(s), 0.25);
  EXPECT_EQ(delta_s(array2<double>(6, 6, 0.5)), 0.0);
  EXPECT_EQ(delta_s(array2<double>(3, 3)), 0.0);
}

TEST(mode_data, vibrations_are_counted_from_row_7_and_show_the_two_modes_of_their_pair) {
  const std::string stem = scratch("vbn.cart");
  write_vbn(four_atoms(), stem, {});
  const std::vector<std::string> lines = lines_of(stem + ".dat");
  // 28 lines stand before the first row.
  EXPECT_EQ(lines[28 + 5].substr(0, 8), "   6   0");
  EXPECT_EQ(
      lines[28 + 6],
      "   7   1    A 1755.80     4.00000   2.00000    2.00000  175.58    A 2172.80    -4.50000  -2.25000"
      "    5.06250  395.05    8    9  -0.0791");
  EXPECT_EQ(lines[28 + 11].substr(0, 8), "  12   6");
}

TEST(mode_data, internal_route_changes_its_own_fields_and_nothing_else) {
  const std::string cart = scratch("vbn.cart");
  const std::string dint = scratch("vbn.dint");
  input_keys keys;
  keys.if_rrs = true;
  write_vbn(diatomic(), cart, keys);
  write_vbn_int(diatomic(), dint, keys);
  const std::vector<std::string> a = lines_of(cart + ".dat");
  const std::vector<std::string> b = lines_of(dint + ".dat");
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    const bool row = i >= 28 && i < 34;
    const bool total = i == 35;
    EXPECT_EQ(a[i] == b[i], !row && !total) << a[i];
  }
  EXPECT_EQ(
      b[30],
      "   3   0    A  658.42     3.00000   1.50000    1.12500  263.37   B1  724.27    -3.00000  -1.50000"
      "    2.25000  526.74    3    3   1.0000");
  EXPECT_EQ(b[35], "  Total reorganization energy (cm-1):            1843.586898          3687.173796");
  EXPECT_EQ(content_of(cart + ".abs"), content_of(dint + ".abs"));
  const std::vector<std::string> rrs = lines_of(dint + ".rrs1");
  EXPECT_EQ(rrs[4], "    658.423892    724.266281     -1.500000");
  EXPECT_EQ(rrs[5], "    658.423892    724.266281     -0.172337");
}

TEST(mode_data, resonance_raman_files_take_two_lines_of_the_first_six_modes_and_split_the_others) {
  const std::string stem = scratch("vbn.cart");
  input_keys keys;
  keys.if_rrs = true;
  array1<states> state = four_atoms();
  state(2).modes.freq(9) = -state(2).modes.freq(9);
  write_vbn(state, stem, keys);
  const std::vector<std::string> rrs1 = lines_of(stem + ".rrs1");
  const std::vector<std::string> rrs2 = lines_of(stem + ".rrs2");

  ASSERT_EQ(rrs1.size(), 12u + 6u + 12u * 3u);
  EXPECT_EQ(rrs1[0], "    219.474631    482.844188     -0.500000");
  EXPECT_EQ(rrs1[1], "    219.474631    482.844188     -0.046904");
  EXPECT_EQ(rrs1[12], "   1755.797046  -2172.798844     -2.250000");
  EXPECT_EQ(rrs1[13], "   1536.322415   2414.220938     -2.500000");
  // Row 1 of S(e,g): mode 2 of state 2 against the modes of state 1 in their order.
  EXPECT_EQ(rrs1[18],
            "   0.10200000D-01  -0.19800000D-01   0.30200000D-01  -0.39800000D-01   0.50200000D-01");
  EXPECT_EQ(rrs1[20], "  -0.11980000D+00   0.11020000D+00  ");

  ASSERT_EQ(rrs2.size(), 6u + 6u * 2u);
  EXPECT_EQ(rrs2[0], "   1755.797046  -2172.798844     -0.447744");
  EXPECT_EQ(rrs2[6], "  -0.79100000D-01   0.70900000D-01   0.90900000D-01  -0.99100000D-01   0.15000000-104");
  EXPECT_EQ(rrs2[7], "   0.11090000D+00  ");
}

}  // namespace
}  // namespace vbn
