// The command line of vbn: one argument, the input file.
#include <cstdio>
#include <exception>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "app/blas_start.hpp"       // for settle_blas
#include "app/command_line.hpp"     // for answer_to
#include "app/driver.hpp"           // for run_stages
#include "app/progress.hpp"         // for progress
#include "output/result_files.hpp"  // for earlier_results
#include "output/summary.hpp"       // for summary
#include "text/messages.hpp"        // for messages
#include "text/stop.hpp"            // for run_end, fault_message, warning_line

namespace {

constexpr std::string_view help = R"(vbn relates the vibrations of two electronic states of a molecule.

Usage: vbn FILE

FILE names the frequency calculations of the two states:

    &vbn
     ffreq(1) = 'ground.log'
     ffreq(2) = 'excited.log'
     sort_mode = 1
    /

The results are written to the current directory: vbn.out (the log), vbn.cart.dat and vbn.dint.dat (frequencies,
displacements, Huang-Rhys factors, reorganisation energies, Duschinsky matrices), and files for molecule viewers.

  --help     prints this text
  --version  prints the version

Manual: man vbn, man 5 vbn (every key), and the pages in share/doc/vbn/docs of the installation.
)";

void write_to(std::FILE* stream, std::string_view text) { std::fwrite(text.data(), 1, text.size(), stream); }

// How the exception that is handled ends the run.
vbn::run_end end_of_exception() {
  try {
    throw;
  } catch (const vbn::run_end& end) {
    return end;
  } catch (const std::bad_alloc&) {
    return {1, vbn::fault_message(
                   {.what = "out of memory", .expected = "fewer atoms, or a machine with more memory"})};
  } catch (const std::length_error&) {
    return {
        1, vbn::fault_message({.what = "an array is too large for this machine", .expected = "fewer atoms"})};
  }
}

// Runs all stages and returns how the run ended; at a terminal a run that ended well has a summary. The log
// is closed by then.
vbn::run_end run_to_its_end(std::string_view argument) {
  const vbn::earlier_results earlier;
  vbn::progress at;
  std::string found;
  std::optional<vbn::run_end> stopped;
  vbn::output_file log;
  try {
    vbn::run_data run;
    const auto write = [&at](std::FILE* stream, std::string_view text) {
      at.clear();
      write_to(stream, text);
    };
    run.say = vbn::messages([&](std::string_view text) { write(stderr, vbn::warning_line(text)); },
                            [&](std::string_view lines) { write(stdout, lines); },
                            [&](std::string_view stage) { at.stage(stage); });
    try {
      vbn::run_stages(run, argument);
      if (at.on_terminal()) found = vbn::summary(run.state, run.input);
    } catch (...) {
      stopped = end_of_exception();
    }
    log = std::move(run.fout);
  } catch (...) {
    stopped = end_of_exception();
  }
  at.clear();
  // The log may be on a full disk, which only the last write shows.
  try {
    log.close();
  } catch (...) {
    vbn::run_end unwritten = end_of_exception();
    if (stopped) unwritten.text.insert(0, stopped->text), unwritten.printed = stopped->printed;
    stopped = unwritten;
  }
  if (!stopped) return {0, found};
  stopped->text += earlier.line_after_stop(log.name());
  return *stopped;
}

}  // namespace

int main(int argc, char** argv) {
  vbn::settle_blas();
  const std::string_view argument = argc > 1 ? argv[1] : "";
  vbn::run_end end;
  if (const auto answer = vbn::answer_to(argument, "vbn", help)) {
    end.printed = *answer;
  } else {
    if (argc > 2)
      write_to(stderr,
               vbn::warning_line(std::string("only the first argument is read; ") + argv[2] + " is ignored"));
    end = run_to_its_end(argument);
    if (argument.empty()) end.text += "vbn --help says how to use it\n";
  }
  write_to(stdout, end.printed);
  // Standard output may be a full disk or a closed pipe: only this flush shows it.
  if (std::fflush(stdout) != 0 && end.status == 0) {
    end.status = 1;
    end.text += vbn::fault_message({.what = "cannot write to standard output"});
  }
  write_to(stderr, end.text);
  return end.status;
}
