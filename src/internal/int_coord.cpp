// Walks the bond graph and makes the redundant coordinates in their order.
#include "internal/int_coord.hpp"  // for get_int_coord

#include <array>
#include <string>
#include <vector>

#include "internal/bond.hpp"         // for get_bond, def_bond, get_bond_num
#include "internal/wilson_rows.hpp"  // for the values and B rows
#include "linalg/vector3.hpp"        // for vector3
#include "text/layout.hpp"           // for layout
#include "text/output_file.hpp"      // for tell_free, tell
#include "text/stop.hpp"             // for stop, fail, warn

namespace vbn {

namespace {

constexpr double linear_sine = 0.04997916927067833;  // sine of 0.05: below it a bend is linear
constexpr double crowded_sine = 0.22f;     // at a centre with more than two bonds (single precision)
constexpr double least_sine = 0.0001;      // of an angle that a torsion turns about
constexpr double undefined_sine = 1.0e-6;  // below it a requested dihedral has no plane to turn in
constexpr std::size_t max_chains = 10;

struct coordinate {
  int kind = 0;
  std::array<int, 4> atoms{};
  wilson_row row;
};

// The molecule and what has been made of it so far.
struct walk {
  const states& state;  // `bond`, `bond_num` and `impropt` are set
  const input_data& input;
  array1<vector3> x;  // angstrom
  std::vector<coordinate> made;
  // Of each collinear chain the ends, in places 1 and 3, and the centre of its first triple.
  std::vector<std::array<int, 3>> chains;
};

// The bend i-j-k that a dihedral goes on from.
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

// Lets the chain of which this triple is the continuation grow at its end, or begins a new one. A chain can
// pass more than one test; each acts on what the one before left.
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
      if (w.state.bond(i, j)) add(w, kind_stretch, {i, j, 0, 0}, stretch_row(get_r_d(w.x(i), w.x(j))));
}

// At a centre with more than two bonds a nearly straight bend gives no coordinate: others span its motion.
void add_bend(walk& w, const bend& at) {
  const auto [i, j, k, ij, kj, sinphi, sinmin, listed] = at;
  const bool few_bonds = w.state.bond_num(j) <= 2;
  if (k <= i) return;
  if (few_bonds && (sinphi < sinmin || (listed && marked_linear(w.input, i, j, k)))) {
    note_chain(w, i, j, k);
    add(w, kind_linear_bend, {i, j, k, 0}, linear_bend_row(ij, kj));
  } else if (sinphi > sinmin) {
    add(w, kind_bend, {i, j, k, 0}, bend_row(ij, kj));
  }
}

// Makes the dihedral or the torsion about a chain, unless a request asks for one that has no value.
void add_dihedral(walk& w, int kind, const bend& at, int l, const direction& lk, bool requested) {
  const double sinph3 = sine_of(-dot(lk.r, at.kj.r));
  if (requested && (at.sinphi < undefined_sine || sinph3 < undefined_sine)) {
    warn("the added dihedral " + std::to_string(at.i) + " " + std::to_string(at.j) + " " +
         std::to_string(at.k) + " " + std::to_string(l) + " has three atoms in a line in " +
         w.state.ffreq.str() + ": it is left out");
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
    if ((sinphi > sinmin && k > j && w.state.bond(k, l)) || requested) {
      const direction lk = get_r_d(w.x(l), w.x(k));
      const double sinph3 = sine_of(-dot(lk.r, kj.r));
      if (sinph3 > sinmin || (w.state.bond_num(k) <= 2 && sinph3 > least_sine) || requested)
        add_dihedral(w, kind_dihedral, at, l, lk, requested);
    } else if (w.state.impropt && sinphi > least_sine && k > i && l > k && w.state.bond(j, l)) {
      wilson_row row;
      if (improper_row(ij, kj, get_r_d(w.x(l), w.x(j)), row)) add(w, kind_improper, {i, j, k, l}, row);
    }
  }
}

// Torsions of what hangs on the one end of each chain against what hangs on the other.
void add_chain_torsions(walk& w) {
  for (const std::array<int, 3>& chain : w.chains) {
    const int j = chain[0];
    const int k = chain[2];
    if (j == k) continue;  // a ring of bends that the input calls linear: no axis to turn about
    const direction kj = get_r_d(w.x(k), w.x(j));
    for (int i = 1; i <= w.x.size(); ++i) {
      if (!((i != k && w.state.bond(i, j)) || def_int(w.input, 'a', i, j, k, 0) == 1)) continue;
      const direction ij = get_r_d(w.x(i), w.x(j));
      const bend at{i, j, k, ij, kj, sine_of(dot(kj.r, ij.r)), least_sine, true};
      for (int l = 1; l <= w.x.size(); ++l) {
        if (l == i || l == j || l == k) continue;
        const int verdict = def_int(w.input, 'd', i, j, k, l);
        if (verdict == -1) continue;
        const bool requested = verdict == 1;
        if (!((at.sinphi > least_sine && w.state.bond(k, l)) || requested)) continue;
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
      if (!w.state.bond(i, j)) continue;
      const bool listed = def_int(w.input, 'b', i, j, 0, 0) != 0;
      const direction ij = get_r_d(w.x(i), w.x(j));
      for (int k = 1; k <= n; ++k) {
        const int verdict = listed ? def_int(w.input, 'a', i, j, k, 0) : 0;
        if (verdict == -1 || !((k != i && w.state.bond(k, j)) || verdict == 1)) continue;
        const direction kj = get_r_d(w.x(k), w.x(j));
        const double sinmin = w.state.bond_num(j) > 2 ? crowded_sine : linear_sine;
        const bend at{i, j, k, ij, kj, sine_of(dot(kj.r, ij.r)), sinmin, listed};
        add_bend(w, at);
        add_torsions(w, at);
      }
    }
  add_chain_torsions(w);
}

// No direction leads from an atom to another one at the same place.
void refuse_coincident_atoms(const states& state) {
  for (int i = 1; i < state.natom; ++i)
    for (int j = i + 1; j <= state.natom; ++j)
      if (state.x(1, i) == state.x(1, j) && state.x(2, i) == state.x(2, j) && state.x(3, i) == state.x(3, j))
        fail({"atoms " + std::to_string(i) + " and " + std::to_string(j) + " stand at the same place",
              state.ffreq.str(), 0, "", 0, "atoms apart from each other, or set_cart = t"});
}

void set_bond_graph(states& state, const input_data& input, const array2<double>& xau) {
  get_bond(xau, state.nat, state.bond);
  def_bond(input, state.bond);
  get_bond_num(state.bond, state.bond_num);
  int n2bond = 0;
  for (int i = 1; i <= state.natom; ++i) {
    if (state.bond_num(i) == 0) {
      static const layout unconnected("(\"Atom \", i10)");
      tell(unconnected, {i});
      stop("unconnected atom in bmatred");
    }
    if (state.bond_num(i) > 1) ++n2bond;
  }
  state.impropt = state.natom > 3 && n2bond == 1;
}

// Lays the coordinates down in the arrays of the record, which they size.
void store(states& state, const walk& w) {
  const int nr = static_cast<int>(w.made.size());
  state.nr = nr;
  state.nv = state.n3 - 6;
  state.z = state.zd = state.scales = array1<double>(nr);
  state.iztype = array1<int>(nr);
  state.intdef = array2<int>(4, nr);
  state.br = array2<double>(state.n3, nr);
  array1<int> count(kind_linear_torsion);
  for (int m = 1; m <= nr; ++m) {
    const coordinate& c = w.made[static_cast<std::size_t>(m - 1)];
    ++count(c.kind);
    state.z(m) = c.row.z;
    state.scales(m) = c.kind == kind_stretch ? 1.0 : rad_to_deg;
    state.iztype(m) = c.kind;
    for (std::size_t place = 0; place < 4 && c.atoms[place] > 0; ++place) {
      state.intdef(static_cast<int>(place) + 1, m) = c.atoms[place];
      for (int a = 1; a <= 3; ++a)
        state.br(3 * (c.atoms[place] - 1) + a, m) = c.row.b[place][static_cast<std::size_t>(a - 1)];
    }
  }
  state.nb = count(kind_stretch);
  state.nl = count(kind_linear_bend);
  state.na = count(kind_bend);
  state.nt = count(kind_dihedral);
  state.nit = count(kind_improper);
  state.nlt = count(kind_linear_torsion);
  state.nlin = static_cast<int>(w.chains.size());
  state.linbon = array2<int>(3, state.nlin);
  for (int c = 1; c <= state.nlin; ++c)
    for (int place = 1; place <= 3; ++place)
      state.linbon(place, c) = w.chains[static_cast<std::size_t>(c - 1)][static_cast<std::size_t>(place - 1)];
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
      tell_free({"int_type should be 'b', 'a' or 'd'!"});
      stop("STOP!");
  }
  const std::array<int, 4> atoms{i, j, k, l};
  for (int entry = 1; entry <= active_added(input); ++entry)
    if (begins(input.def_add_int_coord, entry, atoms, count)) return 1;
  for (int entry = 1; entry <= active_deleted(input); ++entry)
    if (begins(input.def_del_int_coord, entry, atoms, count)) return -1;
  return 0;
}

void get_int_coord(states& state, const input_data& input) {
  refuse_coincident_atoms(state);
  array2<double> xau = state.x;
  for (double& component : xau.span()) component *= bohr_to_ang;
  set_bond_graph(state, input, xau);

  walk w{state, input, array1<vector3>(state.natom), {}, {}};
  for (int i = 1; i <= state.natom; ++i) w.x(i) = {xau(1, i), xau(2, i), xau(3, i)};
  get_int_stretch(w);
  get_int_angle(w);
  store(state, w);
}

}  // namespace vbn
