// Tests of the line scanners and the small text routines.
#include "readers/scan.hpp"  // for the scanners

#include <gtest/gtest.h>

#include <string>

namespace vbn {
namespace {

input_file file_of(std::string_view content) { return input_file::from_memory("f", content); }

TEST(scan, a_word_in_columns_matches_neither_beside_them_nor_as_a_part_of_them) {
  std::string_view line;
  input_file file = file_of(" MOLPRO\nMOLPRO\n MOLPROX\n  MOLPRO MOLPRO\n MOLPRO  tail\nend\n");
  ASSERT_TRUE(search_word(file, 2, 8, "MOLPRO", line));  // a blank in the last column does not count
  EXPECT_EQ(line, " MOLPRO");
  ASSERT_TRUE(search_word(file, 2, 8, "MOLPRO", line));
  EXPECT_EQ(line, " MOLPRO  tail");
  EXPECT_FALSE(search_word(file, 2, 8, "MOLPRO", line));
  EXPECT_TRUE(file.at_end());
  input_file lower = file_of(" molpro\n");
  EXPECT_FALSE(search_word(lower, 2, 7, "MOLPRO", line));
}

TEST(scan, search_word_starts_with_the_very_next_line_and_stands_behind_the_one_found) {
  std::string_view line;
  input_file file = file_of("a word\r\na word\nlast\n");
  ASSERT_TRUE(search_word_free(file, "word", line));
  EXPECT_EQ(line, "a word");
  EXPECT_EQ(file.line_number(), 1);
  ASSERT_TRUE(search_word(file, 3, 6, "word", line));
  EXPECT_EQ(file.line_number(), 2);
  ASSERT_TRUE(file.read_line(line));
  EXPECT_EQ(line, "last");
}

TEST(scan, a_word_behind_column_200_is_not_seen_and_hides_no_later_line) {
  const std::string far = std::string(198, '.') + "word";
  std::string_view line;
  input_file file = file_of(far + " word word\nword\n");
  ASSERT_TRUE(search_word_free(file, "word", line));
  EXPECT_EQ(file.line_number(), 2);
  file.rewind();
  ASSERT_TRUE(search_word_free(file, "word", line, 500));
  EXPECT_EQ(file.line_number(), 1);
  input_file last = file_of("word\n" + std::string(196, '.') + "word\n" + far + "word\n");
  ASSERT_TRUE(search_word_free_last(last, "word", line));
  EXPECT_EQ(last.line_number(), 2);
  ASSERT_TRUE(search_word_last_del_space(last, "w o r d", line));
  EXPECT_EQ(last.line_number(), 2);
}

TEST(scan, the_last_line_is_found_whatever_was_read_before_and_none_leaves_the_file_at_its_end) {
  std::string_view line;
  input_file file = file_of("No. 1\nNo. 2 No. 3\nother\n");
  ASSERT_TRUE(file.skip_lines(3));
  ASSERT_TRUE(search_word_free_last(file, "No.", line));
  EXPECT_EQ(line, "No. 2 No. 3");
  EXPECT_EQ(file.line_number(), 2);
  EXPECT_FALSE(search_word_free_last(file, "none", line));
  EXPECT_TRUE(file.at_end());
}

TEST(scan, blanks_within_a_heading_do_not_matter_but_line_ends_do) {
  std::string_view line;
  const std::string heading = " Center     Atomic      Atomic             Coordinates (Angstroms)";
  input_file file = file_of("Center Atomic\nAtomic Coordinates\n" + heading + "\n" + heading + " last\n");
  ASSERT_TRUE(search_word_del_space(file, "Center Atomic Atomic Coordinates", line));
  EXPECT_EQ(line, heading);
  ASSERT_TRUE(search_word_last_del_space(file, "Center Atomic Atomic Coordinates", line));
  EXPECT_EQ(line, heading + " last");
}

TEST(scan, first_number_and_first_letter_look_at_the_first_word_only) {
  std::string_view line;
  input_file file = file_of("\n -1 2\n 1.5\n x 1\n 12 C\n ---\n C 1\n");
  ASSERT_TRUE(search_word_first_number(file, line));
  EXPECT_EQ(line, " 12 C");
  ASSERT_TRUE(search_word_first_letter(file, line));
  EXPECT_EQ(line, " C 1");
  EXPECT_FALSE(search_word_first_number(file, line));
}

TEST(scan, an_empty_file_and_one_without_a_last_line_end_are_searched_to_their_end) {
  std::string_view line;
  input_file empty = file_of("");
  EXPECT_FALSE(search_word_free(empty, "a", line));
  EXPECT_FALSE(search_word_last_del_space(empty, "a", line));
  EXPECT_FALSE(search_word(empty, 1, 1, "a", line));
  input_file open = file_of("x\n  ab");
  EXPECT_TRUE(search_word(open, 3, 5, "ab", line));
  EXPECT_EQ(line, "  ab");
}

TEST(scan, words_are_separated_by_blanks_alone) {
  EXPECT_EQ(number_of_words("  a  b,c\td  "), 2);
  EXPECT_EQ(number_of_words("   "), 0);
  EXPECT_EQ(word_of("  a  bc d", 2), "bc");
  EXPECT_EQ(word_of("a", 2), "");
  EXPECT_EQ(del_space(" a b c "), "abc");
}

TEST(scan, a_number_is_digits_alone) {
  EXPECT_TRUE(is_number(" 12 "));
  for (const char* no : {"-12", "1.5", "", "1 2", "12a"}) EXPECT_FALSE(is_number(no)) << no;
  EXPECT_TRUE(is_letter(" Cl "));
  for (const char* no : {"", "C1", "C l", "-"}) EXPECT_FALSE(is_letter(no)) << no;
}

TEST(scan, name_of_a_sibling_file_loses_its_folder_and_its_last_extension_only) {
  EXPECT_EQ(name_main("dir/mol.opt.log"), "mol.opt");
  EXPECT_EQ(name_main(" /a.b/mol "), "mol");
  EXPECT_EQ(name_base("dir/sub/mol.log"), "mol.log");
}

}  // namespace
}  // namespace vbn
