// Fuzz target: all readers on one file of any kind.
#include <cstddef>
#include <cstdint>
#include <string>

#include "readers/atom_count.hpp"  // for qm_file_natom_oniom_qm, qm_file_oniom_index
#include "readers/qm_file.hpp"     // for qm_file_natom and its like
#include "text/stop.hpp"           // for run_end

namespace {

// Runs one reader; the ways in which it may end a run are all welcome.
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
  int info = 0;
  attempt([&] { qm_file_natom(file, natom, info); });
  attempt([&] {
    array1<int> nat;
    qm_file_nat(file, natom, nat, info);
  });
  attempt([&] {
    array1<double> mass;
    qm_file_mass(file, natom, mass, info);
  });
  attempt([&] {
    array2<double> x;
    qm_file_coord(file, natom, x, info);
  });
  attempt([&] {
    array2<double> fc;
    qm_file_fc(file, natom, fc, info);
  });
  attempt([&] {
    int nqm = 0;
    int nqmmm = 0;
    qm_file_natom_oniom_qm(file, nqm, nqmmm, info);
    array1<int> idx(nqm);
    if (info == 0) qm_file_oniom_index(file, nqm, nqmmm, idx, info);
  });
  return 0;
}
