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

TEST(bad_input, a_failure_of_the_input_layer_names_the_place_and_leaves_no_log) {
  whole_run run;
  run.run("");
  expect_orderly_stop(run, {"error: "});
  run.run("missing.inp");
  expect_orderly_stop(run, {"missing.inp"});
  run.write("typo.inp", "a title\n&vbn\n ffreq(1) = 's0.out'\n sort_mod = 1\n/\n");
  run.run("typo.inp");
  expect_orderly_stop(run, {"typo.inp, line 4", "sort_mod"});
  run.write("value.inp", "&vbn\n start_mode = seven\n/\n");
  run.run("value.inp");
  expect_orderly_stop(run, {"value.inp, line 2", "start_mode", "integer"});
  run.write("index.inp", "&vbn\n ffreq(3) = 'a'\n/\n");
  run.run("index.inp");
  expect_orderly_stop(run, {"index.inp, line 2", "ffreq"});
  run.write("prefix.inp", "&vbn\n prefix = 'x'\n/\n");
  run.run("prefix.inp");
  expect_orderly_stop(run, {"prefix"});
  run.write("none.inp", "&other a = 1 /\n");
  run.run("none.inp");
  expect_orderly_stop(run, {"none.inp", "&vbn"});
  EXPECT_TRUE(run.results().empty());
}

TEST(bad_input, frequency_files_that_are_none_are_named) {
  whole_run run;
  run.write("a.inp", "&vbn\n ffreq(1) = 'one.out'\n/\n");
  run.write("one.out", "nothing that any program wrote\n");
  run.run("a.inp");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "  Error!\n  natom =                   0\n  Stop!\n");
  EXPECT_NE(run.err.find("one.out"), std::string::npos) << run.err;
  fs::remove(run.path("one.out"));
  run.run("a.inp");
  expect_orderly_stop(run, {"one.out"});
  fs::create_directory(run.path("one.out"));
  run.run("a.inp");
  expect_orderly_stop(run, {"one.out"});
  run.write("b.inp", "&vbn\n set_cart = t\n/\n");
  run.run("b.inp");
  expect_orderly_stop(run, {"ffreq(1)"});
  EXPECT_FALSE(run.has("vbn.cart.dat"));
}

TEST(bad_input, a_gaussian_log_without_its_checkpoint_text_says_so_on_standard_output) {
  whole_run run;
  run.write("a.inp", "&vbn ffreq(1) = 'one.log', ffreq(2) = 'one.log' /\n");
  run.write("one.log",
            " Entering Gaussian System, Link 0=g16\n *****************\n Gaussian 16:  ES64L-G16RevA.03\n");
  run.run("a.inp");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, " Error! Can not find Gaussian fchk file!\n Stop!\n");
}

TEST(bad_input, two_molecules_of_different_size_are_no_pair) {
  whole_run run(examples / "formaldehyde");
  fs::copy_file(examples / "glyoxal" / "s0.dat", run.path("other.dat"));
  run.write("a.inp", "&vbn ffreq(1) = 's0.out', ffreq(2) = 'other.dat' /\n");
  run.run("a.inp");
  expect_orderly_stop(run, {"s0.out", "other.dat", "4", "6"});
}

TEST(bad_input, told_stops_of_the_keys_come_after_the_files_are_read) {
  whole_run run(examples / "glyoxal");
  run.write("a.inp",
            "&vbn ffreq = 's0.dat' 't1.dat', if_add_int_coord = t, def_add_int_coord(1:4,1) = 2,2,0,0 /\n");
  run.run("a.inp");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "STOP Bad def_add_int_coord definition, stop!\n");
  EXPECT_TRUE(run.has("vbn.out"));
  EXPECT_FALSE(run.has("vbn.cart.dat"));

  run.write("b.inp", "&vbn ffreq = 's0.dat' 't1.dat', modify_mode = 'Open' /\n");
  run.run("b.inp");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "Error!\nmodify_mode =      Open \nmodify_mode should be none, open, close\n");
  EXPECT_EQ(run.err, "");

  run.write("c.inp", "&vbn ffreq = 'missing.dat' 't1.dat', modify_mode = 'Open' /\n");
  run.run("c.inp");
  expect_orderly_stop(run, {"missing.dat"});
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

TEST(bad_input, a_coupling_file_of_neither_geometry_stops_before_any_table) {
  VBN_NEEDS_REAL_DATA();
  whole_run run(real_data() / "couplings/glyoxal");
  run.run("elsewhere.inp");
  expect_orderly_stop(run, {"nac_elsewhere.out", "proj_nacme"});
  EXPECT_EQ(run.out.substr(0, 70), "Error! The coordiantes from nac_elsewhere.out are different from two s");
  EXPECT_FALSE(run.has("vbn.cart.nac"));
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
