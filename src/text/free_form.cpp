// Free-form reads.
#include "text/free_form.hpp"  // for target

#include <utility>

#include "text/number.hpp"  // for scan_integer and scan_real

namespace vbn {

namespace {

bool blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool separates(char c) { return blank(c) || c == ',' || c == '/'; }

// A free-form read from a text in which line ends count as blanks.
class free_reader {
 public:
  enum class outcome { read, left_out, ended, bad, out_of_text };

  free_reader(const char* from, const char* to) : at_(from), to_(to) {}

  // The position: after the last value, or where the read failed.
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
          continue;  // a quoted text may continue on the next line; the line end is not part of it
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

  // Moves to the next value: `constant_` is where it begins; for a repeated value it stays.
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
  int repeats_ = 0;            // how often the constant is still to be used
  bool nothing_ = false;       // the repeated constant is empty
  bool behind_value_ = false;  // the next comma belongs to the value before it
};

using outcome = free_reader::outcome;

bool failed(outcome o) { return o == outcome::bad || o == outcome::out_of_text; }

free_read ended(const free_reader& reader, outcome o) {
  return {reader.at(), o == outcome::bad ? bad_value : o == outcome::out_of_text ? out_of_text : nullptr};
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

}  // namespace

free_read read_free_form(std::string_view from, std::initializer_list<target> targets) {
  free_reader reader(from.data(), from.data() + from.size());
  const outcome o = read_all(reader, targets);
  return ended(reader, o);
}

free_read read_free_form(std::string_view from, int words, std::span<double> numbers) {
  free_reader reader(from.data(), from.data() + from.size());
  const outcome o = read_all(reader, words, numbers);
  return ended(reader, o);
}

bool read_free(std::string_view from, std::initializer_list<target> targets) {
  return read_free_form(from, targets).failure == nullptr;
}

bool read_free_after(std::string_view from, int words, std::span<double> numbers) {
  return read_free_form(from, words, numbers).failure == nullptr;
}

}  // namespace vbn
