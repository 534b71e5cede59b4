// Comparison of a second file with the frequency file of a state.
#include "couplings/same_molecule.hpp"  // for the interface

#include <cmath>

#include "readers/qm_file.hpp"   // for name_of
#include "text/layout.hpp"       // for layout
#include "text/output_file.hpp"  // for tell
#include "text/stop.hpp"         // for warn

namespace vbn {

namespace {

constexpr double same_mass = 0.001;  // amu, of whole numbers

const layout other_count(
    R"((2x,"The number of atoms in file", a,   " is not equal to that in the file ", a))");
const layout both_counts("(2x, i0, 2x, i0)");
const layout other_mass(R"((2x,"The mass of atom in file ", a,   " is not equal to that in the file ", a))");
const layout both_masses("(2x, i6, 2x, a, 2(2x,f15.6))");
const layout ending(R"((2x, "Stop!"))");

}  // namespace

bool same_count(const states& state, const qm_file& file, int count) {
  if (count == state.atoms.natom) return true;
  if (count < 1) {
    warn("no atoms found in " + file.file.name() +
         (file.kind == file_kind::unknown ? ": no known program writes such a file"
                                          : ", which is read as a " + name_of(file.kind) + " file"));
  }
  tell(other_count, {state.file.ffreq.trimmed(), file.file.name()});
  tell(both_counts, {state.atoms.natom, count});
  tell(ending);
  return false;
}

bool same_masses(const states& state, const qm_file& file, const array1<double>& mass) {
  for (int i = 1; i <= state.atoms.natom; ++i) {
    if (std::abs(std::trunc(mass(i)) - std::trunc(state.atoms.mass(i))) <= same_mass) continue;
    tell(other_mass, {state.file.ffreq.trimmed(), file.file.name()});
    tell(both_masses, {i, state.atoms.symbol(i), state.atoms.mass(i), mass(i)});
    tell(ending);
    return false;
  }
  return true;
}

}  // namespace vbn
