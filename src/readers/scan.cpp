// Scanners that search the whole content for a word and then check the line around each hit.
#include "readers/scan.hpp"  // for search_width

#include <algorithm>
#include <cstring>

#include "text/words.hpp"  // for word_of, del_space, is_number, is_letter

namespace vbn {

namespace {

constexpr std::size_t none = std::string_view::npos;

std::size_t find_word(std::string_view content, std::string_view word, std::size_t from) {
  const void* hit = memmem(content.data() + from, content.size() - from, word.data(), word.size());
  return hit == nullptr ? none : static_cast<std::size_t>(static_cast<const char*>(hit) - content.data());
}

std::size_t find_char(std::string_view content, char c, std::size_t from) {
  if (from >= content.size()) return none;
  const void* hit = std::memchr(content.data() + from, c, content.size() - from);
  return hit == nullptr ? none : static_cast<std::size_t>(static_cast<const char*>(hit) - content.data());
}

// The last `c` before `end`.
std::size_t find_char_before(std::string_view content, char c, std::size_t end) {
  const void* hit = memrchr(content.data(), c, end);
  return hit == nullptr ? none : static_cast<std::size_t>(static_cast<const char*>(hit) - content.data());
}

// First byte of the line that holds the byte at `at`.
std::size_t line_begin(std::string_view content, std::size_t at) {
  return find_char_before(content, '\n', at) + 1;  // none + 1 is 0, the first line
}

// The line feed after the byte at `at`, or the end of the content. After a hit too far right in a line the
// search continues in the next line.
std::size_t line_end(std::string_view content, std::size_t at) {
  return std::min(find_char(content, '\n', at), content.size());
}

// The byte after the word that starts at `from`, blanks ignored; none if it does not start there. A word
// holds no line feed, so it never runs into the next line.
std::size_t match_without_blanks(std::string_view content, std::size_t from, std::string_view word) {
  std::size_t at = from;
  for (const char c : word) {
    while (at < content.size() && content[at] == ' ') ++at;
    if (at == content.size() || content[at] != c) return none;
    ++at;
  }
  return at;
}

// The same without ignoring blanks.
std::size_t match_as_is(std::string_view content, std::size_t from, std::string_view word) {
  return content.substr(from, word.size()) == word ? from + word.size() : none;
}

bool stop_behind(input_file& file, std::size_t at, std::string_view& line) {
  line = file.seek_line_after(at);
  return true;
}

bool stop_at_end(input_file& file, std::string_view& line) {
  if (!file.content().empty()) line = file.seek_line_after(file.content().size() - 1);
  return false;
}

// The last line before the byte at `end` in which `match` finds the word, searched from there.
bool search_last(input_file& file, std::string_view word, std::string_view& line, std::size_t end,
                 std::size_t (*match)(std::string_view, std::size_t, std::string_view)) {
  const std::string_view content = file.content().substr(0, end);
  for (std::size_t at = content.size(); (at = find_char_before(content, word.front(), at)) != none;) {
    const std::size_t word_end = match(content, at, word);
    if (word_end == none) continue;
    const std::size_t begin = line_begin(content, at);
    if (word_end - begin <= search_width) return stop_behind(file, at, line);
    at = std::min(at, begin + search_width);
  }
  return stop_at_end(file, line);
}

}  // namespace

bool search_word(input_file& file, int column, std::string_view word, std::string_view& line) {
  const std::string_view content = file.content();
  const auto first = static_cast<std::size_t>(column - 1);
  for (std::size_t at = file.position(); (at = find_word(content, word, at)) != none;) {
    const std::size_t begin = line_begin(content, at);
    if (at == begin + first) return stop_behind(file, at, line);
    at = at < begin + first ? at + 1 : line_end(content, at);
  }
  return stop_at_end(file, line);
}

bool search_word_free(input_file& file, std::string_view word, std::string_view& line, std::size_t width) {
  const std::string_view content = file.content();
  for (std::size_t at = file.position(); (at = find_word(content, word, at)) != none;) {
    if (at + word.size() - line_begin(content, at) <= width) return stop_behind(file, at, line);
    at = line_end(content, at);
  }
  return stop_at_end(file, line);
}

bool search_word_free_last(input_file& file, std::string_view word, std::string_view& line) {
  return search_last(file, word, line, none, match_as_is);
}

bool search_word_del_space(input_file& file, std::string_view word, std::string_view& line) {
  const std::string_view content = file.content();
  const std::string letters = del_space(word);
  for (std::size_t at = file.position(); (at = find_char(content, letters.front(), at)) != none;) {
    const std::size_t end = match_without_blanks(content, at, letters);
    if (end != none && end - line_begin(content, at) <= search_width) return stop_behind(file, at, line);
    at = end == none ? at + 1 : line_end(content, at);
  }
  return stop_at_end(file, line);
}

bool search_word_last_del_space(input_file& file, std::string_view word, std::string_view& line,
                                std::size_t end) {
  return search_last(file, del_space(word), line, end, match_without_blanks);
}

bool search_word_first_number(input_file& file, std::string_view& line) {
  while (file.read_line(line)) {
    if (is_number(word_of(line.substr(0, search_width), 1))) return true;
  }
  return false;
}

bool search_word_first_letter(input_file& file, std::string_view& line) {
  while (file.read_line(line)) {
    if (is_letter(word_of(line.substr(0, search_width), 1).substr(0, 1))) return true;
  }
  return false;
}

}  // namespace vbn
