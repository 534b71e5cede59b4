// Hundreds of runs on broken files: each ends with sound tables or a message.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>

#include "app/driver.hpp"                  // for run_stages
#include "text/stop.hpp"                   // for run_end
#include "tests/end_to_end/whole_run.hpp"  // for whole_run, real_data

namespace vbn::end_to_end {
namespace {

namespace fs = std::filesystem;

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t stride = 7;  // every so many of the broken files are tried
#else
constexpr std::size_t stride = 1;
#endif

// A case whose file `broken` is replaced time and again; it runs in this process, which is faster than the
// binary.
class campaign {
 public:
  campaign(const fs::path& from, std::string input, std::string broken)
      : folder_(from), input_(std::move(input)), broken_(std::move(broken)), sound_(folder_.read(broken_)) {
    before_ = fs::current_path();
    fs::current_path(folder_.path("."));
  }
  ~campaign() { fs::current_path(before_); }
  campaign(const campaign&) = delete;
  campaign& operator=(const campaign&) = delete;

  const std::string& sound() const { return sound_; }
  int runs() const { return runs_; }

  void attempt(const std::string& content, const std::string& what) {
    SCOPED_TRACE(broken_ + ": " + what);
    ++runs_;
    folder_.write(broken_, content);
    for (const auto& [name, held] : folder_.results()) fs::remove(name);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::optional<run_end> stopped;
    try {
      run_data run;
      run_stages(run, input_);
    } catch (const run_end& end) {
      stopped = end;
    }
    const std::string told = testing::internal::GetCapturedStdout();
    const std::string warned = testing::internal::GetCapturedStderr();
    if (stopped) {
      const std::string log = folder_.read("vbn.out");
      EXPECT_FALSE(told.empty() && stopped->text.empty() && log.find("Stop!") == std::string::npos)
          << "stopped without a word";
      return;
    }
    for (const char* table : {"vbn.cart.dat", "vbn.dint.dat"}) {
      const std::string content_of_table = folder_.read(table);
      EXPECT_FALSE(content_of_table.empty()) << table;
      EXPECT_EQ(content_of_table.find("NaN"), std::string::npos) << table;
      EXPECT_EQ(content_of_table.find("Inf"), std::string::npos) << table;
    }
  }

  // The file cut off at many places, each line dropped in turn, and the last number of each line replaced.
  void break_in_every_way() {
    const std::vector<std::string> lines = lines_of(sound_);
    for (std::size_t part = 0; part < 60; part += stride) {
      const std::size_t length = sound_.size() * part / 60;
      attempt(sound_.substr(0, length), "cut at byte " + std::to_string(length));
    }
    for (std::size_t at = 0; at < lines.size(); at += stride) {
      attempt(joined(lines, at, std::nullopt), "line " + std::to_string(at + 1) + " dropped");
    }
    std::size_t count = 0;
    for (const char* other : {"x1y", "1e300", "-7", "nan", "1000000000", "0"}) {
      for (std::size_t at = 0; at < lines.size(); ++at) {
        const std::size_t end = lines[at].find_last_of("0123456789");
        if (end == std::string::npos || count++ % (3 * stride) != 0) continue;
        const std::size_t before = lines[at].find_last_of(" \t", end);
        const std::size_t begin = before == std::string::npos ? 0 : before + 1;
        attempt(joined(lines, at, lines[at].substr(0, begin) + other + lines[at].substr(end + 1)),
                "line " + std::to_string(at + 1) + " with " + other);
      }
    }
  }

 private:
  // The lines with the one at `at` dropped or replaced.
  static std::string joined(const std::vector<std::string>& lines, std::size_t at,
                            const std::optional<std::string>& instead) {
    std::string content;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      if (i == at && !instead) continue;
      content += (i == at ? *instead : lines[i]) + "\n";
    }
    return content;
  }

  whole_run folder_;
  std::string input_;
  std::string broken_;
  std::string sound_;
  fs::path before_;
  int runs_ = 0;
};

TEST(broken_runs, numerical_frequency_and_coupling_files_broken_in_every_way) {
  for (const char* file : {"t1.dat", "nac_molpro.out", "glyoxal.inp"}) {
    campaign broken(fs::path(VBN_EXAMPLES) / "glyoxal", "glyoxal.inp", file);
    broken.break_in_every_way();
    std::cout << broken.runs() << " broken runs with " << file << "\n";
  }
}

TEST(broken_runs, files_of_every_kind_broken_in_every_way) {
  VBN_NEEDS_REAL_DATA();
  const std::vector<std::array<const char*, 2>> files = {
      {"gaussian", "cation.log"}, {"gaussian", "cation.fchk"}, {"molpro", "cation.out"},
      {"turbomole", "s0.out"},    {"chemshell", "cation.out"}, {"nwchem", "s0.out"}};
  for (const auto& [kind, file] : files) {
    campaign broken(real_data() / "formats/formaldehyde" / kind, "formaldehyde.inp", file);
    broken.break_in_every_way();
    std::cout << broken.runs() << " broken runs with " << kind << "/" << file << "\n";
  }
}

TEST(broken_runs, bytes_that_no_program_writes) {
  campaign broken(fs::path(VBN_EXAMPLES) / "glyoxal", "glyoxal.inp", "t1.dat");
  const std::string sound = broken.sound();
  broken.attempt("", "empty");
  broken.attempt(std::string(100000, '\0'), "zeros");
  std::string binary;
  for (unsigned i = 0; i < 65536; ++i) binary += static_cast<char>((i * 2654435761u) >> 24);
  broken.attempt(binary, "binary");
  broken.attempt(sound + binary, "binary behind a sound file");
  std::string long_line(1 << 20, '7');
  long_line.append("\n").append(sound);
  broken.attempt(long_line, "a line of a megabyte before a sound file");
  broken.attempt(sound + std::string(1 << 20, ' ') + "1", "a line of a megabyte behind a sound file");
  std::string returns;
  for (const char c : sound) returns += c == '\n' ? "\r\n" : std::string(1, c);
  broken.attempt(returns, "carriage returns");
  for (const char* count : {"0", "-6", "1000000000", "99999999999999999999", "715827883", "5"}) {
    std::string other = sound;
    const std::size_t at = other.find("NAtoms");
    other.replace(at, other.find('\n', at) - at, std::string("NAtoms ") + count);
    broken.attempt(other, std::string("atoms: ") + count);
  }
}

}  // namespace
}  // namespace vbn::end_to_end
