// Finds an input group and splits it into words, indices, repeat counts and quoted texts.
#include "input/namelist.hpp"  // for group_scanner

#include <algorithm>

#include "text/number.hpp"  // for to_integer
#include "text/stop.hpp"    // for fail, fail_in
#include "text/words.hpp"   // for is_letter

namespace vbn {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool is_digit(char c) { return c >= '0' && c <= '9'; }

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool is_letter(char c) { return lower(c) >= 'a' && lower(c) <= 'z'; }

bool is_quote(char c) { return c == '\'' || c == '"'; }

// The characters of an index, without its brackets.
bool is_subscript(char c) { return is_digit(c) || c == ',' || c == ':' || c == '+' || c == '-'; }

// Ends a word without quotes.
bool ends_word(char c) { return is_blank(c) || c == ',' || c == '/' || c == '!'; }

}  // namespace

group_scanner::group_scanner(std::string_view file, std::string_view content, std::string_view group,
                             const messages& say)
    : file_(file), text_(content), group_(group), say_(say) {
  std::size_t at = 0;
  while (!ended(at)) {
    if (text_[at] == '!') {
      at = after_line(at);
      continue;
    }
    if (text_[at] == '&') {
      const std::string_view name = text_.substr(at + 1, group_.size());
      const std::size_t behind = at + 1 + group_.size();
      if (std::ranges::equal(name, group_, {}, lower) && (ended(behind) || ends_word(text_[behind]))) {
        opened_ = at;
        pos_ = behind;
        return;
      }
    }
    ++at;
  }
  const bool dollar = content.find("$" + group_) != std::string_view::npos;
  fail_in(file_, "no group &" + group_ + " in the input file",
          "a group that opens with &" + group_ + (dollar ? ", not with $" + group_ + "," : "") +
              " and closes with a /");
}

std::size_t group_scanner::after_line(std::size_t at) const {
  return std::min(text_.size(), text_.find('\n', at));
}

std::size_t group_scanner::after_blanks(std::size_t at) const {
  while (!ended(at)) {
    if (text_[at] == '!') {
      at = after_line(at);
    } else if (is_blank(text_[at])) {
      ++at;
    } else {
      break;
    }
  }
  return at;
}

// The place after the name that begins here; the same place if there is none.
std::size_t group_scanner::after_name(std::size_t at) const {
  if (!is_letter(peek(at))) return at;
  while (is_letter(peek(at)) || is_digit(peek(at)) || peek(at) == '_') ++at;
  return at;
}

std::size_t group_scanner::after_word(std::size_t at) const {
  while (!ended(at) && !ends_word(text_[at])) ++at;
  return at;
}

// Whether a key with its "=" is here; a value without quotes has none after it.
bool group_scanner::at_key(std::size_t at) const {
  const std::size_t behind = after_name(at);
  if (behind == at) return false;
  at = after_blanks(behind);
  if (peek(at) == '(') {
    do {
      at = after_blanks(at + 1);
    } while (is_subscript(peek(at)));
    if (peek(at) != ')') return false;
    at = after_blanks(at + 1);
  }
  return peek(at) == '=';
}

// Ends the run when the group is still open at the end of the file or where another group begins.
void group_scanner::need_open_group(std::size_t at) const {
  if (!ended(at) && text_[at] != '&' && text_[at] != '$') return;
  const std::string_view here = ended(at) ? std::string_view() : text_.substr(at + 1, 3);
  const bool by_end = std::ranges::equal(here, std::string_view("end"), {}, lower);
  fail_at(ended(at) ? opened_ : at, "the group &" + group_ + " is not closed",
          by_end ? "a / in this place" : "a / after its last value");
}

bool group_scanner::next_key() {
  do {
    pos_ = after_blanks(pos_);
  } while (peek(pos_) == ',' && ++pos_ > 0);
  need_open_group(pos_);
  if (text_[pos_] == '/') return false;
  const std::size_t behind = after_name(pos_);
  if (behind == pos_) fail_at(pos_, "a key is missing here", "key = value, or the / that closes the group");
  key_ = text_.substr(pos_, behind - pos_);
  std::ranges::transform(key_, key_.begin(), lower);
  key_at_ = pos_;
  pos_ = behind;
  return true;
}

bool group_scanner::open_index() {
  const std::size_t at = after_blanks(pos_);
  if (peek(at) != '(') return false;
  pos_ = at + 1;
  first_subscript_ = true;
  return true;
}

std::optional<int> group_scanner::take_index_number() {
  pos_ = after_blanks(pos_);
  std::size_t behind = pos_;
  if (peek(behind) == '+' || peek(behind) == '-') ++behind;
  while (is_digit(peek(behind))) ++behind;
  if (behind == pos_) return std::nullopt;
  int number = 0;
  if (!to_integer(text_.substr(pos_, behind - pos_), number)) {
    fail_at(pos_, "cannot read the index of " + key_, "a whole number");
  }
  pos_ = after_blanks(behind);
  return number;
}

bool group_scanner::next_subscript(subscript& s) {
  pos_ = after_blanks(pos_);
  if (!first_subscript_) {
    if (peek(pos_) == ')') {
      ++pos_;
      return false;
    }
    if (peek(pos_) != ',') fail_at(pos_, "cannot read the index of " + key_, "a comma or a closing bracket");
    pos_ = after_blanks(pos_ + 1);
  }
  first_subscript_ = false;
  s = {};
  s.at = pos_;
  s.first = take_index_number();
  if (peek(pos_) == ':') {
    ++pos_;
    s.section = true;
    s.last = take_index_number();
    if (peek(pos_) == ':') {
      ++pos_;
      s.stride = take_index_number();
      if (!s.stride) fail_at(pos_, "cannot read the index of " + key_, "the stride of the section");
    }
  }
  if (!s.section && !s.first) {
    fail_at(pos_, "cannot read the index of " + key_, "a whole number or a section such as 1:4");
  }
  return true;
}

void group_scanner::take_equals() {
  pos_ = after_blanks(pos_);
  if (peek(pos_) != '=') fail_at(pos_, "no = after the key " + key_, key_ + " = value");
  ++pos_;
  behind_value_ = false;
}

// The repeat count of "r*"; 1, without a step forward, if there is none.
int group_scanner::take_repeat() {
  std::size_t behind = pos_;
  while (is_digit(peek(behind))) ++behind;
  if (behind == pos_ || peek(behind) != '*') return 1;
  int repeat = 0;
  if (!to_integer(text_.substr(pos_, behind - pos_), repeat) || repeat < 1) {
    fail_at(pos_, "cannot read the repeat count of a value of " + key_, "a whole number from 1 on");
  }
  pos_ = behind + 1;
  return repeat;
}

std::string group_scanner::take_quoted() {
  const std::size_t begin = pos_;
  const char quote = text_[pos_++];
  std::string held;
  for (;; ++pos_) {
    if (ended(pos_)) {
      fail_at(begin, "a text of " + key_ + " has no closing quote", std::string("a closing ") + quote);
    }
    const char c = text_[pos_];
    if (c == quote) {
      ++pos_;
      if (peek(pos_) != quote) break;
      held += quote;
    } else if (c != '\n' && !(c == '\r' && peek(pos_ + 1) == '\n')) {
      held += c;
    }
  }
  if (!ended(pos_) && !ends_word(text_[pos_])) {
    const bool same_line = text_.substr(begin, pos_ - begin).find('\n') == std::string_view::npos;
    fail_at(same_line ? pos_ : begin,
            same_line ? "no separator after a text of " + key_
                      : "a text of " + key_ + " continues to a quote in a later line",
            same_line ? "a comma, a blank or the end of the line" : "a closing quote");
  }
  return held;
}

bool group_scanner::next_value(group_value& value) {
  for (;; ++pos_) {
    pos_ = after_blanks(pos_);
    if (peek(pos_) != ',') break;
    if (!behind_value_) {
      value = {group_value::kind::empty, 1, "", pos_};
      ++pos_;
      return true;
    }
    behind_value_ = false;
  }
  need_open_group(pos_);
  if (text_[pos_] == '/' || at_key(pos_)) return false;
  value = {group_value::kind::empty, 1, "", pos_};
  value.repeat = take_repeat();
  behind_value_ = true;
  if (is_quote(peek(pos_))) {
    value.type = group_value::kind::quoted;
    value.text = take_quoted();
  } else if (const std::size_t behind = after_word(pos_); behind > pos_) {
    value.type = group_value::kind::word;
    value.text = text_.substr(pos_, behind - pos_);
    pos_ = behind;
  }
  return true;
}

bool group_scanner::closes_inside_word() const {
  return peek(pos_) == '/' && !ended(pos_ + 1) && !ends_word(text_[pos_ + 1]);
}

int group_scanner::line_of(std::size_t at) const {
  return static_cast<int>(std::ranges::count(text_.substr(0, at), '\n')) + 1;
}

void group_scanner::warn_at(std::size_t at, const std::string& what) const {
  say_.warn(std::string(file_) + ", line " + std::to_string(line_of(at)) + ": " + what);
}

void group_scanner::fail_at(std::size_t at, std::string what, std::string expected) const {
  at = std::min(at, text_.size());
  const std::size_t begin = text_.substr(0, at).rfind('\n') + 1;  // npos + 1 is 0
  std::string_view line = text_.substr(begin, after_line(at) - begin);
  if (line.ends_with('\r')) line.remove_suffix(1);
  fail({std::move(what), std::string(file_), line_of(at), std::string(line), static_cast<int>(at - begin) + 1,
        std::move(expected)});
}

}  // namespace vbn
