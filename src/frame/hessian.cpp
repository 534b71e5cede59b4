// The Hessian of a state from its files, replaced masses, and frequencies.
#include "frame/hessian.hpp"  // for get_hess

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "linalg/eigen.hpp"               // for diag_symm, eigenvalues_symm
#include "molecule/constants.hpp"         // for amu_to_au, max_element
#include "molecule/elements.hpp"          // for nat_to_symbol, get_sym_num
#include "readers/file_type.hpp"          // for open_qm_file
#include "readers/gaussian_geometry.hpp"  // for fit_gaussian_coord, compare_checkpoint
#include "readers/qm_file.hpp"            // for qm_file_nat, qm_file_mass, qm_file_coord, qm_file_fc
#include "text/stop.hpp"                  // for fail_in

namespace vbn {

namespace {

// `massau` and `sqtmass` from `mass`.
void weigh_atoms(atom_data& atoms) {
  atoms.massau = array1<double>(atoms.natom);
  atoms.sqtmass = array1<double>(atoms.n3);
  for (int i = 1; i <= atoms.natom; ++i) {
    atoms.massau(i) = amu_to_au * atoms.mass(i);
    for (int a = 1; a <= 3; ++a) atoms.sqtmass(3 * (i - 1) + a) = std::sqrt(atoms.massau(i));
  }
}

// Ends the run for a mass that is not positive or a number that is not finite.
void check_numbers(const file_data& file, const atom_data& atoms, const array2<double>& fc) {
  for (int i = 1; i <= atoms.natom; ++i) {
    const std::string name = atoms.sym_num(i).str();
    if (!(atoms.mass(i) > 0.0) || !std::isfinite(atoms.mass(i))) {
      fail_in(file.ffreq.str(), "atom " + name + " has no mass above zero",
              "a mass in amu in the file, or an element whose mass is known");
    }
    for (int a = 1; a <= 3; ++a) {
      if (!std::isfinite(atoms.x(a, i))) {
        fail_in(file.ffreq.str(), "a coordinate of atom " + name + " is not a finite number",
                "finite coordinates of every atom");
      }
    }
  }
  for (int j = 1; j <= atoms.n3; ++j) {
    for (int i = 1; i <= atoms.n3; ++i) {
      if (!std::isfinite(fc(i, j))) {
        fail_in(file.fhess.str(),
                "force constant " + std::to_string(i) + ", " + std::to_string(j) + " is not a finite number",
                "finite force constants throughout");
      }
    }
  }
}

// The rows of the atoms `iqm`, out of the whole system.
void keep_high_layer(const file_data& file, atom_data& atoms, array2<double>& fc) {
  const atom_data all = atoms;
  const array2<double> fc_all = std::move(fc);
  const int natom = file.iqm.size();
  const int n3 = file.iqm3.size();
  atoms.nat = array1<int>(natom);
  atoms.mass = array1<double>(natom);
  atoms.x = array2<double>(3, natom);
  fc = array2<double>(n3, n3);
  for (int i = 1; i <= natom; ++i) {
    const int k = file.iqm(i);
    atoms.nat(i) = all.nat(k);
    atoms.mass(i) = all.mass(k);
    for (int a = 1; a <= 3; ++a) atoms.x(a, i) = all.x(a, k);
  }
  for (int j = 1; j <= n3; ++j)
    for (int i = 1; i <= n3; ++i) fc(i, j) = fc_all(file.iqm3(i), file.iqm3(j));
}

// Reads atoms and geometry of the analysed atoms, and returns their force constants.
array2<double> read_files(qm_file freq_file, const file_data& file, atom_data& atoms) {
  const int n1 = file.ifoniom ? file.nqmmm : atoms.natom;
  atoms.nat = qm_file_nat(freq_file, n1);
  atoms.mass = qm_file_mass(freq_file, n1);
  atoms.x = qm_file_coord(freq_file, n1);
  array2<double> fc;
  if (file.fhess == file.ffreq) {
    fc = qm_file_fc(freq_file, n1);
  } else {
    qm_file hess_file = open_qm_file(file.fhess.trimmed(), freq_file.file.say());
    fc = qm_file_fc(hess_file, n1);
    fit_gaussian_coord(freq_file, hess_file, fc, atoms.x);
    compare_checkpoint(freq_file, hess_file, atoms.nat, atoms.mass, atoms.x);
  }
  if (file.ifoniom) keep_high_layer(file, atoms, fc);
  return fc;
}

// Elements without a stable isotope have no mass in a file or table; the keys can give it.
void take_missing_masses(const input_data& input, atom_data& atoms) {
  for (int i = 1; i <= atoms.natom; ++i) {
    if (atoms.mass(i) > 0.0) continue;
    if (i <= input.mass_atom.size()) atoms.mass(i) = input.mass_atom(i);
    if (atoms.nat(i) >= 1 && atoms.nat(i) <= max_element && input.mass_type(atoms.nat(i)) > 0.0)
      atoms.mass(i) = input.mass_type(atoms.nat(i));
  }
}

}  // namespace

void get_hess(qm_file freq_file, const input_data& input, const file_data& file, atom_data& atoms,
              force_constants& force) {
  array2<double> fc = read_files(std::move(freq_file), file, atoms);
  if (input.if_isotope) take_missing_masses(input, atoms);
  atoms.symbol = nat_to_symbol(atoms.nat);
  atoms.sym_num = get_sym_num(atoms.symbol);
  check_numbers(file, atoms, fc);
  weigh_atoms(atoms);
  force.set_fc(atoms.sqtmass, std::move(fc));
}

void get_isotope(const file_data& file, int n, const array1<double>& mass_atom,
                 const array1<double>& mass_type, atom_data& atoms, force_constants& force) {
  const bool by_atom = std::ranges::any_of(mass_atom, [](double mass) { return mass > 0.0; });
  if (by_atom && atoms.natom > n) {
    fail_in(file.ffreq.str(),
            "mass_atom is limited to molecules of " + std::to_string(n) + " atoms, but this one has " +
                std::to_string(atoms.natom),
            "a smaller molecule, or masses by element in mass_type");
  }
  const array1<double> mass_before = atoms.mass;
  for (int i = 1; i <= atoms.natom; ++i)
    if (by_atom && mass_atom(i) > 0.0) atoms.mass(i) = mass_atom(i);
  for (int k = 1; k <= max_element; ++k) {
    if (!(mass_type(k) > 0.0)) continue;
    for (int i = 1; i <= atoms.natom; ++i)
      if (atoms.nat(i) == k) atoms.mass(i) = mass_type(k);
  }
  if (atoms.mass == mass_before) return;
  weigh_atoms(atoms);
  force.weigh(atoms.sqtmass);
}

void get_freq(const force_constants& force, normal_modes& modes) {
  int info = 0;
  diag_symm(force.fcm(), modes.freq, modes.cm, info);
  eigenvalues_to_frequencies(modes.freq);
  modes.irrep = array1<text<6>>(modes.freq.size(), "A");
}

array1<double> frequencies_of(const array2<double>& fcm) {
  array1<double> freq = eigenvalues_symm(fcm);
  eigenvalues_to_frequencies(freq);
  return freq;
}

void eigenvalues_to_frequencies(array1<double>& freq) {
  for (double& value : freq) value = std::copysign(std::sqrt(std::abs(value)), value);
}

}  // namespace vbn
