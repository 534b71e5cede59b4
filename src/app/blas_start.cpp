// Keeps OpenBLAS from starting threads while it is loaded.
//
// OpenBLAS starts a thread for each core before `main`, and each thread asks for its buffer at once; where
// memory is limited it then asks for ever, and the process never ends. It counts the cores that the process
// may use, so until `main` the process may use only one. Functions of .preinit_array run before those of any
// library.
#include "app/blas_start.hpp"  // for settle_blas

#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "linalg/blas_memory.hpp"  // for use_blas_threads

namespace vbn {

namespace {

// Set before any library is loaded, read in `main`; there is no other place between the two.
// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables)
cpu_set_t all_cores;
long size_of_set = 0;  // bytes of `all_cores` that the kernel gave; 0 when the cores are unknown

// Runs before the sanitizers are set up, so it is not checked by them and calls no library function that they
// replace.
__attribute__((no_sanitize("address", "undefined"))) void keep_one_core(int, char**, char**) {
  size_of_set = ::syscall(SYS_sched_getaffinity, 0, sizeof all_cores, &all_cores);
  if (size_of_set <= 0) return;
  unsigned core = 0;  // the one it runs on, so that it need not move
  if (::syscall(SYS_getcpu, &core, nullptr, nullptr) != 0 || core >= 8 * sizeof all_cores) return;
  static unsigned long one_core[sizeof all_cores / sizeof(unsigned long)];
  constexpr unsigned bits = 8 * sizeof(unsigned long);
  one_core[core / bits] = 1UL << core % bits;
  ::syscall(SYS_sched_setaffinity, 0, size_of_set, one_core);
}

__attribute__((section(".preinit_array"), used)) void (*const before_libraries)(int, char**,
                                                                                char**) = keep_one_core;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

}  // namespace

void settle_blas() {
  if (size_of_set > 0) ::syscall(SYS_sched_setaffinity, 0, size_of_set, &all_cores);
  use_blas_threads(1);
}

}  // namespace vbn
