// The symmetry operations and the point groups: D2H and its subgroups, with their characters.
#pragma once

#include <string_view>

namespace vbn {

inline constexpr int n_symm_op = 8;       // operations
inline constexpr int n_point_group = 16;  // groups

// All operations are diagonal: each coordinate of an atom keeps or changes its sign. Numbers 1 to 8 are E,
// C2z, C2y, C2x, I, Sxy, Sxz, Syz.
inline constexpr int op_e = 1;
inline constexpr int op_i = 5;
inline constexpr int op_sxy = 6;
inline constexpr int op_sxz = 7;
inline constexpr int op_syz = 8;

// Sign that operation p gives to coordinate a (1..3 for x, y, z).
int symm_op(int a, int p);
// Name of operation p.
std::string_view op_name(int p);
// The product of operations p and q. Each operation is its own inverse.
int op_product(int p, int q);

// The groups, npg = 1..16. A letter in brackets is the axis of the group's main element.

std::string_view pg_name(int npg);
// Number of irreducible representations, all of one dimension, and so of operations.
int nrep(int npg);
// Number of the g-th operation of the group, g = 1..nrep; the first is E.
int ir_op(int g, int npg);
// Name of the r-th irreducible representation, r = 1..nrep.
std::string_view ir_name(int r, int npg);
// Character of the r-th irreducible representation under the g-th operation: +1 or -1.
int ir_table(int g, int r, int npg);

}  // namespace vbn
