// From the input file to the files of the spectra.
#include "app/spectrum_run.hpp"  // for run_spectrum

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <vector>

#include "app/analysis.hpp"           // for analyse
#include "app/command_line.hpp"       // for version
#include "app/run_data.hpp"           // for run_data
#include "input/input_group.hpp"      // for init, read_group
#include "output/spectrum_files.hpp"  // for write_bands and the other files
#include "output/spectrum_log.hpp"    // for write_spectrum_log, spectrum_summary
#include "output/staged_files.hpp"    // for staged_files
#include "spectra/operators.hpp"      // for operators_of, dipole_along_modes
#include "text/stop.hpp"              // for fail_in

namespace vbn {

namespace {

constexpr const char* results[] = {"vbn.absorption.csv",  "vbn.emission.csv", "vbn.lines.csv",
                                   "vbn.correlation.csv", "vbn.rates.csv",    "vbn.spectrum.out"};

void require_kept(const std::string& name) {
  for (const char* result : results) {
    std::error_code none;
    if (name.empty() || !std::filesystem::equivalent(name, result, none)) continue;
    fail_in(name, std::string("the run would overwrite a file that it reads: it writes ") + result,
            "another name or folder for this file");
  }
}

// The results of an earlier run that this one has left.
std::vector<std::string> earlier_results(const std::vector<std::string>& written) {
  std::vector<std::string> names;
  for (const char* result : results) {
    std::error_code none;
    if (std::ranges::find(written, result) == written.end() && std::filesystem::exists(result, none))
      names.emplace_back(result);
  }
  return names;
}

std::string state_line(const file_data& file) {
  std::string line = file.ffreq.str() + ", " + file.ffreq_type.str();
  if (!file.ffreq_version.blank()) line.append(" ").append(file.ffreq_version.trimmed());
  return line;
}

// What the analysis has read of dipole and couplings.
operator_source source_of(const run_data& run) {
  operator_source source;
  if (run.input.do_tdipd) {
    const states& at = run.state(run.input.proj_tdipd);
    source.dipole_state = run.input.proj_tdipd;
    source.dipole = at.dipole.dip0;
    source.derivatives = dipole_along_modes(at.dipole, at.atoms, run.state(1).modes.cm);
  }
  if (run.input.do_nacme) source.couplings = run.nacme_after.q;
  return source;
}

spectrum_results analysed(const input_file& file, const spectrum_keys& keys, const messages& say,
                          spectrum_head& head) {
  run_data run;
  run.say = say;
  init(run.input);
  run.input.finp = file.name();
  read_group(run.input, file);
  for (const text<200>& name : run.input.ffreq) require_kept(name.str());
  require_kept(run.input.fnacme.str());
  require_kept(run.input.ftdipd.str());
  run.input.set_cart = run.input.set_cart || keys.displacements != "internal";
  run.fout = output_file::nowhere();
  run.for_tables = false;
  analyse(run);
  head.state1 = state_line(run.state(1).file);
  head.state2 = state_line(run.state(2).file);
  const vibration_pair v =
      choose_vibrations(run.state, keys.leave_out, keys.displacements == "internal", file.name());
  const spectrum_operators o = operators_of(source_of(run), v, keys, file.name());
  return calculate_spectra(v, o, keys, file.name(), say);
}

}  // namespace

std::string run_spectrum(const std::string& input, const std::string& from, const messages& say) {
  const auto start = std::chrono::steady_clock::now();
  const input_file file(input, say);
  require_kept(input);
  const spectrum_keys keys = read_spectrum_group(file);
  spectrum_head head{std::string(version()), input, "", ""};
  spectrum_results r;
  if (from.empty()) {
    r = analysed(file, keys, say, head);
  } else {
    if (keys.wants("ic") || keys.wants("isc"))
      say.warn(
          "--from gives no rates of internal conversion and intersystem crossing: they need other times");
    input_file stored(from, say);
    r = read_correlation(stored, keys, head);
    head.input += ", times from " + from;
  }
  say.begin("files");
  staged_files files;
  write_bands(r, head, files);
  if (from.empty()) {
    write_lines(r, head, files);
    write_correlation(r, head, files);
  }
  write_rates(r, head, files);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  write_spectrum_log(r, head, seconds, files);
  files.commit();
  return spectrum_summary(r, files.names(), earlier_results(files.names()));
}

}  // namespace vbn
