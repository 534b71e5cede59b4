// Correlation functions, lines and rates against sums over states, closed forms and printed numbers.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <iterator>
#include <numbers>
#include <numeric>
#include <random>
#include <regex>
#include <sstream>

#include "frame/inertial.hpp"              // for inertm, inertmv_ref
#include "linalg/matmul.hpp"               // for matmul
#include "spectra/band.hpp"                // for choose_grid, band_at
#include "spectra/contour.hpp"             // for line_shape_at
#include "spectra/correlation.hpp"         // for correlate
#include "spectra/lines.hpp"               // for find_lines, overlap_of
#include "spectra/moments.hpp"             // for moments_of
#include "spectra/units.hpp"               // for au_to_rate, absorption_factor
#include "tests/end_to_end/whole_run.hpp"  // for real_data

namespace vbn {
namespace {

using end_to_end::real_data;
using nlohmann::json;

// The constants of the numbers that are compared.
constexpr double hartree = 219474.6313632;  // cm-1
constexpr double kelvin = 3.166811563e-6;   // hartree
constexpr double fs = 41.341373335194;      // atomic units
constexpr double sigma_200 = 200.0 / hartree / fwhm_of_sigma;

array1<double> vector_of(const std::vector<double>& from, double factor = 1.0) {
  array1<double> v(static_cast<int>(from.size()));
  for (int i = 1; i <= v.size(); ++i) v(i) = from[static_cast<std::size_t>(i - 1)] * factor;
  return v;
}

array2<double> matrix_of(const std::vector<std::vector<double>>& rows) {
  array2<double> m(static_cast<int>(rows.size()), static_cast<int>(rows[0].size()));
  for (int i = 1; i <= m.rows(); ++i)
    for (int j = 1; j <= m.cols(); ++j)
      m(i, j) = rows[static_cast<std::size_t>(i - 1)][static_cast<std::size_t>(j - 1)];
  return m;
}

transition modes(const std::vector<double>& w_i, const std::vector<double>& w_f,
                 const std::vector<double>& k) {
  transition t{vector_of(w_i, 1 / hartree), vector_of(w_f, 1 / hartree), {}, vector_of(k)};
  t.j = array2<double>(t.n(), t.n());
  for (int i = 1; i <= t.n(); ++i) t.j(i, i) = 1.0;
  return t;
}

// Displacement of Huang-Rhys factor `s`.
double displaced(double w, double s) { return std::sqrt(2.0 * s * hartree / w); }

// A transition of `n` modes from 30 to 3030 cm-1 that are mixed, distorted and displaced at random.
transition random_transition(int n, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> part(-1.0, 1.0);
  std::vector<double> w_i, w_f, k;
  for (int i = 0; i < n; ++i) {
    w_i.push_back(30.0 + 3000.0 * (i + 0.5) / n);
    w_f.push_back(w_i.back() * (1.0 + 0.1 * part(random)));
    k.push_back(displaced(w_i.back(), 0.3) * part(random));
  }
  transition t = modes(w_i, w_f, k);
  for (int i = 1; i < n; ++i) {
    const double angle = 0.4 * part(random);
    for (int l = 1; l <= n; ++l) {
      const double a = t.j(i, l), b = t.j(i + 1, l);
      t.j(i, l) = std::cos(angle) * a - std::sin(angle) * b;
      t.j(i + 1, l) = std::sin(angle) * a + std::cos(angle) * b;
    }
  }
  return t;
}

std::vector<complex> chi_fc(const transition& t, double temperature, std::span<const double> times,
                            int threads = 1) {
  std::vector<complex> chi;
  for (const correlation_value& v : correlate(t, {}, temperature * kelvin, times, threads).values)
    chi.push_back(v.fc);
  return chi;
}

std::string label(const std::vector<mode_quanta>& quanta) {
  std::string text;
  for (const auto& [mode, n] : quanta) text += std::to_string(mode) + "^" + std::to_string(n) + " ";
  return text;
}

TEST(spectra, correlation_functions_are_the_sums_over_states_of_small_models) {
  VBN_NEEDS_REAL_DATA();
  const json models = json::parse(std::ifstream(real_data() / "fcf/models.json"))["models"];
  ASSERT_GE(models.size(), 4u);
  for (const json& m : models) {
    SCOPED_TRACE(m["name"]);
    transition t = modes(m["frequencies_initial_cm"], m["frequencies_final_cm"], m["K_au"]);
    t.j = matrix_of(m["J"]);
    transition_operator o;
    if (!m["mu0"].is_null()) {
      o = {vector_of(m["mu0"]), matrix_of(m["mu1_final_coordinates"]),
           vector_of(m["momentum_couplings_final_au"])};
    }
    const double tolerance = t.n() < 3 ? 1e-11 : 2e-7;  // the sums of three modes end early
    for (const json& at : m["temperatures"]) {
      const double temperature = at["T_K"];
      std::vector<double> times = at["times_fs"];
      for (double& time : times) time *= fs;
      const auto values = correlate(t, o, temperature * kelvin, times, 2).values;
      const std::vector<complex> plain = chi_fc(t, temperature, times);
      for (std::size_t i = 0; i < times.size(); ++i) {
        const auto expect = [&](const char* name, complex ours) {
          const auto at_time = [&](std::size_t j) { return complex(at[name][j][0], at[name][j][1]); };
          EXPECT_LT(std::abs(ours - at_time(i)), tolerance * std::abs(at_time(0))) << name << " " << times[i];
        };
        expect("chi_fc", values[i].fc);
        expect("chi_fc", plain[i]);
        if (o.v.size() == 0) continue;
        expect("chi_ht", values[i].dipole_fc + values[i].dipole_mixed + values[i].dipole_ht);
        expect("chi_ic", values[i].ic);
      }
      const line_moments exact = moments_of(t, temperature * kelvin);
      EXPECT_NEAR(exact.mean * hartree, at["first_moment_cm"].get<double>(), 1e-6);
      const double second = at["second_moment_cm2"];
      EXPECT_NEAR((exact.sd * exact.sd + exact.mean * exact.mean) * hartree * hartree, second, 1e-9 * second);
    }
  }
}

TEST(spectra, rates_are_those_of_sums_over_states) {
  VBN_NEEDS_REAL_DATA();
  const json rates = json::parse(std::ifstream(real_data() / "fcf/models.json"))["rates"];
  const double au = 2.0 * std::numbers::pi * 1e15 * fs, per_cm = au / (hartree * hartree);
  const transition one = modes({1400}, {1400}, {displaced(1400, 1)});
  EXPECT_NEAR(
      per_cm * line_shape_at(one, {}, 0, 7000 / hartree, sigma_200, 1).fc / rates["isc"]["k"].get<double>(),
      1, 1e-6);
  const transition two = modes({800, 1400}, {800, 1400}, {0, displaced(1400, 1)});
  transition_operator promoting;
  promoting.v = vector_of({1e-3, 0});
  for (const double temperature : {0.0, 300.0}) {
    const tail_value f = line_shape_at(two, promoting, temperature * kelvin, 7800 / hartree, sigma_200, 2);
    EXPECT_NEAR(au * f.ic / rates["ic"][temperature > 0 ? "k_300K" : "k_0K"].get<double>(), 1, 1e-8);
    EXPECT_NEAR(f.ic_share[0] / f.ic, 1, 1e-12);
  }
  const double lambda = 0.2 / 27.211386245988;
  const transition marcus = modes({5}, {5}, {displaced(5, lambda * hartree / 5)});
  const double k = per_cm * line_shape_at(marcus, {}, 300 * kelvin, lambda / 2, 0.1 * sigma_200, 2).fc;
  EXPECT_NEAR(k / rates["marcus"]["k"].get<double>(), 1, 1e-6);
  const double w = rates["hydrogen_2p_1s"]["w_au"], mu2 = rates["hydrogen_2p_1s"]["mu2_au"];
  const double einstein = 4 * w * w * w * mu2 / (3 * std::pow(light_speed, 3)) * au_to_rate;
  EXPECT_NEAR(einstein / rates["hydrogen_2p_1s"]["k"].get<double>(), 1, 1e-6);
}

TEST(spectra, methylene_blue_has_the_printed_lines_and_band) {
  VBN_NEEDS_REAL_DATA();
  std::ifstream in(real_data() / "fcf/methylene_blue.txt");
  std::string line, word;
  int n = 0;
  double zero = 0;
  std::getline(in, line);
  in >> word >> n >> word >> zero >> word;
  transition t{array1<double>(n), array1<double>(n), array2<double>(n, n), array1<double>(n)};
  const auto skip_line = [&] { std::getline(in, line), std::getline(in, line); };
  for (double& w : t.w_i) in >> w, w /= hartree;
  in >> word;
  for (double& w : t.w_f) in >> w, w /= hartree;
  skip_line();
  for (int i = 1; i <= n; ++i)
    for (int j = 1; j <= n; ++j) in >> t.j(i, j);
  skip_line();
  for (double& k : t.k) in >> k;
  skip_line();
  const line_list ours = find_lines(t, 0, 1e-4, 100);
  EXPECT_TRUE(ours.finished);
  EXPECT_EQ(ours.lines.size(), 436u);
  std::map<std::string, const vibronic_line*> by_label;
  for (const vibronic_line& it : ours.lines) by_label[label(it.final)] = &it;
  for (int i = 0; i < 436; ++i) {
    std::getline(in, line);
    std::istringstream words(line);
    double energy = 0, strength = 0;
    words >> energy >> strength;
    std::map<int, int> sorted;
    for (int mode = 0, quanta = 0; words >> word && std::sscanf(word.c_str(), "%d^%d", &mode, &quanta) == 2;)
      sorted[mode] = quanta;
    std::vector<mode_quanta> quanta;
    for (const auto& [mode, m] : sorted) quanta.push_back({mode, m});
    ASSERT_TRUE(by_label.contains(label(quanta))) << line;
    const vibronic_line& same = *by_label[label(quanta)];
    // Four digits, and one unit for the six digits of J and K.
    const double unit = std::pow(10.0, std::floor(std::log10(strength)) - 3);
    EXPECT_NEAR(same.strength, strength, 0.6 * unit) << line;
    EXPECT_NEAR(same.energy * hartree, energy, 1e-3);
  }
  skip_line();
  const line_width width{100 / hartree / std::sqrt(2 * std::numbers::ln2), 0};
  const line_moments m = moments_of(t, 0);
  const time_grid grid =
      choose_grid(m.mean - 8 * m.sd, m.mean + 8 * m.sd, 10 / hartree, 0, std::span(&width, 1));
  std::vector<double> times;
  for (std::size_t i = 0; i < grid.points; ++i) times.push_back(grid.step * static_cast<double>(i));
  const std::vector<complex> chi = chi_fc(t, 0, times);
  int compared = 0;
  for (double nu = 0, printed = 0; in >> nu >> printed;) {
    // Their lines are a third of the step of 3 cm-1 lower: the 0-0 line is at the nearest step. Their list
    // holds the whole band up to there; below, lines are cut off at a few widths.
    if (nu < zero - 300 || nu > zero + 340) continue;
    const double f = band_at(grid, chi, width, (nu + 1.0 / 3.0 - zero) / hartree) / hartree;
    EXPECT_NEAR(absorption_factor * nu * f, printed, 5e-5 * 28366.9) << nu;
    ++compared;
  }
  EXPECT_EQ(compared, 213);
}

// One state of an input of the other program, along its principal axes.
struct printed_state {
  array2<double> x;      // (3,natom) bohr
  array1<double> w;      // cm-1
  array2<double> modes;  // (3 natom,n)
};

std::vector<std::string> words_in_quotes(const std::string& content, const std::string& element,
                                         const std::string& attribute, std::size_t from, std::size_t to) {
  const std::size_t at = content.find("<" + element, from);
  if (at >= to) return {};
  const std::size_t quote = content.find('"', content.find(attribute, at));
  std::istringstream words(content.substr(quote + 1, content.find('"', quote + 1) - quote - 1));
  return {std::istream_iterator<std::string>(words), {}};
}

// Modes are printed three in a block, a line an atom. Atoms and modes may be reordered.
printed_state read_state(const std::string& content, std::size_t from, std::size_t to, array1<double>& mass,
                         const std::map<std::string, double>& masses) {
  const auto words = [&](const char* element, const char* attribute) {
    return words_in_quotes(content, element, attribute, from, to);
  };
  const auto order_of = [&](const char* element, int count) {
    std::vector<int> order(static_cast<std::size_t>(count));
    std::iota(order.begin(), order.end(), 0);
    const std::vector<std::string> given = words(element, "new_order");
    for (std::size_t i = 0; i < given.size(); ++i) order[i] = std::stoi(given[i]);
    return order;
  };
  const auto atoms = words("geometry", "text"), printed = words("normal_modes", "text"),
             symbols = words("normal_modes", "atoms"), frequencies = words("frequencies", "text");
  const int natom = static_cast<int>(symbols.size()), n = static_cast<int>(frequencies.size());
  const std::vector<int> atom = order_of("manual_atoms_reordering", natom);
  const std::vector<int> mode = order_of("manual_normal_modes_reordering", n);
  printed_state s{array2<double>(3, natom), array1<double>(n), array2<double>(3 * natom, n)};
  mass = array1<double>(natom);
  for (int i = 0; i < natom; ++i) {
    const auto old = static_cast<std::size_t>(atom[static_cast<std::size_t>(i)]);
    mass(i + 1) = masses.at(symbols[old]);
    for (std::size_t a = 0; a < 3; ++a)
      s.x(static_cast<int>(a) + 1, i + 1) = 1.889716 * std::stod(atoms[4 * old + 1 + a]);
    for (int m = 0; m < n; ++m) {
      const auto from_mode = static_cast<std::size_t>(mode[static_cast<std::size_t>(m)]);
      s.w(m + 1) = std::stod(frequencies[from_mode]);
      const std::size_t block = from_mode / 3 * static_cast<std::size_t>(natom) * 9;
      for (std::size_t a = 0; a < 3; ++a)
        s.modes(3 * i + 1 + static_cast<int>(a), m + 1) =
            std::sqrt(mass(i + 1)) * std::stod(printed[block + 9 * old + from_mode % 3 * 3 + a]);
    }
  }
  for (int m = 1; m <= n; ++m) {  // of unit length with the masses
    double square = 0;
    for (const double a : s.modes.column(m)) square += a * a;
    for (double& a : s.modes.column(m)) a /= std::sqrt(square);
  }
  return s;
}

void bring_to_axes(printed_state& s, const array1<double>& mass, const array2<double>& reference) {
  array2<double> none(3, mass.size());
  const array2<double> rot = inertmv_ref(mass, reference, s.x, none.span());
  for (int m = 1; m <= s.modes.cols(); ++m) {
    for (int i = 0; i < mass.size(); ++i) {
      const double v[] = {s.modes(3 * i + 1, m), s.modes(3 * i + 2, m), s.modes(3 * i + 3, m)};
      for (int a = 1; a <= 3; ++a)
        s.modes(3 * i + a, m) = rot(a, 1) * v[0] + rot(a, 2) * v[1] + rot(a, 3) * v[2];
    }
  }
}

// "0(1v3,2v1)": quanta in modes that count from 0.
std::vector<mode_quanta> quanta_of(const std::string& level) {
  static const std::regex part("(\\d+)v(\\d+)");
  std::vector<mode_quanta> quanta;
  for (std::sregex_iterator it(level.begin(), level.end(), part), end; it != end; ++it)
    quanta.push_back({std::stoi((*it)[2]) + 1, std::stoi((*it)[1])});
  return quanta;
}

TEST(spectra, franck_condon_factors_are_those_of_another_program_with_its_choices) {
  VBN_NEEDS_REAL_DATA();
  const std::filesystem::path folder = real_data() / "fcf/ezfcf";
  const auto content_of = [](const std::filesystem::path& file) {
    return std::string(std::istreambuf_iterator<char>(std::ifstream(file).rdbuf()), {});
  };
  std::map<std::string, double> masses;
  const std::string table = content_of(folder / "atomicMasses.xml");
  static const std::regex entry("<(\\w+)>\\s*([0-9.]+)");
  for (std::sregex_iterator it(table.begin(), table.end(), entry), end; it != end; ++it)
    masses[(*it)[1]] = std::stod((*it)[2]);
  for (const std::string name : {"formaldehyde", "adenine"}) {
    const std::string content = content_of(folder / (name + ".xml"));
    const std::size_t target = content.find("<target_state>");
    array1<double> mass;
    printed_state i = read_state(content, content.find("<initial_state>"), target, mass, masses);
    printed_state f = read_state(content, target, content.size(), mass, masses);
    array2<double> axes = i.x;
    inertm(mass, axes);
    bring_to_axes(i, mass, axes);
    bring_to_axes(f, mass, axes);
    // Their displacements are along the modes of the ion, so its state is the one whose coordinates are
    // written in those of the other.
    transition t{f.w, i.w, matmul(f.modes, i.modes, op::transposed), array1<double>(i.w.size())};
    for (double& w : t.w_i) w /= hartree;
    for (double& w : t.w_f) w /= hartree;
    for (int k = 1; k <= t.n(); ++k)
      for (int at = 1; at <= mass.size(); ++at)
        for (int a = 1; a <= 3; ++a)
          t.k(k) +=
              f.modes(3 * at - 3 + a, k) * std::sqrt(mass(at) * 1822.888486) * (i.x(a, at) - f.x(a, at));
    double log_det = 0;
    inverse_of(t.j, log_det);
    int compared = 0;
    std::istringstream lines(content_of(folder / (name + ".xml.spectrum_dushinsky")));
    double energy = 0, strength = 0, factor = 0, kelvins = 0;
    for (std::string levels; lines >> energy >> strength >> factor >> kelvins >> levels; ++compared) {
      const std::size_t arrow = levels.find("->");
      const double ours = overlap_of(t, quanta_of(levels.substr(arrow)), quanta_of(levels.substr(0, arrow)));
      EXPECT_NEAR(ours * std::exp(-log_det), factor, 1e-6) << name << " " << levels;
    }
    EXPECT_EQ(compared, name == "adenine" ? 286 : 55);
  }
}

TEST(spectra, hard_transitions_have_their_closed_forms) {
  std::vector<double> times;
  for (int i = 0; i < 200; ++i) times.push_back(17.0 * i * fs);
  for (const double temperature : {0.0, 1e-3, 10.0, 300.0, 1000.0}) {
    for (const auto& [w, s] : std::map<double, double>{{1400, 1}, {1000, 1000}, {3, 20}}) {
      SCOPED_TRACE(testing::Message() << temperature << " K, " << w << " cm-1");
      const std::vector<complex> chi =
          chi_fc(modes({w, w}, {w, w}, {displaced(w, s), 0}), temperature, times);
      const double n = temperature > 0 ? 1 / std::expm1(w / hartree / (temperature * kelvin)) : 0;
      for (std::size_t i = 0; i < times.size(); ++i) {
        const complex turn = std::exp(complex(0, w / hartree * times[i]));
        const complex exact = std::exp(-s * ((n + 1) * (1.0 - std::conj(turn)) + n * (1.0 - turn)));
        EXPECT_LT(std::abs(chi[i] - exact), 1e-11) << i;
      }
    }
  }
  const line_list lines = find_lines(modes({1000, 700}, {1000, 700}, {displaced(1000, 1000), 0}), 0, 5e-3, 60);
  EXPECT_TRUE(lines.finished);
  EXPECT_EQ(lines.lines.size(), 86u);
  for (const vibronic_line& line : lines.lines) {
    const int m = line.final.at(0).quanta;
    EXPECT_NEAR(line.strength / std::exp(m * std::log(1000.0) - 1000 - std::lgamma(m + 1.0)), 1, 1e-10) << m;
  }
}

// The lines of both directions have the same overlaps, with the populations of their own initial levels.
TEST(spectra, hot_lines_keep_the_detailed_balance_when_the_states_are_exchanged) {
  const transition t = random_transition(4, 3);
  const double kt = 400 * kelvin;
  std::map<std::string, double> overlaps;
  for (const vibronic_line& line : find_lines(t, kt, 1e-4, 60).lines)
    overlaps[label(line.initial) + "> " + label(line.final)] =
        std::abs(overlap_of(t, line.initial, line.final));
  int both = 0;
  for (const vibronic_line& line : find_lines(exchanged(t), kt, 1e-4, 60).lines) {
    double population = 1;
    for (const double w : t.w_f) population *= -std::expm1(-w / kt);
    for (const auto& [mode, quanta] : line.initial) population *= std::exp(-quanta * t.w_f(mode) / kt);
    const auto same = overlaps.find(label(line.final) + "> " + label(line.initial));
    if (same == overlaps.end()) continue;
    EXPECT_NEAR(line.strength / population, same->second * same->second, 1e-10);
    ++both;
  }
  EXPECT_GT(both, 30);
}

TEST(spectra, threads_change_no_bit_and_two_algebras_agree) {
  const transition t = random_transition(60, 5);
  transition_operator o;
  o.v = array1<double>(60, 1e-3);
  const line_width width{sigma_200, 0};
  for (const double temperature : {0.0, 300.0}) {
    const line_moments m = moments_of(t, temperature * kelvin);
    const time_grid grid =
        choose_grid(m.mean - 9 * m.sd, m.mean + 9 * m.sd, 10 / hartree, 0, std::span(&width, 1));
    std::vector<double> times;
    for (std::size_t i = 0; i < grid.points; ++i) times.push_back(grid.step * static_cast<double>(i));
    const std::vector<complex> chi = chi_fc(t, temperature, times);
    EXPECT_EQ(chi, chi_fc(t, temperature, times, 3));
    std::vector<complex> with_couplings, momenta;
    for (const correlation_value& v : correlate(t, o, temperature * kelvin, times, 2).values) {
      with_couplings.push_back(v.fc);
      momenta.push_back(v.ic);
    }
    for (std::size_t i = 0; i < chi.size(); ++i) EXPECT_LT(std::abs(chi[i] - with_couplings[i]), 1e-12);
    // The path in the complex plane, by LU factors, against the sum over real times.
    const double energy = m.mean + 1.5 * m.sd;
    const tail_value tail = line_shape_at(t, o, temperature * kelvin, energy, sigma_200, 2);
    EXPECT_NEAR(tail.fc / band_at(grid, chi, width, energy), 1, 1e-8);
    EXPECT_NEAR(tail.ic / band_at(grid, momenta, width, energy), 1, 1e-8);
    EXPECT_TRUE(tail.converged);
  }
}

}  // namespace
}  // namespace vbn
