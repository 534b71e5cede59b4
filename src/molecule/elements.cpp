// The table of the elements, one a line in the order of the atomic numbers, and the look-ups in it.
#include "molecule/elements.hpp"  // for the routines

#include <iterator>
#include <string>

#include "molecule/constants.hpp"  // for max_element
#include "text/fixed_text.hpp"     // for text
#include "text/layout.hpp"         // for layout
#include "text/messages.hpp"       // for lines_of, free_line
#include "text/stop.hpp"           // for stop_printed
#include "text/words.hpp"          // for trim, adjustl, lowercase

namespace vbn {

namespace {

constexpr int max_radius = 105;  // the last element that has a bond radius

struct element {
  const char* symbol = "";
  double mass = 0.0;    // amu, of the most abundant isotope; 0.0 if unknown
  double radius = 0.0;  // angstrom; 0.0 if unknown
};

constexpr element elements[] = {
    {"H", 1.007825037, 0.35},
    {"He", 4.00260325, 1.22},
    {"Li", 7.0160045, 1.23},
    {"Be", 9.0121825, 0.89},
    {"B", 11.0093053, 0.88},
    {"C", 12.0, 0.77},
    {"N", 14.003074008, 0.72},
    {"O", 15.99491464, 0.66},
    {"F", 18.99840325, 0.58},
    {"Ne", 19.9924391, 1.6},  // 10
    {"Na", 22.9897697, 0.0},
    {"Mg", 23.985045, 0.0},
    {"Al", 26.9815413, 1.25},
    {"Si", 27.9769284, 1.17},
    {"P", 30.9737634, 1.1},
    {"S", 31.9720718, 1.04},
    {"Cl", 34.968852729, 0.99},
    {"Ar", 39.9623831, 1.91},
    {"K", 38.9637079, 0.0},
    {"Ca", 39.9625907, 0.0},  // 20
    {"Sc", 44.9559136, 1.44},
    {"Ti", 47.9479467, 1.32},
    {"V", 50.9439625, 1.22},
    {"Cr", 51.9405097, 1.19},
    {"Mn", 54.9380463, 1.17},
    {"Fe", 55.9349393, 1.165},
    {"Co", 58.9331978, 1.16},
    {"Ni", 57.9353471, 1.15},
    {"Cu", 62.9295992, 1.17},
    {"Zn", 63.9291454, 1.25},  // 30
    {"Ga", 68.9255809, 1.25},
    {"Ge", 73.9211788, 1.22},
    {"As", 74.9215955, 1.21},
    {"Se", 78.96, 1.17},
    {"Br", 78.9183361, 1.14},
    {"Kr", 83.9115064, 1.98},
    {"Rb", 84.9117, 2.22},
    {"Sr", 87.9056, 1.92},
    {"Y", 88.9054, 1.62},
    {"Zr", 89.9043, 1.45},  // 40
    {"Nb", 92.906, 1.34},
    {"Mo", 97.9055, 1.29},
    {"Tc", 98.9063, 1.27},
    {"Ru", 101.9037, 1.24},
    {"Rh", 102.9048, 1.25},
    {"Pd", 105.9032, 1.28},
    {"Ag", 106.90509, 1.34},
    {"Cd", 113.9036, 1.41},
    {"In", 114.9041, 1.5},
    {"Sn", 117.9018, 1.4},  // 50
    {"Sb", 120.9038, 1.41},
    {"Te", 129.9067, 1.37},
    {"I", 126.9004, 1.33},
    {"Xe", 131.9042, 2.09},
    {"Cs", 133.9051, 2.35},
    {"Ba", 137.905, 1.98},
    {"La", 138.9061, 1.69},
    {"Ce", 139.9053, 1.65},
    {"Pr", 140.9074, 1.65},
    {"Nd", 141.9075, 1.64},  // 60
    {"Pm", 0.0, 1.65},
    {"Sm", 151.9195, 1.66},
    {"Eu", 152.9209, 1.65},
    {"Gd", 157.9241, 1.61},
    {"Tb", 158.925, 1.59},
    {"Dy", 163.9288, 1.59},
    {"Ho", 164.9303, 1.58},
    {"Er", 165.9304, 1.57},
    {"Tm", 168.9344, 1.56},
    {"Yb", 173.939, 1.56},  // 70
    {"Lu", 174.9409, 1.56},
    {"Hf", 179.9468, 1.44},
    {"Ta", 180.948, 1.34},
    {"W", 183.951, 1.3},
    {"Re", 186.956, 1.28},
    {"Os", 189.9586, 1.26},
    {"Ir", 192.9633, 1.26},
    {"Pt", 194.9648, 1.29},
    {"Au", 196.9666, 1.34},
    {"Hg", 201.9706, 1.44},  // 80
    {"Tl", 204.9745, 1.55},
    {"Pb", 207.9766, 1.54},
    {"Bi", 208.9804, 1.52},
    {"Po", 208.9825, 1.53},
    {"At", 210.9875, 1.5},
    {"Rn", 222.0175, 2.2},
    {"Fr", 223.0198, 3.24},
    {"Ra", 226.0254, 2.68},
    {"Ac", 227.0278, 2.25},
    {"Th", 232.0382, 2.16},  // 90
    {"Pa", 231.0359, 1.93},
    {"U", 238.0508, 1.66},
    {"Np", 237.048, 1.57},
    {"Pu", 242.0587, 1.81},
    {"Am", 243.0614, 2.21},
    {"Cm", 246.0674, 1.43},
    {"Bk", 247.0702, 1.42},
    {"Cf", 249.0748, 1.4},
    {"Es", 252.0829, 1.39},
    {"Fm", 252.0827, 1.38},  // 100
    {"Md", 255.0906, 1.37},
    {"No", 0.0, 1.36},
    {"Lr", 0.0, 1.34},
    {"Rf", 0.0, 1.3},
    {"Db", 0.0, 1.3},
    {"Sg", 0.0},
    {"Bh", 0.0},
    {"Hs", 0.0},
    {"Mt", 0.0},
    {"Ds", 0.0},  // 110
    {"Rg", 0.0},
    {"Cn", 0.0},
    {"Uut", 0.0},
    {"Fl", 0.0},
    {"Uup", 0.0},
    {"Lv", 0.0},
    {"Uus", 0.0},
    {"Uuo", 0.0},
};
static_assert(std::size(elements) == max_element);

const element& element_of(int nat) { return elements[static_cast<std::size_t>(nat - 1)]; }

bool is_element(int nat) { return nat >= 1 && nat <= max_element; }

}  // namespace

std::string_view element_symbol(int nat) { return element_of(nat).symbol; }

array1<text<2>> nat_to_symbol(const array1<int>& nat) {
  static const layout out_of_range(R"x(("nat(",i0,") = ",i0," is out of [1,118]"))x");
  array1<text<2>> symbol(nat.size());
  for (int i = 1; i <= nat.size(); ++i) {
    if (!is_element(nat(i))) {
      stop_printed(free_line({"Error!"}) + lines_of(out_of_range, {i, nat(i)}));
    }
    symbol(i) = element_symbol(nat(i));
  }
  return symbol;
}

int symbol_to_nat(std::string_view symbol) {
  const std::string sought = lowercase(trim(adjustl(symbol)));
  for (int nat = 1; nat <= max_element; ++nat) {
    if (sought == lowercase(element_symbol(nat))) return nat;
  }
  return 0;
}

// Standard atomic weights (IUPAC 2005), amu, H to Bi; 0.0 for an element without one.
// clang-format off
constexpr double weights[] = {
    1.00794, 4.002602, 6.941, 9.012182, 10.811, 12.0107, 14.0067, 15.9994, 18.9984032, 20.1797,              // 10
    22.98976928, 24.305, 26.9815386, 28.0855, 30.973762, 32.065, 35.453, 39.948, 39.0983, 40.078,            // 20
    44.955912, 47.867, 50.9415, 51.9961, 54.938045, 55.845, 58.933195, 58.6934, 63.546, 65.38,               // 30
    69.723, 72.64, 74.9216, 78.96, 79.904, 83.798, 85.4678, 87.62, 88.90585, 91.224,                         // 40
    92.90638, 95.96, 0.0, 101.07, 102.9055, 106.42, 107.8682, 112.411, 114.818, 118.71,                      // 50
    121.76, 127.6, 126.90447, 131.293, 132.9054519, 137.327, 138.90547, 140.116, 140.90765, 144.242,         // 60
    0.0, 150.36, 151.964, 157.25, 158.92535, 162.5, 164.93032, 167.259, 168.93421, 173.054,                  // 70
    174.9668, 178.49, 180.94788, 183.84, 186.207, 190.23, 192.217, 195.084, 196.966569, 200.59,              // 80
    204.3833, 207.2, 208.9804};
// clang-format on

double average_mass(int nat) {
  const auto place = static_cast<std::size_t>(nat - 1);
  return nat >= 1 && place < std::size(weights) && weights[place] > 0.0 ? weights[place] : nat_to_mass(nat);
}

double nat_to_mass(int nat) { return is_element(nat) ? element_of(nat).mass : 0.0; }

std::optional<double> nat_to_radius(int nat) {
  if (nat < 1 || nat > max_radius) return std::nullopt;
  return element_of(nat).radius;
}

array1<text<10>> get_sym_num(const array1<text<2>>& symbol) {
  static const layout name(R"x((a2,"(",i0,")"))x");
  array1<text<10>> sym_num(symbol.size());
  for (int i = 1; i <= symbol.size(); ++i) sym_num(i) = name.line({symbol(i).trimmed(), i});
  return sym_num;
}

}  // namespace vbn
