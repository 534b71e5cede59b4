// The force constants of a state in their two forms, Cartesian and mass-weighted.
#include "molecule/force_constants.hpp"  // for force_constants

#include <utility>

namespace vbn {

array2<double> fc_to_fcm(const array1<double>& sqtmass, const array2<double>& fc) {
  const int n3 = fc.rows();
  array2<double> fcm(n3, n3);
  for (int i = 1; i <= n3; ++i)
    for (int j = 1; j <= i; ++j) fcm(i, j) = fcm(j, i) = fc(j, i) / sqtmass(j) / sqtmass(i);
  return fcm;
}

array2<double> fcm_to_fc(const array1<double>& sqtmass, const array2<double>& fcm) {
  const int n3 = fcm.rows();
  array2<double> fc(n3, n3);
  for (int i = 1; i <= n3; ++i)
    for (int j = 1; j <= i; ++j) fc(i, j) = fc(j, i) = sqtmass(j) * fcm(j, i) * sqtmass(i);
  return fc;
}

void force_constants::set_fc(const array1<double>& sqtmass, array2<double> fc) {
  fc_ = std::move(fc);
  weigh(sqtmass);
}

void force_constants::set_fcm(const array1<double>& sqtmass, array2<double> fcm) {
  fcm_ = std::move(fcm);
  fc_ = fcm_to_fc(sqtmass, fcm_);
}

void force_constants::weigh(const array1<double>& sqtmass) { fcm_ = fc_to_fcm(sqtmass, fc_); }

void force_constants::set_projected_fc(array2<double> fc) { fc_ = std::move(fc); }

}  // namespace vbn
