// Counts the analyses that run, and sets the threads of the BLAS for the first and after the last.
#include "python/one_blas_thread.hpp"  // for one_blas_thread

#include <mutex>

#include "linalg/blas_memory.hpp"  // for blas_threads, use_blas_threads

namespace vbn {

namespace {

// The threads of the BLAS belong to the process, and so does this.
struct running {
  std::mutex lock;
  int analyses = 0;
  int threads_before = 0;
};

running& of_process() {
  static running one;
  return one;
}

}  // namespace

one_blas_thread::one_blas_thread() {
  running& all = of_process();
  const std::lock_guard held(all.lock);
  if (all.analyses++ > 0) return;
  all.threads_before = blas_threads();
  use_blas_threads(1);
}

one_blas_thread::~one_blas_thread() {
  running& all = of_process();
  const std::lock_guard held(all.lock);
  if (--all.analyses == 0) use_blas_threads(all.threads_before);
}

}  // namespace vbn
