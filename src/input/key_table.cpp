// The table of the input keys; reads and stores a value of each type.
#include "input/key_table.hpp"  // for input_key

#include <algorithm>
#include <array>
#include <numeric>
#include <vector>

#include "text/number.hpp"  // for to_integer and to_real

namespace vbn {

namespace {

using k = input_keys;
using enum key_type;

constexpr std::size_t longest_name = 20;  // characters of a key's name

// clang-format off
constexpr std::array<input_key, 48> keys{{
    // name                 type        extents         stored in
    {"n_mode_block",        integer,    0, 0,           &k::n_mode_block},
    {"n_dush_block",        integer,    0, 0,           &k::n_dush_block},
    {"proj_reorg",          logical,    0, 0,           &k::proj_reorg},
    {"n3all",               logical,    0, 0,           &k::n3all},
    {"sort_mode",           integer,    0, 0,           &k::sort_mode},
    {"eckart_rot",          integer,    0, 0,           &k::eckart_rot},
    {"if_symm",             logical,    0, 0,           &k::if_symm},
    {"enforce_symm",        logical,    0, 0,           &k::enforce_symm},
    {"point_group",         logical,    0, 0,           &k::point_group},
    {"if_debug",            logical,    0, 0,           &k::if_debug},
    {"if_rrs",              logical,    0, 0,           &k::if_rrs},
    {"coord_type",          integer,    0, 0,           &k::coord_type},
    {"ffreq",               characters, 2, 0,           &k::ffreq},
    {"proj_f0",             logical,    0, 0,           &k::proj_f0},
    {"proj_hessian",        integer,    0, 0,           &k::proj_hessian},
    {"n_add_int_coord",     integer,    0, 0,           &k::n_add_int_coord},
    {"n_del_int_coord",     integer,    0, 0,           &k::n_del_int_coord},
    {"modify_mode",         characters, 0, 0,           &k::modify_mode},
    {"modify_dush",         characters, 0, 0,           &k::modify_dush},
    {"dush_block_diag",     characters, 0, 0,           &k::dush_block_diag},
    {"eps_test_orth",       real,       0, 0,           &k::eps_test_orth},
    {"positive_diag",       logical,    0, 0,           &k::positive_diag},
    {"if_isotope",          logical,    0, 0,           &k::if_isotope},
    {"proper_rotation",     logical,    0, 0,           &k::proper_rotation},
    {"d_sign_same_to_cart", logical,    0, 0,           &k::d_sign_same_to_cart},
    {"start_mode",          integer,    0, 0,           &k::start_mode},
    {"map_atoms",           logical,    0, 0,           &k::map_atoms},
    {"def_add_int_coord_c", characters, 5, max_list,    &k::def_add_int_coord_c},
    {"def_add_int_coord",   integer,    4, max_list,    &k::def_add_int_coord},
    {"def_del_int_coord",   integer,    4, max_list,    &k::def_del_int_coord},
    {"fnacme",              characters, 0, 0,           &k::fnacme},
    {"proj_nacme",          integer,    0, 0,           &k::proj_nacme},
    {"mass_atom",           real,       max_list, 0,    &k::mass_atom},
    {"mass_type",           real,       max_list, 0,    &k::mass_type},
    {"mode_block",          integer,    2, max_list,    &k::mode_block},
    {"dush_block",          integer,    2, max_list,    &k::dush_block},
    {"if_dush_block",       logical,    0, 0,           &k::if_dush_block},
    {"if_mode_block",       logical,    0, 0,           &k::if_mode_block},
    {"if_add_int_coord",    logical,    0, 0,           &k::if_add_int_coord},
    {"if_del_int_coord",    logical,    0, 0,           &k::if_del_int_coord},
    {"gcut",                real,       0, 0,           &k::gcut},
    {"set_cart",            logical,    0, 0,           &k::set_cart},
    {"symm_tol",            real,       0, 0,           &k::symm_tol},
    {"same_hessian",        integer,    0, 0,           &k::same_hessian},
    {"select_state",        integer,    0, 0,           &k::select_state},
    {"proj_tdipd",          integer,    0, 0,           &k::proj_tdipd},
    {"ftdipd",              characters, 0, 0,           &k::ftdipd},
    {"set_eckart_order",    integer,    0, 0,           &k::set_eckart_order},
}};
// clang-format on

// Whether the type in the table is that of the variable in which the key is stored.
consteval bool types_agree() {
  return std::ranges::all_of(keys, [](const input_key& key) {
    const key_place& p = key.place;
    const bool is_integer =
        std::holds_alternative<int k::*>(p) || std::holds_alternative<array2<int> k::*>(p);
    const bool is_real =
        std::holds_alternative<double k::*>(p) || std::holds_alternative<array1<double> k::*>(p);
    const key_type stored = std::holds_alternative<bool k::*>(p) ? logical
                            : is_integer                         ? integer
                            : is_real                            ? real
                                                                 : characters;
    return stored == key.type;
  });
}
static_assert(types_agree());

// An element of the variable in which a key is stored; a key without an index has one.
template <class T>
T& element_of(T& stored, int) {
  return stored;
}
template <class T>
T& element_of(array1<T>& stored, int element) {
  return stored(element);
}
template <class T>
T& element_of(array2<T>& stored, int element) {
  return stored.span()[offset(element, stored.rows() * stored.cols())];
}

bool read_value(const group_value& value, bool& stored) {
  const std::size_t dot = value.text.starts_with('.') ? 1 : 0;
  if (value.type != group_value::kind::word || value.text.size() <= dot) return false;
  const char letter = value.text[dot];
  if (letter != 'T' && letter != 't' && letter != 'F' && letter != 'f') return false;
  stored = letter == 'T' || letter == 't';
  return true;
}

bool read_value(const group_value& value, int& stored) {
  return value.type == group_value::kind::word && to_integer(value.text, stored);
}

bool read_value(const group_value& value, double& stored) {
  return value.type == group_value::kind::word && to_real(value.text, stored);
}

template <std::size_t n>
bool read_value(const group_value& value, text<n>& stored) {
  if (value.type != group_value::kind::quoted) return false;
  stored = value.text;
  return true;
}

}  // namespace

std::size_t edits(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t exchanged = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({exchanged, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

std::span<const input_key> key_table() { return keys; }

const input_key* find_key(std::string_view name) {
  const auto found = std::ranges::find(keys, name, &input_key::name);
  return found == keys.end() ? nullptr : &*found;
}

const input_key* nearest_key(std::string_view name) {
  if (name.size() > 2 * longest_name) return nullptr;
  const auto distance = [&](const input_key& key) { return edits(name, key.name); };
  const input_key* nearest = &*std::ranges::min_element(keys, {}, distance);
  return 3 * distance(*nearest) <= name.size() ? nearest : nullptr;
}

std::string_view expected_value(const input_key& key) {
  switch (key.type) {
    case logical:
      return "a T or an F as first letter, as in .true.";
    case integer:
      return "an integer from -2147483648 to 2147483647";
    case real:
      return "a real number, as 0.01 or 1.0e-8";
    case characters:
      return "a text in single or double quotes";
  }
  return "";
}

bool store_value(input_keys& stored, const input_key& key, int element, const group_value& value) {
  return std::visit([&](auto place) { return read_value(value, element_of(stored.*place, element)); },
                    key.place);
}

}  // namespace vbn
