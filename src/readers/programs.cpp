// The table of the kinds of files: the name and the readers of each.
#include "readers/programs.hpp"  // for the readers

#include <algorithm>

#include "readers/isotope_table.hpp"  // for isotope_table_nat

namespace vbn {

namespace {

constexpr kind_readers kinds[] = {
    {.kind = file_kind::unknown, .name = ""},
    {.kind = file_kind::chemshell,
     .name = "CHEMSHELL",
     .natom = chemshell_natom,
     .nat = chemshell_nat,
     .mass = chemshell_mass,
     .coord = chemshell_coord,
     .fc = chemshell_fc},
    {.kind = file_kind::gaussian_log,
     .name = "GAUSSIAN LOG",
     .natom = gaussian_log_natom,
     .nat = gaussian_log_nat,
     .mass = gaussian_log_mass,
     .coord = gaussian_log_coord,
     .printed = gaussian_log_printed,
     .nacme = gaussian_log_nacme},
    {.kind = file_kind::gaussian_fchk,
     .name = "GAUSSIAN FCHK",
     .natom = gaussian_fchk_natom,
     .nat = gaussian_fchk_nat,
     .mass = gaussian_fchk_mass,
     .coord = gaussian_fchk_state_coord,
     .fc = gaussian_fchk_fc,
     .printed = gaussian_fchk_printed},
    {.kind = file_kind::molpro,
     .name = "MOLPRO",
     .natom = molpro_natom,
     .nat = molpro_nat,
     .mass = molpro_mass,
     .coord = molpro_coord,
     .fc = molpro_fc,
     .printed = molpro_printed,
     .nacme = molpro_nacme},
    {.kind = file_kind::numforce,
     .name = "NUMFORCE",
     .natom = numforce_natom,
     .nat = numforce_nat,
     .mass = numforce_mass,
     .coord = numforce_coord,
     .fc = numforce_fc,
     .tdipd = numforce_tdipd},
    {.kind = file_kind::nwchem,
     .name = "NWCHEM",
     .natom = nwchem_natom,
     .nat = nwchem_nat,
     .mass = nwchem_mass,
     .coord = nwchem_coord,
     .fc = nwchem_fc,
     .printed = nwchem_printed,
     .nacme = nwchem_nacme},
    {.kind = file_kind::turbomole,
     .name = "TURBOMOLE",
     .natom = turbomole_natom,
     .nat = isotope_table_nat,
     .mass = turbomole_mass,
     .coord = turbomole_coord,
     .fc = turbomole_fc,
     .printed = turbomole_printed,
     .nacme = turbomole_nacme},
    {.kind = file_kind::vasp, .name = "VASP", .natom = vasp_natom, .coord = vasp_coord},
    {.kind = file_kind::cif, .name = "CIF", .natom = cif_natom},
    {.kind = file_kind::pwout, .name = "PWOUT", .natom = pwout_natom},
    {.kind = file_kind::wien2k_1, .name = "WIEN2K_1"},
    {.kind = file_kind::wien2k_spe, .name = "WIEN2K_spe"},
    {.kind = file_kind::orca_hess, .name = "ORCA HESS", .state = orca_hess_state},
    {.kind = file_kind::orca_output, .name = "ORCA", .state = orca_output_state},
    {.kind = file_kind::qchem, .name = "QCHEM", .state = qchem_state},
    {.kind = file_kind::psi4_output, .name = "PSI4", .state = psi4_output_state},
    {.kind = file_kind::psi4_hess, .name = "PSI4 HESS", .state = psi4_hess_state},
    {.kind = file_kind::gamess_output, .name = "GAMESS", .state = gamess_output_state},
    {.kind = file_kind::gamess_punch, .name = "GAMESS DAT", .state = gamess_punch_state},
    {.kind = file_kind::cp2k, .name = "CP2K", .state = cp2k_state},
    {.kind = file_kind::mopac_aux, .name = "MOPAC AUX", .state = mopac_aux_state},
    {.kind = file_kind::bagel, .name = "BAGEL", .state = bagel_state},
    {.kind = file_kind::cfour, .name = "CFOUR", .state = cfour_state},
    {.kind = file_kind::dalton, .name = "DALTON", .state = dalton_state},
    {.kind = file_kind::jaguar, .name = "JAGUAR", .state = jaguar_state},
};

}  // namespace

const kind_readers& readers_of(file_kind kind) {
  return *std::ranges::find(kinds, kind, &kind_readers::kind);
}

std::string names_of_kinds() {
  std::string names;
  for (const kind_readers& row : kinds) {
    if (row.fc == nullptr && row.state == nullptr && row.kind != file_kind::gaussian_log) continue;
    if (!names.empty()) names += ", ";
    names += row.name;
  }
  return names;
}

}  // namespace vbn
