// The keys of the input group as one table: name, type, extents, and where each is stored.
#pragma once

#include <span>
#include <string_view>
#include <variant>

#include "input/keys.hpp"       // for input_keys
#include "input/namelist.hpp"   // for group_value
#include "text/fixed_text.hpp"  // for text
#include "text/layout.hpp"      // for value

namespace vbn {

enum class key_type { logical, integer, real, characters };

using key_place =
    std::variant<bool input_keys::*, int input_keys::*, double input_keys::*, text<5> input_keys::*,
                 text<20> input_keys::*, text<200> input_keys::*, array1<double> input_keys::*,
                 array1<text<200>> input_keys::*, array2<int> input_keys::*, array2<text<10>> input_keys::*>;

struct input_key {
  std::string_view name;
  key_type type;
  int extent1;  // 0: takes no index
  int extent2;  // 0: takes at most one
  key_place place;

  int elements() const { return (extent1 > 0 ? extent1 : 1) * (extent2 > 0 ? extent2 : 1); }
};

std::span<const input_key> key_table();

// The key of that name in lower case, or none.
const input_key* find_key(std::string_view name);

// The key whose name comes closest to a name that is none; none when no key comes close.
const input_key* nearest_key(std::string_view name);

// What a value of the key must be, in words.
std::string_view expected_value(const input_key& key);

// Stores the value in element 1..elements() of the key, counted with the first index fastest. A text that is
// longer than the key is cut. False, and nothing stored, when the value is not of the key's type.
bool store_value(input_keys& keys, const input_key& key, int element, const group_value& value);

}  // namespace vbn
