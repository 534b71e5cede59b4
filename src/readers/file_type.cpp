// Finds the program that wrote a file, and its version, by marker words.
#include "readers/file_type.hpp"  // for qm_file

#include <algorithm>
#include <string>
#include <utility>

#include "readers/scan.hpp"     // for search_word, search_word_free
#include "text/fixed_text.hpp"  // for text
#include "text/number.hpp"      // for to_integer, to_real
#include "text/words.hpp"       // for word_of, is_number, adjustl, number_of_words

namespace vbn {

namespace {

// Without its first n characters.
std::string_view behind(std::string_view word, std::size_t n) {
  return word.substr(std::min(n, word.size()));
}

// Reads the version that follows a marker, from the line with the marker or from later ones. True when the
// marker decides the kind, false when a later marker of the table overrides it.
using version_reader = bool (*)(input_file& file, std::string_view line, text<100>& version);

// Word `word` of the line without its first `dropped` characters.
template <int word, std::size_t dropped = 0>
bool version_word(input_file&, std::string_view line, text<100>& version) {
  version = behind(word_of(line, word), dropped);
  return true;
}

// "G16RevC.01" of the line after the stars, " Gaussian 16: ES64L-G16RevC.01 3-Jul-2019".
bool gaussian_version(input_file& file, std::string_view line, text<100>& version) {
  if (!search_word_free(file, "*****************", line)) return false;
  if (file.read_line(line)) {
    const std::string_view word = word_of(line, 3);
    version = word.substr(word.find('-') + 1);  // none + 1 is 0: the whole word
  }
  return true;
}

bool checkpoint_version(input_file&, std::string_view, text<100>& version) {
  version = "UNKNOWN";
  return false;
}

// For a program without a version at its marker; a version from an earlier marker is kept.
bool no_version(input_file&, std::string_view, text<100>&) { return true; }

bool zero_version(input_file&, std::string_view, text<100>& version) {
  version = "0";
  return true;
}

bool numforce_version(input_file& file, std::string_view line, text<100>& version) {
  if (search_word(file, 2, "VERSION", line)) version = word_of(line, 2);
  return true;
}

// "6.4" of a line with "TURBOMOLE V6.4", for the program "TURBOMOLE".
text<100> turbomole_release(std::string_view line, std::string_view program) {
  std::string release(behind(word_of(line.substr(line.find(program) + program.size()), 1), 1));
  for (char& c : release) {
    if (!is_number({&c, 1}) && c != '.') c = ' ';
  }
  return release;
}

bool turbomole_version(input_file&, std::string_view line, text<100>& version) {
  version = turbomole_release(line, "TURBOMOLE");
  return true;
}

// The form of the versions from 7.4 on, "TURBOMOLE rev. V7.4.1 (2bfdd732)".
bool turbomole_rev_version(input_file&, std::string_view line, text<100>& version) {
  version = turbomole_release(line, "TURBOMOLE rev.");
  return true;
}

// The word after `marker`, of a later line, without a comma at its end.
bool version_after(input_file& file, std::string_view marker, text<100>& version) {
  std::string_view line;
  if (!search_word_free(file, marker, line)) return true;
  std::string_view word = word_of(line.substr(line.find(marker) + marker.size()), 1);
  if (word.ends_with(',')) word.remove_suffix(1);
  version = word;
  return true;
}

bool orca_version(input_file& file, std::string_view, text<100>& version) {
  return version_after(file, "Program Version", version);
}

bool psi4_version(input_file& file, std::string_view, text<100>& version) {
  return version_after(file, " Psi4 ", version);
}

bool cfour_version(input_file& file, std::string_view, text<100>& version) {
  return version_after(file, " Version ", version);
}

bool dalton_version(input_file& file, std::string_view, text<100>& version) {
  return version_after(file, "output from DALTON", version);
}

bool mopac_version(input_file& file, std::string_view, text<100>& version) {
  return version_after(file, "MOPAC_VERSION=", version);
}

// "5.2" of " Q-Chem 5.2, Q-Chem, Inc., Pleasanton, CA (2019)".
bool qchem_version(input_file& file, std::string_view, text<100>& version) {
  file.back_line();
  return version_after(file, "Q-Chem ", version);
}

// "30 SEP 2018" of "GAMESS VERSION = 30 SEP 2018 (R3)".
bool gamess_version(input_file&, std::string_view line, text<100>& version) {
  line.remove_prefix(line.find('=') + 1);
  version = adjustl(line.substr(0, line.find('(')));
  return true;
}

// JSON is often one line that is longer than what is searched for a marker.
bool is_json_with(const input_file& file, std::string_view name, std::string_view value) {
  const std::string_view text = file.content();
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && text[first] == '{' && text.find(name) != std::string_view::npos &&
         text.find(value) != std::string_view::npos;
}

bool is_qcschema(input_file& file) { return is_json_with(file, "\"schema_name\"", "\"return_result\""); }
bool is_orca_property(input_file& file) { return is_json_with(file, "\"Geometries\"", "\"HESSIAN\""); }
bool is_ase_vibrations(input_file& file) { return is_json_with(file, "\"__ase_objtype__\"", "\"hessian\""); }

// A line with the number of atoms and three times this number (six in old versions), then three reals a line.
bool is_psi4_hess(input_file& file) {
  std::string_view line;
  int natom = 0;
  int rows = 0;
  if (!file.read_line(line) || number_of_words(line) != 2 || !to_integer(word_of(line, 1), natom) ||
      !to_integer(word_of(line, 2), rows) || natom < 1 || (rows / natom != 3 && rows / natom != 6) ||
      rows % natom != 0 || !file.read_line(line) || number_of_words(line) != 3)
    return false;
  double r = 0.0;
  for (int k = 1; k <= 3; ++k) {
    if (word_of(line, k).find('.') == std::string_view::npos || !to_real(word_of(line, k), r)) return false;
  }
  return true;
}

struct kind_marker {
  file_kind kind;
  int column;  // of the first character of the marker, 0 for anywhere in a line
  std::string_view marker;
  version_reader version;
  bool last_resort = false;              // searched for only if no other marker is found
  bool (*shape)(input_file&) = nullptr;  // of a file without any text, instead of a marker
};

// In the order in which they are tested.
constexpr kind_marker markers[] = {
    {file_kind::chemshell, 0, "ChemShell", version_word<3>},
    {file_kind::gaussian_log, 0, "Entering Gaussian System", gaussian_version},
    {file_kind::gaussian_fchk, 1, "Number of atoms", checkpoint_version},
    {file_kind::molpro, 62, "MOLPRO", no_version},
    {file_kind::turbomole, 0, "TURBOMOLE V", turbomole_version},
    {file_kind::numforce, 2, "NUMERICAL FREQUENCY", numforce_version},
    {file_kind::pwout, 0, "PWSCF", version_word<3, 2>},
    {file_kind::vasp, 0, "vasp", version_word<1, 5>},
    {file_kind::nwchem, 0, "NWChem", version_word<6>},
    {file_kind::cif, 0, "_cell_length_a", zero_version},
    {file_kind::wien2k_1, 11, "POTENTIAL PARAMETERS", zero_version},
    {file_kind::wien2k_spe, 3, "bandindex:", zero_version},
    {file_kind::turbomole, 0, "TURBOMOLE rev. V", turbomole_rev_version, true},
    {file_kind::orca_hess, 1, "$orca_hessian_file", no_version, true},
    {file_kind::orca_output, 0, "* O   R   C   A *", orca_version, true},
    {file_kind::qchem, 0, "Q-Chem, Inc.", qchem_version, true},
    {file_kind::psi4_output, 0, "Psi4: An Open-Source Ab Initio", psi4_version, true},
    {file_kind::openmolcas_unsym, 1, "*PERTURBATIONS", no_version, true},
    {file_kind::hessian_block, 1, "$hessian", no_version, true},
    {file_kind::hessian_block, 1, "$nprhessian", no_version, true},
    {file_kind::gamess_output, 0, "GAMESS VERSION =", gamess_version, true},
    {file_kind::gamess_output, 0, "PC GAMESS version", version_word<5>, true},
    {file_kind::gamess_output, 0, "Firefly version", version_word<4>, true},
    {file_kind::gamess_punch, 2, "$HESS", no_version, true},
    {file_kind::cp2k, 2, "CP2K| version string:", version_word<6>, true},
    {file_kind::mopac_aux, 2, "START OF MOPAC", mopac_version, true},
    {file_kind::bagel, 0, "BAGEL - Freshly leavened", no_version, true},
    {file_kind::cfour, 0, "CFOUR Coupled-Cluster techniques", cfour_version, true},
    {file_kind::dalton, 0, "Dalton - An Electronic Structure Program", dalton_version, true},
    {file_kind::jaguar, 1, "&hess", no_version, true},
    {file_kind::molden, 0, "[Molden Format]", no_version, true},
    {file_kind::molden, 0, "[MOLDEN FORMAT]", no_version, true},
    {file_kind::psi4_hess, 0, "", no_version, true, is_psi4_hess},
    {file_kind::qcschema, 0, "", no_version, true, is_qcschema},
    {file_kind::ase_vibrations, 0, "", no_version, true, is_ase_vibrations},
    {file_kind::orca_property, 0, "", no_version, true, is_orca_property},
};

// The file with each tab replaced by blanks up to the next multiple of `tab_stop` columns, since the columns
// of tables matter.
input_file without_tabs(input_file file) {
  constexpr std::size_t tab_stop = 8;
  std::string_view content = file.content();
  if (content.find('\t') == std::string_view::npos) return file;
  std::string blanks;
  blanks.reserve(content.size() + content.size() / tab_stop);
  for (std::size_t begin = 0; !content.empty(); begin = blanks.size()) {
    std::string_view line = content.substr(0, std::min(content.find('\n'), content.size() - 1) + 1);
    content.remove_prefix(line.size());
    for (auto tab = line.find('\t'); tab != std::string_view::npos; tab = line.find('\t')) {
      blanks += line.substr(0, tab);
      blanks.append(tab_stop - (blanks.size() - begin) % tab_stop, ' ');
      line.remove_prefix(tab + 1);
    }
    blanks += line;
  }
  return input_file::from_memory(file.name(), blanks, file.say());
}

}  // namespace

file_kind qm_file_type(input_file& file, text<100>& version) {
  file_kind kind = file_kind::unknown;
  for (const kind_marker& m : markers) {
    if (m.last_resort && kind != file_kind::unknown) continue;
    std::string_view line;
    file.rewind();
    const bool found = m.shape != nullptr ? m.shape(file)
                       : m.column == 0    ? search_word_free(file, m.marker, line)
                                          : search_word(file, m.column, m.marker, line);
    if (!found) continue;
    kind = m.kind;
    if (m.version(file, line, version)) break;
  }
  return kind;
}

qm_file open_qm_file(std::string_view fname, const messages& say) {
  return open_qm_file(input_file(fname, say));
}

qm_file open_qm_file(input_file file) {
  constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";
  if (file.content().starts_with(byte_order_mark)) {
    file = input_file::from_memory(file.name(), file.content().substr(byte_order_mark.size()), file.say());
  }
  qm_file opened{without_tabs(std::move(file))};
  opened.kind = qm_file_type(opened.file, opened.version);
  return opened;
}

}  // namespace vbn
