// Reads the correlation functions of an earlier run, to give them other widths.
#include <algorithm>
#include <cmath>
#include <string_view>

#include "checks/wording.hpp"         // for with_digits
#include "output/spectrum_files.hpp"  // for read_correlation
#include "molecule/constants.hpp"     // for pi_value
#include "text/joined.hpp"            // for joined
#include "text/number.hpp"            // for to_real, to_integer
#include "text/stop.hpp"              // for fail, fail_in

namespace vbn {

namespace {

constexpr double far_wing = 6.0;  // standard deviations
constexpr const char* expected_form = "a file vbn.correlation.csv of vbn-spectrum";

std::vector<std::string_view> split(std::string_view line) {
  std::vector<std::string_view> fields;
  for (;;) {
    const std::size_t comma = line.find(',');
    fields.push_back(line.substr(0, comma));
    if (comma == std::string_view::npos) return fields;
    line.remove_prefix(comma + 1);
  }
}

double real_of(const input_file& from, std::string_view field) {
  double r = 0.0;
  if (!to_real(field, r) || !std::isfinite(r)) fail(from.here("cannot read a number", expected_form));
  return r;
}

std::size_t count_of(const input_file& from, std::string_view field) {
  int i = 0;
  if (!to_integer(field, i) || i < 2) fail(from.here("cannot read a count", expected_form));
  return static_cast<std::size_t>(i);
}

// A line of the head that carries data.
void take_head_line(const input_file& from, const std::vector<std::string_view>& fields,
                    spectrum_results& r) {
  const auto need = [&](std::size_t count) {
    if (fields.size() != count) fail(from.here("wrong number of columns", expected_form));
  };
  if (fields[0] == "#zero_point_difference_au") {
    need(2);
    r.zero_point_difference = real_of(from, fields[1]);
  } else if (fields[0] == "#grid") {
    need(6);
    direction d;
    d.absorption = fields[1] == "absorption";
    d.grid.first_energy = real_of(from, fields[2]);
    d.grid.energy_step = real_of(from, fields[3]);
    d.grid.size = count_of(from, fields[4]);
    d.grid.points = count_of(from, fields[5]);
    if (d.grid.points > d.grid.size || !(d.grid.energy_step > 0.0))
      fail(from.here("the grid is not one of energies and times", expected_form));
    d.grid.step = 2.0 * pi_value / (static_cast<double>(d.grid.size) * d.grid.energy_step);
    r.directions.push_back(std::move(d));
  } else if (fields[0] == "#band") {
    need(6);
    if (r.directions.empty()) fail(from.here("a band before its grid", expected_form));
    thermal_band at;
    at.temperature = real_of(from, fields[2]);
    at.exact.mean = real_of(from, fields[3]);
    at.exact.sd = real_of(from, fields[4]);
    at.exact.reorganisation = real_of(from, fields[5]);
    r.directions.back().thermal.push_back(std::move(at));
  }
}

// The rows of one temperature.
void take_rows(input_file& from, direction& d, thermal_band& at, bool dipole, std::size_t columns) {
  const std::string_view name = d.absorption ? "absorption" : "decay";
  for (std::size_t i = 0; i < d.grid.points; ++i) {
    std::string_view line;
    if (!from.read_line(line)) fail(from.here("the correlation function ends early", expected_form));
    const std::vector<std::string_view> fields = split(line);
    if (fields.size() != columns || fields[0] != name || real_of(from, fields[1]) != at.temperature)
      fail(from.here("this line is not one of the " + std::string(name), expected_form));
    const auto take = [&](std::size_t at_field) {
      return complex(real_of(from, fields[at_field]), real_of(from, fields[at_field + 1]));
    };
    correlation_value v;
    v.fc = take(3);
    if (dipole) v.dipole_fc = take(5), v.dipole_mixed = take(7), v.dipole_ht = take(9);
    at.chi.time.push_back(d.grid.step * static_cast<double>(i));
    at.chi.values.push_back(v);
  }
}

// Keeps the range within the energies of the run that stored the times, and ends the run when a given range
// or the wings of a width go beyond: a band repeats with the period of the grid.
void fit_range(direction& d, const spectrum_results& r, const std::string& file) {
  const double lowest = d.grid.first_energy;
  const double highest = d.grid.energy(d.grid.size - 1);
  const double gap = r.gap.value_or(0.0);
  if (!r.keys.range.empty() && (d.low < lowest || d.high > highest)) {
    const double a = d.photon(lowest, gap) * au_to_cm;
    const double b = d.photon(highest, gap) * au_to_cm;
    fail_in(file, "the times do not hold the whole range",
            joined({"range within ", std::to_string(std::llround(std::min(a, b))), " and ",
                    std::to_string(std::llround(std::max(a, b))),
                    " cm-1, or a run with the calculations of the states"}));
  }
  d.low = std::max(d.low, lowest);
  d.high = std::min(d.high, highest);
  const double period = static_cast<double>(d.grid.size) * d.grid.energy_step;
  for (const thermal_band& at : d.thermal) {
    for (std::size_t i = 0; i < r.widths.size(); ++i) {
      const double wing = far_wing * std::hypot(at.exact.sd, r.widths[i].sigma);
      if (at.exact.mean + wing < d.low + period && at.exact.mean - wing > d.high - period) continue;
      fail_in(file,
              "the times do not hold the whole band for fwhm = " + with_digits(r.keys.fwhm[i], 2) + " cm-1",
              "a smaller fwhm or range, or a run with the calculations of the states");
    }
  }
}

// Finer energies where a width needs them; a width that needs later times ends the run.
void refine_grid(direction& d, const spectrum_results& r, const std::string& file) {
  const double end = d.grid.step * static_cast<double>(d.grid.points);
  for (std::size_t i = 0; i < r.widths.size(); ++i) {
    const double needed = end_of_damping(r.widths[i]);
    if (needed <= end) continue;
    fail_in(file, "the times end too early for fwhm = " + with_digits(r.keys.fwhm[i], 2) + " cm-1",
            "at least " + std::to_string(std::llround(std::ceil(r.keys.fwhm[i] * needed / end))) +
                " cm-1 of this shape, or a run with the calculations of the states");
  }
  const auto finer =
      static_cast<std::size_t>(std::max(1.0, std::ceil(d.grid.energy_step / energy_step(r.widths))));
  d.grid.energy_step /= static_cast<double>(finer);
  d.grid.size *= finer;
  // The times leave the first energy free.
  const double offset = d.offset(r.gap.value_or(0.0));
  d.grid.first_energy =
      offset + std::floor((d.grid.first_energy - offset) / d.grid.energy_step) * d.grid.energy_step;
}

}  // namespace

spectrum_results read_correlation(input_file& from, const spectrum_keys& keys, spectrum_head& head) {
  spectrum_results r;
  r.keys = keys;
  r.widths = widths_of(keys);
  std::string_view line;
  while (from.read_line(line) && line.starts_with("#")) {
    if (line.starts_with("# state 1: ")) head.state1 = line.substr(11);
    if (line.starts_with("# state 2: ")) head.state2 = line.substr(11);
    take_head_line(from, split(line), r);
  }
  if (!line.starts_with("transition,temperature_K,time_fs,fc_re,fc_im") || r.directions.empty())
    fail_in(from.name(), "no correlation function in this file", expected_form);
  const std::size_t columns = split(line).size();
  const bool dipole = line.find(",dipole_fc_re,") != std::string_view::npos;
  for (direction& d : r.directions) {
    if (d.thermal.empty()) fail_in(from.name(), "no temperature in this file", expected_form);
    if (dipole) d.o.mu0 = array1<double>(3);
    for (thermal_band& at : d.thermal) take_rows(from, d, at, dipole, columns);
  }
  set_energies(r);
  for (direction& d : r.directions) {
    set_range(d, r, from.name());
    fit_range(d, r, from.name());
    refine_grid(d, r, from.name());
  }
  shape_bands(r);
  add_radiative_rates(r);
  return r;
}

}  // namespace vbn
