// Small molecules whose Hessian is a network of springs, free of translations and rotations.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "molecule/record.hpp"  // for states

namespace vbn {

struct test_atom {
  int nat;
  std::array<double, 3> x;  // bohr
  double mass = 0.0;        // amu; 0 for the mass of the element
};
using molecule = std::vector<test_atom>;

inline const molecule chiral_molecule = {{6, {0.1, 0.0, 0.2}},
                                         {9, {2.5, 0.3, 0.1}},
                                         {17, {-1.4, 2.9, 0.0}},
                                         {1, {-0.9, -1.3, 1.4}},
                                         {8, {-0.5, -1.2, -2.3}}};
inline const molecule water = {{8, {0.0, 0.125, 0.0}}, {1, {1.43, -0.984, 0.0}}, {1, {-1.43, -0.984, 0.0}}};
inline const molecule hydrogen_cyanide = {
    {1, {-1.15, -1.15, -1.15}}, {6, {0.1, 0.1, 0.1}}, {7, {1.3, 1.3, 1.3}}};
// A molecule without symmetry.
inline const molecule ammonia = {
    {7, {0.04, 0.02, 0.2}}, {1, {1.8, 0.0, -0.5}}, {1, {-0.95, 1.55, -0.47}}, {1, {-0.85, -1.6, -0.57}}};
// H-S-S-H, the dihedral in radians.
molecule disulfane(double dihedral);

// The atoms and force constants of a molecule with a spring between every two atoms.
states state_of(const molecule& atoms, double strength = 0.5);

// The molecule rotated about all axes, by angles from a seed, and shifted (bohr).
molecule moved(molecule atoms, unsigned seed, std::array<double, 3> shift);
array2<double> random_rotation(unsigned seed);

// A molecule of exactly the group npg: general positions with all their images, and atoms on its elements;
// its atoms are shuffled and each is moved by up to `noise` bohr along each axis.
molecule of_group(int npg, double noise);

// A file of numerical frequencies.
std::string numforce_file(const states& state);

}  // namespace vbn
