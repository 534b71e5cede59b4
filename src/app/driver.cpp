// The stages of a run in their order; what each of them does is told where it stands.
#include "app/driver.hpp"  // for run_stages

#include <string>

#include "app/stage_clock.hpp"             // for stage_clock
#include "checks/plausibility.hpp"         // for warn_of_files, warn_of_modes
#include "couplings/dipole.hpp"            // for get_tdipd, proj_dip, write_tdipd
#include "couplings/nacme.hpp"             // for get_nacme
#include "couplings/nacme_file.hpp"        // for get_nacme_n3
#include "couplings/nacme_projection.hpp"  // for proj_nacm, print_nacm
#include "frame/eckart.hpp"                // for do_eckart
#include "frame/hessian.hpp"               // for get_hess, get_isotope, get_freq, fc_to_fcm
#include "frame/inertial.hpp"              // for get_inertial
#include "frame/projection.hpp"            // for get_proj_hessian
#include "input/input_group.hpp"           // for init, read_input, check
#include "input/keys.hpp"                  // for input_data
#include "internal/displacement.hpp"       // for check_int_coord
#include "internal/force_projection.hpp"   // for get_proj_f0
#include "internal/gmatrix.hpp"            // for get_int_gmatrix
#include "internal/int_coord.hpp"          // for get_int_coord
#include "internal/report.hpp"             // for print_int_coord
#include "modes/duschinsky.hpp"            // for get_vbn
#include "modes/shared_hessian.hpp"        // for use_same_hessian
#include "modes/signs.hpp"                 // for set_positive_diag, set_proper_rotation
#include "molecule/record.hpp"             // for states
#include "molecule/storage.hpp"            // for vbn_allocate, int_allocate
#include "output/log_sections.hpp"         // for print_coord, print_freq
#include "output/mode_data.hpp"            // for write_vbn, write_vbn_int
#include "output/viewer_files.hpp"         // for write_file_coord
#include "readers/atom_count.hpp"          // for get_na, get_oniom_index
#include "symmetry/classification.hpp"     // for get_point_group, print_point_group
#include "symmetry/enforcement.hpp"        // for get_enforce_symm
#include "text/fixed_text.hpp"             // for text
#include "text/layout.hpp"                 // for layout
#include "text/output_file.hpp"            // for output_file, tell
#include "text/stop.hpp"                   // for fail

namespace vbn {

namespace {

// What the keys mean for the run and for the records.
void take_keys(run_data& run) {
  input_data& input = run.input;
  input.do_nacme = !input.fnacme.blank();
  input.do_tdipd = !input.ftdipd.blank();
  for (int k = 1; k <= 2; ++k) {
    states& state = run.state(k);
    state.ffreq = input.ffreq(k);
    state.start_mode = input.start_mode;
    state.symm_tol = input.symm_tol;
    if (input.do_nacme) state.fnacm = input.fnacme;
    if (input.do_tdipd) state.ftdipd = input.ftdipd;
  }
}

// The two states are compared coordinate by coordinate, so they must have the same atoms.
void require_equal_sizes(const run_data& run) {
  const states& one = run.state(1);
  const states& two = run.state(2);
  if (one.natom == two.natom) return;
  fail({.what = "the two states have different numbers of atoms: " + std::to_string(one.natom) + " in " +
                one.ffreq.str() + ", " + std::to_string(two.natom) + " in " + two.ffreq.str(),
        .file = two.ffreq.str(),
        .expected = "two calculations on one molecule, with the atoms in the same order"});
}

// The state that the couplings or dipole derivatives of a file belong to: the first whose geometry is the one
// of the file. Without one it is told, and the choice of the input stays.
void choose_state(bool first, bool second, const text<200>& file, int& proj) {
  static const layout mismatch(R"(("Error! The coordiantes from ",a," are different from two states!"))");
  if (first) {
    proj = 1;
  } else if (second) {
    proj = 2;
  } else {
    tell(mismatch, {file.trimmed()});
  }
}

void require_state(int proj, const char* key, const text<200>& file) {
  if (proj == 1 || proj == 2) return;
  fail(
      {.what = "the geometry in this file is the one of neither state, so there is no state to project on",
       .file = file.str(),
       .expected = std::string("a file made at the geometry of one of the states, or ") + key + " = 1 or 2"});
}

// Both states take the force constants of one, each with its own geometry and masses; `fcm` follows, since
// the inertial step starts from it.
void select_force_constants(array1<states>& state, int select_state) {
  if (select_state != 1 && select_state != 2) return;
  const states& from = state(select_state);
  states& to = state(3 - select_state);
  to.fc0 = from.fc0;
  to.fc = from.fc;
  int info = 0;
  fc_to_fcm(to.n3, to.sqtmass, to.fc, to.fcm, 1, info);
}

void print_coords(run_data& run, const std::string& frame) {
  for (int k = 1; k <= 2; ++k) {
    print_coord(run.fout, run.state(k), k, frame + " Coordinate (Angstrom) for state " + std::to_string(k));
  }
}

void align_states(run_data& run) {
  do_eckart(run.state(1), run.state(2), run.input, run.fout);
  print_coords(run, "Eckart  ");
}

}  // namespace

void run_stages(run_data& run, std::string_view argument) {
  input_data& input = run.input;
  array1<states>& state = run.state;
  stage_clock clock;

  // 1 to 3: the input group.
  init(input);
  input.finp = argument;
  read_input(input);

  // 4: the log.
  input.prefix = "vbn";
  text<100> fname = input.prefix.str() + ".out";
  run.fout = output_file(fname.str());

  // 5 and 6: file names and keys into the records.
  take_keys(run);
  clock.ends(6, "input");

  // 7 and 8: file kinds, atom counts, storage.
  for (states& it : state) get_na(it);
  require_equal_sizes(run);
  run.natom = state(1).natom;
  run.n3 = state(1).n3;
  for (states& it : state) vbn_allocate(it);
  for (states& it : state) get_oniom_index(it);
  clock.ends(8, "atom counts");

  // 9: coordinates, masses, force constants, raw frequencies.
  for (states& it : state) get_hess(it);
  warn_of_files(state);
  clock.ends(9, "files and raw frequencies");

  // 10 and 11: couplings and dipole derivatives, and the state that they belong to.
  if (input.do_nacme) {
    for (states& it : state) get_nacme(it);
    choose_state(state(1).ifnac, state(2).ifnac, input.fnacme, input.proj_nacme);
  }
  if (input.do_tdipd) {
    for (states& it : state) get_tdipd(it);
    choose_state(state(1).ifdip, state(2).ifdip, input.ftdipd, input.proj_tdipd);
  }

  // 12: one state's force constants for both.
  select_force_constants(state, input.select_state);

  // 13: the keys, which can be checked only with the atoms known.
  check(input, run.natom);
  clock.ends(13, "couplings and keys");

  // 14 to 18: each state in its own frame.
  for (int k = 1; k <= 2; ++k) {
    print_coord_origin(run.fout, state(k), k,
                       "Original Coordinate (Angstrom) for state " + std::to_string(k));
  }
  if (input.if_isotope) {
    for (states& it : state) get_isotope(it, max_list, input.mass_atom, input.mass_type);
  }
  for (states& it : state) get_inertial(it);
  clock.ends(16, "inertial frame");
  for (states& it : state) get_enforce_symm(it, input.enforce_symm);
  clock.ends(17, "symmetry");
  for (states& it : state) get_proj_hessian(it, input.proj_hessian);
  clock.ends(18, "Hessian projection");

  // 19 to 22: state 1 on state 2, final frequencies and modes.
  if (input.eckart_rot == 2) align_states(run);
  print_coords(run, "Inertial");
  for (states& it : state) get_freq(it);
  for (int k = 1; k <= 2; ++k) {
    print_freq0(run.fout, state(k), k);
    print_freq(run.fout, state(k), k);
  }
  warn_of_modes(state);
  clock.ends(22, "frequencies");

  // 23: representations.
  if (input.point_group) {
    for (states& it : state) get_point_group(it);
    for (const states& it : state) print_point_group(it, run.fout);
    clock.ends(23, "mode classification");
  }

  // 24: internal coordinates.
  if (!input.set_cart) {
    for (states& it : state) get_int_coord(it, input);
    for (states& it : state) int_allocate(it);
    for (const states& it : state) print_int_coord(it, run.fout);
    clock.ends(24, "redundant coordinates");
    for (states& it : state) get_int_gmatrix(it, input.gcut, run.fout);
    for (states& it : state) get_proj_f0(it, input.proj_f0);
    clock.ends(24, "non-redundant basis");
  }

  // 25 to 28: the relation of the two sets of modes.
  if (input.eckart_rot == 1) align_states(run);
  use_same_hessian(state, input.same_hessian);
  get_vbn(state, input);
  set_positive_diag(state, input.positive_diag, input);
  set_proper_rotation(state, input.proper_rotation, input);
  warn_of_distance(state);
  clock.ends(28, "Duschinsky and pairing");

  // 29 to 33: output of the Cartesian route.
  fname = input.prefix.str() + ".cart";
  if (input.do_nacme) {
    require_state(input.proj_nacme, "proj_nacme", input.fnacme);
    states& coupled = state(input.proj_nacme);
    proj_nacm(coupled, state(1));
    print_nacm(coupled, input.proj_nacme, run.fout);
  }
  if (input.do_tdipd) {
    require_state(input.proj_tdipd, "proj_tdipd", input.ftdipd);
    proj_dip(state(input.proj_tdipd), state(1));
    write_tdipd(state(input.proj_tdipd), fname.trimmed());
  }
  get_nacme_n3(state, fname.trimmed());
  write_vbn(state, fname.trimmed(), input);
  clock.ends(33, "Cartesian data files");
  write_file_coord(state, input.prefix.trimmed());
  clock.ends(33, "viewer files");

  // 34: the route through the internal coordinates.
  if (!input.set_cart) {
    check_int_coord(state, input, run.fout);
    warn_of_routes(state);
    clock.ends(34, "internal displacements");
    fname = input.prefix.str() + ".dint";
    write_vbn_int(state, fname.trimmed(), input);
    for (states& it : state) int_deallocate(it);
    clock.ends(34, "internal data files");
  }

  // 35: the end.
  for (states& it : state) dush_deallocate(it);
}

}  // namespace vbn
