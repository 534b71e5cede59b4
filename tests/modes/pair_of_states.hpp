// Two states of one molecule with their modes, for tests of how they correspond.
#pragma once

#include "app/run_data.hpp"          // for run_data
#include "frame/eckart.hpp"          // for do_eckart
#include "frame/inertial.hpp"        // for get_inertial
#include "frame/projection.hpp"      // for get_proj_hessian
#include "tests/frame/molecule.hpp"  // for spring_molecule
#include "tests/written_file.hpp"    // for scratch
#include "text/output_file.hpp"      // for output_file

namespace vbn {

// Brings both states to the modes of their final frame, as a run does.
inline void to_modes(run_data& run) {
  run.fout = output_file(scratch("frame.out"));
  for (states& state : run.state) {
    get_inertial(state);
    get_proj_hessian(state, 1);
  }
  states& g = run.state(1);
  rotate_state(do_eckart(g.atoms.x, run.state(2).atoms.x, g.atoms.mass, 0, run.fout), false, false, g);
  for (states& state : run.state) get_freq(state);
}

// A chiral molecule and the same one with other springs and a stretched bond, each turned and shifted.
inline run_data chiral_pair(unsigned seed) {
  run_data run;
  run.state(1) = spring_molecule(chiral_molecule);
  std::vector<test_atom> excited = chiral_molecule;
  excited[1].x[0] += 0.15;
  excited[3].x[2] -= 0.2;
  run.state(2) = spring_molecule(excited, 0.25);
  for (int k = 1; k <= 2; ++k) {
    move_molecule(run.state(k), random_rotation(seed + static_cast<unsigned>(k)),
                  {0.5 * seed, -1.0 * k, 2.0});
  }
  to_modes(run);
  return run;
}

}  // namespace vbn
