// The run of the program: reads the keys, and writes each result as soon as it is there.
#include "app/driver.hpp"  // for run_stages

#include <string>

#include "app/analysis.hpp"             // for relate_states, compare_internal_coordinates
#include "app/stage_clock.hpp"          // for stage_clock
#include "couplings/dipole.hpp"         // for write_tdipd
#include "couplings/nacme_file.hpp"     // for write_nacme_n3
#include "input/input_group.hpp"        // for init, read_input
#include "internal/reorganisation.hpp"  // for write_proj_reorg
#include "output/mode_data.hpp"         // for write_vbn, write_vbn_int
#include "output/result_files.hpp"      // for require_inputs_kept
#include "output/viewer_files.hpp"      // for write_file_coord
#include "text/output_file.hpp"         // for output_file
#include "text/stop.hpp"                // for fail_in

namespace vbn {

namespace {

void read_keys(run_data& run, std::string_view argument) {
  init(run.input);
  if (argument.size() > run.input.finp.full().size()) {
    fail_in(argument, "the path of the input file is too long",
            "at most " + std::to_string(run.input.finp.full().size()) + " characters");
  }
  run.input.finp = argument;
  read_input(run.input, run.say);
  require_inputs_kept(run.input);
  run.input.prefix = "vbn";
  run.fout = output_file(run.input.prefix.str() + ".out");
}

void write_cartesian_route(const run_data& run) {
  const input_data& input = run.input;
  const std::string fname = input.prefix.str() + ".cart";
  if (input.do_tdipd) write_tdipd(run.state(input.proj_tdipd).dipole.dip0, run.tdipd_q, fname);
  for (const nacme_table& table : run.nacme_n3) write_nacme_n3(table, fname);
  write_vbn(run.state, fname, input);
  write_file_coord(run.state, input.prefix.trimmed(), run.say);
}

void write_internal_route(const run_data& run) {
  if (run.input.proj_reorg) write_proj_reorg(run.state(1), run.reorganisation);
  write_vbn_int(run.state, run.input.prefix.str() + ".dint", run.input);
}

}  // namespace

void run_stages(run_data& run, std::string_view argument) {
  read_keys(run, argument);
  relate_states(run);
  stage_clock clock;
  run.say.begin("writing the Cartesian route");
  write_cartesian_route(run);
  clock.ends("files of the Cartesian route");
  if (run.input.set_cart) return;
  run.say.begin("route through internal coordinates");
  compare_internal_coordinates(run);
  write_internal_route(run);
  clock.ends("internal route");
}

}  // namespace vbn
