// The names of the files that a run writes, and what a stop leaves of them.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "input/keys.hpp"  // for input_data

namespace vbn {

// The files that a run with these keys writes, in their order; the log is the first.
std::vector<std::string> result_files(const input_data& input);

// Ends the run when a file that it reads (the input file, one that a key names, or the formatted checkpoint
// of a frequency file) is one that it writes, under whatever name or link.
void require_inputs_kept(const input_data& input);

// The files of earlier runs in the working directory, with the time of their last change.
class earlier_results {
 public:
  earlier_results();

  // The line for the error stream after a stop: which files the run has written, and which are of an earlier
  // run. `log` is the name of the log, empty if it was not opened.
  std::string line_after_stop(const std::string& log) const;

 private:
  std::vector<std::string> names_;  // of every file that any run writes
  std::map<std::string, std::filesystem::file_time_type> changed_;
};

}  // namespace vbn
