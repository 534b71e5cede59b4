// Finds the program that wrote a file.
#pragma once

#include <optional>
#include <string_view>

#include "readers/file_state.hpp"  // for file_state
#include "text/fixed_text.hpp"     // for text
#include "text/input_file.hpp"     // for input_file
#include "text/messages.hpp"       // for messages

namespace vbn {

// The kinds of files. Their names and readers are listed in `programs.cpp`, their markers in `file_type.cpp`.
enum class file_kind {
  unknown,
  chemshell,
  gaussian_log,
  gaussian_fchk,  // formatted checkpoint
  molpro,
  numforce,  // numerical frequencies
  nwchem,
  turbomole,
  vasp,
  cif,
  pwout,
  wien2k_1,
  wien2k_spe,
  orca_hess,
  orca_output,
  orca_property,  // results in JSON
  qchem,
  psi4_output,
  openmolcas_unsym,
  hessian_block,  // "$hessian" of xtb and Turbomole
  psi4_hess,
  qcschema,
  ase_vibrations,
  gamess_output,
  gamess_punch,
  cp2k,
  mopac_aux,
  bagel,
  cfour,
  dalton,
  jaguar,
  molden
};

// A file of another program, opened and searched for its kind once, and passed to all readers of a state.
struct qm_file {
  input_file file;
  file_kind kind = file_kind::unknown;
  text<100> version = {};                // of the program, blank when the file does not state it
  std::optional<file_state> state = {};  // of a kind that is read as a whole, once it is read
};

// Finds the kind of a file by its markers, and with it the version of the program. The first marker in the
// order of the table decides, with two exceptions: a formatted checkpoint, and a Gaussian log without a line
// of stars, keep their kind only when no later marker is found.
file_kind qm_file_type(input_file& file, text<100>& version);

// Opens a file and finds its kind. Tabs become blanks up to the next multiple of eight columns. A file that
// cannot be opened ends the run with a message that names it. Warnings of its readers go to `say`.
qm_file open_qm_file(std::string_view fname, const messages& say);
// The same for a file that is open.
qm_file open_qm_file(input_file file);

}  // namespace vbn
