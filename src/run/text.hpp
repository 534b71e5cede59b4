// Texts of fixed length, line layouts, and the files and streams that lines are written to.
#pragma once

#include <algorithm>
#include <array>
#include <cstdio>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vbn {

// Without trailing blanks.
std::string_view trim(std::string_view a);

// Without leading blanks: what stands behind them moves to column 1 (the blanks at the end are left to the
// caller).
std::string_view adjustl(std::string_view a);

// A text of n characters: filled with blanks when what is assigned is shorter, cut when it is longer.
// Comparison ignores trailing blanks.
template <std::size_t n>
class text {
 public:
  text() { held_.fill(' '); }
  text(std::string_view a) {  // implicit: assigning a text is the usual case
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

// One value for a line layout. A text is borrowed: it must outlive the call it is given to.
class value {
 public:
  enum class kind { integer, real, characters };

  value(int i) : kind_(kind::integer), integer_(i) {}
  value(double r) : kind_(kind::real), real_(r) {}
  value(std::string_view t) : kind_(kind::characters), text_(t) {}
  value(const char* t) : value(std::string_view(t)) {}
  value(const std::string& t) : value(std::string_view(t)) {}
  template <std::size_t n>
  value(const text<n>& t) : value(t.full()) {}  // its full length, trailing blanks included

  kind type() const { return kind_; }
  int integer() const { return integer_; }
  double real() const { return real_; }
  std::string_view characters() const { return text_; }

 private:
  kind kind_;
  int integer_ = 0;
  double real_ = 0.0;
  std::string_view text_;
};

// A line layout, parsed once: items, repeat counts and brackets in the notation of the Fortran standard's
// formats (a, aw, iw, i0, fw.d, ew.d, dw.d, esw.d, x, nH, quoted texts, slash). A layout that cannot be
// parsed is an error of the program and throws std::logic_error, as does a value under an item of another
// kind, or one that no item is left for.
class layout {
 public:
  explicit layout(std::string_view notation);

  // Appends to `out` the lines that the values give, each ended by a line feed. When the values run out, the
  // line ends at the first item without one; when values are left, the layout starts again from its last
  // inner bracket.
  void write(std::string& out, std::span<const value> values) const;
  void write(std::string& out, std::initializer_list<value> values) const;
  // The same for a list of reals, such as a row of a matrix; the fast way for data files.
  void write(std::string& out, std::span<const double> values) const;
  // The line that the values give as a text, without its line feed: for names and layouts made at run time.
  std::string line(std::initializer_list<value> values) const;

  // One item of the layout as parsed.
  enum class item_kind { literal, blanks, characters, integer, fixed, exponent, scientific, new_line };
  struct item {
    item_kind kind = item_kind::literal;
    int width = 0;           // columns; 0 for a bare `a` and for i0
    int digits = 0;          // digits after the point
    char letter = 'E';       // the exponent's letter, E or D
    std::string characters;  // of a literal
  };
  // The items in order, repeat counts unrolled; a fixed-column read walks them too.
  const std::vector<item>& items() const { return items_; }
  // The item at which the layout starts again when values are left.
  std::size_t reversion() const { return reversion_; }

 private:
  std::vector<item> items_;
  std::size_t reversion_ = 0;
};

// A text file being written. Opening creates it or replaces what it held. A file that cannot be opened,
// written or closed ends the run with a message that names it.
class output_file {
 public:
  output_file() = default;  // not open; what is written to it is an error of the program
  explicit output_file(std::string name);
  output_file(output_file&&) noexcept;
  output_file& operator=(output_file&&) noexcept;
  output_file(const output_file&) = delete;
  output_file& operator=(const output_file&) = delete;
  ~output_file();  // writes what is held, without a message when that fails

  // One write of the values under the layout.
  void write(const layout& lines, std::initializer_list<value> values = {});
  void write(const layout& lines, std::span<const value> values);
  void write(const layout& lines, std::span<const double> values);
  // A line as it stands.
  void line(std::string_view text);
  // Bytes as they stand, line ends included.
  void raw(std::string_view text);
  // A free-form record: one leading blank, then the values separated by blanks.
  void free_form(std::initializer_list<value> values);

  const std::string& name() const { return name_; }
  // Writes out what is held and closes the file.
  void close();

 private:
  void flush_if_full();
  void flush();

  std::string name_;
  std::FILE* file_ = nullptr;
  std::string held_;
};

// Writes the values under the layout to standard output.
void tell(const layout& lines, std::initializer_list<value> values = {});

// A free-form record on standard output: one leading blank, then the values separated by blanks.
void tell_free(std::initializer_list<value> values);

}  // namespace vbn
