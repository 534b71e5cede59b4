// Hundreds of runs on broken files: each ends with valid tables or a message.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "app/driver.hpp"                  // for run_stages
#include "tests/ending.hpp"                // for ending_of
#include "tests/end_to_end/whole_run.hpp"  // for whole_run, real_data
#include "tests/written_file.hpp"          // for content_of

namespace vbn::end_to_end {
namespace {

namespace fs = std::filesystem;

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t stride = 7;  // one of this number of broken files is tried
#else
constexpr std::size_t stride = 1;
#endif

// A case whose file `broken` is replaced for each run; it runs in this process, which is faster than the
// binary.
class campaign {
 public:
  campaign(const fs::path& from, std::string input, std::string broken)
      : folder_(from), input_(std::move(input)), broken_(std::move(broken)), sound_(folder_.read(broken_)) {
    fs::current_path(folder_.path("."));
  }
  // One file for both states, and a partner beside it.
  explicit campaign(const fs::path& file, const std::string& partner = "")
      : input_("run.inp"), broken_(file.filename().string()), sound_(content_of(file.string())) {
    if (!partner.empty()) folder_.write(partner, content_of((file.parent_path() / partner).string()));
    folder_.write(input_, "&vbn ffreq(1) = '" + broken_ + "', ffreq(2) = '" + broken_ + "' /\n");
    fs::current_path(folder_.path("."));
  }
  ~campaign() { fs::current_path(before_); }
  campaign(const campaign&) = delete;
  campaign& operator=(const campaign&) = delete;

  const std::string& sound() const { return sound_; }

  void attempt(const std::string& content, const std::string& what) {
    SCOPED_TRACE(broken_ + ": " + what);
    folder_.write(broken_, content);
    for (const auto& [name, held] : folder_.results()) fs::remove(name);
    const ending e = ending_of([&](const messages& say) {
      run_data run;
      run.say = say;
      run_stages(run, input_);
    });
    if (e.status != -1) {
      EXPECT_FALSE(e.printed.empty() && e.error.empty() &&
                   folder_.read("vbn.out").find("Stop!") == std::string::npos)
          << "stopped without a word";
      return;
    }
    for (const char* table : {"vbn.cart.dat", "vbn.dint.dat"}) {
      const std::string written = folder_.read(table);
      EXPECT_FALSE(written.empty()) << table;
      EXPECT_TRUE(written.find("NaN") == std::string::npos && written.find("Inf") == std::string::npos)
          << table;
    }
  }

  // The file cut off at many places, each line dropped in turn, and the last number of each line replaced; in
  // a text of one line numbers from its beginning to its end.
  void break_in_every_way() {
    for (std::size_t part = 0; sound_.find('\n') >= sound_.size() - 1 && part < 60; part += stride) {
      const std::size_t at = sound_.find_first_of("0123456789", sound_.size() * part / 60);
      const std::size_t end = std::min(sound_.find_first_not_of("0123456789.eE+-", at), sound_.size());
      for (const char* other : {"\"x1y\"", "1e300", "-7", "null", "1000000000", "0", "[]", "{}"})
        if (at < end)
          attempt(sound_.substr(0, at) + other + sound_.substr(end), std::string("with ") + other);
    }
    for (std::size_t part = 0; part < 60; part += stride)
      attempt(sound_.substr(0, sound_.size() * part / 60), "cut at sixtieth " + std::to_string(part));
    if (sound_.find('\n') == std::string::npos) return;
    std::size_t count = 0;
    for (std::size_t at = 0; at < sound_.size(); at = sound_.find('\n', at) + 1) {
      const std::string front = sound_.substr(0, at), line = sound_.substr(at, sound_.find('\n', at) - at);
      const std::string rest = sound_.substr(at + line.size());
      if (count++ % stride == 0) attempt(front + rest.substr(1), "without " + line);
      const std::size_t end = line.find_last_of("0123456789");
      if (end == std::string::npos) continue;
      const std::size_t begin = line.find_last_of(" \t", end) + 1;
      for (const char* other : {"x1y", "1e300", "-7", "nan", "1000000000", "0"})
        if (count++ % (3 * stride) == 0)
          attempt(front + line.substr(0, begin) + other + line.substr(end + 1) + rest,
                  line + " with " + other);
    }
  }

 private:
  whole_run folder_;
  std::string input_, broken_, sound_;
  fs::path before_ = fs::current_path();
};

TEST(broken_runs, numerical_frequency_and_coupling_files_broken_in_every_way) {
  for (const char* file : {"t1.dat", "nac_molpro.out", "glyoxal.inp"}) {
    campaign broken(fs::path(VBN_EXAMPLES) / "glyoxal", "glyoxal.inp", file);
    broken.break_in_every_way();
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
  }
}

TEST(broken_runs, files_that_are_read_as_a_whole_broken_in_every_way) {
  for (const char* file : {"orca_4.hess", "qchem_4.out", "psi4_4.out", "gamess_4.out", "cp2k_4.out",
                           "mopac_4.aux", "bagel_4.out", "jaguar_4.in", "cfour_4.out", "dalton_4.out"}) {
    campaign broken(fs::path(VBN_SAMPLES) / file);
    broken.break_in_every_way();
  }
}

TEST(broken_runs, files_of_more_programs_broken_in_every_way) {
  VBN_NEEDS_REAL_DATA();
  const std::vector<std::array<const char*, 2>> files = {
      {"openmolcas/formaldehyde_neutral.UnSym", ""},
      {"json_qcschema/formaldehyde_neutral.json", ""},
      {"json_ase/formaldehyde_neutral.json", ""},
      {"orca/water_v6.property.json", ""},
      {"psi4/formaldehyde_neutral.molden_normal_modes", ""},
      {"xtb/formaldehyde_neutral/hessian", "xtbopt.xyz"},
      {"psi4/formaldehyde_neutral.hess", "formaldehyde_neutral.out"}};
  campaign(fs::path(VBN_EXPECTED) / "gaussian_archive_isotopes/one.log").break_in_every_way();
  for (const auto& [file, partner] : files) {
    campaign broken(real_data() / "more_programs" / file, partner);
    broken.break_in_every_way();
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
  broken.attempt(sound + binary, "binary after a sound file");
  std::string long_line(1 << 20, '7');
  long_line.append("\n").append(sound);
  broken.attempt(long_line, "a line of a megabyte before a sound file");
  broken.attempt(sound + std::string(1 << 20, ' ') + "1", "a line of a megabyte after a sound file");
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
