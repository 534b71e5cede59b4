// Transition dipole derivatives: reader, projection and file.
#include "couplings/dipole.hpp"  // for the interface

#include <cmath>
#include <string>
#include <utility>

#include "couplings/same_molecule.hpp"  // for same_count, same_masses and distance
#include "frame/inertial.hpp"           // for inertm, inertmv2_ref and warn_of_dipole_turn
#include "readers/file_type.hpp"        // for open_qm_file
#include "readers/qm_file.hpp"          // for qm_file_mass, qm_file_coord
#include "readers/rows.hpp"             // for the rows of the tables
#include "readers/scan.hpp"             // for search_word_free
#include "text/layout.hpp"              // for layout
#include "text/output_file.hpp"         // for output_file
#include "text/stop.hpp"                // for fail_in, stop
#include "text/words.hpp"               // for trim

namespace vbn {

namespace {

constexpr int first_vib = 7;  // position of the first vibration

bool geometry_matches(const states& state) {
  array2<double> x1 = state.atoms.x;
  array2<double> x2 = state.dipole.x_dip;
  array3<double> v2 = state.dipole.tdipd_x;
  array1<double> v0 = state.dipole.dip0;
  inertm(state.atoms.mass, x1);
  inertmv2_ref(state.atoms.mass, x1, x2, v0.span(), v2.span());
  return distance(x1, x2) < same_geometry;
}

}  // namespace

void qm_file_tdipd(qm_file& file, int natom, array1<double>& dip0, array3<double>& tdipd_x, int& info) {
  check_natom(file.file, natom);
  info = -1;
  input_file& from = file.file;
  if (file.type != "NUMFORCE") {
    fail_in(from.name(),
            "a file of kind \"" + file.type.str() + "\" has no dipole derivatives that can be read",
            "a file of numerical frequencies, \"NUMERICAL FREQUENCY\" in columns 2 to 20");
  }
  from.rewind();
  std::string_view line;
  if (!search_word_free(from, "Transition dipole moment derivative (Atomic unit)", line)) {
    fail_missing(from, "the dipole derivatives", "\"Transition dipole moment derivative (Atomic unit)\"");
  }
  const std::string expected = "four words, then the dipole components x, y and z";
  const int words = 4;
  dip0 = array1<double>(3);
  tdipd_x = array3<double>(3, 3, natom);
  row_numbers(from, next_row(from, expected), words, dip0.span(), expected);
  for (std::size_t row = 0; row < 3 * static_cast<std::size_t>(natom); ++row) {
    row_numbers(from, next_row(from, expected), words, tdipd_x.span().subspan(3 * row, 3), expected);
  }
  warn_if_cut(from);
  info = 0;
}

void get_tdipd(states& state) {
  qm_file file = open_qm_file(state.dipole.ftdipd.trimmed());
  int natom = 0;
  int info = 0;
  qm_file_natom(file, natom, info);
  if (!same_count(state, file, natom)) stop();

  array1<double> mass;
  qm_file_mass(file, natom, mass, info);
  qm_file_coord(file, natom, state.dipole.x_dip, info);
  qm_file_tdipd(file, natom, state.dipole.dip0, state.dipole.tdipd_x, info);
  if (!same_masses(state, file, mass)) stop();
  state.dipole.ifdip = geometry_matches(state);
}

array2<double> proj_dip(const dipole_data& dipole, const atom_data& atoms, const array2<double>& cm) {
  warn_of_dipole_turn(dipole);
  const int n3 = atoms.n3;
  array2<double> q3(n3, 3);
  for (int i = 1; i <= atoms.natom; ++i)
    for (int j = 1; j <= 3; ++j)
      for (int l = 1; l <= 3; ++l)
        q3(3 * (i - 1) + j, l) = dipole.tdipd_x(l, j, i) / std::sqrt(atoms.massau(i));
  array2<double> tdipd_q(3, n3);
  for (int m = 1; m <= n3; ++m) {
    for (int l = 1; l <= 3; ++l) {
      double sum = 0.0;
      for (int k = 1; k <= n3; ++k) sum += q3(k, l) * cm(k, m);
      tdipd_q(l, m) = sum;
    }
  }
  return tdipd_q;
}

void write_tdipd(const array1<double>& dip0, const array2<double>& tdipd_q, std::string_view prefix) {
  const layout row("(i6, 3f15.7)");
  output_file file(std::string(trim(prefix)) + ".dip");
  file.write(row, {0, dip0(1), dip0(2), dip0(3)});
  for (int i = first_vib; i <= tdipd_q.cols(); ++i) {
    file.write(row, {i, tdipd_q(1, i), tdipd_q(2, i), tdipd_q(3, i)});
  }
  file.close();
}

}  // namespace vbn
