// Reads the coupling file and compares its geometry with that of each state.
#include "couplings/nacme.hpp"  // for the interface

#include "couplings/same_molecule.hpp"  // for require_same_count, require_same_masses, same_geometry
#include "frame/inertial.hpp"           // for inertm and inertmv_ref
#include "molecule/geometry.hpp"        // for root_sum_square
#include "readers/atom_count.hpp"       // for qm_file_natom_oniom_qm, qm_file_oniom_index
#include "readers/file_type.hpp"        // for open_qm_file
#include "readers/programs.hpp"         // for molpro_start_coord
#include "readers/qm_file.hpp"          // for qm_file_natom, qm_file_mass, qm_file_coord, qm_file_nacme
#include "readers/scan.hpp"             // for search_word_free

namespace vbn {

namespace {

constexpr int mismatch_status = 1;  // exit status for a file of another molecule

// The masses of the high layer, whose atom i is at place iqm(i), and its columns of an array over all atoms.
array1<double> of_layer(const array1<double>& all, const array1<int>& iqm) {
  array1<double> layer(iqm.size());
  for (int i = 1; i <= iqm.size(); ++i) layer(i) = all(iqm(i));
  return layer;
}

array2<double> of_layer(const array2<double>& all, const array1<int>& iqm) {
  array2<double> layer(3, iqm.size());
  for (int i = 1; i <= iqm.size(); ++i) {
    for (int c = 1; c <= 3; ++c) layer(c, i) = all(c, iqm(i));
  }
  return layer;
}

bool geometry_matches(const coupling_data& couplings, const atom_data& atoms) {
  array2<double> x1 = atoms.x;
  array2<double> x2 = couplings.x_nac;
  array2<double> v2 = couplings.nacme_x;
  inertm(atoms.mass, x1);
  inertmv_ref(atoms.mass, x1, x2, v2.span());
  return root_sum_square(x1, x2) < same_geometry;
}

// Molpro prints the geometry of the couplings under "ATOMIC COORDINATES" too; a dump may be of another one.
void try_start_geometry(qm_file& file, std::span<states> state) {
  array2<double> x(3, state.front().atoms.natom);
  if (!molpro_start_coord(file.file, x)) return;
  for (states& it : state) {
    coupling_data other = it.couplings;
    other.x_nac = x;
    if (!geometry_matches(other, it.atoms)) continue;
    file.file.warn(file.file.name() +
                   ": the geometry is that of \"ATOMIC COORDINATES\", not of the dump in XYZ style");
    it.couplings.x_nac = x;
    it.couplings.ifnac = true;
  }
}

}  // namespace

void get_nacme(std::span<states> state, const messages& say) {
  coupling_data read;
  read.fnacm = state.front().couplings.fnacm;
  qm_file file = open_qm_file(read.fnacm.trimmed(), say);
  read.fnacm_type = name_of(file.kind);
  read.fnacm_version = file.version;
  file.file.rewind();
  std::string_view line;
  const bool ifoniom_nacme = search_word_free(file.file, "oniom", line);
  oniom_count count;
  if (ifoniom_nacme) {
    count = qm_file_natom_oniom_qm(file);
  } else {
    count.nqm = count.nqmmm = qm_file_natom(file).value_or(0);
  }
  require_same_count(state.front(), file, count.nqm, mismatch_status);

  array1<double> mass = qm_file_mass(file, count.nqmmm);
  read.x_nac = qm_file_coord(file, count.nqmmm);
  file_couplings couplings = qm_file_nacme(file, count.nqmmm);
  if (ifoniom_nacme) {
    const array1<int> iqm = qm_file_oniom_index(file, count.nqm, count.nqmmm);
    mass = of_layer(mass, iqm);
    read.x_nac = of_layer(read.x_nac, iqm);
    couplings.nacme = of_layer(couplings.nacme, iqm);
    couplings.tranele = of_layer(couplings.tranele, iqm);
  }
  read.e_vert = couplings.e_vert;
  read.nacme_x0 = read.nacme_x = couplings.nacme;
  read.tranele = couplings.tranele;
  for (states& it : state) {
    it.couplings = read;
    require_same_masses(it, file, mass, mismatch_status);
    it.couplings.ifnac = geometry_matches(it.couplings, it.atoms);
  }
  if (file.kind == file_kind::molpro && !ifoniom_nacme && !state[0].couplings.ifnac &&
      !state[1].couplings.ifnac) {
    try_start_geometry(file, state);
  }
}

}  // namespace vbn
