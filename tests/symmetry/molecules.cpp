// Geometries, spring force constants and the textbook's reductions.
#include "tests/symmetry/molecules.hpp"  // for molecule

#include <algorithm>
#include <cmath>
#include <random>
#include <stdexcept>

#include "symmetry/tables.hpp"  // for symm_op

namespace vbn {

states molecule(const atoms& list) {
  states state;
  state.atoms.natom = static_cast<int>(list.size());
  state.atoms.n3 = 3 * state.atoms.natom;
  zero_arrays(state);
  for (int i = 1; i <= state.atoms.natom; ++i) {
    const atom& a = list[static_cast<std::size_t>(i - 1)];
    const double common = a.nat == 1 ? 1.007825 : a.nat == 6 ? 12.0 : a.nat == 7 ? 14.003074 : 2.0 * a.nat;
    state.atoms.nat(i) = a.nat;
    state.atoms.mass(i) = a.mass > 0.0 ? a.mass : common;
    state.atoms.massau(i) = state.atoms.mass(i) * amu_to_au;
    state.atoms.x(1, i) = a.x;
    state.atoms.x(2, i) = a.y;
    state.atoms.x(3, i) = a.z;
    for (int c = 1; c <= 3; ++c) state.atoms.sqtmass(3 * (i - 1) + c) = std::sqrt(state.atoms.massau(i));
  }
  set_springs(state);
  return state;
}

void set_springs(states& state) {
  array2<double> fc(state.atoms.n3, state.atoms.n3);
  for (int i = 1; i <= state.atoms.natom; ++i)
    for (int j = 1; j < i; ++j) {
      double d[3], r2 = 0.0;
      for (int a = 0; a < 3; ++a) {
        d[a] = state.atoms.x(a + 1, i) - state.atoms.x(a + 1, j);
        r2 += d[a] * d[a];
      }
      const double k =
          0.5 * std::exp(-0.4 * std::sqrt(r2)) * (1.0 + 0.01 * state.atoms.nat(i) * state.atoms.nat(j));
      for (int a = 0; a < 3; ++a)
        for (int b = 0; b < 3; ++b) {
          const int ia = 3 * (i - 1) + a + 1, ib = 3 * (i - 1) + b + 1;
          const int ja = 3 * (j - 1) + a + 1, jb = 3 * (j - 1) + b + 1;
          const double f = k * (d[a] * d[b] / r2 + (a == b ? 0.1 : 0.0));
          fc(ia, ib) += f;
          fc(ja, jb) += f;
          fc(ia, jb) -= f;
          fc(ja, ib) -= f;
        }
    }
  state.force.set_fc(state.atoms.sqtmass, fc);
}

std::vector<textbook_case> textbook_cases() {
  // x is the axis of the smallest moment, z of the largest.
  const double hexagon_c = 2.634, hexagon_h = 4.682;
  atoms benzene;
  for (int k = 0; k < 6; ++k) {
    const double angle = k * pi_value / 3.0;
    benzene.push_back({6, hexagon_c * std::cos(angle), hexagon_c * std::sin(angle), 0.0});
    benzene.push_back({1, hexagon_h * std::cos(angle), hexagon_h * std::sin(angle), 0.0});
  }
  const double half = 0.5, tall = std::sqrt(0.75);
  return {
      // H-H along x, the rotation along y; A1, A2, then odd and even under the plane normal to x.
      {"water", {{8, 0, 0.125, 0}, {1, 1.43, -0.984, 0}, {1, -1.43, -0.984, 0}}, "C2V(y)", {3, 1, 3, 2}},
      // C-C along x, the plane xy: Ag, B1g (xy), B2g (xz), B3g (yz), Au, B1u (z), B2u (y), B3u (x).
      {"ethylene",
       {{6, 1.26, 0, 0},
        {6, -1.26, 0, 0},
        {1, 2.32, 1.75, 0},
        {1, 2.32, -1.75, 0},
        {1, -2.32, 1.75, 0},
        {1, -2.32, -1.75, 0}},
       "D2H",
       {3, 3, 2, 1, 1, 2, 3, 3}},
      // No atom on the axis, so that each function of A has its partner in B.
      {"hydrogen peroxide",
       {{8, 1.37, 0.05, -0.06}, {8, -1.37, -0.05, -0.06}, {1, 1.75, 1.45, 0.95}, {1, -1.75, -1.45, 0.95}},
       "C2(z)",
       {6, 6}},
      // Three atoms in the plane xy: two functions each in the plane, one normal to it.
      {"nitroxyl", {{7, 1.1, -0.2, 0}, {8, -1.15, 0.05, 0}, {1, 2.3, 1.5, 0}}, "CS(z)", {6, 3}},
      {"four different atoms",
       {{6, 0, 0, 0.1}, {1, 2.0, 0.1, 0.2}, {9, -0.3, 2.5, 0.4}, {17, 0.4, -1.9, 3.0}},
       "C1",
       {12}},
      // Linear along x: of each atom one function along the axis and two across it; the exchange of the ends
      // gives g and u. B3g (yz) and Au stay empty.
      {"carbon dioxide", {{6, 0, 0, 0}, {8, 2.19, 0, 0}, {8, -2.19, 0, 0}}, "D2H", {1, 1, 1, 0, 0, 2, 2, 2}},
      {"nitrogen", {{7, 1.04, 0, 0}, {7, -1.04, 0, 0}}, "D2H", {1, 1, 1, 0, 0, 1, 1, 1}},
      // A2 stays empty.
      {"hydrogen cyanide", {{6, 0.1, 0, 0}, {7, 2.2, 0, 0}, {1, -1.9, 0, 0}}, "C2V(x)", {3, 0, 3, 3}},
      // C3V by the one mirror plane along an axis, with N and one H in it.
      {"ammonia",
       {{7, 0, 0, 0.12},
        {1, 1.77, 0, -0.6},
        {1, -1.77 * half, 1.77 * tall, -0.6},
        {1, -1.77 * half, -1.77 * tall, -0.6}},
       "CS(y)",
       {7, 5}},
      // D6H by its largest subgroup, with four atoms on x and none on y.
      {"benzene", benzene, "D2H", {6, 6, 4, 2, 2, 4, 6, 6}},
      // All atoms in the plane xy, none on the axis z: Ag, Bg, Au, Bu.
      {"trans-glyoxal",
       {{6, 1.3, 0.6, 0},
        {6, -1.3, -0.6, 0},
        {8, 3.2, -0.6, 0},
        {8, -3.2, 0.6, 0},
        {1, 1.1, 2.7, 0},
        {1, -1.1, -2.7, 0}},
       "C2H(z)",
       {6, 3, 3, 6}},
      {"single atom", {{2, 0, 0, 0}}, "D2H", {0, 0, 0, 0, 0, 1, 1, 1}},
  };
}

const atoms& of_case(const std::vector<textbook_case>& cases, const std::string& name) {
  for (const textbook_case& c : cases)
    if (c.name == name) return c.list;
  throw std::logic_error("no such molecule: " + name);
}

atoms of_group(int npg, double noise) {
  const atoms general = {{6, 1.3, 2.1, 0.7}, {7, 2.9, 1.1, 1.9}};
  const atoms on_elements = {{8, 3.7, 0, 0},   {16, 0, 4.4, 0},   {17, 0, 0, 3.9}, {1, 1.7, 1.3, 0},
                             {5, 1.1, 0, 2.2}, {14, 0, 1.2, 4.8}, {20, 0, 0, 0}};
  atoms list;
  const auto add_images = [&](const atom& from) {
    for (int g = 1; g <= nrep(npg); ++g) {
      const int p = ir_op(g, npg);
      const atom image{from.nat, from.x * symm_op(1, p), from.y * symm_op(2, p), from.z * symm_op(3, p)};
      const bool is_there = std::any_of(list.begin(), list.end(), [&](const atom& a) {
        return a.x == image.x && a.y == image.y && a.z == image.z;
      });
      if (!is_there) list.push_back(image);
    }
  };
  for (const atom& from : general) add_images(from);
  for (const atom& from : on_elements) add_images(from);
  std::mt19937 draw(static_cast<unsigned>(npg));
  std::shuffle(list.begin(), list.end(), draw);
  std::uniform_real_distribution<double> move(-noise, noise);
  for (atom& a : list) {
    a.x += move(draw);
    a.y += move(draw);
    a.z += move(draw);
  }
  return list;
}

}  // namespace vbn
