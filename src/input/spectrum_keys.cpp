// The table of the keys of &spectrum, their values and their checks.
#include "input/spectrum_keys.hpp"  // for spectrum_keys

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string_view>
#include <variant>

#include "input/key_table.hpp"  // for edits
#include "input/namelist.hpp"   // for group_scanner, group_value
#include "text/joined.hpp"      // for joined
#include "text/number.hpp"      // for to_integer, to_real, shortest
#include "text/stop.hpp"        // for fail_in

namespace vbn {

namespace {

using k = spectrum_keys;

constexpr int most_values = 20;  // temperatures or widths
constexpr double above_zero = std::numeric_limits<double>::min();

using place = std::variant<int k::*, double k::*, std::string k::*, std::vector<double> k::*,
                           std::vector<int> k::*, std::vector<std::string> k::*>;

struct spectrum_key {
  std::string_view name;
  place stored;
  int most;                  // values
  double lowest, highest;    // of numbers
  std::string_view choices;  // of texts, separated by blanks
  std::string_view expected;
};

// clang-format off
constexpr std::array<spectrum_key, 18> table{{
    // name             stored in             values       lowest       highest   texts                      expected
    {"what",             &k::what,              4,           0,           0,        "absorption emission ic isc", "some of 'absorption', 'emission', 'ic', 'isc'"},
    {"temperature",      &k::temperature,       most_values, 0,           10000,    "", "temperatures from 0 to 10000 K"},
    {"shape",            &k::shape,             1,           0,           0,        "gaussian lorentzian voigt", "'gaussian', 'lorentzian' or 'voigt'"},
    {"fwhm",             &k::fwhm,              most_values, 0.1,         20000,    "", "full widths at half maximum from 0.1 to 20000 cm-1"},
    {"fwhm_lorentzian",  &k::fwhm_lorentzian,   most_values, 0.1,         20000,    "", "full widths at half maximum from 0.1 to 20000 cm-1"},
    {"energy",           &k::energy,            1,           -1e6,        1e6,      "", "one energy in the unit of energy_unit"},
    {"energy_unit",      &k::energy_unit,       1,           0,           0,        "cm-1 ev", "'cm-1' or 'eV'"},
    {"energy_is",        &k::energy_is,         1,           0,           0,        "minima 0-0", "'minima' or '0-0'"},
    {"range",            &k::range,             2,           -1e6,        1e6,      "", "the lowest and the highest energy in cm-1"},
    {"dipole",           &k::dipole,            3,           -1000,       1000,     "", "three components in e bohr"},
    {"soc",              &k::soc,               3,           -1e5,        1e5,      "", "the norm or three components in cm-1"},
    {"refractive_index", &k::refractive_index,  1,           1,           10,       "", "a number from 1 to 10"},
    {"leave_out",        &k::leave_out,         3000,        1,           1e6,      "", "numbers of modes of state 1"},
    {"threshold",        &k::threshold,         1,           1e-8,        0.5,      "", "a line strength from 1e-8 to 0.5"},
    {"line_seconds",     &k::line_seconds,      1,           above_zero,  1e6,      "", "seconds above 0"},
    {"line_temperature", &k::line_temperature,  1,           0,           10000,    "", "a temperature from 0 to 10000 K"},
    {"displacements",    &k::displacements,     1,           0,           0,        "cartesian internal", "'cartesian' or 'internal'"},
    {"threads",          &k::threads,           1,           0,           1024,     "", "a number from 1 to 1024, or 0 for one on each core"},
}};
// clang-format on

std::string lower(std::string text) {
  std::ranges::transform(text, text.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return text;
}

bool is_choice(std::string_view choices, const std::string& text) {
  return !text.empty() && text.find(' ') == std::string::npos &&
         joined({" ", choices, " "}).find(joined({" ", text, " "})) != std::string::npos;
}

// Reads one value; false when it is of another type or out of range.
bool read(const spectrum_key& key, const group_value& value, double& to) {
  double number = 0.0;
  if (value.type != group_value::kind::word || !to_real(value.text, number)) return false;
  if (!(number >= key.lowest && number <= key.highest)) return false;
  to = number;
  return true;
}

bool read(const spectrum_key& key, const group_value& value, int& to) {
  int number = 0;
  if (value.type != group_value::kind::word || !to_integer(value.text, number)) return false;
  if (number < key.lowest || number > key.highest) return false;
  to = number;
  return true;
}

bool read(const spectrum_key& key, const group_value& value, std::string& to) {
  const std::string text = lower(value.text);
  if (value.type != group_value::kind::quoted || !is_choice(key.choices, text)) return false;
  to = text;
  return true;
}

template <class T>
bool read(const spectrum_key& key, const group_value& value, std::vector<T>& to) {
  T one{};
  if (!read(key, value, one)) return false;
  to.push_back(one);
  return true;
}

template <class T>
void clear(T&) {}
template <class T>
void clear(std::vector<T>& list) {
  list.clear();
}

std::string in_words(int value) { return std::to_string(value); }
std::string in_words(double value) { return shortest(value); }
std::string in_words(const std::string& value) { return value; }
template <class T>
std::string in_words(const std::vector<T>& list) {
  std::string text;
  for (const T& value : list) text += (text.empty() ? "" : ", ") + in_words(value);
  return text;
}

const spectrum_key& find(const group_scanner& scanner) {
  const std::string& name = scanner.key();
  const auto found = std::ranges::find(table, name, &spectrum_key::name);
  if (found != table.end()) return *found;
  const auto distance = [&](const spectrum_key& key) { return edits(name, key.name); };
  const spectrum_key& nearest = *std::ranges::min_element(table, {}, distance);
  scanner.fail_at(scanner.key_at(), "unknown key " + name.substr(0, 40),
                  3 * distance(nearest) <= name.size()
                      ? "a key of the group &spectrum, perhaps " + std::string(nearest.name)
                      : "a key of the group &spectrum");
}

void take_values(group_scanner& scanner, const spectrum_key& key, spectrum_keys& keys) {
  const std::string name(key.name);
  if (scanner.open_index())
    scanner.fail_at(scanner.key_at(), name + " has no index",
                    name + " = value, or values with commas between them");
  scanner.take_equals();
  std::visit([&](auto member) { clear(keys.*member); }, key.stored);
  int given = 0;
  for (group_value value; scanner.next_value(value);) {
    given += value.repeat;
    if (given > key.most || value.repeat < 1)
      scanner.fail_at(value.at, "too many values for " + name, std::string(key.expected));
    for (int i = 0; i < value.repeat; ++i) {
      if (!std::visit([&](auto member) { return read(key, value, keys.*member); }, key.stored))
        scanner.fail_at(value.at, "cannot use the value of " + name, std::string(key.expected));
    }
  }
  if (given == 0) scanner.fail_at(scanner.key_at(), "no value for " + name, std::string(key.expected));
}

// What several values, or several keys, must fulfil together.
void check(const group_scanner& scanner, const std::string& name, const spectrum_keys& keys) {
  const auto need = [&](bool right, const std::string& of, const char* what, const char* expected) {
    if (name == of && !right) scanner.fail_at(scanner.key_at(), what, expected);
  };
  need(keys.range.size() == 2 && keys.range[0] < keys.range[1], "range", "range has no points",
       "the lowest and then the highest energy in cm-1");
  need(keys.dipole.size() == 3, "dipole", "dipole needs three components", "as in dipole = 0.0, 0.0, 1.2");
  need(keys.soc.size() != 2, "soc", "soc needs one value or three", "the norm or three components in cm-1");
}

void check_together(const spectrum_keys& keys, const std::string& file) {
  if ((keys.shape == "voigt") != !keys.fwhm_lorentzian.empty()) {
    fail_in(file, "shape and fwhm_lorentzian do not fit together",
            "fwhm_lorentzian with shape = 'voigt' and with no other shape");
  }
  if (keys.shape == "voigt" && keys.fwhm.size() != keys.fwhm_lorentzian.size())
    fail_in(file, "fwhm and fwhm_lorentzian have different numbers of values",
            "one of each for a Voigt profile");
  const bool rates = keys.wants("ic") || keys.wants("isc");
  if (rates && keys.shape != "gaussian") {
    fail_in(file, "rates need Gaussian broadening",
            "shape = 'gaussian': the wings of a Lorentzian would be larger than the line shape at the gap");
  }
  if (rates && keys.energy.empty())
    fail_in(file, "rates need the energy between the states", "energy in the group &spectrum");
  if (keys.wants("isc") && keys.soc.empty())
    fail_in(file, "what = 'isc' needs the spin-orbit coupling", "soc in the group &spectrum");
}

}  // namespace

bool spectrum_keys::wants(const std::string& name) const {
  return std::ranges::find(what, name) != what.end();
}

std::string values_of(const spectrum_keys& keys) {
  std::string text;
  for (const spectrum_key& key : table) {
    if (key.name == "threads") continue;
    const std::string value = std::visit([&](auto member) { return in_words(keys.*member); }, key.stored);
    if (!value.empty()) text += joined({text.empty() ? "" : "; ", key.name, " = ", value});
  }
  return text;
}

spectrum_keys read_spectrum_group(const input_file& file) {
  spectrum_keys keys;
  group_scanner scanner(file.name(), file.content(), "spectrum", file.say());
  while (scanner.next_key()) {
    const spectrum_key& key = find(scanner);
    take_values(scanner, key, keys);
    check(scanner, std::string(key.name), keys);
  }
  check_together(keys, file.name());
  return keys;
}

}  // namespace vbn
