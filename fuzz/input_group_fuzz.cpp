// Fuzz target: the input file, from its text to the checked keys.
#include <cstddef>
#include <cstdint>

#include "fuzz/scratch_file.hpp"  // for write_scratch
#include "input/input_group.hpp"  // for init, read_input, check
#include "text/stop.hpp"          // for run_end

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vbn::fuzzing::enter_scratch_folder();
  vbn::fuzzing::write_scratch("fuzz.inp", {reinterpret_cast<const char*>(data), size});
  vbn::input_data input;
  try {
    vbn::init(input);
    input.finp = "fuzz.inp";
    vbn::read_input(input, {});
    vbn::check(input, 6, {});
  } catch (const vbn::run_end&) {
  }
  return 0;
}
