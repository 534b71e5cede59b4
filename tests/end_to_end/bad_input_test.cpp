// Whole runs on input and files that cannot be used: they end in an orderly way and say why.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/end_to_end/whole_run.hpp"  // for whole_run

namespace vbn::end_to_end {
namespace {

namespace fs = std::filesystem;

const fs::path examples = VBN_EXAMPLES;

// The run ended in an orderly way with a message on the error stream that names the file.
void expect_orderly_stop(const whole_run& run, const std::string& file) {
  EXPECT_NE(run.status, 0);
  EXPECT_LT(run.status, 128) << "a crash";
  EXPECT_NE(run.err.find(file), std::string::npos) << run.err;
}

TEST(bad_input, files_that_cannot_be_read_or_written_are_named) {
  whole_run run(examples / "glyoxal");
  run.run("");
  expect_orderly_stop(run, "vbn");
  run.run("missing.inp");
  expect_orderly_stop(run, "missing.inp");
  for (const char* full : {"vbn.cart.dat", "vbn.out"}) {
    fs::remove(run.path(full));
    fs::create_symlink("/dev/full", run.path(full));
    run.run("glyoxal.inp");
    expect_orderly_stop(run, full);
    fs::remove(run.path(full));
  }
  fs::create_directory(run.path("vbn.out"));
  run.run("glyoxal.inp");
  expect_orderly_stop(run, "vbn.out");
}

// OpenBLAS itself would ask for its memory for ever.
TEST(bad_input, too_little_memory_is_an_error_at_once) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "AddressSanitizer needs more address space than any limit";
#endif
  whole_run run(examples / "glyoxal");
  for (const char* limit : {"50000", "75000", "150000"}) {
    run.run("glyoxal.inp", "ulimit -v " + std::string(limit) + "; timeout 20");
    EXPECT_EQ(run.status, 1) << limit;
    EXPECT_TRUE(run.err.starts_with("error: out of memory\n")) << run.err;
  }
  run.run("glyoxal.inp", "ulimit -v 400000; timeout 20");
  EXPECT_EQ(run.status, 0) << run.err;
}

// The formatted checkpoint of a log is in the working directory, wherever the log is.
TEST(bad_input, a_checkpoint_elsewhere_or_a_folder_of_its_name_is_none) {
  const fs::path sample = fs::path(VBN_SAMPLES) / "gaussian_6";
  whole_run run;
  fs::create_directories(run.path("elsewhere"));
  fs::copy_file(sample.string() + ".log", run.path("elsewhere/mol.log"));
  fs::copy_file(sample.string() + ".fchk", run.path("elsewhere/mol.fchk"));
  run.write("a.inp", "&vbn ffreq = 2*'elsewhere/mol.log' set_cart = t /\n");
  run.run("a.inp");
  EXPECT_EQ(run.out, " Error! Can not find Gaussian fchk file!\n Stop!\n");
  fs::create_directory(run.path("mol.fchk"));
  run.run("a.inp");
  EXPECT_EQ(run.out, " Error! Can not find Gaussian fchk file!\n Stop!\n");
  fs::remove(run.path("mol.fchk"));
  fs::rename(run.path("elsewhere/mol.fchk"), run.path("mol.fchk"));
  run.run("a.inp");
  EXPECT_EQ(run.status, 0) << run.err;
}

TEST(bad_input, a_file_cut_off_anywhere_ends_in_a_defined_way) {
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
