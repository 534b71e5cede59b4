// Tests of texts of fixed length and of files and streams being written.
#include "run/text.hpp"  // for text, output_file

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "run/stop.hpp"            // for run_end
#include "tests/written_file.hpp"  // for content_of

namespace vbn {
namespace {

TEST(text, is_filled_with_blanks_cut_and_compared_without_its_trailing_blanks) {
  const text<4> cut("abcdef");
  EXPECT_EQ(cut.full(), "abcd");
  text<4> filled("a");
  EXPECT_EQ(filled.full(), "a   ");
  EXPECT_TRUE(filled == "a  ");
  EXPECT_TRUE(filled == std::string_view("a      "));
  EXPECT_FALSE(filled == " a");
  EXPECT_FALSE(filled == "a\t");
  EXPECT_TRUE(text<4>().blank());
  EXPECT_EQ(trim(" a b  "), " a b");
  EXPECT_EQ(trim("   "), "");
  EXPECT_EQ(adjustl("  a b "), "a b ");
}

// The message of the run end that `action` causes.
template <class Action>
std::string message_of(Action action) {
  try {
    action();
  } catch (const run_end& end) {
    EXPECT_EQ(end.status, 1);
    return end.text;
  }
  ADD_FAILURE() << "the run goes on";
  return "";
}

TEST(output_file, holds_everything_when_the_run_is_left_by_a_stop) {
  const std::string name = scratch("log");
  write_text(name, "what an earlier run has left, and it is longer than what follows");
  try {
    output_file first(name + "   ");
    output_file log;
    log = std::move(first);
    log.write(layout("(2i3)"), {1, 2, 3});
    log.line("as it stands");
    log.raw("a\nb\n");
    log.free_form({"text ", 7, 0.1, -2.0});
    stop("here");
  } catch (const run_end&) {
  }
  EXPECT_EQ(content_of(name), "  1  2\n  3\nas it stands\na\nb\n text  7 0.1 -2\n");
}

TEST(output_file, keeps_the_order_of_more_than_it_holds_back) {
  const std::string name = scratch("long");
  std::string expected;
  output_file file(name);
  const std::vector<double> row(1000, 0.25);
  for (int i = 0; i < 100; ++i) {
    file.write(layout("(i6)"), {i});
    file.write(layout("(10(ES13.6,X))"), std::span<const double>(row));
    layout("(i6)").write(expected, {i});
    layout("(10(ES13.6,X))").write(expected, std::span<const double>(row));
  }
  file.close();
  EXPECT_TRUE(content_of(name) == expected);
}

TEST(output_file, that_cannot_be_opened_or_filled_ends_the_run_with_its_name) {
  const std::string folder = testing::TempDir();
  EXPECT_NE(message_of([&] { output_file file(folder); }).find("in " + folder), std::string::npos);
  const std::string lost = folder + "no_such_folder/x.dat";
  EXPECT_NE(message_of([&] { output_file file(lost); }).find("in " + lost), std::string::npos);

  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full";
  EXPECT_NE(message_of([] {
              output_file file("/dev/full");
              file.line("a");
              file.close();
            }).find("No space left on device\n  in /dev/full\n"),
            std::string::npos);
  EXPECT_NE(message_of([] {
              output_file file("/dev/full");
              for (int i = 0; i < 1'000'000; ++i) file.line("a line that fills the disk");
            }).find("in /dev/full"),
            std::string::npos);
  EXPECT_THROW(output_file().line("a"), std::logic_error);
  output_file left("/dev/full");  // its end must not end the process
  left.line("a");
}

TEST(tell, writes_lines_and_free_form_records_on_standard_output) {
  testing::internal::CaptureStdout();
  tell(layout("(\"natom =\", i20)"), {0});
  tell(layout("(\"Stop!\")"));
  tell_free({"n =", 3});
  tell_free({"Stop!"});
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "natom =                   0\nStop!\n n = 3\n Stop!\n");
}

}  // namespace
}  // namespace vbn
