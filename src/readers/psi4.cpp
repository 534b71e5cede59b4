// Reads Psi4 outputs.
#include "readers/programs.hpp"     // for the routines
#include "readers/rows.hpp"         // for skip_rows
#include "readers/state_parts.hpp"  // for the parts of a state
#include "text/stop.hpp"            // for fail_in

namespace vbn {

// The matrix of the last analytic calculation, and the geometry before it. Finite differences print none.
file_state psi4_output_state(input_file& file) {
  constexpr std::size_t none = std::string_view::npos;
  constexpr std::string_view ask =
      "set hessian_write true, and give the file .hess that the frequency calculation then writes, with this "
      "output beside it";
  const std::size_t matrix = last_before(file, "## Total Hessian", none);
  if (matrix == none) {
    fail_in(file.name(), "this Psi4 output holds no force constants; only analytic ones are printed", ask);
  }
  if (file.content().find("Using finite-differences of", matrix) != none) {
    fail_in(
        file.name(),
        "the only force constants in this Psi4 output are of an earlier calculation; those of the last one "
        "are finite differences, which are not printed",
        ask);
  }
  const bool angstrom =
      file.seek_line_after(need_before(file, "    Geometry (in ", matrix, "the geometry")).find("Bohr") ==
      none;
  skip_rows(file, 3, "the heading of the table of atoms");
  file_state state = read_atoms(file, {.label = 1, .before_x = 1, .mass = 5, .angstrom = angstrom},
                                "the rows of the geometry: symbol, x, y, z and mass");
  file.seek_line_after(matrix);
  skip_rows(file, 1, "the size of the matrix");
  read_square_blocks(file, 1, 1, state.fc);
  take_mean_of_triangles(file, state.fc);
  append_rows(file, "Freq [cm^-1]", none, state.printed.frequencies);
  return state;
}

}  // namespace vbn
