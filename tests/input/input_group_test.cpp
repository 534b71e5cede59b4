// Tests of the input file: the forms of its group, the errors that end the run, and the check of the keys.
#include "input/input_group.hpp"  // for init, read_input, check

#include <gtest/gtest.h>

#include <regex>

#include "input/key_table.hpp"     // for key_table
#include "tests/ending.hpp"        // for ending_of
#include "tests/written_file.hpp"  // for scratch and write_text

namespace vbn {
namespace {

// The keys after reading a group with that content, or a file if the content opens the group itself.
input_data keys_of(const std::string& content, const messages& say = {}) {
  input_data input;
  init(input);
  input.finp = scratch("t.inp");
  write_text(scratch("t.inp"), content.find('&') < content.size() ? content : "&vbn\n" + content + "\n/\n");
  read_input(input, say);
  return input;
}

// The message that ends the run, its file name left out.
std::string failure_of(const std::string& content) {
  const ending e = ending_of([&] { keys_of(content); });
  EXPECT_EQ(e.status, 1) << content;
  return std::regex_replace(e.error, std::regex("  in [^,\n]*t.inp"), "  in t");
}

// How `check` ends the run, after what it prints; "passed" when it does not.
std::string check_of(const std::string& content) {
  const input_data input = keys_of(content);
  const ending e = ending_of([&] {
    input_data checked = input;
    check(checked, 6, {});
  });
  return e.status == -1 ? "passed" : e.printed + e.error;
}

TEST(input_group, group_opens_in_any_case_and_nothing_outside_it_or_in_a_comment_counts) {
  EXPECT_EQ(keys_of("! &vbn sort_mode = 1 /\n&vbnx sort_mode = 4 /\n &VbN sort_mode = 2 / sort_mode = 3\n"
                    "&vbn sort_mode = 4 /")
                .sort_mode,
            2);
  const input_data d = keys_of(
      ",Sort_Mode=1,ECKART_ROT = 0 start_mode\t=\t1! no / here, nor a 'quote\r\n"
      "gcut = 1d-10 symm_tol\n=\n! between\n.5E-2,,eps_test_orth = 2-3 point_group=.tRUE!\n"
      "if_rrs = tomato, map_atoms = .f. sort_mode = 3 fnacme = , proj_nacme = 2");
  EXPECT_EQ(d.sort_mode, 3);
  EXPECT_EQ(d.eckart_rot, 0);
  EXPECT_EQ(d.start_mode, 1);
  EXPECT_EQ(d.gcut, 1e-10);
  EXPECT_EQ(d.symm_tol, 0.005);
  EXPECT_EQ(d.eps_test_orth, 0.002);
  EXPECT_TRUE(d.point_group && d.if_rrs && !d.map_atoms);
  EXPECT_TRUE(d.fnacme.blank());
  EXPECT_EQ(d.proj_nacme, 2);
}

TEST(input_group, text_keeps_what_would_end_a_group_or_a_value_outside_its_quotes) {
  const input_data d =
      keys_of("ffreq = 'it''s / a ! \"log\", b = 1' \"say \"\"x\"\" 'y'\"\nftdipd = 'over\r\n the end'");
  EXPECT_EQ(d.ffreq(1), "it's / a ! \"log\", b = 1");
  EXPECT_EQ(d.ffreq(2), "say \"x\" 'y'");
  EXPECT_EQ(d.ftdipd, "over the end");
}

TEST(input_group, values_fill_whole_arrays_sections_and_strides_first_index_fastest) {
  const input_data d = keys_of(
      "mode_block = 1, 2 3*3,, 6 2* 9\n"
      "def_add_int_coord ( 1 : 4 , 3 ) = 1, 2,\n 3, 4 def_add_int_coord(4:1:-2,2)=7 8 "
      "def_add_int_coord(:2,5:6) = 4*6\n"
      "def_add_int_coord(3:,1500) = 5 5\n"
      "mass_atom(2:8:3) = 1.0 , , 3.0 mass_type(6) = 13.00335");
  EXPECT_EQ(std::vector<int>(d.mode_block.data(), d.mode_block.data() + 11),
            (std::vector<int>{1, 2, 3, 3, 3, -1, 6, -1, -1, 9, -1}));
  EXPECT_EQ(std::vector<int>(d.def_add_int_coord.data() + 4, d.def_add_int_coord.data() + 24),
            (std::vector<int>{-1, 8, -1, 7, 1, 2, 3, 4, -1, -1, -1, -1, 6, 6, -1, -1, 6, 6, -1, -1}));
  EXPECT_EQ(d.def_add_int_coord(4, 1500), 5);
  EXPECT_EQ(d.mass_atom(2), 1.0);
  EXPECT_EQ(d.mass_atom(5), -1.0);
  EXPECT_EQ(d.mass_atom(8), 3.0);
  EXPECT_EQ(d.mass_type(6), 13.00335);
}

TEST(input_group, more_values_behind_a_single_element_fill_on_with_a_warning_as_a_bare_path_has_one) {
  std::string warned;
  const messages say([&](std::string_view text) { warned += warning_line(text); }, {});
  const input_data d = keys_of("ffreq(1) = 'g.log' 'e.log' def_del_int_coord(1,2) = 1, 2, 0, 0", say);
  EXPECT_EQ(d.ffreq(2), "e.log");
  EXPECT_EQ(d.def_del_int_coord(2, 2), 2);
  EXPECT_TRUE(keys_of("fnacme = /home/nac.log", say).fnacme.blank());
  const std::string place = "warning: " + scratch("t.inp") + ", line 2: ";
  EXPECT_EQ(warned, place + "ffreq(1) has more than one value; they fill the array up to ffreq(2)\n" + place +
                        "def_del_int_coord(1,2) has more than one value; they fill the array up to "
                        "def_del_int_coord(4,2)\n" +
                        place + "the / after fnacme = closes the group; put a path in quotes\n");
}

TEST(input_group, failure_shows_the_line_with_the_position_the_key_and_what_was_expected) {
  const struct {
    const char *content, *message;
  } cases[] = {
      {"set_cart = t\r\n sort_mode = 1.5\r\n",
       "cannot read the value of sort_mode\n  in t, line 3\n  |  sort_mode = 1.5\n"
       "  |              ^\n  expected: an integer from -2147483648 to 2147483647\n"},
      {"ekcart_rot = 1",
       "unknown key ekcart_rot\n  in t, line 2\n  | ekcart_rot = 1\n  | ^\n"
       "  expected: a key of the group &vbn, perhaps eckart_rot\n"},
      {"&vbnx set_cart = t /",
       "no group &vbn in the input file\n  in t\n  expected: a group that opens with &vbn and closes with a "
       "/\n"},
      {"&vbn set_cart = t", "the group &vbn is not closed\n  in t, line 1\n  | &vbn"},
      {"&vbn fnacme = 'a.log\nset_cart = t /\n", "a text of fnacme has no closing quote\n  in t, line 1"},
      {"ffreq(1) = 'a\n ffreq(2) = 'b'", "a text of ffreq continues to a quote in a later line"},
      {"ffreq = 'a''b' 'c'd", "no separator after a text of ffreq"},
      {"set_cart = t\npoint_group t", "no = after the key point_group\n  in t, line 3"},
      {"'a' = 1", "a key is missing here"},
      {"sort_mode = 2147483648", "cannot read the value of sort_mode"},
      {"gcut = nan", "cannot read the value of gcut"},
      {"gcut = 1,5", "too many values for gcut"},
      {"set_cart = 1", "cannot read the value of set_cart"},
      {"def_add_int_coord(:,2) = 1 2 3 x", "cannot read the value of def_add_int_coord(4,2)"},
      {"mode_block(2,1) = 1 2", "too many values for mode_block"},
      {"mass_atom = 9999999999*1.0", "cannot read the repeat count of a value of mass_atom"},
      {"mode_block(1) = 1", "wrong number of indices for mode_block"},
      {"mode_block(1;1) = 1", "cannot read the index of mode_block"},
      {"mode_block(99999999999,1) = 1", "cannot read the index of mode_block"},
      {"mass_atom(1501) = 1.0", "index 1501 of mass_atom is outside the array"},
      {"mode_block(1,1:2147483647:2147483647) = 1", "a section of mode_block reaches outside the array"},
      {"mode_block(1:2:0,1) = 1", "a section of mode_block is empty"},
      {"def_add_int_coord_c(:,2) = 'x' '1' 'C' '0'", "def_add_int_coord_c(3,2) is not an atom number"},
  };
  for (const auto& it : cases) {
    const std::string message = failure_of(it.content);
    EXPECT_TRUE(message.starts_with(std::string("error: ") + it.message)) << it.content << "\n" << message;
  }
}

TEST(input_group, counters_count_entries_and_the_text_form_wins_over_the_numbers) {
  const input_data d = keys_of(
      "n_add_int_coord = 5 def_add_int_coord_c(:,1) = 'l', ' 1', '2', '+3', '0' def_add_int_coord(:,1) = "
      "4*9\n"
      "def_add_int_coord(1,3) = 2 def_add_int_coord(2,4) = 2 mode_block(1,1500) = 1 dush_block(1,2:3) = 4 5");
  EXPECT_EQ(d.n_add_int_coord, 2);
  EXPECT_EQ(d.n_mode_block, 1);
  EXPECT_EQ(d.n_dush_block, 2);
  const auto first = d.def_add_int_coord.column(1);
  EXPECT_EQ(std::vector<int>(first.begin(), first.end()), (std::vector<int>{1, 2, 3, 0}));
}

TEST(input_group, check_stops_at_empty_lists_wrong_modes_and_wrong_coordinates) {
  for (const std::string list : {"mode_block", "dush_block", "add_int_coord", "del_int_coord"}) {
    EXPECT_EQ(check_of("if_" + list + " = t"),
              "STOP Error, if_" + list + " is true, but n_" + list + " is 0. Stop!\n");
  }
  EXPECT_EQ(check_of("modify_mode = 'none' modify_dush = 'shut'"),
            "Error!\nmodify_dush =      shut \nmodify_dush should be none, open, close\n");
  EXPECT_EQ(check_of("modify_mode = 'close' modify_dush = 'none '"), "passed");
  input_data d = keys_of("if_add_int_coord = t def_add_int_coord = 1 6 0 0 1 2 3 0 4 3 2 1");
  check(d, 6, {});
  EXPECT_EQ(std::string(d.def_add_int_type.data(), 3), "bad");
  for (const std::string atoms :
       {"2 2 0 0", "1 7 0 0", "1 2", "3 2 3 0", "1 2 3 1", "1 2 3 7", "5 0 0 0", "1 2 0 3", "1 2 -3 0"}) {
    for (const std::string list : {"add_int_coord", "del_int_coord"}) {
      EXPECT_EQ(check_of("if_" + list + " = t def_" + list + "(:,1) = " + atoms),
                "STOP Bad def_" + list + " definition, stop!\n")
          << atoms;
    }
  }
}

TEST(input_group, keys_fit_what_they_are_stored_in) {
  input_keys keys;
  for (const input_key& key : key_table()) {
    EXPECT_EQ(find_key(key.name), &key) << "a name occurs twice";
    std::visit(
        [&](auto place) {
          auto& stored = keys.*place;
          if constexpr (requires { stored.rows(); }) {
            EXPECT_EQ(key.extent1, stored.rows()) << key.name;
            EXPECT_EQ(key.extent2, stored.cols()) << key.name;
          } else if constexpr (requires { stored.size(); }) {
            EXPECT_EQ(key.extent1, stored.size()) << key.name;
          }
        },
        key.place);
  }
}

}  // namespace
}  // namespace vbn
