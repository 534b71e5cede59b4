// Reads the state in the archive entry at the end of a Gaussian log, which needs no checkpoint.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include "molecule/constants.hpp"  // for bohr_to_ang
#include "molecule/elements.hpp"   // for symbol_to_nat
#include "readers/programs.hpp"  // for gaussian_archive_state, gaussian_log_mass, gaussian_log_nat, gaussian_log_printed
#include "readers/rows.hpp"         // for coordinate_rows, fail_missing
#include "readers/scan.hpp"         // for search_word_first_number
#include "readers/state_parts.hpp"  // for sized_state
#include "text/stop.hpp"            // for fail_in

namespace vbn {

namespace {

constexpr std::string_view marker_of_hessian = "NImag=";
constexpr std::size_t molecule_section = 3;  // after the job, the route and the title

using sections = std::vector<std::string>;

sections split(std::string_view text, std::string_view separator) {
  sections parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + separator.size());
  }
}

// The sections of the last entry with force constants; empty when there is none. An entry begins with "1\1\",
// under Windows with "1|1|", in lines of 70 characters after one blank, up to an empty line; lines cut
// numbers anywhere.
struct entry {
  std::vector<sections> parts;  // each split at its single separators
  std::size_t at = 0;           // its offset in the file
};

entry last_entry(std::string_view content) {
  for (std::size_t end = content.size();;) {
    const std::size_t slash = content.rfind("\n 1\\1\\", end);
    const std::size_t bar = content.rfind("\n 1|1|", end);
    const bool windows = slash == std::string_view::npos || (bar != std::string_view::npos && bar > slash);
    const std::size_t at = windows ? bar : slash;
    if (at == std::string_view::npos) return {};
    std::string joined;
    std::string_view rest = content.substr(at + 1);
    while (!rest.empty()) {
      const std::size_t line_end = std::min(rest.find('\n'), rest.size());
      std::string_view line = rest.substr(0, line_end);
      if (line.ends_with('\r')) line.remove_suffix(1);
      if (line.size() < 2) break;
      joined += line.substr(1);
      rest.remove_prefix(std::min(line_end + 1, rest.size()));
    }
    if (joined.find(marker_of_hessian) != std::string::npos) {
      const std::string mark(1, windows ? '|' : '\\');
      entry found{{}, at};
      for (const std::string& section : split(joined, mark + mark))
        found.parts.push_back(split(section, mark));
      return found;
    }
    if (at == 0) return {};
    end = at - 1;
  }
}

bool real_of(std::string_view text, double& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && std::isfinite(number);
}

// "C,0.,0.,1.2", with a freeze code before x in some jobs, and "C(Iso=13)" for an isotope. False for a row of
// a Z-matrix.
bool read_atom(const std::string& text, int& nat, std::span<double> x) {
  const sections words = split(text, ",");
  if (words.size() != 4 && words.size() != 5) return false;
  const std::size_t first = words.size() - 3;
  if (first == 2) {
    double code = 0.0;
    if (!real_of(words[1], code) || code != std::floor(code)) return false;
  }
  nat = symbol_to_nat(words[0].substr(0, words[0].find('(')));
  for (std::size_t a = 0; a < 3; ++a) {
    if (words[first + a].find('.') == std::string::npos || !real_of(words[first + a], x[a])) return false;
    x[a] /= bohr_to_ang;
  }
  return nat > 0;
}

// The atoms of the entry; false for a Z-matrix.
bool read_molecule(const sections& rows, array1<int>& nat, array2<double>& x) {
  if (static_cast<int>(rows.size()) != nat.size() + 1) return false;
  for (int i = 1; i <= nat.size(); ++i)
    if (!read_atom(rows[static_cast<std::size_t>(i)], nat(i), x.column(i))) return false;
  return true;
}

// The last table of the Input orientation before the entry, which is in its frame.
void read_input_orientation(input_file& file, std::size_t end, array2<double>& x) {
  const std::size_t at = last_before(file, "Input orientation:", end);
  std::string_view line;
  if (at != std::string_view::npos) file.seek_line_after(at);
  if (at == std::string_view::npos || !search_word_first_number(file, line)) {
    fail_missing(file, "the coordinates of the archive entry, which holds a Z-matrix",
                 "a table \"Input orientation\", or the formatted checkpoint of the job");
  }
  file.back_line();
  coordinate_rows(file, 3, true, x);
}

// The atoms of n(n+1)/2 numbers over n = 3 natom coordinates; 0 if there is no such n.
int atoms_of_triangle(std::size_t count) {
  const auto n = static_cast<std::size_t>(std::sqrt(2.0 * static_cast<double>(count)));
  return n * (n + 1) / 2 == count && n % 3 == 0 ? static_cast<int>(n / 3) : 0;
}

}  // namespace

std::optional<file_state> gaussian_archive_state(input_file& file) {
  const entry found = last_entry(file.content());
  const auto described = std::ranges::find_if(
      found.parts, [](const sections& section) { return section.back().starts_with(marker_of_hessian); });
  if (described == found.parts.end() || described + 1 == found.parts.end()) return std::nullopt;
  if (found.parts.size() <= molecule_section) return std::nullopt;
  const sections numbers = split((described + 1)->front(), ",");
  const int natom = atoms_of_triangle(numbers.size());
  if (natom == 0) {
    fail_in(file.name(), "the archive entry has " + std::to_string(numbers.size()) + " force constants",
            "half a symmetric matrix of all coordinates; the log may be cut off");
  }
  file_state state = sized_state(file, natom);
  std::size_t k = 0;
  for (int i = 1; i <= state.fc.rows(); ++i) {
    for (int j = 1; j <= i; ++j, ++k) {
      if (!real_of(numbers[k], state.fc(i, j))) {
        fail_in(file.name(),
                "cannot read force constant " + std::to_string(k + 1) +
                    " of the archive entry: " + numbers[k].substr(0, 30),
                "numbers separated by commas");
      }
      state.fc(j, i) = state.fc(i, j);
    }
  }
  if (!read_molecule(found.parts[molecule_section], state.nat, state.x)) {
    file.rewind();
    gaussian_log_nat(file, state.nat);
    read_input_orientation(file, found.at, state.x);
  }
  file.rewind();
  gaussian_log_mass(file, state.mass);
  state.printed = gaussian_log_printed(file);
  return state;
}

}  // namespace vbn
