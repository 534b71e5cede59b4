// The force constants of a state in their two forms, Cartesian and mass-weighted.
#pragma once

#include "linalg/array.hpp"  // for array1, array2

namespace vbn {

// In all routines here: sqtmass (n3) root of the electron masses; fc (n3,n3) Cartesian, hartree/bohr^2; fcm
// (n3,n3) mass-weighted. Each reads the triangle with the first index at most the second, and gives both.

// fcm = fc / sqtmass / sqtmass.
array2<double> fc_to_fcm(const array1<double>& sqtmass, const array2<double>& fc);

// fc = sqtmass fcm sqtmass.
array2<double> fcm_to_fc(const array1<double>& sqtmass, const array2<double>& fcm);

// Both forms, kept in step.
class force_constants {
 public:
  const array2<double>& fc() const { return fc_; }
  const array2<double>& fcm() const { return fcm_; }

  // `fcm` follows.
  void set_fc(const array1<double>& sqtmass, array2<double> fc);
  // `fc` follows.
  void set_fcm(const array1<double>& sqtmass, array2<double> fcm);
  // Takes other masses: `fcm` anew from `fc`.
  void weigh(const array1<double>& sqtmass);
  // Replaces `fc` alone: a projection that the modes do not see.
  void set_projected_fc(array2<double> fc);

 private:
  array2<double> fc_;
  array2<double> fcm_;
};

}  // namespace vbn
