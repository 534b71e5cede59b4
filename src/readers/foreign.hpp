// Files that are not read: what they are, and what to give instead.
#pragma once

#include <string>
#include <string_view>

namespace vbn {

// What a file of unknown kind seems to be and what to do, by its first bytes or a heading of its program, as
// "an output of Psi4; ..."; empty when it looks like nothing known.
std::string what_is(std::string_view content);

}  // namespace vbn
