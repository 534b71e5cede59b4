// Writes the list of redundant internal coordinates.
#include "internal/report.hpp"  // for print_int_coord

#include <vector>

#include "internal/int_coord.hpp"  // for the kinds
#include "text/layout.hpp"         // for layout, value

namespace vbn {

namespace {

constexpr double large_change = 0.01;  // of a bond, angstrom

const layout large_title(R"(("Large changes in internal coords:"))");
const layout large_line("(a,i5,i2,4(3x,a5),3f8.3)");
const layout atom_label("(a2,i3)");
const layout rule(R"((80("-")))");
const layout estimate_title(R"(("print xd and zd"))");
const layout estimate_heads("(a5,a7,a9,3a9)");
const layout estimate_line("(i5,i7,f9.4,3f9.5, 2(2x, 4i6) )");

// Heading and row of one kind, whose number is its place in the table, and how many atoms define it.
struct kind_section {
  const char* heading;
  const char* row;
  int atoms;
};

constexpr kind_section sections[] = {
    {R"((2x,"1. normal bond"))", R"((2i6, f10.4, 2x, "Ang", a8,1(" -",a8), " | ", 6f8.4))", 2},
    {R"((2x,"2. linear angle"))", R"((2i6, f10.4, 2x, "Ang", a8,2(" -",a8), " | ", 9f8.4))", 3},
    {R"((2x,"3. normal angle"))", R"((2i6, f10.4, 2x, "Ang", a8,2(" -",a8), " | ", 9f8.4))", 3},
    {R"((2x,"4. proper torsion angle"))", R"((2i6, f10.4, 2x, "Deg", a8,3(" -",a8), " | ", 12f8.4))", 4},
    {R"((2x,"5. improper torsion angle"))", R"((2i6, f10.4, 2x, "Deg", a8,3(" -",a8), " | ", 12f8.4))", 4},
    {R"((2x,"6. torsion about linear bend"))", R"((2i6, f10.4, 2x, "Deg", a8,3(" -",a8), " | ", 12f8.4))", 4},
};

void print_kind(const internal_coordinates& internal, const atom_data& atoms, int kind,
                const kind_section& section, output_file& fout) {
  fout.write(layout(section.heading));
  const layout row(section.row);
  int number = 0;
  std::vector<value> values;
  for (int i = 1; i <= internal.nr; ++i) {
    if (internal.iztype(i) != kind) continue;
    const double shown = kind == kind_stretch ? internal.z(i) : internal.z(i) / pi_value * 180.0;
    values = {i, ++number, shown};
    for (int place = 1; place <= section.atoms; ++place)
      values.emplace_back(atoms.sym_num(internal.intdef(place, i)).trimmed());
    for (int place = 1; place <= section.atoms; ++place)
      for (int a = 1; a <= 3; ++a)
        values.emplace_back(internal.br(3 * (internal.intdef(place, i) - 1) + a, i));
    fout.write(row, values);
  }
}

text<5> label(const array1<text<2>>& symbol, int atom) {
  if (atom == 0) return "";
  return atom_label.line({symbol(atom).trimmed(), atom});
}

void print_large_changes(const array1<text<2>>& symbol, const internal_coordinates& c1,
                         const internal_coordinates& c2, output_file& fout) {
  fout.write(large_title);
  for (int i = 1; i <= c1.nr; ++i) {
    if (c1.iztype(i) != kind_stretch || !(std::abs(c1.zd(i)) > large_change)) continue;
    fout.write(large_line,
               {" zd", i, c1.iztype(i), label(symbol, c1.intdef(1, i)), label(symbol, c1.intdef(2, i)),
                label(symbol, c1.intdef(3, i)), label(symbol, c1.intdef(4, i)), c1.z(i), c2.z(i), c1.zd(i)});
  }
}

// The change of each coordinate to first order, B dx, and the true change.
void print_linear_estimate(const states& s1, const states& s2, output_file& fout) {
  const internal_coordinates& c1 = s1.internal;
  const internal_coordinates& c2 = s2.internal;
  fout.write(rule);
  fout.write(estimate_title);
  fout.write(estimate_heads, {"nr", "iztype", "scale", "xd", "zd", "|xd-zd|"});
  for (int i = 1; i <= c1.nr; ++i) {
    double xd = 0.0;
    const auto row = c1.br.column(i);
    for (std::size_t j = 0; j < row.size(); ++j) xd += (s2.atoms.x.span()[j] - s1.atoms.x.span()[j]) * row[j];
    const double zzd = std::abs(std::abs(xd) * bohr_to_ang - std::abs(c1.zd(i)));
    fout.write(estimate_line, {i, c1.iztype(i), c1.scales(i), bohr_to_ang * xd, c1.zd(i), zzd,
                               c1.intdef(1, i), c1.intdef(2, i), c1.intdef(3, i), c1.intdef(4, i),
                               c2.intdef(1, i), c2.intdef(2, i), c2.intdef(3, i), c2.intdef(4, i)});
  }
}

}  // namespace

void print_int_coord(const internal_coordinates& internal, const atom_data& atoms, output_file& fout) {
  fout.write(rule);
  fout.write(layout(R"((2x,"! The information of internal coordinates"))"));
  fout.write(layout(R"((2x,"nber bond                    =", i10))"), {internal.nb});
  fout.write(layout(R"((2x,"nber proper bend             =", i10))"), {internal.na});
  fout.write(layout(R"((2x,"nber linear bend             =", i10))"), {internal.nlin});
  fout.write(layout(R"((2x,"nber proper torsion          =", i10))"), {internal.nt});
  fout.write(layout(R"((2x,"nber improper torsion        =", i10))"), {internal.nit});
  fout.write(layout(R"((2x,"nber improper torsion linear =", i10))"), {internal.nlt});
  fout.write(layout(R"((2x,"nber tot redundant int       =", i10))"), {internal.nr});
  int kind = 0;
  for (const kind_section& section : sections) print_kind(internal, atoms, ++kind, section, fout);
  fout.write(rule);
}

void print_differences(const states& s1, const states& s2, output_file& fout) {
  print_large_changes(s1.atoms.symbol, s1.internal, s2.internal, fout);
  print_linear_estimate(s1, s2, fout);
}

}  // namespace vbn
