// Calls the reader of the kind of a file for each quantity.
#include "readers/qm_file.hpp"  // for the routines

#include <algorithm>
#include <cmath>
#include <string_view>

#include "readers/file_state.hpp"   // for file_state
#include "readers/programs.hpp"     // for the readers
#include "readers/rows.hpp"         // for check_natom and warn_if_cut
#include "readers/state_parts.hpp"  // for check_state
#include "text/stop.hpp"            // for fail_in

namespace vbn {

namespace {

// The readers of the kind of the file, which is moved to its start.
const kind_readers& rewound(qm_file& file) {
  file.file.rewind();
  return readers_of(file.kind);
}

// The state of a file whose kind is read as a whole; nullptr for the other kinds.
file_state* whole_state(qm_file& file) {
  const auto read = readers_of(file.kind).state;
  if (read == nullptr && !file.state) return nullptr;
  if (!file.state) {
    file.file.rewind();
    file.state = read(file.file);
    warn_if_cut(file.file);
    check_state(file.file, *file.state);
  }
  return &*file.state;
}

[[noreturn]] void fail_kind(const qm_file& file, std::string_view what) {
  const std::string kind =
      file.kind == file_kind::unknown ? "a file of unknown kind" : "a " + name_of(file.kind) + " file";
  fail_in(file.file.name(), "cannot read " + std::string(what) + " from " + kind,
          "one of the files that are read: " + names_of_kinds());
}

}  // namespace

std::string name_of(file_kind kind) { return std::string(readers_of(kind).name); }

std::optional<int> qm_file_natom(qm_file& file) {
  if (const file_state* state = whole_state(file)) return state->natom();
  const auto read = rewound(file).natom;
  if (read == nullptr) return std::nullopt;
  return read(file.file);
}

array1<int> qm_file_nat(qm_file& file, int natom) {
  check_natom(file.file, natom);
  if (const file_state* state = whole_state(file)) return state->nat;
  const auto read = rewound(file).nat;
  if (read == nullptr) fail_kind(file, "the atoms");
  array1<int> nat(natom);
  read(file.file, nat);
  return nat;
}

array1<double> qm_file_mass(qm_file& file, int natom) {
  check_natom(file.file, natom);
  if (const file_state* state = whole_state(file)) return state->mass;
  const auto read = rewound(file).mass;
  if (read == nullptr) fail_kind(file, "the masses");
  array1<double> mass(natom);
  read(file.file, mass);
  warn_if_cut(file.file);
  return mass;
}

array2<double> qm_file_coord(qm_file& file, int natom) {
  check_natom(file.file, natom);
  if (const file_state* state = whole_state(file)) return state->x;
  const auto read = rewound(file).coord;
  if (read == nullptr) fail_kind(file, "the coordinates");
  array2<double> x(3, natom);
  read(file.file, x);
  warn_if_cut(file.file);
  return x;
}

array2<double> qm_file_fc(qm_file& file, int natom) {
  check_natom(file.file, natom);
  if (file_state* state = whole_state(file)) return std::move(state->fc);
  const auto read = rewound(file).fc;
  if (read == nullptr) fail_kind(file, "the force constants");
  array2<double> fc = read(file.file, natom);
  warn_if_cut(file.file);
  return fc;
}

printed_results qm_file_printed(qm_file& file) {
  if (const file_state* state = whole_state(file)) return state->printed;
  const auto read = rewound(file).printed;
  return read == nullptr ? printed_results() : read(file.file);
}

file_couplings qm_file_nacme(qm_file& file, int natom) {
  check_natom(file.file, natom);
  const auto read = rewound(file).nacme;
  if (read == nullptr) {
    fail_in(file.file.name(),
            "a file of kind \"" + name_of(file.kind) + "\" has no couplings that can be read",
            "an output of Gaussian, Molpro, NWChem or Turbomole");
  }
  file_couplings couplings{array1<double>(natom), 0.0, array2<double>(3, natom), array2<double>(3, natom)};
  read(file, couplings);
  warn_if_cut(file.file);
  const auto finite = [](double r) { return std::isfinite(r); };
  if (!std::ranges::all_of(couplings.nacme.span(), finite) ||
      !std::ranges::all_of(couplings.tranele.span(), finite)) {
    fail_in(file.file.name(), "the couplings are not finite numbers",
            "finite couplings, and an energy and charges that keep them finite");
  }
  return couplings;
}

file_dipole qm_file_tdipd(qm_file& file, int natom) {
  check_natom(file.file, natom);
  const auto read = rewound(file).tdipd;
  if (read == nullptr) {
    fail_in(file.file.name(),
            "a file of kind \"" + name_of(file.kind) + "\" has no dipole derivatives that can be read",
            "a file of numerical frequencies, \"NUMERICAL FREQUENCY\" in columns 2 to 20");
  }
  file_dipole dipole{array1<double>(3), array3<double>(3, 3, natom)};
  read(file.file, dipole);
  warn_if_cut(file.file);
  return dipole;
}

}  // namespace vbn
