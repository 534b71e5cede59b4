// Extents of the arrays of a state's record.
#include "molecule/storage.hpp"  // for vbn_allocate

#include "text/fixed_text.hpp"  // for text

namespace vbn {

void vbn_allocate(states& state) {
  const int natom = state.natom;
  const int n3 = state.n3;
  const array2<double> atoms(3, natom);
  const array2<double> square(n3, n3);
  const array1<double> modes(n3);

  state.dip0 = array1<double>(3);
  state.nat = array1<int>(natom);
  state.symbol = array1<text<2>>(natom);
  state.sym_num = array1<text<10>>(natom);
  if (state.ifoniom) {
    state.iqm = array1<int>(natom);
    state.iqm3 = array1<int>(n3);
  }
  state.mass = state.mass0 = state.massau = array1<double>(natom);
  state.sqtmass = modes;
  state.x = state.x0 = state.x_nac = state.x_dip = atoms;

  state.fc = state.fc0 = state.fc1 = square;
  state.fcm = state.fcm0 = state.fcm1 = square;
  state.c = state.cm = state.cm0 = state.cm1 = square;
  state.freq = state.freq0 = state.freq1 = modes;
  state.zptlen = modes;
  state.order = array2<int>(n3, 2);

  state.s = square;
  state.d = state.d_c = state.d0 = state.d0_c = state.d_sign_cart = modes;
  state.hr = state.hr_c = state.lam = state.lam_c = modes;

  state.nacme_x = state.nacme_x0 = state.nacme_x1 = atoms;
  state.nacme_xq = state.nacme_xq0 = state.tranele = state.tranele0 = atoms;
  state.nacme_xq_n3 = state.nacme_xq_n30 = state.nacme_q = state.nacme_q0 = modes;
  const array3<double> derivatives(3, 3, natom);
  state.tdipd_x = state.tdipd_xq = state.tdipd_x0 = state.tdipd_x1 = derivatives;
  state.tdipd_q = array2<double>(3, n3);

  state.ns = state.nr_lw = state.nr_hi = array1<int>(max_rep);
  state.ir_idx = array2<int>(n3, max_rep);
  state.trans_symm = square;
  state.mirror = array1<bool_>(3);
  state.id3 = array3<int>(3, 3, natom);
  state.ir_name = array1<text<3>>(max_rep);
  state.irrep = array1<text<6>>(n3, "A");

  state.bond_num = array1<int>(natom);
}

void int_allocate(states& state) {
  state.bmbt = array2<double>(state.nr, state.nr);
  state.bm = array2<double>(state.n3, state.n3);
  state.ga = array2<double>(state.n3, state.nr);
  state.ag = array2<double>(state.nr, state.n3);
}

void int_deallocate(states& state) { state.bmbt = state.bm = state.ga = state.ag = array2<double>(); }

void dush_deallocate(states& state) { state = states(); }

}  // namespace vbn
