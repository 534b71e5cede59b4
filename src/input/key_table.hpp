// The keys of the input group as one table: name, type, extents, and where each is stored.
#pragma once

#include <cstddef>
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
  int extent1;  // 0: no index
  int extent2;  // 0: at most one index
  key_place place;

  int elements() const { return (extent1 > 0 ? extent1 : 1) * (extent2 > 0 ? extent2 : 1); }
};

std::span<const input_key> key_table();

// The key of that name in lower case, or nullptr.
const input_key* find_key(std::string_view name);

// The key whose name is closest to a name that is no key; nullptr when none is close.
const input_key* nearest_key(std::string_view name);

// Characters to insert, drop or exchange between two names (Levenshtein, 1966).
std::size_t edits(std::string_view a, std::string_view b);

// What a value of the key must be, in words.
std::string_view expected_value(const input_key& key);

// Stores the value in element 1..elements() of the key, counted with the first index fastest. A text longer
// than the key is cut. False, and nothing stored, when the value is of another type than the key.
bool store_value(input_keys& stored, const input_key& key, int element, const group_value& value);

}  // namespace vbn
