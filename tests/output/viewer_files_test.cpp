// Tests of the viewer files: hand-made lines, the limits of their tables, and an independent reader.
#include "output/viewer_files.hpp"  // for write_file_coord and the writers of each file

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "molecule/storage.hpp"    // for vbn_allocate
#include "tests/written_file.hpp"  // for scratch, content_of and lines_of

namespace vbn {
namespace {

// Formaldehyde, roughly, in bohr; state 2 has a longer C=O bond. The modes are unit vectors in mass-weighted
// coordinates, so that each moves one atom along one axis, and mode 2 of state 2 is imaginary.
array1<states> formaldehyde() {
  array1<states> state(2);
  const char* symbols[] = {"C", "O", "H", "H"};
  const int numbers[] = {6, 8, 1, 1};
  const double z[] = {0.0, 2.5, -1.0, -1.0};
  const double y[] = {0.0, 0.0, 1.5, -1.5};
  for (int k = 1; k <= 2; ++k) {
    states& a = state(k);
    a.natom = 4;
    a.n3 = 12;
    vbn_allocate(a);
    a.bond = array2<bool_>(4, 4, bool_{0});
    for (int i = 1; i <= 4; ++i) {
      a.symbol(i) = symbols[i - 1];
      a.nat(i) = numbers[i - 1];
      a.x(2, i) = y[i - 1];
      a.x(3, i) = z[i - 1];
      for (int c = 1; c <= 3; ++c) a.sqtmass(3 * (i - 1) + c) = std::sqrt(2.0 * numbers[i - 1]);
      if (i > 1) a.bond(1, i) = a.bond(i, 1) = 1;
    }
    for (int j = 1; j <= 12; ++j) {
      a.freq(j) = 0.001 * j * k;
      a.cm(j, j) = 1.0;
    }
  }
  state(2).x(3, 2) = 3.0;
  state(2).bond(1, 4) = state(2).bond(4, 1) = 0;
  state(2).freq(2) = -0.002;
  state(2).cm(12, 12) = -1.0;
  return state;
}

TEST(geometry_files, gaussian_input_shows_both_geometries_and_their_bonds_line_by_line) {
  array1<states> state = formaldehyde();
  const std::string prefix = scratch("vbn");
  write_file_coord(state, prefix);
  EXPECT_EQ(content_of(prefix + ".dx.x.com"),
            "# hf geom=connectivity\n"
            "\n"
            "title\n"
            "\n"
            "0 1\n"
            "C         0.0000000000000    0.0000000000000    0.0000000000000\n"
            "O         0.0000000000000    0.0000000000000    1.3229431225000\n"
            "H         0.0000000000000    0.7937658735000   -0.5291772490000\n"
            "H         0.0000000000000   -0.7937658735000   -0.5291772490000\n"
            "si        0.0000000000000    0.0000000000000    0.0000000000000\n"
            "s         0.0000000000000    0.0000000000000    1.5875317470000\n"
            "li        0.0000000000000    0.7937658735000   -0.5291772490000\n"
            "li        0.0000000000000   -0.7937658735000   -0.5291772490000\n"
            "\n"
            "  1    2  1.0   3  1.0   4  1.0\n"
            "  2\n"
            "  3\n"
            "  4\n"
            "  5    6  1.0   7  1.0\n"
            "  6\n"
            "  7\n"
            "  8\n");
}

TEST(geometry_files, superposition_is_in_bohr_and_displacement_in_angstrom_scaled_to_one) {
  array1<states> state = formaldehyde();
  const std::string prefix = scratch("vbn");
  write_file_coord(state, prefix);
  EXPECT_EQ(content_of(prefix + ".dx.x.xyz"),
            "   8\n"
            " title\n"
            "  c     0.0000000000    0.0000000000    0.0000000000\n"
            "  o     0.0000000000    0.0000000000    2.5000000000\n"
            "  h     0.0000000000    1.5000000000   -1.0000000000\n"
            "  h     0.0000000000   -1.5000000000   -1.0000000000\n"
            "  SI    0.0000000000    0.0000000000    0.0000000000\n"
            "  S     0.0000000000    0.0000000000    3.0000000000\n"
            "  LI    0.0000000000    1.5000000000   -1.0000000000\n"
            "  LI    0.0000000000   -1.5000000000   -1.0000000000\n");
  EXPECT_EQ(content_of(prefix + ".dx.v.xyz"),
            "   4\n"
            " title\n"
            "  C     0.0000000000    0.0000000000    0.0000000000    0.000000    0.000000    0.000000\n"
            "  O     0.0000000000    0.0000000000    1.3229431225    0.000000    0.000000    1.000000\n"
            "  H     0.0000000000    0.7937658735   -0.5291772490    0.000000    0.000000    0.000000\n"
            "  H     0.0000000000   -0.7937658735   -0.5291772490    0.000000    0.000000    0.000000\n");
}

TEST(geometry_files, animations_have_a_frame_for_every_mode_from_the_final_signs_and_one_scale_a_file) {
  array1<states> state = formaldehyde();
  state(1).c(1, 1) = 77.0;  // what an earlier stage has left does not show
  const std::string prefix = scratch("vbn");
  write_file_coord(state, prefix);
  EXPECT_EQ(state(1).c(1, 1), std::sqrt(12.0));
  const std::vector<std::string> vib1 = lines_of(prefix + ".vib1.xyz");
  const std::vector<std::string> vib2 = lines_of(prefix + ".vib2.xyz");
  ASSERT_EQ(vib1.size(), 12u * 6u);
  ASSERT_EQ(vib2.size(), 12u * 6u);
  EXPECT_EQ(vib1[6], "   4");
  EXPECT_EQ(vib1[7], " freq =      438.95 cm^-1");
  EXPECT_EQ(vib2[7], " freq =     -438.95 cm^-1");
  // Mode 5 moves oxygen, the heaviest atom, along y: the largest component of all.
  EXPECT_EQ(
      vib1[4 * 6 + 3],
      "  O     0.0000000000    0.0000000000    1.3229431225    0.0000000000    2.0000000000    0.0000000000");
  // Mode 1 moves carbon: smaller by the root of the masses, 2 x sqrt(6/8).
  EXPECT_EQ(
      vib1[2],
      "  C     0.0000000000    0.0000000000    0.0000000000    1.7320508076    0.0000000000    0.0000000000");
  // Mode 12 of state 2 had its sign turned, and its geometry is that of state 2.
  EXPECT_EQ(
      vib2[11 * 6 + 5],
      "  H     0.0000000000   -0.7937658735   -0.5291772490    0.0000000000    0.0000000000   -0.7071067812");
  EXPECT_EQ(vib2[11 * 6 + 3].substr(36, 16), "    1.5875317470");
}

TEST(geometry_files, without_a_bond_search_there_are_atom_numbers_only) {
  array1<states> state = formaldehyde();
  state(1).bond = state(2).bond = array2<bool_>();
  const std::string prefix = scratch("vbn");
  write_file_coord(state, prefix);
  const std::vector<std::string> lines = lines_of(prefix + ".dx.x.com");
  ASSERT_EQ(lines.size(), 22u);
  for (int i = 1; i <= 8; ++i) EXPECT_EQ(lines[static_cast<std::size_t>(13 + i)], "  " + std::to_string(i));
}

TEST(geometry_files, eleventh_partner_of_an_atom_is_left_out_with_a_warning) {
  const int natom = 13;
  array2<bool_> star(natom, natom, bool_{0});
  for (int j = 2; j <= natom; ++j) star(1, j) = 1;
  const array2<double> x(3, natom);
  const std::string name = scratch("dx.x.com");
  testing::internal::CaptureStderr();
  write_gjf_dx(name, x, x, star, array2<bool_>(), array1<text<2>>(natom, "Cl"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "warning: atom 1 has 12 bonds to atoms of higher number, " + name + " shows the first 10\n");
  const std::vector<std::string> lines = lines_of(name);
  EXPECT_EQ(lines.at(6 + 2 * natom),
            "  1    2  1.0   3  1.0   4  1.0   5  1.0   6  1.0   7  1.0   8  1.0   9  1.0  10  1.0  11  1.0");
  EXPECT_EQ(lines.at(6 + 3 * natom), " 14");
  EXPECT_EQ(lines.at(5 + natom).substr(0, 4), "cl  ");  // no partner: its own symbol in lower case
}

TEST(geometry_files, partner_elements_follow_their_ranges_and_unknown_numbers_show_as_x) {
  array1<int> nat(16);
  const int numbers[] = {1, 2, 12, 13, 20, 21, 30, 31, 56, 57, 71, 72, 88, 89, 0, 101};
  const int partners[] = {3, 10, 20, 5, 12, 39, 48, 13, 38, 57, 71, 40, 56, 89, 0, 101};
  for (int i = 1; i <= 16; ++i) nat(i) = numbers[i - 1];
  array1<int> nat1;
  change_nat(nat, nat1);
  array1<text<2>> symbol;
  get_element_name(nat, symbol);
  for (int i = 1; i <= 16; ++i) EXPECT_EQ(nat1(i), partners[i - 1]) << "element " << nat(i);
  EXPECT_EQ(symbol(1).full(), "H ");
  EXPECT_EQ(symbol(3).full(), "Mg");
  EXPECT_EQ(symbol(9).full(), "Ba");
  EXPECT_EQ(symbol(15).full(), "X ");
  EXPECT_EQ(symbol(16).full(), "X ");
}

TEST(geometry_files, molecule_reader_finds_all_frames_and_atoms) {
  if (std::system("command -v obabel > /dev/null 2>&1") != 0) GTEST_SKIP() << "Open Babel is not installed";
  array1<states> state = formaldehyde();
  const std::string prefix = scratch("vbn");
  write_file_coord(state, prefix);
  const struct {
    const char* suffix;
    std::size_t frames, atoms;
  } files[] = {{".dx.x.xyz", 1, 8}, {".dx.v.xyz", 1, 4}, {".vib1.xyz", 12, 4}, {".vib2.xyz", 12, 4}};
  for (const auto& file : files) {
    const std::string copy = scratch("copy.xyz");
    const std::string command =
        "obabel -ixyz " + prefix + file.suffix + " -oxyz -O " + copy + " > /dev/null 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << file.suffix;
    const std::vector<std::string> lines = lines_of(copy);
    ASSERT_EQ(lines.size(), file.frames * (file.atoms + 2)) << file.suffix;
    for (std::size_t frame = 0; frame < file.frames; ++frame) {
      const std::size_t first = frame * (file.atoms + 2);
      EXPECT_EQ(lines[first], std::to_string(file.atoms)) << file.suffix;
      EXPECT_EQ(lines[first + 3].substr(0, 1), "O") << file.suffix;
    }
  }
}

}  // namespace
}  // namespace vbn
