// Numbers to text and text to numbers: exact, independent of the locale, and fast.
#pragma once

#include <string>
#include <string_view>

namespace vbn {

inline constexpr int max_width = 10000;  // columns of a field
inline constexpr int max_digits = 400;   // digits after the point

// Each of these writes a number right-justified over a field of `w` columns, which holds blanks; a number
// that does not fit fills them with asterisks. Rounding is to the nearest decimal of the exact value held.
// Not-a-number shows as NaN and an infinity as Infinity or Inf as the width allows, with the minus sign of a
// negative one, in asterisks where not even that fits.
void write_integer(char* field, int i, int w);                                // iw
void write_fixed(char* field, double r, int w, int d);                        // fw.d
void write_exponent(char* field, double r, int w, int d, char letter = 'E');  // ew.d, dw.d: 0.ddddE+xx
void write_scientific(char* field, double r, int w, int d);                   // esw.d: d.ddddE+xx

// The number that begins at `from`, which ends where no more of it follows: the end of the number, or nullptr
// and the value untouched when none stands there. The forms are those of `to_integer` and `to_real`.
const char* scan_integer(const char* from, const char* to, int& i);
const char* scan_real(const char* from, const char* to, double& r);

// The shortest text that reads back as the same number, for messages.
std::string shortest(double r);

// Whole-text conversions; false, and the number untouched, when the text is not wholly one number of that
// kind. An integer is an optional sign and digits within 32 bits. A real is an optional sign, digits, a
// point, and an exponent begun with E, e, D or d (or with its sign alone); a value beyond the range of a
// double is no number, one below it reads as zero.
bool to_integer(std::string_view a, int& i);
bool to_real(std::string_view a, double& r);

}  // namespace vbn
