// Runs the binary in a new folder and reads the files that it wrote.
#include "tests/end_to_end/whole_run.hpp"  // for whole_run

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
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
  if (!from.empty()) add(from);
}

void whole_run::add(const fs::path& from) const {
  for (const auto& entry : fs::directory_iterator(from)) {
    if (!entry.is_regular_file()) continue;
    const fs::path copy = path(entry.path().filename());
    fs::copy_file(entry.path(), copy);
    fs::permissions(copy, fs::perms::owner_write, fs::perm_options::add);
  }
}

whole_run::~whole_run() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

void whole_run::run(const std::string& input, const std::string& before) {
  const fs::path printed = folder_ / ".out";
  const fs::path erred = folder_ / ".err";
  const std::string argument = input.empty() ? "" : " '" + input + "'";
  const std::string command = "cd '" + folder_.string() + "' && " + before + " '" VBN_BINARIES "/" + program +
                              "'" + argument + " > '" + printed.string() + "' 2> '" + erred.string() + "'";
  const int result = std::system(command.c_str());
  status = WIFEXITED(result) ? WEXITSTATUS(result) : 128 + WTERMSIG(result);
  out = read(".out");
  err = read(".err");
  fs::remove(printed);
  fs::remove(erred);
}

std::string whole_run::read(const std::string& file) const {
  std::ifstream stream(folder_ / file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void whole_run::write(const std::string& file, const std::string& content) const {
  std::ofstream(folder_ / file, std::ios::binary) << content;
}

std::map<std::string, std::string> whole_run::files() const {
  std::map<std::string, std::string> found;
  for (const auto& entry : fs::directory_iterator(folder_))
    if (entry.is_regular_file()) found[entry.path().filename()] = read(entry.path().filename());
  return found;
}

std::map<std::string, std::string> whole_run::results() const {
  std::map<std::string, std::string> found = files();
  std::erase_if(found, [](const auto& file) {
    return !file.first.starts_with("vbn.") && file.first != "proj_reorg.dat";
  });
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

std::vector<double> parse_couplings(const std::string& content) {
  std::vector<double> couplings;
  for (const std::string& line : lines_of(content))
    if (line.size() == 174 && line[5] != 'm' && std::stoi(line.substr(6, 6)) > 0)
      couplings.push_back(std::abs(std::stod(line.substr(30, 18))));
  return couplings;
}

void expect_same_physics(const mode_table& a, const mode_table& b, double freq, double relative) {
  ASSERT_EQ(a.rows.size(), b.rows.size());
  for (std::size_t i = 0; i < a.rows.size(); ++i) {
    SCOPED_TRACE("mode " + std::to_string(i + 1));
    EXPECT_NEAR(a.rows[i].freq1, b.rows[i].freq1, freq);
    EXPECT_NEAR(a.rows[i].freq2, b.rows[i].freq2, freq);
    EXPECT_NEAR(a.rows[i].hr1, b.rows[i].hr1, relative * (0.01 + std::abs(a.rows[i].hr1)));
    EXPECT_NEAR(a.rows[i].hr2, b.rows[i].hr2, relative * (0.01 + std::abs(a.rows[i].hr2)));
    // Translations and rotations have the same frequency, so their six modes may mix.
    if (i >= 6) {
      EXPECT_NEAR(std::abs(a.rows[i].s), std::abs(b.rows[i].s), 10 * relative);
    }
  }
  EXPECT_NEAR(a.total1, b.total1, relative * (1.0 + a.total1));
  EXPECT_NEAR(a.total2, b.total2, relative * (1.0 + a.total2));
}

fs::path real_data() {
  const char* folder = std::getenv("VBN_REAL_DATA");
  return folder == nullptr ? fs::path() : fs::path(folder);
}

}  // namespace vbn::end_to_end
