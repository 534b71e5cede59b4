// Finds OpenBLAS among the libraries that are loaded, and the memory that it will ask for.
#include "linalg/blas_memory.hpp"  // for the routines

#include <dlfcn.h>
#include <sys/mman.h>

#include <cstddef>
#include <new>

namespace vbn {

namespace {

// A routine of OpenBLAS; nullptr when the BLAS is another library.
template <class Routine>
Routine* openblas(const char* name) {
  // dlsym gives every symbol as a pointer to data.
  return reinterpret_cast<Routine*>(  // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
      ::dlsym(RTLD_DEFAULT, name));
}

constexpr const char* set_threads = "openblas_set_num_threads";
constexpr const char* get_threads = "openblas_get_num_threads";

bool has_memory() {
  constexpr std::size_t buffer = std::size_t{136} << 20U;  // bytes: 128 MiB and what is needed to align them
  if (openblas<void(int)>(set_threads) == nullptr) return true;
  void* const block = ::mmap(nullptr, buffer, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return block != MAP_FAILED && ::munmap(block, buffer) == 0;
}

}  // namespace

int blas_threads() {
  auto* const get = openblas<int()>(get_threads);
  return get == nullptr ? 1 : get();
}

void use_blas_threads(int threads) {
  if (auto* const set = openblas<void(int)>(set_threads)) set(threads);
}

void require_blas_memory() {
  static const bool enough = has_memory();
  if (!enough) throw std::bad_alloc();
}

}  // namespace vbn
