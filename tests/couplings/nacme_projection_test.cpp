// Tests of couplings by mode: norms that must agree, and lines of the log and of the table by hand.
#include "couplings/nacme_projection.hpp"  // for proj_nacm and print_nacm

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "couplings/nacme_file.hpp"  // for get_nacme_n3
#include "frame/hessian.hpp"         // for get_freq
#include "frame/projection.hpp"      // for get_proj_hessian
#include "molecule/storage.hpp"      // for vbn_allocate
#include "tests/frame/molecule.hpp"  // for spring_molecule
#include "tests/written_file.hpp"    // for scratch and lines_of
#include "text/output_file.hpp"      // for output_file

namespace vbn {
namespace {

// Two atoms of masses 4 and 16 electron masses; mode m is the unit vector along Cartesian coordinate m, and
// modes 1 and 2 change places in the pairing.
states two_atoms() {
  states state;
  state.natom = 2;
  state.n3 = 6;
  vbn_allocate(state);
  state.start_mode = 5;
  state.ifnac = true;
  state.symbol(2) = "Cl";
  state.massau(1) = 4.0;
  state.massau(2) = 16.0;
  state.fnacm_type = "MOLPRO";
  state.e_vert = 0.1;
  const double before[] = {0.1, -0.2, 0.3, 0.05, 0.25, -0.15};
  const double after[] = {0.004, -0.002, 0.006, 0.0, -1.0, 2.0};
  std::copy_n(before, 6, state.nacme_x0.data());
  std::copy_n(after, 6, state.nacme_x.data());
  const double freq[] = {-0.0004, 0.0001, 0.0009, 0.0016, 0.0025, 0.01};
  std::copy_n(freq, 6, state.freq.data());
  for (int m = 1; m <= 6; ++m) {
    state.sqtmass(m) = m <= 3 ? 2.0 : 4.0;
    state.cm(m, m) = 1.0;
    state.order(m, 1) = m == 1 ? 2 : m == 2 ? 1 : m;
  }
  state.irrep(6) = "B1U";
  return state;
}

void expect_lines(const std::string& file, std::initializer_list<const char*> expected) {
  const std::vector<std::string> lines = lines_of(file);
  for (const char* line : expected) EXPECT_NE(std::ranges::find(lines, line), lines.end()) << line;
}

TEST(nacme_projection, lines_of_the_log_are_the_hand_made_ones_byte_for_byte) {
  states state = two_atoms();
  proj_nacm(state, state);
  output_file fout(scratch("log"));
  print_nacm(state, 2, fout);
  fout.close();
  expect_lines(scratch("log"), {"  NACME file type    :              MOLPRO",
                                "  Excited energy =    0.100000 au =    2.721140 eV =   21947.46 cm-1",
                                "    2  Cl       0.050000       0.250000      -0.150000           0.000000   "
                                "   -1.000000       2.000000",
                                "    norm of NACME(x) is        0.476970 au       2.236080 au",
                                "    2  Cl       0.012500       0.062500      -0.037500           0.000000   "
                                "   -0.250000       0.500000",
                                "    m    n     freq(cm-1)    nacme_L(au)",
                                "    5   -1       548.6866    0.062500000       -0.250000000",
                                "    norm of NACME(Q) is        0.072887 au       0.559017 au"});
}

TEST(nacme_file, rows_are_the_hand_made_ones_byte_for_byte_and_state_2_replaces_state_1) {
  array1<states> state(2);
  state(1) = state(2) = two_atoms();
  state(1).e_vert = 0.2;
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

TEST(nacme_projection, norm_over_all_modes_is_that_of_the_mass_weighted_coupling) {
  states state = spring_molecule(chiral_molecule);
  get_proj_hessian(state, 1);
  get_freq(state);
  for (int k = 0; k < state.n3; ++k)
    state.nacme_x.span()[static_cast<std::size_t>(k)] = std::sin(1.7 * k + 0.3);
  // A translation along x: every atom has the coupling of its mass.
  for (int i = 1; i <= state.natom; ++i) state.nacme_x0(1, i) = state.massau(i);
  state.start_mode = 1;
  proj_nacm(state, state);
  EXPECT_NEAR(state.nacme_q_norm, state.nacme_xq_norm, 1e-12);
  const double whole = state.nacme_q_norm;
  state.start_mode = 7;
  proj_nacm(state, state);
  EXPECT_NEAR(std::hypot(state.nacme_q_norm, vn_norm_part(state.nacme_q.span(), 1, 6)), whole, 1e-12);
  EXPECT_LT(state.nacme_q_norm0, 1e-6 * state.nacme_xq_norm0);
}

}  // namespace
}  // namespace vbn
