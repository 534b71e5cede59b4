// The non-redundant basis of the internal coordinates of a state, from the Wilson G matrix.
#pragma once

#include <string>

#include "input/keys.hpp"        // for input_data
#include "linalg/array.hpp"      // for array1, array2
#include "molecule/record.hpp"   // for atom_data, internal_coordinates, non_redundant_basis
#include "text/messages.hpp"     // for messages
#include "text/output_file.hpp"  // for output_file

namespace vbn {

// The basis from the rows `br` of B (angstrom) and the masses (electron masses): eigenvectors of G with an
// eigenvalue above the key gcut in magnitude, orthonormalised by the -1/2 power of their own G matrix, so
// that bm bmT = 1 for the rows in use. Their number goes to the log and must be n3 - 6 or n3 - 5; otherwise
// the eigenvalues go to the log and the run stops, after a warning with the reason and the ways on. A number
// other than `nv` gives a warning that names the file `ffreq`, as the later steps use the first `nv`. After
// Wilson, J. Chem. Phys. 9 (1941) 76, and Pulay, Fogarasi, J. Chem. Phys. 96 (1992) 2856.
non_redundant_basis get_int_gmatrix(const atom_data& atoms, const internal_coordinates& internal,
                                    const std::string& ffreq, const input_data& input, output_file& fout,
                                    const messages& say);

// The matrix B M^-1 BT (m,m) of b(m,3n) and the n masses.
array2<double> get_wilson_g_matrix(const array1<double>& mass, const array2<double>& b);

// a x b of b(m,n) that is mostly zeros, such as rows of B: each element is summed as in a plain product
// without its zero terms, which changes no bit.
array2<double> times_sparse(const array2<double>& a, const array2<double>& b);

// ap = a^power of the symmetric a(n,n), through its eigenvectors, the columns of v; e are the eigenvalues
// already raised to the power. For a negative power an eigenvalue of exactly zero gives 0, and for one other
// than -1 also an eigenvalue between -1e-6 and 0, so that null directions contribute nothing. A lower
// eigenvalue, which has no real power, ends the run.
void matrix_power(double power, const array2<double>& a, array1<double>& e, array2<double>& v,
                  array2<double>& ap);

}  // namespace vbn
