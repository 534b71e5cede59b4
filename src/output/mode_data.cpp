// Layouts of the mode data files, and the writer for both routes.
#include "output/mode_data.hpp"  // for the interface

#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "linalg/matmul.hpp"       // for matmul
#include "molecule/constants.hpp"  // for au_to_cm, first_vibration
#include "text/fixed_text.hpp"     // for text
#include "text/layout.hpp"         // for layout
#include "text/number.hpp"         // for write_scientific and write_fixed
#include "text/output_file.hpp"    // for output_file

namespace vbn {

namespace {

constexpr int nw = 136;           // width of a rule line
constexpr int cells_a_line = 10;  // matrix elements on a line of the main file

// The results of one route for the two states.
struct route {
  const mode_results& g;
  const mode_results& e;
};

constexpr std::string_view description[] = {
    "    Qg = S Qe + D",
    "    Fix g of S(g,e), change e of S(g,e)",
    "    DATA for Absorption",
    "    1              : ground  state",
    "    2              : excited state",
    "    n              : index of mode, from 1 to 3n",
    "    m              : index of mode, from 1 to 3n-6",
    "    sym            : irreducible representation",
    "    freq   (cm-1 ) : frequency",
    "    D      (a.u. ) : displacement of mode",
    "    delta  ( 1   ) : dimensionless projection, delta = D * SQRT(freq)",
    "    HR     ( 1   ) : Huang-Rhys factor, HR = 0.5 * delta^2 ",
    "    lam    (cm-1 ) : reorganization energy, lam = HR * \\hbar * freq",
};

const layout num_atoms(R"((I4,"  # num of atoms "))");
const layout num_modes(R"((I4,"  # num of modes "))");
const layout begin_data(R"(("BEGIN_DATA_",i1))");
const layout begin_description(R"(("  BEGIN_DESCRIPTION_",i1))");
const layout zpe1(R"(("    ZPE1 (Ground ) : ",f15.7," cm-1"))");
const layout zpe2(R"(("    ZPE2 (Excited) : ",f15.7," cm-1"))");
const layout zpe_difference(R"(("    ZPE2 - ZPE1    : ",f15.7," cm-1"))");
const layout end_description(R"(("  END_DESCRIPTION_",i1))");
const layout begin_output(R"(("  BEGIN_OUTPUT_",i1))");
const layout column_heads("(2a4,2(a5,a8,3a11,a8),2a5,a9)");
const layout mode_row("(2i4,2(a5,f8.2,f12.5,f10.5,f11.5,f8.2),2i5,f9.4)");
const layout total_lam(R"_(("  Total reorganization energy (cm-1):",2X,2F21.6))_");
const layout end_output(R"(("  END_OUTPUT_",i1))");
const layout end_data(R"(("END_DATA_",i1))");
const layout begin_dush(R"(("BEGIN_DUSH_",i1,4x," Delta DUSH = ",f7.2, " %"))");
const layout begin_dush_information(R"(("  BEGIN_DUSH_INFORMATION",i1))");
const layout end_dush_information(R"(("  END_DUSH_INFORMATION",i1))");
const layout begin_dush_data(R"(("  BEGIN_DUSH_DATA_",i1))");
const layout mode_head(R"((2x,"MODE",2x,i6))");
const layout end_dush_data(R"(("  END_DUSH_DATA_",i1))");
const layout begin_orth_test(R"(("  BEGIN_DUSH_ORTH_TEST EPS = ", f13.6))");
const layout orth_row("(2i6,f13.6)");
const layout end_dush(R"(("END_DUSH_",i1))");
const layout rrs_row("(3(2x,F12.6))");
const layout rrs_matrix("(5(2x,d15.8))");

// S(g,e) with rows and columns in the order of the pairing.
array2<double> ordered(const array1<states>& state) {
  const int n3 = state(1).atoms.n3;
  array2<double> s_order(n3, n3);
  for (int j = 1; j <= n3; ++j) {
    const int idx_e = state(2).modes.order(j);
    for (int i = 1; i <= n3; ++i) s_order(i, j) = state(1).modes.s(state(1).modes.order(i), idx_e);
  }
  return s_order;
}

// The elements of a matrix as text, each converted once: an element has the same width in the matrix and in
// its transpose, so both are assembled from these cells.
class cells {
 public:
  template <class Put>
  cells(const array2<double>& a, std::size_t width, Put put) : n_(a.rows()), width_(width) {
    held_.resize(a.span().size() * width, ' ');
    char* cell = held_.data();
    for (const double element : a.span()) {
      put(cell, element);
      cell += width;
    }
  }

  // Element (i,j); with `p` 2 that of the transpose.
  std::string_view operator()(int i, int j, int p) const {
    if (p == 2) std::swap(i, j);
    return std::string_view(held_).substr(
        (offset(i, n_) + offset(j, n_) * static_cast<std::size_t>(n_)) * width_, width_);
  }

 private:
  int n_;
  std::size_t width_;
  std::string held_;
};

// The elements of s' s that differ from those of the unit matrix by more than `eps`, a line each.
std::string orth_test(const array2<double>& s_order, double eps) {
  const int n3 = s_order.rows();
  const array2<double> s_orth = matmul(s_order, s_order, op::transposed, op::plain);
  std::string lines;
  for (int i = 1; i <= n3; ++i) {
    for (int j = 1; j <= n3; ++j) {
      const double deviation = i == j ? std::abs(std::abs(s_orth(i, i)) - 1.0) : std::abs(s_orth(i, j));
      if (deviation > eps) orth_row.write(lines, {i, j, s_orth(i, j)});
    }
  }
  return lines;
}

// The open files of one stem.
struct data_files {
  output_file dat;
  std::optional<output_file> rrs1;  // both only with `if_rrs`
  std::optional<output_file> rrs2;
};

// The table of the paired modes.
void write_modes(data_files& files, const array1<states>& state, const array2<double>& s_order,
                 const route& results) {
  const states& g = state(1);
  const states& e = state(2);
  const std::string heavy_rule(nw, '=');
  const std::string light_rule(nw, '-');
  output_file& dat = files.dat;

  dat.line(heavy_rule);
  dat.write(column_heads, {"n", "m", "sym1", "freq1", "D1", "delta1", "HR1", "lam1", "sym2", "freq2", "D2",
                           "delta2", "HR2", "lam2", "g", "e", "S(g,e)"});
  dat.line(light_rule);
  for (int i = 1; i <= g.atoms.n3; ++i) {
    const int j1 = g.modes.order(i);
    const int j2 = e.modes.order(i);
    const double freq1 = au_to_cm * g.modes.freq(j1);
    const double freq2 = au_to_cm * e.modes.freq(j2);
    if (files.rrs1) files.rrs1->write(rrs_row, {freq1, freq2, results.e.d0(j2)});
    dat.write(mode_row,
              {i, i < first_vibration ? 0 : i - first_vibration + 1, g.modes.irrep(j1).trimmed(), freq1,
               results.g.d(j1), results.g.d0(j1), results.g.hr(j1), au_to_cm * results.g.lam(j1),
               e.modes.irrep(j2).trimmed(), freq2, results.e.d(j2), results.e.d0(j2), results.e.hr(j2),
               au_to_cm * results.e.lam(j2), j1, j2, s_order(i, i)});
    if (files.rrs1) {
      output_file& rrs = i < first_vibration ? *files.rrs1 : *files.rrs2;
      rrs.write(rrs_row, {freq1, freq2, std::sqrt(std::abs(e.modes.freq(j2))) * results.e.d(j2)});
    }
  }
  dat.line(light_rule);
  dat.write(total_lam, {au_to_cm * results.g.lamt, au_to_cm * results.e.lamt});
  dat.line(light_rule);
}

// Row i of the transposed matrix for resonance Raman work: whole, and for a vibration without the first six.
void write_rrs_matrix_row(data_files& files, const array2<double>& s_order, int i) {
  const std::span<const double> row = s_order.column(i);
  files.rrs1->write(rrs_matrix, row);
  if (i >= first_vibration) files.rrs2->write(rrs_matrix, row.subspan(first_vibration - 1));
}

// Block p of the Duschinsky data: p = 1 S(g,e), p = 2 its transpose S(e,g).
void write_dush(data_files& files, int p, const array2<double>& s_order, const cells& dush_cells,
                const std::string& orth_lines, double eps_test_orth) {
  const int n3 = s_order.rows();
  const std::string light_rule(nw, '-');
  output_file& dat = files.dat;

  dat.write(begin_dush, {p, 100.0 * delta_s(s_order)});
  dat.write(begin_dush_information, {p});
  dat.line(p == 1 ? "  Qg = S(g,e) Qe + Dg" : "  Qe = S(e,g) Qg + De");
  dat.write(end_dush_information, {p});
  dat.write(begin_dush_data, {p});
  dat.line(light_rule);
  std::string row;
  for (int i = 1; i <= n3; ++i) {
    if (p == 2 && files.rrs1) write_rrs_matrix_row(files, s_order, i);
    dat.write(mode_head, {i});
    row.clear();
    for (int j = 1; j <= n3; ++j) {
      row += dush_cells(i, j, p);
      if (j % cells_a_line == 0 || j == n3) row += '\n';
    }
    dat.raw(row);
  }
  dat.line(light_rule);
  dat.write(end_dush_data, {p});
  dat.write(begin_orth_test, {eps_test_orth});
  dat.raw(orth_lines);
  dat.line("  END_DUSH_ORTH_TEST");
  dat.write(end_dush, {p});
}

void write_dat(data_files& files, const array1<states>& state, const array2<double>& s_order,
               const input_keys& keys, const route& results) {
  output_file& dat = files.dat;
  const double e00[] = {0.5 * state(1).modes.freqt,
                        0.5 * state(2).modes.freqt};  // zero-point energies, hartree

  dat.line("BEGIN_BASIC_INFO");
  dat.write(num_atoms, {state(1).atoms.natom});
  dat.write(num_modes, {state(1).atoms.n3});
  dat.line("END_BASIC_INFO");
  dat.line("");
  dat.write(begin_data, {1});
  dat.write(begin_description, {1});
  for (const std::string_view text : description) dat.line(text);
  dat.write(zpe1, {au_to_cm * e00[0]});
  dat.write(zpe2, {au_to_cm * e00[1]});
  dat.write(zpe_difference, {au_to_cm * (e00[1] - e00[0])});
  dat.write(end_description, {1});
  dat.write(begin_output, {1});
  write_modes(files, state, s_order, results);
  dat.write(end_output, {1});
  dat.write(end_data, {1});
  dat.line("");

  // In the layout "(10(ES13.6,X))": ten elements a line, a blank after each.
  const cells dush_cells(s_order, 14,
                         [](char* cell, double element) { write_scientific(cell, element, 13, 6); });
  const std::string orth_lines = orth_test(s_order, keys.eps_test_orth);
  for (int p = 1; p <= 2; ++p) write_dush(files, p, s_order, dush_cells, orth_lines, keys.eps_test_orth);
}

void write_abs(output_file& abs, const array2<double>& s_order) {
  const int n3 = s_order.rows();
  // In the layout "2X,F9.5", the whole row on one line.
  const cells abs_cells(s_order, 11,
                        [](char* cell, double element) { write_fixed(cell + 2, std::abs(element), 9, 5); });
  std::string row;
  for (int p = 1; p <= 2; ++p) {
    abs.line(p == 1 ? "#DUSH1 Qg = S(g,e) Qe + Dg" : "#DUSH2 Qe = S(e,g) Qg + De");
    for (int i = 1; i <= n3; ++i) {
      row.clear();
      for (int j = 1; j <= n3; ++j) row += abs_cells(i, j, p);
      abs.line(row);
    }
  }
}

void write_files(const array1<states>& state, std::string_view fname, const input_keys& keys,
                 const route& results) {
  const std::string stem = text<100>(fname).str();
  const array2<double> s_order = ordered(state);

  data_files files;
  if (keys.if_rrs) {
    files.rrs1.emplace(stem + ".rrs1");
    files.rrs2.emplace(stem + ".rrs2");
  }
  files.dat = output_file(stem + ".dat");
  write_dat(files, state, s_order, keys, results);
  files.dat.close();
  if (keys.if_rrs) {
    files.rrs1->close();
    files.rrs2->close();
  }

  output_file abs(stem + ".abs");
  write_abs(abs, s_order);
  abs.close();
}

}  // namespace

double delta_s(const array2<double>& s_order) {
  const int n3 = s_order.rows();
  if (n3 == external_modes) return 0.0;  // no vibrations to take the mean of
  double sum = 0.0;
  for (int i = first_vibration; i <= n3; ++i) sum += std::abs(s_order(i, i));
  return 1.0 - sum / static_cast<double>(n3 - external_modes);
}

void write_vbn(const array1<states>& state, std::string_view fname, const input_keys& keys) {
  write_files(state, fname, keys, {state(1).cart, state(2).cart});
}

void write_vbn_int(const array1<states>& state, std::string_view fname, const input_keys& keys) {
  write_files(state, fname, keys, {state(1).dint, state(2).dint});
}

}  // namespace vbn
