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
#include "text/messages.hpp"   // for messages
#include "text/stop.hpp"       // for fault

namespace vbn {

// A file that is read into memory when it is opened, and then line by line. It can be moved; lines read from
// it stay valid. The position is always the start of a line or the end of the file. A line ends with a line
// feed; a carriage return before it is not part of the line.
class input_file {
 public:
  // Opens an existing file. If it cannot be opened or is not a regular file, the run ends with a message that
  // names it. Warnings of its readers go to `say`.
  input_file(std::string_view name, const messages& say);
  // The same without ending the run; the result says whether it succeeded.
  static std::optional<input_file> try_open(std::string_view name, const messages& say);
  // A text in memory as a file, for tests and for text that has no file.
  static input_file from_memory(std::string_view name, std::string_view content, const messages& say = {});

  const std::string& name() const { return name_; }
  const messages& say() const { return say_; }
  void warn(std::string_view text) const { say_.warn(text); }
  // Number, from 1, of the line that was read last; 0 before the first. Each call counts from the start, so
  // this is for messages.
  int line_number() const;

  // The whole next line, valid as long as the file is open. False at the end of the file.
  bool read_line(std::string_view& line);
  // Skips `count` lines. False when the file has fewer.
  bool skip_lines(int count);
  // Goes back one line, so that the line read last is read again.
  void back_line();
  void rewind();
  bool at_end() const { return pos_ == size_; }

  // The whole content, and the position in it, for searches that are faster over the whole than line by line.
  // `seek_line_after(offset)` returns the line with the byte at `offset` and moves to the line after it.
  std::string_view content() const { return {held_.get(), size_}; }
  std::size_t position() const { return pos_; }
  std::string_view seek_line_after(std::size_t offset);

  // Free-form read: reads as many values as there are targets, from the current line on and over as many
  // lines as needed; the rest of the last line is dropped. `expected` says in the message of a failure what
  // should be there, as "the coordinates of atom 3". A read that fails ends the run. Values that a slash or a
  // comma leaves out stay unchanged; this is not a failure.
  void read(std::initializer_list<target> targets, std::string_view expected);
  void read(std::span<double> numbers, std::string_view expected);  // many reals, the fast way
  // The same after dropping `words` words: "one word, then reals".
  void read_after(int words, std::span<double> numbers, std::string_view expected);
  // The same without ending the run; the result says whether it succeeded.
  bool try_read(std::initializer_list<target> targets);

  // Fixed-column read of reals under a layout of x, f and e items: one line, and more as the layout restarts.
  void read_fixed(const layout& columns, std::span<double> numbers, std::string_view expected);

  // A fault in the line read last, or at the end of the file, for messages of the readers.
  fault here(std::string what, std::string expected) const;

 private:
  explicit input_file(const messages& say) : say_(say) {}

  // What `try_open` does; `why` is the reason of a failure.
  static std::optional<input_file> open(std::string_view name, const messages& say, std::string& why);
  std::size_t line_end(std::size_t from) const;  // the line feed at or after `from`, or the end of the file
  // Ends a free-form read: moves to the next line, or ends the run after a failure.
  void finish_read(const free_read& done, std::string_view expected);
  [[noreturn]] void fail_at(std::size_t spot, const char* what, std::string_view expected);

  std::string name_;
  messages say_;
  std::unique_ptr<char[]> held_;
  std::size_t size_ = 0;
  std::size_t pos_ = 0;
};

}  // namespace vbn
