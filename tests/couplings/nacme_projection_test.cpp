// Tests of the projection of couplings: its section of the log by hand, and what norms must agree.
#include "couplings/nacme_projection.hpp"  // for proj_nacm and print_nacm

#include <gtest/gtest.h>

#include <cmath>

#include "frame/hessian.hpp"         // for get_freq
#include "frame/projection.hpp"      // for get_proj_hessian
#include "run/storage.hpp"           // for vbn_allocate
#include "tests/frame/molecule.hpp"  // for spring_molecule
#include "tests/written_file.hpp"    // for scratch and content_of

namespace vbn {
namespace {

// Two atoms of masses 4 and 16 electron masses; mode m is the unit vector along Cartesian coordinate m.
states two_atoms() {
  states state;
  state.natom = 2;
  state.n3 = 6;
  vbn_allocate(state);
  state.start_mode = 5;
  state.symbol(1) = "C";
  state.symbol(2) = "Cl";
  state.massau(1) = 4.0;
  state.massau(2) = 16.0;
  state.fnacm = "nac.out";
  state.fnacm_type = "MOLPRO";
  state.fnacm_version = "2012.1";
  state.e_vert = 0.1;
  const double before[] = {0.1, -0.2, 0.3, 0.05, 0.25, -0.15};
  const double after[] = {0.3, 0.1, -0.2, -0.15, 0.05, 0.25};
  const double field[] = {0.001, -0.002, 0.003, 0.004, 0.005, -0.006};
  std::copy_n(before, 6, state.nacme_x0.data());
  std::copy_n(after, 6, state.nacme_x.data());
  std::copy_n(field, 6, state.tranele0.data());
  state.tranele = state.tranele0;
  for (int m = 1; m <= 6; ++m) {
    state.freq(m) = 0.001 * m;
    state.cm(m, m) = 1.0;
  }
  return state;
}

TEST(nacme_projection, section_of_the_log_is_the_hand_made_one_byte_for_byte) {
  states state = two_atoms();
  proj_nacm(state, state);
  output_file fout(scratch("log"));
  print_nacm(state, 2, fout);
  fout.close();
  const std::string underscores = std::string(80, '_') + "\n";
  const std::string equals = std::string(80, '=') + "\n";
  const std::string columns = std::string(30, '=') + "before rotation" + std::string(34, '=') +
                              "after rotation" + std::string(10, '=') + "\n";
  EXPECT_EQ(content_of(fout.name()),
            underscores + "  Information of NACME\n" + underscores +
                "\n"
                "  NACME file 2       :  nac.out\n"
                "  NACME file type    :              MOLPRO\n"
                "  NACME file version :              2012.1\n"
                "  Excited energy =    0.100000 au =    2.721140 eV =   21947.46 cm-1\n"
                "\n"
                "========= Transition Elecric Field (atomic unit) ======\n" +
                columns +
                "\n"
                "    1  C        0.001000      -0.002000       0.003000           0.001000      -0.002000    "
                "   0.003000\n"
                "    2  Cl       0.004000       0.005000      -0.006000           0.004000       0.005000    "
                "  -0.006000\n"
                "\n" +
                equals +
                "\n"
                "========= NACME(x) before scaling (atomic unit) =======\n"
                "    <\\psi_f | d \\psi_i / dR >  \n"
                "=== <\\psi_f | dV/dR | \\psi_i> / \\Delta_E  \n" +
                columns +
                "\n"
                "    1  C        0.100000      -0.200000       0.300000           0.300000       0.100000    "
                "  -0.200000\n"
                "    2  Cl       0.050000       0.250000      -0.150000          -0.150000       0.050000    "
                "   0.250000\n"
                "\n"
                "  ----------------------------------------------------\n"
                "    norm of NACME(x) is        0.476970 au       0.476970 au\n"
                "======================================================\n"
                "\n"
                "========= NACME(q) before scaling (atomic unit) =======\n"
                "==================== q = sqrt(m) x  ===================\n" +
                columns +
                "\n"
                "    1  C        0.050000      -0.100000       0.150000           0.150000       0.050000    "
                "  -0.100000\n"
                "    2  Cl       0.012500       0.062500      -0.037500          -0.037500       0.012500    "
                "   0.062500\n"
                "\n" +
                underscores + "    norm of NACME(q) is        0.201168 au       0.201168 au\n" + equals +
                "\n"
                "================ NACME(Q) (atomic unit) ===============\n" +
                columns +
                "\n"
                "    m    n     freq(cm-1)    nacme_L(au)\n"
                "\n"
                "    5   -1      1097.3732    0.062500000        0.012500000\n"
                "    6    0      1316.8478   -0.037500000        0.062500000\n"
                "\n" +
                underscores + "    norm of NACME(Q) is        0.072887 au       0.063738 au\n" + equals +
                "\n" + underscores);
}

TEST(nacme_projection, modes_are_those_of_the_record_given_and_an_empty_list_has_norm_0) {
  states state = two_atoms();
  states modes = two_atoms();
  std::swap(modes.cm(1, 1), modes.cm(1, 2));  // modes 1 and 2 change places
  std::swap(modes.cm(2, 2), modes.cm(2, 1));
  state.start_mode = 7;
  proj_nacm(state, modes);
  EXPECT_EQ(state.nacme_q(1), 0.1 / 2.0);
  EXPECT_EQ(state.nacme_q(2), 0.3 / 2.0);
  EXPECT_EQ(state.nacme_q0(1), -0.2 / 2.0);
  EXPECT_EQ(state.nacme_q_norm, 0.0);
  output_file fout(scratch("log"));
  print_nacm(state, 1, fout);
  fout.close();
  EXPECT_NE(content_of(fout.name()).find("nacme_L(au)\n\n\n____"), std::string::npos);
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
  const double external = vn_norm_part(state.nacme_q.span(), 1, 6);
  EXPECT_GT(external, 1e-3 * whole);
  EXPECT_NEAR(std::hypot(state.nacme_q_norm, external), whole, 1e-12);
  EXPECT_LT(state.nacme_q_norm0, 1e-6 * state.nacme_xq_norm0);
}

}  // namespace
}  // namespace vbn
