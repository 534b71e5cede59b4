// Assembly of a state's Hessian, its mass-weighting, replaced masses, and frequencies.
#include "frame/hessian.hpp"  // for get_hess

#include <cmath>
#include <string>
#include <utility>

#include "linalg/eigen.hpp"               // for diag_symm
#include "molecule/elements.hpp"          // for nat_to_symbol, get_sym_num
#include "readers/gaussian_geometry.hpp"  // for fit_gaussian_coord
#include "readers/qm_file.hpp"            // for the readers
#include "molecule/constants.hpp"         // for amu_to_au
#include "text/stop.hpp"                  // for fail

namespace vbn {

namespace {

// `massau` and `sqtmass` from `mass`.
void weigh_atoms(states& state) {
  for (int i = 1; i <= state.natom; ++i) {
    state.massau(i) = amu_to_au * state.mass(i);
    for (int a = 1; a <= 3; ++a) state.sqtmass(3 * (i - 1) + a) = std::sqrt(state.massau(i));
  }
}

std::string atom_name(const states& state, int i) { return state.sym_num(i).str(); }

// Ends the run where a number was read that cannot be calculated with.
void check_numbers(const states& state) {
  for (int i = 1; i <= state.natom; ++i) {
    if (!(state.mass(i) > 0.0) || !std::isfinite(state.mass(i))) {
      fail({"atom " + atom_name(state, i) + " has no mass that is a number above zero", state.ffreq.str(), 0,
            "", 0, "a mass in amu in the file, or an element whose mass is known"});
    }
    for (int a = 1; a <= 3; ++a) {
      if (!std::isfinite(state.x(a, i))) {
        fail({"a coordinate of atom " + atom_name(state, i) + " is not a finite number", state.ffreq.str(), 0,
              "", 0, "finite coordinates of every atom"});
      }
    }
  }
  for (int j = 1; j <= state.n3; ++j) {
    for (int i = 1; i <= state.n3; ++i) {
      if (!std::isfinite(state.fc(i, j))) {
        fail({"force constant " + std::to_string(i) + ", " + std::to_string(j) + " is not a finite number",
              state.fhess.str(), 0, "", 0, "finite force constants throughout"});
      }
    }
  }
}

// The atoms `iqm` out of the whole system.
void keep_high_layer(states& state, const array1<int>& nat, const array1<double>& mass,
                     const array2<double>& x, const array2<double>& fc) {
  for (int i = 1; i <= state.natom; ++i) {
    const int k = state.iqm(i);
    state.nat(i) = nat(k);
    state.mass(i) = mass(k);
    for (int a = 1; a <= 3; ++a) state.x(a, i) = x(a, k);
  }
  for (int j = 1; j <= state.n3; ++j)
    for (int i = 1; i <= state.n3; ++i) state.fc(i, j) = fc(state.iqm3(i), state.iqm3(j));
}

// Geometry and force constants of the analysed atoms.
void read_files(states& state) {
  const int n1 = state.ifoniom ? state.nqmmm : state.natom;
  array1<int> nat;
  array1<double> mass;
  array2<double> x;
  array2<double> fc;
  int info = 0;
  qm_file freq_file = open_qm_file(state.ffreq.trimmed());
  qm_file_nat(freq_file, n1, nat, info);
  qm_file_mass(freq_file, n1, mass, info);
  qm_file_coord(freq_file, n1, x, info);
  if (state.fhess == state.ffreq) {
    qm_file_fc(freq_file, n1, fc, info);
  } else {
    qm_file hess_file = open_qm_file(state.fhess.trimmed());
    qm_file_fc(hess_file, n1, fc, info);
    fit_gaussian_coord(freq_file, hess_file, fc, x);
  }
  if (state.ifoniom) {
    keep_high_layer(state, nat, mass, x, fc);
  } else {
    state.nat = std::move(nat);
    state.mass = std::move(mass);
    state.x = std::move(x);
    state.fc = std::move(fc);
  }
}

}  // namespace

void get_hess(states& state) {
  read_files(state);
  nat_to_symbol(state.nat, state.symbol);
  get_sym_num(state.symbol, state.sym_num);
  check_numbers(state);
  state.x0 = state.x;
  state.fc0 = state.fc;
  state.mass0 = state.mass;
  weigh_atoms(state);

  int info = 0;
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, 1, info);
  fc_to_fcm(state.n3, state.sqtmass, state.fc0, state.fcm0, 1, info);
  diag_symm(state.fcm0, state.freq0, state.cm0, info);
  eigenvalues_to_frequencies(state.freq0);
}

void get_isotope(states& state, int n, const array1<double>& mass_atom, const array1<double>& mass_type) {
  if (state.natom > n) {
    fail({"the masses of single atoms reach atom " + std::to_string(n) + ", but the molecule has " +
              std::to_string(state.natom) + " atoms",
          state.ffreq.str(), 0, "", 0, "no more atoms than that in a run with if_isotope"});
  }
  const array1<double> mass_before = state.mass;
  for (int i = 1; i <= state.natom; ++i)
    if (mass_atom(i) > 0.0) state.mass(i) = mass_atom(i);
  for (int k = 1; k <= max_element; ++k) {
    if (!(mass_type(k) > 0.0)) continue;
    for (int i = 1; i <= state.natom; ++i)
      if (state.nat(i) == k) state.mass(i) = mass_type(k);
  }
  weigh_atoms(state);
  if (state.mass == mass_before) return;
  // The inertial step starts from `fcm`, so the new masses have to stand in it.
  int info = 0;
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, 1, info);
}

void fc_to_fcm(int n3, const array1<double>& sqtmass, array2<double>& fc, array2<double>& fcm, int direction,
               int& info) {
  info = 0;
  if (n3 <= 0) {
    info = -1;
  } else if (direction == 1) {
    for (int i = 1; i <= n3; ++i) {
      for (int j = 1; j <= i; ++j) {
        fcm(j, i) = fc(j, i) / sqtmass(j) / sqtmass(i);
        fcm(i, j) = fcm(j, i);
      }
    }
  } else if (direction == -1) {
    for (int i = 1; i <= n3; ++i) {
      for (int j = 1; j <= i; ++j) {
        fc(j, i) = sqtmass(j) * fcm(j, i) * sqtmass(i);
        fc(i, j) = fc(j, i);
      }
    }
  } else {
    info = -2;
  }
}

void get_freq(states& state) {
  int info = 0;
  diag_symm(state.fcm, state.freq, state.cm, info);
  eigenvalues_to_frequencies(state.freq);
}

void eigenvalues_to_frequencies(array1<double>& freq) {
  for (double& value : freq) value = std::copysign(std::sqrt(std::abs(value)), value);
}

}  // namespace vbn
