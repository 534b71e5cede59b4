// Goes through the bond graph and makes the redundant coordinates in their order.
#include "internal/int_coord.hpp"  // for get_int_coord

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "internal/bond.hpp"         // for get_bond, def_bond, get_bond_num
#include "internal/fragments.hpp"    // for ways_on
#include "internal/wilson_rows.hpp"  // for the values and B rows
#include "linalg/vector3.hpp"        // for vector3
#include "text/layout.hpp"           // for layout
#include "text/messages.hpp"         // for messages, lines_of, free_line
#include "text/stop.hpp"             // for stop, fail_in

namespace vbn {

namespace {

constexpr double linear_sine = 0.04997916927067833;  // sine of 0.05: below it a bend is linear
constexpr double crowded_sine = 0.22f;     // at a centre with more than two bonds (single precision)
constexpr double least_sine = 0.0001;      // of the angles at the axis of a torsion
constexpr double undefined_sine = 1.0e-6;  // below it a requested dihedral has no value
constexpr std::size_t max_chains = 10;

struct coordinate {
  int kind = 0;
  std::array<int, 4> atoms{};
  wilson_row row;
};

// The molecule and the coordinates made so far.
struct walk {
  const std::string& ffreq;
  const input_data& input;
  const messages& say;
  array1<vector3> x;     // angstrom
  array2<bool_> bond;    // bond graph
  array1<int> bond_num;  // neighbours of each atom
  bool impropt;          // impropers are in use
  std::vector<coordinate> made;
  // Of each collinear chain the ends, in places 1 and 3, and the centre of its first triple.
  std::vector<std::array<int, 3>> chains;
};

// The bend i-j-k from which a dihedral continues.
struct bend {
  int i, j, k;
  direction ij, kj;
  double sinphi;
  double sinmin;  // least sine of a normal bend at this centre
  bool listed;    // an entry of the lists begins with i, j
};

void add(walk& w, int kind, std::array<int, 4> atoms, const wilson_row& row) {
  if (w.made.size() == static_cast<std::size_t>(max_redundant)) stop("dimension mr");
  w.made.push_back({kind, atoms, row});
}

bool begins(const array2<int>& list, int entry, const std::array<int, 4>& atoms, int count) {
  for (int a = 1; a <= count; ++a)
    if (list(a, entry) != atoms[static_cast<std::size_t>(a - 1)]) return false;
  return true;
}

int active_added(const input_data& input) { return input.if_add_int_coord ? input.n_add_int_coord : 0; }
int active_deleted(const input_data& input) { return input.if_del_int_coord ? input.n_del_int_coord : 0; }

// Whether the bend is marked "l", linear, in the list of added coordinates.
bool marked_linear(const input_data& input, int i, int j, int k) {
  for (int entry = 1; entry <= active_added(input); ++entry)
    if (input.def_add_int_coord_c(1, entry) == "l" && begins(input.def_add_int_coord, entry, {i, j, k, 0}, 3))
      return true;
  return false;
}

// Extends the chain that this triple continues, or begins a new one. A chain can pass more than one test;
// each starts from the result of the one before.
void note_chain(walk& w, int i, int j, int k) {
  bool isnew = true;
  for (std::array<int, 3>& chain : w.chains) {
    auto& [first, centre, last] = chain;
    const auto grow = [&isnew](int& end, int outward) {
      isnew = false;
      end = outward;
    };
    if (centre == i && first == j) grow(first, k);
    if (centre == i && last == j) grow(last, k);
    if (centre == k && first == j) grow(first, i);
    if (centre == k && last == j) grow(last, i);
  }
  if (!isnew) return;
  if (w.chains.size() == max_chains) stop("too many linear bends in bmatred");
  w.chains.push_back({i, j, k});
}

void get_int_stretch(walk& w) {
  const int n = w.x.size();
  for (int i = 1; i < n; ++i)
    for (int j = i + 1; j <= n; ++j)
      if (w.bond(i, j)) add(w, kind_stretch, {i, j, 0, 0}, stretch_row(get_r_d(w.x(i), w.x(j))));
}

// At a centre with more than two bonds a nearly straight bend gives no coordinate: others describe its
// motion.
void add_bend(walk& w, const bend& at) {
  const auto [i, j, k, ij, kj, sinphi, sinmin, listed] = at;
  const bool few_bonds = w.bond_num(j) <= 2;
  if (k <= i) return;
  if (few_bonds && (sinphi < sinmin || (listed && marked_linear(w.input, i, j, k)))) {
    note_chain(w, i, j, k);
    add(w, kind_linear_bend, {i, j, k, 0}, linear_bend_row(ij, kj));
  } else if (sinphi > sinmin) {
    add(w, kind_bend, {i, j, k, 0}, bend_row(ij, kj));
  }
}

// Makes the dihedral or the torsion about a chain, unless a requested one has no value.
void add_dihedral(walk& w, int kind, const bend& at, int l, const direction& lk, bool requested) {
  const double sinph3 = sine_of(-dot(lk.r, at.kj.r));
  if (requested && (at.sinphi < undefined_sine || sinph3 < undefined_sine)) {
    w.say.warn("the added dihedral " + std::to_string(at.i) + " " + std::to_string(at.j) + " " +
               std::to_string(at.k) + " " + std::to_string(l) + " has three atoms in a line in " + w.ffreq +
               ": it is left out");
    return;
  }
  add(w, kind, {at.i, at.j, at.k, l}, dihedral_row(at.ij, at.kj, lk));
}

void add_torsions(walk& w, const bend& at) {
  const auto [i, j, k, ij, kj, sinphi, sinmin, listed] = at;
  for (int l = 1; l <= w.x.size(); ++l) {
    if (l == i || l == j || l == k) continue;
    const int verdict = listed ? def_int(w.input, 'd', i, j, k, l) : 0;
    if (verdict == -1) continue;
    const bool requested = verdict == 1;
    if ((sinphi > sinmin && k > j && w.bond(k, l)) || requested) {
      const direction lk = get_r_d(w.x(l), w.x(k));
      const double sinph3 = sine_of(-dot(lk.r, kj.r));
      if (sinph3 > sinmin || (w.bond_num(k) <= 2 && sinph3 > least_sine) || requested)
        add_dihedral(w, kind_dihedral, at, l, lk, requested);
    } else if (w.impropt && sinphi > least_sine && k > i && l > k && w.bond(j, l)) {
      wilson_row row;
      if (improper_row(ij, kj, get_r_d(w.x(l), w.x(j)), row)) add(w, kind_improper, {i, j, k, l}, row);
    }
  }
}

// Torsions of the neighbours of one end of each chain against those of the other end.
void add_chain_torsions(walk& w) {
  for (const std::array<int, 3>& chain : w.chains) {
    const int j = chain[0];
    const int k = chain[2];
    if (j == k) continue;  // a ring of bends that the input makes linear: there is no axis
    const direction kj = get_r_d(w.x(k), w.x(j));
    for (int i = 1; i <= w.x.size(); ++i) {
      if (!((i != k && w.bond(i, j)) || def_int(w.input, 'a', i, j, k, 0) == 1)) continue;
      const direction ij = get_r_d(w.x(i), w.x(j));
      const bend at{i, j, k, ij, kj, sine_of(dot(kj.r, ij.r)), least_sine, true};
      for (int l = 1; l <= w.x.size(); ++l) {
        if (l == i || l == j || l == k) continue;
        const int verdict = def_int(w.input, 'd', i, j, k, l);
        if (verdict == -1) continue;
        const bool requested = verdict == 1;
        if (!((at.sinphi > least_sine && w.bond(k, l)) || requested)) continue;
        const direction lk = get_r_d(w.x(l), w.x(k));
        if (sine_of(-dot(lk.r, kj.r)) > least_sine || requested)
          add_dihedral(w, kind_linear_torsion, at, l, lk, requested);
      }
    }
  }
}

void get_int_angle(walk& w) {
  const int n = w.x.size();
  for (int i = 1; i <= n; ++i)
    for (int j = 1; j <= n; ++j) {
      if (!w.bond(i, j)) continue;
      const bool listed = def_int(w.input, 'b', i, j, 0, 0) != 0;
      const direction ij = get_r_d(w.x(i), w.x(j));
      for (int k = 1; k <= n; ++k) {
        const int verdict = listed ? def_int(w.input, 'a', i, j, k, 0) : 0;
        if (verdict == -1 || !((k != i && w.bond(k, j)) || verdict == 1)) continue;
        const direction kj = get_r_d(w.x(k), w.x(j));
        const double sinmin = w.bond_num(j) > 2 ? crowded_sine : linear_sine;
        const bend at{i, j, k, ij, kj, sine_of(dot(kj.r, ij.r)), sinmin, listed};
        add_bend(w, at);
        add_torsions(w, at);
      }
    }
  add_chain_torsions(w);
}

// Two atoms at the same place have no direction between them.
void refuse_coincident_atoms(const array2<double>& x, const std::string& ffreq) {
  for (int i = 1; i < x.cols(); ++i)
    for (int j = i + 1; j <= x.cols(); ++j)
      if (x(1, i) == x(1, j) && x(2, i) == x(2, j) && x(3, i) == x(3, j))
        fail_in(ffreq, "atoms " + std::to_string(i) + " and " + std::to_string(j) + " are at the same place",
                "atoms at different places, or set_cart = t");
}

// Impropers are in use where a single atom has more than one neighbour.
bool use_impropers(const atom_data& atoms, const walk& w) {
  const array1<int>& bond_num = w.bond_num;
  int n2bond = 0;
  for (int i = 1; i <= bond_num.size(); ++i) {
    if (bond_num(i) == 0) {
      internal_coordinates parts;
      parts.bond = w.bond;
      w.say.warn(w.ffreq + ": " + ways_on(atoms, parts, w.input));
      static const layout unconnected("(\"Atom \", i10)");
      stop("unconnected atom in bmatred", lines_of(unconnected, {i}));
    }
    if (bond_num(i) > 1) ++n2bond;
  }
  return bond_num.size() > 3 && n2bond == 1;
}

// Copies the coordinates to arrays.
internal_coordinates laid_down(walk w) {
  const int nr = static_cast<int>(w.made.size());
  internal_coordinates made;
  made.nr = nr;
  made.z = made.zd = made.scales = array1<double>(nr);
  made.iztype = array1<int>(nr);
  made.intdef = array2<int>(4, nr);
  made.br = array2<double>(3 * w.x.size(), nr);
  array1<int> count(kind_linear_torsion);
  for (int m = 1; m <= nr; ++m) {
    const coordinate& c = w.made[static_cast<std::size_t>(m - 1)];
    ++count(c.kind);
    made.z(m) = c.row.z;
    made.scales(m) = c.kind == kind_stretch ? 1.0 : rad_to_deg;
    made.iztype(m) = c.kind;
    for (std::size_t place = 0; place < 4 && c.atoms[place] > 0; ++place) {
      made.intdef(static_cast<int>(place) + 1, m) = c.atoms[place];
      for (int a = 1; a <= 3; ++a)
        made.br(3 * (c.atoms[place] - 1) + a, m) = c.row.b[place][static_cast<std::size_t>(a - 1)];
    }
  }
  made.nb = count(kind_stretch);
  made.na = count(kind_bend);
  made.nt = count(kind_dihedral);
  made.nit = count(kind_improper);
  made.nlt = count(kind_linear_torsion);
  made.nlin = static_cast<int>(w.chains.size());
  made.bond = std::move(w.bond);
  return made;
}

}  // namespace

int def_int(const input_data& input, char int_type, int i, int j, int k, int l) {
  int count = 0;
  switch (int_type) {
    case 'b':
      count = 2;
      break;
    case 'a':
      count = 3;
      break;
    case 'd':
      count = 4;
      break;
    default:
      stop("STOP!", free_line({"int_type should be 'b', 'a' or 'd'!"}));
  }
  const std::array<int, 4> atoms{i, j, k, l};
  for (int entry = 1; entry <= active_added(input); ++entry)
    if (begins(input.def_add_int_coord, entry, atoms, count)) return 1;
  for (int entry = 1; entry <= active_deleted(input); ++entry)
    if (begins(input.def_del_int_coord, entry, atoms, count)) return -1;
  return 0;
}

internal_coordinates get_int_coord(const atom_data& atoms, const std::string& ffreq, const input_data& input,
                                   const messages& say) {
  refuse_coincident_atoms(atoms.x, ffreq);
  array2<double> xau = atoms.x;
  for (double& component : xau.span()) component *= bohr_to_ang;

  walk w{ffreq, input, say, array1<vector3>(atoms.natom), get_bond(xau, atoms.nat, say), {}, false, {}, {}};
  def_bond(input, w.bond);
  w.bond_num = get_bond_num(w.bond);
  w.impropt = use_impropers(atoms, w);
  for (int i = 1; i <= atoms.natom; ++i) w.x(i) = {xau(1, i), xau(2, i), xau(3, i)};
  get_int_stretch(w);
  get_int_angle(w);
  return laid_down(std::move(w));
}

}  // namespace vbn
