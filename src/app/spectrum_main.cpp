// The command line of vbn-spectrum: an input file, and perhaps the correlation functions of an earlier run.
#include <cstdio>
#include <exception>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "app/blas_start.hpp"    // for settle_blas
#include "app/command_line.hpp"  // for answer_to
#include "app/progress.hpp"      // for progress
#include "app/spectrum_run.hpp"  // for run_spectrum
#include "text/messages.hpp"     // for messages
#include "text/stop.hpp"         // for run_end, fault_message, warning_line

namespace {

constexpr std::string_view help =
    R"(vbn-spectrum calculates absorption and emission bands, lines and rates of two electronic states.

Usage: vbn-spectrum [--from vbn.correlation.csv] FILE

FILE is an input file of vbn with a further group:

    &spectrum
     what = 'absorption', 'emission'
     energy = 21500
     fwhm = 200
    /

The results are written to the current directory: vbn.absorption.csv, vbn.emission.csv, vbn.lines.csv,
vbn.correlation.csv, vbn.rates.csv, and the log vbn.spectrum.out.

  --from F   takes the correlation functions of an earlier run from F and gives them other widths
  --help     prints this text
  --version  prints the version

Manual: man vbn-spectrum, and docs/spectra.md in share/doc/vbn of the installation.
)";

void write_to(std::FILE* stream, std::string_view text) { std::fwrite(text.data(), 1, text.size(), stream); }

vbn::run_end run_to_its_end(const std::string& input, const std::string& from) {
  vbn::progress at;
  const auto write = [&at](std::FILE* stream, std::string_view text) {
    at.clear();
    write_to(stream, text);
  };
  const vbn::messages say([&](std::string_view text) { write(stderr, vbn::warning_line(text)); },
                          [&](std::string_view lines) { write(stdout, lines); },
                          [&](std::string_view stage) { at.stage(stage); });
  vbn::run_end end;
  try {
    end.printed = vbn::run_spectrum(input, from, say);
  } catch (const vbn::run_end& stopped) {
    end = stopped;
    // Results are asked for: a stop without them is no success.
    if (end.status == 0) end.status = 1;
  } catch (const std::bad_alloc&) {
    end = {1,
           vbn::fault_message({.what = "out of memory", .expected = "a larger fwhm, fewer modes or threads"}),
           {},
           {}};
  } catch (const std::length_error&) {
    end = {1,
           vbn::fault_message({.what = "an array is too large for this machine", .expected = "fewer atoms"}),
           {},
           {}};
  } catch (const std::domain_error&) {
    end = {1, vbn::fault_message({.what = "the vibrations of the states are not independent"}), {}, {}};
  }
  at.clear();
  return end;
}

}  // namespace

int main(int argc, char** argv) {
  vbn::settle_blas();
  std::string input;
  std::string from;
  vbn::run_end end;
  bool wrong = argc < 2;
  for (int i = 1; i < argc && end.printed.empty(); ++i) {
    const std::string argument = argv[i];
    if (const auto answer = vbn::answer_to(argument, "vbn-spectrum", help)) {
      end.printed = *answer;
    } else if (argument == "--from" && i + 1 < argc && from.empty()) {
      from = argv[++i];
    } else if (input.empty() && argument != "--from") {
      input = argument;
    } else {
      wrong = true;
    }
  }
  if (end.printed.empty() && (wrong || input.empty())) {
    end = {1,
           vbn::fault_message(
               {.what = "the command line is not understood",
                .expected = "vbn-spectrum my.inp, or vbn-spectrum --from vbn.correlation.csv my.inp"}),
           {},
           {}};
  } else if (end.printed.empty()) {
    end = run_to_its_end(input, from);
  }
  write_to(stdout, end.printed);
  if (std::fflush(stdout) != 0 && end.status == 0) {
    end.status = 1;
    end.text += vbn::fault_message({.what = "cannot write to standard output"});
  }
  write_to(stderr, end.text);
  return end.status;
}
