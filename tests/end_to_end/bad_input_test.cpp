// Whole runs on bad input: what is told on which stream, the exit status, and which files exist afterwards.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/end_to_end/whole_run.hpp"  // for whole_run

namespace vbn::end_to_end {
namespace {

namespace fs = std::filesystem;

const fs::path examples = VBN_EXAMPLES;

// The run ended in an orderly way with a message on the error stream that holds all of `words`.
void expect_orderly_stop(const whole_run& run, const std::vector<std::string>& words) {
  EXPECT_NE(run.status, 0);
  EXPECT_LT(run.status, 128) << "a crash";
  for (const std::string& word : words) EXPECT_NE(run.err.find(word), std::string::npos) << run.err;
}

TEST(bad_input, a_folder_that_cannot_be_written_and_a_full_disk_are_told) {
  whole_run run(examples / "glyoxal");
  fs::create_symlink("/dev/full", run.path("vbn.cart.dat"));
  run.run("glyoxal.inp");
  expect_orderly_stop(run, {"vbn.cart.dat"});
  fs::remove(run.path("vbn.out"));
  fs::create_directory(run.path("vbn.out"));
  run.run("glyoxal.inp");
  expect_orderly_stop(run, {"vbn.out"});
}

TEST(bad_input, a_file_cut_off_anywhere_ends_in_an_orderly_way) {
  for (const char* cut : {"t1.dat", "nac_molpro.out"}) {
    whole_run run(examples / "glyoxal");
    const std::string whole = run.read(cut);
    for (int part = 0; part < 40; ++part) {
      const std::size_t length = whole.size() * static_cast<std::size_t>(part) / 40;
      SCOPED_TRACE(std::string(cut) + " cut at byte " + std::to_string(length));
      run.write(cut, whole.substr(0, length));
      run.run("glyoxal.inp");
      ASSERT_LT(run.status, 128) << "a crash";
      EXPECT_TRUE(run.status != 0 || !run.out.empty() || run.has("vbn.dint.dat")) << "ended without a word";
      EXPECT_FALSE(run.status != 0 && run.err.empty() && run.out.empty()) << "failed without a word";
    }
  }
}

}  // namespace
}  // namespace vbn::end_to_end
