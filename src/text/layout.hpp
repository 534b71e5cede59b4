// Line layouts, to write values and to read fixed columns.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "text/fixed_text.hpp"  // for text

namespace vbn {

// One value for a line layout. A text is not copied: it must outlive the call.
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
  kind kind_ = kind::integer;
  int integer_ = 0;
  double real_ = 0.0;
  std::string_view text_;
};

// A line layout, parsed once: items, repeat counts and brackets in the notation of the Fortran standard's
// formats (a, aw, iw, i0, fw.d, ew.d, dw.d, esw.d, x, nH, quoted texts, slash). A layout that cannot be
// parsed is an error of the program and throws std::logic_error, as does a value whose item is of another
// kind or missing.
class layout {
 public:
  explicit layout(std::string_view notation);

  // Appends the values to `out` as lines, each ended by a line feed. When there are fewer values than items,
  // the line ends at the first item without a value; when values are left, the layout starts again from its
  // last inner bracket.
  void write(std::string& out, std::span<const value> values) const;
  void write(std::string& out, std::initializer_list<value> values) const;
  // The same for a list of reals, such as a row of a matrix; fast, for data files.
  void write(std::string& out, std::span<const double> values) const;
  // The line as a text, without its line feed: for names and layouts built at run time.
  std::string line(std::initializer_list<value> values) const;

  // One item of the layout as parsed.
  enum class item_kind { literal, blanks, characters, integer, fixed, exponent, scientific, new_line };
  struct item {
    item_kind kind = item_kind::literal;
    int width = 0;           // columns; 0 for a bare `a` and for i0
    int digits = 0;          // digits after the point
    char letter = 'E';       // letter of the exponent, E or D
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

// Fixed-column read of one line of reals. A blank field gives 0; a short line is filled up with blanks; a
// field without a point has its last d digits after the point.
bool read_fixed(std::string_view from, const layout& columns, std::span<double> numbers);

// Reads one line of fields from the item at `start` on and returns how many. `spot` is the column, from 1, of
// a field that cannot be read, or 0.
std::size_t read_fields(std::string_view line, const layout& columns, std::size_t start,
                        std::span<double> numbers, int& spot);

}  // namespace vbn
