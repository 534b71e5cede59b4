// Tests of the table of the input keys.
#include "run/key_table.hpp"  // for key_table

#include <gtest/gtest.h>

#include <set>
#include <string_view>
#include <type_traits>

namespace vbn {
namespace {

TEST(key_table, extents_told_are_those_of_what_the_key_is_stored_in_and_no_name_stands_twice) {
  input_keys keys;
  std::set<std::string_view> names;
  for (const input_key& key : key_table()) {
    EXPECT_TRUE(names.insert(key.name).second) << key.name;
    EXPECT_EQ(find_key(key.name), &key);
    std::visit(
        [&](auto place) {
          auto& stored = keys.*place;
          if constexpr (requires { stored.rows(); }) {
            EXPECT_EQ(key.extent1, stored.rows()) << key.name;
            EXPECT_EQ(key.extent2, stored.cols()) << key.name;
          } else if constexpr (requires { stored.size(); }) {
            EXPECT_EQ(key.extent1, stored.size()) << key.name;
            EXPECT_EQ(key.extent2, 0) << key.name;
          } else {
            EXPECT_EQ(key.extent1, 0) << key.name;
          }
        },
        key.place);
  }
}

TEST(key_table, nearest_key_is_found_within_a_third_of_the_letters_and_no_farther) {
  EXPECT_EQ(nearest_key("freq")->name, "ffreq");
  EXPECT_EQ(nearest_key("if_add_int_cord")->name, "if_add_int_coord");
  EXPECT_EQ(nearest_key("method"), nullptr);
  EXPECT_EQ(nearest_key(std::string_view("x")), nullptr);
}

}  // namespace
}  // namespace vbn
