// Tests of the table of couplings by mode against a file written by hand.
#include "couplings/nacme_file.hpp"  // for get_nacme_n3 and write_nacme

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "run/stop.hpp"            // for run_end
#include "run/storage.hpp"         // for vbn_allocate
#include "tests/written_file.hpp"  // for scratch, content_of and lines_of

namespace vbn {
namespace {

// Two atoms with couplings; mode m is the unit vector along Cartesian coordinate m, and modes 1 and 2 change
// places in the pairing.
states two_atoms() {
  states state;
  state.natom = 2;
  state.n3 = 6;
  vbn_allocate(state);
  state.ifnac = true;
  state.e_vert = 0.1;
  const double freq[] = {-0.0004, 0.0001, 0.0009, 0.0016, 0.0025, 0.01};
  const double nacme_q[] = {0.002, -0.001, 0.003, 0.0, -0.25, 0.5};
  for (int m = 1; m <= 6; ++m) {
    state.sqtmass(m) = m <= 3 ? 2.0 : 4.0;
    state.nacme_x.span()[static_cast<std::size_t>(m - 1)] = nacme_q[m - 1] * state.sqtmass(m);
    state.freq(m) = freq[m - 1];
    state.cm(m, m) = 1.0;
    state.order(m, 1) = m;
  }
  state.order(1, 1) = 2;
  state.order(2, 1) = 1;
  state.irrep(6) = "B1U";
  return state;
}

TEST(nacme_file, table_is_the_hand_made_one_byte_for_byte) {
  array1<states> state(2);
  state(1) = two_atoms();
  const std::string stem = scratch("vbn.cart");
  get_nacme_n3(state, stem);
  EXPECT_EQ(
      content_of(stem + ".nac"),
      "\n"
      "    N3:       6\n"
      "\n"
      " Energy Difference at present geometry:\n"
      "\n"
      "   0.1000000000 a.u. =    2.7211396170 eV =  21947.46307000 cm-1\n"
      "\n"
      " Derivative Coupling before scaling and after scaling\n"
      "\n"
      " STEP 1:  Read nacm from output file.\n"
      "          nacm_x = < \\Psi_b | \\frac{ \\parital H }{ \\partial x_{i \\alpha} | \\Psi_a > / ( E_a - "
      "E_b )  (au)\n"
      "\n"
      " STEP 2:  Transform the coordinates form x to q.\n"
      "          nacm_q = < \\Psi_b | \\frac{ \\parital H }{ \\partial q_{i \\alpha} | \\Psi_a > / ( E_a - "
      "E_b )  (au)\n"
      "          where q_{i \\alpha} = \\sqrt(m_i) * x_{i \\alpha}\n"
      "\n"
      " STEP 3:  Transform the coordinates form q to normal mode coordinates Q.\n"
      "          nacm_q = < \\Psi_b | \\frac{ \\parital H }{ \\partial Q_j | \\Psi_a > / ( E_a - E_b )  "
      "(au)\n"
      "\n"
      " STEP 4:  Transform the normal mode coordinates Q to dimensionless coordinates Q^\\prime.\n"
      "          nacm_q = < \\Psi_b | \\frac{ \\parital H }{ \\partial Q^\\prime_j | \\Psi_a > / ( E_a - E_b "
      ")  (au)\n"
      "          where Q^\\prime = Q * SQRT(w),    and w is the corresponding frequency.\n"
      "\n"
      "     nacm_before(  au):   < \\Psi_b | d/dQ \\Psi_a >                                (  au)\n"
      "     nacm_before(   1):   < \\Psi_b | d/dQ \\Psi_a >  / SQRT(w/hbar)                (   1)\n"
      "     nacm_after (  au):   < \\Psi_b | d/dQ \\Psi_a > * ( E_a - E_b ) / SQRT(w/hbar) (  au)\n"
      "     nacm_after (cm-1):   < \\Psi_b | d/dQ \\Psi_a > * ( E_a - E_b ) / SQRT(w/hbar) (cm-1)\n"
      "\n"
      "     m     n irrep  freq(cm-1)   nacm_before(au)    nacm_before(1)    nacm_after(au)  nacm_after(cm-1)"
      "    nacm_after(eV)    nacm_lin(cm-1)   nacm_jpca(cm-1)    nacm_jpca(s-1)\n"
      "\n"
      "     1    -5     A       21.95     -0.0010000000     -0.1000000000     -0.0100000000           2194.75"
      "          0.272114        1.55192000        0.21947463    4.13413733E+10\n"
      "     2    -4     A      -87.79      0.0020000000      0.1000000000      0.0100000000           2194.75"
      "          0.272114        6.20767999        0.87789852    1.65365493E+11\n"
      "     3    -3     A      197.53      0.0030000000      0.1000000000      0.0100000000           2194.75"
      "          0.272114       13.96727997        1.97527168    3.72072360E+11\n"
      "     4    -2     A      351.16      0.0000000000      0.0000000000      0.0000000000              0.00"
      "          0.000000        0.00000000        0.00000000    0.00000000E+00\n"
      "     5    -1     A      548.69     -0.2500000000     -5.0000000000     -0.5000000000         109737.32"
      "         13.605698     1939.89999583    13717.16441875    2.58383583E+15\n"
      "     6     0   B1U     2194.75      0.5000000000      5.0000000000      0.5000000000         109737.32"
      "         13.605698     7759.59998332    54868.65767500    1.03353433E+16\n"
      " End\n");
}

TEST(nacme_file, is_of_the_states_with_couplings_and_state_2_replaces_state_1) {
  array1<states> state(2);
  state(1) = state(2) = two_atoms();
  state(1).ifnac = state(2).ifnac = false;
  const std::string none = scratch("none");
  get_nacme_n3(state, none);
  EXPECT_FALSE(std::ifstream(none + ".nac").is_open());

  state(1).ifnac = state(2).ifnac = true;
  state(2).e_vert = 0.2;
  state(2).cm(6, 6) = -1.0;  // its own modes are taken
  const std::string both = scratch("both");
  get_nacme_n3(state, both);
  const std::vector<std::string> lines = lines_of(both + ".nac");
  EXPECT_EQ(lines.at(5).substr(0, 15), "   0.2000000000");
  EXPECT_EQ(lines.at(lines.size() - 2).substr(30, 18), "     -0.5000000000");
  EXPECT_EQ(state(1).nacme_q(6), 0.5);
}

TEST(nacme_file, mode_of_zero_frequency_stays_within_its_columns) {
  const std::string name = scratch("zero.nac");
  array1<double> freq(7, 0.01);
  array1<double> nacme(7, 0.5);
  freq(7) = nacme(7) = 0.0;
  write_nacme(name, 0.1, freq, array1<text<6>>(7, "A"), nacme, 7);
  const std::vector<std::string> lines = lines_of(name);
  EXPECT_EQ(lines.at(1), "  N3-6:       1");
  const std::string& row = lines.at(lines.size() - 2);
  EXPECT_EQ(row.substr(0, 30), "     7     1     A        0.00");
  EXPECT_EQ(row.size(), 30u + 8u * 18u);
  EXPECT_EQ(row.substr(48, 18), "               NaN");
}

TEST(nacme_file, other_first_mode_is_told_and_stops) {
  testing::internal::CaptureStdout();
  EXPECT_THROW(
      write_nacme(scratch("no.nac"), 0.1, array1<double>(6), array1<text<6>>(6), array1<double>(6), 2),
      run_end);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), " start_mode is wrong! Exit!\n");
}

}  // namespace
}  // namespace vbn
