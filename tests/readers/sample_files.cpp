// Writes the sample molecule in the layouts of the programs.
#include "tests/readers/sample_files.hpp"  // for the routines

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "readers/elements.hpp"  // for element_symbol, nat_to_mass
#include "readers/scan.hpp"      // for lowercase
#include "run/constants.hpp"     // for bohr_to_ang

namespace vbn {

namespace {

template <class... values>
std::string put(const char* format, values... v) {
  char line[256];
  std::snprintf(line, sizeof line, format, v...);
  return line;
}

std::string symbol(const molecule& m, int i) { return std::string(element_symbol(m.nat(i))); }

// Rows "%...f %...f %...f" of the coordinates, `unit` bohr to the unit of the file.
std::string xyz(const molecule& m, int i, const char* format, double unit) {
  return put(format, m.x(1, i) * unit, m.x(2, i) * unit, m.x(3, i) * unit);
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
      " Gaussian 16:  ES64L-G16RevC.01  3-Jul-2019\n ******************************************\n"
      " #p b3lyp/6-31g* freq\n Charge =  0 Multiplicity = 1\n" +
      put(" NAtoms=%7d NQM=%9d\n", m.nat.size(), m.nat.size());
  for (int ib = 1; ib <= m.nat.size(); ib += 10) {
    log += "\n  Atom  numbers\n AtmWgt=";
    for (int i = ib; i <= std::min(ib + 9, m.nat.size()); ++i) log += put("%12.7f", m.mass(i));
    log += "\n";
  }
  for (const double size : {1.01, 1.0}) {
    log +=
        "                         Standard orientation:\n"
        " ---------------------------------------------------------------------\n"
        " Center     Atomic      Atomic             Coordinates (Angstroms)\n"
        " Number     Number       Type             X           Y           Z\n"
        " ---------------------------------------------------------------------\n";
    for (int i = 1; i <= m.nat.size(); ++i) {
      log += put("%7d%11d%12d    ", i, m.nat(i), 0) + xyz(m, i, "%12.6f%12.6f%12.6f\n", size * bohr_to_ang);
    }
    log += " ---------------------------------------------------------------------\n";
  }
  log += " -------------------\n - Thermochemistry -\n -------------------\n Temperature   298.150 Kelvin.\n";
  for (int i = 1; i <= m.nat.size(); ++i) {
    log += put(" Atom %5d has atomic number %2d and mass %10.5f\n", i, m.nat(i), m.mass(i));
  }
  return log + " Normal termination of Gaussian 16\n";
}

std::string gaussian_fchk(const molecule& m) {
  const int n3 = m.fc.rows();
  std::string file = "sample\nFreq      RB3LYP                    6-31G(d)\n" +
                     put("Number of atoms                            I     %12d\n", m.nat.size()) +
                     put("Atomic numbers                             I   N=%12d\n", m.nat.size());
  int column = 0;
  const auto next = [&](const std::string& field, int per_line, bool last) {
    file += field;
    if (++column == per_line || last) {
      file += "\n";
      column = 0;
    }
  };
  for (int i = 1; i <= m.nat.size(); ++i) next(put("%12d", m.nat(i)), 6, i == m.nat.size());
  file += put("Current cartesian coordinates              R   N=%12d\n", n3);
  for (int k = 0; k < n3; ++k) next(put("%16.8E", m.x.data()[k]), 5, k == n3 - 1);
  file += put("Real atomic weights                        R   N=%12d\n", m.nat.size());
  for (int i = 1; i <= m.nat.size(); ++i) next(put("%16.8E", m.mass(i)), 5, i == m.nat.size());
  file += put("Cartesian Force Constants                  R   N=%12d\n", n3 * (n3 + 1) / 2);
  for (int i = 1; i <= n3; ++i) {
    for (int j = 1; j <= i; ++j) next(put("%16.8E", m.fc(i, j)), 5, i == n3 && j == n3);
  }
  return file +
         "Dipole Moment                              R   N=           3\n  0.0E+00  0.0E+00  0.0E+00\n";
}

std::string molpro_output(const molecule& m) {
  const int n3 = m.fc.rows();
  std::string file = put("\n%61s%s\n\n ATOMIC COORDINATES\n\n NR  ATOM    CHARGE       X  Y  Z\n\n",
                         "***  PROGRAM SYSTEM ", "MOLPRO  ***");
  for (int i = 1; i <= m.nat.size(); ++i) {
    file += put("%4d  %-7s%5.2f", i, symbol(m, i).c_str(), static_cast<double>(m.nat(i))) +
            xyz(m, i, "%15.9f%15.9f%15.9f\n", 1.0);
  }
  file += "\n Dump information in style XYZ to output\n\n" + put("%5d\n", m.nat.size()) + " sample\n";
  for (int i = 1; i <= m.nat.size(); ++i) {
    file += put("%-3s", symbol(m, i).c_str()) + xyz(m, i, "%20.10f%20.10f%20.10f\n", 1.0);
  }
  file += "\n Force Constants (Second Derivatives of the Energy) in [a.u.]\n";
  for (int ib = 1; ib <= n3; ib += 5) {
    file += put("%30s", "");
    for (int j = ib; j <= std::min(ib + 4, n3); ++j) file += put("   GX%-6d", j);
    file += "\n";
    for (int i = ib; i <= n3; ++i) {
      file += put("           GX%-6d", i);
      for (int j = ib; j <= std::min(i, ib + 4); ++j) file += put("%12.7f", m.fc(i, j));
      file += "\n";
    }
  }
  file += "\n Atomic Masses\n" + put(" %3d-%3d", 1, m.nat.size());
  for (int i = 1; i <= m.nat.size(); ++i) file += put("%12.6f", m.mass(i));
  return file + "\n\n Wavenumbers [cm-1]     1198.09\n";
}

std::string turbomole_output(const molecule& m) {
  const int n3 = m.fc.rows();
  std::string file =
      " aoforce(node1) : TURBOMOLE V6.4 22 Sep 2012 at 17:26:03\n\n"
      "              +--------------------------------------------------+\n"
      "              | Atomic coordinate, charge and isotop information |\n"
      "              +--------------------------------------------------+\n\n"
      "                    atomic coordinates            atom    charge  isotop\n";
  for (int i = 1; i <= m.nat.size(); ++i) {
    file += xyz(m, i, "%20.8f%14.8f%14.8f", 1.0) +
            put("    %-2s  %10.3f     0\n", lowercase(symbol(m, i)).c_str(), static_cast<double>(m.nat(i)));
  }
  file += "\n   type   atoms  prim   cont   basis\n" + put("   total:%5d     60     20\n\n", m.nat.size());
  file += "            ATOMIC WEIGHTS (average over the natural occurance of isotops)\n\n";
  for (int i = 1; i <= m.nat.size(); ++i) {
    file += put("%15d     %-2s%21.5f\n", i, lowercase(symbol(m, i)).c_str(), m.mass(i));
  }
  file += "\n          CARTESIAN FORCE CONSTANT MATRIX (hartree/bohr**2)\n          ----------\n";
  for (int ib = 1; ib <= n3; ib += 6) {
    file += "\n   ATOM  " + put("%15d %s", (ib + 2) / 3, "\n");
    file += put("%18s        dy        dz        dx        dy        dz\n", "dx");
    for (int i = ib; i <= n3; ++i) {
      file += (i % 3 == 1 ? put("%4d %-2s    ", (i + 2) / 3, lowercase(symbol(m, (i + 2) / 3)).c_str())
                          : std::string(11, ' ')) +
              (i % 3 == 1   ? "dx "
               : i % 3 == 2 ? "dy "
                            : "dz ");
      for (int j = ib; j <= std::min(i, ib + 5); ++j) file += put("%10.7f", m.fc(i, j));
      file += "\n";
    }
  }
  return file + "\n    force : all done  ****\n";
}

std::string chemshell_output(const molecule& m) {
  const int n3 = m.fc.rows();
  std::string file = "   ChemShell version 3.7.0\n\n" + put("%48s\n", "Input Coordinates") +
                     "                               -----------------\n    No  atom   charge   x   y   z\n";
  for (int i = 1; i <= m.nat.size(); ++i) {
    file += put("%6d  %-2s%11.2f", i, symbol(m, i).c_str(), static_cast<double>(m.nat(i))) +
            xyz(m, i, "%16.9f%16.9f%16.9f\n", 1.0);
  }
  file += "\n          atomic weights\n          --------------\n";
  for (int i = 1; i <= m.nat.size(); ++i)
    file += put("%6d  %-2s%16.7f\n", i, symbol(m, i).c_str(), m.mass(i));
  file +=
      put("\n%53s\n", "cartesian force constant matrix") + put("%53s\n", "-------------------------------");
  for (int kb = 1; kb <= n3; kb += 9) {
    file += "\n\n\n hessian block\n\n\n columns\n elements\n components\n\n\n";
    for (int j = 1; j <= n3; ++j) {
      file += put("%6d %-4s%-9s", j, symbol(m, (j + 2) / 3).c_str(), "x");
      for (int k = kb; k <= std::min(kb + 8, n3); ++k) file += put("%12.8f", m.fc(j, k));
      file += "\n";
    }
  }
  return file + "\n end of run\n";
}

std::string numforce_output(const molecule& m) {
  const int n3 = m.fc.rows();
  std::string file =
      " NUMERICAL FREQUENCY\n VERSION 1.2\n" + put(" NAtoms %6d\n\n", m.nat.size()) +
      " Coordinate Bohr\n   No    Z        mass               x               y               z\n";
  for (int i = 1; i <= m.nat.size(); ++i) {
    file += put("%5d%5d%14.8f", i, m.nat(i), m.mass(i)) + xyz(m, i, "%20.10f%20.10f%20.10f\n", 1.0);
  }
  file += "\n Unprojected Force Constant Matrix\n";
  for (int i = 1; i <= n3; ++i) {
    file += put(" row %6d\n", i);
    for (int j = 1; j <= n3; ++j) file += put("%15.10f", m.fc(i, j)) + (j % 5 == 0 || j == n3 ? "\n" : "");
  }
  return file;
}

std::string nwchem_output(const molecule& m) {
  const int n3 = m.fc.rows();
  std::string file = "             Northwest Computational Chemistry Package (NWChem) 7.0.2\n\n";
  for (const double size : {1.01, 1.0}) {
    file +=
        "                             Geometry \"geometry\" -> \"geometry\"\n\n"
        " Output coordinates in angstroms (scale by  1.889725989 to convert to a.u.)\n\n"
        "  No.       Tag          Charge          X              Y              Z\n"
        " ---- ---------------- ---------- -------------- -------------- --------------\n";
    for (int i = 1; i <= m.nat.size(); ++i) {
      file += put("%5d %-16s %10.4f", i, symbol(m, i).c_str(), static_cast<double>(m.nat(i))) +
              xyz(m, i, "%15.8f%15.8f%15.8f\n", size * bohr_to_ang);
    }
    file += "\n      Atomic Mass\n\n";
  }
  file +=
      "          MASS-WEIGHTED PROJECTED HESSIAN (Hartree/Bohr/Bohr/Kamu)\n"
      "          --------------------------------------------------------\n";
  for (int ib = 1; ib <= n3; ib += 10) {
    file += "\n\n     columns\n   ----- ----- ----- ----- -----\n";
    for (int i = ib; i <= n3; ++i) {
      file += put("%5d ", i);
      for (int j = ib; j <= std::min(i, ib + 9); ++j) {
        const double root = std::sqrt(m.mass((i + 2) / 3) * m.mass((j + 2) / 3));
        std::string field = put("%13.5E", m.fc(i, j) * 1000.0 / root);
        std::replace(field.begin(), field.end(), 'E', 'D');
        file += field;
      }
      file += "\n";
    }
  }
  return file + "\n center of mass\n";
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
