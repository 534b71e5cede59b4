// The tables of operations, groups and characters, laid out by hand.
#include "symmetry/tables.hpp"  // for symm_op

#include <array>

#include "linalg/array.hpp"        // for offset
#include "molecule/constants.hpp"  // for max_rep

namespace vbn {

namespace {

struct operation {
  std::string_view name;
  std::array<int, 3> diagonal;
};

// clang-format off
constexpr std::array<operation, n_symm_op> operations = {{
    {"E",   {+1, +1, +1}},
    {"C2z", {-1, -1, +1}},
    {"C2y", {-1, +1, -1}},
    {"C2x", {+1, -1, -1}},
    {"I",   {-1, -1, -1}},
    {"Sxy", {+1, +1, -1}},
    {"Sxz", {+1, -1, +1}},
    {"Syz", {-1, +1, +1}},
}};

// Characters: a row a representation, a column an operation of the group.
using characters = std::array<std::array<int, max_rep>, max_rep>;

constexpr characters table_c1 = {{
    {+1},
}};
constexpr characters table_two = {{
    {+1, +1},
    {+1, -1},
}};
constexpr characters table_d2_c2v = {{
    {+1, +1, +1, +1},
    {+1, +1, -1, -1},
    {+1, -1, +1, -1},
    {+1, -1, -1, +1},
}};
constexpr characters table_c2h = {{
    {+1, +1, +1, +1},
    {+1, -1, +1, -1},
    {+1, +1, -1, -1},
    {+1, -1, -1, +1},
}};
constexpr characters table_d2h = {{
    {+1, +1, +1, +1, +1, +1, +1, +1},
    {+1, +1, -1, -1, +1, +1, -1, -1},
    {+1, -1, +1, -1, +1, -1, +1, -1},
    {+1, -1, -1, +1, +1, -1, -1, +1},
    {+1, +1, +1, +1, -1, -1, -1, -1},
    {+1, +1, -1, -1, -1, -1, +1, +1},
    {+1, -1, +1, -1, -1, +1, -1, +1},
    {+1, -1, -1, +1, -1, +1, +1, -1},
}};

using names = std::array<std::string_view, max_rep>;

constexpr names names_c1  = {"A"};
constexpr names names_ci  = {"g", "u"};
constexpr names names_cs  = {"A'", "A\""};
constexpr names names_c2  = {"A", "B"};
constexpr names names_d2  = {"A", "B1", "B2", "B3"};
constexpr names names_c2v = {"A1", "A2", "B1", "B2"};
constexpr names names_c2h = {"Ag", "Bg", "Au", "Bu"};
constexpr names names_d2h = {"Ag", "B1g", "B2g", "B3g", "Au", "B1u", "B2u", "B3u"};

struct group {
  std::string_view name;
  int nrep;
  std::array<int, max_rep> op;  // numbers of the operations, then 0
  const names* ir_name;
  const characters* ir_table;
};

constexpr std::array<group, n_point_group> groups = {{
    {"C1",     1, {1},                      &names_c1,  &table_c1},
    {"CI",     2, {1, 5},                   &names_ci,  &table_two},
    {"CS(z)",  2, {1, 6},                   &names_cs,  &table_two},
    {"CS(y)",  2, {1, 7},                   &names_cs,  &table_two},
    {"CS(x)",  2, {1, 8},                   &names_cs,  &table_two},
    {"C2(z)",  2, {1, 2},                   &names_c2,  &table_two},
    {"C2(y)",  2, {1, 3},                   &names_c2,  &table_two},
    {"C2(x)",  2, {1, 4},                   &names_c2,  &table_two},
    {"D2",     4, {1, 2, 3, 4},             &names_d2,  &table_d2_c2v},
    {"C2V(z)", 4, {1, 2, 7, 8},             &names_c2v, &table_d2_c2v},
    {"C2V(y)", 4, {1, 3, 6, 8},             &names_c2v, &table_d2_c2v},
    {"C2V(x)", 4, {1, 4, 6, 7},             &names_c2v, &table_d2_c2v},
    {"C2H(z)", 4, {1, 2, 5, 6},             &names_c2h, &table_c2h},
    {"C2H(y)", 4, {1, 3, 5, 7},             &names_c2h, &table_c2h},
    {"C2H(x)", 4, {1, 4, 5, 8},             &names_c2h, &table_c2h},
    {"D2H",    8, {1, 2, 3, 4, 5, 6, 7, 8}, &names_d2h, &table_d2h},
}};
// clang-format on

const operation& operation_of(int p) { return operations[offset(p, n_symm_op)]; }
const group& group_of(int npg) { return groups[offset(npg, n_point_group)]; }

}  // namespace

int symm_op(int a, int p) { return operation_of(p).diagonal[offset(a, 3)]; }

std::string_view op_name(int p) { return operation_of(p).name; }

int op_product(int p, int q) {
  int product = 1;
  const auto differs = [&](int a) { return symm_op(a, product) != symm_op(a, p) * symm_op(a, q); };
  while (differs(1) || differs(2) || differs(3)) ++product;
  return product;
}

std::string_view pg_name(int npg) { return group_of(npg).name; }

int nrep(int npg) { return group_of(npg).nrep; }

int ir_op(int g, int npg) { return group_of(npg).op[offset(g, nrep(npg))]; }

std::string_view ir_name(int r, int npg) { return (*group_of(npg).ir_name)[offset(r, nrep(npg))]; }

int ir_table(int g, int r, int npg) {
  return (*group_of(npg).ir_table)[offset(r, nrep(npg))][offset(g, nrep(npg))];
}

}  // namespace vbn
