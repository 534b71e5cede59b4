// Fuzz target: all readers on one file of any kind.
#include <cstddef>
#include <cstdint>
#include <string>

#include "readers/atom_count.hpp"  // for qm_file_natom_oniom_qm, qm_file_oniom_index
#include "readers/qm_file.hpp"     // for qm_file_natom and its like
#include "text/stop.hpp"           // for run_end

namespace {

// Runs one reader, which may end the run in any of the defined ways.
template <class Reader>
void attempt(Reader reader) {
  try {
    reader();
  } catch (const vbn::run_end&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vbn;
  qm_file file =
      open_qm_file(input_file::from_memory("fuzz", std::string(reinterpret_cast<const char*>(data), size)));
  int natom = 0;
  attempt([&] { natom = qm_file_natom(file).value_or(0); });
  attempt([&] { qm_file_nat(file, natom); });
  attempt([&] { qm_file_mass(file, natom); });
  attempt([&] { qm_file_coord(file, natom); });
  attempt([&] { qm_file_printed(file); });
  attempt([&] { qm_file_fc(file, natom); });
  attempt([&] {
    const oniom_count count = qm_file_natom_oniom_qm(file);
    if (count.nqm > 0) qm_file_oniom_index(file, count.nqm, count.nqmmm);
  });
  return 0;
}
