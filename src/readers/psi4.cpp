// Reads Psi4 files: the output, and the Hessian file with the output beside it.
#include <filesystem>
#include <string>

#include "readers/programs.hpp"     // for the routines
#include "readers/rows.hpp"         // for skip_rows, all_numbers, row_integer, next_row
#include "readers/state_parts.hpp"  // for the parts of a state
#include "text/stop.hpp"            // for fail, fail_in
#include "text/words.hpp"           // for word_of

namespace vbn {

namespace {

constexpr std::size_t none = std::string_view::npos;
constexpr std::string_view steps = "Using finite-differences of";

// The last geometry before the byte at `end`.
file_state read_geometry(input_file& file, std::size_t end) {
  const std::string_view heading =
      file.seek_line_after(need_before(file, "    Geometry (in ", end, "the geometry"));
  skip_rows(file, 3, "the heading of the table of atoms");
  file_state state =
      read_atoms(file, {.label = 1, .before_x = 1, .mass = 5, .angstrom = heading.find("Bohr") == none},
                 "the rows of the geometry: symbol, x, y, z and mass");
  // Auxiliary basis sets follow the first name.
  constexpr std::string_view label = "Basis Set:";
  const std::size_t primary = last_before(file, "==> Primary Basis <==", none);
  const std::size_t at = primary == none ? none : file.content().find(label, primary);
  if (at != none) state.printed.basis_set = word_after_last(file, label, at + label.size());
  return state;
}

// The output of a Hessian file: of the same name with another ending, or of a name that the Hessian file
// continues, as output.default.123.hess that of output.dat.
std::string output_of(const input_file& file) {
  std::string name = file.name();
  std::string tried;
  for (int endings = 0; endings < 3; ++endings) {
    name = std::filesystem::path(name).replace_extension().string();
    for (const char* const ending : {".out", ".dat", ".log"}) {
      std::error_code unreadable;
      if (std::filesystem::is_regular_file(name + ending, unreadable)) return name + ending;
      tried += (tried.empty() ? "" : ", ") + name + ending;
    }
    if (!std::filesystem::path(name).has_extension()) break;
  }
  fail_in(file.name(), "a Psi4 Hessian file has no geometry, and its output is not beside it",
          "the output of the same calculation as one of " + tried);
}

}  // namespace

// The matrix of the last analytic calculation, and the geometry before it. Finite differences print none.
file_state psi4_output_state(input_file& file) {
  constexpr std::string_view ask =
      "set hessian_write true, and give the file .hess that the frequency calculation then writes, with this "
      "output beside it";
  const std::size_t matrix = last_before(file, "## Total Hessian", none);
  if (matrix == none) {
    fail_in(file.name(), "this Psi4 output holds no force constants; only analytic ones are printed", ask);
  }
  if (file.content().find(steps, matrix) != none) {
    fail_in(
        file.name(),
        "the only force constants in this Psi4 output are of an earlier calculation; those of the last one "
        "are finite differences, which are not printed",
        ask);
  }
  file_state state = read_geometry(file, matrix);
  file.seek_line_after(matrix);
  skip_rows(file, 1, "the size of the matrix");
  read_square_blocks(file, 1, 1, state.fc);
  take_mean_of_triangles(file, state.fc);
  append_rows(file, "Freq [cm^-1]", none, state.printed.frequencies);
  return state;
}

// A line with the number of atoms, and the full square, three numbers a line. The geometries after the start
// of finite differences are displaced.
file_state psi4_hess_state(input_file& file) {
  const std::string name = output_of(file);
  input_file output(name, file.say());
  file_state state = read_geometry(output, last_before(output, steps, none));
  append_rows(output, "Freq [cm^-1]", none, state.printed.frequencies);
  state.geometry_file = name;
  const std::string first = "the number of atoms, and three times this number";
  if (row_integer(file, next_row(file, first), 1, first) != state.natom()) {
    fail(file.here("another number of atoms than the geometry of " + name + " has",
                   std::to_string(state.natom())));
  }
  all_numbers(file, state.fc.span(), "the rows of the matrix, three numbers a line");
  std::string_view line;
  if (file.read_line(line) && !word_of(line, 1).empty()) {
    fail(file.here("the matrix has too many rows", std::to_string(state.fc.span().size()) + " numbers"));
  }
  take_mean_of_triangles(file, state.fc);
  return state;
}

}  // namespace vbn
