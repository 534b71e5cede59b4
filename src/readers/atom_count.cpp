// Counts the atoms of a state and finds the high layer of an ONIOM calculation.
#include "readers/atom_count.hpp"  // for the routines

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "readers/foreign.hpp"   // for what_is
#include "readers/programs.hpp"  // for names_of_kinds
#include "readers/qm_file.hpp"   // for qm_file_natom, name_of
#include "readers/rows.hpp"      // for check_natom, next_row
#include "readers/scan.hpp"      // for search_word_free
#include "text/fixed_text.hpp"   // for text
#include "text/messages.hpp"     // for messages, free_line
#include "text/stop.hpp"         // for stop_printed, fail, fail_in
#include "text/words.hpp"        // for word_of, name_main

namespace vbn {

namespace {

constexpr std::size_t oniom_width = 500;  // columns of a line that are searched for the word "oniom"
constexpr int harmless_natom = 300;       // atoms whose matrices are allocated for any size of the file
constexpr std::string_view high_layer = "H";

// Moves to the first atom line of the molecule specification, after the charge lines of the layers.
bool first_atom_of_layers(input_file& file) {
  std::string_view line;
  file.rewind();
  if (!search_word_free(file, "Charge =", line)) return false;
  do {
    if (!file.read_line(line)) return false;
  } while (word_of(line, 1) == "Charge");
  file.back_line();
  return true;
}

// The layer of the atom in the next row.
std::string_view next_layer(input_file& file) {
  constexpr std::string_view expected = "an atom with its layer as sixth word";
  const std::string_view layer = word_of(next_row(file, expected), 6);
  if (layer.empty()) fail(file.here("cannot read the line", std::string(expected)));
  return layer;
}

// Ends the run when the file of the force constants is too short for those of `natom` atoms, before arrays of
// this size are made. For small molecules the readers say what is missing.
void check_size(std::string_view fhess, int natom) {
  if (natom <= harmless_natom) return;
  std::error_code none;  // a file without a size counts as full
  const std::uintmax_t size = std::filesystem::file_size(fhess, none);
  const std::uintmax_t n3 = 3 * static_cast<std::uintmax_t>(natom);
  if (n3 * (n3 + 1) > size) {  // half a symmetric matrix, a digit and a blank a number
    fail_in(fhess, "the file is too short for the force constants of " + std::to_string(natom) + " atoms",
            std::to_string(n3 * (n3 + 1) / 2) + " force constants");
  }
}

bool can_be_read(const std::string& name) {
  std::error_code none;
  return std::filesystem::is_regular_file(name, none) && std::ifstream(name).is_open();
}

std::string checkpoint_here(std::string_view ffreq) { return name_main(ffreq) + ".fchk"; }

std::string checkpoint_beside(std::string_view ffreq) {
  return std::filesystem::path(ffreq).replace_extension(".fchk").string();
}

// The formatted checkpoint of a Gaussian log is in the working directory, wherever the log is; where it is
// not there, beside the log.
text<200> checkpoint_of(const qm_file& log, std::string_view ffreq) {
  const std::string here = checkpoint_here(ffreq);
  if (can_be_read(here)) return here;
  const std::string beside = checkpoint_beside(ffreq);
  if (can_be_read(beside)) {
    log.file.warn(here + " is not in the working directory; " + beside + " is read");
    return beside;
  }
  return {};
}

[[noreturn]] void fail_checkpoint(const qm_file& log, std::string_view ffreq) {
  const std::string here = checkpoint_here(ffreq);
  const std::string beside = checkpoint_beside(ffreq);
  log.file.warn("no formatted checkpoint " + here + " in the working directory" +
                (beside == here ? "" : ", and no " + beside) +
                "; make it with formchk from the .chk file of the job");
  stop_printed(free_line({"Error! Can not find Gaussian fchk file!"}) + free_line({"Stop!"}), 1);
}

// What a file of unknown kind is, and which ones are read.
std::string unknown_file(const qm_file& file) {
  const std::string is = what_is(file.file.content());
  return ": " +
         (is.empty() ? std::string("it is not recognised as the file of any program") : "it is " + is) +
         ". Files that are read: " + names_of_kinds();
}

// Gives a warning with the name of the file before the stop for a count below 1.
void warn_no_atoms(const qm_file& file, bool ifoniom) {
  file.file.warn("no number of atoms found in " + file.file.name() +
                 (file.kind == file_kind::unknown ? unknown_file(file)
                  : ifoniom
                      ? ": it contains the word \"oniom\", but no atoms of layer \"H\" after \"Charge =\""
                      : ", which is read as a " + name_of(file.kind) + " file"));
}

}  // namespace

qm_file get_na(file_data& data, atom_data& atoms, const messages& say) {
  if (data.ffreq.blank()) {
    fail({.what = "no frequency file is named for one of the two states",
          .expected = "ffreq(1) and ffreq(2) in the group &vbn"});
  }
  qm_file file = open_qm_file(data.ffreq.trimmed(), say);
  data.ffreq_type = name_of(file.kind);
  data.ffreq_version = file.version;
  data.fhess = data.ffreq;
  if (file.kind == file_kind::gaussian_log) {
    std::string_view line;
    file.file.rewind();
    data.ifoniom = search_word_free(file.file, "oniom", line, oniom_width);
    const text<200> checkpoint = checkpoint_of(file, data.ffreq.trimmed());
    if (checkpoint.blank() && !data.ifoniom) file.state = gaussian_archive_state(file.file);
    if (checkpoint.blank() && !file.state) fail_checkpoint(file, data.ffreq.trimmed());
    if (!checkpoint.blank()) data.fhess = checkpoint;
  }
  if (data.ifoniom) {
    const oniom_count count = qm_file_natom_oniom_qm(file);
    atoms.natom = count.nqm;
    data.nqmmm = count.nqmmm;
  } else {
    atoms.natom = qm_file_natom(file).value_or(0);
  }
  if (atoms.natom < 1) warn_no_atoms(file, data.ifoniom);
  check_natom(file.file, atoms.natom);
  if (!file.state) check_size(data.fhess.trimmed(), data.ifoniom ? data.nqmmm : atoms.natom);
  atoms.n3 = 3 * atoms.natom;
  return file;
}

void part_checkpoints(file_data& one, file_data& two, const messages& say) {
  if (one.fhess == one.ffreq || one.fhess != two.fhess) return;
  std::error_code none;
  const std::string log1 = one.ffreq.str();
  const std::string log2 = two.ffreq.str();
  if (log1 == log2 || std::filesystem::equivalent(log1, log2, none)) return;
  const std::string beside1 = checkpoint_beside(log1);
  const std::string beside2 = checkpoint_beside(log2);
  if (beside1 == beside2 || !can_be_read(beside1) || !can_be_read(beside2)) {
    fail_in(log2, log1 + " and " + log2 + " would share the checkpoint " + one.fhess.str(),
            "a checkpoint beside each log, or logs of different names");
  }
  say.warn(log1 + " and " + log2 + " have checkpoints of one name; " + beside1 + " and " + beside2 +
           ", beside the logs, are read");
  one.fhess = beside1;
  two.fhess = beside2;
}

void get_oniom_index(qm_file& file, int natom, file_data& data) {
  if (data.ifoniom) get_oniom_index1(file, natom, data.nqmmm, data.iqm, data.iqm3);
}

void get_oniom_index1(qm_file& file, int nqm, int nqmmm, array1<int>& iqm, array1<int>& iqm3) {
  iqm = qm_file_oniom_index(file, nqm, nqmmm);
  iqm3 = array1<int>(3 * nqm);
  for (int i = 1; i <= nqm; ++i) {
    for (int c = 1; c <= 3; ++c) iqm3(3 * (i - 1) + c) = 3 * (iqm(i) - 1) + c;
  }
}

oniom_count qm_file_natom_oniom_qm(qm_file& file) {
  oniom_count count;
  if (file.kind != file_kind::gaussian_log) return count;
  count.nqmmm = qm_file_natom(file).value_or(0);
  if (!first_atom_of_layers(file.file)) return count;
  for (int i = 1; i <= count.nqmmm; ++i) {
    if (next_layer(file.file) == high_layer) ++count.nqm;
  }
  return count;
}

array1<int> qm_file_oniom_index(qm_file& file, int nqm, int nqmmm) {
  array1<int> idx(nqm);
  int n = 0;
  first_atom_of_layers(file.file);
  for (int i = 1; i <= nqmmm && n < nqm; ++i) {
    if (next_layer(file.file) == high_layer) idx(++n) = i;
  }
  return idx;
}

}  // namespace vbn
