// One thread for the BLAS, from the start of a program on.
#pragma once

namespace vbn {

// Gives the process its cores back after the start of OpenBLAS, and keeps BLAS products on one thread. To be
// called first in `main`.
void settle_blas();

}  // namespace vbn
