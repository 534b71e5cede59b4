// The elements: symbols, masses and bond radii by atomic number.
#pragma once

#include <optional>
#include <string_view>

#include "linalg/array.hpp"     // for array1
#include "text/fixed_text.hpp"  // for text

namespace vbn {

// Symbol of an atomic number from 1 to 118.
std::string_view element_symbol(int nat);

// The symbol of each nat(i). A number outside 1 to 118 is printed to standard output and stops the run.
array1<text<2>> nat_to_symbol(const array1<int>& nat);

// Atomic number of a symbol; blanks around it and case do not matter. 0 when no element has it.
int symbol_to_nat(std::string_view symbol);

// Mass in amu of the most abundant isotope (of Se the average over its isotopes). 0.0 for Pm and from No on,
// whose masses are not in the table, and for a number outside 1 to 118: check it before dividing by it.
double nat_to_mass(int nat);

// Natural average in amu, of an element without one the mass above.
double average_mass(int nat);

// Bond radius in angstrom, 0.0 for Na, Mg, K and Ca; none for a number outside 1 to 105.
std::optional<double> nat_to_radius(int nat);

// The name of each atom by symbol and running number, as " C(3)".
array1<text<10>> get_sym_num(const array1<text<2>>& symbol);

}  // namespace vbn
