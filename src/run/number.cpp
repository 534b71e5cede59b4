// Numbers to text and text to numbers.
#include "run/number.hpp"  // for put_fixed

#include <array>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace vbn {

namespace {

// The longest rendering: 309 digits before the point, a point and `max_digits` behind it, with its sign.
using digit_buffer = std::array<char, 320 + max_digits>;

void put_stars(std::string& out, int w) { out.append(static_cast<std::size_t>(w), '*'); }

void put_right(std::string& out, std::string_view a, int w) {
  const std::size_t width = static_cast<std::size_t>(w);
  if (a.size() > width) {
    put_stars(out, w);
  } else {
    out.append(width - a.size(), ' ');
    out.append(a);
  }
}

void put_not_finite(std::string& out, double r, int w) {
  if (std::isnan(r)) {
    put_right(out, "NaN", w);
  } else if (std::signbit(r)) {
    put_right(out, w >= 9 ? "-Infinity" : "-Inf", w);
  } else {
    put_right(out, w >= 8 ? "Infinity" : "Inf", w);
  }
}

// d.ddd from to_chars taken apart: the digits, and the power of ten of the first of them.
struct decimal {
  digit_buffer digits;
  int count = 0;
  int exponent = 0;
};

// The magnitude rounded to `count` significant digits.
decimal rounded(double magnitude, int count) {
  decimal a;
  digit_buffer shown;
  const char* end = std::to_chars(shown.data(), shown.data() + shown.size(), magnitude,
                                  std::chars_format::scientific, count - 1)
                        .ptr;
  const char* e = end;
  while (*--e != 'e') {
  }
  std::from_chars(e[1] == '+' ? e + 2 : e + 1, end, a.exponent);
  for (const char* p = shown.data(); p != e; ++p) {
    if (*p != '.') a.digits[static_cast<std::size_t>(a.count++)] = *p;
  }
  return a;
}

// Letter, sign and two digits, or sign and three digits.
void append_exponent(std::string& out, int exponent, char letter) {
  const int e = std::abs(exponent);
  if (e < 100) out += letter;
  out += exponent < 0 ? '-' : '+';
  if (e >= 100) out += static_cast<char>('0' + e / 100);
  out += static_cast<char>('0' + e / 10 % 10);
  out += static_cast<char>('0' + e % 10);
}

bool digit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

void put_integer(std::string& out, int i, int w) {
  std::array<char, 12> shown;
  const char* end = std::to_chars(shown.data(), shown.data() + shown.size(), i).ptr;
  const std::string_view a(shown.data(), static_cast<std::size_t>(end - shown.data()));
  if (w == 0) {
    out.append(a);
  } else {
    put_right(out, a, w);
  }
}

void put_fixed(std::string& out, double r, int w, int d) {
  if (!std::isfinite(r)) return put_not_finite(out, r, w);
  digit_buffer shown;
  char* begin = shown.data();
  char* end = std::to_chars(begin, begin + shown.size() - 1, r, std::chars_format::fixed, d).ptr;
  if (d == 0) *end++ = '.';
  if (end - begin > w && d > 0) {
    // The zero before the point is given up when it alone does not fit.
    char* zero = begin + (*begin == '-' ? 1 : 0);
    if (zero[0] == '0') {
      std::memmove(zero, zero + 1, static_cast<std::size_t>(end - zero - 1));
      --end;
    }
  }
  put_right(out, {begin, static_cast<std::size_t>(end - begin)}, w);
}

void put_exponent(std::string& out, double r, int w, int d, char letter) {
  if (!std::isfinite(r)) return put_not_finite(out, r, w);
  const decimal a = rounded(std::abs(r), d);
  const int needed = (std::signbit(r) ? 1 : 0) + 1 + d + 4;  // without the zero before the point
  if (needed > w) return put_stars(out, w);
  if (needed + 1 < w) out.append(static_cast<std::size_t>(w - needed - 1), ' ');
  if (std::signbit(r)) out += '-';
  if (needed < w) out += '0';
  out += '.';
  out.append(a.digits.data(), static_cast<std::size_t>(a.count));
  append_exponent(out, r == 0.0 ? 0 : a.exponent + 1, letter);
}

void put_scientific(std::string& out, double r, int w, int d) {
  if (!std::isfinite(r)) return put_not_finite(out, r, w);
  const decimal a = rounded(std::abs(r), d + 1);
  const int needed = (std::signbit(r) ? 1 : 0) + 2 + d + 4;
  if (needed > w) return put_stars(out, w);
  out.append(static_cast<std::size_t>(w - needed), ' ');
  if (std::signbit(r)) out += '-';
  out += a.digits[0];
  out += '.';
  out.append(a.digits.data() + 1, static_cast<std::size_t>(d));
  append_exponent(out, a.exponent, 'E');
}

std::string shortest(double r) {
  std::array<char, 32> shown;
  const char* end = std::to_chars(shown.data(), shown.data() + shown.size(), r).ptr;
  return {shown.data(), static_cast<std::size_t>(end - shown.data())};
}

const char* scan_integer(const char* from, const char* to, int& i) {
  const char* p = from;
  const bool negative = p != to && *p == '-';
  if (p != to && (*p == '+' || *p == '-')) ++p;
  if (p == to || !digit(*p)) return nullptr;
  std::int64_t n = 0;
  for (; p != to && digit(*p); ++p) {
    n = 10 * n + (*p - '0');
    if (n > std::int64_t{INT_MAX} + 1) return nullptr;
  }
  if (negative) n = -n;
  if (n > INT_MAX) return nullptr;
  i = static_cast<int>(n);
  return p;
}

const char* scan_real(const char* from, const char* to, double& r) {
  constexpr std::uint64_t exact_integers = std::uint64_t{1} << 53;
  constexpr int exact_powers = 22;
  static constexpr double ten[exact_powers + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  constexpr int far_exponent = 100000;  // beyond every double, however long its digits

  const char* p = from;
  const bool negative = p != to && *p == '-';
  if (p != to && (*p == '+' || *p == '-')) ++p;
  const char* digits = p;
  std::uint64_t mantissa = 0;
  for (; p != to && digit(*p); ++p) mantissa = 10 * mantissa + static_cast<std::uint64_t>(*p - '0');
  std::ptrdiff_t count = p - digits;
  std::ptrdiff_t power = 0;
  if (p != to && *p == '.') {
    const char* point = p++;
    for (; p != to && digit(*p); ++p) mantissa = 10 * mantissa + static_cast<std::uint64_t>(*p - '0');
    power = -(p - point - 1);
    count += p - point - 1;
  }
  if (count == 0) return nullptr;
  const char* mantissa_end = p;
  int exponent = 0;
  if (p != to && (*p == 'E' || *p == 'e' || *p == 'D' || *p == 'd' || *p == '+' || *p == '-')) {
    if (*p != '+' && *p != '-') ++p;
    const bool below = p != to && *p == '-';
    if (p != to && (*p == '+' || *p == '-')) ++p;
    if (p == to || !digit(*p)) return nullptr;
    for (; p != to && digit(*p); ++p) {
      if (exponent < far_exponent) exponent = 10 * exponent + (*p - '0');
    }
    if (below) exponent = -exponent;
  }
  // Both factors are exact doubles, so that the one rounding of their product or quotient gives the nearest
  // double (Clinger 1990).
  power += exponent;
  if (count <= 19 && mantissa <= exact_integers && power >= -exact_powers && power <= exact_powers) {
    double a = static_cast<double>(mantissa);
    a = power < 0 ? a / ten[-power] : a * ten[power];
    r = negative ? -a : a;
    return p;
  }
  std::string plain(digits, mantissa_end);
  plain += 'e';
  plain += std::to_string(exponent);
  double a = 0.0;
  const std::from_chars_result done = std::from_chars(plain.data(), plain.data() + plain.size(), a);
  if (done.ec == std::errc::result_out_of_range || std::isinf(a)) {
    // Where the first digit that counts stands decides on which side of the range the number lies.
    const char* first = digits;
    while (first != mantissa_end && (*first == '0' || *first == '.')) ++first;
    const char* point = digits;
    while (point != mantissa_end && *point != '.') ++point;
    if (point - first + exponent > 0) return nullptr;
    a = 0.0;
  }
  r = negative ? -a : a;
  return p;
}

bool to_integer(std::string_view a, int& i) {
  int read = 0;
  if (scan_integer(a.data(), a.data() + a.size(), read) != a.data() + a.size() || a.empty()) return false;
  i = read;
  return true;
}

bool to_real(std::string_view a, double& r) {
  double read = 0.0;
  if (scan_real(a.data(), a.data() + a.size(), read) != a.data() + a.size() || a.empty()) return false;
  r = read;
  return true;
}

}  // namespace vbn
