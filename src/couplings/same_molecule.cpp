// Comparison of a second file with the frequency file of a state.
#include "couplings/same_molecule.hpp"  // for the interface

#include <cmath>

#include "readers/qm_file.hpp"  // for name_of
#include "text/layout.hpp"      // for layout
#include "text/messages.hpp"    // for lines_of
#include "text/stop.hpp"        // for stop_printed

namespace vbn {

namespace {

constexpr double same_mass = 0.001;  // amu, of whole numbers

const layout other_count(
    R"((2x,"The number of atoms in file", a,   " is not equal to that in the file ", a))");
const layout both_counts("(2x, i0, 2x, i0)");
const layout other_mass(R"((2x,"The mass of atom in file ", a,   " is not equal to that in the file ", a))");
const layout both_masses("(2x, i6, 2x, a, 2(2x,f15.6))");
const layout ending(R"((2x, "Stop!"))");

// Masses of Turbomole are natural averages, whose whole part can differ from that of an isotope.
// Whether the file has the elements of the state; false where it does not say.
bool same_elements(const states& state, qm_file& file) {
  try {
    return qm_file_nat(file, state.atoms.natom) == state.atoms.nat;
  } catch (const run_end&) {
    return false;
  }
}

}  // namespace

void require_same_count(const states& state, const qm_file& file, int count, int status) {
  if (count == state.atoms.natom) return;
  if (count < 1) {
    file.file.warn("no atoms found in " + file.file.name() +
                   (file.kind == file_kind::unknown
                        ? ": it is not recognised as the file of any program"
                        : ", which is read as a " + name_of(file.kind) + " file"));
  }
  stop_printed(lines_of(other_count, {state.file.ffreq.trimmed(), file.file.name()}) +
                   lines_of(both_counts, {state.atoms.natom, count}) + lines_of(ending),
               status);
}

void require_same_masses(const states& state, qm_file& file, const array1<double>& mass, int status) {
  for (int i = 1; i <= state.atoms.natom; ++i) {
    if (std::abs(std::trunc(mass(i)) - std::trunc(state.atoms.mass(i))) <= same_mass) continue;
    const bool averages =
        file.kind == file_kind::turbomole || state.file.ffreq_type == name_of(file_kind::turbomole);
    if (averages && same_elements(state, file)) return;
    stop_printed(lines_of(other_mass, {state.file.ffreq.trimmed(), file.file.name()}) +
                     lines_of(both_masses, {i, state.atoms.symbol(i), state.atoms.mass(i), mass(i)}) +
                     lines_of(ending),
                 status);
  }
}

}  // namespace vbn
