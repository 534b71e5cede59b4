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

// The formatted checkpoint of a log is in the working directory, or beside the log; two logs do not share
// one.
TEST(bad_input, each_log_gets_its_own_checkpoint_or_none) {
  const fs::path sample = fs::path(VBN_SAMPLES) / "gaussian_6";
  whole_run run;
  const auto give = [&](const char* ending, const char* to) {
    fs::copy_file(sample.string() + ending, run.path(to), fs::copy_options::overwrite_existing);
  };
  fs::create_directories(run.path("s1"));
  give(".log", "s1/mol.log");
  run.write("a.inp", "&vbn ffreq = 2*'s1/mol.log' set_cart = t /\n");
  fs::create_directory(run.path("mol.fchk"));
  run.run("a.inp");
  EXPECT_EQ(run.out, " Error! Can not find Gaussian fchk file!\n Stop!\n");
  EXPECT_NE(run.err.find("no formatted checkpoint mol.fchk in the working directory, and no s1/mol.fchk"),
            run.err.npos);
  fs::remove(run.path("mol.fchk"));
  give(".fchk", "s1/mol.fchk");
  run.run("a.inp");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find("s1/mol.fchk is read"), run.err.npos) << run.err;

  give(".fchk", "mol.fchk");
  run.run("a.inp");
  EXPECT_EQ(run.err.find("s1/mol.fchk"), run.err.npos) << run.err;
  give(".log", "mol.log");
  run.write("a.inp", "&vbn ffreq = 'mol.log', 's1/mol.log' set_cart = t /\n");
  run.run("a.inp");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.err.find("mol.fchk and s1/mol.fchk, beside the logs, are read"), run.err.npos) << run.err;
  fs::remove(run.path("s1/mol.fchk"));
  run.run("a.inp");
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("would share the checkpoint mol.fchk"), run.err.npos) << run.err;
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
