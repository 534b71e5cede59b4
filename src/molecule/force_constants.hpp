// The force constants of a state in their two forms, Cartesian and mass-weighted.
#pragma once

#include "linalg/array.hpp"  // for array1, array2

namespace vbn {

// In all routines here: sqtmass (n3) root of the electron masses; fc (n3,n3) Cartesian, hartree/bohr^2; fcm
// (n3,n3) mass-weighted. Each reads the triangle whose first index is at most the second, and sets both
// triangles.

// fcm = fc / sqtmass / sqtmass.
array2<double> fc_to_fcm(const array1<double>& sqtmass, const array2<double>& fc);

// fc = sqtmass fcm sqtmass.
array2<double> fcm_to_fc(const array1<double>& sqtmass, const array2<double>& fcm);

// Both forms, which always agree.
class force_constants {
 public:
  const array2<double>& fc() const { return fc_; }
  const array2<double>& fcm() const { return fcm_; }

  // Sets `fcm` accordingly.
  void set_fc(const array1<double>& sqtmass, array2<double> fc);
  // Sets `fc` accordingly.
  void set_fcm(const array1<double>& sqtmass, array2<double> fcm);
  // Other masses: computes `fcm` again from `fc`.
  void weigh(const array1<double>& sqtmass);
  // Replaces only `fc`: a projection that does not affect the modes.
  void set_projected_fc(array2<double> fc);

 private:
  array2<double> fc_;
  array2<double> fcm_;
};

}  // namespace vbn
