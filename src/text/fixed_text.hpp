// A text of fixed length.
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "text/words.hpp"  // for trim

namespace vbn {

// A text of n characters: a shorter text is filled up with blanks, a longer one is cut. Comparison ignores
// trailing blanks.
template <std::size_t n>
class text {
 public:
  text() { held_.fill(' '); }
  text(std::string_view a) {  // implicit, since texts are assigned everywhere
    held_.fill(' ');
    std::copy_n(a.begin(), std::min(n, a.size()), held_.begin());
  }
  text(const char* a) : text(std::string_view(a)) {}
  text(const std::string& a) : text(std::string_view(a)) {}

  std::string_view full() const { return {held_.data(), n}; }
  std::string_view trimmed() const { return trim(full()); }
  std::string str() const { return std::string(trimmed()); }
  bool blank() const { return trimmed().empty(); }

  friend bool operator==(const text& a, const text& b) { return a.held_ == b.held_; }
  friend bool operator==(const text& a, std::string_view b) { return a.trimmed() == trim(b); }
  friend bool operator==(const text& a, const char* b) { return a == std::string_view(b); }
  friend bool operator==(const text& a, const std::string& b) { return a == std::string_view(b); }

 private:
  std::array<char, n> held_;
};

}  // namespace vbn
