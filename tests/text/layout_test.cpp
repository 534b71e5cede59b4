// Tests of line layouts: every layout in use parses, and lines come out column by column.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "text/layout.hpp"  // for layout, value

namespace vbn {
namespace {

std::string written(const char* notation, std::initializer_list<value> values) {
  std::string out;
  layout(notation).write(out, values);
  return out;
}

TEST(layout, values_are_in_their_columns_and_a_line_ends_at_the_first_item_without_one) {
  const struct {
    const char* notation;
    std::vector<value> values;
    const char* line;
  } cases[] = {
      {"(2i6,f13.6)", {3, 4, 0.5}, "     3     4     0.500000\n"},
      {"(a5,a3,a,a2)", {"C1", "H   ", "He  ", "abc"}, "   C1H  He  ab\n"},
      {"(i4,i0,x,i0)", {12345, -2147483647 - 1, 0}, "****-2147483648 0\n"},
      {"(i4, a8, 2x, f9.3, 2x 3f9.3)",
       {1, "C", 12.0, 0.1, -0.2},
       "   1       C     12.000      0.100   -0.200\n"},
      {"(2X,2I3,1X,ES13.6,D15.8)", {1, 2, 1.0, -1.0}, "    1  2  1.000000E+00-0.10000000D+01\n"},
      {"(3(1h=), 'it''s' \"a\"\"b\" 2(\"-\") 2h),)", {}, "===it'sa\"b--),\n"},
      {"(2/,i1/i1)", {1, 2}, "\n\n1\n2\n"},
      {"(2x,\"MODE\",2x,i6)", {}, "  MODE  \n"},
      {"(i2,\" |\",2x,i2,\" ||\",13x)", {1}, " 1 |  \n"},
      {"(\"row\",i2,2(x,2(i2)),\"!\",(\"+\",i2))",
       {1, 2, 3, 4, 5, 6, 7, 8},
       "row 1  2 3  4 5!+ 6\n+ 7\n+ 8\n"},
      {"(\"row\",2(\"<\",i1),\">\")", {1, 2, 3}, "row<1<2>\n<3<\n"},
      {"(2i2)", {1, 2, 3, 4}, " 1 2\n 3 4\n"},
  };
  for (const auto& it : cases) {
    std::string out;
    layout(it.notation).write(out, it.values);
    EXPECT_EQ(out, it.line) << it.notation;
  }
}

TEST(layout, reals_in_a_span_come_out_as_the_same_values_one_by_one) {
  for (const char* notation : {"(10(ES13.6,X))", "(3(2x,F12.6),/)", "(\"a\",e14.7,(x,d15.8,\"b\"))"}) {
    std::vector<double> reals;
    std::vector<value> values;
    for (int n = 0; n < 40; ++n) {
      std::string spanned, single;
      layout(notation).write(spanned, std::span<const double>(reals));
      layout(notation).write(single, values);
      EXPECT_EQ(spanned, single) << notation << ' ' << n;
      reals.push_back(-0.37 * n);
      values.emplace_back(-0.37 * n);
    }
  }
}

TEST(layout, a_wrong_layout_or_a_value_that_does_not_fit_is_an_error_of_the_program) {
  for (const char* notation : {"", "i4", "(i4", "(i4)x", "(q4)", "(i)", "(f8)", "(f0.3)", "(e9.0)", "(\"a)",
                               "(5hab)", "(0i4)", "(99999999999i4)", "(9000(9000(x)))", "(t5,a)"}) {
    EXPECT_THROW(layout{notation}, std::logic_error) << notation;
  }
  EXPECT_THROW(layout(std::string(100'000, '(')), std::logic_error);
  EXPECT_THROW(written("(i4)", {1.0}), std::logic_error);
  EXPECT_THROW(written("(f8.2)", {1}), std::logic_error);
  // Values without an item do not lead to an endless loop.
  EXPECT_THROW(written("(i4,2(\"x\"))", {1, 2}), std::logic_error);
}

}  // namespace
}  // namespace vbn
