// Compares frequencies, gradients, masses, formulas and methods.
#include "checks/sources.hpp"  // for the routines

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "checks/atom_order.hpp"   // for bonds_of
#include "checks/wording.hpp"      // for with_digits, of_state
#include "frame/hessian.hpp"       // for frequencies_of
#include "frame/projection.hpp"    // for project_mhessian_rot
#include "molecule/constants.hpp"  // for au_to_cm, bohr_to_ang
#include "molecule/formula.hpp"    // for formula
#include "molecule/geometry.hpp"   // for largest_difference
#include "text/stop.hpp"           // for fail
#include "text/words.hpp"          // for lowercase

namespace vbn {

namespace {

constexpr double compared_from = 100.0;    // cm-1; lower frequencies depend on how rotations are removed
constexpr double frequency_limit = 1.0;    // cm-1
constexpr double frequency_ratio = 0.005;  // of the frequency
constexpr double gradient_limit = 5.0e-4;  // hartree/bohr; most programs converge to 4.5e-4 or 3e-4
constexpr double mass_ratio = 3.0e-5;      // isotopes and natural averages of H differ by 1.1e-4
constexpr double shortest = 0.6, longest = 3.0;  // distance of the nearest two atoms, angstrom
constexpr double shortest_in_bohr = 1.805;       // O-H in bohr
constexpr double highest = 6000.0;               // cm-1; the highest vibration is that of H2, 4401
constexpr double same_geometry_limit = 1.0e-6;   // bohr
constexpr double same_frequency_limit = 1.0e-3;  // cm-1

// Those above the limit in magnitude, cm-1, the highest first.
std::vector<double> compared(std::vector<double> freq) {
  std::erase_if(freq, [](double f) { return std::abs(f) < compared_from; });
  std::ranges::sort(freq, std::greater{});
  return freq;
}

// The frequencies of the file's own masses, geometry and force constants, cm-1, without external modes.
std::vector<double> own_frequencies(const states& state) {
  array2<double> fcm = state.force.fcm();
  project_mhessian_rot(state.atoms.x, state.atoms.massau, fcm);
  const array1<double> freq = frequencies_of(fcm);
  std::vector<double> in_cm;
  for (const double f : freq) in_cm.push_back(au_to_cm * f);
  return in_cm;
}

void warn_of_frequencies(const states& state, int k, const messages& say) {
  // A file can print the frequencies of some modes only, and those of all layers of an ONIOM calculation.
  const std::vector<double>& all = state.file.printed.frequencies;
  if (state.file.ifoniom || static_cast<int>(all.size()) < state.atoms.n3 - 6) return;
  const std::vector<double> printed = compared(all);
  const std::vector<double> own = compared(own_frequencies(state));
  const std::size_t n = std::min(printed.size(), own.size());
  double largest = 0.0;
  std::size_t worst = n;
  for (std::size_t i = 0; i < n; ++i) {
    const double off = std::abs(printed[i] - own[i]);
    if (off > std::max(frequency_limit, frequency_ratio * std::abs(printed[i])) && off > largest) {
      largest = off;
      worst = i;
    }
  }
  if (worst == n) return;
  say.warn(of_state(state, k) + ": its force constants give a frequency of " + with_digits(own[worst], 1) +
           " cm-1 where it prints " + with_digits(printed[worst], 1) +
           "; geometry, masses or force constants are not those of the printed frequencies");
}

void warn_of_gradient(const states& state, int k, const messages& say) {
  const std::optional<double>& gradient = state.file.printed.max_gradient;
  if (!gradient || std::abs(*gradient) <= gradient_limit) return;
  say.warn(of_state(state, k) + ": it prints a largest gradient of " + with_digits(*gradient, 6) +
           " hartree/bohr, above " + with_digits(gradient_limit, 6) +
           ": the geometry is not optimised, and displacements and reorganisation energies count its "
           "distance from "
           "the minimum");
}

void warn_of_units(const states& state, int k, const messages& say) {
  const array2<double>& x = state.atoms.x;
  double least = std::numeric_limits<double>::infinity();
  for (int i = 1; i < x.cols(); ++i)
    for (int j = i + 1; j <= x.cols(); ++j)
      least = std::min(least, std::hypot(x(1, i) - x(1, j), x(2, i) - x(2, j), x(3, i) - x(3, j)));
  least *= bohr_to_ang;
  // A geometry in bohr that is read in angstrom has no bonds at all.
  const bool parted = least > longest ||
                      (least > shortest_in_bohr &&
                       std::ranges::none_of(bonds_of(state.atoms).span(), [](bool_ b) { return bool(b); }));
  if (state.atoms.natom > 1 && (least < shortest || parted)) {
    say.warn(of_state(state, k) + ": the nearest two atoms are " + with_digits(least, 3) +
             " angstrom apart; the unit of length may not be that of the file");
  }
  const double top = au_to_cm * state.modes.freq0(state.atoms.n3);
  if (state.atoms.natom > 1 && top > highest) {
    say.warn(
        of_state(state, k) + ": its highest frequency is " + with_digits(top, 1) +
        " cm-1, above that of any molecule; the unit of the force constants may not be that of the file");
  }
}

// The first atom whose mass differs, 0 for none.
int other_mass(const atom_data& one, const atom_data& two) {
  for (int i = 1; i <= one.natom; ++i)
    if (one.nat(i) == two.nat(i) && std::abs(one.mass(i) - two.mass(i)) > mass_ratio * one.mass(i)) return i;
  return 0;
}

// One spelling: "6-31g*" and "6-31G(d)", "b3-lyp" and "B3LYP".
std::string one_spelling(const std::string& name) {
  std::string same = lowercase(name);
  const auto replace = [&](std::string_view what, std::string_view by) {
    for (std::size_t at = 0; (at = same.find(what)) != std::string::npos;) same.replace(at, what.size(), by);
  };
  replace("**", "(d,p)");
  replace("*", "(d)");
  replace("-", "");
  return same;
}

// Whether all programs give a method or basis set this name; others have names of their own for most.
bool of_one_meaning(const std::string& name) {
  for (const std::string_view first : {"631", "321g", "sto"})
    if (name.starts_with(first)) return true;
  return name == "hf" || name == "b3lyp" || name == "bp86";
}

void warn_of_difference(const std::string& what, const std::string& first, const std::string& second,
                        bool one_program, const messages& say) {
  if (first.empty() || second.empty()) return;
  const std::string one = one_spelling(first);
  const std::string two = one_spelling(second);
  if (one == two || !(one_program || (of_one_meaning(one) && of_one_meaning(two)))) return;
  say.warn("the states were computed with different " + what + ", " + first + " and " + second +
           ": displacements and frequencies contain this difference");
}

bool identical(const array1<states>& state) {
  if (largest_difference(state(1).atoms.x, state(2).atoms.x) > same_geometry_limit) return false;
  for (int i = 1; i <= state(1).atoms.n3; ++i) {
    if (au_to_cm * std::abs(state(1).modes.freq0(i) - state(2).modes.freq0(i)) > same_frequency_limit)
      return false;
  }
  return true;
}

}  // namespace

void require_one_molecule(const array1<states>& state) {
  const std::string one = formula(state(1).atoms.symbol);
  const std::string two = formula(state(2).atoms.symbol);
  if (one == two) return;
  const std::string& first = state(1).file.ffreq.str();
  const std::string& second = state(2).file.ffreq.str();
  fail({.what =
            "the two states are different molecules: " + one + " in " + first + ", " + two + " in " + second,
        .file = second,
        .expected = "two calculations on one molecule, with the atoms in the same order"});
}

void warn_of_sources(const array1<states>& state, const messages& say) {
  for (int k = 1; k <= 2; ++k) {
    warn_of_frequencies(state(k), k, say);
    warn_of_gradient(state(k), k, say);
    warn_of_units(state(k), k, say);
  }
  const file_data& one = state(1).file;
  const file_data& two = state(2).file;
  if (const int i = other_mass(state(1).atoms, state(2).atoms); i > 0) {
    say.warn("atom " + std::to_string(i) + " (" + state(1).atoms.symbol(i).str() + ") weighs " +
             with_digits(state(1).atoms.mass(i), 5) + " in " + one.ffreq.str() + " and " +
             with_digits(state(2).atoms.mass(i), 5) + " in " + two.ffreq.str() +
             ": isotopes in one, natural averages in the other? mass_type sets both");
  }
  const bool one_program = one.ffreq_type == two.ffreq_type;
  warn_of_difference("methods", one.printed.method, two.printed.method, one_program, say);
  warn_of_difference("basis sets", one.printed.basis_set, two.printed.basis_set, one_program, say);
  if (identical(state)) {
    say.warn((one.ffreq == two.ffreq ? one.ffreq.str() + " is named for both states"
                                     : one.ffreq.str() + " and " + two.ffreq.str() + " hold the same state") +
             ": all displacements are 0 and the Duschinsky matrix is the unit matrix");
  }
}

}  // namespace vbn
