// What Gaussian, Molpro, NWChem and Turbomole print of their own results.
#include <algorithm>
#include <cmath>
#include <string_view>

#include "readers/programs.hpp"  // for gaussian_log_printed
#include "text/number.hpp"       // for to_real
#include "text/words.hpp"        // for word_of, number_of_words, adjustl

namespace vbn {

namespace {

// The rest of the text from the last occurrence of `heading` on; empty when there is none.
std::string_view from_last(std::string_view text, std::string_view heading) {
  const std::size_t at = text.rfind(heading);
  return at == std::string_view::npos ? std::string_view() : text.substr(at);
}

// The rest of the line after the last occurrence of `marker`; empty when there is none.
std::string_view after_last(std::string_view text, std::string_view marker) {
  const std::string_view rest = from_last(text, marker);
  return rest.empty() ? rest : rest.substr(marker.size(), rest.find('\n', marker.size()) - marker.size());
}

std::optional<double> real_in(std::string_view word) {
  double number = 0.0;
  if (word.empty() || !to_real(word, number) || !std::isfinite(number)) return std::nullopt;
  return number;
}

std::optional<int> integer_in(std::string_view word) {
  const std::optional<double> number = real_in(word);
  if (!number || std::abs(*number) > 1000.0) return std::nullopt;
  return static_cast<int>(std::lround(*number));
}

// The numbers of every line of the text that begins with `marker`; imaginary ones with a minus or an "i" in
// front.
std::vector<double> numbers_of_lines(std::string_view text, std::string_view marker) {
  std::vector<double> numbers;
  while (!text.empty()) {
    const std::string_view line = adjustl(text.substr(0, text.find('\n')));
    text.remove_prefix(
        std::min(text.size(), text.find('\n') == std::string_view::npos ? text.size() : text.find('\n') + 1));
    if (!line.starts_with(marker)) continue;
    const std::string_view row = line.substr(marker.size());
    for (int k = 1; k <= number_of_words(row); ++k) {
      std::string_view word = word_of(row, k);
      const bool imaginary = word.starts_with('i');
      if (imaginary) word.remove_prefix(1);
      if (const std::optional<double> number = real_in(word))
        numbers.push_back(imaginary ? -*number : *number);
    }
  }
  return numbers;
}

std::string first_word(std::string_view text) { return std::string(word_of(text, 1)); }

// "RB3LYP", "UB3LYP" and "ROB3LYP" are one method.
std::string without_spin(std::string_view method) {
  if (method.starts_with("RO") && !method.ends_with("OLYP") && !method.ends_with("O3LYP"))
    method.remove_prefix(2);
  else if (method.starts_with('R') || method.starts_with('U'))
    method.remove_prefix(1);
  return std::string(method);
}

// A calculation of frequencies between others in one file: the text before its last frequencies, and from
// them on; the second is empty where no frequencies are printed.
struct frequency_job {
  std::string_view before, after;
};

frequency_job job_of(std::string_view text, std::string_view heading) {
  const std::size_t at = text.rfind(heading);
  if (at == std::string_view::npos) return {text, {}};
  return {text.substr(0, at), text.substr(at)};
}

// The basis set of all atoms under the heading of NWChem, or of the first tag.
std::string nwchem_basis(std::string_view text) {
  std::string_view table = from_last(text, "Summary of \"ao basis\" -> \"\"");
  constexpr std::string_view rule = "---------------------\n";
  const std::size_t end = table.find(" ---------------------\n");
  if (end == std::string_view::npos) return {};
  table.remove_prefix(end + rule.size() + 1);
  const std::string_view next = table.substr(std::min(table.size(), table.find('\n') + 1));
  const bool several = number_of_words(next.substr(0, next.find('\n'))) > 1;
  return several ? std::string() : std::string(word_of(table.substr(0, table.find('\n')), 2));
}

// The functional; "HF" where the module of Hartree and Fock is the only one.
std::string nwchem_method(std::string_view text) {
  const std::size_t functional = text.rfind(" Method XC Potential");
  if (functional != std::string_view::npos) {
    const std::size_t begin = text.rfind('\n', functional) + 1;
    return std::string(adjustl(text.substr(begin, functional - begin)));
  }
  for (const std::string_view correlated : {"NWChem MP2", "NWChem Extensible Many-Electron", "NWChem DFT"})
    if (text.find(correlated) != std::string_view::npos) return {};
  return text.find("NWChem SCF Module") == std::string_view::npos ? "" : "HF";
}

}  // namespace

printed_results gaussian_log_printed(input_file& file) {
  constexpr std::string_view heading = "Harmonic frequencies (cm**-1)";
  const auto [before, after] = job_of(file.content(), heading);
  printed_results printed;
  printed.frequencies = numbers_of_lines(from_last(after, heading), "Frequencies -- ");
  // Of the forces at the geometry of the frequencies, not of a later job.
  const std::size_t next = after.find("Maximum Force ");
  const std::string_view forces = after.substr(0, after.find('\n', std::min(next, after.size())));
  printed.max_gradient = real_in(word_of(after_last(after.empty() ? before : forces, "Maximum Force "), 1));
  const std::string_view charge = after_last(before, "\n Charge =");
  printed.charge = integer_in(word_of(charge, 1));
  printed.multiplicity = integer_in(word_of(charge, 4));
  const std::string_view method = after_last(before, "SCF Done:  E(");
  printed.method = without_spin(method.substr(0, method.find(')')));
  const std::string_view basis = after_last(before, "Standard basis:");
  printed.basis_set = first_word(basis.substr(0, basis.find(" (")));
  return printed;
}

printed_results molpro_printed(input_file& file) {
  const auto [before, after] = job_of(file.content(), "\n Normal Modes\n");
  printed_results printed;
  printed.frequencies =
      numbers_of_lines(after.substr(0, after.find("Normal Modes of low")), "Wavenumbers [cm-1]");
  const std::string_view method = after_last(before, "(Calculation of harmonic vibrational spectra for ");
  const std::string_view name = method.substr(0, method.find(')'));
  // The functional of "KS-SCF" is not printed with it.
  if (name == "HF-SCF") printed.method = "HF";
  printed.basis_set = first_word(after_last(before, "SETTING BASIS          ="));
  const std::string_view steps = from_last(before, " ITER.   ENERGY(OLD)    ENERGY(NEW)");
  const std::string_view rows = steps.substr(0, steps.find("\n\n"));
  printed.max_gradient = real_in(word_of(rows.substr(rows.rfind('\n') + 1), 5));
  return printed;
}

printed_results nwchem_printed(input_file& file) {
  constexpr std::string_view heading = "(Projected Frequencies expressed in cm-1)";
  const auto [before, after] = job_of(file.content(), heading);
  printed_results printed;
  printed.frequencies = numbers_of_lines(from_last(after, heading), "P.Frequency");
  if (const std::string_view step = after_last(before, "\n@ "); !step.empty())
    printed.max_gradient = real_in(word_of(step, 4));
  printed.charge = integer_in(word_of(after_last(before, " Charge           :"), 1));
  printed.multiplicity = integer_in(word_of(after_last(before, "Spin multiplicity:"), 1));
  printed.method = nwchem_method(before);
  printed.basis_set = nwchem_basis(before);
  return printed;
}

printed_results turbomole_printed(input_file& file) {
  const std::string_view text = file.content();
  printed_results printed;
  printed.frequencies = numbers_of_lines(text, "frequency ");
  printed.charge = integer_in(word_of(after_last(text, "molecular charge           :"), 1));
  const std::string_view functional = from_last(text, "\n           density functional\n");
  const std::size_t name = functional.find("-\n ");
  if (name != std::string_view::npos) printed.method = first_word(functional.substr(name + 2));
  const std::string_view basis = from_last(text, "type   atoms  prim   cont   basis\n");
  const std::size_t row = basis.find("-\n");
  if (row != std::string_view::npos) {
    const std::string_view first = basis.substr(row + 2);
    printed.basis_set = std::string(word_of(first.substr(0, first.find('\n')), 5));
  }
  return printed;
}

}  // namespace vbn
