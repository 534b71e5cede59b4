// What the BLAS needs from the process: one thread, and memory for its products.
#pragma once

namespace vbn {

// Keeps products on one thread, so that their bits do not depend on the number of cores. Only OpenBLAS is
// asked; other libraries have their own environment variables.
void use_one_blas_thread();

// To be called before a matrix product or a factorisation. OpenBLAS takes a buffer of fixed size for its
// first one, and without memory it tries for ever: throws std::bad_alloc instead when there is not enough.
void require_blas_memory();

}  // namespace vbn
