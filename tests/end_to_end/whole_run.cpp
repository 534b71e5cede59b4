// Runs the binary in a folder of its own and takes apart what it wrote.
#include "tests/end_to_end/whole_run.hpp"  // for whole_run

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace vbn::end_to_end {

namespace fs = std::filesystem;

whole_run::whole_run(const fs::path& from) {
  std::string name = (fs::temp_directory_path() / "vbn_run_XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the run: " + name);
  folder_ = name;
  if (from.empty()) return;
  for (const auto& entry : fs::directory_iterator(from)) {
    if (!entry.is_regular_file()) continue;
    fs::copy_file(entry.path(), folder_ / entry.path().filename());
    fs::permissions(folder_ / entry.path().filename(), fs::perms::owner_write, fs::perm_options::add);
  }
}

whole_run::~whole_run() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

void whole_run::run(const std::string& input) {
  const fs::path told = folder_ / ".out";
  const fs::path erred = folder_ / ".err";
  const std::string argument = input.empty() ? "" : " '" + input + "'";
  const std::string command = "cd '" + folder_.string() + "' && '" VBN_BINARY "'" + argument + " > '" +
                              told.string() + "' 2> '" + erred.string() + "'";
  const int result = std::system(command.c_str());
  status = WIFEXITED(result) ? WEXITSTATUS(result) : 128 + WTERMSIG(result);
  out = read(".out");
  err = read(".err");
  fs::remove(told);
  fs::remove(erred);
}

std::string whole_run::read(const std::string& file) const {
  std::ifstream stream(folder_ / file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void whole_run::write(const std::string& file, const std::string& content) const {
  std::ofstream(folder_ / file, std::ios::binary) << content;
}

std::map<std::string, std::string> whole_run::results() const {
  std::map<std::string, std::string> found;
  for (const auto& entry : fs::directory_iterator(folder_)) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with("vbn.") || name == "proj_reorg.dat") found[name] = read(name);
  }
  return found;
}

std::vector<std::string> lines_of(const std::string& content) {
  std::vector<std::string> lines;
  std::istringstream stream(content);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

mode_table parse_mode_data(const std::string& content) {
  mode_table table;
  enum class part { elsewhere, rows, matrix } at = part::elsewhere;
  for (const std::string& line : lines_of(content)) {
    std::istringstream words(line);
    if (line.find("BEGIN_OUTPUT_1") != std::string::npos) at = part::rows;
    if (line.find("BEGIN_DUSH_DATA_1") != std::string::npos) at = part::matrix;
    if (line.find("END_OUTPUT_1") != std::string::npos || line.find("END_DUSH_DATA_1") != std::string::npos) {
      at = part::elsewhere;
    }
    if (at == part::rows) {
      mode_row r;
      if (words >> r.n >> r.m >> r.sym1 >> r.freq1 >> r.d1 >> r.delta1 >> r.hr1 >> r.lam1 >> r.sym2 >>
          r.freq2 >> r.d2 >> r.delta2 >> r.hr2 >> r.lam2 >> r.g >> r.e >> r.s) {
        table.rows.push_back(r);
      }
      if (line.find("Total reorganization energy (cm-1):") != std::string::npos) {
        std::istringstream(line.substr(line.find(':') + 1)) >> table.total1 >> table.total2;
      }
    }
    if (at == part::matrix && line.find("MODE") == std::string::npos) {
      for (double element = 0.0; words >> element;) table.s.push_back(element);
    }
  }
  return table;
}

fs::path real_data() {
  const char* folder = std::getenv("VBN_REAL_DATA");
  return folder == nullptr ? fs::path() : fs::path(folder);
}

}  // namespace vbn::end_to_end
