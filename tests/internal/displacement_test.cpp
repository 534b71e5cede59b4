// Tests of the displacements through internal coordinates.
#include "internal/displacement.hpp"  // for check_int_coord

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "internal/gmatrix.hpp"         // for get_int_gmatrix
#include "linalg/matmul.hpp"            // for matmul
#include "tests/internal/molecule.hpp"  // for ammonia, disulfane, set_modes
#include "tests/written_file.hpp"       // for scratch, lines_of
#include "text/output_file.hpp"         // for output_file
#include "text/stop.hpp"                // for run_end

namespace vbn {
namespace {

using namespace internal_molecules;

constexpr double strength = 0.4;

void prepare(states& state, double spring) {
  output_file log(scratch("basis"));
  get_int_coord(state, {});
  int_allocate(state);
  get_int_gmatrix(state, 1.0e-8, log);
  set_modes(state, spring);
}

array1<states> pair_of(const std::vector<test_atom>& atoms1, const std::vector<test_atom>& atoms2) {
  array1<states> state(2);
  state(1) = molecule(atoms1);
  state(2) = molecule(atoms2);
  prepare(state(1), strength);
  prepare(state(2), 0.9 * strength);
  return state;
}

// Writes the log of one call and gives back its lines.
std::vector<std::string> check(array1<states>& state, const input_data& input = {}) {
  const std::string name = scratch("log");
  output_file log(name);
  check_int_coord(state, input, log);
  log.close();
  return lines_of(name);
}

TEST(displacement, equal_states_have_none_and_take_the_signs_of_zero_on_request) {
  array1<states> state = pair_of(ammonia, ammonia);
  input_data input;
  input.d_sign_same_to_cart = true;
  for (int k = 1; k <= 2; ++k)
    for (int i = 1; i <= 12; ++i) state(k).d_sign_cart(i) = i % 2 == 0 ? -1.0 : 1.0;
  check(state, input);
  for (int k = 1; k <= 2; ++k) {
    EXPECT_EQ(state(k).lamt_c, 0.0);
    for (int m = 1; m <= state(k).nr; ++m) EXPECT_EQ(state(k).zd(m), 0.0);
    for (int i = 1; i <= 12; ++i) {
      EXPECT_EQ(state(k).lam_c(i), 0.0);
      for (const double result : {state(k).d_c(i), state(k).d0_c(i), state(k).hr_c(i)}) {
        EXPECT_EQ(result, 0.0);
        EXPECT_EQ(std::signbit(result), i % 2 == 0);
      }
    }
  }
}

// A displacement along the vibrations of state 1 is the same in both routes to first order.
TEST(displacement, small_ones_equal_those_of_the_cartesian_route) {
  array1<states> state(2);
  state(1) = state(2) = molecule(ammonia);
  prepare(state(1), strength);
  array1<double> dx(12);
  for (int i = 1; i <= 12; ++i)
    for (int mode = 7; mode <= 12; ++mode)
      dx(i) += 0.02 * (mode - 9.4) * state(1).cm(i, mode) / state(1).sqtmass(i);
  for (int i = 1; i <= 12; ++i) state(2).x.span()[static_cast<std::size_t>(i - 1)] += dx(i);
  prepare(state(2), strength);
  check(state);
  for (int k = 1; k <= 2; ++k) {
    double lamt = 0.0;
    for (int i = 7; i <= 12; ++i) {
      double d = 0.0;
      for (int j = 1; j <= 12; ++j) d += state(k).cm(j, i) * state(k).sqtmass(j) * dx(j);
      const double d0 = d * std::sqrt(state(k).freq(i));
      EXPECT_NEAR(state(k).d_c(i), state(1).d_c(i) * d < 0.0 ? -d : d, 0.0005);
      EXPECT_NEAR(std::abs(state(k).d0_c(i)), std::abs(d0), 0.01 * std::abs(d0) + 1.0e-5);
      EXPECT_EQ(state(k).hr_c(i), 0.5 * state(k).d0_c(i) * state(k).d0_c(i));
      EXPECT_DOUBLE_EQ(state(k).lam_c(i), state(k).hr_c(i) * state(k).freq(i));
      EXPECT_GE(state(1).d0_c(i) * state(2).d0_c(i), 0.0);
      lamt += state(k).lam_c(i);
    }
    EXPECT_NEAR(state(k).lamt_c, lamt, 1.0e-12);
    EXPECT_GT(lamt, 0.0);
  }
}

TEST(displacement, signs_of_the_cartesian_route_reach_the_huang_rhys_factors_and_not_the_energies) {
  std::vector<test_atom> moved = ammonia;
  moved[1].x[0] += 0.1;
  array1<states> state = pair_of(ammonia, moved);
  check(state);
  const states plain = state(2);
  for (int i = 1; i <= 12; ++i) state(1).d_sign_cart(i) = state(2).d_sign_cart(i) = i % 3 == 0 ? -1.0 : 1.0;
  input_data input;
  input.d_sign_same_to_cart = true;
  check(state, input);
  EXPECT_EQ(state(2).lam_c, plain.lam_c);
  EXPECT_EQ(state(2).lamt_c, plain.lamt_c);
  for (int i = 1; i <= 12; ++i) {
    const double sign = i % 3 == 0 ? -1.0 : 1.0;
    EXPECT_EQ(state(2).hr_c(i), sign * plain.hr_c(i));
    EXPECT_EQ(state(2).d_c(i), sign * std::abs(plain.d_c(i)));
    EXPECT_EQ(state(2).d0_c(i), sign * std::abs(plain.d0_c(i)));
  }
}

TEST(displacement, a_dihedral_across_180_degrees_takes_the_short_way) {
  array1<states> state = pair_of(disulfane(3.1), disulfane(-3.1));
  check(state);
  ASSERT_EQ(state(1).iztype(5), kind_dihedral);
  EXPECT_NEAR(state(1).zd(5), 2.0 * pi_value - 6.2, 1.0e-9);
  EXPECT_EQ(state(2).zd(5), -state(1).zd(5));
  // A length is never brought back.
  state(1).z(2) = -5.0;
  check(state);
  EXPECT_NEAR(state(1).zd(2), 7.05, 1.0e-9);
}

TEST(displacement, log_tells_large_changes_of_bonds_and_the_linear_estimates) {
  std::vector<test_atom> stretched = disulfane(1.5);
  stretched[0].x[1] += 0.05;
  stretched[3].x = disulfane(1.9)[3].x;  // a large change of an angle
  array1<states> state = pair_of(disulfane(1.5), stretched);
  const std::vector<std::string> lines = check(state);
  ASSERT_EQ(lines.size(), 11u);
  EXPECT_EQ(lines[0], "Large changes in internal coords:");
  EXPECT_EQ(lines[1], " zd    1 1    H  1    S  2                   1.315   1.365   0.049");
  EXPECT_EQ(lines[2], std::string(80, '-'));
  EXPECT_EQ(lines[3], "print xd and zd");
  EXPECT_EQ(lines[4], "   nr iztype    scale       xd       zd  |xd-zd|");
  EXPECT_EQ(
      lines[5],
      "    1      1   1.0000  0.04942  0.04944  0.00002       1     2     0     0       1     2     0     0");
  EXPECT_EQ(lines[9].substr(0, 30), "    5      4  57.2958  0.38942");
  EXPECT_EQ(lines[9].substr(30), "  0.40000  0.01058       1     2     3     4       1     2     3     4");
}

TEST(displacement, matrices_agree_with_the_sums_written_out) {
  std::vector<test_atom> moved = ammonia;
  moved[2].x[1] += 0.15;
  array1<states> state = pair_of(ammonia, moved);
  check(state);
  const auto through = [](const states& basis, const states& modes) {  // ga B M^-1/2 L
    array2<double> product(basis.nv, modes.n3);
    for (int v = 1; v <= basis.nv; ++v)
      for (int j = 1; j <= modes.n3; ++j)
        for (int m = 1; m <= modes.nr; ++m)
          for (int k = 1; k <= modes.n3; ++k)
            product(v, j) += basis.ga(v, m) * (modes.cm(k, j) * modes.br(k, m) / modes.sqtmass(k));
    return product;
  };
  for (int k = 1; k <= 2; ++k) {
    const states& own = state(k);
    const states& other = state(3 - k);
    ASSERT_EQ(own.cmr2.rows(), own.nv);
    const array2<double> s_o = matmul(own.cmr2, through(other, other), op::transposed, op::plain);
    const array2<double> s_c = matmul(own.cmr2, through(own, other), op::transposed, op::plain);
    for (int j = 7; j <= 12; ++j) {
      double norm = 0.0;
      for (int i = 1; i <= 12; ++i) norm += s_c(i, j) * s_c(i, j);
      for (int i = 1; i <= 12; ++i) {
        EXPECT_NEAR(own.s_o(i, j), s_o(i, j), 1.0e-11);
        EXPECT_NEAR(own.s_c(i, j), s_c(i, j) / std::sqrt(norm), 1.0e-11);
      }
    }
    for (int v = 1; v <= own.nv; ++v)
      for (int j = 1; j <= 12; ++j) {
        double sum = 0.0;
        for (int i = 1; i <= 12; ++i) sum += own.bm(v, i) * own.cm(i, j);
        EXPECT_NEAR(own.cmr2(v, j), sum, 1.0e-12);
      }
  }
}

TEST(displacement, modes_without_a_zero_point_length_and_null_columns_leave_no_undefined_value) {
  std::vector<test_atom> moved = ammonia;
  moved[1].x[0] += 0.1;
  array1<states> state = pair_of(ammonia, moved);
  array1<states> regular = state;
  check(regular);
  const double w = state(1).freq(8);
  state(1).freq(8) = -w;
  state(1).zptlen(8) = std::numeric_limits<double>::quiet_NaN();
  state(1).freq(9) = 0.0;
  state(1).zptlen(9) = std::numeric_limits<double>::infinity();
  for (int i = 1; i <= 12; ++i) state(2).cm(i, 10) = 0.0;
  check(state);
  // An imaginary mode keeps its displacement, and its energy falls.
  EXPECT_DOUBLE_EQ(state(1).d0_c(8), regular(1).d0_c(8));
  EXPECT_DOUBLE_EQ(state(1).lam_c(8), -regular(1).lam_c(8));
  // One of no frequency is displaced by the same length and has no energy.
  EXPECT_EQ(state(1).d0_c(9), 0.0);
  EXPECT_NEAR(state(1).d_c(9), regular(1).d_c(9), 1.0e-9);
  EXPECT_EQ(state(1).lam_c(9), 0.0);
  for (int i = 1; i <= 12; ++i) EXPECT_EQ(state(1).s_c(i, 10), 0.0);
  for (int k = 1; k <= 2; ++k)
    for (const array1<double>* field : {&state(k).d_c, &state(k).d0_c, &state(k).hr_c, &state(k).lam_c})
      for (const double result : *field) EXPECT_TRUE(std::isfinite(result));
}

TEST(displacement, other_definitions_are_told_and_unequal_numbers_stop_after_them) {
  array1<states> state = pair_of(disulfane(1.5), disulfane(1.5));
  array1<states> changed = state;
  changed(2).intdef(1, 6) = 3;
  changed(2).intdef(2, 6) = 2;
  const std::string told =
      "Changed internal coordinate     6\n"
      "     2     3     4     0         3     2     4     0\n"
      "Error: Definitions of internal coordinates are changed!\n";
  testing::internal::CaptureStdout();
  check(changed);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), told + told);
  changed(2).nr = 5;
  testing::internal::CaptureStdout();
  EXPECT_THROW(check(changed), run_end);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Error: numbers of internal coordinates are not same:     6     5\n");
}

}  // namespace
}  // namespace vbn
