// Text files read into memory, and the reads of lines and values from them.
#include "text/input_file.hpp"  // for input_file

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "text/words.hpp"  // for trim

namespace vbn {

namespace {

// A file descriptor that its owner closes; below zero when the file was not opened.
class file_handle {
 public:
  explicit file_handle(int descriptor) : number(descriptor) {}
  file_handle(const file_handle&) = delete;
  file_handle& operator=(const file_handle&) = delete;
  ~file_handle() {
    if (number >= 0) ::close(number);
  }

  const int number;
};

}  // namespace

input_file::input_file(std::string_view name, const messages& say) : say_(say) {
  std::string why;
  std::optional<input_file> opened = open(name, say, why);
  if (!opened) {
    fail_in(trim(name), "cannot read the file: " + why, "a text file that can be read");
  }
  *this = std::move(*opened);
}

std::optional<input_file> input_file::try_open(std::string_view name, const messages& say) {
  std::string why;
  return open(name, say, why);
}

std::optional<input_file> input_file::open(std::string_view name, const messages& say, std::string& why) {
  input_file f(say);
  f.name_ = trim(name);
  // Opening a FIFO without a writer would block.
  const file_handle handle(::open(f.name_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat about {};
  if (handle.number < 0 || ::fstat(handle.number, &about) != 0) {
    why = std::strerror(errno);
    return std::nullopt;
  }
  if (!S_ISREG(about.st_mode)) {
    why = S_ISDIR(about.st_mode) ? "it is a folder" : "it is not a regular file";
    return std::nullopt;
  }
  // The size is a first guess only: a file is read to its end.
  std::size_t room = static_cast<std::size_t>(about.st_size) + 1;
  f.held_ = std::make_unique_for_overwrite<char[]>(room);
  for (;;) {
    const ssize_t got = ::read(handle.number, f.held_.get() + f.size_, room - f.size_);
    if (got == 0) return f;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      why = std::strerror(errno);
      return std::nullopt;
    }
    f.size_ += static_cast<std::size_t>(got);
    if (f.size_ == room) {
      auto larger = std::make_unique_for_overwrite<char[]>(2 * room);
      std::copy_n(f.held_.get(), f.size_, larger.get());
      f.held_ = std::move(larger);
      room *= 2;
    }
  }
}

input_file input_file::from_memory(std::string_view name, std::string_view content, const messages& say) {
  input_file f(say);
  f.name_ = name;
  f.size_ = content.size();
  f.held_ = std::make_unique_for_overwrite<char[]>(content.size());
  std::copy(content.begin(), content.end(), f.held_.get());
  return f;
}

int input_file::line_number() const {
  const std::string_view read = content().substr(0, pos_);
  const auto feeds = std::count(read.begin(), read.end(), '\n');
  return static_cast<int>(feeds) + (read.empty() || read.back() == '\n' ? 0 : 1);
}

std::size_t input_file::line_end(std::size_t from) const {
  if (from == size_) return size_;
  const void* feed = std::memchr(held_.get() + from, '\n', size_ - from);
  return feed == nullptr ? size_ : static_cast<std::size_t>(static_cast<const char*>(feed) - held_.get());
}

bool input_file::read_line(std::string_view& line) {
  if (at_end()) return false;
  const std::size_t end = line_end(pos_);
  line = content().substr(pos_, end - pos_);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  pos_ = std::min(end + 1, size_);
  return true;
}

bool input_file::skip_lines(int count) {
  std::string_view skipped;
  for (int i = 0; i < count; ++i) {
    if (!read_line(skipped)) return false;
  }
  return true;
}

void input_file::back_line() {
  if (pos_ == 0) return;
  const std::size_t feed = content().substr(0, pos_ - 1).rfind('\n');
  pos_ = feed == std::string_view::npos ? 0 : feed + 1;
}

void input_file::rewind() { pos_ = 0; }

std::string_view input_file::seek_line_after(std::size_t offset) {
  pos_ = std::min(offset, size_);
  const std::size_t feed = content().substr(0, pos_).rfind('\n');
  pos_ = feed == std::string_view::npos ? 0 : feed + 1;
  std::string_view line;
  read_line(line);
  return line;
}

void input_file::read(std::initializer_list<target> targets, std::string_view expected) {
  finish_read(read_free_form(content().substr(pos_), targets), expected);
}

void input_file::read(std::span<double> numbers, std::string_view expected) {
  read_after(0, numbers, expected);
}

void input_file::read_after(int words, std::span<double> numbers, std::string_view expected) {
  finish_read(read_free_form(content().substr(pos_), words, numbers), expected);
}

bool input_file::try_read(std::initializer_list<target> targets) {
  const free_read done = read_free_form(content().substr(pos_), targets);
  seek_line_after(static_cast<std::size_t>(done.at - held_.get()));
  return done.failure == nullptr;
}

void input_file::read_fixed(const layout& columns, std::span<double> numbers, std::string_view expected) {
  std::size_t start = 0;
  do {
    const std::size_t begin = pos_;
    std::string_view line;
    if (!read_line(line)) fail_at(pos_, out_of_text, expected);
    int spot = 0;
    const std::size_t read = read_fields(line, columns, start, numbers, spot);
    if (spot > 0) {
      fail_at(begin + std::min(static_cast<std::size_t>(spot - 1), line.size()), bad_value, expected);
    }
    if (read == 0 && !numbers.empty())
      throw std::logic_error("a layout has no item for the values to be read");
    numbers = numbers.subspan(read);
    start = columns.reversion();
  } while (!numbers.empty());
}

fault input_file::here(std::string what, std::string expected) const {
  fault f{.what = std::move(what), .file = name_, .expected = std::move(expected)};
  f.line = line_number();
  if (f.line > 0) {
    const std::size_t end = content()[pos_ - 1] == '\n' ? pos_ - 1 : pos_;
    const std::size_t feed = content().substr(0, end).rfind('\n');
    const std::size_t begin = feed == std::string_view::npos ? 0 : feed + 1;
    f.text = content().substr(begin, end - begin);
  }
  return f;
}

void input_file::finish_read(const free_read& done, std::string_view expected) {
  const std::size_t spot = static_cast<std::size_t>(done.at - held_.get());
  if (done.failure != nullptr) fail_at(spot, done.failure, expected);
  seek_line_after(spot);
}

void input_file::fail_at(std::size_t spot, const char* what, std::string_view expected) {
  const std::string_view line = seek_line_after(spot);
  fault f = here(what, std::string(expected));
  if (spot < size_) {
    f.column = static_cast<int>(spot - static_cast<std::size_t>(line.data() - held_.get())) + 1;
  }
  fail(f);
}

}  // namespace vbn
