// What Gaussian, Molpro, NWChem and Turbomole print of their own results.
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

}  // namespace

printed_results gaussian_log_printed(input_file& file) {
  const std::string_view text = file.content();
  printed_results printed;
  printed.frequencies = numbers_of_lines(from_last(text, "Harmonic frequencies (cm**-1)"), "Frequencies -- ");
  printed.max_gradient = real_in(word_of(after_last(text, "Maximum Force "), 1));
  const std::string_view charge = after_last(text, "\n Charge =");
  printed.charge = integer_in(word_of(charge, 1));
  printed.multiplicity = integer_in(word_of(charge, 4));
  // "RB3LYP" and "UB3LYP" are one method.
  const std::string_view method = after_last(text, "SCF Done:  E(");
  const std::string_view name = method.substr(0, method.find(')'));
  printed.method = std::string(name.starts_with("RO") ? name.substr(2) : name.substr(name.empty() ? 0 : 1));
  const std::string_view basis = after_last(text, "Standard basis:");
  printed.basis_set = first_word(basis.substr(0, basis.find(" (")));
  return printed;
}

printed_results molpro_printed(input_file& file) {
  printed_results printed;
  const std::string_view modes = from_last(file.content(), "\n Normal Modes\n");
  printed.frequencies =
      numbers_of_lines(modes.substr(0, modes.find("Normal Modes of low")), "Wavenumbers [cm-1]");
  printed.basis_set = first_word(after_last(file.content(), "SETTING BASIS          ="));
  return printed;
}

printed_results nwchem_printed(input_file& file) {
  const std::string_view text = file.content();
  printed_results printed;
  printed.frequencies =
      numbers_of_lines(from_last(text, "(Projected Frequencies expressed in cm-1)"), "P.Frequency");
  if (const std::string_view step = after_last(text, "\n@ "); !step.empty())
    printed.max_gradient = real_in(word_of(step, 4));
  printed.charge = integer_in(word_of(after_last(text, " Charge           :"), 1));
  printed.multiplicity = integer_in(word_of(after_last(text, "Spin multiplicity:"), 1));
  const std::size_t method = text.rfind(" Method XC Potential");
  if (method != std::string_view::npos) {
    const std::size_t begin = text.rfind('\n', method) + 1;
    printed.method = std::string(adjustl(text.substr(begin, method - begin)));
  }
  return printed;
}

printed_results turbomole_printed(input_file& file) {
  printed_results printed;
  printed.frequencies = numbers_of_lines(file.content(), "frequency ");
  printed.charge = integer_in(word_of(after_last(file.content(), "molecular charge           :"), 1));
  return printed;
}

}  // namespace vbn
