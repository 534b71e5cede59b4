// The command line of vbn: one argument, the input file.
#include <cstdio>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "app/blas_start.hpp"  // for settle_blas
#include "app/driver.hpp"      // for run_stages
#include "text/messages.hpp"   // for messages
#include "text/stop.hpp"       // for run_end, fault_message, warning_line

namespace {

void write_to(std::FILE* stream, std::string_view text) { std::fwrite(text.data(), 1, text.size(), stream); }

// Runs all stages and returns how the run ended. The data of the run are destroyed by then, so the log is
// closed.
vbn::run_end run_to_its_end(const char* argument) {
  try {
    vbn::run_data run;
    run.say = vbn::messages([](std::string_view text) { write_to(stderr, vbn::warning_line(text)); },
                            [](std::string_view lines) { write_to(stdout, lines); });
    vbn::run_stages(run, argument);
    run.fout.close();
    return {};
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

}  // namespace

int main(int argc, char** argv) {
  vbn::settle_blas();
  vbn::run_end end = run_to_its_end(argc > 1 ? argv[1] : "");
  write_to(stdout, end.printed);
  // Standard output may be a full disk or a closed pipe: only this flush shows it.
  if (std::fflush(stdout) != 0 && end.status == 0) {
    end.status = 1;
    end.text += vbn::fault_message({.what = "cannot write to standard output"});
  }
  write_to(stderr, end.text);
  return end.status;
}
