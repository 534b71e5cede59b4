// Brings dipole derivatives and couplings to the vibrations of a spectrum.
#include "spectra/operators.hpp"  // for operators_of

#include <algorithm>
#include <cmath>
#include <vector>

#include "linalg/matmul.hpp"  // for transposed_product
#include "text/stop.hpp"      // for fail_in

namespace vbn {

array2<double> dipole_along_modes(const dipole_data& dipole, const atom_data& atoms,
                                  const array2<double>& cm) {
  array2<double> along(3, atoms.n3);
  for (int c = 1; c <= 3; ++c) {
    std::vector<double> weighted;
    for (int i = 1; i <= atoms.natom; ++i) {
      for (int a = 1; a <= 3; ++a) {
        double sum = dipole.dip_turn.rows() == 0 ? dipole.tdipd_x(c, a, i) : 0.0;
        for (int b = 1; b <= dipole.dip_turn.cols(); ++b)
          sum += dipole.dip_turn(a, b) * dipole.tdipd_x(c, b, i);
        weighted.push_back(sum / std::sqrt(atoms.massau(i)));
      }
    }
    const array1<double> row = transposed_product(cm, weighted);
    for (int m = 1; m <= atoms.n3; ++m) along(c, m) = row(m);
  }
  return along;
}

spectrum_operators operators_of(const operator_source& source, const vibration_pair& v,
                                const spectrum_keys& keys, const std::string& file) {
  spectrum_operators o;
  if (!keys.dipole.empty()) {
    o.absorption.mu0 = array1<double>(3);
    std::ranges::copy(keys.dipole, o.absorption.mu0.begin());
    o.decay = o.absorption;
  } else if (source.dipole_state > 0) {
    o.absorption = dipole_operator(v, source.dipole, source.derivatives, source.dipole_state, true);
    o.decay = dipole_operator(v, source.dipole, source.derivatives, source.dipole_state, false);
  }
  if (keys.wants("ic")) {
    if (source.couplings.size() == 0) {
      fail_in(file, "what = 'ic' needs the couplings of the states",
              "fnacme in the group &vbn, the file of the non-adiabatic couplings");
    }
    o.decay.v = array1<double>(v.n());
    for (int k = 1; k <= v.n(); ++k)
      o.decay.v(k) = source.couplings(v.mode_g[static_cast<std::size_t>(k - 1)]);
  }
  return o;
}

}  // namespace vbn
