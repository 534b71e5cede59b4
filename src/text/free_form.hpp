// Free-form reads as in the Fortran standard: values separated by blanks, commas and line ends.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace vbn {

// Where one value of a free-form read is stored. `skip()` reads a word and drops it.
class target {
 public:
  enum class kind { integer, real, characters, skipped };

  target(int& i) : kind_(kind::integer), integer_(&i) {}
  target(double& r) : kind_(kind::real), real_(&r) {}
  target(std::string& t) : kind_(kind::characters), text_(&t) {}
  static target skip() { return target(); }

  kind type() const { return kind_; }
  int& integer() const { return *integer_; }
  double& real() const { return *real_; }
  std::string& characters() const { return *text_; }

 private:
  target() = default;

  kind kind_ = kind::skipped;
  int* integer_ = nullptr;
  double* real_ = nullptr;
  std::string* text_ = nullptr;
};

// How a free-form read ended: its position, after the last value or at the one that failed, and the failure
// in words, nullptr for none.
struct free_read {
  const char* at;
  const char* failure;
};

// Free-form read from a text in which line ends count as blanks; a text with too few values is a failure. A
// value that a slash or a comma leaves out stays unchanged and is no failure.
free_read read_free_form(std::string_view from, std::initializer_list<target> targets);
// Drops `words` words and reads many reals, the fast way.
free_read read_free_form(std::string_view from, int words, std::span<double> numbers);

// The same; the result is only whether the read succeeded.
bool read_free(std::string_view from, std::initializer_list<target> targets);
bool read_free_after(std::string_view from, int words, std::span<double> numbers);

// The failure of a read that needs more text than there is.
inline constexpr const char* out_of_text = "the file ends before all values are read";
inline constexpr const char* bad_value = "cannot read a value";

}  // namespace vbn
