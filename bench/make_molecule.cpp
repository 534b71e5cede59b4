// Writes state1.dat, state2.dat and vbn.inp of a molecule of the given size into the current folder.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/molecule.hpp"    // for chain
#include "text/layout.hpp"       // for layout
#include "text/output_file.hpp"  // for output_file
#include "text/stop.hpp"         // for run_end

namespace {

// In the layout of a numerical frequency calculation.
void write_numforce(const vbn::bench::molecule& m, const std::string& name) {
  const int natom = m.nat.size();
  vbn::output_file file(name);
  file.line(" NUMERICAL FREQUENCY");
  file.line(" VERSION 1.2");
  file.write(vbn::layout("(' NAtoms ',i6)"), {natom});
  file.line("");
  file.line(" Coordinate Bohr");
  file.line("   No    Z        mass               x               y               z");
  const vbn::layout atom("(i5,i5,f16.8,3f18.10)");
  for (int i = 1; i <= natom; ++i)
    file.write(atom, {i, m.nat(i), m.mass(i), m.x(1, i), m.x(2, i), m.x(3, i)});
  file.line("");
  file.line(" Unprojected Force Constant Matrix");
  const vbn::layout row("(5es20.11)");
  for (int i = 1; i <= 3 * natom; ++i) {
    file.write(vbn::layout("(' row ',i6)"), {i});
    file.write(row, m.fc.column(i));
  }
  file.close();
}

}  // namespace

int main(int argc, char** argv) {
  const int natom = argc > 1 ? std::atoi(argv[1]) : 0;
  if (argc < 2 || argc > 3 || natom < 3) {
    std::fputs(
        "usage: make_molecule ATOMS [KEYS], with at least 3 atoms and further keys of the input group\n",
        stderr);
    return 2;
  }
  try {
    for (const int state : {1, 2})
      write_numforce(vbn::bench::chain(natom, state), "state" + std::to_string(state) + ".dat");
    vbn::output_file input("vbn.inp");
    input.line("&vbn");
    input.line(" ffreq(1) = 'state1.dat'");
    input.line(" ffreq(2) = 'state2.dat'");
    input.line(" gcut = 1.0e-13");  // the bending of a long chain is softer than the default allows
    if (argc > 2) input.line(std::string(" ") + argv[2]);
    input.line("/");
    input.close();
  } catch (const vbn::run_end& end) {
    std::fputs(end.text.c_str(), stderr);
    return end.status;
  }
}
