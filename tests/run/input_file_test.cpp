// Tests of files taken into memory and of free-form and fixed-column reads.
#include "run/input_file.hpp"  // for input_file

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <vector>

#include "tests/written_file.hpp"  // for scratch

namespace vbn {
namespace {

using namespace std::literals;

input_file in_memory(std::string_view content) { return input_file::from_memory("a.out", content); }

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

TEST(input_file, lines_of_any_kind_are_read_to_the_last_byte) {
  const std::string long_line(3'000'000, 'x');
  const std::string name = scratch("lines");
  write_text(name, "first\r\n\r\n\nnul\0byte\n"s + long_line + "\n last");
  input_file file(name + "  ");
  EXPECT_EQ(file.name(), name);
  EXPECT_EQ(file.line_number(), 0);
  std::vector<std::string> lines;
  for (std::string_view line; file.read_line(line);) lines.emplace_back(line);
  EXPECT_EQ(lines, (std::vector<std::string>{"first", "", "", "nul\0byte"s, long_line, " last"}));
  EXPECT_TRUE(file.at_end());
  EXPECT_EQ(file.line_number(), 6);

  std::string_view line = "untouched";
  input_file empty = in_memory("");
  EXPECT_FALSE(empty.read_line(line));
  EXPECT_FALSE(empty.skip_lines(1));
  empty.back_line();
  EXPECT_EQ(line, "untouched");
  EXPECT_EQ(empty.here("w", "").line, 0);
}

TEST(input_file, position_moves_by_lines) {
  input_file file = in_memory("one\ntwo\n\nfour");
  std::string_view line;
  EXPECT_TRUE(file.skip_lines(2));
  file.back_line();
  EXPECT_EQ(file.line_number(), 1);
  EXPECT_TRUE(file.read_line(line));
  EXPECT_EQ(line, "two");
  EXPECT_TRUE(file.skip_lines(2));
  EXPECT_FALSE(file.skip_lines(1));
  file.back_line();
  EXPECT_TRUE(file.read_line(line));
  EXPECT_EQ(line, "four");
  EXPECT_EQ(file.seek_line_after(file.content().find("wo")), "two");
  EXPECT_EQ(file.line_number(), 2);
  EXPECT_TRUE(file.read_line(line));
  EXPECT_EQ(line, "");
  EXPECT_EQ(file.seek_line_after(8), "");
  EXPECT_EQ(file.seek_line_after(1000), "four");
  file.rewind();
  file.back_line();
  EXPECT_TRUE(file.read_line(line));
  EXPECT_EQ(line, "one");
  // What was read stays valid when the file is handed on.
  const input_file moved = std::move(file);
  EXPECT_EQ(line, "one");
}

TEST(input_file, what_is_no_readable_text_file_is_named) {
  const std::string folder = testing::TempDir();
  EXPECT_NE(message_of([&] { input_file file(folder); }).find("it is a folder\n  in " + folder),
            std::string::npos);
  const std::string fifo = scratch("fifo");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_NE(message_of([&] { input_file file(fifo); }).find("it is no regular file\n  in " + fifo),
            std::string::npos);
  ::unlink(fifo.c_str());
  EXPECT_NE(message_of([] { input_file file("no_such_file.log"); }).find("in no_such_file.log"),
            std::string::npos);
  EXPECT_NE(message_of([] { input_file file(""); }).find("cannot read the file"), std::string::npos);
  EXPECT_FALSE(input_file::try_open("no_such_file.log").has_value());
}

TEST(input_file, that_may_not_be_read_is_named) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read every file";
  const std::string locked = scratch("locked");
  write_text(locked, "a");
  ::chmod(locked.c_str(), 0);
  EXPECT_NE(message_of([&] { input_file file(locked); }).find("in " + locked), std::string::npos);
}

TEST(free_form_read, takes_integers_reals_and_words_over_line_ends_and_drops_the_rest) {
  input_file file = in_memory(" 1\t+2 , C1  1.5D-1\r\n\n 'a ''b'' c',7. dropped\nnext line\n");
  int i = 0;
  int j = 0;
  double r = 0.0;
  double s = 0.0;
  std::string word;
  std::string quoted;
  file.read({i, j, word, r, quoted, s}, "six values");
  EXPECT_EQ(i, 1);
  EXPECT_EQ(j, 2);
  EXPECT_EQ(word, "C1");
  EXPECT_EQ(r, 0.15);
  EXPECT_EQ(quoted, "a 'b' c");
  EXPECT_EQ(s, 7.0);
  std::string_view line;
  EXPECT_TRUE(file.read_line(line));
  EXPECT_EQ(line, "next line");

  // What is not needed is left alone, be it as long as it may or no value at all.
  const std::string word_end(2'000'000, 'w');
  EXPECT_TRUE(read_free(word_end + " 5 x", {word, i}));
  EXPECT_EQ(word, word_end);
  EXPECT_EQ(i, 5);
  double three[3] = {};
  file = in_memory("label 1.0 2.0\n -3.0 junk\nnext");
  file.read_after(1, three, "a row");
  EXPECT_EQ(three[2], -3.0);
  EXPECT_TRUE(file.read_line(line));
  EXPECT_EQ(line, "next");
  EXPECT_FALSE(read_free_after("a b 1.0 2.0", 2, three));
}

TEST(free_form_read, leaves_values_out_at_commas_slashes_and_empty_repeats) {
  const struct {
    const char* from;
    std::array<int, 4> expected;  // 9 where the value stays untouched
  } cases[] = {
      {"1,,3 , 4", {1, 9, 3, 4}},     {",2,,4", {9, 2, 9, 4}},
      {"1 2/3 4", {1, 2, 9, 9}},      {"/", {9, 9, 9, 9}},
      {"1\n,2\n3,\n4", {1, 2, 3, 4}}, {"4*7", {7, 7, 7, 7}},
      {"2*5,1,2", {5, 5, 1, 2}},      {"2* 3 4", {9, 9, 3, 4}},
      {"1 2*,4", {1, 9, 9, 4}},       {"1 1000000000*8 x", {1, 8, 8, 8}},
      {"2147483647*", {9, 9, 9, 9}},
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
  std::string a = "untouched";
  std::string b;
  EXPECT_TRUE(read_free("2*'x y' /", {b, b, a}));
  EXPECT_EQ(b, "x y");
  EXPECT_EQ(a, "untouched");
}

TEST(free_form_read, fails_at_what_is_not_asked_for) {
  int i = 9;
  double r = 9.0;
  std::string t;
  for (const char* from :
       {"", " \n ", "1.0", "a", "2147483648", "0*1", "99999999999*1", "-", "'1'", "1*x", "1;"}) {
    EXPECT_FALSE(read_free(from, {i})) << from;
  }
  for (const char* from : {"", "nan", "1e999", "1.0.", "\"1.0\"", "."})
    EXPECT_FALSE(read_free(from, {r})) << from;
  for (const char* from : {"", "'no end", "'a'b"}) EXPECT_FALSE(read_free(from, {t})) << from;
  EXPECT_FALSE(read_free("\0"sv, {r}));
  EXPECT_EQ(i, 9);
  EXPECT_EQ(r, 9.0);

  input_file file = in_memory("1 2\n  3 b 5\n6\n");
  EXPECT_EQ(
      message_of([&] {
        file.read({i, i, i, i}, "the atoms");
      }),
      "error: cannot read a value\n  in a.out, line 2\n  |   3 b 5\n  |     ^\n  expected: the atoms\n");
  double many[9] = {};
  file = in_memory("1 2\n  3\n");
  EXPECT_EQ(message_of([&] { file.read(many, "nine reals"); }),
            "error: the file ends before all values are read\n  in a.out, line 2\n  |   3\n  expected: nine "
            "reals\n");
  // The outcome is asked for: the line of the failure is taken.
  file = in_memory("1\nx\n7\n");
  EXPECT_FALSE(file.try_read({i, i}));
  EXPECT_TRUE(file.try_read({i}));
  EXPECT_EQ(i, 7);
  EXPECT_FALSE(file.try_read({i}));
}

TEST(fixed_column_read, takes_columns_however_they_are_filled) {
  std::array<double, 5> r = {};
  EXPECT_TRUE(read_fixed("skip  1.500-2.000   123          ", layout("(4x,f7.3,f6.3,3f6.2)"), r));
  EXPECT_EQ(r, (std::array<double, 5>{1.5, -2.0, 1.23, 0.0, 0.0}));
  // A short line counts as filled with blanks; a point in the field goes before the digits of the layout.
  r.fill(9.0);
  EXPECT_TRUE(read_fixed("-12345 -1 1.5D1  2E1 12", layout("(f6.2,f3.2,e6.1,e5.1,i3)"), r));
  EXPECT_EQ(r, (std::array<double, 5>{-123.45, -0.01, 15.0, 2.0, 12.0}));
  EXPECT_TRUE(read_fixed("", layout("(5f9.2)"), r));
  EXPECT_EQ(r, (std::array<double, 5>{}));
  for (const char* field : {"1.2.3", "abcde", "1 2", "- 1.5", "*****", "NaN", ".", "1,2"}) {
    EXPECT_FALSE(read_fixed(field, layout("(f8.2)"), std::span(r).first(1))) << field;
  }
  EXPECT_FALSE(read_fixed("1.0", layout("(f8.2)"), r));
}

TEST(fixed_column_read, goes_over_lines_as_the_layout_starts_again_and_names_a_bad_field) {
  input_file file = in_memory("row 1.0 2.0 x\n 3.0 4.0 x\r\n 5.0\nrow 1.0 **** 3\n");
  std::vector<double> five(5);
  const layout columns("(3x,(2f4.1))");
  file.read_fixed(columns, five, "the block");
  EXPECT_EQ(five, (std::vector<double>{1.0, 2.0, 3.0, 4.0, 5.0}));
  EXPECT_EQ(message_of([&] { file.read_fixed(columns, five, "the block"); }),
            "error: cannot read a value\n  in a.out, line 4\n  | row 1.0 **** 3\n  |        ^\n"
            "  expected: the block\n");
  EXPECT_NE(message_of([&] { file.read_fixed(columns, five, "the block"); }).find("the file ends"),
            std::string::npos);
  EXPECT_THROW(in_memory("a\n\n").read_fixed(layout("(a4)"), five, ""), std::logic_error);
  EXPECT_THROW(in_memory("a\n\n").read_fixed(layout("(4x)"), five, ""), std::logic_error);
}

}  // namespace
}  // namespace vbn
