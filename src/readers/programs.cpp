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
     .job = "force constants printed",
     .natom = chemshell_natom,
     .nat = chemshell_nat,
     .mass = chemshell_mass,
     .coord = chemshell_coord,
     .fc = chemshell_fc},
    {.kind = file_kind::gaussian_log,
     .name = "GAUSSIAN LOG",
     .job = "freq, best with the .fchk file of formchk",
     .natom = gaussian_log_natom,
     .nat = gaussian_log_nat,
     .mass = gaussian_log_mass,
     .coord = gaussian_log_coord,
     .printed = gaussian_log_printed,
     .nacme = gaussian_log_nacme},
    {.kind = file_kind::gaussian_fchk,
     .name = "GAUSSIAN FCHK",
     .job = "formchk of a freq job",
     .natom = gaussian_fchk_natom,
     .nat = gaussian_fchk_nat,
     .mass = gaussian_fchk_mass,
     .coord = gaussian_fchk_state_coord,
     .fc = gaussian_fchk_fc,
     .printed = gaussian_fchk_printed},
    {.kind = file_kind::molpro,
     .name = "MOLPRO",
     .job = "{frequencies;print,hessian}",
     .natom = molpro_natom,
     .nat = molpro_nat,
     .mass = molpro_mass,
     .coord = molpro_coord,
     .fc = molpro_fc,
     .printed = molpro_printed,
     .nacme = molpro_nacme},
    {.kind = file_kind::numforce,
     .name = "NUMFORCE",
     .job = "a text of your own",
     .natom = numforce_natom,
     .nat = numforce_nat,
     .mass = numforce_mass,
     .coord = numforce_coord,
     .fc = numforce_fc,
     .tdipd = numforce_tdipd},
    {.kind = file_kind::nwchem,
     .name = "NWCHEM",
     .job = "task ... freq",
     .natom = nwchem_natom,
     .nat = nwchem_nat,
     .mass = nwchem_mass,
     .coord = nwchem_coord,
     .fc = nwchem_fc,
     .printed = nwchem_printed,
     .nacme = nwchem_nacme},
    {.kind = file_kind::turbomole,
     .name = "TURBOMOLE",
     .job = "what aoforce prints",
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
    {.kind = file_kind::orca_hess,
     .name = "ORCA HESS",
     .job = "the .hess file of Freq",
     .state = orca_hess_state},
    {.kind = file_kind::orca_property,
     .name = "ORCA PROPERTY",
     .job = "the .property.json file of Freq",
     .state = orca_property_state},
    {.kind = file_kind::orca_output, .name = "ORCA", .state = orca_output_state},
    {.kind = file_kind::qchem,
     .name = "QCHEM",
     .job = "JOBTYPE freq; from 5.4 on with vibman_print = 4",
     .state = qchem_state},
    {.kind = file_kind::psi4_output,
     .name = "PSI4",
     .job = "frequency() with analytic second derivatives",
     .state = psi4_output_state},
    {.kind = file_kind::openmolcas_unsym,
     .name = "OPENMOLCAS UNSYM",
     .job = "the .UnSym file of MCLR or numerical second derivatives",
     .state = unsym_state},
    {.kind = file_kind::hessian_block,
     .name = "XTB or TURBOMOLE HESSIAN",
     .job = "hessian with xtbopt.xyz beside it, or control with coord",
     .state = hessian_block_state},
    {.kind = file_kind::qcschema,
     .name = "QCSCHEMA",
     .job = "a JSON result with driver: hessian",
     .state = qcschema_state},
    {.kind = file_kind::ase_vibrations, .name = "ASE", .job = "VibrationsData.write", .state = ase_state},
    {.kind = file_kind::psi4_hess,
     .name = "PSI4 HESS",
     .job = "the .hess file of frequency(), with the output beside it",
     .state = psi4_hess_state},
    {.kind = file_kind::gamess_output,
     .name = "GAMESS",
     .job = "RUNTYP=HESSIAN",
     .state = gamess_output_state},
    {.kind = file_kind::gamess_punch,
     .name = "GAMESS DAT",
     .job = "RUNTYP=HESSIAN, with the output",
     .state = gamess_punch_state},
    {.kind = file_kind::cp2k,
     .name = "CP2K",
     .job = "VIBRATIONAL_ANALYSIS with the Hessian printed",
     .state = cp2k_state},
    {.kind = file_kind::mopac_aux,
     .name = "MOPAC AUX",
     .job = "FORCE AUX(PRECISION=9)",
     .state = mopac_aux_state},
    {.kind = file_kind::bagel, .name = "BAGEL", .job = "hessian", .state = bagel_state},
    {.kind = file_kind::cfour, .name = "CFOUR", .job = "VIB=ANALYTIC,SYMMETRY=OFF", .state = cfour_state},
    {.kind = file_kind::dalton,
     .name = "DALTON",
     .job = ".VIBANA with the Hessian printed",
     .state = dalton_state},
    {.kind = file_kind::jaguar, .name = "JAGUAR", .job = "the .01.in file of ifreq=1", .state = jaguar_state},
    {.kind = file_kind::molden,
     .name = "MOLDEN",
     .job = "normal modes in Molden format",
     .state = molden_state},
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
    if (!row.job.empty()) names.append(" (").append(row.job).append(")");
  }
  return names;
}

}  // namespace vbn
