// Tables of bands, lines, correlation functions and rates, with commas between their columns.
#include "output/spectrum_files.hpp"  // for the routines

#include <cmath>
#include <numbers>

#include "checks/wording.hpp"  // for with_digits
#include "spectra/units.hpp"   // for au_to_cm, au_to_fs
#include "text/joined.hpp"     // for joined
#include "text/number.hpp"     // for shortest, write_scientific

namespace vbn {

namespace {

// Scientific notation with as many digits after the point.
std::string scientific(double r, int digits) {
  std::string field(static_cast<std::size_t>(digits) + 9, ' ');
  write_scientific(field.data(), r, digits + 9, digits);
  return field.substr(field.find_first_not_of(' '));
}
std::string number(double r) { return scientific(r, 16); }
std::string rounded(double r) { return scientific(r, 7); }

void write_head(output_file& file, const spectrum_results& r, const spectrum_head& head,
                const std::string& what) {
  file.line("# " + what);
  file.line("# vbn-spectrum " + head.version + ", input " + head.input);
  file.line("# state 1: " + head.state1);
  file.line("# state 2: " + head.state2);
  file.line("# " + values_of(r.keys));
  if (r.gap) {
    file.line("# energy minimum to minimum " + with_digits(*r.minima * au_to_cm, 2) + " cm-1, 0-0 " +
              with_digits(*r.gap * au_to_cm, 2) + " cm-1");
  } else {
    file.line("# no energy between the states is given: energies count from the 0-0 line");
  }
}

std::string column_name(const char* what, const spectrum_results& r, const thermal_band& at,
                        std::size_t width) {
  std::string name = std::string(what) + "_" + shortest(at.temperature) + "K_" + shortest(r.keys.fwhm[width]);
  if (r.keys.shape == "voigt") name.append("+").append(shortest(r.keys.fwhm_lorentzian[width]));
  return name;
}

void write_band(const spectrum_results& r, const direction& d, const spectrum_head& head,
                staged_files& files) {
  const std::string name = d.absorption ? "absorption" : "emission";
  output_file& file = files.open("vbn." + name + ".csv");
  write_head(file, r, head, "vibrationally resolved " + name);
  const bool dipole = d.o.mu0.size() == 3;
  const bool absolute = r.gap.has_value() && dipole;
  file.line("# F: line shape in cm, its integral over wavenumbers is 1");
  if (absolute && d.absorption) file.line("# epsilon: molar absorption coefficient in dm3 mol-1 cm-1");
  if (absolute && !d.absorption)
    file.line("# photons: emitted photons in 1/s per cm-1, their integral is the radiative rate");
  std::string columns = r.gap ? "wavenumber_cm-1,energy_eV,wavelength_nm" : "wavenumber_from_0-0_cm-1";
  for (const thermal_band& at : d.thermal) {
    for (std::size_t i = 0; i < at.bands.size(); ++i) {
      columns.append(",").append(column_name("F", r, at, i));
      if (absolute) columns.append(",").append(column_name(d.absorption ? "epsilon" : "photons", r, at, i));
    }
  }
  file.line(columns);
  for (const std::size_t i : written_energies(d, r.gap)) {
    const double w = d.photon(d.grid.energy(i), r.gap.value_or(0.0));
    std::string line = with_digits(w * au_to_cm, 4);
    if (r.gap)
      line += joined({",", with_digits(w * au_to_ev, 7), ",", with_digits(cm_to_nm / (w * au_to_cm), 4)});
    for (const thermal_band& at : d.thermal) {
      for (const shaped_band& shaped : at.bands) {
        line.append(",").append(rounded(shaped.line_shape[i] / au_to_cm));
        if (!absolute) continue;
        line.append(",").append(rounded(intensity(d, w, shaped.dipole[i], r.keys.refractive_index)));
      }
    }
    file.line(line);
  }
}

}  // namespace

std::string label(const std::vector<mode_quanta>& quanta, const std::vector<int>& modes) {
  std::string text;
  for (const mode_quanta& q : quanta) {
    text += joined({text.empty() ? "" : " ", std::to_string(modes[static_cast<std::size_t>(q.mode - 1)]), "^",
                    std::to_string(q.quanta)});
  }
  return text.empty() ? "0" : text;
}

void write_bands(const spectrum_results& r, const spectrum_head& head, staged_files& files) {
  for (const direction& d : r.directions)
    if (r.keys.wants(d.absorption ? "absorption" : "emission")) write_band(r, d, head, files);
}

void write_lines(const spectrum_results& r, const spectrum_head& head, staged_files& files) {
  output_file& file = files.open("vbn.lines.csv");
  write_head(file, r, head, "lines");
  file.line("# temperature " + shortest(r.keys.line_temperature) +
            " K; strength: population of the initial level times the squared overlap, all lines together 1");
  file.line("# n^m: m quanta in mode n as vbn.cart.dat numbers the modes of that state; 0: none in any mode");
  for (const direction& d : r.directions) {
    file.line(std::string("# ") +
              (d.absorption ? "absorption, initial state 1, final state 2"
                            : "emission, initial state 2, final state 1") +
              ": complete above " + shortest(d.lines.complete_above) + ", sum " +
              with_digits(d.lines.sum, 6));
  }
  file.line(std::string("transition,wavenumber_from_0-0_cm-1,") + (r.gap ? "wavenumber_cm-1," : "") +
            "strength,overlap,initial,final");
  for (const direction& d : r.directions) {
    for (const vibronic_line& line : d.lines.lines) {
      std::string text = std::string(d.absorption ? "absorption," : "emission,") +
                         with_digits(d.photon(line.energy, 0.0) * au_to_cm, 4) + ",";
      if (r.gap) text += with_digits(d.photon(line.energy, *r.gap) * au_to_cm, 4) + ",";
      file.line(text + rounded(line.strength) + "," + rounded(line.overlap) + "," +
                label(line.initial, d.mode_i) + "," + label(line.final, d.mode_f));
    }
  }
}

void write_correlation(const spectrum_results& r, const spectrum_head& head, staged_files& files) {
  output_file& file = files.open("vbn.correlation.csv");
  write_head(file, r, head, "correlation functions, without broadening, from the 0-0 line");
  file.line("#zero_point_difference_au," + number(r.zero_point_difference));
  for (const direction& d : r.directions) {
    const std::string name = d.absorption ? "absorption" : "decay";
    file.line("#grid," + name + "," + number(d.grid.first_energy) + "," + number(d.grid.energy_step) + "," +
              std::to_string(d.grid.size) + "," + std::to_string(d.grid.points));
    for (const thermal_band& at : d.thermal)
      file.line("#band," + name + "," + number(at.temperature) + "," + number(at.exact.mean) + "," +
                number(at.exact.sd) + "," + number(at.exact.reorganisation));
  }
  const direction& first = r.directions.front();
  const bool dipole = first.o.mu0.size() == 3;
  const bool ic = r.directions.back().o.v.size() > 0;
  std::string columns = "transition,temperature_K,time_fs,fc_re,fc_im";
  if (dipole)
    columns += ",dipole_fc_re,dipole_fc_im,dipole_mixed_re,dipole_mixed_im,dipole_ht_re,dipole_ht_im";
  if (ic) columns += ",ic_re,ic_im";
  file.line(columns);
  for (const direction& d : r.directions) {
    for (const thermal_band& at : d.thermal) {
      const std::string start =
          std::string(d.absorption ? "absorption," : "decay,") + shortest(at.temperature) + ",";
      for (std::size_t i = 0; i < at.chi.values.size(); ++i) {
        const correlation_value& v = at.chi.values[i];
        std::string line = start + number(at.chi.time[i] * au_to_fs);
        const auto add = [&](complex c) { line += joined({",", number(c.real()), ",", number(c.imag())}); };
        add(v.fc);
        if (dipole) add(v.dipole_fc), add(v.dipole_mixed), add(v.dipole_ht);
        if (ic) add(v.ic);
        file.line(line);
      }
    }
  }
}

void write_rates(const spectrum_results& r, const spectrum_head& head, staged_files& files) {
  if (r.rates.empty()) return;
  output_file& file = files.open("vbn.rates.csv");
  write_head(file, r, head, "rates in 1/s");
  file.line("# rate_half_fwhm and rate_double_fwhm: the same with half and twice the width");
  file.line("process,mode_of_state_1,temperature_K,fwhm_cm-1,rate,rate_half_fwhm,rate_double_fwhm");
  for (const rate& k : r.rates) {
    const std::string where = shortest(k.temperature) + "," + shortest(k.fwhm) + ",";
    file.line(k.process + ",all," + where + rounded(k.value) + "," + rounded(k.at_half) + "," +
              rounded(k.at_double));
    for (std::size_t m = 0; m < k.mode_share.size(); ++m)
      file.line(k.process + "," + std::to_string(r.v.mode_g[m]) + "," + where + rounded(k.mode_share[m]) +
                ",,");
  }
}

}  // namespace vbn
