// From the input file to the files of the spectra.
#include "app/spectrum_run.hpp"  // for run_spectrum

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <system_error>
#include <vector>

#include "app/analysis.hpp"           // for analyse
#include "app/command_line.hpp"       // for version
#include "input/input_group.hpp"      // for init, read_group
#include "linalg/matmul.hpp"          // for transposed_product
#include "output/spectrum_files.hpp"  // for write_bands and the other files
#include "output/spectrum_log.hpp"    // for write_spectrum_log, spectrum_summary
#include "output/staged_files.hpp"    // for staged_files
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

// Derivatives (3,n3) of the dipole along the modes of g. Both the components of the dipole and the
// displacements of the atoms are brought to the frame of the modes; the record has the components there
// already.
array2<double> dipole_along_modes(const dipole_data& dipole, const atom_data& atoms,
                                  const array2<double>& cm) {
  array2<double> along(3, atoms.n3);
  for (int c = 1; c <= 3; ++c) {
    std::vector<double> weighted;
    for (int i = 1; i <= atoms.natom; ++i) {
      for (int a = 1; a <= 3; ++a) {
        double sum = dipole.dip_turn.rows() == 0 ? dipole.tdipd_x(c, a, i) : 0.0;
        for (int b = 1; b <= dipole.dip_turn.cols(); ++b)
          sum += dipole.dip_turn(a, b) * dipole.tdipd_x(c, b, i);
        weighted.push_back(sum / std::sqrt(atoms.massau(i)));
      }
    }
    const array1<double> row = transposed_product(cm, weighted);
    for (int m = 1; m <= atoms.n3; ++m) along(c, m) = row(m);
  }
  return along;
}

std::string state_line(const file_data& file) {
  std::string line = file.ffreq.str() + ", " + file.ffreq_type.str();
  if (!file.ffreq_version.blank()) line.append(" ").append(file.ffreq_version.trimmed());
  return line;
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
  return calculate_spectra(v, operators_of(run, v, keys), keys, file.name(), say);
}

}  // namespace

spectrum_operators operators_of(const run_data& run, const vibration_pair& v, const spectrum_keys& keys) {
  spectrum_operators o;
  if (!keys.dipole.empty()) {
    o.absorption.mu0 = array1<double>(3);
    std::ranges::copy(keys.dipole, o.absorption.mu0.begin());
    o.decay = o.absorption;
  } else if (run.input.do_tdipd) {
    const states& at = run.state(run.input.proj_tdipd);
    const array2<double> along = dipole_along_modes(at.dipole, at.atoms, run.state(1).modes.cm);
    o.absorption = dipole_operator(v, at.dipole.dip0, along, run.input.proj_tdipd, true);
    o.decay = dipole_operator(v, at.dipole.dip0, along, run.input.proj_tdipd, false);
  }
  if (keys.wants("ic")) {
    if (!run.input.do_nacme) {
      fail_in(run.input.finp.str(), "what = 'ic' needs the couplings of the states",
              "fnacme in the group &vbn, the file of the non-adiabatic couplings");
    }
    o.decay.v = array1<double>(v.n());
    for (int k = 1; k <= v.n(); ++k)
      o.decay.v(k) = run.nacme_after.q(v.mode_g[static_cast<std::size_t>(k - 1)]);
  }
  return o;
}

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
