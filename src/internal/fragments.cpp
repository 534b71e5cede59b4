// Searches the bond graph for parts, and joins them by their nearest atoms.
#include "internal/fragments.hpp"  // for ways_on

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace vbn {

namespace {

constexpr int shown_atoms = 12;  // of a part, in the message
constexpr int shown_bonds = 20;  // between parts

// Marks the atoms that bonds join to atom i with the number of the part.
void mark(const array2<bool_>& bond, int i, int number, array1<int>& part) {
  std::vector<int> reached = {i};
  part(i) = number;
  while (!reached.empty()) {
    const int j = reached.back();
    reached.pop_back();
    for (int k = 1; k <= part.size(); ++k) {
      if (!bond(j, k) || part(k) != 0) continue;
      part(k) = number;
      reached.push_back(k);
    }
  }
}

// The part of each atom (natom), from 1.
array1<int> parts_of(const array2<bool_>& bond) {
  array1<int> part(bond.rows());
  int count = 0;
  for (int i = 1; i <= part.size(); ++i)
    if (part(i) == 0) mark(bond, i, ++count, part);
  return part;
}

// The nearest pair of an atom of the parts before `number` and an atom of this part.
std::pair<int, int> nearest_pair(const array2<double>& x, const array1<int>& part, int number) {
  std::pair<int, int> pair;
  double least = std::numeric_limits<double>::infinity();
  for (int i = 1; i <= part.size(); ++i) {
    for (int j = 1; j <= part.size(); ++j) {
      if (part(i) >= number || part(j) != number) continue;
      const double distance = std::hypot(x(1, i) - x(1, j), x(2, i) - x(2, j), x(3, i) - x(3, j));
      if (distance < least) {
        least = distance;
        pair = {i, j};
      }
    }
  }
  return pair;
}

std::string atoms_of(const atom_data& atoms, const array1<int>& part, int number) {
  std::string text;
  int count = 0;
  for (int i = 1; i <= part.size(); ++i) {
    if (part(i) != number) continue;
    if (++count > shown_atoms) return text + " ...";
    text += ' ';
    text += atoms.symbol(i).str() + std::to_string(i);
  }
  return text;
}

}  // namespace

std::string ways_on(const atom_data& atoms, const internal_coordinates& internal, const input_data& input) {
  const array1<int> part = parts_of(internal.bond);
  const int n_add = input.if_add_int_coord ? input.n_add_int_coord : 0;
  int count = 0;
  for (const int number : part) count = std::max(count, number);
  if (input.gcut > input_keys().gcut) return "gcut drops the others; use its default";
  if (count < 2 && internal.nlin > 0) {
    return "atoms in a straight line have other coordinates than bonds, bends and dihedrals; use set_cart = "
           "t";
  }
  if (count < 2) {
    return "bonds, bends and dihedrals do not describe every motion; use set_cart = t, or add coordinates "
           "with if_add_int_coord = t";
  }
  std::string text = "no bond joins the parts";
  for (int number = 1; number <= count && number <= 3; ++number)
    text.append(number == 1 ? ":" : " |").append(atoms_of(atoms, part, number));
  if (count > 3) text += " | ... (" + std::to_string(count) + " parts)";
  text += "; use set_cart = t";
  if (count > shown_bonds) return text;
  text += ", or add bonds: if_add_int_coord = t";
  for (int number = 2; number <= count; ++number) {
    const auto [i, j] = nearest_pair(atoms.x, part, number);
    text += ", def_add_int_coord(:," + std::to_string(n_add + number - 1) + ") = " + std::to_string(i) +
            ", " + std::to_string(j) + ", 0, 0";
  }
  return text;
}

}  // namespace vbn
