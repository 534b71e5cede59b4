// From arrays to the states of a spectrum, and from its bands, lines and rates to arrays.
#include "python/spectrum_call.hpp"  // for spectrum_of

#include <pybind11/complex.h>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "input/spectrum_keys.hpp"     // for read_spectrum_group
#include "molecule/constants.hpp"      // for bohr_to_ang
#include "python/arrays.hpp"           // for decoded, copied, end_of
#include "python/one_blas_thread.hpp"  // for one_blas_thread
#include "spectra/operators.hpp"       // for operators_of, operator_source
#include "spectra/spectrum.hpp"        // for calculate_spectra
#include "spectra/units.hpp"           // for au_to_cm, au_to_fs
#include "text/input_file.hpp"         // for input_file
#include "text/messages.hpp"           // for messages
#include "text/stop.hpp"               // for run_end, fail_in

namespace vbn::python {

namespace {

constexpr const char* name_of_keys = "the keys of vbn.spectrum";

using reals = py::array_t<double, py::array::c_style | py::array::forcecast>;

array1<double> vector_of(const py::handle& from, double unit = 1.0) {
  const auto values = py::cast<reals>(from).unchecked<1>();
  array1<double> to(static_cast<int>(values.shape(0)));
  for (int i = 0; i < to.size(); ++i) to(i + 1) = unit * values(i);
  return to;
}

// The matrix, or with `transposed` its transpose.
array2<double> matrix_of(const py::handle& from, bool transposed = false, double unit = 1.0) {
  const auto values = py::cast<reals>(from).unchecked<2>();
  const int rows = static_cast<int>(values.shape(transposed ? 1 : 0));
  const int columns = static_cast<int>(values.shape(transposed ? 0 : 1));
  array2<double> to(rows, columns);
  for (int i = 0; i < rows; ++i)
    for (int j = 0; j < columns; ++j) to(i + 1, j + 1) = unit * (transposed ? values(j, i) : values(i, j));
  return to;
}

// The parts of the record of a state that the choice of its vibrations needs.
states state_of(const py::dict& analysis, int k) {
  const py::int_ at(k);
  states state;
  state.atoms.mass = vector_of(analysis["masses"][at]);
  state.atoms.natom = state.atoms.mass.size();
  state.atoms.n3 = 3 * state.atoms.natom;
  state.atoms.x = matrix_of(analysis["geometries"][at], true, 1.0 / bohr_to_ang);
  state.modes.cm = matrix_of(analysis["normal_modes"][at]);
  state.modes.freq = vector_of(analysis["frequencies"][at], 1.0 / au_to_cm);
  state.modes.s = matrix_of(analysis["duschinsky"]);
  state.cart.d = vector_of(analysis["cartesian"][at]);
  if (!analysis["internal"].is_none()) state.dint.d = vector_of(analysis["internal"][at]);
  return state;
}

operator_source source_of(const py::dict& analysis) {
  operator_source source;
  if (!analysis["dipole_state"].is_none()) {
    source.dipole_state = py::cast<int>(analysis["dipole_state"]) + 1;
    source.dipole = vector_of(analysis["transition_dipole"]);
    source.derivatives = matrix_of(analysis["rotated_dipole_derivatives"], true);
  }
  if (!analysis["couplings"].is_none()) source.couplings = vector_of(analysis["couplings"]);
  return source;
}

template <class T>
py::array_t<T> table(std::size_t rows, std::size_t columns, const auto& element) {
  py::array_t<T> to({rows, columns});
  auto values = to.template mutable_unchecked<2>();
  for (std::size_t i = 0; i < rows; ++i)
    for (std::size_t j = 0; j < columns; ++j)
      values(static_cast<py::ssize_t>(i), static_cast<py::ssize_t>(j)) = element(i, j);
  return to;
}

// Line shapes, or absolute intensities, (temperatures, widths, energies).
py::array_t<double> bands_of(const direction& d, const spectrum_results& r,
                             const std::vector<std::size_t>& rows, bool absolute) {
  py::array_t<double> to({d.thermal.size(), r.widths.size(), rows.size()});
  double* next = to.mutable_data();
  for (const thermal_band& at : d.thermal) {
    for (const shaped_band& shaped : at.bands) {
      for (const std::size_t i : rows) {
        const double w = d.photon(d.grid.energy(i), r.gap.value_or(0.0));
        *next++ = absolute ? intensity(d, w, shaped.dipole[i], r.keys.refractive_index)
                           : shaped.line_shape[i] / au_to_cm;
      }
    }
  }
  return to;
}

py::list levels(const std::vector<mode_quanta>& quanta, const std::vector<int>& modes) {
  py::list pairs;
  for (const mode_quanta& q : quanta)
    pairs.append(py::make_tuple(modes[static_cast<std::size_t>(q.mode - 1)] - 1, q.quanta));
  return pairs;
}

void add_lines(const direction& d, const spectrum_results& r, py::dict& band) {
  std::vector<double> energies;
  std::vector<double> strengths;
  std::vector<double> overlaps;
  py::list initial;
  py::list final;
  for (const vibronic_line& line : d.lines.lines) {
    energies.push_back(d.photon(line.energy, r.gap.value_or(0.0)) * au_to_cm);
    strengths.push_back(line.strength);
    overlaps.push_back(line.overlap);
    initial.append(levels(line.initial, d.mode_i));
    final.append(levels(line.final, d.mode_f));
  }
  band["line_wavenumbers"] = copied(energies);
  band["line_strengths"] = copied(strengths);
  band["line_overlaps"] = copied(overlaps);
  band["initial_levels"] = initial;
  band["final_levels"] = final;
  band["complete_above"] = d.lines.complete_above;
}

py::dict band_of(const direction& d, const spectrum_results& r) {
  const std::size_t temperatures = d.thermal.size();
  const bool dipole = d.o.mu0.size() == 3;
  const std::vector<std::size_t> rows = written_energies(d, r.gap);
  std::vector<double> w;
  w.reserve(rows.size());
  for (const std::size_t i : rows) w.push_back(d.photon(d.grid.energy(i), r.gap.value_or(0.0)) * au_to_cm);
  py::dict band;
  band["wavenumbers"] = copied(w);
  band["line_shapes"] = bands_of(d, r, rows, false);
  band["intensities"] = dipole && r.gap ? py::object(bands_of(d, r, rows, true)) : py::none();
  const py::array_t<double> moments = table<double>(temperatures, 5, [&](std::size_t t, std::size_t i) {
    const thermal_band& at = d.thermal[t];
    const double of[] = {at.exact.mean, at.exact.sd, at.mean, at.sd, at.sum / au_to_cm};
    return au_to_cm * of[i];
  });
  band["moments"] = moments;
  band["reorganisation_energy"] = au_to_cm * d.thermal.front().exact.reorganisation;
  band["times"] = copied(d.thermal.front().chi.time, au_to_fs);
  const auto values = [&](const auto& part) {
    return table<complex>(temperatures, d.grid.points, [&](std::size_t t, std::size_t i) {
      return complex(part(d.thermal[t].chi.values[i]));
    });
  };
  band["correlation"] = values([](const correlation_value& v) { return v.fc; });
  band["dipole_correlation"] = py::none();
  if (dipole) {
    band["dipole_correlation"] =
        values([](const correlation_value& v) { return v.dipole_fc + v.dipole_mixed + v.dipole_ht; });
  }
  add_lines(d, r, band);
  return band;
}

py::dict results_of(const spectrum_results& r) {
  py::dict results;
  results["absorption"] = py::none();
  results["emission"] = py::none();
  for (const direction& d : r.directions) results[d.absorption ? "absorption" : "emission"] = band_of(d, r);
  py::list rates;
  for (const rate& k : r.rates) {
    rates.append(py::dict(py::arg("process") = k.process, py::arg("temperature") = k.temperature,
                          py::arg("fwhm") = k.fwhm, py::arg("value") = k.value,
                          py::arg("at_half_width") = k.at_half, py::arg("at_double_width") = k.at_double,
                          py::arg("mode_shares") = copied(k.mode_share)));
  }
  results["rates"] = rates;
  results["temperatures"] = copied(r.keys.temperature);
  results["widths"] = copied(r.keys.fwhm);
  results["vibrations"] = table<int>(2, r.v.mode_g.size(), [&](std::size_t k, std::size_t i) {
    return (k == 0 ? r.v.mode_g : r.v.mode_e)[i] - 1;
  });
  results["left_out"] = decoded(r.v.log);
  results["deviation"] = r.v.deviation;
  const auto in_cm = [](const std::optional<double>& energy) {
    return energy ? py::object(py::float_(*energy * au_to_cm)) : py::none();
  };
  results["energy_of_minima"] = in_cm(r.minima);
  results["energy_of_origin"] = in_cm(r.gap);
  results["zero_point_difference"] = au_to_cm * r.zero_point_difference;
  return results;
}

}  // namespace

py::dict spectrum_of(const py::dict& analysis, const py::bytes& group) {
  array1<states> state{2};
  for (int k = 1; k <= 2; ++k) state(k) = state_of(analysis, k - 1);
  const operator_source source = source_of(analysis);
  const bool has_internal = !analysis["internal"].is_none();
  const std::string text = group;
  std::vector<std::string> warnings;
  const messages say([&](std::string_view warning) { warnings.emplace_back(warning); }, {});
  std::optional<run_end> end;
  std::optional<spectrum_results> found;
  {
    const py::gil_scoped_release released;
    const one_blas_thread blas;
    try {
      const spectrum_keys keys = read_spectrum_group(input_file::from_memory(name_of_keys, text, say));
      const bool internal = keys.displacements == "internal";
      if (internal && !has_internal)
        fail_in(name_of_keys, "the analysis has no internal coordinates", "an analysis without set_cart");
      const vibration_pair v = choose_vibrations(state, keys.leave_out, internal, name_of_keys);
      found = calculate_spectra(v, operators_of(source, v, keys, name_of_keys), keys, name_of_keys, say);
    } catch (const run_end& stopped) {
      end = stopped;
    } catch (const std::domain_error&) {
      end = run_end{1, "error: the vibrations of the states are not independent\n", {}, {}};
    }
  }
  py::dict result = found ? results_of(*found) : py::dict();
  if (end) result["end"] = end_of(*end);
  result["warnings"] = decoded(warnings);
  return result;
}

}  // namespace vbn::python
