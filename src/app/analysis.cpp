// The stages of the analysis in their order.
#include "app/analysis.hpp"  // for analyse

#include <string>
#include <utility>

#include "app/stage_clock.hpp"             // for stage_clock
#include "checks/atom_order.hpp"           // for warn_of_atom_order
#include "checks/coordinate_effects.hpp"   // for warn_of_linear_bends, warn_of_routes
#include "checks/orientation.hpp"          // for warn_of_symmetry_axes and the other tests of frames
#include "checks/sources.hpp"              // for require_one_molecule, warn_of_sources
#include "checks/plausibility.hpp"         // for warn_of_files, warn_of_modes
#include "checks/symmetry_effects.hpp"     // for warn_of_near_symmetry and the other effects of symmetry
#include "couplings/dipole.hpp"            // for get_tdipd, proj_dip
#include "couplings/nacme.hpp"             // for get_nacme
#include "couplings/nacme_file.hpp"        // for get_nacme_n3
#include "couplings/nacme_projection.hpp"  // for proj_nacm, print_nacm
#include "frame/eckart.hpp"                // for do_eckart, rotate_state
#include "frame/hessian.hpp"               // for get_hess, get_isotope, get_freq, frequencies_of
#include "frame/inertial.hpp"              // for get_inertial
#include "frame/projection.hpp"            // for get_proj_hessian
#include "input/input_group.hpp"           // for check
#include "input/keys.hpp"                  // for input_data
#include "internal/displacement.hpp"       // for check_int_coord
#include "internal/force_projection.hpp"   // for get_proj_f0
#include "internal/gmatrix.hpp"            // for get_int_gmatrix
#include "internal/int_coord.hpp"          // for get_int_coord
#include "internal/reorganisation.hpp"     // for proj_reorg_ene
#include "internal/report.hpp"             // for print_int_coord, print_differences
#include "modes/duschinsky.hpp"            // for get_vbn
#include "modes/shared_hessian.hpp"        // for use_same_hessian
#include "modes/signs.hpp"                 // for set_positive_diag, set_proper_rotation
#include "molecule/record.hpp"             // for states
#include "output/log_sections.hpp"         // for print_coord, print_freq
#include "readers/atom_count.hpp"          // for get_na, get_oniom_index
#include "readers/qm_file.hpp"             // for qm_file_printed
#include "readers/file_type.hpp"           // for qm_file
#include "symmetry/classification.hpp"     // for get_point_group, print_point_group
#include "symmetry/enforcement.hpp"        // for get_enforce_symm
#include "text/fixed_text.hpp"             // for text
#include "text/layout.hpp"                 // for layout
#include "text/messages.hpp"               // for messages
#include "text/stop.hpp"                   // for fail, run_end

namespace vbn {

namespace {

// Copies the keys to the data of the run and of the states.
void take_keys(run_data& run) {
  input_data& input = run.input;
  input.do_nacme = !input.fnacme.blank();
  input.do_tdipd = !input.ftdipd.blank();
  for (int k = 1; k <= 2; ++k) {
    states& state = run.state(k);
    state.file.ffreq = input.ffreq(k);
    state.couplings.fnacm = input.fnacme;
    state.dipole.ftdipd = input.ftdipd;
  }
}

// The two states are compared coordinate by coordinate, so they must have the same atoms.
void require_equal_sizes(const run_data& run) {
  const states& one = run.state(1);
  const states& two = run.state(2);
  if (one.atoms.natom == two.atoms.natom) return;
  fail({.what = "the two states have different numbers of atoms: " + std::to_string(one.atoms.natom) +
                " in " + one.file.ffreq.str() + ", " + std::to_string(two.atoms.natom) + " in " +
                two.file.ffreq.str(),
        .file = two.file.ffreq.str(),
        .expected = "two calculations on one molecule, with the atoms in the same order"});
}

// A stop that does not say where its fault is gets the file.
template <class Read>
auto with_file(const text<200>& file, Read read) {
  try {
    return read();
  } catch (run_end& end) {
    if (end.cause.file.empty()) end.cause.file = file.str();
    throw;
  }
}

// Reads kinds of files, atoms, geometries and force constants; computes the frequencies before any
// projection.
void read_states(run_data& run) {
  states& one = run.state(1);
  states& two = run.state(2);
  const auto counted = [&](states& it) {
    return with_file(it.file.ffreq, [&] { return get_na(it.file, it.atoms, run.say); });
  };
  qm_file files[] = {counted(one), counted(two)};
  require_equal_sizes(run);
  part_checkpoints(one.file, two.file, run.say);
  for (int k = 1; k <= 2; ++k) {
    get_oniom_index(files[k - 1], run.state(k).atoms.natom, run.state(k).file);
  }
  for (int k = 1; k <= 2; ++k) {
    states& it = run.state(k);
    with_file(it.file.ffreq, [&] {
      it.file.printed = qm_file_printed(files[k - 1]);
      get_hess(std::move(files[k - 1]), run.input, it.file, it.atoms, it.force);
    });
    it.modes.freq0 = frequencies_of(it.force.fcm());
  }
  require_one_molecule(run.state);
  warn_of_files(run.state, run.say);
  run.other_order = warn_of_atom_order(run.state, run.say);
  warn_of_sources(run.state, run.say);
}

// The state of the couplings or dipole derivatives of a file: the first whose geometry is that of the file.
// If there is none, a line is printed and the choice of the input is used.
void choose_state(bool first, bool second, const text<200>& file, int& proj, const messages& say) {
  static const layout mismatch(R"(("Error! The coordiantes from ",a," are different from two states!"))");
  if (first) {
    proj = 1;
  } else if (second) {
    proj = 2;
  } else {
    say.tell(mismatch, {file.trimmed()});
  }
}

// Reads couplings and dipole derivatives, and finds the state that they belong to.
void read_couplings(run_data& run) {
  input_data& input = run.input;
  array1<states>& state = run.state;
  if (input.do_nacme) {
    with_file(input.fnacme, [&] { get_nacme(state.span(), run.say); });
    choose_state(state(1).couplings.ifnac, state(2).couplings.ifnac, input.fnacme, input.proj_nacme, run.say);
  }
  if (input.do_tdipd) {
    with_file(input.ftdipd, [&] { get_tdipd(state.span(), run.say); });
    choose_state(state(1).dipole.ifdip, state(2).dipole.ifdip, input.ftdipd, input.proj_tdipd, run.say);
  }
}

// Gives both states the force constants of one; each keeps its own geometry and masses.
void select_force_constants(array1<states>& state, int select_state, const messages& say) {
  if (select_state != 1 && select_state != 2) return;
  states& to = state(3 - select_state);
  warn_of_copied_force_constants(state(select_state), to, say);
  to.force.set_fc(to.atoms.sqtmass, state(select_state).force.fc());
}

void print_coords(run_data& run, const std::string& frame) {
  for (int k = 1; k <= 2; ++k) {
    print_coord(run.fout, run.state(k).atoms, k,
                frame + " Coordinate (Angstrom) for state " + std::to_string(k));
  }
}

// Searches the point group of a state, and makes the state symmetric where that is asked for.
void search_symmetry(run_data& run, int k) {
  const input_data& input = run.input;
  states& it = run.state(k);
  const array2<double> x = it.atoms.x;
  with_file(it.file.ffreq, [&] { get_enforce_symm(input.enforce_symm, input.symm_tol, it, run.say); });
  if (input.enforce_symm) {
    // Of the force constants as read, before the frame of the state has changed.
    warn_of_enforcement(it, k, x, it.modes.freq0, it.atoms.x, frequencies_of(it.force.fcm()), run.say);
  }
  if (input.enforce_symm || input.point_group) warn_of_near_symmetry(it, k, input.symm_tol, run.say);
}

// Moves each state to its own inertial frame and removes translations and rotations.
void bring_to_frames(run_data& run) {
  const input_data& input = run.input;
  print_coords(run, "Original");
  for (states& it : run.state) {
    if (input.if_isotope)
      get_isotope(it.file, max_list, input.mass_atom, input.mass_type, it.atoms, it.force);
  }
  for (states& it : run.state) get_inertial(it, run.say);
  for (int k = 1; k <= 2; ++k) search_symmetry(run, k);
  for (states& it : run.state) {
    // The forces of the other layer fix the position of an ONIOM state, so it is not projected.
    if (!it.file.ifoniom) get_proj_hessian(it.atoms, input.proj_hessian, it.force, run.say);
    if (input.point_group) it.modes.freq1 = frequencies_of(it.force.fcm());
  }
}

// Rotates state 1 onto state 2, and returns the rotation.
array2<double> align_states(run_data& run) {
  const input_data& input = run.input;
  states& g = run.state(1);
  array2<double> rot =
      do_eckart(g.atoms.x, run.state(2).atoms.x, g.atoms.mass, input.set_eckart_order, run.fout);
  rotate_state(rot, input.do_nacme && input.proj_nacme == 1, input.do_tdipd && input.proj_tdipd == 1, g);
  print_coords(run, "Eckart  ");
  return rot;
}

// Computes frequencies and modes, and their representations.
void find_modes(run_data& run) {
  const array2<double> before = run.input.point_group ? run.state(1).atoms.x : array2<double>();
  if (run.input.eckart_rot == 2) {
    const array2<double> rot = align_states(run);
    if (run.input.point_group)
      run.other_axes = warn_of_symmetry_axes(run.state(1), before, rot, run.input.symm_tol, run.say);
  }
  print_coords(run, "Inertial");
  for (states& it : run.state) get_freq(it.force, it.modes);
  for (int k = 1; k <= 2; ++k) {
    print_freq0(run.fout, run.state(k).modes, k);
    print_freq(run.fout, run.state(k).modes, k);
  }
  warn_of_modes(run.state, run.for_tables, run.say);
  if (!run.input.point_group) return;
  for (int k = 1; k <= 2; ++k) {
    states& it = run.state(k);
    const array2<double> whole = it.force.fcm();
    get_point_group(it.atoms.sqtmass, it.symmetry, it.force, it.modes);
    if (run.input.eckart_rot == 2 && !run.other_axes) warn_of_dropped_elements(run.state, k, whole, run.say);
  }
  for (const states& it : run.state) {
    with_file(it.file.ffreq, [&] { print_point_group(it, run.fout, run.say); });
  }
}

void find_internal_coordinates(run_data& run) {
  const input_data& input = run.input;
  for (states& it : run.state) {
    with_file(it.file.ffreq,
              [&] { it.internal = get_int_coord(it.atoms, it.file.ffreq.str(), input, run.say); });
  }
  for (const states& it : run.state) print_int_coord(it.internal, it.atoms, run.fout);
  for (states& it : run.state) {
    with_file(it.file.ffreq, [&] {
      it.basis = get_int_gmatrix(it.atoms, it.internal, it.file.ffreq.str(), input, run.fout, run.say);
    });
  }
  for (states& it : run.state)
    if (input.proj_f0) get_proj_f0(it.basis.bm, it.force);
}

// Warns of frames, axes, rows and distances that make the relation of the modes unreliable.
void warn_of_relation(run_data& run) {
  const input_data& input = run.input;
  if (input.point_group && !run.other_axes) warn_of_representations(run.state, run.say);
  const bool rotated = input.eckart_rot == 1 || input.eckart_rot == 2;
  const bool chosen = rotated && input.set_eckart_order >= 1 && input.set_eckart_order <= 4;
  run.apart = !chosen && warn_of_alignment(run.state(1).atoms.x, run.state(2).atoms.x, rotated, run.say);
  for (int k = 1; k <= 2; ++k) {
    if (!run.apart) warn_of_equal_moments(run.state(k), k, input.point_group, run.say);
    warn_of_missing_rows(run.state(k), k, run.say);
  }
  if (!run.apart && !run.other_order) warn_of_distance(run.state, run.say);
}

// Computes the Duschinsky matrix and the displacements, pairs the modes and sets their signs.
void relate_modes(run_data& run) {
  const input_data& input = run.input;
  if (input.eckart_rot == 1) {
    const array2<double> rot = align_states(run);
    if (!input.set_cart) run.late_rotation = warn_of_late_rotation(rot, run.say);
  }
  if (input.same_hessian == 1) warn_of_copied_modes(run.state(1).modes, run.state(2).modes, run.say);
  if (input.same_hessian == 2) warn_of_copied_modes(run.state(2).modes, run.state(1).modes, run.say);
  use_same_hessian(run.state, input.same_hessian);
  get_vbn(run.state, input, run.say);
  set_positive_diag(run.state, input.positive_diag, input, run.say);
  set_proper_rotation(run.state, input.proper_rotation, input, run.say);
  warn_of_relation(run);
}

void require_state(int proj, const char* key, const text<200>& file) {
  if (proj == 1 || proj == 2) return;
  fail({.what = "the geometry in this file is that of neither state, so there is no state to project on",
        .file = file.str(),
        .expected = std::string("a file for the geometry of one of the states, or ") + key + " = 1 or 2"});
}

// Couplings and dipole derivatives along the modes of state 1, whichever state they belong to, and the tables
// of the couplings along the modes of their own state.
void project_couplings(run_data& run) {
  const input_data& input = run.input;
  const normal_modes& modes = run.state(1).modes;
  if (input.do_nacme) {
    require_state(input.proj_nacme, "proj_nacme", input.fnacme);
    const states& coupled = run.state(input.proj_nacme);
    run.nacme_before = proj_nacm(coupled.couplings.nacme_x0, coupled.atoms, modes.cm, input.start_mode);
    run.nacme_after = proj_nacm(coupled.couplings.nacme_x, coupled.atoms, modes.cm, input.start_mode);
    print_nacm(coupled, run.nacme_before, run.nacme_after, input.proj_nacme, input.start_mode, run.fout);
  }
  if (input.do_tdipd) {
    require_state(input.proj_tdipd, "proj_tdipd", input.ftdipd);
    const states& excited = run.state(input.proj_tdipd);
    run.tdipd_q = proj_dip(excited.dipole, excited.atoms, modes.cm, run.for_tables ? run.say : messages());
  }
  for (int k = 1; k <= 2; ++k)
    if (run.state(k).couplings.ifnac) run.nacme_n3(k) = get_nacme_n3(run.state(k));
}

}  // namespace

void relate_states(run_data& run) {
  const input_data& input = run.input;
  stage_clock clock;
  const auto section_ends = [&](const char* name, const char* next = nullptr) {
    clock.ends(name);
    run.fout.save();
    if (next != nullptr) run.say.begin(next);
  };
  take_keys(run);
  read_states(run);
  section_ends("files and raw frequencies", "couplings and keys");
  read_couplings(run);
  select_force_constants(run.state, input.select_state, run.say);
  with_file(input.finp, [&] { check(run.input, run.state(1).atoms.natom, run.say); });
  section_ends("couplings and keys", "inertial frames");
  bring_to_frames(run);
  section_ends("inertial frames", "modes");
  find_modes(run);
  section_ends("modes", input.set_cart ? nullptr : "internal coordinates");
  if (!input.set_cart) find_internal_coordinates(run);
  section_ends("internal coordinates", "Duschinsky matrix and pairing");
  relate_modes(run);
  section_ends("Duschinsky and pairing");
  project_couplings(run);
  section_ends("couplings along the modes");
}

void compare_internal_coordinates(run_data& run) {
  if (run.input.set_cart) return;
  stage_clock clock;
  check_int_coord(run.state, run.input.d_sign_same_to_cart, run.say);
  print_differences(run.state(1), run.state(2), run.fout);
  if (run.input.proj_reorg) run.reorganisation = proj_reorg_ene(run.state);
  warn_of_linear_bends(run.state, run.say);
  if (!run.apart) warn_of_routes(run.state, run.input, run.late_rotation, run.say);
  clock.ends("internal displacements");
}

void analyse(run_data& run) {
  relate_states(run);
  compare_internal_coordinates(run);
}

}  // namespace vbn
