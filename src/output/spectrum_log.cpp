// Puts moments, lines and rates into words and tables.
#include "output/spectrum_log.hpp"  // for write_spectrum_log

#include <algorithm>
#include <cmath>

#include "checks/wording.hpp"  // for with_digits
#include "spectra/units.hpp"   // for au_to_cm
#include "text/joined.hpp"     // for joined
#include "text/number.hpp"     // for shortest, write_scientific

namespace vbn {

namespace {

constexpr double least_exact = 1e-4;  // of the band, in a window that is shown
constexpr std::size_t shown_lines = 20;
constexpr std::size_t shown_rates = 4;

std::string right(const std::string& text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string cm(double energy, int digits = 2) {
  std::string text = with_digits(energy * au_to_cm, digits);
  if (text.starts_with('-') && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
  return digits > 0 ? text : text.substr(0, text.find('.'));
}

std::string scientific(double r) {
  std::string field(12, ' ');
  write_scientific(field.data(), r, 12, 4);
  return field;
}

std::string in_words(const direction& d) {
  return d.absorption ? "absorption (state 1 to state 2)" : "emission and other decays (state 2 to state 1)";
}

void write_vibrations(const spectrum_results& r, output_file& out) {
  if (r.v.n() == 0) return;
  out.line("vibrations: " + std::to_string(r.v.n()) + " of each state");
  for (const std::string& line : r.v.log) out.line("  " + line);
  out.line("  S without the other modes differed from an orthogonal matrix by " + scientific(r.v.deviation) +
           "; the nearest orthogonal one is used");
  if (r.keys.displacements == "internal")
    out.line(
        "  displacements of the initial state by internal coordinates, with the signs of the Cartesian ones");
}

void write_moments(const direction& d, output_file& out) {
  out.line("  moments from the 0-0 line (cm-1); the band is that of the first width, less its broadening");
  out.line("     T (K)   reorganisation        mean          sd     band sum - 1   band mean     band sd");
  for (const thermal_band& at : d.thermal) {
    out.line("  " + right(with_digits(at.temperature, 2), 8) + right(cm(at.exact.reorganisation), 17) +
             right(cm(at.exact.mean), 12) + right(cm(at.exact.sd), 12) + right(scientific(at.sum - 1.0), 17) +
             right(cm(at.mean), 12) + right(cm(at.sd), 12));
  }
}

// The modes of one moment in one line; values in cm-1, shares in percent.
std::string parts_in_words(const std::vector<mode_part>& parts, const std::vector<int>& numbers, bool share) {
  std::string text;
  for (const mode_part& part : parts) {
    const std::string value = share ? with_digits(100.0 * part.value, 1) + " %" : cm(part.value, 1) + " cm-1";
    text += joined(
        {text.empty() ? " mode " : ", mode ",
         std::to_string(numbers[static_cast<std::size_t>((part.final > 0 ? part.final : part.mode) - 1)]),
         " (", value, ")"});
  }
  return text;
}

// Which modes make the moments.
void write_parts(const direction& d, output_file& out) {
  const std::string initial = d.absorption ? "1" : "2";
  const std::string final = d.absorption ? "2" : "1";
  if (d.mode_i.empty()) return;
  out.line("  reorganisation energy by modes of state " + final + ":" +
           parts_in_words(d.thermal.front().parts.reorganisation, d.mode_f, false));
  for (const thermal_band& at : d.thermal) {
    out.line(joined({"  variance at ", shortest(at.temperature), " K by modes of state ", initial, ":",
                     parts_in_words(at.parts.variance, d.mode_i, true)}));
    if (at.temperature == 0.0) continue;
    out.line(joined({"  growth of the mean from 0 to ", shortest(at.temperature), " K by modes of state ",
                     initial, ", and onto which modes of state ", final}));
    for (std::size_t i = 0; i < at.parts.growth.size();) {
      std::vector<mode_part> onto;
      const mode_part& of_mode = at.parts.growth[i];
      for (++i; i < at.parts.growth.size() && at.parts.growth[i].final > 0; ++i)
        onto.push_back(at.parts.growth[i]);
      out.line("   " + parts_in_words({of_mode}, d.mode_i, false) + ":" +
               parts_in_words(onto, d.mode_f, false));
    }
  }
}

void write_operator(const direction& d, output_file& out) {
  if (d.o.mu0.size() != 3) return;
  const correlation_value& v = d.thermal.front().chi.values.front();
  out.line("  mean squared dipole at " + shortest(d.thermal.front().temperature) +
           " K (e2 bohr2): constant " + scientific(v.dipole_fc.real()) + ", mixed " +
           scientific(v.dipole_mixed.real()) + ", derivatives " + scientific(v.dipole_ht.real()));
}

void write_lines_section(const direction& d, const spectrum_results& r, output_file& out) {
  const line_list& lines = d.lines;
  if (r.v.n() == 0) return;
  out.line("  lines at " + shortest(r.keys.line_temperature) + " K: " + std::to_string(lines.lines.size()) +
           ", complete above " + shortest(lines.complete_above) + ", sum " + with_digits(lines.sum, 6) +
           (lines.finished ? "" : "; line_seconds ended the search before the threshold"));
  std::vector<vibronic_line> strongest = lines.lines;
  std::ranges::stable_sort(strongest, [](const auto& a, const auto& b) { return a.strength > b.strength; });
  strongest.resize(std::min(strongest.size(), shown_lines));
  out.line("    from 0-0 (cm-1)   strength    initial, final: n^m is m quanta in mode n of the state");
  for (const vibronic_line& line : strongest) {
    out.line("  " + right(cm(d.photon(line.energy, 0.0)), 17) + " " + scientific(line.strength) + "    " +
             label(line.initial, d.mode_i) + ", " + label(line.final, d.mode_f));
  }
  if (d.windows.empty()) return;
  out.line("  what the lines hold of the band, FWHM " + shortest(r.keys.fwhm.front()) +
           " cm-1, in windows of 500 cm-1 that begin at");
  for (const window_share& w : d.windows) {
    if (w.exact < least_exact) continue;
    out.line("  " + right(cm(d.absorption ? w.low : -w.high, 0), 17) + "  of " + scientific(w.exact) +
             right(with_digits(w.lines / w.exact, 4), 10));
  }
}

void write_rates_section(const spectrum_results& r, output_file& out) {
  if (r.gap && r.keys.shape != "gaussian" && r.keys.wants("emission"))
    out.line("rates: none, since they need shape = 'gaussian'");
  if (r.rates.empty()) return;
  out.line("rates (1/s), with half and twice the width");
  for (const rate& k : r.rates) {
    out.line("  " + k.process + ", " + shortest(k.temperature) + " K, FWHM " + shortest(k.fwhm) +
             " cm-1: " + scientific(k.value) + "   half " + scientific(k.at_half) + "   double " +
             scientific(k.at_double));
    if (k.mode_share.empty()) continue;
    std::vector<std::size_t> order(k.mode_share.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
      return std::abs(k.mode_share[a]) > std::abs(k.mode_share[b]);
    });
    order.resize(std::min<std::size_t>(order.size(), 5));
    for (const std::size_t i : order) {
      out.line("    promoting mode " + std::to_string(r.v.mode_g[i]) +
               " of state 1: " + with_digits(100.0 * k.mode_share[i] / k.value, 2) + " %");
    }
  }
}

}  // namespace

void write_spectrum_log(const spectrum_results& r, const spectrum_head& head, double seconds,
                        staged_files& files) {
  output_file& out = files.open("vbn.spectrum.out");
  out.line("vbn-spectrum " + head.version + ", input " + head.input);
  out.line("state 1: " + head.state1);
  out.line("state 2: " + head.state2);
  out.line("keys: " + values_of(r.keys));
  write_vibrations(r, out);
  out.line("zero-point energy of state 2 less that of state 1: " + cm(r.zero_point_difference) + " cm-1");
  if (r.gap) {
    out.line("energy between the states: minimum to minimum " + cm(*r.minima) + " cm-1, 0-0 " + cm(*r.gap) +
             " cm-1; given is " + (r.keys.energy_is == "0-0" ? "the 0-0 energy" : "that of the minima"));
  } else {
    out.line(
        "energy between the states: not given, so energies count from the 0-0 line and there are no rates");
  }
  for (const direction& d : r.directions) {
    out.line("");
    out.line(in_words(d));
    write_moments(d, out);
    write_parts(d, out);
    write_operator(d, out);
    out.line("  times: " + std::to_string(d.grid.points) + " of " + with_digits(d.grid.step * au_to_fs, 4) +
             " fs; transform of " + std::to_string(d.grid.size) + " energies, " + cm(d.grid.energy_step, 3) +
             " cm-1 apart");
    write_lines_section(d, r, out);
  }
  out.line("");
  write_rates_section(r, out);
  out.line("threads: " + std::to_string(r.threads));
  std::string text = "seconds: " + with_digits(seconds, 2) + " in all";
  for (const direction& d : r.directions)
    for (const thermal_band& at : d.thermal)
      text += joined({", times of the ", d.absorption ? "absorption" : "decay", " at ",
                      shortest(at.temperature), " K ", with_digits(at.seconds, 2)});
  out.line(text);
}

std::string spectrum_summary(const spectrum_results& r, const std::vector<std::string>& written,
                             const std::vector<std::string>& earlier) {
  std::string text;
  if (r.v.n() > 0) text += std::to_string(r.v.n()) + (r.v.n() == 1 ? " vibration" : " vibrations");
  if (r.gap) text += (text.empty() ? "0-0 at " : ", 0-0 at ") + cm(*r.gap) + " cm-1";
  if (!text.empty()) text += "\n";
  for (const direction& d : r.directions) {
    const thermal_band& first = d.thermal.front();
    const thermal_band& last = d.thermal.back();
    text += in_words(d) + ": mean " + cm(first.exact.mean, 0) + ", sd " + cm(first.exact.sd, 0) +
            " cm-1 from 0-0 at " + shortest(first.temperature) + " K";
    if (d.thermal.size() > 1)
      text += "; " + cm(last.exact.mean, 0) + ", " + cm(last.exact.sd, 0) + " at " +
              shortest(last.temperature) + " K";
    text += "\n";
    if (d.lines.lines.empty()) continue;
    text += "  " + std::to_string(d.lines.lines.size()) + " lines, complete above " +
            shortest(d.lines.complete_above) + ", sum " + with_digits(d.lines.sum, 4) + "\n";
  }
  for (std::size_t i = 0; i < std::min(r.rates.size(), shown_rates); ++i) {
    const rate& k = r.rates[i];
    text += k.process + " at " + shortest(k.temperature) +
            " K: " + scientific(k.value).substr(scientific(k.value).find_first_not_of(' ')) + " 1/s\n";
  }
  text += "written:";
  for (const std::string& name : written) text.append(" ").append(name);
  if (!earlier.empty()) text += "; of an earlier run:";
  for (const std::string& name : earlier) text.append(" ").append(name);
  return text + "\n";
}

}  // namespace vbn
