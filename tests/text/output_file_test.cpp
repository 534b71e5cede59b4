// Tests of texts of fixed length and of files being written.

#include <gtest/gtest.h>

#include "tests/written_file.hpp"  // for content_of
#include "text/fixed_text.hpp"     // for text
#include "text/layout.hpp"         // for layout
#include "text/output_file.hpp"    // for output_file
#include "text/stop.hpp"           // for run_end

namespace vbn {
namespace {

TEST(text, is_filled_with_blanks_cut_and_compared_without_its_trailing_blanks) {
  EXPECT_EQ(text<4>("abcdef").full(), "abcd");
  EXPECT_EQ(text<4>("a").full(), "a   ");
  EXPECT_TRUE(text<4>("a") == std::string_view("a      "));
  EXPECT_FALSE(text<4>("a") == " a");
}

TEST(output_file, holds_everything_in_order_when_a_stop_ends_the_run) {
  const std::string name = scratch("log");
  write_text(name, "what an earlier run has left, and it is longer than what follows");
  std::string expected = "  1  2\n  3\nas it stands\na\nb\n text  7 0.1 -2\n";
  const std::vector<double> row(10'000, 0.25);  // more than the file collects before it writes
  layout("(10(ES13.6,X))").write(expected, std::span<const double>(row));
  try {
    output_file first(name + "   ");
    output_file log;
    log = std::move(first);
    log.write(layout("(2i3)"), {1, 2, 3});
    log.save();
    EXPECT_EQ(content_of(name), "  1  2\n  3\n");
    log.line("as it stands");
    log.raw("a\nb\n");
    log.free_form({"text ", 7, 0.1, -2.0});
    log.write(layout("(10(ES13.6,X))"), std::span<const double>(row));
    log.line("the end");
    stop("here");
  } catch (const run_end&) {
  }
  EXPECT_TRUE(content_of(name) == expected + "the end\n");
}

}  // namespace
}  // namespace vbn
