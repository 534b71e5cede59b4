// Layouts of the viewer files.
#include "output/viewer_files.hpp"  // for the interface

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "molecule/constants.hpp"  // for bohr_to_ang and au_to_cm
#include "molecule/elements.hpp"   // for element_symbol
#include "text/fixed_text.hpp"     // for text
#include "text/layout.hpp"         // for layout, value
#include "text/messages.hpp"       // for messages
#include "text/number.hpp"         // for write_fixed
#include "text/output_file.hpp"    // for output_file
#include "text/words.hpp"          // for trim, lowercase

namespace vbn {

namespace {

constexpr int max_partners = 10;         // bonds of one atom to atoms of higher number
constexpr double largest_arrow = 2.0;    // largest component of a mode in the animations
constexpr int last_named_element = 100;  // Fm, the last element known to the viewers

// Ranges of atomic numbers and the step to the partner element; an element outside of them is its own
// partner.
struct partner_range {
  int first;
  int last;
  int step;
};
constexpr partner_range partner_elements[] = {
    {1, 1, 2},      //
    {2, 12, 8},     //
    {13, 20, -8},   //
    {21, 30, 18},   //
    {31, 56, -18},  //
    {72, 88, -32},  //
};

// Partner symbols of the Gaussian input.
struct partner_pair {
  std::string_view symbol;
  std::string_view partner;
};
constexpr partner_pair partner_symbols[] = {
    {"h", "li"}, {"li", "h"},  //
    {"c", "si"}, {"si", "c"},  //
    {"n", "p"},  {"p", "n"},   //
    {"o", "s"},  {"s", "o"},   //
};

const layout one_count("(i4)");
const layout title_line(R"((" title"))");
const layout gjf_atom("(a2,4x,3f19.13)");
const layout xyz_atom("(a4,3f16.10)");
const layout vector_atom("(a4,3f16.10,3f12.6)");
const layout vib_title(R"((" freq = ", f11.2, " cm^-1"))");

std::string uppercase(std::string_view symbol) {
  std::string folded(symbol);
  for (char& c : folded) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return folded;
}

text<2> partner_symbol(const text<2>& symbol) {
  const text<2> low = lowercase(symbol.full());
  for (const partner_pair& pair : partner_symbols) {
    if (low == pair.symbol) return pair.partner;
  }
  return low;
}

// The connectivity lines of one geometry, its atoms counted from `first`.
void write_bonds(output_file& file, const array2<bool_>& bond, int natom, int first, const messages& say) {
  // A layout for each number of partners, built once.
  static const std::vector<layout> bond_lines = [] {
    std::vector<layout> lines;
    lines.emplace_back("(I3)");
    for (int k = 1; k <= max_partners; ++k) lines.emplace_back("(I3,x," + std::to_string(k) + "(I4,x,F4.1))");
    return lines;
  }();
  const double single_bond = 1.0;
  std::vector<value> values;
  for (int i = 1; i <= natom; ++i) {
    values = {first + i - 1};
    int partners = 0;
    for (int j = i + 1; j <= natom && bond.rows() > 0; ++j) {
      if (!bond(i, j)) continue;
      if (++partners > max_partners) continue;
      values.emplace_back(first + j - 1);
      values.emplace_back(single_bond);
    }
    if (partners > max_partners) {
      say.warn("atom " + std::to_string(i) + " has " + std::to_string(partners) +
               " bonds to atoms of higher number; " + file.name() + " lists only the first " +
               std::to_string(max_partners));
    }
    file.write(bond_lines[static_cast<std::size_t>(std::min(partners, max_partners))], values);
  }
}

double largest_magnitude(std::span<const double> v) {
  double largest = 0.0;
  for (const double component : v) largest = std::max(largest, std::abs(component));
  return largest;
}

// The modes cm times the root of the masses, as in the viewer files. A true Cartesian displacement would be
// divided by it.
array2<double> cm_to_c(const array1<double>& sqtmass, const array2<double>& cm) {
  array2<double> c(cm.rows(), cm.cols());
  for (int i = 1; i <= cm.cols(); ++i)
    for (int j = 1; j <= cm.rows(); ++j) c(j, i) = sqtmass(j) * cm(j, i);
  return c;
}

array2<double> in_angstrom(const array2<double>& x) {
  array2<double> shown = x;
  for (double& component : shown.span()) component *= bohr_to_ang;
  return shown;
}

}  // namespace

void get_element_name(const array1<int>& nat, array1<text<2>>& symbol) {
  symbol = array1<text<2>>(nat.size());
  for (int i = 1; i <= nat.size(); ++i) {
    const bool named = nat(i) >= 1 && nat(i) <= last_named_element;
    symbol(i) = named ? element_symbol(nat(i)) : "X";
  }
}

void change_nat(const array1<int>& nat, array1<int>& nat1) {
  nat1 = nat;
  for (int& number : nat1) {
    for (const partner_range& range : partner_elements) {
      if (number >= range.first && number <= range.last) {
        number += range.step;
        break;
      }
    }
  }
}

void write_gjf_dx(std::string_view fgauss, const array2<double>& xg, const array2<double>& xe,
                  const array2<bool_>& bondg, const array2<bool_>& bonde, const array1<text<2>>& symbol,
                  const messages& say) {
  const int natom = symbol.size();
  output_file file{std::string(fgauss)};
  file.line("# hf geom=connectivity");
  file.line("");
  file.line("title");
  file.line("");
  file.line("0 1");
  for (int i = 1; i <= natom; ++i) {
    file.write(gjf_atom, {symbol(i), bohr_to_ang * xg(1, i), bohr_to_ang * xg(2, i), bohr_to_ang * xg(3, i)});
  }
  for (int i = 1; i <= natom; ++i) {
    file.write(gjf_atom, {partner_symbol(symbol(i)), bohr_to_ang * xe(1, i), bohr_to_ang * xe(2, i),
                          bohr_to_ang * xe(3, i)});
  }
  file.line("");
  write_bonds(file, bondg, natom, 1, say);
  write_bonds(file, bonde, natom, natom + 1, say);
  file.close();
}

void write_xyz_dx(std::string_view fxyz_x, const array2<double>& x1, const array2<double>& x2,
                  const array1<int>& nat) {
  const int n = nat.size();
  array1<text<2>> symbol;
  array1<text<2>> symbol1;
  array1<int> nat1;
  get_element_name(nat, symbol);
  change_nat(nat, nat1);
  get_element_name(nat1, symbol1);

  output_file file{std::string(fxyz_x)};
  file.write(one_count, {2 * n});
  file.write(title_line);
  for (int i = 1; i <= n; ++i) {
    file.write(xyz_atom, {lowercase(symbol(i).full()), x1(1, i), x1(2, i), x1(3, i)});
  }
  for (int i = 1; i <= n; ++i) {
    file.write(xyz_atom, {uppercase(symbol1(i).full()), x2(1, i), x2(2, i), x2(3, i)});
  }
  file.close();
}

void write_xyz_dv(std::string_view fxyz_v, const array2<double>& x, std::span<const double> d21,
                  const array1<int>& nat) {
  const int n = nat.size();
  const double x_max = largest_magnitude(d21);
  array1<text<2>> symbol;
  get_element_name(nat, symbol);

  output_file file{std::string(fxyz_v)};
  file.write(one_count, {n});
  file.write(title_line);
  for (int i = 1; i <= n; ++i) {
    const std::span<const double> d = d21.subspan(3 * static_cast<std::size_t>(i - 1), 3);
    file.write(vector_atom, {symbol(i), x(1, i), x(2, i), x(3, i), d[0] / x_max, d[1] / x_max, d[2] / x_max});
  }
  file.close();
}

void write_xyz_vib(std::string_view fxyz, const array1<text<2>>& symbol, const array2<double>& x,
                   const array2<double>& v, const array1<double>& freq) {
  const int n = symbol.size();
  const double vmax = largest_magnitude(v.span());
  const array2<double> shown = in_angstrom(x);
  // In the layout "(a4,6f16.10)": symbol and geometry are the same in every frame and are converted once.
  constexpr int width = 16;
  const std::string room(std::size_t{3} * width, ' ');
  std::string atoms;
  for (int i = 1; i <= n; ++i) {
    xyz_atom.write(atoms, {symbol(i), shown(1, i), shown(2, i), shown(3, i)});
    atoms.insert(atoms.size() - 1, room);
  }

  output_file file{std::string(fxyz)};
  std::string frame;
  for (int j = 1; j <= freq.size(); ++j) {
    file.write(one_count, {n});
    file.write(vib_title, {au_to_cm * freq(j)});
    frame = atoms;
    char* field = frame.data();
    for (int i = 1; i <= n; ++i) {
      field += 4 + 3 * width;
      for (int k = 3 * i - 2; k <= 3 * i; ++k, field += width) {
        write_fixed(field, v(k, j) / vmax * largest_arrow, width, 10);
      }
      ++field;  // the line end
    }
    file.raw(frame);
  }
  file.close();
}

void write_file_coord(const array1<states>& state, std::string_view prefix, const messages& say) {
  const std::string stem(trim(prefix));
  const states& g = state(1);
  const states& e = state(2);
  std::vector<double> dx(g.atoms.x.span().size());  // bohr
  for (std::size_t k = 0; k < dx.size(); ++k) dx[k] = e.atoms.x.span()[k] - g.atoms.x.span()[k];

  write_gjf_dx(stem + ".dx.x.com", g.atoms.x, e.atoms.x, g.internal.bond, e.internal.bond, g.atoms.symbol,
               say);
  write_xyz_dx(stem + ".dx.x.xyz", g.atoms.x, e.atoms.x, g.atoms.nat);
  write_xyz_vib(stem + ".vib1.xyz", g.atoms.symbol, g.atoms.x, cm_to_c(g.atoms.sqtmass, g.modes.cm),
                g.modes.freq);
  write_xyz_vib(stem + ".vib2.xyz", g.atoms.symbol, e.atoms.x, cm_to_c(e.atoms.sqtmass, e.modes.cm),
                e.modes.freq);
  write_xyz_dv(stem + ".dx.v.xyz", in_angstrom(g.atoms.x), dx, g.atoms.nat);
}

}  // namespace vbn
