// Makes the text of messages and hands it on.
#include "text/messages.hpp"  // for messages

#include "text/number.hpp"  // for shortest

namespace vbn {

void messages::warn(std::string_view text) const {
  if (warnings_) warnings_(text);
}

void messages::tell(const layout& lines, std::initializer_list<value> values) const {
  if (lines_) lines_(lines_of(lines, values));
}

void messages::tell_free(std::initializer_list<value> values) const {
  if (lines_) lines_(free_line(values));
}

void messages::begin(std::string_view stage) const {
  if (stages_) stages_(stage);
}

std::string lines_of(const layout& lines, std::initializer_list<value> values) {
  std::string out;
  lines.write(out, values);
  return out;
}

std::string free_line(std::initializer_list<value> values) {
  std::string out;
  for (const value& v : values) {
    out += ' ';
    switch (v.type()) {
      case value::kind::integer:
        out += std::to_string(v.integer());
        break;
      case value::kind::real:
        out += shortest(v.real());
        break;
      case value::kind::characters:
        out += v.characters();
        break;
    }
  }
  if (values.size() == 0) out += ' ';
  out += '\n';
  return out;
}

}  // namespace vbn
