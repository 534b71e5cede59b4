// Writing of text files.
#pragma once

#include <cstdio>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "text/layout.hpp"  // for layout and value

namespace vbn {

// A text file being written. Opening creates or empties it. A file that cannot be opened, written or closed
// ends the run with a message that names it.
class output_file {
 public:
  output_file() = default;  // not open; writing to it is an error of the program
  // A file without a place, whose content is dropped, or kept for `content`.
  static output_file nowhere();
  static output_file in_memory();
  explicit output_file(std::string_view name);
  output_file(output_file&&) noexcept;
  output_file& operator=(output_file&&) noexcept;
  output_file(const output_file&) = delete;
  output_file& operator=(const output_file&) = delete;
  ~output_file();  // writes what is left, without a message when that fails

  // One write of the values under the layout.
  void write(const layout& lines, std::initializer_list<value> values = {});
  void write(const layout& lines, std::span<const value> values);
  void write(const layout& lines, std::span<const double> values);
  // A line without changes.
  void line(std::string_view text);
  // Bytes without changes, line ends included.
  void raw(std::string_view text);
  // A free-form record: one leading blank, then the values separated by blanks.
  void free_form(std::initializer_list<value> values);

  const std::string& name() const { return name_; }
  // What was written to a file in memory.
  const std::string& content() const { return held_; }
  // Writes what is held, so that the file can be read while the run goes on.
  void save();
  // Writes what is left and closes the file.
  void close();

 private:
  enum class place { none, file, memory, nowhere };

  void flush_if_full();
  void flush();

  std::string name_;
  place place_ = place::none;
  std::FILE* file_ = nullptr;
  std::string held_;
};

}  // namespace vbn
