// Fuzz target: the readers of couplings and of transition dipole derivatives.
#include <cstddef>
#include <cstdint>
#include <string>

#include "couplings/dipole.hpp"         // for qm_file_tdipd
#include "couplings/nacme_readers.hpp"  // for qm_file_nacme
#include "readers/qm_file.hpp"          // for qm_file_natom
#include "text/stop.hpp"                // for run_end

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vbn;
  qm_file file{
      input_file::from_memory("fuzz", std::string(reinterpret_cast<const char*>(data), size)), {}, {}};
  qm_file_type(file.file, file.type, file.version, file.info);
  int natom = 0;
  int info = 0;
  try {
    qm_file_natom(file, natom, info);
  } catch (const run_end&) {
  }
  if (natom < 1 || static_cast<std::size_t>(natom) > size) natom = 6;
  try {
    array2<double> nacme(3, natom);
    array2<double> tranele(3, natom);
    double e_vert = 0.0;
    qm_file_nacme(file, natom, nacme, tranele, e_vert, info);
  } catch (const run_end&) {
  }
  try {
    array1<double> dip0(3);
    array3<double> tdipd_x(3, 3, natom);
    qm_file_tdipd(file, natom, dip0, tdipd_x, info);
  } catch (const run_end&) {
  }
  return 0;
}
