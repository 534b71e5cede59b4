// Whole runs against stored results, number by number.
//
// A folder below `expected` holds an input, whose first line names where its other files are:
// "! examples/NAME", "! real_data/NAME", or "! here", and after a blank the program when it is not vbn. Its
// folder `written` holds what the run writes; `printed` is the exit status, standard output and the error
// stream. scripts/make-expected makes these files. In them '?' is a digit that the physics leaves open, a
// line of one '?' any line, "..." at the end of a line its rest, and "..." alone any number of lines to the
// end.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <regex>

#include "tests/end_to_end/whole_run.hpp"  // for whole_run

namespace vbn::end_to_end {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> words_of(const std::string& line) {
  static const std::regex word(R"([-+]?[0-9?]*\.[0-9?]+(?:[EeDd][-+][0-9?]+)?|[^\s.]+|\.)");
  return {std::sregex_token_iterator(line.begin(), line.end(), word), std::sregex_token_iterator()};
}

// Equal words, or numbers that differ by no more than two units of their last digit or, when they are written
// with an exponent, by the rounding errors of a matrix.
bool same_word(const std::string& expected, const std::string& word) {
  if (expected == word || expected.find('?') != std::string::npos) return true;
  const std::size_t point = expected.find('.');
  if (point == std::string::npos || word.find('.') == std::string::npos) return false;
  const std::size_t mark = std::min(expected.find_first_of("EeDd", point), expected.size());
  const auto number = [](std::string text) {
    std::replace(text.begin(), text.end(), 'D', 'E');
    return std::strtod(text.c_str(), nullptr);
  };
  const bool exponent = mark < expected.size();
  const int power = exponent ? std::atoi(expected.c_str() + mark + 1) : 0;
  const double unit = std::pow(10.0, power - static_cast<int>(mark - point - 1));
  return std::abs(number(expected) - number(word)) < std::max(2.1 * unit, exponent ? 1e-9 : 0.0);
}

bool same_line(const std::string& expected, const std::string& line) {
  const std::vector<std::string> a = words_of(expected), b = words_of(line);
  if (expected.ends_with(" ...")) return line.starts_with(expected.substr(0, expected.size() - 3));
  return expected == "?" ||
         (expected.size() == line.size() && std::equal(a.begin(), a.end(), b.begin(), b.end(), same_word));
}

void expect_same(const std::string& file, const std::string& expected, const std::string& written) {
  std::vector<std::string> a = lines_of(expected), b = lines_of(written);
  if (!a.empty() && a.back() == "...") {
    a.pop_back();
    b.resize(std::min(a.size(), b.size()));
  }
  EXPECT_EQ(a.size(), b.size()) << "lines of " << file;
  int shown = 0;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()) && shown < 5; ++i)
    if (!same_line(a[i], b[i]))
      ADD_FAILURE() << file << ", line " << i + 1 << "\n" << a[i] << "\n" << b[i], ++shown;
}

class expected : public testing::TestWithParam<std::string> {};

TEST_P(expected, files_and_texts_come_out) {
  const whole_run stored(fs::path(VBN_EXPECTED) / GetParam() / "written");
  whole_run run(fs::path(VBN_EXPECTED) / GetParam());
  std::string place = lines_of(run.read("run.inp")).at(0).substr(2);
  if (const std::size_t blank = place.find(' '); blank != std::string::npos) {
    run.program = place.substr(blank + 1);
    place.resize(blank);
  }
  if (place.starts_with("examples/")) run.add(fs::path(VBN_EXAMPLES).parent_path() / place);
  if (place.starts_with("real_data/")) {
    VBN_NEEDS_REAL_DATA();
    run.add(real_data() / place.substr(10));
  }
  run.run("run.inp");
  const std::string printed = "status " + std::to_string(run.status) + "\n" + run.out + run.err;
  for (const auto& [file, content] : stored.files())
    expect_same(file, content, file == "printed" ? printed : run.read(file));
}

std::vector<std::string> all_cases() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(VBN_EXPECTED)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

INSTANTIATE_TEST_SUITE_P(runs, expected, testing::ValuesIn(all_cases()),
                         [](const auto& it) { return it.param; });

}  // namespace
}  // namespace vbn::end_to_end
