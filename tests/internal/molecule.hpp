// Small molecules for the tests of the internal coordinates.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "linalg/eigen.hpp"          // for diag_symm
#include "internal/int_coord.hpp"    // for get_int_coord
#include "internal/wilson_rows.hpp"  // for vector3
#include "molecule/elements.hpp"     // for nat_to_symbol, nat_to_mass, get_sym_num
#include "molecule/constants.hpp"    // for bohr_to_ang
#include "tests/one_state.hpp"       // for zero_arrays

// Apart from the molecules of other folders' tests.
namespace vbn::internal_molecules {

struct test_atom {
  int nat;
  vector3 x;  // angstrom
};

inline states molecule(const std::vector<test_atom>& atoms) {
  states state;
  state.atoms.natom = static_cast<int>(atoms.size());
  state.atoms.n3 = 3 * state.atoms.natom;
  zero_arrays(state);
  for (int i = 1; i <= state.atoms.natom; ++i) {
    const test_atom& atom = atoms[static_cast<std::size_t>(i - 1)];
    state.atoms.nat(i) = atom.nat;
    state.atoms.massau(i) = nat_to_mass(atom.nat) * amu_to_au;
    for (int a = 1; a <= 3; ++a) {
      state.atoms.x(a, i) = atom.x[static_cast<std::size_t>(a - 1)] / bohr_to_ang;
      state.atoms.sqtmass(3 * (i - 1) + a) = std::sqrt(state.atoms.massau(i));
    }
  }
  state.atoms.symbol = nat_to_symbol(state.atoms.nat);
  state.atoms.sym_num = get_sym_num(state.atoms.symbol);
  return state;
}

inline const std::vector<test_atom> water{{8, {0, 0, 0}}, {1, {0.6, 0.75, 0}}, {1, {0.6, -0.75, 0}}};

// Without any symmetry: a bend, a stretch and the out-of-plane angle differ from atom to atom.
inline const std::vector<test_atom> ammonia{
    {7, {0.02, 0.01, 0.1}}, {1, {0.95, 0.0, -0.27}}, {1, {-0.5, 0.82, -0.25}}, {1, {-0.45, -0.84, -0.3}}};

// H-S-S-H: no atom of it takes part in a hydrogen bridge. The dihedral in radians.
inline std::vector<test_atom> disulfane(double dihedral) {
  return {{1, {-0.2, 1.3, 0.0}},
          {16, {0, 0, 0}},
          {16, {2.05, 0, 0}},
          {1, {2.25, 1.3 * std::cos(dihedral), 1.3 * std::sin(dihedral)}}};
}

inline const std::vector<test_atom> allene{
    {6, {0, 0, 0}},         {6, {1.31, 0, 0}},      {6, {2.62, 0, 0}},       {1, {-0.56, 0.93, 0}},
    {1, {-0.56, -0.93, 0}}, {1, {3.18, 0.3, 0.88}}, {1, {3.18, -0.3, -0.88}}};

inline std::vector<test_atom> chain_of_carbon(int n) {
  std::vector<test_atom> atoms;
  for (int i = 0; i < n; ++i) atoms.push_back({6, {1.3 * i, 0.0, 0.0}});
  return atoms;
}

// The coordinates as "kind(atoms)", in their order.
inline std::string listed(const states& state) {
  std::string list;
  for (int m = 1; m <= state.internal.nr; ++m) {
    list.append(m > 1 ? " " : "").append(std::to_string(state.internal.iztype(m))).append("(");
    for (int place = 1; place <= 4 && state.internal.intdef(place, m) > 0; ++place)
      list.append(place > 1 ? "," : "").append(std::to_string(state.internal.intdef(place, m)));
    list += ")";
  }
  return list;
}

inline std::string list_of(const std::vector<test_atom>& atoms, const input_data& input = {}) {
  states state = molecule(atoms);
  get_int_coord(state, input);
  return listed(state);
}

// Modes and frequencies of a spring of the given strength (hartree over angstrom or radian, squared) on every
// internal coordinate of the state, and the zero-point lengths that follow.
inline void set_modes(states& state, double strength) {
  const int n3 = state.atoms.n3;
  array2<double> fcm(n3, n3);
  for (int m = 1; m <= state.internal.nr; ++m)
    for (int i = 1; i <= n3; ++i)
      for (int j = 1; j <= n3; ++j)
        fcm(i, j) += strength * (1.0 + 0.1 * m) * bohr_to_ang * bohr_to_ang * state.internal.br(i, m) *
                     state.internal.br(j, m) / state.atoms.sqtmass(i) / state.atoms.sqtmass(j);
  int info = 0;
  diag_symm(fcm, state.modes.freq, state.modes.cm, info);
  for (int i = 1; i <= n3; ++i) {
    state.modes.freq(i) = std::copysign(std::sqrt(std::abs(state.modes.freq(i))), state.modes.freq(i));
    state.modes.zptlen(i) = i < 7 ? 10.0 : bohr_to_ang * std::sqrt(1.0 / state.modes.freq(i));
  }
}

}  // namespace vbn::internal_molecules
