// Whole runs whose results are known from a symmetry of the problem or from a formula.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "frame/rotation.hpp"              // for rotn
#include "molecule/elements.hpp"           // for element_symbol
#include "tests/end_to_end/whole_run.hpp"  // for whole_run, mode_table
#include "tests/molecules.hpp"             // for molecule, state_of, numforce_file
#include "text/layout.hpp"                 // for layout

namespace vbn::end_to_end {
namespace {

constexpr double hartree_to_cm = 219474.63068;

// A Molpro file with the couplings of a molecule, rotated by angles from the seed.
std::string coupling_file(const states& state, unsigned seed) {
  std::string file(61, ' ');
  file += "MOLPRO\n ATOMIC COORDINATES\n\n NR  ATOM    CHARGE  X  Y  Z\n\n";
  std::string dump = "\n Dump information in style XYZ to output\n\n    5\n a molecule\n";
  std::string masses = "\n Atomic Masses\n   1-  5";
  std::string couplings =
      "\n\n Energy Difference at present geometry  0.150000000\n\n Derivative Coupling before scaling\n";
  const layout atom("(i4,2x,a2,f10.2,3f16.10)"), xyz("(a2,3f20.12)"), vector("(3f20.12)");
  for (int i = 1; i <= state.atoms.natom; ++i) {
    const auto x = state.atoms.x.column(i);
    const text<2> symbol = element_symbol(state.atoms.nat(i));
    atom.write(file, {i, symbol, 1.0 * state.atoms.nat(i), x[0], x[1], x[2]});
    xyz.write(dump, {symbol, x[0], x[1], x[2]});
    masses += "  " + std::to_string(state.atoms.mass(i));
    std::array<double, 3> v = {std::sin(1.3 * i), std::cos(1.7 * i), std::sin(0.9 * i + 1.0)};
    rotn(random_rotation(seed), v);
    vector.write(couplings, v);
  }
  return file + dump + masses + couplings + "\n";
}

struct result {
  mode_table cart, dint;
  std::vector<double> couplings;
  std::string log, printed;
};

// Runs two states with these keys; `couplings` is the coupling file, empty for none.
result run_of(const molecule& one, const molecule& two, const std::string& keys,
              const std::string& couplings = "") {
  whole_run run;
  run.write("one.dat", numforce_file(state_of(one)));
  run.write("two.dat", numforce_file(state_of(two, 0.4)));
  run.write("nac.out", couplings);
  run.write("a.inp", "&vbn ffreq = 'one.dat' 'two.dat' " + keys +
                         (couplings.empty() ? " /\n" : " fnacme = 'nac.out' /\n"));
  run.run("a.inp");
  EXPECT_EQ(run.status, 0) << keys << "\n" << run.out << run.err;
  return {parse_mode_data(run.read("vbn.cart.dat")), parse_mode_data(run.read("vbn.dint.dat")),
          parse_couplings(run.read("vbn.cart.nac")), run.read("vbn.out"), run.out};
}

void expect_near(const std::vector<double>& a, const std::vector<double>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) EXPECT_NEAR(a[i], b[i], 2e-9);
}

void expect_same(const result& a, const result& b) {
  expect_same_physics(a.cart, b.cart, 0.011, 1e-3);
  expect_same_physics(a.dint, b.dint, 0.011, 1e-3);
  expect_near(a.couplings, b.couplings);
}

const molecule excited = [] {
  molecule atoms = chiral_molecule;
  atoms[1].x[0] += 0.15;
  atoms[3].x[2] -= 0.2;
  return atoms;
}();

TEST(invariances, moving_any_file_as_a_whole_and_another_way_to_the_frame_change_nothing) {
  // The couplings of the file are those of its molecule, rotated with it.
  const auto file = [](unsigned seed) {
    return coupling_file(state_of(moved(chiral_molecule, seed, {3.0, -7.0, 11.0})), seed);
  };
  const result still = run_of(chiral_molecule, excited, "", file(1));
  ASSERT_EQ(still.cart.rows.size(), 15u);
  ASSERT_EQ(still.couplings.size(), 9u);
  EXPECT_GT(still.cart.total1, 100.0);
  for (std::size_t i = 0; i < 15; ++i)
    for (std::size_t j = 0; j < 15; ++j) {
      double product = 0.0;
      for (std::size_t k = 0; k < 15; ++k) product += still.cart.s[i * 15 + k] * still.cart.s[j * 15 + k];
      EXPECT_NEAR(product, i == j ? 1.0 : 0.0, 1e-5) << "the Duschinsky matrix is orthogonal";
    }
  unsigned seed = 2;
  for (const char* keys : {"", "proj_hessian = 1", "proj_hessian = 3"}) {
    SCOPED_TRACE(keys);
    seed += 3;
    expect_same(still, run_of(moved(chiral_molecule, seed, {0.5, 1.0, 2.0}),
                              moved(excited, seed + 1, {-1.0, 0.0, 4.0}), keys, file(seed + 2)));
  }
  // The couplings depend on one state only, wherever the other is.
  for (const char* keys : {"eckart_rot = 0", "eckart_rot = 1", "set_eckart_order = 3"})
    expect_near(run_of(chiral_molecule, excited, keys, file(1)).couplings, still.couplings);
}

TEST(invariances, exchanging_the_states_exchanges_their_columns_and_takes_the_couplings_along) {
  const std::string file = coupling_file(state_of(chiral_molecule), 1);
  const result there = run_of(chiral_molecule, excited, "", file);
  whole_run run;
  run.write("one.dat", numforce_file(state_of(excited, 0.4)));
  run.write("two.dat", numforce_file(state_of(chiral_molecule)));
  run.write("nac.out", file);
  run.write("a.inp", "&vbn ffreq = 'one.dat' 'two.dat' fnacme = 'nac.out' /\n");
  run.run("a.inp");
  const mode_table back = parse_mode_data(run.read("vbn.cart.dat"));
  ASSERT_EQ(there.cart.rows.size(), back.rows.size());
  for (std::size_t i = 6; i < back.rows.size(); ++i) {
    EXPECT_DOUBLE_EQ(there.cart.rows[i].freq1, back.rows[i].freq2);
    EXPECT_NEAR(there.cart.rows[i].hr1, back.rows[i].hr2, 2e-5);
    EXPECT_NEAR(there.cart.rows[i].hr2, back.rows[i].hr1, 2e-5);
  }
  EXPECT_NE(there.log.find("  NACME file 1       :  nac.out\n"), std::string::npos);
  EXPECT_NE(run.read("vbn.out").find("  NACME file 2       :  nac.out\n"), std::string::npos);
}

// The limit is a distance of 0.001 bohr over all coordinates: a slightly larger molecule.
TEST(invariances, couplings_of_a_geometry_beyond_the_limit_or_of_the_mirror_image_are_not_the_states) {
  const molecule centred = {{6, {0.0, 0.0, 3.0}},
                            {6, {0.0, 0.0, -3.0}},
                            {8, {0.0, 4.0, 0.0}},
                            {8, {0.0, -4.0, 0.0}},
                            {7, {5.0, 0.0, 0.0}}};
  for (const auto& [distance, taken] : {std::pair{0.00095, true}, {0.00105, false}}) {
    molecule larger = centred;
    larger[0].x[2] += distance / std::sqrt(2.0);
    larger[1].x[2] -= distance / std::sqrt(2.0);
    const result got =
        run_of(centred, centred, "set_cart = t proj_nacme = 1", coupling_file(state_of(larger), 1));
    EXPECT_EQ(got.couplings.empty(), !taken) << distance << got.printed;
    EXPECT_EQ(got.printed.find("different from two states") != std::string::npos, !taken);
  }
  molecule mirrored = chiral_molecule;
  for (test_atom& atom : mirrored) atom.x[2] = -atom.x[2];
  EXPECT_TRUE(run_of(chiral_molecule, excited, "proj_nacme = 1", coupling_file(state_of(mirrored), 1))
                  .couplings.empty());
}

TEST(invariances, a_displaced_oscillator_has_the_huang_rhys_factor_of_the_formula) {
  const double distance[2] = {2.1, 2.22};
  const auto nitric_oxide = [&](int n) { return molecule{{7, {}}, {8, {0.0, 0.0, distance[n]}}}; };
  const mode_table table = run_of(nitric_oxide(0), nitric_oxide(1), "set_cart = t").cart;
  const states state = state_of(nitric_oxide(0));
  const double mu =
      state.atoms.massau(1) * state.atoms.massau(2) / (state.atoms.massau(1) + state.atoms.massau(2));
  for (int n = 0; n < 2; ++n) {
    const double k = (n == 0 ? 0.5 : 0.4) * 1.56 * std::exp(-0.4 * distance[n]);
    const double omega = std::sqrt(k / mu);
    const double shift = distance[1] - distance[0];
    const mode_row& row = table.rows[5];
    EXPECT_NEAR(n == 0 ? row.freq1 : row.freq2, omega * hartree_to_cm, 0.02);
    EXPECT_NEAR(std::abs(n == 0 ? row.d1 : row.d2), std::sqrt(mu) * shift, 1e-4);
    EXPECT_NEAR(n == 0 ? row.hr1 : row.hr2, 0.5 * mu * omega * shift * shift, 2e-5);
    EXPECT_NEAR(n == 0 ? table.total1 : table.total2, 0.5 * k * shift * shift * hartree_to_cm, 0.02);
  }
}

TEST(invariances, a_small_displacement_is_the_same_through_internal_coordinates) {
  molecule other = ammonia;
  other[1].x[0] += 0.004;
  other[2].x[2] -= 0.003;
  const result got = run_of(ammonia, other, "d_sign_same_to_cart = t");
  for (std::size_t i = 6; i < 12; ++i) {
    EXPECT_NEAR(got.dint.rows[i].d1, got.cart.rows[i].d1, 0.01);
    EXPECT_NEAR(got.dint.rows[i].d2, got.cart.rows[i].d2, 0.01);
    EXPECT_NEAR(got.dint.rows[i].s, got.cart.rows[i].s, 0.01);
  }
  EXPECT_GT(got.cart.total1, 0.1);
}

// By elimination with the largest pivot of each column.
double determinant(std::vector<double> a, std::size_t n) {
  double det = 1.0;
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t p = k;
    for (std::size_t i = k; i < n; ++i)
      if (std::abs(a[i * n + k]) > std::abs(a[p * n + k])) p = i;
    if (p != k) det = -det;
    std::swap_ranges(&a[k * n], &a[k * n] + n, &a[p * n]);
    det *= a[k * n + k];
    for (std::size_t i = k + 1; i < n; ++i)
      for (std::size_t j = n; j-- > k;) a[i * n + j] -= a[i * n + k] / a[k * n + k] * a[k * n + j];
  }
  return det;
}

// S(g,e) with the modes in their own numbering.
std::vector<double> numbered(const mode_table& table) {
  const std::size_t n = table.rows.size();
  std::vector<double> s(n * n);
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = 0; j < n; ++j)
      s[static_cast<std::size_t>(table.rows[i].g - 1) * n + static_cast<std::size_t>(table.rows[j].e - 1)] =
          table.s[i * n + j];
  return s;
}

TEST(invariances, the_conventions_for_signs_change_nothing_else) {
  int negated = 0;
  for (unsigned seed = 1; seed <= 4; ++seed) {
    const molecule one = moved(chiral_molecule, seed, {}), two = moved(excited, seed + 4, {});
    const result plain = run_of(one, two, "sort_mode = 1 n3all = t");
    const result diagonal = run_of(one, two, "sort_mode = 1 n3all = t positive_diag = t");
    const result proper = run_of(one, two, "sort_mode = 1 n3all = t proper_rotation = t");
    expect_same(plain, diagonal);
    expect_same(plain, proper);
    for (const mode_row& row : diagonal.cart.rows) EXPECT_GE(row.s, 0.0);
    EXPECT_NEAR(determinant(numbered(proper.cart), 15), 1.0, 1e-4);
    negated += determinant(numbered(plain.cart), 15) < 0.0;
  }
  EXPECT_GT(negated, 0);
}

}  // namespace
}  // namespace vbn::end_to_end
