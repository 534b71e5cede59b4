// What the BLAS needs from the process: one thread, and memory for its products.
#pragma once

namespace vbn {

// The number of threads of a product. With one, its bits do not depend on the number of cores. Only OpenBLAS
// is asked; other libraries have their own environment variables.
int blas_threads();
void use_blas_threads(int threads);

// To be called before a matrix product or a factorisation. OpenBLAS takes a buffer of fixed size for its
// first one, and without memory it tries for ever: throws std::bad_alloc instead when there is not enough.
void require_blas_memory();

}  // namespace vbn
