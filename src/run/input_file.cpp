// Text files taken into memory, and what is read from them.
#include "run/input_file.hpp"  // for input_file

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "run/number.hpp"  // for scan_real

namespace vbn {

namespace {

bool blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool separates(char c) { return blank(c) || c == ',' || c == '/'; }

// A free-form read from a stretch of text, in which line ends count as blanks.
class free_reader {
 public:
  enum class outcome { read, left_out, ended, bad, out_of_text };

  free_reader(const char* from, const char* to) : at_(from), to_(to) {}

  // Where the read stands: behind the last value, or where it failed.
  const char* at() const { return at_; }

  outcome read(int& i) {
    return number(i, [](const char* p, const char* to, int& n) { return scan_integer(p, to, n); });
  }
  outcome read(double& r) {
    return number(r, [](const char* p, const char* to, double& n) { return scan_real(p, to, n); });
  }

  outcome read(std::string& word) {
    const outcome found = find();
    if (found != outcome::read) return found;
    const char* p = constant_;
    std::string held;
    if (*p == '"' || *p == '\'') {
      const char quote = *p++;
      for (;; ++p) {
        if (p == to_) return fail_at(constant_, outcome::bad);
        if (*p == quote) {
          if (p + 1 == to_ || p[1] != quote) break;
          ++p;
        } else if (*p == '\n' || *p == '\r') {
          continue;  // a text between quotes goes on behind a line end, which is no part of it
        }
        held += *p;
      }
      ++p;
      if (p != to_ && !separates(*p)) return fail_at(p, outcome::bad);
    } else {
      while (p != to_ && !separates(*p)) ++p;
      held.assign(constant_, p);
    }
    word = std::move(held);
    at_ = p;
    return outcome::read;
  }

  outcome read(const target& t) {
    switch (t.type()) {
      case target::kind::integer:
        return read(t.integer());
      case target::kind::real:
        return read(t.real());
      case target::kind::characters:
        return read(t.characters());
      case target::kind::skipped:
        break;
    }
    std::string dropped;
    return read(dropped);
  }

 private:
  outcome fail_at(const char* p, outcome why) {
    at_ = p;
    return why;
  }

  // Goes to the next value: `constant_` is where it begins, in the text or again at a repeated one.
  outcome find() {
    if (repeats_ > 0) {
      --repeats_;
      return nothing_ ? outcome::left_out : outcome::read;
    }
    skip_blanks();
    if (behind_value_ && at_ != to_ && *at_ == ',') {
      ++at_;
      skip_blanks();
    }
    behind_value_ = false;
    if (at_ == to_) return outcome::out_of_text;
    if (*at_ == ',') {
      ++at_;
      return outcome::left_out;
    }
    if (*at_ == '/') return outcome::ended;
    behind_value_ = true;
    constant_ = at_;
    nothing_ = false;
    return repeat_count();
  }

  // r* before a constant. The constant itself is read when its kind is known.
  outcome repeat_count() {
    const char* p = at_;
    while (p != to_ && *p >= '0' && *p <= '9') ++p;
    if (p == at_ || p == to_ || *p != '*') return outcome::read;
    int count = 0;
    if (scan_integer(at_, p, count) == nullptr || count == 0) return outcome::bad;
    repeats_ = count - 1;
    constant_ = at_ = p + 1;
    nothing_ = at_ == to_ || separates(*at_);
    return nothing_ ? outcome::left_out : outcome::read;
  }

  template <class T, class scan>
  outcome number(T& n, scan scan_number) {
    const outcome found = find();
    if (found != outcome::read) return found;
    T scanned{};
    const char* p = scan_number(constant_, to_, scanned);
    if (p != nullptr && (p == to_ || separates(*p))) {
      n = scanned;
      at_ = p;
      return outcome::read;
    }
    return fail_at(constant_, outcome::bad);
  }

  void skip_blanks() {
    while (at_ != to_ && blank(*at_)) ++at_;
  }

  const char* at_;
  const char* to_;
  const char* constant_ = nullptr;
  int repeats_ = 0;            // how often the constant still stands for a value
  bool nothing_ = false;       // the repeated constant is empty
  bool behind_value_ = false;  // a comma that comes next belongs to the value before it
};

using outcome = free_reader::outcome;

bool failed(outcome o) { return o == outcome::bad || o == outcome::out_of_text; }

// For messages; nullptr where nothing failed.
const char* what_failed(outcome o) {
  if (o == outcome::bad) return "cannot read a value";
  return o == outcome::out_of_text ? "the file ends before all values are read" : nullptr;
}

outcome read_all(free_reader& from, std::initializer_list<target> targets) {
  for (const target& t : targets) {
    const outcome o = from.read(t);
    if (o == outcome::ended || failed(o)) return o;
  }
  return outcome::read;
}

outcome read_all(free_reader& from, int words, std::span<double> numbers) {
  for (int i = 0; i < words; ++i) {
    const outcome o = from.read(target::skip());
    if (o == outcome::ended || failed(o)) return o;
  }
  for (double& r : numbers) {
    const outcome o = from.read(r);
    if (o == outcome::ended || failed(o)) return o;
  }
  return outcome::read;
}

// A file descriptor that is closed when its owner goes.
struct file_handle {
  int number;
  ~file_handle() {
    if (number >= 0) ::close(number);
  }
};

// One field of a fixed-column read. A field without a point has its last `digits` digits after the point.
bool read_field(std::string_view field, const layout::item& item, double& r) {
  while (!field.empty() && blank(field.front())) field.remove_prefix(1);
  while (!field.empty() && blank(field.back())) field.remove_suffix(1);
  if (field.empty()) {
    r = 0.0;
    return true;
  }
  if (item.kind == layout::item_kind::integer) {
    int i = 0;
    if (!to_integer(field, i)) return false;
    r = i;
    return true;
  }
  if (field.find('.') != std::string_view::npos || item.digits == 0) return to_real(field, r);
  const std::size_t sign = field.front() == '+' || field.front() == '-' ? 1 : 0;
  const std::size_t end = std::min(field.find_first_not_of("0123456789", sign), field.size());
  const std::size_t digits = static_cast<std::size_t>(item.digits);
  std::string pointed(field.substr(0, end));
  if (end - sign < digits) pointed.insert(sign, digits - (end - sign), '0');
  pointed.insert(pointed.size() - digits, 1, '.');
  pointed += field.substr(end);
  return end > sign && to_real(pointed, r);
}

// Reads one line of fields from the item at `start` on and says how many. At a field that cannot be read
// `spot` is the column, from 1, where it begins.
std::size_t read_fields(std::string_view line, const layout& columns, std::size_t start,
                        std::span<double> numbers, int& spot) {
  std::size_t at = 0;
  std::size_t read = 0;
  for (std::size_t i = start; i < columns.items().size() && read < numbers.size(); ++i) {
    const layout::item& item = columns.items()[i];
    const std::size_t width = static_cast<std::size_t>(item.width);
    switch (item.kind) {
      case layout::item_kind::blanks:
        break;
      case layout::item_kind::integer:
      case layout::item_kind::fixed:
      case layout::item_kind::exponent:
      case layout::item_kind::scientific:
        if (!read_field(line.substr(std::min(at, line.size()), width), item, numbers[read])) {
          spot = static_cast<int>(at) + 1;
          return read;
        }
        ++read;
        break;
      default:
        throw std::logic_error("a fixed-column read of reals takes x, f, e and i items");
    }
    at += width;
  }
  spot = 0;
  return read;
}

}  // namespace

input_file::input_file(std::string_view name) {
  std::string why;
  std::optional<input_file> opened = open(name, why);
  if (!opened) {
    fail({"cannot read the file: " + why, std::string(trim(name)), 0, "", 0, "a text file that can be read"});
  }
  *this = std::move(*opened);
}

std::optional<input_file> input_file::try_open(std::string_view name) {
  std::string why;
  return open(name, why);
}

std::optional<input_file> input_file::open(std::string_view name, std::string& why) {
  input_file f;
  f.name_ = trim(name);
  // A FIFO without a writer would block the opening.
  const file_handle handle{::open(f.name_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
  struct stat about;
  if (handle.number < 0 || ::fstat(handle.number, &about) != 0) {
    why = std::strerror(errno);
    return std::nullopt;
  }
  if (!S_ISREG(about.st_mode)) {
    why = S_ISDIR(about.st_mode) ? "it is a folder" : "it is no regular file";
    return std::nullopt;
  }
  // The size is only where the reading starts from: a file is read to its end.
  std::size_t room = static_cast<std::size_t>(about.st_size) + 1;
  f.held_ = std::make_unique_for_overwrite<char[]>(room);
  for (;;) {
    const ssize_t got = ::read(handle.number, f.held_.get() + f.size_, room - f.size_);
    if (got == 0) return f;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      why = std::strerror(errno);
      return std::nullopt;
    }
    f.size_ += static_cast<std::size_t>(got);
    if (f.size_ == room) {
      auto larger = std::make_unique_for_overwrite<char[]>(2 * room);
      std::copy_n(f.held_.get(), f.size_, larger.get());
      f.held_ = std::move(larger);
      room *= 2;
    }
  }
}

input_file input_file::from_memory(std::string_view name, std::string_view content) {
  input_file f;
  f.name_ = name;
  f.size_ = content.size();
  f.held_ = std::make_unique_for_overwrite<char[]>(content.size());
  std::copy(content.begin(), content.end(), f.held_.get());
  return f;
}

int input_file::line_number() const {
  const std::string_view read = content().substr(0, pos_);
  const auto feeds = std::count(read.begin(), read.end(), '\n');
  return static_cast<int>(feeds) + (read.empty() || read.back() == '\n' ? 0 : 1);
}

std::size_t input_file::line_end(std::size_t from) const {
  if (from == size_) return size_;
  const void* feed = std::memchr(held_.get() + from, '\n', size_ - from);
  return feed == nullptr ? size_ : static_cast<std::size_t>(static_cast<const char*>(feed) - held_.get());
}

bool input_file::read_line(std::string_view& line) {
  if (at_end()) return false;
  const std::size_t end = line_end(pos_);
  line = content().substr(pos_, end - pos_);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  pos_ = std::min(end + 1, size_);
  return true;
}

bool input_file::skip_lines(int count) {
  std::string_view skipped;
  for (int i = 0; i < count; ++i) {
    if (!read_line(skipped)) return false;
  }
  return true;
}

void input_file::back_line() {
  if (pos_ == 0) return;
  const std::size_t feed = content().substr(0, pos_ - 1).rfind('\n');
  pos_ = feed == std::string_view::npos ? 0 : feed + 1;
}

void input_file::rewind() { pos_ = 0; }

std::string_view input_file::seek_line_after(std::size_t offset) {
  pos_ = std::min(offset, size_);
  const std::size_t feed = content().substr(0, pos_).rfind('\n');
  pos_ = feed == std::string_view::npos ? 0 : feed + 1;
  std::string_view line;
  read_line(line);
  return line;
}

void input_file::read(std::initializer_list<target> targets, std::string_view expected) {
  free_reader from(held_.get() + pos_, held_.get() + size_);
  const char* failure = what_failed(read_all(from, targets));
  finish_read(from.at(), failure, expected);
}

void input_file::read(std::span<double> numbers, std::string_view expected) {
  read_after(0, numbers, expected);
}

void input_file::read_after(int words, std::span<double> numbers, std::string_view expected) {
  free_reader from(held_.get() + pos_, held_.get() + size_);
  const char* failure = what_failed(read_all(from, words, numbers));
  finish_read(from.at(), failure, expected);
}

bool input_file::try_read(std::initializer_list<target> targets) {
  free_reader from(held_.get() + pos_, held_.get() + size_);
  const outcome o = read_all(from, targets);
  seek_line_after(static_cast<std::size_t>(from.at() - held_.get()));
  return !failed(o);
}

void input_file::read_fixed(const layout& columns, std::span<double> numbers, std::string_view expected) {
  std::size_t start = 0;
  do {
    const std::size_t begin = pos_;
    std::string_view line;
    if (!read_line(line)) fail_at(pos_, what_failed(outcome::out_of_text), expected);
    int spot = 0;
    const std::size_t read = read_fields(line, columns, start, numbers, spot);
    if (spot > 0) {
      fail_at(begin + std::min(static_cast<std::size_t>(spot - 1), line.size()), what_failed(outcome::bad),
              expected);
    }
    if (read == 0 && !numbers.empty())
      throw std::logic_error("a layout has no item for the values to be read");
    numbers = numbers.subspan(read);
    start = columns.reversion();
  } while (!numbers.empty());
}

fault input_file::here(std::string what, std::string expected) const {
  fault f{std::move(what), name_, 0, "", 0, std::move(expected)};
  f.line = line_number();
  if (f.line > 0) {
    const std::size_t end = content()[pos_ - 1] == '\n' ? pos_ - 1 : pos_;
    const std::size_t feed = content().substr(0, end).rfind('\n');
    const std::size_t begin = feed == std::string_view::npos ? 0 : feed + 1;
    f.text = content().substr(begin, end - begin);
  }
  return f;
}

void input_file::finish_read(const char* at, const char* failure, std::string_view expected) {
  const std::size_t spot = static_cast<std::size_t>(at - held_.get());
  if (failure != nullptr) fail_at(spot, failure, expected);
  seek_line_after(spot);
}

void input_file::fail_at(std::size_t spot, const char* what, std::string_view expected) {
  const std::string_view line = seek_line_after(spot);
  fault f = here(what, std::string(expected));
  if (spot < size_) {
    f.column = static_cast<int>(spot - static_cast<std::size_t>(line.data() - held_.get())) + 1;
  }
  fail(f);
}

bool read_free(std::string_view from, std::initializer_list<target> targets) {
  free_reader reader(from.data(), from.data() + from.size());
  return !failed(read_all(reader, targets));
}

bool read_free_after(std::string_view from, int words, std::span<double> numbers) {
  free_reader reader(from.data(), from.data() + from.size());
  return !failed(read_all(reader, words, numbers));
}

bool read_fixed(std::string_view from, const layout& columns, std::span<double> numbers) {
  int spot = 0;
  return read_fields(from, columns, 0, numbers, spot) == numbers.size();
}

}  // namespace vbn
