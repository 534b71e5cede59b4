// Writes the list of redundant internal coordinates.
#include "internal/report.hpp"  // for print_int_coord

#include <vector>

#include "internal/int_coord.hpp"  // for the kinds
#include "text/layout.hpp"         // for layout, value

namespace vbn {

namespace {

// Heading and row of one kind, which is named by its place in the table, and how many atoms define it.
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

}  // namespace

void print_int_coord(const internal_coordinates& internal, const atom_data& atoms, output_file& fout) {
  const layout rule("(80(1h-))");
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

}  // namespace vbn
