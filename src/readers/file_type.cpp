// Finds the program that wrote a file, and its version, by marker words.
#include "readers/file_type.hpp"  // for qm_file

#include <algorithm>
#include <string>
#include <utility>

#include "readers/scan.hpp"     // for search_word, search_word_free
#include "text/fixed_text.hpp"  // for text
#include "text/words.hpp"       // for word_of, is_number

namespace vbn {

namespace {

// Without its first n characters.
std::string_view behind(std::string_view word, std::size_t n) {
  return word.substr(std::min(n, word.size()));
}

// The marker and star line of a Gaussian log. True when both are there, the version line behind them
// included.
bool gaussian_log(input_file& file, text<100>& type, text<100>& version, bool& marker_found) {
  std::string_view line;
  marker_found = search_word_free(file, "Entering Gaussian System", line);
  if (!marker_found) return false;
  type = "GAUSSIAN LOG";
  if (!search_word_free(file, "*****************", line)) return false;
  if (file.read_line(line)) {
    const std::string_view word = word_of(line, 3);
    version = word.substr(word.find('-') + 1);  // none + 1 is 0: the whole word
  }
  return true;
}

// "6.4" of a line with "TURBOMOLE V6.4", or with "TURBOMOLE rev. V6.4" when `program` says so.
std::string turbomole_version(std::string_view line, std::string_view program) {
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

// The file with its tabs as the blanks that they stand for, up to the next column of `tab_stop`. Columns
// count in all tables, and a tab is one character.
input_file without_tabs(input_file file) {
  constexpr std::size_t tab_stop = 8;
  std::string_view content = file.content();
  if (content.find('\t') == std::string_view::npos) return file;
  std::string blanks;
  blanks.reserve(content.size() + content.size() / tab_stop);
  for (std::size_t begin = 0; !content.empty(); begin = blanks.size()) {
    std::string_view line = content.substr(0, std::min(content.find('\n'), content.size() - 1) + 1);
    content.remove_prefix(line.size());
    for (std::size_t tab; (tab = line.find('\t')) != std::string_view::npos; line.remove_prefix(tab + 1)) {
      blanks += line.substr(0, tab);
      blanks.append(tab_stop - (blanks.size() - begin) % tab_stop, ' ');
    }
    blanks += line;
  }
  return input_file::from_memory(file.name(), blanks);
}

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
  bool provisional = false;  // a kind without a number, which gives way to any later marker
  if (gaussian_log(file, type, version, provisional)) return found("GAUSSIAN LOG", 2);
  file.rewind();
  if (search_word(file, 1, 15, "Number of atoms", line)) {
    provisional = true;
    type = "GAUSSIAN FCHK";
    version = "UNKNOWN";
  }
  file.rewind();
  if (search_word(file, 62, 67, "MOLPRO", line)) return found("MOLPRO", 3);
  file.rewind();
  if (search_word_free(file, "TURBOMOLE V", line)) {
    version = turbomole_version(line, "TURBOMOLE");
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
  if (provisional) return;
  file.rewind();
  if (search_word_free(file, "TURBOMOLE rev. V", line)) {  // from version 7.4 on
    version = turbomole_version(line, "TURBOMOLE rev.");
    return found("TURBOMOLE", 1);
  }
}

qm_file open_qm_file(std::string_view fname) { return open_qm_file(input_file(fname)); }

qm_file open_qm_file(input_file file) {
  qm_file opened{without_tabs(std::move(file)), {}, {}, -1};
  qm_file_type(opened.file, opened.type, opened.version, opened.info);
  return opened;
}

}  // namespace vbn
