// Tells which program wrote a file.
#pragma once

#include <string_view>

#include "text/fixed_text.hpp"  // for text
#include "text/input_file.hpp"  // for input_file

namespace vbn {

// A file of another program, taken into memory once and given to all readers of a state.
struct qm_file {
  input_file file;
  text<100> type;     // kind, as "GAUSSIAN LOG"; blank when no marker was found
  text<100> version;  // of the program, blank when not told
  int info = -1;      // the kind's number, -1 for none
};

// Finds kind and version of a file by its markers. The first marker in the order of the kinds decides, with
// two exceptions: a formatted checkpoint, and a Gaussian log without a line of stars, keep their kind only
// when no later marker is found, and have `info` -1. A file without any marker leaves `type` and `version`
// untouched.
void qm_file_type(input_file& file, text<100>& type, text<100>& version, int& info);

// Opens a file and finds its kind. Tabs become the blanks up to the next column of eight, since columns
// count. A file that cannot be opened ends the run with a message that names it.
qm_file open_qm_file(std::string_view fname);
// The same for a file that is open.
qm_file open_qm_file(input_file file);

}  // namespace vbn
