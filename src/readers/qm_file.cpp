// Gives each question about a file to the reader of its kind.
#include "readers/qm_file.hpp"  // for the routines

#include <algorithm>
#include <string>
#include <string_view>

#include "readers/programs.hpp"  // for the readers
#include "readers/rows.hpp"      // for check_natom and warn_if_cut
#include "text/stop.hpp"         // for fail_in

namespace vbn {

namespace {

// A kind of file and what reads it; nullptr where the kind does not hold what is asked for.
struct kind_readers {
  std::string_view kind;
  bool (*natom)(input_file&, int&) = nullptr;
  void (*nat)(input_file&, array1<int>&) = nullptr;
  void (*mass)(input_file&, array1<double>&) = nullptr;
  void (*coord)(input_file&, array2<double>&) = nullptr;
  void (*fc)(input_file&, int, array2<double>&) = nullptr;
};

// clang-format off
constexpr kind_readers kinds[] = {
    {"CHEMSHELL", chemshell_natom, chemshell_nat, chemshell_mass, chemshell_coord, chemshell_fc},
    {"GAUSSIAN LOG", gaussian_log_natom, gaussian_log_nat, gaussian_log_mass, gaussian_log_coord, nullptr},
    {"GAUSSIAN FCHK", gaussian_fchk_natom, nullptr, gaussian_fchk_mass, nullptr, gaussian_fchk_fc},
    {"MOLPRO", molpro_natom, molpro_nat, molpro_mass, molpro_coord, molpro_fc},
    {"NUMFORCE", numforce_natom, numforce_nat, numforce_mass, numforce_coord, numforce_fc},
    {"NWCHEM", nwchem_natom, nwchem_nat, nwchem_mass, nwchem_coord, nwchem_fc},
    {"TURBOMOLE", turbomole_natom, turbomole_nat, turbomole_mass, turbomole_coord, turbomole_fc},
    {"VASP", vasp_natom, nullptr, nullptr, vasp_coord, nullptr},
    {"CIF", cif_natom, nullptr, nullptr, nullptr, nullptr},
    {"PWOUT", pwout_natom, nullptr, nullptr, nullptr, nullptr},
};
// clang-format on

// The readers of the file's kind, all absent for a kind without any; the file goes to its start.
kind_readers readers_of(qm_file& file) {
  file.file.rewind();
  for (const kind_readers& readers : kinds) {
    if (file.type == readers.kind) return readers;
  }
  return {file.type.trimmed()};
}

[[noreturn]] void fail_kind(const qm_file& file, std::string_view what) {
  const std::string kind = file.type.blank() ? "a file of unknown kind" : "a " + file.type.str() + " file";
  fail_in(file.file.name(), "cannot read " + std::string(what) + " from " + kind,
          "an output of ChemShell, Gaussian (the log, with its .fchk file beside it), Molpro, NWChem or "
          "Turbomole, or a file of numerical frequencies");
}

}  // namespace

void qm_file_natom(qm_file& file, int& natom, int& info) {
  const auto read = readers_of(file).natom;
  natom = 0;
  info = read != nullptr && read(file.file, natom) ? 0 : -1;
}

void qm_file_nat(qm_file& file, int natom, array1<int>& nat, int& info) {
  check_natom(file.file, natom);
  const auto read = readers_of(file).nat;
  if (read == nullptr) fail_kind(file, "the atoms");
  nat = array1<int>(natom);
  read(file.file, nat);
  info = 0;
}

void qm_file_mass(qm_file& file, int natom, array1<double>& mass, int& info) {
  check_natom(file.file, natom);
  const auto read = readers_of(file).mass;
  if (read == nullptr) fail_kind(file, "the masses");
  mass = array1<double>(natom);
  read(file.file, mass);
  info = 0;
}

void qm_file_coord(qm_file& file, int natom, array2<double>& x, int& info) {
  check_natom(file.file, natom);
  const auto read = readers_of(file).coord;
  if (read == nullptr) fail_kind(file, "the coordinates");
  x = array2<double>(3, natom);
  read(file.file, x);
  warn_if_cut(file.file);
  info = 0;
}

void qm_file_fc(qm_file& file, int natom, array2<double>& fc, int& info) {
  check_natom(file.file, natom);
  const auto read = readers_of(file).fc;
  if (read == nullptr) fail_kind(file, "the force constants");
  read(file.file, natom, fc);
  warn_if_cut(file.file);
  info = 0;
}

}  // namespace vbn
