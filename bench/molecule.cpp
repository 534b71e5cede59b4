// Force-field-like molecules of any size, for timing: chains of carbon and hydrogen in a network of springs.
#include "bench/molecule.hpp"  // for molecule

#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "molecule/constants.hpp"  // for bohr_to_ang, amu_to_au

namespace vbn::bench {
namespace {

constexpr double step_x = 1.277, step_y = 0.431;                   // zigzag of the carbon chain, angstrom
constexpr double hydrogen_y = 0.63, hydrogen_z = 0.89;             // from its carbon
constexpr double end_x = 1.03, end_y = 0.36;                       // the third hydrogen of the end of a chain
constexpr double crumple = 0.05;                                   // random displacement of both states
constexpr double change = 0.02;                                    // and of state 2 against state 1
constexpr double softer = 0.95;                                    // springs of state 2 against state 1
constexpr double longest_cc = 1.85, longest_ch = 1.35;             // bonds
constexpr std::array<double, 4> spring = {0.0, 0.35, 0.06, 0.01};  // by bonds between the two atoms

using point = std::array<double, 3>;

double distance(const point& a, const point& b) { return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]); }

struct atoms {
  std::vector<int> nat;
  std::vector<point> place;  // angstrom
};

std::size_t at(int i) { return static_cast<std::size_t>(i - 1); }

// Carbon i and its hydrogens follow each other, so that a chain can be cut off anywhere.
atoms zigzag(int natom) {
  atoms all;
  const int carbons = natom / 3 + 1;
  for (int i = 0; i < carbons; ++i) {
    const double up = i % 2 == 0 ? -1.0 : 1.0;
    const point c = {i * step_x, up * step_y, 0.0};
    const auto add = [&](int element, double x, double y, double z) {
      all.nat.push_back(element);
      all.place.push_back({c[0] + x, c[1] + y, c[2] + z});
    };
    add(6, 0.0, 0.0, 0.0);
    add(1, 0.0, up * hydrogen_y, hydrogen_z);
    add(1, 0.0, up * hydrogen_y, -hydrogen_z);
    if (i == 0) add(1, -end_x, -up * end_y, 0.0);
  }
  all.nat.resize(static_cast<std::size_t>(natom));
  all.place.resize(static_cast<std::size_t>(natom));
  return all;
}

std::vector<std::vector<int>> bonded_neighbours(const atoms& all) {
  const int natom = static_cast<int>(all.nat.size());
  std::vector<std::vector<int>> neighbours(all.nat.size());
  for (int i = 1; i <= natom; ++i)
    for (int j = 1; j <= natom; ++j) {
      const bool both_carbon = all.nat[at(i)] == 6 && all.nat[at(j)] == 6;
      const bool both_hydrogen = all.nat[at(i)] == 1 && all.nat[at(j)] == 1;
      if (i != j && !both_hydrogen &&
          distance(all.place[at(i)], all.place[at(j)]) < (both_carbon ? longest_cc : longest_ch))
        neighbours[at(i)].push_back(j);
    }
  return neighbours;
}

// A spring of constant k between atoms i and j.
void bind(int i, int j, double k, const atoms& all, array2<double>& fc) {
  const point& from = all.place[at(i)];
  const point& to = all.place[at(j)];
  const double r = distance(from, to);
  for (int a = 1; a <= 3; ++a)
    for (int b = 1; b <= 3; ++b) {
      const double element = k * (from[at(a)] - to[at(a)]) * (from[at(b)] - to[at(b)]) / (r * r);
      fc(3 * (i - 1) + a, 3 * (i - 1) + b) += element;
      fc(3 * (j - 1) + a, 3 * (j - 1) + b) += element;
      fc(3 * (i - 1) + a, 3 * (j - 1) + b) -= element;
      fc(3 * (j - 1) + a, 3 * (i - 1) + b) -= element;
    }
}

// Springs between atoms up to three bonds apart.
void bind_neighbours(const atoms& all, double factor, array2<double>& fc) {
  const int natom = static_cast<int>(all.nat.size());
  const std::vector<std::vector<int>> neighbours = bonded_neighbours(all);
  for (int i = 1; i <= natom; ++i) {
    std::vector<int> bonds(all.nat.size(), -1);  // from i, -1 further away
    bonds[at(i)] = 0;
    std::vector<int> shell = {i};
    for (int away = 1; away <= 3; ++away) {
      std::vector<int> next;
      for (const int k : shell)
        for (const int j : neighbours[at(k)])
          if (bonds[at(j)] < 0) {
            bonds[at(j)] = away;
            next.push_back(j);
          }
      shell = next;
      for (const int j : shell)
        if (j >= i) bind(i, j, spring[static_cast<std::size_t>(away)] * factor, all, fc);
    }
  }
}

}  // namespace

molecule chain(int natom, int state) {
  atoms all = zigzag(natom);
  std::mt19937 common(1);
  std::mt19937 own(static_cast<unsigned>(state));
  std::uniform_real_distribution<double> noise(-1.0, 1.0);
  for (point& p : all.place)
    for (double& x : p) x += crumple * noise(common) + (state == 2 ? change * noise(own) : 0.0);

  molecule m{array1<int>(natom), array1<double>(natom), array2<double>(3, natom),
             array2<double>(3 * natom, 3 * natom)};
  for (int i = 1; i <= natom; ++i) {
    m.nat(i) = all.nat[at(i)];
    m.mass(i) = m.nat(i) == 6 ? 12.0 : 1.00782503207;
    for (int a = 1; a <= 3; ++a) m.x(a, i) = all.place[at(i)][at(a)] / bohr_to_ang;
  }
  bind_neighbours(all, state == 2 ? softer : 1.0, m.fc);
  return m;
}

array2<double> mass_weighted(const molecule& m) {
  array2<double> fcm = m.fc;
  for (int j = 1; j <= fcm.cols(); ++j)
    for (int i = 1; i <= fcm.rows(); ++i)
      fcm(i, j) /=
          std::sqrt(m.mass((i - 1) / 3 + 1) * amu_to_au) * std::sqrt(m.mass((j - 1) / 3 + 1) * amu_to_au);
  return fcm;
}

}  // namespace vbn::bench
