// Tests of numbers as text and text as numbers, compared with the C library.
#include "text/number.hpp"  // for write_fixed

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

namespace vbn {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

template <class... Letter>
std::string field(void (*write)(char*, double, int, int, Letter...), double r, int w, int d,
                  Letter... letter) {
  std::string out(static_cast<std::size_t>(w), ' ');
  write(out.data(), r, w, d, letter...);
  return out;
}

std::string right(const std::string& shown, int w) {
  const std::size_t width = static_cast<std::size_t>(w);
  if (shown.size() > width) return std::string(width, '*');
  return std::string(width - shown.size(), ' ') + shown;
}

std::string printed(const char* notation, int digits, double r) {
  char shown[800];
  std::snprintf(shown, sizeof shown, notation, digits, r);
  return shown;
}

// fw.d, d at least 1, by the C library.
std::string plain_fixed(double r, int w, int d) {
  std::string shown = printed("%.*f", d, r);
  const std::size_t zero = shown[0] == '-' ? 1 : 0;
  if (shown.size() > static_cast<std::size_t>(w) && shown[zero] == '0') shown.erase(zero, 1);
  return right(shown, w);
}

// Drops the letter before an exponent of three digits.
std::string without_letter(std::string shown) {
  const std::size_t letter = shown.find('E');
  if (shown.size() - letter == 5) shown.erase(letter, 1);
  return shown;
}

std::string plain_scientific(double r, int w, int d) {
  return right(without_letter(printed("%.*E", d, r)), w);
}

std::string plain_exponent(double r, int w, int d) {
  std::string shown = printed("%.*E", d - 1, r);
  const std::size_t sign = shown[0] == '-' ? 1 : 0;
  const std::size_t letter = shown.find('E');
  const int power = r == 0.0 ? 0 : std::atoi(shown.c_str() + letter + 1) + 1;
  char end[16];
  std::snprintf(end, sizeof end, "E%+03d", power);
  std::string mantissa = shown.substr(sign, letter - sign);
  std::erase(mantissa, '.');
  mantissa.insert(0, 1, '.');
  shown = without_letter(mantissa.append(end));
  if (sign + shown.size() < static_cast<std::size_t>(w)) shown.insert(0, 1, '0');
  if (sign > 0) shown.insert(0, 1, '-');
  return right(shown, w);
}

// Values of every kind that may be close to a tie, a power of ten or the end of a range.
double any_value(std::mt19937_64& random) {
  const auto below = [&](std::uint64_t n) { return static_cast<int>(random() % n); };
  const double sign = below(2) == 0 ? 1.0 : -1.0;
  const double any = std::bit_cast<double>(random());
  const double ties = below(4'000'000) / std::ldexp(1.0, below(14));
  const double near_a_tie =
      std::nextafter(below(4000) / std::ldexp(1.0, below(8)), below(2) == 0 ? 0.0 : 1e9);
  const double near_a_power = std::pow(10.0, below(50) - 30) * (below(2) == 0 ? 1.0 : 1.0 - 1e-7);
  const double decimal = below(1'000'000) * std::pow(10.0, below(18) - 12);
  const double kinds[] = {std::isfinite(any) ? any : 0.0, ties, near_a_tie, near_a_power, decimal};
  return sign * kinds[below(5)];
}

TEST(number, real_fields_are_those_of_the_plain_way_to_the_last_column) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 100'000; ++i) {
    const double r = any_value(random);
    const int d = 1 + static_cast<int>(random() % 12);
    const int w = d + static_cast<int>(random() % 12);
    ASSERT_EQ(field(write_fixed, r, w, d), plain_fixed(r, w, d)) << printed("%.*a", 13, r) << ' ' << w;
    ASSERT_EQ(field(write_scientific, r, w, d), plain_scientific(r, w, d))
        << printed("%.*a", 13, r) << ' ' << w;
    ASSERT_EQ(field(write_exponent, r, w, d, 'E'), plain_exponent(r, w, d))
        << printed("%.*a", 13, r) << ' ' << w;
  }
}

// Forms without a counterpart in the C library: those of gfortran 12.
TEST(number, fields_without_a_digit_that_fits_and_of_nan) {
  EXPECT_EQ(field(write_fixed, 2.5, 3, 0), " 2.");
  EXPECT_EQ(field(write_fixed, 0.3, 1, 0), "*");
  EXPECT_EQ(field(write_exponent, -1.5, 15, 8, 'D'), "-0.15000000D+01");
  EXPECT_EQ(field(write_exponent, 9.99e99, 9, 3, 'E'), "0.999+100");
  EXPECT_EQ(field(write_fixed, not_a_number, 8, 2), "     NaN");
  EXPECT_EQ(field(write_fixed, not_a_number, 2, 1), "**");
  EXPECT_EQ(field(write_scientific, infinity, 13, 6), "     Infinity");
  EXPECT_EQ(field(write_fixed, -infinity, 8, 2), "    -Inf");
}

TEST(number, every_double_reads_as_the_nearest_one) {
  std::mt19937_64 random(6);
  for (int i = 0; i < 200'000; ++i) {
    const double r = any_value(random);
    std::string shown = printed(i % 3 == 0 ? "%.*f" : "%.*e", static_cast<int>(random() % 20), r);
    const double expected = std::strtod(shown.c_str(), nullptr);
    if (i % 2 == 0) std::replace(shown.begin(), shown.end(), 'e', 'D');
    double read = 0.0;
    ASSERT_EQ(to_real(shown, read), std::isfinite(expected)) << shown;
    if (std::isfinite(expected)) {
      ASSERT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(expected)) << shown;
    }
  }
}

TEST(number, forms_of_a_real_and_of_an_integer) {
  const std::pair<std::string, double> good[] = {
      {"+.25", 0.25},    {"5.", 5.0},         {"-7", -7.0},    {"1.5D-02", 0.015},
      {"1.5-3", 1.5e-3}, {"0.0E+99999", 0.0}, {"1e-400", 0.0}, {"0." + std::string(100'000, '3'), 1.0 / 3.0}};
  for (const auto& [form, expected] : good) {
    double r = -77.0;
    EXPECT_TRUE(to_real(form, r)) << form;
    EXPECT_EQ(r, expected) << form;
  }
  for (const char* form : {"", ".", "-", "+-2", "1e", "1d+", "e5", "1.2.3", "1 ", "0x1p3", "nan", "inf",
                           "1e400", "1.d99999999999", "12a", "1,5"}) {
    double r = -77.0;
    EXPECT_FALSE(to_real(form, r)) << form;
    EXPECT_EQ(r, -77.0) << form;
  }
  int i = 0;
  EXPECT_TRUE(to_integer("-2147483648", i));
  EXPECT_EQ(i, std::numeric_limits<int>::min());
  for (const char* form : {"2147483648", "99999999999999999999999", "", "-", "1.0", "1e2", " 1"}) {
    EXPECT_FALSE(to_integer(form, i)) << form;
  }
}

}  // namespace
}  // namespace vbn
