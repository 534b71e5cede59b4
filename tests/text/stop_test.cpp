// Tests of the messages that end a run.
#include "text/stop.hpp"  // for fault_message

#include <gtest/gtest.h>

namespace vbn {
namespace {

TEST(stop, fault_marks_its_position_even_far_to_the_right_of_a_long_line) {
  EXPECT_EQ(fault_message({"cannot read a real number", "a.out", 7, "1.0 x\t2", 5, "the mass of atom 2"}),
            "error: cannot read a real number\n"
            "  in a.out, line 7\n"
            "  | 1.0 x 2\n"
            "  |     ^\n"
            "  expected: the mass of atom 2\n");
  std::string line(100501, 'b');
  line[100000] = 'x';
  const std::string far = fault_message({"w", "f", 1, line, 100001, ""});
  EXPECT_LT(far.size(), 400u);
  const std::size_t first = far.find("  | b");
  const std::size_t mark = far.find("  |  ");
  ASSERT_NE(first, std::string::npos);
  ASSERT_NE(mark, std::string::npos);
  EXPECT_EQ(far[first + (far.find('^') - mark)], 'x');
}

}  // namespace
}  // namespace vbn
