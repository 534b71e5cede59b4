// The scanner of an input group: splits "&name key(index) = values /" into keys, subscripts and values.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "text/messages.hpp"  // for messages

namespace vbn {

// One subscript of an index: a number alone, or a section first:last:stride of which every part may be
// missing.
struct subscript {
  bool section = false;
  std::optional<int> first, last, stride;
  std::size_t at = 0;  // its place
};

// One value of an assignment.
struct group_value {
  enum class kind { empty, word, quoted };

  kind type = kind::empty;  // `empty` leaves its elements unchanged
  int repeat = 1;           // the number of equal values
  std::string text;         // a word without changes; a quoted text without its quotes
  std::size_t at = 0;       // its place
};

// Walks through the first group of a name in a text, in the notation of the Fortran standard's namelist
// groups. The text must outlive the scanner. Warnings go to `say`. Places ("at") are offsets in the text.
// What cannot be read ends the run with a message that shows the place.
//
// Text before the group is skipped, and a comment there does not open it. Inside, blanks, tabs, line ends and
// comments (from "!" to the end of the line) may separate any two items, but not split a word or a number. A
// quoted text may continue on the next line; the line end is not part of it.
class group_scanner {
 public:
  // Finds "&group" and moves to the place after it. A text without the group ends the run.
  group_scanner(std::string_view file, std::string_view content, std::string_view group, const messages& say);

  // Reads the next key. False at the "/" that closes the group.
  bool next_key();
  // The key read last, in lower case, and its place.
  const std::string& key() const { return key_; }
  std::size_t key_at() const { return key_at_; }

  // After `next_key`: whether an index follows the key. `next_subscript` then reads one subscript after the
  // other; false after the last.
  bool open_index();
  bool next_subscript(subscript& s);
  // Reads the "=".
  void take_equals();
  // Reads the next value of the assignment; false at the next key or at the end of the group. Two commas
  // without a value between them, or "=" and a comma, give an empty value.
  bool next_value(group_value& value);

  // At the closing "/": whether a word continues after it, as in a path without quotes.
  bool closes_inside_word() const;

  // Gives a warning with the line number of the place.
  void warn_at(std::size_t at, const std::string& what) const;
  // Ends the run with a message that shows the line of the place.
  [[noreturn]] void fail_at(std::size_t at, std::string what, std::string expected) const;

 private:
  int line_of(std::size_t at) const;
  char peek(std::size_t at) const { return at < text_.size() ? text_[at] : '\0'; }
  bool ended(std::size_t at) const { return at >= text_.size(); }
  std::size_t after_line(std::size_t at) const;
  std::size_t after_blanks(std::size_t at) const;
  std::size_t after_name(std::size_t at) const;
  std::size_t after_word(std::size_t at) const;
  bool at_key(std::size_t at) const;
  void need_open_group(std::size_t at) const;
  std::optional<int> take_index_number();
  int take_repeat();
  std::string take_quoted();

  std::string_view file_;
  std::string_view text_;
  std::string group_;
  messages say_;
  std::size_t opened_ = 0;  // where the group opens
  std::size_t pos_ = 0;
  std::string key_;
  std::size_t key_at_ = 0;
  bool first_subscript_ = false;
  bool behind_value_ = false;  // a comma ends the value before it and is not an empty value
};

}  // namespace vbn
