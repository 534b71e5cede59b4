// Tests of the log's tables against lines written by hand.
#include "output/log_sections.hpp"  // for print_coord and print_freq

#include <gtest/gtest.h>

#include "molecule/storage.hpp"    // for vbn_allocate
#include "tests/written_file.hpp"  // for scratch and content_of
#include "text/output_file.hpp"    // for output_file

namespace vbn {
namespace {

const std::string underscores(80, '_');

states hydrogen_chloride() {
  states state;
  state.natom = 2;
  state.n3 = 6;
  vbn_allocate(state);
  state.symbol(1) = "H";
  state.symbol(2) = "Cl";
  state.mass(1) = 1.007825037;
  state.mass(2) = 34.968852729;
  state.x0(1, 1) = 1.0;
  state.x0(3, 2) = -10.0;
  state.x(2, 1) = 2.0;
  return state;
}

TEST(log_sections, geometries_are_the_hand_made_lines_in_angstrom) {
  const states state = hydrogen_chloride();
  output_file fout(scratch("log"));
  print_coord_origin(fout, state, 1, "Original Coordinate (Angstrom) for state 1  ");
  print_coord(fout, state, 2, "Inertial Coordinate (Angstrom) for state 2");
  fout.close();
  const std::string heads = "   n  symbol             mass                x              y              z\n";
  EXPECT_EQ(content_of(fout.name()),
            underscores + "\n  Mol  1    Original Coordinate (Angstrom) for state 1\n" + heads +
                "   1       H        1.0078250        0.5291772      0.0000000      0.0000000\n"
                "   2      Cl       34.9688527        0.0000000      0.0000000     -5.2917725\n" +
                underscores + "\n  Mol  2    Inertial Coordinate (Angstrom) for state 2\n" + heads +
                "   1       H        1.0078250        0.0000000      1.0583545      0.0000000\n"
                "   2      Cl       34.9688527        0.0000000      0.0000000      0.0000000\n");
}

TEST(log_sections, frequencies_stand_ten_a_line_with_imaginary_and_overflowing_ones) {
  states state = hydrogen_chloride();
  state.freq0 = array1<double>(10, 0.01);
  state.freq = array1<double>(12, 0.001);
  state.freq(2) = -0.002;
  state.freq(12) = 1000.0;
  output_file fout(scratch("log"));
  print_freq0(fout, state, 1);
  print_freq(fout, state, 2);
  fout.close();
  std::string expected = underscores + "\n  Original freq\n  Mol  1    Frequency (cm^-1)\n";
  for (int k = 0; k < 10; ++k) expected += "    2194.75";
  expected +=
      "\n" + underscores + "\n  Projected freq\n  Mol  2    Frequency (cm^-1)\n     219.47    -438.95";
  for (int k = 0; k < 8; ++k) expected += "     219.47";
  expected += "\n     219.47***********\n";
  EXPECT_EQ(content_of(fout.name()), expected);
}

}  // namespace
}  // namespace vbn
