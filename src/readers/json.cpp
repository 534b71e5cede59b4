// Reads force constants in JSON: QCSchema results, the VibrationsData of ASE, and the results of ORCA.
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "molecule/constants.hpp"   // for bohr_to_ang
#include "molecule/elements.hpp"    // for nat_to_mass, average_mass, symbol_to_nat
#include "readers/programs.hpp"     // for qcschema_state, ase_state, orca_property_state
#include "readers/state_parts.hpp"  // for sized_state, take_mean_of_triangles
#include "text/stop.hpp"            // for fail_in

namespace vbn {

namespace {

using nlohmann::json;

constexpr double ev_per_ang2 = 0.01029086;  // hartree/bohr^2 of 1 eV/angstrom^2

[[noreturn]] void fail_at(const input_file& file, const std::string& what, std::string_view expected) {
  fail_in(file.name(), what, expected);
}

json parsed(const input_file& file) {
  // What is nested deeper is no part of a result; without it no depth of a hostile file fills the stack.
  constexpr int deepest = 32;
  const auto shallow = [](int depth, json::parse_event_t, json&) { return depth <= deepest; };
  json content = json::parse(file.content(), shallow, false);
  if (content.is_discarded() || !content.is_object()) {
    fail_at(file, "this is no complete JSON object", "a file as the program wrote it; it may be cut off");
  }
  return content;
}

// The member at a path of names; a missing one ends the run.
const json& member(const input_file& file, const json& content, std::initializer_list<const char*> path) {
  const json* at = &content;
  std::string name;
  for (const char* key : path) {
    name.append(name.empty() ? "" : ".").append(key);
    if (!at->is_object() || !at->contains(key))
      fail_at(file, "there is no " + name, "a whole result of the program");
    at = &(*at)[key];
  }
  return *at;
}

// All numbers of arrays within arrays, in order, or of a flat one.
void append_flat(const json& value, int depth, std::vector<double>& numbers, bool& good) {
  constexpr int deepest = 4;  // atom, coordinate, atom, coordinate
  if (value.is_number()) {
    numbers.push_back(value.get<double>());
  } else if (value.is_array() && depth < deepest) {
    for (const json& item : value) append_flat(item, depth + 1, numbers, good);
  } else {
    good = false;
  }
}

// The numbers of an array, of `count` elements unless it is 0.
std::vector<double> numbers_of(const input_file& file, const json& value, const std::string& name,
                               std::size_t count) {
  std::vector<double> numbers;
  bool good = true;
  append_flat(value, 0, numbers, good);
  good = good && std::ranges::all_of(numbers, [](double n) { return std::isfinite(n); });
  if (!good || numbers.empty() || (count > 0 && numbers.size() != count)) {
    fail_at(file,
            name + " is no array of " + (count > 0 ? std::to_string(count) + " " : std::string()) + "numbers",
            "finite numbers, in one array or in arrays within arrays");
  }
  return numbers;
}

// An array of ASE: {"__ndarray__": [shape, type, numbers]}.
const json& ase_array(const json& value) {
  const bool stored = value.is_object() && value.contains("__ndarray__") && value["__ndarray__"].is_array() &&
                      value["__ndarray__"].size() == 3;
  return stored ? value["__ndarray__"][2] : value;
}

// The masses of ASE and ORCA: standard atomic weights of 2016, which differ from earlier ones for some light
// elements.
double standard_weight(int nat) {
  constexpr struct {
    int nat;
    double mass;
  } newer[] = {{1, 1.008},  {5, 10.81},   {6, 12.011}, {7, 14.007},
               {8, 15.999}, {14, 28.085}, {16, 32.06}, {17, 35.45}};
  const auto* const found = std::ranges::find(newer, nat, [](const auto& element) { return element.nat; });
  return found == std::end(newer) ? average_mass(nat) : found->mass;
}

void take(const std::vector<double>& numbers, double factor, std::span<double> to) {
  std::ranges::transform(numbers, to.begin(), [factor](double n) { return factor * n; });
}

std::string text_of(const json& content, const char* first, const char* second) {
  if (!content.contains(first) || !content[first].is_object() || !content[first].contains(second)) return {};
  const json& value = content[first][second];
  return value.is_string() ? value.get<std::string>() : std::string();
}

std::optional<int> integer_of(const json& molecule, const char* name) {
  if (!molecule.contains(name) || !molecule[name].is_number()) return std::nullopt;
  return static_cast<int>(std::lround(std::clamp(molecule[name].get<double>(), -1000.0, 1000.0)));
}

}  // namespace

file_state qcschema_state(input_file& file) {
  const json content = parsed(file);
  if (!content.contains("driver") || content["driver"] != "hessian") {
    fail_at(file, "this QCSchema result holds no Hessian", "driver: hessian");
  }
  const json& molecule = member(file, content, {"molecule"});
  const json& symbols = member(file, content, {"molecule", "symbols"});
  if (!symbols.is_array() || symbols.empty())
    fail_at(file, "molecule.symbols has no atoms", "an array of symbols");
  file_state state = sized_state(file, static_cast<int>(symbols.size()));
  for (int i = 1; i <= state.natom(); ++i) {
    const json& symbol = symbols[static_cast<std::size_t>(i - 1)];
    state.nat(i) = symbol.is_string() ? symbol_to_nat(symbol.get<std::string>()) : 0;
    if (state.nat(i) == 0)
      fail_at(file, "molecule.symbols: atom " + std::to_string(i) + " is no element", "its symbol");
    state.mass(i) = nat_to_mass(state.nat(i));
  }
  const std::size_t n3 = 3 * symbols.size();
  take(numbers_of(file, member(file, content, {"molecule", "geometry"}), "molecule.geometry", n3), 1.0,
       state.x.span());
  if (molecule.contains("masses"))
    take(numbers_of(file, molecule["masses"], "molecule.masses", symbols.size()), 1.0, state.mass.span());
  take(numbers_of(file, member(file, content, {"return_result"}), "return_result", n3 * n3), 1.0,
       state.fc.span());
  take_mean_of_triangles(file, state.fc);
  state.printed.charge = integer_of(molecule, "molecular_charge");
  state.printed.multiplicity = integer_of(molecule, "molecular_multiplicity");
  state.printed.method = text_of(content, "model", "method");
  state.printed.basis_set = text_of(content, "model", "basis");
  return state;
}

file_state ase_state(input_file& file) {
  const json content = parsed(file);
  const std::vector<double> nat =
      numbers_of(file, ase_array(member(file, content, {"atoms", "numbers"})), "atoms.numbers", 0);
  file_state state = sized_state(file, static_cast<int>(nat.size()));
  for (int i = 1; i <= state.natom(); ++i) {
    state.nat(i) = static_cast<int>(std::clamp(nat[static_cast<std::size_t>(i - 1)], 0.0, 1000.0));
    state.mass(i) = standard_weight(state.nat(i));
  }
  const std::size_t n3 = 3 * nat.size();
  if (content.contains("indices") && !content["indices"].is_null()) {
    const std::size_t part = numbers_of(file, ase_array(content["indices"]), "indices", 0).size();
    if (part != nat.size()) {
      fail_at(file,
              "the vibrations are those of " + std::to_string(part) + " of " + std::to_string(nat.size()) +
                  " atoms",
              "vibrations of the whole molecule");
    }
  }
  take(numbers_of(file, ase_array(member(file, content, {"atoms", "positions"})), "atoms.positions", n3),
       1.0 / bohr_to_ang, state.x.span());
  if (content["atoms"].contains("masses"))
    take(numbers_of(file, ase_array(content["atoms"]["masses"]), "atoms.masses", nat.size()), 1.0,
         state.mass.span());
  take(numbers_of(file, ase_array(member(file, content, {"hessian"})), "hessian", n3 * n3), ev_per_ang2,
       state.fc.span());
  take_mean_of_triangles(file, state.fc);
  return state;
}

file_state orca_property_state(input_file& file) {
  const json content = parsed(file);
  const json& steps = member(file, content, {"Geometries"});
  const json* last = nullptr;
  for (const json& step : steps)
    if (step.is_object() && step.contains("Hessian")) last = &step;
  if (last == nullptr) fail_at(file, "no geometry of this file has a Hessian", "the results of a Freq job");
  const json& units = member(file, *last, {"Geometry", "Coordinates", "Units"});
  if (units != "a.u.") fail_at(file, "the coordinates are not in bohr", "Units: a.u.");
  const json& rows = member(file, *last, {"Geometry", "Coordinates", "Cartesians"});
  if (!rows.is_array() || rows.empty()) fail_at(file, "Cartesians has no atoms", "symbol, x, y and z");
  file_state state = sized_state(file, static_cast<int>(rows.size()));
  for (int i = 1; i <= state.natom(); ++i) {
    const json& row = rows[static_cast<std::size_t>(i - 1)];
    const bool atom = row.is_array() && row.size() == 4 && row[0].is_string();
    state.nat(i) = atom ? symbol_to_nat(row[0].get<std::string>()) : 0;
    if (state.nat(i) == 0)
      fail_at(file, "Cartesians: row " + std::to_string(i) + " is no atom", "symbol, x, y and z");
    const json xyz = {row[1], row[2], row[3]};
    take(numbers_of(file, xyz, "Cartesians", 3), 1.0, state.x.column(i));
    state.mass(i) = standard_weight(state.nat(i));
  }
  const std::size_t n3 = 3 * rows.size();
  take(numbers_of(file, member(file, *last, {"Hessian", "HESSIAN"}), "HESSIAN", n3 * n3), 1.0,
       state.fc.span());
  take_mean_of_triangles(file, state.fc);
  const auto thermochemistry = last->find("THERMOCHEMISTRY_Energies");
  if (thermochemistry != last->end() && thermochemistry->is_array() && !thermochemistry->empty()) {
    const json& freq = member(file, thermochemistry->back(), {"FREQ"});
    state.printed.frequencies = numbers_of(file, freq, "FREQ", 0);
  }
  return state;
}

}  // namespace vbn
