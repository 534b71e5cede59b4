// Molecules as networks of springs, whose Hessian is free of translations and rotations, for tests.
#pragma once

#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "frame/hessian.hpp"   // for fc_to_fcm
#include "frame/rotation.hpp"  // for rotn, rot_fc
#include "run/constants.hpp"   // for amu_to_au
#include "run/record.hpp"      // for states
#include "run/storage.hpp"     // for vbn_allocate

namespace vbn {

struct test_atom {
  int nat;
  double mass;
  std::array<double, 3> x;
};

// The state of a molecule at `atoms` (bohr) with a spring between every two atoms, weaker with the distance.
inline states spring_molecule(const std::vector<test_atom>& atoms, double strength = 0.3) {
  states state;
  state.natom = static_cast<int>(atoms.size());
  state.n3 = 3 * state.natom;
  state.ffreq = "molecule.out";
  vbn_allocate(state);
  for (int i = 1; i <= state.natom; ++i) {
    const test_atom& atom = atoms[static_cast<std::size_t>(i - 1)];
    state.nat(i) = atom.nat;
    state.mass(i) = atom.mass;
    state.massau(i) = amu_to_au * atom.mass;
    for (int a = 1; a <= 3; ++a) {
      state.x(a, i) = atom.x[static_cast<std::size_t>(a - 1)];
      state.sqtmass(3 * (i - 1) + a) = std::sqrt(state.massau(i));
    }
  }
  for (int i = 1; i <= state.natom; ++i) {
    for (int j = 1; j < i; ++j) {
      std::array<double, 4> r{};
      for (int a = 1; a <= 3; ++a) {
        r[static_cast<std::size_t>(a)] = state.x(a, i) - state.x(a, j);
        r[0] += r[static_cast<std::size_t>(a)] * r[static_cast<std::size_t>(a)];
      }
      const double k = strength / (r[0] * r[0]) * (1.0 + 0.1 * i);
      for (int a = 1; a <= 3; ++a) {
        for (int b = 1; b <= 3; ++b) {
          const double f = k * r[static_cast<std::size_t>(a)] * r[static_cast<std::size_t>(b)];
          state.fc(3 * (i - 1) + a, 3 * (i - 1) + b) += f;
          state.fc(3 * (j - 1) + a, 3 * (j - 1) + b) += f;
          state.fc(3 * (i - 1) + a, 3 * (j - 1) + b) -= f;
          state.fc(3 * (j - 1) + a, 3 * (i - 1) + b) -= f;
        }
      }
    }
  }
  int info = 0;
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, 1, info);
  return state;
}

inline const std::vector<test_atom> chiral_molecule = {
    {6, 12.0, {0.1, 0.0, 0.2}},       {9, 18.9984, {2.5, 0.3, 0.1}},     {17, 34.96885, {-1.4, 2.9, 0.0}},
    {1, 1.007825, {-0.9, -1.3, 1.4}}, {8, 15.99491, {-0.5, -1.2, -2.3}},
};
inline const std::vector<test_atom> water = {
    {8, 15.99491, {0.0, 0.0, 0.22}}, {1, 1.007825, {0.0, 1.43, -0.9}}, {1, 1.007825, {0.0, -1.43, -0.9}}};
inline const std::vector<test_atom> hydrogen_cyanide = {
    {1, 1.007825, {-1.0, -1.0, -1.0}}, {6, 12.0, {0.2, 0.2, 0.2}}, {7, 14.00307, {1.4, 1.4, 1.4}}};

// A proper rotation from a seed: a random unit quaternion.
inline array2<double> random_rotation(unsigned seed) {
  std::mt19937 draw(seed);
  std::normal_distribution<double> number;
  const double w0 = number(draw), x0 = number(draw), y0 = number(draw), z0 = number(draw);
  const double length = std::sqrt(w0 * w0 + x0 * x0 + y0 * y0 + z0 * z0);
  const double w = w0 / length, x = x0 / length, y = y0 / length, z = z0 / length;
  array2<double> r(3, 3);
  r(1, 1) = 1 - 2 * (y * y + z * z);
  r(2, 2) = 1 - 2 * (x * x + z * z);
  r(3, 3) = 1 - 2 * (x * x + y * y);
  r(1, 2) = 2 * (x * y - w * z);
  r(2, 1) = 2 * (x * y + w * z);
  r(1, 3) = 2 * (x * z + w * y);
  r(3, 1) = 2 * (x * z - w * y);
  r(2, 3) = 2 * (y * z - w * x);
  r(3, 2) = 2 * (y * z + w * x);
  return r;
}

inline double determinant3(const array2<double>& r) {
  return r(1, 1) * (r(2, 2) * r(3, 3) - r(2, 3) * r(3, 2)) -
         r(1, 2) * (r(2, 1) * r(3, 3) - r(2, 3) * r(3, 1)) +
         r(1, 3) * (r(2, 1) * r(3, 2) - r(2, 2) * r(3, 1));
}

// Turns and shifts a molecule as a whole, its Hessian with it.
inline void move_molecule(states& state, const array2<double>& r, std::array<double, 3> shift) {
  rotn(r, state.x.span());
  for (int i = 1; i <= state.natom; ++i)
    for (int a = 1; a <= 3; ++a) state.x(a, i) += shift[static_cast<std::size_t>(a - 1)];
  rot_fc(r, state.fc);
  int info = 0;
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, 1, info);
}

}  // namespace vbn
