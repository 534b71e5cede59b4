// One state by hand: arrays of zeros, changed force constants, and its stages by the parts that they touch.
#pragma once

#include "frame/hessian.hpp"         // for get_freq
#include "frame/projection.hpp"      // for get_proj_hessian
#include "internal/gmatrix.hpp"      // for get_int_gmatrix
#include "internal/int_coord.hpp"    // for get_int_coord
#include "molecule/record.hpp"       // for states
#include "symmetry/enforcement.hpp"  // for get_enforce_symm

namespace vbn {

inline void zero_arrays(states& state) {
  const int natom = state.atoms.natom;
  const int n3 = state.atoms.n3;
  const array2<double> atoms(3, natom);
  const array1<double> modes(n3);
  const array2<double> square(n3, n3);
  state.atoms.nat = array1<int>(natom);
  state.atoms.symbol = array1<text<2>>(natom);
  state.atoms.sym_num = array1<text<10>>(natom);
  state.atoms.mass = state.atoms.massau = array1<double>(natom);
  state.atoms.sqtmass = array1<double>(n3, 1.0);
  state.atoms.x = atoms;
  state.modes.cm = state.modes.s = square;
  state.modes.freq = state.modes.freq0 = state.modes.freq1 = state.modes.zptlen = modes;
  state.modes.order = array1<int>(n3);
  state.modes.irrep = array1<text<6>>(n3, "A");
  state.cart = state.dint = {modes, modes, modes, modes, 0.0};
  state.couplings.x_nac = state.couplings.nacme_x = state.couplings.nacme_x0 = state.couplings.tranele =
      atoms;
  state.dipole.dip0 = array1<double>(3);
  state.dipole.x_dip = atoms;
  state.dipole.tdipd_x = array3<double>(3, 3, natom);
}

template <class Change>
void change_fc(states& state, Change change) {
  array2<double> fc = state.force.fc();
  change(fc);
  state.force.set_fc(state.atoms.sqtmass, fc);
}

inline void get_freq(states& state) { get_freq(state.force, state.modes); }

inline void get_proj_hessian(states& state, int way) {
  get_proj_hessian(state.atoms, way, state.force);
  state.modes.freq1 = frequencies_of(state.force.fcm());
}

inline symmetry_search point_group1(states& state, double symm_tol = 0.01) {
  return point_group1(state.atoms, symm_tol, state.symmetry);
}

inline void get_enforce_symm(states& state, bool enforce_symm, double symm_tol = 0.01) {
  get_enforce_symm(enforce_symm, symm_tol, state);
}

inline void get_int_coord(states& state, const input_data& input) {
  state.internal = get_int_coord(state.atoms, state.file.ffreq.str(), input);
}

inline void get_int_gmatrix(states& state, double gcut, output_file& fout) {
  state.basis = get_int_gmatrix(state.atoms, state.internal.br, state.file.ffreq.str(), gcut, fout);
}

}  // namespace vbn
