// Layouts of the geometry and frequency tables of the log.
#include "output/log_sections.hpp"  // for the interface

#include <vector>

#include "molecule/constants.hpp"  // for bohr_to_ang and au_to_cm
#include "text/layout.hpp"         // for layout
#include "text/words.hpp"          // for trim

namespace vbn {

namespace {

const layout rule("(80(1h_))");
const layout geometry_title(R"((2x, "Mol ", i2, 4x, a))");
const layout geometry_heads("(a4, a8, 2x, a15, 2x, 3a15)");
const layout geometry_row("(i4, a8, 2x, f15.7, 2x 3f15.7)");
const layout original_freq(R"((2x, "Original freq"))");
const layout projected_freq(R"((2x, "Projected freq"))");
const layout freq_title(R"_((2x, "Mol ", i2, 4x, "Frequency (cm^-1)"))_");
const layout freq_rows("(10f11.2)");

void print_frequencies(output_file& fout, const layout& title, const array1<double>& freq, int istate) {
  fout.write(rule);
  fout.write(title);
  fout.write(freq_title, {istate});
  std::vector<double> shown;
  for (const double w : freq) shown.push_back(au_to_cm * w);
  fout.write(freq_rows, shown);
}

}  // namespace

void print_coord(output_file& fout, const atom_data& atoms, int istate, std::string_view massage) {
  fout.write(rule);
  fout.write(geometry_title, {istate, trim(massage)});
  fout.write(geometry_heads, {"n", "symbol", "mass", "x", "y", "z"});
  for (int i = 1; i <= atoms.natom; ++i) {
    fout.write(geometry_row, {i, atoms.symbol(i).trimmed(), atoms.mass(i), bohr_to_ang * atoms.x(1, i),
                              bohr_to_ang * atoms.x(2, i), bohr_to_ang * atoms.x(3, i)});
  }
}

void print_freq0(output_file& fout, const normal_modes& modes, int istate) {
  print_frequencies(fout, original_freq, modes.freq0, istate);
}

void print_freq(output_file& fout, const normal_modes& modes, int istate) {
  print_frequencies(fout, projected_freq, modes.freq, istate);
}

}  // namespace vbn
