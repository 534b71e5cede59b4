// Reads the keys of the input group into the run's data, counts their lists, and checks them.
#include "input/input_group.hpp"  // for init, read_input, check

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <limits>
#include <utility>

#include "input/key_table.hpp"  // for input_key
#include "input/namelist.hpp"   // for group_scanner
#include "text/fixed_text.hpp"  // for text
#include "text/free_form.hpp"   // for read_free
#include "text/input_file.hpp"  // for input_file and read_free
#include "text/layout.hpp"      // for layout
#include "text/messages.hpp"    // for messages, lines_of
#include "text/stop.hpp"        // for stop, stop_printed, fail

namespace vbn {

namespace {

constexpr std::string_view group_name = "vbn";
constexpr std::size_t shown_key = 40;  // characters of an unknown key that a message shows

// The indices of one subscript: `count` of them from `first` on, `stride` apart.
struct index_range {
  int first = 1;
  int stride = 1;
  int count = 1;
};

// The elements that an assignment fills, in order, numbered from 1 with the first index fastest.
struct selection {
  index_range rows, columns;
  int extent1 = 1;
  bool open = false;  // a single element is named: further values go to the next elements

  int count() const { return rows.count * columns.count; }
  int element(int i) const {  // i = 0 .. count() - 1
    const int row = rows.first + rows.stride * (i % rows.count);
    const int column = columns.first + columns.stride * (i / rows.count);
    return row + extent1 * (column - 1);
  }
};

// A key with its extents, as mode_block(1..2,1..1500).
std::string shape(const input_key& key) {
  std::string s(key.name);
  if (key.extent1 == 0) return s;
  s += "(1..";
  s += std::to_string(key.extent1);
  if (key.extent2 > 0) {
    s += ",1..";
    s += std::to_string(key.extent2);
  }
  return s + ")";
}

// An element of a key with its index, as mode_block(1,3).
std::string element_name(const input_key& key, int element) {
  std::string s(key.name);
  if (key.extent1 == 0) return s;
  s += "(";
  s += std::to_string((element - 1) % key.extent1 + 1);
  if (key.extent2 > 0) {
    s += ",";
    s += std::to_string((element - 1) / key.extent1 + 1);
  }
  return s + ")";
}

index_range take_range(const group_scanner& scanner, const subscript& s, const input_key& key, int extent) {
  if (!s.section) {
    if (*s.first < 1 || *s.first > extent) {
      scanner.fail_at(
          s.at,
          "index " + std::to_string(*s.first) + " of " + std::string(key.name) + " is outside the array",
          shape(key));
    }
    return {*s.first, 1, 1};
  }
  // The bounds are 32-bit numbers: their difference needs 64.
  const std::int64_t stride = s.stride.value_or(1);
  const std::int64_t first = s.first.value_or(stride > 0 ? 1 : extent);
  const std::int64_t last = s.last.value_or(stride > 0 ? extent : 1);
  if (stride == 0 || (last - first) / (stride > 0 ? 1 : -1) < 0) {
    scanner.fail_at(s.at, "a section of " + std::string(key.name) + " is empty", "a section such as 1:4");
  }
  if (std::min(first, last) < 1 || std::max(first, last) > extent) {
    scanner.fail_at(s.at, "a section of " + std::string(key.name) + " reaches outside the array", shape(key));
  }
  return {static_cast<int>(first), static_cast<int>(stride), static_cast<int>((last - first) / stride) + 1};
}

// Without an index: all elements. With one: those it names. A single element may be followed by the elements
// after it, to the end of the array; from within a column of a list only to the end of that column.
selection take_selection(group_scanner& scanner, const input_key& key) {
  const int extent1 = std::max(key.extent1, 1);
  const int extent2 = std::max(key.extent2, 1);
  selection chosen{{1, 1, extent1}, {1, 1, extent2}, extent1, false};
  const std::size_t at = scanner.key_at();
  if (!scanner.open_index()) return chosen;
  const int rank = (key.extent1 > 0 ? 1 : 0) + (key.extent2 > 0 ? 1 : 0);
  int given = 0;
  bool section = false;
  for (subscript s; scanner.next_subscript(s);) {
    ++given;
    if (given == 1 && rank > 0) chosen.rows = take_range(scanner, s, key, extent1);
    if (given == 2 && rank > 1) chosen.columns = take_range(scanner, s, key, extent2);
    section = section || s.section;
  }
  if (given != rank) {
    scanner.fail_at(at, "wrong number of indices for " + std::string(key.name),
                    shape(key) + (rank == 0 ? " without an index" : ""));
  }
  if (!section) {
    chosen.open = true;
    if (rank == 1 || chosen.rows.first > 1) {
      chosen.rows.count = extent1 - chosen.rows.first + 1;
    } else {
      chosen.rows.count = extent1;
      chosen.columns.count = extent2 - chosen.columns.first + 1;
    }
  }
  return chosen;
}

// A value too many or one that cannot be read. A word that is a key is an assignment without its "=".
[[noreturn]] void fail_value(const group_scanner& scanner, const group_value& value, std::string what,
                             std::string expected) {
  const auto name_end =
      std::ranges::find_if_not(value.text, [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; });
  std::string name(value.text.begin(), name_end);
  std::ranges::transform(name, name.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (value.type == group_value::kind::word && find_key(name) != nullptr) {
    scanner.fail_at(value.at, "no = after the key " + name, name + " = value");
  }
  scanner.fail_at(value.at, std::move(what), std::move(expected));
}

bool names_file(const input_key& key) {
  return key.name == "ffreq" || key.name == "fnacme" || key.name == "ftdipd";
}

// Reads the values of one assignment. `text_form_at` stores the place of each element of
// `def_add_int_coord_c`.
void take_values(group_scanner& scanner, const input_key& key, const selection& chosen, input_data& input,
                 array1<std::size_t>& text_form_at) {
  const bool is_text_form = key.place == key_place(&input_keys::def_add_int_coord_c);
  const int places = chosen.count();
  int filled = 0;
  int last = 0;
  for (group_value value; scanner.next_value(value);) {
    if (value.type == group_value::kind::empty) {
      filled += std::min(value.repeat, places - filled);
      continue;
    }
    if (value.repeat > places - filled) {
      fail_value(scanner, value, "too many values for " + std::string(key.name),
                 places == 1 ? "one value" : "no more than " + std::to_string(places) + " values");
    }
    for (int i = 0; i < value.repeat; ++i) {
      const int element = chosen.element(filled++);
      if (names_file(key) && value.text.size() > input.finp.full().size()) {
        fail_value(scanner, value, "the path in " + element_name(key, element) + " is too long",
                   "at most " + std::to_string(input.finp.full().size()) + " characters");
      }
      if (!store_value(input, key, element, value)) {
        fail_value(scanner, value, "cannot read the value of " + element_name(key, element),
                   std::string(expected_value(key)));
      }
      if (is_text_form) text_form_at(element) = value.at;
      last = filled;
    }
  }
  if (chosen.open && last > 1) {
    scanner.warn_at(scanner.key_at(), element_name(key, chosen.element(0)) +
                                          " has more than one value; they fill the array up to " +
                                          element_name(key, chosen.element(last - 1)));
  }
  if (key.type == key_type::characters && filled == 0 && scanner.closes_inside_word()) {
    scanner.warn_at(scanner.key_at(),
                    "the / after " + std::string(key.name) + " = closes the group; put a path in quotes");
  }
}

// Counts the entries of the lists, and reads the added coordinates that are given as texts.
void count_lists(const group_scanner& scanner, input_data& input, const array1<std::size_t>& text_form_at) {
  constexpr int unread = std::numeric_limits<int>::min();
  input.n_mode_block = input.n_dush_block = input.n_add_int_coord = input.n_del_int_coord = 0;
  for (int i = 1; i <= max_list; ++i) {
    if (input.mode_block(1, i) > 0) ++input.n_mode_block;
    if (input.dush_block(1, i) > 0) ++input.n_dush_block;
    if (input.def_del_int_coord(1, i) > 0) ++input.n_del_int_coord;
    if (!input.def_add_int_coord_c(1, i).blank()) {
      ++input.n_add_int_coord;
      for (int j = 1; j <= 4; ++j) {
        int atom = unread;
        if (!read_free(input.def_add_int_coord_c(j + 1, i).full(), {atom}) || atom == unread) {
          const int mark = 1 + 5 * (i - 1);
          const std::size_t at = text_form_at(mark + j) > 0 ? text_form_at(mark + j) : text_form_at(mark);
          scanner.fail_at(at,
                          "def_add_int_coord_c(" + std::to_string(j + 1) + "," + std::to_string(i) +
                              ") is not an atom number",
                          "a whole number as text, '0' for an empty place");
        }
        input.def_add_int_coord(j, i) = atom;
      }
    } else if (input.def_add_int_coord(1, i) > 0) {
      ++input.n_add_int_coord;
    }
  }
}

// The kind of the coordinate that four atoms define, unused atoms being 0; a blank when they define none.
char coordinate_type(std::span<const int> atoms, int natom) {
  const auto among = [&](std::size_t count) {
    for (std::size_t i = 0; i < 4; ++i) {
      if (i >= count && atoms[i] != 0) return false;
      if (i < count && (atoms[i] < 1 || atoms[i] > natom)) return false;
      for (std::size_t j = 0; j < i && i < count; ++j) {
        if (atoms[i] == atoms[j]) return false;
      }
    }
    return true;
  };
  return among(2) ? 'b' : among(3) ? 'a' : among(4) ? 'd' : ' ';
}

void check_open(std::string_view name, const text<5>& mode) {
  static const layout line("(a)");
  if (mode == "none" || mode == "open" || mode == "close") return;
  const std::string key(name);
  stop_printed(lines_of(line, {"Error!"}) + lines_of(layout("(\"" + key + " = \", a10)"), {mode}) +
               lines_of(line, {key + " should be none, open, close"}));
}

void require_range(const std::string& finp, const std::string& key, int given, int lowest, int highest) {
  if (given >= lowest && given <= highest) return;
  fail_in(finp, key + " = " + std::to_string(given) + " is out of range",
          key + " from " + std::to_string(lowest) + " to " + std::to_string(highest));
}

// Values that are no errors and do not do what they seem to.
void warn_of_values(const input_data& input, int natom, const messages& say) {
  const struct {
    const char* name;
    int given, highest;
    const char* meaning;  // of any other value
  } choices[] = {
      {"sort_mode", input.sort_mode, 3, "0"},
      {"eckart_rot", input.eckart_rot, 2, "0: state 1 is not rotated onto state 2"},
      {"set_eckart_order", input.set_eckart_order, 4, "0"},
      {"proj_hessian", input.proj_hessian, 3, "0: translations and rotations stay in the force constants"},
      {"same_hessian", input.same_hessian, 2, "0"},
      {"select_state", input.select_state, 2, "0"},
  };
  for (const auto& choice : choices) {
    if (choice.given >= 0 && choice.given <= choice.highest) continue;
    say.warn(input.finp.str() + ": " + choice.name + " = " + std::to_string(choice.given) +
             " has no meaning and counts as " + choice.meaning);
  }
  if (input.proj_f0)
    say.warn(input.finp.str() + ": proj_f0 changes no result: frequencies, modes and tables do not use it");
  const auto last_mass = [](const array1<double>& mass) {
    int last = mass.size();
    while (last > 0 && !(mass(last) > 0.0)) --last;
    return last;
  };
  const int atom = last_mass(input.mass_atom);
  const int element = last_mass(input.mass_type);
  if (!input.if_isotope) {
    if (atom > 0 || element > 0)
      say.warn(input.finp.str() + ": mass_atom and mass_type have no effect without if_isotope = t");
    return;
  }
  if (atom > natom)
    say.warn(input.finp.str() + ": mass_atom(" + std::to_string(atom) + ") has no effect: the molecule has " +
             std::to_string(natom) + " atoms");
  if (element > max_element)
    say.warn(input.finp.str() + ": mass_type(" + std::to_string(element) +
             ") has no effect: elements end at " + std::to_string(max_element));
}

void classify(const array2<int>& list, int count, int natom, array1<char>& type, std::string_view message) {
  for (int i = 1; i <= count; ++i) {
    type(i) = coordinate_type(list.column(i), natom);
    if (type(i) == ' ') stop(message);
  }
}

}  // namespace

void init(input_data& input) {
  const array1<text<200>> ffreq = input.ffreq;
  static_cast<input_keys&>(input) = input_keys();
  input.ffreq = ffreq;
}

void read_input(input_data& input, const messages& say) {
  if (input.finp.blank()) {
    fail({.what = "no input file is named", .expected = "its name on the command line, as in: vbn my.inp"});
  }
  read_group(input, input_file(input.finp.trimmed(), say));
}

void read_group(input_data& input, const input_file& file) {
  group_scanner scanner(file.name(), file.content(), group_name, file.say());
  array1<std::size_t> text_form_at(input.def_add_int_coord_c.rows() * input.def_add_int_coord_c.cols());
  while (scanner.next_key()) {
    const input_key* key = find_key(scanner.key());
    if (key == nullptr) {
      const input_key* nearest = nearest_key(scanner.key());
      scanner.fail_at(scanner.key_at(), "unknown key " + scanner.key().substr(0, shown_key),
                      nearest == nullptr ? "a key of the group &vbn"
                                         : "a key of the group &vbn, perhaps " + std::string(nearest->name));
    }
    const selection chosen = take_selection(scanner, *key);
    scanner.take_equals();
    take_values(scanner, *key, chosen, input, text_form_at);
  }
  count_lists(scanner, input, text_form_at);
}

void check(input_data& input, int natom, const messages& say) {
  require_range(input.finp.str(), "start_mode", input.start_mode, 1,
                std::max(3 * natom, input_keys().start_mode));
  warn_of_values(input, natom, say);
  if (input.if_mode_block && input.n_mode_block == 0) {
    stop("Error, if_mode_block is true, but n_mode_block is 0. Stop!");
  }
  if (input.if_dush_block && input.n_dush_block == 0) {
    stop("Error, if_dush_block is true, but n_dush_block is 0. Stop!");
  }
  if (input.if_add_int_coord && input.n_add_int_coord == 0) {
    stop("Error, if_add_int_coord is true, but n_add_int_coord is 0. Stop!");
  }
  if (input.if_del_int_coord && input.n_del_int_coord == 0) {
    stop("Error, if_del_int_coord is true, but n_del_int_coord is 0. Stop!");
  }
  input.if_block = input.if_dush_block || input.if_mode_block;
  check_open("modify_mode", input.modify_mode);
  check_open("modify_dush", input.modify_dush);
  if (input.if_add_int_coord) {
    classify(input.def_add_int_coord, input.n_add_int_coord, natom, input.def_add_int_type,
             "Bad def_add_int_coord definition, stop!");
  }
  if (input.if_del_int_coord) {
    classify(input.def_del_int_coord, input.n_del_int_coord, natom, input.def_del_int_type,
             "Bad def_del_int_coord definition, stop!");
  }
}

}  // namespace vbn
