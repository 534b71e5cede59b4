// Compares the files that a run writes with those that it reads, and with those of earlier runs.
#include "output/result_files.hpp"  // for the routines

#include <string_view>
#include <system_error>

#include "text/stop.hpp"   // for fail_in
#include "text/words.hpp"  // for name_main

namespace vbn {

namespace fs = std::filesystem;

namespace {

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

// Keys with which a run writes all its files.
input_data every_key() {
  input_data input;
  input.if_rrs = input.proj_reorg = true;
  input.fnacme = input.ftdipd = "a file";
  return input;
}

// Whether the name leads to this file of the working directory, or will when the file is made.
bool leads_to(const fs::path& name, const std::string& result) {
  std::error_code none;  // of a file that is not there
  if (fs::equivalent(name, result, none)) return true;
  return name.filename() == result && fs::equivalent("." / name.parent_path(), ".", none);
}

void require_kept(const std::string& name, const std::vector<std::string>& written) {
  for (const std::string& result : written) {
    if (!name.empty() && leads_to(name, result)) {
      fail_in(name, "the run would overwrite a file that it reads: it writes " + result,
              "another name or folder for this file");
    }
  }
}

}  // namespace

std::vector<std::string> result_files(const input_data& input) {
  std::vector<std::string> names = {"vbn.out"};
  for (const std::string route : {"vbn.cart", "vbn.dint"}) {
    if (route == "vbn.dint" && input.set_cart) break;
    for (const char* ending : {".dat", ".abs"}) names.push_back(route + ending);
    if (input.if_rrs)
      for (const char* ending : {".rrs1", ".rrs2"}) names.push_back(route + ending);
  }
  if (!input.fnacme.blank()) names.emplace_back("vbn.cart.nac");
  if (!input.ftdipd.blank()) names.emplace_back("vbn.cart.dip");
  for (const char* viewer : {"vbn.dx.x.com", "vbn.dx.x.xyz", "vbn.dx.v.xyz", "vbn.vib1.xyz", "vbn.vib2.xyz"})
    names.emplace_back(viewer);
  if (input.proj_reorg && !input.set_cart) names.emplace_back("proj_reorg.dat");
  return names;
}

void require_inputs_kept(const input_data& input) {
  const std::vector<std::string> written = result_files(input);
  require_kept(input.finp.str(), written);
  for (const text<200>& name : input.ffreq) {
    require_kept(name.str(), written);
    require_kept(name_main(name.trimmed()) + ".fchk", written);
    require_kept(fs::path(name.str()).replace_extension(".fchk").string(), written);
  }
  require_kept(input.fnacme.str(), written);
  require_kept(input.ftdipd.str(), written);
}

earlier_results::earlier_results() : names_(result_files(every_key())) {
  for (const std::string& name : names_) {
    std::error_code none;
    const fs::file_time_type changed = fs::last_write_time(name, none);
    if (!none) changed_[name] = changed;
  }
}

std::string earlier_results::line_after_stop(const std::string& log) const {
  std::vector<std::string> written;
  std::vector<std::string> earlier;
  for (const std::string& name : names_) {
    if (name == log) continue;  // it is no result, and of this run even if the last one ended at this moment
    std::error_code none;
    const fs::file_time_type changed = fs::last_write_time(name, none);
    if (none) continue;
    const auto before = changed_.find(name);
    if (before != changed_.end() && before->second == changed) {
      earlier.push_back(name);
    } else {
      written.push_back(name);
    }
  }
  std::string line = written.empty()
                         ? "no results were written"
                         : "the results are not complete: only " + joined(written) + " were written";
  if (!earlier.empty()) line += "; of an earlier run: " + joined(earlier);
  return line + "\n";
}

}  // namespace vbn
