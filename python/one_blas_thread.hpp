// One BLAS thread while an analysis runs.
#pragma once

namespace vbn {

// Products have the same bits on any number of cores with one thread. numpy uses the same BLAS: the number of
// its threads is restored when the last of the analyses that run at a time has ended.
class one_blas_thread {
 public:
  one_blas_thread();
  ~one_blas_thread();
  one_blas_thread(const one_blas_thread&) = delete;
  one_blas_thread& operator=(const one_blas_thread&) = delete;
};

}  // namespace vbn
