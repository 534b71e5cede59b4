// Runs the binary in a new folder and reads the files that it wrote.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace vbn::end_to_end {

// How a run ended, what it printed, and the folder that it ran in (removed with this record).
class whole_run {
 public:
  // A new folder with copies of the files of `from` (none when it is empty).
  explicit whole_run(const std::filesystem::path& from = {});
  ~whole_run();
  whole_run(const whole_run&) = delete;
  whole_run& operator=(const whole_run&) = delete;

  // Runs `program input` in the folder. `input` empty: without an argument. `before` goes before the command,
  // for the shell.
  void run(const std::string& input, const std::string& before = {});

  std::filesystem::path path(const std::string& file) const { return folder_ / file; }
  bool has(const std::string& file) const { return std::filesystem::exists(path(file)); }
  std::string read(const std::string& file) const;
  void write(const std::string& file, const std::string& content) const;
  // Copies the files of another folder into this one.
  void add(const std::filesystem::path& from) const;
  // The names of all files, and what they hold; the results are those named "vbn.*" and "proj_reorg.dat".
  std::map<std::string, std::string> files() const;
  std::map<std::string, std::string> results() const;

  std::string program = "vbn";
  int status = -1;
  std::string out;
  std::string err;

 private:
  std::filesystem::path folder_;
};

// One row of the table of a mode data file.
struct mode_row {
  int n = 0, m = 0, g = 0, e = 0;
  std::string sym1, sym2;
  double freq1 = 0, d1 = 0, delta1 = 0, hr1 = 0, lam1 = 0;
  double freq2 = 0, d2 = 0, delta2 = 0, hr2 = 0, lam2 = 0;
  double s = 0;
};

struct mode_table {
  std::vector<mode_row> rows;
  double total1 = 0, total2 = 0;
  std::vector<double> s;  // S(g,e) row after row, from the first Duschinsky block
};

mode_table parse_mode_data(const std::string& content);

// The couplings of the vibrations, au, in a table of couplings by mode; without their signs, which follow the
// modes.
std::vector<double> parse_couplings(const std::string& content);

// Tables of the same molecule: frequencies to `freq` cm-1, Huang-Rhys factors and the total relative to their
// size.
void expect_same_physics(const mode_table& a, const mode_table& b, double freq, double relative);

// The lines of a text.
std::vector<std::string> lines_of(const std::string& content);

// The folder of the real cases, empty when it is not set.
std::filesystem::path real_data();

}  // namespace vbn::end_to_end

// Skips the test when the folder of the real cases is not set.
#define VBN_NEEDS_REAL_DATA()                   \
  if (vbn::end_to_end::real_data().empty()) {   \
    GTEST_SKIP() << "VBN_REAL_DATA is not set"; \
  }
