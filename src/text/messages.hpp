// Warnings and printed lines of a run, handed to the places that the caller gives.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "text/layout.hpp"  // for layout, value

namespace vbn {

// Where the messages of a run that goes on are sent: the text of each warning, without "warning: " and line
// end, the lines for standard output, whole and with their line ends, and the name of each stage that begins.
// Without places they are dropped.
// Routines that have messages take it as `say`; a message that ends the run is in the `run_end`.
class messages {
 public:
  using place = std::function<void(std::string_view)>;

  messages() = default;
  messages(place warnings, place lines, place stages = {})
      : warnings_(std::move(warnings)), lines_(std::move(lines)), stages_(std::move(stages)) {}

  // A warning: lower case, no full stop. The run goes on; no file and no status changes.
  void warn(std::string_view text) const;

  // Prints the values under the layout, or as a free-form record.
  void tell(const layout& lines, std::initializer_list<value> values = {}) const;
  void tell_free(std::initializer_list<value> values) const;

  // Says that a stage of a run begins.
  void begin(std::string_view stage) const;

 private:
  place warnings_;
  place lines_;
  place stages_;
};

// The lines of the values under the layout, and those of a free-form record: one leading blank, then the
// values separated by blanks.
std::string lines_of(const layout& lines, std::initializer_list<value> values = {});
std::string free_line(std::initializer_list<value> values);

}  // namespace vbn
