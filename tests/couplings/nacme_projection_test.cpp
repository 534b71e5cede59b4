// Tests of couplings by mode: norms that must agree, and lines of the log and of the table by hand.
#include "couplings/nacme_projection.hpp"  // for the routines

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "couplings/nacme_file.hpp"  // for get_nacme_n3
#include "tests/one_state.hpp"       // for zero_arrays
#include "tests/written_file.hpp"    // for scratch and lines_of

namespace vbn {
namespace {

// Two atoms of masses 4 and 16 electron masses; mode m is the unit vector along Cartesian coordinate m, and
// modes 1 and 2 change places in the pairing.
states two_atoms() {
  states state;
  state.atoms.natom = 2;
  state.atoms.n3 = 6;
  zero_arrays(state);
  state.couplings.ifnac = true;
  state.atoms.symbol(2) = "Cl";
  state.atoms.massau(1) = 4.0;
  state.atoms.massau(2) = 16.0;
  state.couplings.fnacm_type = "MOLPRO";
  state.couplings.e_vert = 0.1;
  const double before[] = {0.1, -0.2, 0.3, 0.05, 0.25, -0.15};
  const double after[] = {0.004, -0.002, 0.006, 0.0, -1.0, 2.0};
  std::copy_n(before, 6, state.couplings.nacme_x0.data());
  std::copy_n(after, 6, state.couplings.nacme_x.data());
  const double freq[] = {-0.0004, 0.0001, 0.0009, 0.0016, 0.0025, 0.01};
  std::copy_n(freq, 6, state.modes.freq.data());
  for (int m = 1; m <= 6; ++m) {
    state.atoms.sqtmass(m) = m <= 3 ? 2.0 : 4.0;
    state.modes.cm(m, m) = 1.0;
    state.modes.order(m) = m == 1 ? 2 : m == 2 ? 1 : m;
  }
  state.modes.irrep(6) = "B1U";
  return state;
}

void expect_lines(const std::string& file, std::initializer_list<const char*> expected) {
  const std::vector<std::string> lines = lines_of(file);
  for (const char* line : expected) EXPECT_NE(std::ranges::find(lines, line), lines.end()) << line;
}

TEST(nacme_file, rows_are_the_hand_made_ones_byte_for_byte_and_state_2_replaces_state_1) {
  array1<states> state(2);
  state(1) = state(2) = two_atoms();
  state(1).couplings.e_vert = 0.2;
  get_nacme_n3(state, scratch("vbn"));
  expect_lines(scratch("vbn.nac"),
               {"    N3:       6", "   0.1000000000 a.u. =    2.7211396170 eV =  21947.46307000 cm-1",
                "     m     n irrep  freq(cm-1)   nacm_before(au)    nacm_before(1)    nacm_after(au)  "
                "nacm_after(cm-1)"
                "    nacm_after(eV)    nacm_lin(cm-1)   nacm_jpca(cm-1)    nacm_jpca(s-1)",
                "     1    -5     A       21.95     -0.0010000000     -0.1000000000     -0.0100000000        "
                "   2194.75"
                "          0.272114        1.55192000        0.21947463    4.13413733E+10",
                "     2    -4     A      -87.79      0.0020000000      0.1000000000      0.0100000000        "
                "   2194.75"
                "          0.272114        6.20767999        0.87789852    1.65365493E+11",
                "     6     0   B1U     2194.75      0.5000000000      5.0000000000      0.5000000000        "
                " 109737.32"
                "         13.605698     7759.59998332    54868.65767500    1.03353433E+16",
                " End"});
}

}  // namespace
}  // namespace vbn
