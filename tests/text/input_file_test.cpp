// Tests of files in memory and of free-form and fixed-column reads.
#include "text/input_file.hpp"  // for input_file

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <tuple>
#include <vector>

#include "tests/ending.hpp"        // for ending_of
#include "tests/written_file.hpp"  // for scratch
#include "text/free_form.hpp"      // for read_free
#include "text/layout.hpp"         // for layout

namespace vbn {
namespace {

using namespace std::literals;

input_file in_memory(std::string_view content) { return input_file::from_memory("a.out", content); }

std::string message_of(const std::function<void()>& action) {
  const ending e = ending_of(action);
  EXPECT_EQ(e.status, 1);
  return e.error;
}

TEST(input_file, lines_of_any_kind_are_read_to_the_last_byte_and_positions_move_by_lines) {
  const std::string long_line(3'000'000, 'x');
  const std::string name = scratch("lines");
  write_text(name, "first\r\n\r\n\nnul\0byte\n"s + long_line + "\n last");
  input_file file(name + "  ", {});
  std::vector<std::string> lines;
  for (std::string_view line; file.read_line(line);) lines.emplace_back(line);
  EXPECT_EQ(lines, (std::vector<std::string>{"first", "", "", "nul\0byte"s, long_line, " last"}));
  EXPECT_TRUE(file.at_end());
  EXPECT_EQ(file.line_number(), 6);

  file = in_memory("one\ntwo\n\nfour");
  std::string_view line;
  EXPECT_TRUE(file.skip_lines(2));
  file.back_line();
  EXPECT_EQ(file.line_number(), 1);
  EXPECT_TRUE(file.read_line(line));
  EXPECT_EQ(line, "two");
  EXPECT_TRUE(file.skip_lines(2));
  EXPECT_FALSE(file.skip_lines(1));
  EXPECT_EQ(file.seek_line_after(file.content().find("wo")), "two");
  EXPECT_EQ(file.line_number(), 2);
  EXPECT_EQ(file.seek_line_after(1000), "four");
}

TEST(input_file, a_path_that_is_not_a_readable_text_file_is_named) {
  const std::string fifo = scratch("fifo");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_NE(message_of([&] { input_file file(fifo, {}); }).find("it is not a regular file\n  in " + fifo),
            std::string::npos);
  ::unlink(fifo.c_str());
  EXPECT_NE(message_of([] { input_file file(testing::TempDir(), {}); }).find("it is a folder\n  in /"),
            std::string::npos);
}

TEST(free_form_read, takes_integers_reals_and_words_over_line_ends_and_drops_the_rest) {
  input_file file =
      in_memory(" 1\t+2 , C1  1.5D-1\r\n\n 'a ''b''\n c',7. dropped\nlabel 1.0 2.0\n -3.0 junk\n");
  int i = 0, j = 0;
  double r = 0.0, s = 0.0, three[3] = {};
  std::string word, quoted;
  file.read({i, j, word, r, quoted, s}, "six values");
  EXPECT_EQ(std::tie(i, j, word, r, quoted, s), std::make_tuple(1, 2, "C1"s, 0.15, "a 'b' c"s, 7.0));
  file.read_after(1, three, "a row");
  EXPECT_EQ(three[2], -3.0);
}

TEST(free_form_read, leaves_values_out_at_commas_slashes_and_empty_repeats) {
  const struct {
    const char* from;
    std::array<int, 4> expected;  // 9 where the value is unchanged
  } cases[] = {
      {"1,,3 , 4", {1, 9, 3, 4}},     {",2,,4", {9, 2, 9, 4}},
      {"1 2/3 4", {1, 2, 9, 9}},      {"/", {9, 9, 9, 9}},
      {"1\n,2\n3,\n4", {1, 2, 3, 4}}, {"4*7", {7, 7, 7, 7}},
      {"2*5,1,2", {5, 5, 1, 2}},      {"2* 3 4", {9, 9, 3, 4}},
      {"1 2*,4", {1, 9, 9, 4}},       {"1 1000000000*8 x", {1, 8, 8, 8}},
  };
  for (const auto& c : cases) {
    std::array<int, 4> read = {9, 9, 9, 9};
    EXPECT_TRUE(read_free(c.from, {read[0], read[1], read[2], read[3]})) << c.from;
    EXPECT_EQ(read, c.expected) << c.from;
    input_file file = in_memory(std::string(c.from) + "\n");
    std::vector<double> numbers(4, 9.0);
    file.read(numbers, "four numbers");
    EXPECT_EQ(numbers, (std::vector<double>(c.expected.begin(), c.expected.end()))) << c.from;
  }
}

TEST(free_form_read, fails_at_what_is_not_asked_for_and_shows_where) {
  int i = 9;
  double r = 9.0;
  std::string t;
  for (const char* from :
       {"", " \n ", "1.0", "a", "2147483648", "0*1", "99999999999*1", "'1'", "1*x", "1;"}) {
    EXPECT_FALSE(read_free(from, {i})) << from;
  }
  for (const char* from : {"nan", "1e999", "1.0.", "\"1.0\"", "."})
    EXPECT_FALSE(read_free(from, {r})) << from;
  for (const char* from : {"'no end", "'a'b"}) EXPECT_FALSE(read_free(from, {t})) << from;
  EXPECT_EQ(i, 9);
  EXPECT_EQ(r, 9.0);

  input_file file = in_memory("1 2\n  3 b 5\n6\n");
  EXPECT_EQ(
      message_of([&] {
        file.read({i, i, i, i}, "the atoms");
      }),
      "error: cannot read a value\n  in a.out, line 2\n  |   3 b 5\n  |     ^\n  expected: the atoms\n");
  EXPECT_EQ(message_of([&] {
              file.read({i, i}, "two");
            }),
            "error: the file ends before all values are read\n  in a.out, line 3\n  | 6\n  expected: two\n");
}

TEST(fixed_column_read, takes_columns_however_they_are_filled_over_lines_as_the_layout_starts_again) {
  // A short line is filled up with blanks; a point in the field overrides the digits of the layout.
  std::array<double, 5> r = {9.0, 9.0, 9.0, 9.0, 9.0};
  EXPECT_TRUE(read_fixed("skip-10305 -1 1.5D1  2E1", layout("(4x,f6.2,f3.2,e6.1,e5.1,i3)"), r));
  EXPECT_EQ(r, (std::array<double, 5>{-103.05, -0.01, 15.0, 2.0, 0.0}));
  for (const char* field : {"1.2.3", "abcde", "1 2", "- 1.5", "*****", "NaN", ".", "1,2"}) {
    EXPECT_FALSE(read_fixed(field, layout("(f8.2)"), std::span(r).first(1))) << field;
  }
  input_file file = in_memory("row 1.0 2.0 x\n 3.0 4.0 x\r\n 5.0\nrow 1.0 **** 3\n");
  const layout columns("(3x,(2f4.1))");
  file.read_fixed(columns, r, "the block");
  EXPECT_EQ(r, (std::array<double, 5>{1.0, 2.0, 3.0, 4.0, 5.0}));
  EXPECT_EQ(message_of([&] { file.read_fixed(columns, r, "the block"); }),
            "error: cannot read a value\n  in a.out, line 4\n  | row 1.0 **** 3\n  |        ^\n"
            "  expected: the block\n");
}

}  // namespace
}  // namespace vbn
