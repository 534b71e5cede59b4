// Reads the coupling file of a state and compares its geometry with the state's.
#include "couplings/nacme.hpp"  // for the interface

#include <utility>

#include "couplings/nacme_readers.hpp"  // for qm_file_nacme
#include "couplings/same_molecule.hpp"  // for same_count, same_masses and distance
#include "frame/inertial.hpp"           // for inertm and inertmv_ref
#include "readers/atom_count.hpp"       // for the atoms of an ONIOM layer
#include "readers/file_type.hpp"        // for open_qm_file
#include "readers/qm_file.hpp"          // for qm_file_mass, qm_file_coord
#include "readers/scan.hpp"             // for search_word_free
#include "text/stop.hpp"                // for exit_run

namespace vbn {

namespace {

// Everything that is taken from the file, for all of its atoms.
struct file_couplings {
  array1<double> mass;
  array2<double> x;
  array2<double> nacme;
  array2<double> tranele;
};

// The atoms of the high layer, atom i of them at place iqm(i).
file_couplings high_layer(const file_couplings& all, const array1<int>& iqm) {
  const int natom = iqm.size();
  const array2<double> atoms(3, natom);
  file_couplings layer{array1<double>(natom), atoms, atoms, atoms};
  for (int i = 1; i <= natom; ++i) {
    const int k = iqm(i);
    layer.mass(i) = all.mass(k);
    for (int c = 1; c <= 3; ++c) {
      layer.x(c, i) = all.x(c, k);
      layer.nacme(c, i) = all.nacme(c, k);
      layer.tranele(c, i) = all.tranele(c, k);
    }
  }
  return layer;
}

bool geometry_matches(const states& state) {
  array2<double> x1 = state.atoms.x;
  array2<double> x2 = state.couplings.x_nac;
  array2<double> v2 = state.couplings.nacme_x;
  inertm(state.atoms.mass, x1);
  inertmv_ref(state.atoms.mass, x1, x2, v2.span());
  return distance(x1, x2) < same_geometry;
}

}  // namespace

void get_nacme(states& state) {
  qm_file file = open_qm_file(state.couplings.fnacm.trimmed());
  state.couplings.fnacm_type = file.type;
  state.couplings.fnacm_version = file.version;
  file.file.rewind();
  std::string_view line;
  const bool ifoniom_nacme = search_word_free(file.file, "oniom", line);

  int info = 0;
  int n1 = 0;     // all atoms of the file
  int count = 0;  // those that are analysed
  if (ifoniom_nacme) {
    qm_file_natom_oniom_qm(file, count, n1, info);
  } else {
    qm_file_natom(file, n1, info);
    count = n1;
  }
  if (!same_count(state, file, count)) exit_run(1);

  file_couplings read;
  qm_file_mass(file, n1, read.mass, info);
  qm_file_coord(file, n1, read.x, info);
  qm_file_nacme(file, n1, read.nacme, read.tranele, state.couplings.e_vert, info);
  if (ifoniom_nacme) {
    array1<int> iqm(count);
    array1<int> iqm3(3 * count);
    get_oniom_index1(file, count, n1, iqm, iqm3, info);
    read = high_layer(read, iqm);
  }
  state.couplings.x_nac = std::move(read.x);
  state.couplings.nacme_x0 = read.nacme;
  state.couplings.nacme_x = std::move(read.nacme);
  state.couplings.tranele = std::move(read.tranele);
  if (!same_masses(state, file, read.mass)) exit_run(1);
  state.couplings.ifnac = geometry_matches(state);
}

}  // namespace vbn
