// Numbers to text and text to numbers: exact, independent of the locale, and fast.
#pragma once

#include <string>
#include <string_view>

namespace vbn {

inline constexpr int max_width = 10000;  // columns of a field
inline constexpr int max_digits = 400;   // digits after the point

// Each of these writes a number right-justified over a field of `w` columns, filled with blanks before; a
// number that does not fit is shown as asterisks. The exact value of the double is rounded to the nearest
// decimal. Not-a-number is written as NaN and an infinity as Infinity or Inf as the width allows, a negative
// one with its sign; as asterisks where not even that fits.
void write_integer(char* field, int i, int w);                                // iw
void write_fixed(char* field, double r, int w, int d);                        // fw.d
void write_exponent(char* field, double r, int w, int d, char letter = 'E');  // ew.d, dw.d: 0.ddddE+xx
void write_scientific(char* field, double r, int w, int d);                   // esw.d: d.ddddE+xx

// Reads the longest number that begins at `from` and returns its end. Without a number there the result is
// nullptr and the value is unchanged. The forms are those of `to_integer` and `to_real`.
const char* scan_integer(const char* from, const char* to, int& i);
const char* scan_real(const char* from, const char* to, double& r);

// The shortest text that reads back as the same number, for messages.
std::string shortest(double r);

// Conversions of a whole text; false, and the number unchanged, when the text is not exactly one number of
// that kind. An integer is an optional sign and digits within 32 bits. A real is an optional sign, digits, a
// point, and an exponent that begins with E, e, D or d (or with its sign alone). A value beyond the range of
// a double is not a number; one below it gives zero.
bool to_integer(std::string_view a, int& i);
bool to_real(std::string_view a, double& r);

}  // namespace vbn
