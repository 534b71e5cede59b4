// Counts the elements of a molecule.
#include "molecule/formula.hpp"  // for formula

#include <map>

namespace vbn {

std::string formula(const array1<text<2>>& symbols) {
  std::map<std::string, int> count;
  for (const text<2>& symbol : symbols) ++count[symbol.str()];
  std::string shown;
  const auto add = [&](const std::string& symbol) {
    const int n = count[symbol];
    if (n > 0) shown += symbol;
    if (n > 1) shown += std::to_string(n);
    count.erase(symbol);
  };
  // The order of Hill (1900): carbon, hydrogen, then by the alphabet.
  if (count.contains("C")) {
    add("C");
    add("H");
  }
  while (!count.empty()) add(std::string(count.begin()->first));
  return shown;
}

}  // namespace vbn
