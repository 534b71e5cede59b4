// The Python module vbn._core: one analysis, from the text of its keys to arrays.
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/analysis.hpp"            // for analyse
#include "input/input_group.hpp"       // for init, read_group
#include "input/key_table.hpp"         // for key_table, nearest_key
#include "molecule/constants.hpp"      // for au_to_cm, bohr_to_ang
#include "python/arrays.hpp"           // for decoded, copied, transposed_copy, counted_from_0, end_of
#include "python/one_blas_thread.hpp"  // for one_blas_thread
#include "python/spectrum_call.hpp"    // for spectrum_of
#include "spectra/operators.hpp"       // for dipole_along_modes
#include "text/input_file.hpp"         // for input_file
#include "text/stop.hpp"               // for run_end, fail_in

namespace py = pybind11;

namespace {

using namespace vbn;
using namespace vbn::python;

py::dict route_of(const mode_results& results) {
  py::dict route;
  route["displacements"] = copied(results.d);
  route["dimensionless_displacements"] = copied(results.d0);
  route["huang_rhys"] = copied(results.hr);
  route["reorganisation_energies"] = copied(results.lam, au_to_cm);
  route["total"] = au_to_cm * results.lamt;
  return route;
}

// The couplings of a state along its modes, in the order of the modes.
py::dict couplings_of(const nacme_table& table, const array1<int>& order) {
  const int n3 = table.rows.size();
  array1<double> along(n3);
  array1<double> dimensionless(n3);
  array1<double> energies(n3);
  array1<double> linear(n3);
  array1<double> rates(n3);
  for (int i = 1; i <= n3; ++i) {
    const nacme_row& row = table.rows(i);
    const int mode = order(i);
    along(mode) = row.nacme;
    dimensionless(mode) = row.before;
    energies(mode) = au_to_cm * row.after;
    linear(mode) = au_to_cm * row.linear;
    rates(mode) = au_to_cm * row.jpca;
  }
  py::dict couplings;
  couplings["along_modes"] = copied(along);
  couplings["dimensionless"] = copied(dimensionless);
  couplings["energies"] = copied(energies);
  couplings["linear"] = copied(linear);
  couplings["rate_factors"] = copied(rates);
  return couplings;
}

py::dict state_of(const run_data& run, int k) {
  const states& from = run.state(k);
  py::dict state;
  state["file"] = decoded(from.file.ffreq.trimmed());
  state["program"] = decoded(from.file.ffreq_type.trimmed());
  state["version"] = decoded(from.file.ffreq_version.trimmed());
  const printed_results& printed = from.file.printed;
  state["method"] = decoded(printed.method);
  state["basis_set"] = decoded(printed.basis_set);
  state["charge"] = printed.charge;
  state["multiplicity"] = printed.multiplicity;
  state["masses"] = copied(from.atoms.mass);
  state["geometry"] = transposed_copy(from.atoms.x, bohr_to_ang);
  state["force_constants"] = copied(from.force.fc());
  state["frequencies"] = copied(from.modes.freq, au_to_cm);
  state["raw_frequencies"] = copied(from.modes.freq0, au_to_cm);
  state["normal_modes"] = copied(from.modes.cm);
  state["irreps"] = decoded(from.modes.irrep);
  state["order"] = counted_from_0(from.modes.order);
  state["zero_point_energy"] = 0.5 * au_to_cm * from.modes.freqt;
  state["point_group"] = decoded(from.symmetry.new_pgrp.trimmed());
  state["cartesian"] = route_of(from.cart);
  if (run.nacme_n3(k).rows.size() > 0) {
    state["couplings"] = couplings_of(run.nacme_n3(k), from.modes.order);
  }
  if (run.input.set_cart) return state;
  state["internal"] = route_of(from.dint);
  state["values"] = copied(from.internal.z);
  state["bonds"] = copied(from.internal.bond);
  const reorganisation_shares& shares = k == 1 ? run.reorganisation.s1 : run.reorganisation.s2;
  state["diagonal_shares"] = copied(shares.xx);
  state["non_diagonal_shares"] = copied(shares.xy);
  state["shares"] = copied(shares.x);
  return state;
}

py::dict results_of(const run_data& run) {
  const states& g = run.state(1);
  const input_data& input = run.input;
  py::dict results;
  results["symbols"] = decoded(g.atoms.symbol);
  results["atomic_numbers"] = py::array_t<int>(g.atoms.natom, g.atoms.nat.data());
  results["duschinsky"] = copied(g.modes.s);
  results["states"] = py::make_tuple(state_of(run, 1), state_of(run, 2));
  if (!input.set_cart) {
    results["kinds"] = py::array_t<int>(g.internal.nr, g.internal.iztype.data());
    results["atoms"] = counted_from_0(g.internal.intdef).reshape({-1, 4});
    results["differences"] = copied(g.internal.zd);
  }
  if (input.do_nacme) {
    const coupling_data& couplings = run.state(input.proj_nacme).couplings;
    results["coupling_state"] = input.proj_nacme - 1;
    results["vertical_energy"] = au_to_cm * couplings.e_vert;
    results["coupling_vectors"] = transposed_copy(couplings.nacme_x);
    results["couplings_along_modes_of_1"] = copied(run.nacme_after.q);
  }
  if (input.do_tdipd) {
    results["dipole_state"] = input.proj_tdipd - 1;
    results["transition_dipole"] = copied(run.state(input.proj_tdipd).dipole.dip0);
    results["dipole_derivatives"] = transposed_copy(run.tdipd_q);
    const states& at = run.state(input.proj_tdipd);
    results["rotated_dipole_derivatives"] =
        transposed_copy(dipole_along_modes(at.dipole, at.atoms, g.modes.cm));
  }
  return results;
}

// Relative names are those of files in the folder.
void place_in(const std::string& folder, text<200>& name) {
  const std::filesystem::path path(name.str());
  if (folder.empty() || name.blank() || path.is_absolute()) return;
  const std::string placed = (std::filesystem::path(folder) / path).string();
  if (placed.size() > name.full().size())
    fail_in(placed, "the path is too long", "a path of at most 200 bytes");
  name = placed;
}

input_data keys_of(const std::string& name, const std::optional<std::string>& group,
                   const std::string& folder, const messages& say) {
  input_data input;
  init(input);
  input.finp = name;
  read_group(input, group ? input_file::from_memory(name, *group, say) : input_file(name, say));
  for (text<200>* file : {&input.ffreq(1), &input.ffreq(2), &input.fnacme, &input.ftdipd}) {
    place_in(folder, *file);
  }
  input.proj_reorg = !input.set_cart;
  return input;
}

// Analyses the states named in an input group: the text `group` or, without it, the file `name`. The result
// holds the messages in any case, and either what was computed or how the run ended.
py::dict analyse_group(const py::bytes& name, const std::optional<py::bytes>& group,
                       const py::bytes& folder) {
  const std::string of_name = name;
  const std::string of_folder = folder;
  const auto of_group = group ? std::optional<std::string>(*group) : std::nullopt;
  std::vector<std::string> warnings;
  std::string printed;
  const messages say([&](std::string_view text) { warnings.emplace_back(text); },
                     [&](std::string_view lines) { printed += lines; });
  run_data run;
  run.say = say;
  run.fout = output_file::in_memory();
  std::optional<run_end> end;
  {
    const py::gil_scoped_release released;
    const one_blas_thread blas;
    try {
      run.input = keys_of(of_name, of_group, of_folder, say);
      analyse(run);
    } catch (const run_end& stopped) {
      end = stopped;
    }
  }
  py::dict result = end ? py::dict() : results_of(run);
  if (end) result["end"] = end_of(*end);
  result["warnings"] = decoded(warnings);
  result["printed"] = decoded(printed);
  result["log"] = decoded(run.fout.content());
  return result;
}

py::dict keys() {
  py::dict known;
  for (const input_key& key : key_table()) {
    static constexpr const char* types[] = {"logical", "integer", "real", "text"};
    known[decoded(key.name)] = py::make_tuple(types[static_cast<int>(key.type)], key.extent1, key.extent2);
  }
  return known;
}

}  // namespace

PYBIND11_MODULE(_core, module) {
  module.doc() = "The analysis of vbn; use the package vbn.";
  module.attr("version") = VBN_VERSION;
  module.def("analyse", &analyse_group, py::arg("name"), py::arg("group"), py::arg("folder"));
  module.def("spectrum", &spectrum_of, py::arg("analysis"), py::arg("group"));
  module.def("keys", &keys);
  module.def("nearest_key", [](const std::string& name) -> py::object {
    const input_key* nearest = nearest_key(name);
    return nearest == nullptr ? py::object(py::none()) : decoded(nearest->name);
  });
}
