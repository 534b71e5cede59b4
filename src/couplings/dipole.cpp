// Transition dipole derivatives: comparison with the states, projection and file.
#include "couplings/dipole.hpp"  // for the interface

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "couplings/same_molecule.hpp"  // for require_same_count, require_same_masses, same_geometry
#include "frame/inertial.hpp"           // for inertm, inertmv2_ref and warn_of_dipole_turn
#include "linalg/matmul.hpp"            // for transposed_product
#include "molecule/constants.hpp"       // for first_vibration
#include "molecule/geometry.hpp"        // for root_sum_square
#include "readers/file_type.hpp"        // for open_qm_file
#include "readers/qm_file.hpp"          // for qm_file_natom, qm_file_mass, qm_file_coord, qm_file_tdipd
#include "text/layout.hpp"              // for layout
#include "text/output_file.hpp"         // for output_file
#include "text/words.hpp"               // for trim

namespace vbn {

namespace {

constexpr int mismatch_status = 0;  // exit status for a file of another molecule

bool geometry_matches(const dipole_data& dipole, const atom_data& atoms) {
  array2<double> x1 = atoms.x;
  array2<double> x2 = dipole.x_dip;
  array3<double> v2 = dipole.tdipd_x;
  array1<double> v0 = dipole.dip0;
  inertm(atoms.mass, x1);
  inertmv2_ref(atoms.mass, x1, x2, v0.span(), v2.span());
  return root_sum_square(x1, x2) < same_geometry;
}

}  // namespace

void get_tdipd(std::span<states> state, const messages& say) {
  dipole_data read;
  read.ftdipd = state.front().dipole.ftdipd;
  qm_file file = open_qm_file(read.ftdipd.trimmed(), say);
  const int natom = qm_file_natom(file).value_or(0);
  require_same_count(state.front(), file, natom, mismatch_status);

  const array1<double> mass = qm_file_mass(file, natom);
  read.x_dip = qm_file_coord(file, natom);
  file_dipole dipole = qm_file_tdipd(file, natom);
  read.dip0 = std::move(dipole.dip0);
  read.tdipd_x = std::move(dipole.tdipd_x);
  for (states& it : state) {
    it.dipole = read;
    require_same_masses(it, file, mass, mismatch_status);
    it.dipole.ifdip = geometry_matches(it.dipole, it.atoms);
  }
}

array2<double> proj_dip(const dipole_data& dipole, const atom_data& atoms, const array2<double>& cm,
                        const messages& say) {
  warn_of_dipole_turn(dipole, say);
  const int n3 = atoms.n3;
  array2<double> tdipd_q(3, n3);
  std::vector<double> weighted(static_cast<std::size_t>(n3));
  for (int l = 1; l <= 3; ++l) {
    auto next = weighted.begin();
    for (int i = 1; i <= atoms.natom; ++i)
      for (int j = 1; j <= 3; ++j) *next++ = dipole.tdipd_x(l, j, i) / std::sqrt(atoms.massau(i));
    const array1<double> along_modes = transposed_product(cm, weighted);
    for (int m = 1; m <= n3; ++m) tdipd_q(l, m) = along_modes(m);
  }
  return tdipd_q;
}

void write_tdipd(const array1<double>& dip0, const array2<double>& tdipd_q, std::string_view prefix) {
  const layout row("(i6, 3f15.7)");
  output_file file(std::string(trim(prefix)) + ".dip");
  file.write(row, {0, dip0(1), dip0(2), dip0(3)});
  for (int i = first_vibration; i <= tdipd_q.cols(); ++i) {
    file.write(row, {i, tdipd_q(1, i), tdipd_q(2, i), tdipd_q(3, i)});
  }
  file.close();
}

}  // namespace vbn
