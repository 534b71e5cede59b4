// The keys of the input group with their defaults, and the values derived from them.
#pragma once

#include "linalg/array.hpp"        // for array1, array2
#include "molecule/constants.hpp"  // for max_list, first_vibration
#include "text/fixed_text.hpp"     // for text

namespace vbn {

// The keys of the input group with their defaults.
struct input_keys {
  int n_mode_block = 0, n_dush_block = 0;  // counted
  bool proj_reorg = false;
  bool n3all = false;
  int sort_mode = 0;
  int eckart_rot = 2;
  bool if_symm = false;
  bool enforce_symm = false;
  bool point_group = false;
  bool if_debug = false;
  bool if_rrs = false;
  int coord_type = 1;
  array1<text<200>> ffreq{2};
  bool proj_f0 = false;
  int proj_hessian = 1;
  int n_add_int_coord = 0, n_del_int_coord = 0;  // counted
  text<5> modify_mode = "open";
  text<5> modify_dush = "open";
  text<20> dush_block_diag = "normal mode";
  double eps_test_orth = 0.001;
  bool positive_diag = false;
  bool if_isotope = false;
  bool proper_rotation = false;
  bool d_sign_same_to_cart = false;
  int start_mode = first_vibration;
  bool map_atoms = true;
  array2<text<10>> def_add_int_coord_c{5, max_list};
  array2<int> def_add_int_coord{4, max_list, -1};
  array2<int> def_del_int_coord{4, max_list, -1};
  text<200> fnacme;
  int proj_nacme = 0;
  array1<double> mass_atom{max_list, -1.0};
  array1<double> mass_type{max_list, -1.0};
  array2<int> mode_block{2, max_list, -1};
  array2<int> dush_block{2, max_list, -1};
  bool if_dush_block = false;
  bool if_mode_block = false;
  bool if_add_int_coord = false;
  bool if_del_int_coord = false;
  double gcut = 1.0e-8;
  bool set_cart = false;
  double symm_tol = 0.01;
  int same_hessian = 0;
  int select_state = 0;
  int proj_tdipd = 0;
  text<200> ftdipd;
  int set_eckart_order = 0;
};

// The keys, and the values derived from them.
struct input_data : input_keys {
  text<200> finp;    // input file
  text<200> prefix;  // stem of every file written
  bool do_nacme = false;
  bool do_tdipd = false;
  bool if_block = false;
  array1<char> def_add_int_type{max_list, ' '};  // 'b', 'a' or 'd'
  array1<char> def_del_int_type{max_list, ' '};
};

}  // namespace vbn
