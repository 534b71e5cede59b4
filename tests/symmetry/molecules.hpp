// Small molecules in their principal axes, with force constants of the molecule's own symmetry.
#pragma once

#include <string>
#include <vector>

#include "molecule/record.hpp"  // for states
#include "tests/one_state.hpp"  // for the stages of one state

namespace vbn {

struct atom {
  int nat;
  double x, y, z;     // bohr
  double mass = 0.0;  // amu; 0 for the most abundant isotope
};
using atoms = std::vector<atom>;

// A record with geometry, masses, and springs between all atoms, along and across their distance: `fc`,
// `fcm`.
states molecule(const atoms& list);

// The springs for the geometry that the record has, into `fc` and `fcm`.
void set_springs(states& state);

// A molecule and what group theory says of it.
struct textbook_case {
  std::string name;
  atoms list;
  std::string group;
  std::vector<int> modes;  // coordinates of each representation, translations and rotations included
};
std::vector<textbook_case> textbook_cases();

const atoms& of_case(const std::vector<textbook_case>& cases, const std::string& name);

// A molecule of exactly the group npg: general positions with all their images, and atoms on its elements;
// its atoms are shuffled and each is moved by up to `noise` bohr along each axis.
atoms of_group(int npg, double noise);

}  // namespace vbn
