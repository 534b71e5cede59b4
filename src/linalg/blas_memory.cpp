// Finds OpenBLAS among the libraries that are loaded, and the memory that it will ask for.
#include "linalg/blas_memory.hpp"  // for the routines

#include <dlfcn.h>
#include <sys/mman.h>

#include <cstddef>
#include <new>

namespace vbn {

namespace {

using set_threads = void (*)(int);

// Its routine for the number of threads; nullptr when the BLAS is another library.
set_threads openblas_threads() {
  return reinterpret_cast<set_threads>(::dlsym(RTLD_DEFAULT, "openblas_set_num_threads"));
}

bool has_memory() {
  constexpr std::size_t buffer = std::size_t{136} << 20U;  // bytes: 128 MiB and what is needed to align them
  if (openblas_threads() == nullptr) return true;
  void* const block = ::mmap(nullptr, buffer, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return block != MAP_FAILED && ::munmap(block, buffer) == 0;
}

}  // namespace

void use_one_blas_thread() {
  if (const set_threads set = openblas_threads()) set(1);
}

void require_blas_memory() {
  static const bool enough = has_memory();
  if (!enough) throw std::bad_alloc();
}

}  // namespace vbn
