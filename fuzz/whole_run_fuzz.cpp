// Fuzz target: the whole program on a small pair of files, one of them from the fuzzer.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/scratch_file.hpp"  // for write_scratch
#include "app/driver.hpp"         // for run_stages
#include "text/stop.hpp"          // for run_end

// The input holds up to three parts between lines "==": the file of state 1, that of state 2 (the same when
// missing), and the keys of the group besides the file names.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::string_view between = "\n==\n";
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  const auto part = [&rest, between] {
    const std::size_t end = rest.find(between);
    const std::string_view found = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + between.size());
    return found;
  };
  const std::string_view first = part();
  const std::string_view second = part();

  vbn::fuzzing::enter_scratch_folder();
  vbn::fuzzing::write_scratch("one.dat", first);
  vbn::fuzzing::write_scratch("two.dat", second.empty() ? first : second);
  vbn::fuzzing::write_scratch("one.fchk", second);
  vbn::fuzzing::write_scratch("two.fchk", second);
  std::string group = "&vbn ffreq = 'one.dat', 'two.dat' ";
  // Only the two files here may be read.
  if (rest.find("ff") == std::string_view::npos) group += rest;
  vbn::fuzzing::write_scratch("fuzz.inp", group + "\n/\n");
  try {
    vbn::run_data run;
    vbn::run_stages(run, "fuzz.inp");
  } catch (const vbn::run_end&) {
  }
  return 0;
}
