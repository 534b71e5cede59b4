// Puts moments, lines and rates into words and tables.
#include "output/spectrum_log.hpp"  // for write_spectrum_log

#include <algorithm>
#include <cmath>

#include "checks/wording.hpp"  // for with_digits
#include "spectra/units.hpp"   // for au_to_cm
#include "text/number.hpp"     // for shortest, write_scientific

namespace vbn {

namespace {

constexpr std::size_t shown_lines = 20;
constexpr std::size_t shown_rates = 4;

std::string right(const std::string& text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string cm(double energy, int digits = 2) {
  const std::string text = with_digits(energy * au_to_cm, digits);
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
  out.line(
      "     T (K)   reorganisation        mean          sd     band sum - 1   band mean     band sd    "
      "seconds");
  for (const thermal_band& at : d.thermal) {
    out.line("  " + right(with_digits(at.temperature, 2), 8) + right(cm(at.exact.reorganisation), 17) +
             right(cm(at.exact.mean), 12) + right(cm(at.exact.sd), 12) + right(scientific(at.sum - 1.0), 17) +
             right(cm(at.mean), 12) + right(cm(at.sd), 12) + right(with_digits(at.seconds, 2), 11));
  }
}

void write_growth(const direction& d, const std::vector<int>& initial, const std::vector<int>& final,
                  output_file& out) {
  for (const thermal_band& at : d.thermal) {
    if (at.growth.empty()) continue;
    out.line("  the mean grows with temperature by " + cm(at.exact.mean - moments_of(d.t, 0.0).mean, 0) +
             " cm-1 up to " + shortest(at.temperature) + " K, of which");
    for (const pair_share& share : at.growth) {
      const int i = initial[static_cast<std::size_t>(share.initial - 1)];
      std::string line =
          "    mode " + std::to_string(i) + " of the initial state (" + cm(d.t.w_i(share.initial)) + ")";
      if (share.final == 0) {
        line.append(" ").append(cm(share.energy, 0));
      } else {
        line = "      onto mode " + std::to_string(final[static_cast<std::size_t>(share.final - 1)]) +
               " of the final state (" + cm(d.t.w_f(share.final)) + ") " + cm(share.energy, 0);
      }
      out.line(line);
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

void write_lines_section(const direction& d, const spectrum_results& r, const std::vector<int>& initial,
                         const std::vector<int>& final, output_file& out) {
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
             label(line.initial, initial) + ", " + label(line.final, final));
  }
  if (d.windows.empty()) return;
  out.line("  what the lines hold of the band, FWHM " + shortest(r.keys.fwhm.front()) +
           " cm-1, in windows of 500 cm-1");
  for (const window_share& w : d.windows) {
    if (w.exact < 1e-8) continue;
    out.line("  " + right(cm(d.photon(w.low, 0.0), 0), 17) + "  of " + scientific(w.exact) +
             right(with_digits(w.lines / w.exact, 4), 10));
  }
}

void write_rates_section(const spectrum_results& r, output_file& out) {
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
    const std::vector<int>& initial = d.absorption ? r.v.mode_g : r.v.mode_e;
    const std::vector<int>& final = d.absorption ? r.v.mode_e : r.v.mode_g;
    out.line("");
    out.line(in_words(d));
    write_moments(d, out);
    write_growth(d, initial, final, out);
    write_operator(d, out);
    out.line("  times: " + std::to_string(d.grid.points) + " of " + with_digits(d.grid.step * au_to_fs, 4) +
             " fs; transform of " + std::to_string(d.grid.size) + " energies, " + cm(d.grid.energy_step, 3) +
             " cm-1 apart");
    write_lines_section(d, r, initial, final, out);
  }
  out.line("");
  write_rates_section(r, out);
  out.line("threads: " + std::to_string(r.threads) + ", seconds: " + with_digits(seconds, 2));
}

std::string spectrum_summary(const spectrum_results& r, const std::vector<std::string>& written) {
  std::string text;
  if (r.v.n() > 0) text += std::to_string(r.v.n()) + " vibrations";
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
  return text + "\n";
}

}  // namespace vbn
