// Search for the operations of D2H that map the molecule onto itself, and the results derived from them.
#include "symmetry/point_group.hpp"  // for point_group1

#include <cmath>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "molecule/geometry.hpp"  // for root_mean_square_of_coordinates
#include "text/fixed_text.hpp"    // for text
#include "text/layout.hpp"        // for layout
#include "text/messages.hpp"      // for messages, lines_of, free_line
#include "text/stop.hpp"          // for stop_printed

namespace vbn {

namespace {

constexpr double shortest_distance = 0.1;  // bohr; atoms closer than this are an error of the geometry

int sign_of(int v) { return v < 0 ? -1 : 1; }

// Distance of the image of atom i of x under operation p from atom j.
double image_distance(const array2<double>& x, int i, int p, int j) {
  double sum = 0.0;
  for (int a = 1; a <= 3; ++a) {
    const double d = symm_op(a, p) * x(a, i) - x(a, j);
    sum += d * d;
  }
  return std::sqrt(sum);
}

// Fills column p of the atom map; false when an atom has no image.
bool find_images(const array2<double>& x, const array1<int>& nat, const array1<double>& mass, double tol,
                 int p, array2<int>& jreln) {
  const int n = x.cols();
  for (int i = 1; i <= n; ++i) {
    int j = 1;
    while (j <= n && !(nat(j) == nat(i) && mass(j) == mass(i) && image_distance(x, i, p, j) <= tol)) ++j;
    if (j > n) {
      for (int k = 1; k <= n; ++k) jreln(k, p) = 0;
      return false;
    }
    jreln(i, p) = j;
    jreln(j, p) = i;
  }
  return true;
}

// The first operation whose map of the atoms does not multiply with another map as the operations do, 0 if
// there is none. With 0 each map is a permutation that is its own inverse, and the set is a group.
int broken_operation(const symmetry_search& found) {
  for (int p = 1; p <= n_symm_op; ++p)
    for (int q = 1; q <= p; ++q) {
      if (!found.op(p) || !found.op(q)) continue;
      const int pq = op_product(p, q);
      for (int i = 1; i <= found.jreln.rows(); ++i)
        if (found.jreln(found.jreln(i, q), p) != found.jreln(i, pq)) return p;
    }
  return 0;
}

void keep_identity_alone(symmetry_search& found) {
  for (int p = op_e + 1; p <= n_symm_op; ++p) {
    found.op(p) = false;
    for (int i = 1; i <= found.jreln.rows(); ++i) found.jreln(i, p) = 0;
  }
  found.nop = 1;
  found.npg = 1;
}

}  // namespace

bool check_x(const array2<double>& x) {
  for (int i = 1; i < x.cols(); ++i)
    for (int j = i + 1; j <= x.cols(); ++j)
      if (image_distance(x, i, op_e, j) < shortest_distance) return false;
  return true;
}

int search_pg(const array1<bool_>& op) {
  int nop = 0;
  for (const bool_ holds : op) nop += holds;
  for (int npg = 1; npg <= n_point_group; ++npg) {
    if (nrep(npg) != nop) continue;
    int g = 1;
    while (g <= nop && op(ir_op(g, npg))) ++g;
    if (g > nop) return npg;
  }
  return 1;
}

symmetry_search search_op1(const array2<double>& x, const array1<int>& nat, const array1<double>& mass,
                           double tol, const messages& say) {
  const int n = x.cols();
  symmetry_search found;
  found.jreln = array2<int>(n, n_symm_op);
  found.jreln3 = array2<int>(3 * n, n_symm_op);

  // E is present by definition, also where a tolerance below zero finds no atom in its own place, or a large
  // one finds another atom first.
  found.op(op_e) = true;
  for (int i = 1; i <= n; ++i) found.jreln(i, op_e) = i;
  for (int p = op_e + 1; p <= n_symm_op; ++p) found.op(p) = find_images(x, nat, mass, tol, p, found.jreln);
  for (const bool_ holds : found.op) found.nop += holds;

  found.npg = search_pg(found.op);
  if (found.nop != nrep(found.npg)) {
    keep_identity_alone(found);
  } else if (const int p = broken_operation(found); p != 0) {
    say.warn("symm_tol is so large that " + std::string(op_name(p)) +
             " maps several atoms onto one: the molecule is treated as C1; use a symm_tol "
             "below half the distance of like atoms");
    keep_identity_alone(found);
  }

  for (int p = 1; p <= n_symm_op; ++p)
    for (int i = 1; found.op(p) && i <= n; ++i)
      for (int a = 1; a <= 3; ++a)
        found.jreln3(3 * (i - 1) + a, p) = symm_op(a, p) * (3 * (found.jreln(i, p) - 1) + a);
  return found;
}

void search_op3(const symmetry_search& found, array1<int>& ir_lw, array1<int>& ir_hi, array2<double>& c) {
  const int n3 = found.jreln3.rows();
  const int nr = nrep(found.npg);
  int nrs = 0;
  ir_lw = ir_hi = array1<int>(max_rep);
  c = array2<double>(n3, n3);
  for (int r = 1; r <= nr; ++r) {
    array1<bool_> isinc(n3);
    for (int i3 = 1; i3 <= n3; ++i3) {
      if (isinc(i3)) continue;
      std::map<int, int> bas_n3;  // the images of the coordinate, in increasing order, with their weights
      for (int g = 1; g <= nr; ++g) {
        const int j3 = found.jreln3(i3, ir_op(g, found.npg));
        bas_n3[std::abs(j3)] += ir_table(g, r, found.npg) * sign_of(j3);
      }
      std::erase_if(bas_n3, [](const auto& member) { return member.second == 0; });
      if (bas_n3.empty()) continue;
      ++nrs;
      ir_hi(r) = nrs;
      if (ir_lw(r) == 0) ir_lw(r) = nrs;
      // All weights of a projection have the same magnitude, so their signs divided by the root of their
      // number form a vector of length 1.
      const double size = std::sqrt(1.0 / static_cast<double>(bas_n3.size()));
      for (const auto& [r3, weight] : bas_n3) {
        isinc(r3) = true;
        c(nrs, r3) = sign_of(weight) * size;
      }
    }
  }
}

// Each operation is its own inverse, so the images of an atom are its orbit: no search among the
// representatives found so far is needed.
representative in_coord_basis(const symmetry_search& found, int iat) {
  representative lowest{iat, 0, op_e};
  for (int ip = 1; ip <= n_symm_op; ++ip)
    if (found.op(ip) && found.jreln(iat, ip) < lowest.atom) lowest = {found.jreln(iat, ip), 0, ip};
  return lowest;
}

representative in_coord_basis2(const symmetry_search& found, int iat, int jat) {
  representative lowest{iat, jat, op_e};
  for (int ip = 1; ip <= n_symm_op; ++ip) {
    if (!found.op(ip)) continue;
    const int kat = found.jreln(iat, ip);
    const int lat = found.jreln(jat, ip);
    if (std::pair(kat, lat) < std::pair(lowest.atom, lowest.other_atom)) lowest = {kat, lat, ip};
  }
  return lowest;
}

pair_element id9(const symmetry_search& found, int b, int j, int a, int i) {
  const representative pair = in_coord_basis2(found, i, j);
  return {pair.atom, a, pair.other_atom, b, symm_op(a, pair.ip) * symm_op(b, pair.ip)};
}

symmetry_search point_group1(const atom_data& atoms, double symm_tol, symmetry_data& symmetry,
                             const messages& say) {
  const array2<double>& x = atoms.x;
  if (!check_x(x)) {
    const std::string empty = lines_of(layout("()"));
    stop_printed(empty + free_line({"Error! Wrong coordinate in subroutine point_group1"}) + empty);
  }

  symmetry_search found = search_op1(x, atoms.nat, atoms.mass, symm_tol, say);
  symmetry.mirror(1) = found.op(op_syz);
  symmetry.mirror(2) = found.op(op_sxz);
  symmetry.mirror(3) = found.op(op_sxy);
  symmetry.nrep = nrep(found.npg);
  for (int r = 1; r <= max_rep; ++r)
    symmetry.ir_name(r) = r <= symmetry.nrep ? text<3>(ir_name(r, found.npg)) : text<3>();
  search_op3(found, symmetry.nr_lw, symmetry.nr_hi, symmetry.trans_symm);
  symmetry.new_pgrp = pg_name(found.npg);

  symmetry.id3 = array3<int>(3, 3, atoms.natom);
  array2<double> x_symm(3, atoms.natom);
  for (int i = 1; i <= atoms.natom; ++i) {
    const representative ja = in_coord_basis(found, i);
    for (int a = 1; a <= 3; ++a) {
      symmetry.id3(1, a, i) = ja.atom;
      symmetry.id3(2, a, i) = a;
      symmetry.id3(3, a, i) = symm_op(a, ja.ip);
      x_symm(a, i) = symm_op(a, ja.ip) * x(a, ja.atom);
    }
  }
  if (root_mean_square_of_coordinates(x, x_symm) > symm_tol) {
    if (symm_tol < 0.0) say.warn("symm_tol is below zero: no two geometries agree; use 0 or more");
    stop_printed(free_line({"x_symm is not the same as x, stop!"}));
  }
  return found;
}

}  // namespace vbn
