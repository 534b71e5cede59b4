// Finds the program that wrote a file, and its version, by marker words.
#include "readers/file_type.hpp"  // for qm_file

#include <algorithm>
#include <string>
#include <utility>

#include "readers/scan.hpp"  // for search_word, search_word_free, word_of

namespace vbn {

namespace {

// Without its first n characters.
std::string_view behind(std::string_view word, std::size_t n) {
  return word.substr(std::min(n, word.size()));
}

// The marker and star line of a Gaussian log. True when both are there, the version line behind them
// included.
bool gaussian_log(input_file& file, text<100>& type, text<100>& version) {
  std::string_view line;
  if (!search_word_free(file, "Entering Gaussian System", line)) return false;
  type = "GAUSSIAN LOG";
  if (!search_word_free(file, "*****************", line)) return false;
  if (file.read_line(line)) {
    const std::string_view word = word_of(line, 3);
    version = word.substr(word.find('-') + 1);  // none + 1 is 0: the whole word
  }
  return true;
}

// "6.4" of a line with "TURBOMOLE V6.4".
std::string turbomole_version(std::string_view line) {
  constexpr std::string_view program = "TURBOMOLE";
  std::string version(behind(word_of(line.substr(line.find(program) + program.size()), 1), 1));
  for (char& c : version) {
    if (!is_number({&c, 1}) && c != '.') c = ' ';
  }
  return version;
}

// A kind that the line with its marker alone decides.
struct marked_kind {
  int first = 0, last = 0;  // columns of the marker; 0 for anywhere in a line
  std::string_view marker;
  std::string_view type;
  int info = 0;
  int version_word = 0;     // 0 for version "0"
  std::size_t dropped = 0;  // characters before the version in that word
};

// Those that come behind NUMFORCE, in the order in which they are tested.
constexpr marked_kind marked_kinds[] = {
    {0, 0, "PWSCF", "PWOUT", 3, 3, 2},
    {0, 0, "vasp", "VASP", 3, 1, 5},
    {0, 0, "NWChem", "NWCHEM", 0, 6, 0},
    {0, 0, "_cell_length_a", "CIF", 0, 0, 0},
    {11, 30, "POTENTIAL PARAMETERS", "WIEN2K_1", 0, 0, 0},
    {3, 12, "bandindex:", "WIEN2K_spe", 0, 0, 0},
};

}  // namespace

void qm_file_type(input_file& file, text<100>& type, text<100>& version, int& info) {
  std::string_view line;
  const auto found = [&](std::string_view kind, int number) {
    type = kind;
    info = number;
  };
  info = -1;

  file.rewind();
  if (search_word_free(file, "ChemShell", line)) {
    version = word_of(line, 3);
    return found("CHEMSHELL", 4);
  }
  file.rewind();
  if (gaussian_log(file, type, version)) return found("GAUSSIAN LOG", 2);
  file.rewind();
  if (search_word(file, 1, 15, "Number of atoms", line)) {
    type = "GAUSSIAN FCHK";
    version = "UNKNOWN";
  }
  file.rewind();
  if (search_word(file, 62, 67, "MOLPRO", line)) return found("MOLPRO", 3);
  file.rewind();
  if (search_word_free(file, "TURBOMOLE V", line)) {
    version = turbomole_version(line);
    return found("TURBOMOLE", 1);
  }
  file.rewind();
  if (search_word(file, 2, 20, "NUMERICAL FREQUENCY", line)) {
    if (search_word(file, 2, 8, "VERSION", line)) version = word_of(line, 2);
    return found("NUMFORCE", 3);
  }
  for (const marked_kind& kind : marked_kinds) {
    file.rewind();
    if (kind.first == 0 ? search_word_free(file, kind.marker, line)
                        : search_word(file, kind.first, kind.last, kind.marker, line)) {
      version = kind.version_word == 0 ? "0" : behind(word_of(line, kind.version_word), kind.dropped);
      return found(kind.type, kind.info);
    }
  }
}

qm_file open_qm_file(std::string_view fname) {
  qm_file opened{input_file(fname), {}, {}, -1};
  qm_file_type(opened.file, opened.type, opened.version, opened.info);
  return opened;
}

}  // namespace vbn
