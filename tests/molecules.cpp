// Geometries and spring force constants.
#include "tests/molecules.hpp"  // for the molecules

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>

#include "frame/rotation.hpp"     // for rotn
#include "molecule/elements.hpp"  // for nat_to_mass, nat_to_symbol, get_sym_num
#include "symmetry/tables.hpp"    // for symm_op, ir_op

namespace vbn {

molecule disulfane(double dihedral) {
  return {{1, {-0.38, 2.46, 0.0}},
          {16, {0.0, 0.0, 0.0}},
          {16, {3.87, 0.0, 0.0}},
          {1, {4.25, 2.46 * std::cos(dihedral), 2.46 * std::sin(dihedral)}}};
}

states state_of(const molecule& list, double strength) {
  states state;
  atom_data& atoms = state.atoms;
  atoms.natom = static_cast<int>(list.size());
  atoms.n3 = 3 * atoms.natom;
  atoms.nat = array1<int>(atoms.natom);
  atoms.mass = atoms.massau = array1<double>(atoms.natom);
  atoms.sqtmass = array1<double>(atoms.n3);
  atoms.x = array2<double>(3, atoms.natom);
  array2<double> fc(atoms.n3, atoms.n3);
  for (int i = 1; i <= atoms.natom; ++i) {
    const test_atom& atom = list[static_cast<std::size_t>(i - 1)];
    atoms.nat(i) = atom.nat;
    atoms.mass(i) = atom.mass > 0.0 ? atom.mass : nat_to_mass(atom.nat);
    atoms.massau(i) = atoms.mass(i) * amu_to_au;
    for (int a = 1; a <= 3; ++a) {
      atoms.x(a, i) = atom.x[static_cast<std::size_t>(a - 1)];
      atoms.sqtmass(3 * (i - 1) + a) = std::sqrt(atoms.massau(i));
    }
    for (int j = 1; j < i; ++j) {
      const auto d = [&](int a) { return atoms.x(a, i) - atoms.x(a, j); };
      const double square = d(1) * d(1) + d(2) * d(2) + d(3) * d(3);
      const double k =
          strength * std::exp(-0.4 * std::sqrt(square)) / square * (1.0 + 0.01 * atoms.nat(i) * atoms.nat(j));
      for (int a = 1; a <= 3; ++a)
        for (int b = 1; b <= 3; ++b)
          for (const auto& [p, q, sign] : {std::array{i, i, 1}, {j, j, 1}, {i, j, -1}, {j, i, -1}})
            fc(3 * (p - 1) + a, 3 * (q - 1) + b) += sign * k * d(a) * d(b);
    }
  }
  atoms.symbol = nat_to_symbol(atoms.nat);
  atoms.sym_num = get_sym_num(atoms.symbol);
  state.force.set_fc(atoms.sqtmass, fc);
  return state;
}

array2<double> random_rotation(unsigned seed) {
  std::mt19937 draw(seed);
  std::uniform_real_distribution<double> angle(0.3, 3.0);
  array2<double> r(3, 3);
  for (int a = 1; a <= 3; ++a) r(a, a) = 1.0;
  for (int p = 1; p <= 3; ++p) {
    const double t = angle(draw);
    const int q = p % 3 + 1;
    for (int k = 1; k <= 3; ++k) {
      const double u = r(p, k);
      r(p, k) = std::cos(t) * u - std::sin(t) * r(q, k);
      r(q, k) = std::sin(t) * u + std::cos(t) * r(q, k);
    }
  }
  return r;
}

molecule moved(molecule atoms, unsigned seed, std::array<double, 3> shift) {
  for (test_atom& atom : atoms) {
    rotn(random_rotation(seed), atom.x);
    for (std::size_t a = 0; a < 3; ++a) atom.x[a] += shift[a];
  }
  return atoms;
}

molecule of_group(int npg, double noise) {
  const molecule positions = {{6, {1.3, 2.1, 0.7}}, {7, {2.9, 1.1, 1.9}},  // general, then on the elements
                              {8, {3.7, 0, 0}},     {16, {0, 4.4, 0}},    {17, {0, 0, 3.9}},
                              {1, {1.7, 1.3, 0}},   {5, {1.1, 0, 2.2}},   {14, {0, 1.2, 4.8}},
                              {20, {0, 0, 0}}};
  molecule list;
  for (const test_atom& from : positions) {
    for (int g = 1; g <= nrep(npg); ++g) {
      test_atom image = from;
      for (int a = 1; a <= 3; ++a) image.x[static_cast<std::size_t>(a - 1)] *= symm_op(a, ir_op(g, npg));
      if (std::ranges::none_of(list, [&](const test_atom& atom) { return atom.x == image.x; }))
        list.push_back(image);
    }
  }
  std::mt19937 draw(static_cast<unsigned>(npg));
  std::shuffle(list.begin(), list.end(), draw);
  std::uniform_real_distribution<double> move(-noise, noise);
  for (test_atom& atom : list)
    for (double& c : atom.x) c += move(draw);
  return list;
}

std::string numforce_file(const states& state) {
  const atom_data& atoms = state.atoms;
  std::string file = " NUMERICAL FREQUENCY\n VERSION 1.2\n NAtoms " + std::to_string(atoms.natom) +
                     "\n Coordinate Bohr\n No Z mass x y z\n";
  const auto put = [&](double number) {
    char shown[40];
    std::snprintf(shown, sizeof shown, " %.15f", number);
    file += shown;
  };
  for (int i = 1; i <= atoms.natom; ++i) {
    file += std::to_string(i) + " " + std::to_string(atoms.nat(i));
    put(atoms.mass(i));
    for (const double c : atoms.x.column(i)) put(c);
    file += "\n";
  }
  file += "\n Unprojected Force Constant Matrix\n";
  for (int i = 1; i <= atoms.n3; ++i) {
    file += " row\n";
    for (const double element : state.force.fc().column(i)) put(element);
    file += "\n";
  }
  return file;
}

}  // namespace vbn
