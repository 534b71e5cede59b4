// Tests of the log's list of internal coordinates, line by line.
#include "internal/report.hpp"  // for print_int_coord

#include <gtest/gtest.h>

#include "tests/written_file.hpp"  // for scratch, lines_of
#include "text/output_file.hpp"    // for output_file

namespace vbn {
namespace {

TEST(report, lists_counts_and_each_kind_with_its_values_and_rows) {
  states state;
  state.nr = 4;
  state.nb = 2;
  state.nlin = 1;
  state.nl = 2;  // not shown
  state.nt = 1;
  state.iztype = array1<int>(4);
  state.z = array1<double>(4);
  state.intdef = array2<int>(4, 4);
  state.br = array2<double>(12, 4);
  state.sym_num = array1<text<10>>(4);
  const char* names[] = {" H(1)", " C(2)", "Br(3)", " H(4)"};
  const int definition[4][4] = {{1, 2, 3, 4}, {4, 2, 0, 0}, {3, 2, 1, 0}, {1, 2, 0, 0}};
  const int kinds[] = {4, 1, 2, 1};
  const double values[] = {-pi_value / 2.0, 1.25, pi_value, 1.5};
  for (int m = 1; m <= 4; ++m) {
    state.iztype(m) = kinds[m - 1];
    state.z(m) = values[m - 1];
    for (int place = 1; place <= 4; ++place) state.intdef(place, m) = definition[m - 1][place - 1];
    for (int k = 1; k <= 12; ++k) state.br(k, m) = 0.1 * k + m;
  }
  for (int i = 1; i <= 4; ++i) state.sym_num(i) = names[i - 1];
  const std::vector<std::string> expected{
      std::string(80, '-'),
      "  ! The information of internal coordinates",
      "  nber bond                    =         2",
      "  nber proper bend             =         0",
      "  nber linear bend             =         1",
      "  nber proper torsion          =         1",
      "  nber improper torsion        =         0",
      "  nber improper torsion linear =         0",
      "  nber tot redundant int       =         4",
      "  1. normal bond",
      "     2     1    1.2500  Ang    H(4) -    C(2) |   3.0000  3.1000  3.2000  2.4000  2.5000  2.6000",
      "     4     2    1.5000  Ang    H(1) -    C(2) |   4.1000  4.2000  4.3000  4.4000  4.5000  4.6000",
      "  2. linear angle",
      "     3     1  180.0000  Ang   Br(3) -    C(2) -    H(1) |   3.7000  3.8000  3.9000  3.4000  3.5000"
      "  3.6000  3.1000  3.2000  3.3000",
      "  3. normal angle",
      "  4. proper torsion angle",
      "     1     1  -90.0000  Deg    H(1) -    C(2) -   Br(3) -    H(4) |   1.1000  1.2000  1.3000  1.4000"
      "  1.5000  1.6000  1.7000  1.8000  1.9000  2.0000  2.1000  2.2000",
      "  5. improper torsion angle",
      "  6. torsion about linear bend",
      std::string(80, '-'),
  };
  const std::string name = scratch("log");
  output_file log(name);
  print_int_coord(state, log);
  log.close();
  EXPECT_EQ(lines_of(name), expected);
}

}  // namespace
}  // namespace vbn
