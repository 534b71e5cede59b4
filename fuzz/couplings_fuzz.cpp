// Fuzz target: the readers of couplings and of transition dipole derivatives.
#include <cstddef>
#include <cstdint>
#include <string>

#include "readers/qm_file.hpp"  // for qm_file_natom, qm_file_nacme, qm_file_tdipd
#include "text/stop.hpp"        // for run_end

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vbn;
  qm_file file =
      open_qm_file(input_file::from_memory("fuzz", std::string(reinterpret_cast<const char*>(data), size)));
  int natom = 0;
  try {
    natom = qm_file_natom(file).value_or(0);
  } catch (const run_end&) {
  }
  if (natom < 1 || static_cast<std::size_t>(natom) > size) natom = 6;
  try {
    qm_file_nacme(file, natom);
  } catch (const run_end&) {
  }
  try {
    qm_file_tdipd(file, natom);
  } catch (const run_end&) {
  }
  return 0;
}
