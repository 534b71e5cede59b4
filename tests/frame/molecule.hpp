// Molecules as networks of springs, whose Hessian is free of translations and rotations, for tests.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "frame/rotation.hpp"      // for rotn, rot_fc
#include "molecule/constants.hpp"  // for amu_to_au
#include "molecule/record.hpp"     // for states
#include "tests/one_state.hpp"     // for zero_arrays

namespace vbn {

struct test_atom {
  int nat;
  double mass;
  std::array<double, 3> x;
};

// The state of a molecule at `atoms` (bohr) with a spring between every two atoms, weaker with the distance.
inline states spring_molecule(const std::vector<test_atom>& atoms, double strength = 0.3) {
  states state;
  state.atoms.natom = static_cast<int>(atoms.size());
  state.atoms.n3 = 3 * state.atoms.natom;
  state.file.ffreq = "molecule.out";
  zero_arrays(state);
  for (int i = 1; i <= state.atoms.natom; ++i) {
    const test_atom& atom = atoms[static_cast<std::size_t>(i - 1)];
    state.atoms.nat(i) = atom.nat;
    state.atoms.mass(i) = atom.mass;
    state.atoms.massau(i) = amu_to_au * atom.mass;
    for (int a = 1; a <= 3; ++a) {
      state.atoms.x(a, i) = atom.x[static_cast<std::size_t>(a - 1)];
      state.atoms.sqtmass(3 * (i - 1) + a) = std::sqrt(state.atoms.massau(i));
    }
  }
  array2<double> fc(state.atoms.n3, state.atoms.n3);
  const auto spring = [&](int i, int j, double k) {
    for (int a = 1; a <= 3; ++a)
      for (int b = 1; b <= 3; ++b)
        for (const auto& [p, q, s] : {std::array{i, i, 1}, {j, j, 1}, {i, j, -1}, {j, i, -1}})
          fc(3 * (p - 1) + a, 3 * (q - 1) + b) += s * k * (state.atoms.x(a, i) - state.atoms.x(a, j)) *
                                                  (state.atoms.x(b, i) - state.atoms.x(b, j));
  };
  for (int i = 1; i <= state.atoms.natom; ++i) {
    for (int j = 1; j < i; ++j) {
      double square = 0.0;
      for (int a = 1; a <= 3; ++a) square += std::pow(state.atoms.x(a, i) - state.atoms.x(a, j), 2);
      spring(i, j, strength / (square * square) * (1.0 + 0.1 * i));
    }
  }
  state.force.set_fc(state.atoms.sqtmass, fc);
  return state;
}

inline const std::vector<test_atom> chiral_molecule = {{6, 12.0, {0.1, 0.0, 0.2}},
                                                       {9, 18.9984, {2.5, 0.3, 0.1}},
                                                       {17, 34.96885, {-1.4, 2.9, 0.0}},
                                                       {1, 1.007825, {-0.9, -1.3, 1.4}},
                                                       {8, 15.99491, {-0.5, -1.2, -2.3}}};
inline const std::vector<test_atom> water = {
    {8, 15.99491, {0.0, 0.0, 0.22}}, {1, 1.007825, {0.0, 1.43, -0.9}}, {1, 1.007825, {0.0, -1.43, -0.9}}};
inline const std::vector<test_atom> hydrogen_cyanide = {
    {1, 1.007825, {-1.0, -1.0, -1.0}}, {6, 12.0, {0.2, 0.2, 0.2}}, {7, 14.00307, {1.4, 1.4, 1.4}}};

// A turn about x, then y, then z, by angles from a seed.
inline array2<double> random_rotation(unsigned seed) {
  std::mt19937 draw(seed);
  std::uniform_real_distribution<double> angle(0.3, 3.0);
  array2<double> r(3, 3);
  for (int a = 1; a <= 3; ++a) r(a, a) = 1.0;
  for (int axis = 1; axis <= 3; ++axis) {
    const double t = angle(draw);
    const int p = axis % 3 + 1;
    const int q = p % 3 + 1;
    for (int k = 1; k <= 3; ++k) {
      const double u = r(p, k);
      const double v = r(q, k);
      r(p, k) = std::cos(t) * u - std::sin(t) * v;
      r(q, k) = std::sin(t) * u + std::cos(t) * v;
    }
  }
  return r;
}

inline double determinant3(const array2<double>& r) {
  double det = 0.0;
  for (int k = 1; k <= 3; ++k) {
    const int l = k % 3 + 1;
    const int m = l % 3 + 1;
    det += r(1, k) * (r(2, l) * r(3, m) - r(2, m) * r(3, l));
  }
  return det;
}

// Turns and shifts a molecule as a whole, its Hessian with it.
inline void move_molecule(states& state, const array2<double>& r, std::array<double, 3> shift) {
  rotn(r, state.atoms.x.span());
  for (int i = 1; i <= state.atoms.natom; ++i)
    for (int a = 1; a <= 3; ++a) state.atoms.x(a, i) += shift[static_cast<std::size_t>(a - 1)];
  change_fc(state, [&](array2<double>& fc) { rot_fc(r, fc); });
}

inline void expect_near(const array2<double>& a, const array2<double>& b, double eps) {
  for (int j = 1; j <= a.cols(); ++j)
    for (int i = 1; i <= a.rows(); ++i) EXPECT_NEAR(a(i, j), b(i, j), eps) << i << ' ' << j;
}

}  // namespace vbn
