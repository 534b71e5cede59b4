// Blanks, words and names within a line of text.
#include "text/words.hpp"  // for the routines

#include <algorithm>

namespace vbn {

namespace {

bool is_letter_char(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

std::string_view trim(std::string_view a) {
  while (!a.empty() && a.back() == ' ') a.remove_suffix(1);
  return a;
}

std::string_view adjustl(std::string_view a) {
  while (!a.empty() && a.front() == ' ') a.remove_prefix(1);
  return a;
}

int number_of_words(std::string_view words) {
  int n = 0;
  while (!(words = adjustl(words)).empty()) {
    words.remove_prefix(std::min(words.find(' '), words.size()));
    ++n;
  }
  return n;
}

std::string_view word_of(std::string_view line, int k) {
  std::string_view rest = adjustl(line);
  for (int skipped = 1; skipped < k; ++skipped) {
    rest.remove_prefix(std::min(rest.find(' '), rest.size()));
    rest = adjustl(rest);
  }
  return rest.substr(0, rest.find(' '));
}

std::string del_space(std::string_view a) {
  std::string b(a);
  std::erase(b, ' ');
  return b;
}

bool is_number(std::string_view a) {
  return !a.empty() && std::all_of(a.begin(), a.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool is_letter(std::string_view a) { return !a.empty() && std::all_of(a.begin(), a.end(), is_letter_char); }

std::string name_base(std::string_view path) {
  path = trim(adjustl(path));
  return std::string(path.substr(path.rfind('/') + 1));  // none + 1 is 0, the whole text
}

std::string name_main(std::string_view path) {
  const std::string base = name_base(path);
  return base.substr(0, base.rfind('.'));
}

std::string lowercase(std::string_view a) {
  std::string b(a);
  for (char& c : b) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return b;
}

}  // namespace vbn
