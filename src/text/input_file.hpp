// Text files being read: lines, free-form and fixed-column reads.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "text/free_form.hpp"  // for target
#include "text/layout.hpp"     // for layout
#include "text/stop.hpp"       // for fault

namespace vbn {

// A file taken into memory when it is opened, read line by line; it can be moved, and what was read from it
// stays valid. The position is always the start of a line, or the end of the file. Line ends are a line feed;
// a carriage return before it does not belong to the line.
class input_file {
 public:
  // Opens an existing file. One that cannot be opened, or is no regular file, ends the run with a message
  // that names it.
  explicit input_file(std::string_view name);
  // The same, asking for the outcome.
  static std::optional<input_file> try_open(std::string_view name);
  // A file that stands in memory, for tests and for text that has no file.
  static input_file from_memory(std::string_view name, std::string_view content);

  const std::string& name() const { return name_; }
  // Number, from 1, of the line that was read last; 0 before the first. Counted anew at each call, for
  // messages.
  int line_number() const;

  // The next line at its whole length, valid as long as the file is open. False at the end of the file.
  bool read_line(std::string_view& line);
  // Skips `count` lines. False when the file ends before.
  bool skip_lines(int count);
  // Goes back one line, so that the line read last is read again.
  void back_line();
  void rewind();
  bool at_end() const { return pos_ == size_; }

  // All of the content, and the position in it, for searches that are faster on the whole than line by line.
  // After `seek_line_after(offset)` the file stands behind the line that holds the byte at `offset`, which is
  // returned.
  std::string_view content() const { return {held_.get(), size_}; }
  std::size_t position() const { return pos_; }
  std::string_view seek_line_after(std::size_t offset);

  // Free-form read: takes as many values as there are targets, from the current line on, over as many lines
  // as that takes; what is left of the last line is dropped. `expected` says in the message of a failure what
  // was looked for, as "the coordinates of atom 3". A read that fails ends the run. Values that a slash or a
  // comma leaves out stay untouched; they do not count as a failure.
  void read(std::initializer_list<target> targets, std::string_view expected);
  void read(std::span<double> numbers, std::string_view expected);  // many reals, the fast way
  // The same after dropping `words` words: "one word, then reals".
  void read_after(int words, std::span<double> numbers, std::string_view expected);
  // The same, asking for the outcome.
  bool try_read(std::initializer_list<target> targets);

  // Fixed-column read of reals under a layout of x, f and e items: one line, and more as the layout restarts.
  void read_fixed(const layout& columns, std::span<double> numbers, std::string_view expected);

  // A fault at the line read last, or at the end of the file, for messages of the readers.
  fault here(std::string what, std::string expected) const;

 private:
  input_file() = default;

  // What `try_open` does; `why` says what stood in the way.
  static std::optional<input_file> open(std::string_view name, std::string& why);
  std::size_t line_end(std::size_t from) const;  // the line feed at or after `from`, or the end of the file
  // Ends a free-form read: in front of the next line, or the run when there is a failure.
  void finish_read(const free_read& done, std::string_view expected);
  [[noreturn]] void fail_at(std::size_t spot, const char* what, std::string_view expected);

  std::string name_;
  std::unique_ptr<char[]> held_;
  std::size_t size_ = 0;
  std::size_t pos_ = 0;
};

}  // namespace vbn
