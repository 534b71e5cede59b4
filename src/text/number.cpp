// Numbers to text and text to numbers.
#include "text/number.hpp"  // for write_fixed

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace vbn {

namespace {

// The longest number: a sign, 309 digits before the point, the point and `max_digits` after it.
using digit_buffer = std::array<char, 320 + max_digits>;

constexpr int exact_powers = 22;  // 10^22 is the last power of ten that a double holds exactly
constexpr std::array<double, exact_powers + 1> ten = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                      1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                      1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

double power_of_ten(int k) { return ten[static_cast<std::size_t>(k)]; }

void fill_with_stars(char* field, int w) { std::memset(field, '*', static_cast<std::size_t>(w)); }

void write_right(char* field, std::string_view a, int w) {
  const int columns = static_cast<int>(a.size());
  if (columns > w) return fill_with_stars(field, w);
  std::copy(a.begin(), a.end(), field + (w - columns));
}

// Not-a-number, and an infinity with as much of its sign and name as the width allows.
void write_not_finite(char* field, double r, int w) {
  if (std::isnan(r)) {
    write_right(field, "NaN", w);
  } else if (std::signbit(r)) {
    write_right(field, w >= 9 ? "-Infinity" : "-Inf", w);
  } else {
    write_right(field, w >= 8 ? "Infinity" : "Inf", w);
  }
}

constexpr std::array<char, 200> digit_pairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

// Writes the last `count` digits of n so that they end before `end`, and removes them from n.
char* digits_before(char* end, std::uint64_t& n, int count) {
  for (; count > 1; count -= 2) {
    end -= 2;
    std::memcpy(end, &digit_pairs[2 * (n % 100)], 2);
    n /= 100;
  }
  if (count == 1) {
    *--end = static_cast<char>('0' + n % 10);
    n /= 10;
  }
  return end;
}

constexpr int highest_power = 2 * exact_powers;  // for scaling by at most two exact factors

double scaled(double magnitude, int power) {
  if (power < 0) return magnitude / power_of_ten(-power);
  if (power <= exact_powers) return magnitude * power_of_ten(power);
  return magnitude * power_of_ten(exact_powers) * power_of_ten(power - exact_powers);
}

// Rounds a number that `scaled` gave to the nearest integer. False where the direction is uncertain: the
// number has at most two rounding errors, so its fraction must be further from one half than these.
bool nearest_integer(double number, std::uint64_t& n) {
  constexpr double most = 1e15;
  constexpr double two_roundings = 0x1p-51;
  if (!(number < most)) return false;
  const std::int64_t whole = static_cast<std::int64_t>(number);
  const double above_half = (number - static_cast<double>(whole)) - 0.5;
  n = static_cast<std::uint64_t>(whole) + (above_half > 0.0 ? 1 : 0);
  return std::abs(above_half) > number * two_roundings;
}

// floor(log10(magnitude)) of a normal number, or one less.
int estimated_power(double magnitude) {
  constexpr int log10_of_2 = 315652;  // in units of 2^-20, rounded down
  const int binary = static_cast<int>(std::bit_cast<std::uint64_t>(magnitude) >> 52) - 1023;
  return (binary * log10_of_2) >> 20;
}

// Writes `count` significant digits of a number that is not negative and returns the power of ten of the
// first.
int significant_digits(char* to, double magnitude, int count) {
  constexpr int most_fast_digits = 14;
  if (magnitude == 0.0) {
    std::memset(to, '0', static_cast<std::size_t>(count));
    return 0;
  }
  int power = estimated_power(magnitude);
  const int scaling = count - 1 - power;
  if (count <= most_fast_digits && scaling > -exact_powers && scaling <= highest_power) {
    // At an exact power of ten both choices give the same digits, so the rounding of `scaled` does not
    // matter.
    if (scaled(magnitude, scaling) >= power_of_ten(count)) ++power;
    std::uint64_t n = 0;
    if (nearest_integer(scaled(magnitude, count - 1 - power), n)) {
      if (n == static_cast<std::uint64_t>(power_of_ten(count))) {
        n /= 10;
        ++power;
      }
      digits_before(to + count, n, count);
      return power;
    }
  }
  digit_buffer shown;
  const char* begin = shown.data();
  const char* end = std::to_chars(shown.data(), shown.data() + shown.size(), magnitude,
                                  std::chars_format::scientific, count - 1)
                        .ptr;
  const char* e = end;
  while (*--e != 'e') {
  }
  to[0] = begin[0];
  if (count > 1) std::copy(begin + 2, e, to + 1);
  std::from_chars(e[1] == '+' ? e + 2 : e + 1, end, power);
  return power;
}

// Letter, sign and two digits, or sign and three digits.
void write_power(char* to, int exponent, char letter) {
  const int e = std::abs(exponent);
  if (e < 100) *to++ = letter;
  *to++ = exponent < 0 ? '-' : '+';
  if (e >= 100) *to++ = static_cast<char>('0' + e / 100);
  std::memcpy(to, &digit_pairs[static_cast<std::size_t>(2 * (e % 100))], 2);
}

// fw.d by the standard library, where the fast way is not certain.
void write_fixed_plain(char* field, double r, int w, int d) {
  digit_buffer shown;
  char* begin = shown.data();
  char* end = std::to_chars(begin, begin + shown.size() - 1, r, std::chars_format::fixed, d).ptr;
  if (d == 0) *end++ = '.';
  const bool negative = *begin == '-';
  if (end - begin > w && d > 0 && begin[negative] == '0') {
    ++begin;
    if (negative) *begin = '-';
  }
  write_right(field, {begin, static_cast<std::size_t>(end - begin)}, w);
}

constexpr std::uint64_t exact_integers = std::uint64_t{1} << 53;
constexpr std::ptrdiff_t most_digits = 19;  // of any integer that fits into 64 bits
constexpr int far_exponent = 100000;        // beyond every double

bool digit(char c) { return c >= '0' && c <= '9'; }

bool begins_exponent(char c) { return c == 'E' || c == 'e' || c == 'D' || c == 'd' || c == '+' || c == '-'; }

// Eight characters at once, as the bytes of one integer (little-endian; Lemire 2018): each byte other than a
// digit sets its highest bit in one of two sums.
bool eight_digits(const char* p, std::uint64_t& bytes) {
  std::memcpy(&bytes, p, sizeof bytes);
  return (((bytes - 0x3030303030303030) | (bytes + 0x4646464646464646)) & 0x8080808080808080) == 0;
}

// The number that eight digits give: digits are joined to pairs, pairs to fours, fours to eight.
std::uint64_t joined(std::uint64_t bytes) {
  bytes -= 0x3030303030303030;
  bytes = bytes * 10 + (bytes >> 8);
  return ((bytes & 0x000000FF000000FF) * (100 + (std::uint64_t{1000000} << 32)) +
          ((bytes >> 16) & 0x000000FF000000FF) * (1 + (std::uint64_t{10000} << 32))) >>
         32;
}

// Appends the digits from p on to n, which wraps around when there are too many.
const char* scan_digits(const char* p, const char* to, std::uint64_t& n) {
  for (; p != to && digit(*p); ++p) n = 10 * n + static_cast<std::uint64_t>(*p - '0');
  return p;
}

// The same, faster for many digits.
const char* scan_fraction(const char* p, const char* to, std::uint64_t& n) {
  std::uint64_t bytes = 0;
  while (std::endian::native == std::endian::little && to - p >= 8 && eight_digits(p, bytes)) {
    n = 100000000 * n + joined(bytes);
    p += 8;
  }
  return scan_digits(p, to, n);
}

const char* scan_exponent(const char* p, const char* to, int& exponent) {
  if (*p != '+' && *p != '-') ++p;
  const bool below = p != to && *p == '-';
  if (p != to) p += *p == '-' || *p == '+';
  const char* digits = p;
  for (; p != to && digit(*p); ++p) {
    if (exponent < far_exponent) exponent = 10 * exponent + (*p - '0');
  }
  if (below) exponent = -exponent;
  return p == digits ? nullptr : p;
}

// The double nearest to the digits and the exponent of a number that ends at `end`; false beyond the range of
// a double.
bool nearest_real(const char* digits, const char* digits_end, const char* end, int exponent, double& a) {
  std::from_chars_result done{};
  if (digits_end == end || *digits_end == 'E' || *digits_end == 'e') {
    done = std::from_chars(digits, end, a);
  } else {
    const std::string plain = std::string(digits, digits_end) + 'e' + std::to_string(exponent);
    done = std::from_chars(plain.data(), plain.data() + plain.size(), a);
  }
  if (done.ec == std::errc() && !std::isinf(a)) return true;
  // The place of the first digit other than 0 says whether the number is too large or too small.
  const char* first = digits;
  while (first != digits_end && (*first == '0' || *first == '.')) ++first;
  const char* point = std::find(digits, digits_end, '.');
  a = 0.0;
  return point - first + exponent <= 0;
}

}  // namespace

void write_integer(char* field, int i, int w) {
  std::array<char, 12> shown{};
  const char* end = std::to_chars(shown.data(), shown.data() + shown.size(), i).ptr;
  write_right(field, {shown.data(), static_cast<std::size_t>(end - shown.data())}, w);
}

void write_fixed(char* field, double r, int w, int d) {
  if (!std::isfinite(r)) return write_not_finite(field, r, w);
  const bool negative = std::signbit(r);
  std::uint64_t n = 0;
  if (d > exact_powers || !nearest_integer(scaled(std::abs(r), d), n)) {
    return write_fixed_plain(field, r, w, d);
  }
  if (d + 1 > w) return fill_with_stars(field, w);
  char* p = digits_before(field + w, n, d);
  *--p = '.';
  if (n == 0) {
    // The zero before the point is left out where it does not fit.
    if (p - field > (negative ? 1 : 0)) {
      *--p = '0';
    } else if (d == 0) {
      return fill_with_stars(field, w);
    }
  }
  while (n > 0) {
    if (p == field) return fill_with_stars(field, w);
    p = digits_before(p, n, 1);
  }
  if (negative) {
    if (p == field) return fill_with_stars(field, w);
    *--p = '-';
  }
}

void write_exponent(char* field, double r, int w, int d, char letter) {
  if (!std::isfinite(r)) return write_not_finite(field, r, w);
  const bool negative = std::signbit(r);
  const int columns = (negative ? 1 : 0) + 1 + d + 4;  // without the zero before the point
  if (columns > w) return fill_with_stars(field, w);
  const bool zero = columns < w;
  char* p = field + (w - columns) - (zero ? 1 : 0);
  if (negative) *p++ = '-';
  if (zero) *p++ = '0';
  *p++ = '.';
  const int power = significant_digits(p, std::abs(r), d);
  write_power(p + d, r == 0.0 ? 0 : power + 1, letter);
}

void write_scientific(char* field, double r, int w, int d) {
  if (!std::isfinite(r)) return write_not_finite(field, r, w);
  const bool negative = std::signbit(r);
  const int columns = (negative ? 1 : 0) + 2 + d + 4;
  if (columns > w) return fill_with_stars(field, w);
  char* p = field + (w - columns);
  if (negative) *p++ = '-';
  const int power = significant_digits(p + 1, std::abs(r), d + 1);
  p[0] = p[1];
  p[1] = '.';
  write_power(p + 2 + d, power, 'E');
}

std::string shortest(double r) {
  std::array<char, 32> shown{};
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

// On the force constants of a checkpoint this takes 28 ns a number, std::from_chars 36; the latter reads
// numbers with more digits than a double holds.
const char* scan_real(const char* from, const char* to, double& r) {
  const char* p = from;
  const bool negative = p != to && *p == '-';
  if (p != to) p += *p == '-' || *p == '+';
  const char* digits = p;
  std::uint64_t mantissa = 0;
  p = scan_digits(p, to, mantissa);
  std::ptrdiff_t count = p - digits;
  std::ptrdiff_t power = 0;
  if (p != to && *p == '.') {
    const char* fraction = p + 1;
    p = scan_fraction(fraction, to, mantissa);
    power = fraction - p;
    count -= power;
  }
  if (count == 0) return nullptr;
  const char* digits_end = p;
  int exponent = 0;
  if (p != to && begins_exponent(*p)) {
    p = scan_exponent(p, to, exponent);
    if (p == nullptr) return nullptr;
  }
  power += exponent;
  double a = 0.0;
  if (count <= most_digits && mantissa <= exact_integers && power >= -exact_powers && power <= exact_powers) {
    // Both factors are exact doubles, so their product or quotient, rounded once, is the nearest double
    // (Clinger 1990).
    const double whole = static_cast<double>(mantissa);
    a = power < 0 ? whole / power_of_ten(static_cast<int>(-power))
                  : whole * power_of_ten(static_cast<int>(power));
  } else if (!nearest_real(digits, digits_end, p, exponent, a)) {
    return nullptr;
  }
  constexpr std::array<double, 2> sign = {
      1.0, -1.0};  // a lookup, since a branch on the sign would be mispredicted
  r = a * sign[negative];
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
