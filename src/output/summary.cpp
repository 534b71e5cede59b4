// Puts the totals and the strongest modes of a run into words.
#include "output/summary.hpp"  // for summary

#include <algorithm>
#include <cmath>
#include <vector>

#include "checks/wording.hpp"       // for with_digits
#include "molecule/constants.hpp"   // for au_to_cm
#include "molecule/formula.hpp"     // for formula
#include "output/result_files.hpp"  // for result_files

namespace vbn {

namespace {

constexpr std::size_t shown_modes = 5;
constexpr double least_shown = 5.0e-5;  // a Huang-Rhys factor below is 0.0000

std::string totals(const char* route, const mode_results& one, const mode_results& two) {
  return std::string(route) + " " + with_digits(one.lamt * au_to_cm, 2) + " and " +
         with_digits(two.lamt * au_to_cm, 2) + " cm-1";
}

// The modes with the largest factors, the largest first.
std::vector<int> strongest(const array1<double>& hr) {
  std::vector<int> modes;
  for (int i = 1; i <= hr.size(); ++i)
    if (std::abs(hr(i)) >= least_shown) modes.push_back(i);
  std::ranges::stable_sort(modes, [&](int i, int j) { return std::abs(hr(i)) > std::abs(hr(j)); });
  modes.resize(std::min(modes.size(), shown_modes));
  return modes;
}

}  // namespace

std::string summary(const array1<states>& state, const input_data& input) {
  const states& one = state(1);
  const states& two = state(2);
  std::string lines = formula(one.atoms.symbol) + ", " + std::to_string(one.atoms.natom) + " atoms\n";
  for (int k = 1; k <= 2; ++k) {
    const file_data& file = state(k).file;
    lines += "state " + std::to_string(k) + ": " + file.ffreq.str() + ", " + file.ffreq_type.str();
    if (!file.ffreq_version.blank()) lines.append(" ").append(file.ffreq_version.trimmed());
    lines += "\n";
  }
  lines += "reorganisation energies of states 1 and 2: " + totals("Cartesian", one.cart, two.cart);
  if (!input.set_cart) lines += ", internal " + totals("coordinates", one.dint, two.dint);
  lines += "\n";
  for (const int i : strongest(input.set_cart ? two.cart.hr : two.dint.hr)) {
    lines += "mode " + std::to_string(i) + " of state 2: " + with_digits(two.modes.freq(i) * au_to_cm, 2) +
             " cm-1, Huang-Rhys factor " + with_digits(two.cart.hr(i), 4) + " Cartesian";
    if (!input.set_cart) lines += ", " + with_digits(std::abs(two.dint.hr(i)), 4) + " internal";
    lines += "\n";
  }
  std::vector<std::string> written = result_files(input);
  if (!one.couplings.ifnac && !two.couplings.ifnac) std::erase(written, "vbn.cart.nac");
  lines += "written:";
  for (const std::string& name : written) lines.append(" ").append(name);
  return lines + "\n";
}

}  // namespace vbn
