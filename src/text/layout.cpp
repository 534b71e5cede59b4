// Line layouts: parsing of their notation, writing of lines, reading of fixed columns.
#include "text/layout.hpp"  // for layout

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <utility>

#include "text/number.hpp"  // for write_fixed

namespace vbn {

namespace {

constexpr int max_items = 4000000;  // items with all repeat counts unrolled
constexpr int max_depth = 50;       // levels of nested brackets

using item = layout::item;
using item_kind = layout::item_kind;

// Walks the notation once, from left to right.
class parser {
 public:
  explicit parser(std::string_view notation) : notation_(notation) {}

  void parse() {
    if (next() != '(') bad("a layout must begin with a bracket");
    ++at_;
    list(0);
    if (next() != '\0') bad("there is text after the last bracket");
  }

  std::vector<item> items;
  std::size_t reversion = 0;

 private:
  [[noreturn]] void bad(const char* why) const {
    throw std::logic_error("layout " + std::string(notation_) + ": " + why + ", at character " +
                           std::to_string(at_ + 1));
  }

  // The next character other than a blank, in lower case; NUL at the end.
  char next() {
    while (at_ < notation_.size() && notation_[at_] == ' ') ++at_;
    if (at_ == notation_.size()) return '\0';
    const char c = notation_[at_];
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }

  // A number of at most `limit`, or -1 if there is none here.
  int number(int limit) {
    if (next() < '0' || next() > '9') return -1;
    int n = 0;
    for (; at_ < notation_.size() && notation_[at_] >= '0' && notation_[at_] <= '9'; ++at_) {
      n = 10 * n + (notation_[at_] - '0');
      if (n > limit) bad("a number is too large");
    }
    return n;
  }

  void add(const item& a, int count) {
    if (items.size() + static_cast<std::size_t>(count) > max_items) bad("too many items");
    items.insert(items.end(), static_cast<std::size_t>(count), a);
  }

  void add_literal(std::string_view characters) {
    item a;
    a.characters = characters;
    add(a, 1);
  }

  // The items up to the closing bracket. A comma may be missing anywhere.
  void list(int depth) {
    for (;;) {
      const char c = next();
      if (c == ')') {
        ++at_;
        return;
      }
      if (c == ',') {
        ++at_;
      } else if (c == '"' || c == '\'') {
        quoted();
      } else {
        counted(depth);
      }
    }
  }

  void quoted() {
    const char quote = notation_[at_++];
    std::string characters;
    for (;; ++at_) {
      if (at_ == notation_.size()) bad("a quote is missing");
      if (notation_[at_] == quote) {
        if (at_ + 1 == notation_.size() || notation_[at_ + 1] != quote) break;
        ++at_;
      }
      characters += notation_[at_];
    }
    ++at_;
    add_literal(characters);
  }

  // An item that may have a repeat count before it.
  void counted(int depth) {
    const int given = number(max_items);
    if (given == 0) bad("a repeat count is zero");
    const int count = given < 0 ? 1 : given;
    item a;
    const char c = next();
    if (c != '\0') ++at_;
    switch (c) {
      case 'x':
        a.kind = item_kind::blanks;
        a.width = count;
        return add(a, 1);
      case '/':
        a.kind = item_kind::new_line;
        return add(a, count);
      case 'h':
        if (given < 0 || notation_.size() - at_ < static_cast<std::size_t>(count)) bad("text is missing");
        add_literal(notation_.substr(at_, static_cast<std::size_t>(count)));
        at_ += static_cast<std::size_t>(count);
        return;
      case '"':
      case '\'': {
        --at_;
        const std::size_t first = items.size();
        quoted();
        return repeat(first, count);
      }
      case '(': {
        if (depth == max_depth) bad("too many nested brackets");
        const std::size_t first = items.size();
        list(depth + 1);
        repeat(first, count);
        if (depth == 0) reversion = first;
        return;
      }
      default:
        value_item(c, count);
    }
  }

  // The rest of an item that takes a value, after its letter.
  void value_item(char letter, int count) {
    item a;
    switch (letter) {
      case 'a':
        a.kind = item_kind::characters;
        a.width = number(max_width);
        if (a.width == 0) bad("a text has no columns");
        if (a.width < 0) a.width = 0;
        return add(a, count);
      case 'i':
        a.kind = item_kind::integer;
        a.width = number(max_width);
        if (a.width < 0) bad("an integer has no width");
        return add(a, count);
      case 'f':
        a.kind = item_kind::fixed;
        break;
      case 'd':
        a.kind = item_kind::exponent;
        a.letter = 'D';
        break;
      case 'e':
        a.kind = item_kind::exponent;
        if (next() == 's') {
          a.kind = item_kind::scientific;
          ++at_;
        }
        break;
      default:
        bad("an item is unknown");
    }
    real_item(a, count);
  }

  void real_item(item& a, int count) {
    a.width = number(max_width);
    if (a.width < 1 || next() != '.') bad("a real has no width or no point");
    ++at_;
    a.digits = number(max_digits);
    if (a.digits < (a.kind == item_kind::exponent ? 1 : 0)) bad("a real has no digits");
    add(a, count);
  }

  // Repeats the items added since `first`, so that they are there `count` times.
  void repeat(std::size_t first, int count) {
    const std::size_t size = items.size() - first;
    if (size > 0 && static_cast<std::size_t>(count) > (max_items - first) / size) bad("too many items");
    items.reserve(first + size * static_cast<std::size_t>(count));
    for (std::size_t i = size; i < size * static_cast<std::size_t>(count); ++i) {
      items.push_back(items[first + i - size]);
    }
  }

  std::string_view notation_;
  std::size_t at_ = 0;
};

constexpr std::size_t integer_columns = 11;  // at most, of an integer under i0

[[noreturn]] void misfit() { throw std::logic_error("a value does not fit the kind of its layout item"); }

// Each `put` writes one value over blanks and returns the end of its columns.
char* put(char* field, const item& a, double r) {
  switch (a.kind) {
    case item_kind::fixed:
      write_fixed(field, r, a.width, a.digits);
      break;
    case item_kind::exponent:
      write_exponent(field, r, a.width, a.digits, a.letter);
      break;
    case item_kind::scientific:
      write_scientific(field, r, a.width, a.digits);
      break;
    default:
      misfit();
  }
  return field + a.width;
}

char* put(char* field, const item& a, int i) {
  if (a.kind != item_kind::integer) misfit();
  if (a.width == 0) return std::to_chars(field, field + integer_columns, i).ptr;
  write_integer(field, i, a.width);
  return field + a.width;
}

char* put(char* field, const item& a, std::string_view shown) {
  if (a.kind != item_kind::characters) misfit();
  if (a.width == 0) return std::copy(shown.begin(), shown.end(), field);
  const std::size_t width = static_cast<std::size_t>(a.width);
  if (shown.size() < width) field += width - shown.size();
  return std::copy_n(shown.begin(), std::min(shown.size(), width), field);
}

char* put(char* field, const item& a, const value& v) {
  switch (v.type()) {
    case value::kind::integer:
      return put(field, a, v.integer());
    case value::kind::real:
      return put(field, a, v.real());
    case value::kind::characters:
      break;
  }
  return put(field, a, v.characters());
}

// Columns of the items when each has a value, without those of texts of variable length.
std::size_t columns(std::span<const item> items) {
  std::size_t n = 0;
  for (const item& a : items) {
    n += a.characters.size() + static_cast<std::size_t>(a.width);
    if (a.kind == item_kind::integer && a.width == 0) n += integer_columns;
    if (a.kind == item_kind::new_line) ++n;
  }
  return n;
}

std::size_t text_columns(std::span<const value> values) {
  std::size_t n = 0;
  for (const value& v : values) n += v.characters().size();
  return n;
}

std::size_t text_columns(std::span<const double>) { return 0; }

// Each pass over the items reserves its columns as blanks and then writes the values into them.
template <class T>
void write_values(std::string& out, std::span<const item> items, std::size_t reversion,
                  std::span<const T> values) {
  std::size_t room = columns(items) + 1;
  for (;;) {
    const std::size_t begin = out.size();
    out.append(room + text_columns(values.first(std::min(values.size(), items.size()))), ' ');
    char* p = out.data() + begin;
    std::size_t used = 0;
    for (const item& a : items) {
      if (a.kind == item_kind::literal) {
        p = std::copy(a.characters.begin(), a.characters.end(), p);
      } else if (a.kind == item_kind::blanks) {
        p += a.width;
      } else if (a.kind == item_kind::new_line) {
        *p++ = '\n';
      } else if (used == values.size()) {
        break;
      } else {
        p = put(p, a, values[used++]);
      }
    }
    *p++ = '\n';
    out.resize(static_cast<std::size_t>(p - out.data()));
    if (used == values.size()) return;
    if (used == 0) throw std::logic_error("a layout has no item for the values that are left");
    values = values.subspan(used);
    if (reversion > 0) {
      items = items.subspan(std::exchange(reversion, 0));
      room = columns(items) + 1;
    }
  }
}

bool blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// One field of a fixed-column read. A field without a point has its last `digits` digits after the point.
bool read_field(std::string_view field, const item& a, double& r) {
  while (!field.empty() && blank(field.front())) field.remove_prefix(1);
  while (!field.empty() && blank(field.back())) field.remove_suffix(1);
  if (field.empty()) {
    r = 0.0;
    return true;
  }
  if (a.kind == item_kind::integer) {
    int i = 0;
    if (!to_integer(field, i)) return false;
    r = i;
    return true;
  }
  if (field.find('.') != std::string_view::npos || a.digits == 0) return to_real(field, r);
  const std::size_t sign = field.front() == '+' || field.front() == '-' ? 1 : 0;
  const std::size_t end = std::min(field.find_first_not_of("0123456789", sign), field.size());
  const std::size_t digits = static_cast<std::size_t>(a.digits);
  std::string pointed(field.substr(0, end));
  if (end - sign < digits) pointed.insert(sign, digits - (end - sign), '0');
  pointed.insert(pointed.size() - digits, 1, '.');
  pointed += field.substr(end);
  return end > sign && to_real(pointed, r);
}

}  // namespace

layout::layout(std::string_view notation) {
  parser p(notation);
  p.parse();
  items_ = std::move(p.items);
  reversion_ = p.reversion;
}

void layout::write(std::string& out, std::span<const value> values) const {
  write_values(out, items_, reversion_, values);
}

void layout::write(std::string& out, std::initializer_list<value> values) const {
  write(out, std::span<const value>(values.begin(), values.size()));
}

void layout::write(std::string& out, std::span<const double> values) const {
  write_values(out, items_, reversion_, values);
}

std::string layout::line(std::initializer_list<value> values) const {
  std::string out;
  write(out, values);
  out.pop_back();
  return out;
}

std::size_t read_fields(std::string_view line, const layout& columns, std::size_t start,
                        std::span<double> numbers, int& spot) {
  std::size_t at = 0;
  std::size_t read = 0;
  for (std::size_t i = start; i < columns.items().size() && read < numbers.size(); ++i) {
    const item& a = columns.items()[i];
    const std::size_t width = static_cast<std::size_t>(a.width);
    switch (a.kind) {
      case item_kind::blanks:
        break;
      case item_kind::integer:
      case item_kind::fixed:
      case item_kind::exponent:
      case item_kind::scientific:
        if (!read_field(line.substr(std::min(at, line.size()), width), a, numbers[read])) {
          spot = static_cast<int>(at) + 1;
          return read;
        }
        ++read;
        break;
      default:
        throw std::logic_error("a fixed-column read of reals allows only x, f, e and i items");
    }
    at += width;
  }
  spot = 0;
  return read;
}

bool read_fixed(std::string_view from, const layout& columns, std::span<double> numbers) {
  int spot = 0;
  return read_fields(from, columns, 0, numbers, spot) == numbers.size();
}

}  // namespace vbn
