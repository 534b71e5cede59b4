// Writes the sample molecule in the layouts of the programs.
#include "tests/readers/sample_files.hpp"  // for the routines

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <span>
#include <vector>

#include "molecule/constants.hpp"  // for bohr_to_ang
#include "molecule/elements.hpp"   // for element_symbol, nat_to_mass
#include "text/words.hpp"          // for lowercase

namespace vbn {

namespace {

template <class... values>
std::string put(const char* format, values... v) {
  char line[256];
  std::snprintf(line, sizeof line, format, v...);
  return line;
}

const char* symbol(const molecule& m, int i) { return element_symbol(m.nat(i)).data(); }

// The coordinates of an atom, a bohr being `unit` of the file.
std::string xyz(const molecule& m, int i, const char* field, double unit = 1.0) {
  return put(field, m.x(1, i) * unit) + put(field, m.x(2, i) * unit) + put(field, m.x(3, i) * unit);
}

// Rows of number, symbol, charge and mass, as `front` wants them, and the coordinates.
std::string rows(const molecule& m, const char* front, const char* field, double unit = 1.0) {
  std::string all;
  for (int i = 1; i <= m.nat.size(); ++i) {
    all += put(front, i, symbol(m, i), 1.0 * m.nat(i), m.mass(i)) + xyz(m, i, field, unit) + "\n";
  }
  return all;
}

// Numbers, so many to a line.
std::string list(std::span<const double> numbers, std::size_t per_line, const char* field,
                 const char* front = "") {
  std::string all;
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    all += (k % per_line == 0 ? front : "") + put(field, numbers[k]);
    if ((k + 1) % per_line == 0 || k + 1 == numbers.size()) all += "\n";
  }
  return all;
}

// A matrix, or its lower triangle alone, in blocks of so many columns.
template <class label_of_row>
std::string blocks(const array2<double>& fc, int columns, bool triangle, const char* heading,
                   label_of_row label, const char* field) {
  std::string all;
  for (int ib = 1; ib <= fc.rows(); ib += columns) {
    all += heading;
    for (int i = triangle ? ib : 1; i <= fc.rows(); ++i) {
      all += label(i);
      const int last = std::min(triangle ? i : fc.rows(), ib + columns - 1);
      for (int j = ib; j <= last; ++j) all += put(field, fc(i, j));
      all += "\n";
    }
  }
  return all;
}

std::string molpro_file(const molecule& m, const std::string& dump, int per_line) {
  const auto label = [](int i) { return put("           GX%-6d", i); };
  std::string file = put("%61sMOLPRO\n\n ATOMIC COORDINATES\n\n NR  ATOM    CHARGE       X  Y  Z\n\n", "") +
                     dump + "\n Force Constants (Second Derivatives of the Energy) in [a.u.]\n" +
                     blocks(m.fc, 5, true, "            GX1   GX2\n", label, "%12.7f") + "\n Atomic Masses\n";
  const int natom = m.nat.size();
  for (int i = 1; i <= natom; i += per_line) {
    const int count = std::min(per_line, natom + 1 - i);
    file += put(" %3d-%3d", i, i + count - 1) +
            list(std::span(m.mass.data() + i - 1, static_cast<std::size_t>(count)), 99, "%12.6f");
  }
  return file + "\n";
}

}  // namespace

molecule sample_molecule(int natom) {
  constexpr int chain[] = {6, 8, 1, 1, 7};
  molecule m{array1<int>(natom), array1<double>(natom), array2<double>(3, natom),
             array2<double>(3 * natom, 3 * natom)};
  for (int i = 1; i <= natom; ++i) {
    m.nat(i) = chain[(i - 1) % 5];
    m.mass(i) = nat_to_mass(m.nat(i));
    m.x(1, i) = 1.25 * i - 2.5;
    m.x(2, i) = i % 2 == 0 ? 0.75 : -0.5;
    m.x(3, i) = 0.125 * (i * i % 11);
  }
  for (int i = 1; i <= m.fc.rows(); ++i) {
    for (int j = 1; j <= i; ++j) {
      m.fc(i, j) = m.fc(j, i) = ((i == j ? 5000 : -2500) + (37 * i + 11 * j) % 1000) / 1e4;
    }
  }
  return m;
}

std::string gaussian_log(const molecule& m) {
  std::string log =
      " Entering Gaussian System, Link 0=g16\n ******************************************\n"
      " Gaussian 16:  ES64L-G16RevC.01  3-Jul-2019\n #p b3lyp/6-31g* freq\n Charge =  0 Multiplicity = 1\n" +
      put(" NAtoms=%7d NQM=\n", m.nat.size()) + list(m.mass.span(), 10, "%12.7f", " AtmWgt=");
  for (const double size : {1.01, 1.0}) {
    log += " Center     Atomic      Atomic             Coordinates (Angstroms)\n ---------\n" +
           rows(m, "%7d%.0s%11.0f           0    ", "%12.6f", size * bohr_to_ang) + " ---------\n";
  }
  return log + " - Thermochemistry -\n" +
         rows(m, " Atom %5d%.0s has atomic number %2.0f and mass %10.5f", "");
}

std::string gaussian_fchk(const molecule& m) {
  std::vector<double> triangle;
  for (int i = 1; i <= m.fc.rows(); ++i) {
    for (int j = 1; j <= i; ++j) triangle.push_back(m.fc(i, j));
  }
  return put("sample\nNumber of atoms                            I     %12d\n", m.nat.size()) +
         put("Current cartesian coordinates              R   N=%12d\n", m.fc.rows()) +
         list(m.x.span(), 5, "%16.8E") +
         put("Real atomic weights                        R   N=%12d\n", m.nat.size()) +
         list(m.mass.span(), 5, "%16.8E") +
         put("Cartesian Force Constants                  R   N=%12zu\n", triangle.size()) +
         list(triangle, 5, "%16.8E") + "Dipole Moment                              R   N=           3\n";
}

std::string molpro_output(const molecule& m) {
  std::string dump = "\n Dump information in style XYZ to output\n\n    n\n sample\n";
  for (int i = 1; i <= m.nat.size(); ++i) dump += put("%-3s", symbol(m, i)) + xyz(m, i, "%20.10f") + "\n";
  return molpro_file(m, rows(m, "%4d   %-6s%5.2f", "%15.9f", 1.01) + dump, m.nat.size());
}

std::string molpro_newer(const molecule& m) {
  molecule other = m;
  std::reverse(other.nat.span().begin(), other.nat.span().end());
  return molpro_file(m, rows(other, "%4d   %s1   %5.2f", "%15.9f"), 10) +
         " Atomic Coordinates\n\n  Nr  Atom  Charge       X              Y              Z\n\n" +
         rows(m, "%4d   %s2   %5.2f", "%15.9f") + "\n Frequencies dumped to record   5400.2\n";
}

std::string turbomole_output(const molecule& m) {
  const auto element = [&](int i) { return lowercase(symbol(m, i)); };
  const auto label = [&](int i) {
    const int atom = (i + 2) / 3;
    return (i % 3 == 1 ? put("%4d %-2s    d", atom, element(atom).c_str()) : "           d") + "zxy"[i % 3] +
           " ";
  };
  std::string file =
      " aoforce(node1) : TURBOMOLE V6.4 22 Sep 2012 at 17:26:03\n\n"
      "              | Atomic coordinate, charge and isotop information |\n\n"
      "                    atomic coordinates            atom    charge  isotop\n";
  for (int i = 1; i <= m.nat.size(); ++i) {
    file += xyz(m, i, "%14.8f") + put("    %-2s  %10.3f     0\n", element(i).c_str(), 1.0 * m.nat(i));
  }
  file += put("\n   total:%5d     60     20\n\n            ATOMIC WEIGHTS\n\n", m.nat.size());
  for (int i = 1; i <= m.nat.size(); ++i) file += put("%15d  %s%21.5f\n", i, element(i).c_str(), m.mass(i));
  return file + "\n          CARTESIAN FORCE CONSTANT MATRIX (hartree/bohr**2)\n" +
         blocks(m.fc, 6, true, "\n   ATOM    1 c    2 o\n     dx        dy        dz\n", label, "%10.7f");
}

std::string chemshell_output(const molecule& m) {
  const auto label = [&](int i) { return put("%6d %-4s%-9s", i, symbol(m, (i + 2) / 3), "x"); };
  std::string file = put("   ChemShell version 3.7.0\n%48s\n", "Input Coordinates") +
                     " -------\n    No  atom   charge   x   y   z\n" + rows(m, "%6d  %-2s%11.2f", "%16.9f") +
                     "\n          atomic weights\n          --------------\n";
  for (int i = 1; i <= m.nat.size(); ++i) file += put("%6d  %-2s%16.7f\n", i, symbol(m, i), m.mass(i));
  return file + put("\n%53s\n -----\n", "cartesian force constant matrix") +
         blocks(m.fc, 9, false, "\n\n\n hessian block\n\n\n columns\n elements\n components\n\n\n", label,
                "%12.8f");
}

std::string numforce_output(const molecule& m) {
  std::string file =
      put(" NUMERICAL FREQUENCY\n VERSION 1.2\n NAtoms %6d\n\n", m.nat.size()) +
      " Coordinate Bohr\n   No    Z        mass               x               y               z\n" +
      rows(m, "%5d%.0s%5.0f%14.8f", "%20.10f") + "\n Unprojected Force Constant Matrix\n";
  for (int i = 1; i <= m.fc.rows(); ++i) file += put(" row %6d\n", i) + list(m.fc.column(i), 5, "%15.10f");
  return file;
}

std::string nwchem_output(const molecule& m) {
  std::string file = " Northwest Computational Chemistry Package (NWChem) 7.0.2\n Geometry \"geometry\"\n";
  for (const double size : {1.01, 1.0}) {
    file +=
        " Output coordinates in angstroms (scale by  1.889725989 to convert to a.u.)\n\n"
        "  No.       Tag          Charge          X              Y              Z\n ---- -----\n" +
        rows(m, "%5d %-16s %10.4f", "%15.8f", size * bohr_to_ang) + "\n";
  }
  array2<double> fc = m.fc;
  for (int i = 1; i <= fc.rows(); ++i) {
    for (int j = 1; j <= i; ++j) fc(i, j) *= 1000.0 / std::sqrt(m.mass((i + 2) / 3) * m.mass((j + 2) / 3));
  }
  const auto label = [](int i) { return put("%5d ", i); };
  std::string hessian = blocks(fc, 10, true, "\n\n     columns\n   ----- -----\n", label, "%13.5E");
  std::replace(hessian.begin(), hessian.end(), 'E', 'D');
  return file + " MASS-WEIGHTED PROJECTED HESSIAN (Hartree/Bohr/Bohr/Kamu)\n --------\n" + hessian;
}

qm_file opened(std::string_view content) {
  return open_qm_file(input_file::from_memory("sample.out", content));
}

std::string changed(std::string_view content, std::string_view from, std::string_view to) {
  std::string after(content);
  const std::size_t at = after.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? after : after.replace(at, from.size(), to);
}

}  // namespace vbn
