// Writing of lines to files.
#include "text/output_file.hpp"  // for output_file

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "text/layout.hpp"    // for layout, value
#include "text/messages.hpp"  // for free_line
#include "text/stop.hpp"      // for fail_in
#include "text/words.hpp"     // for trim

namespace vbn {

namespace {

constexpr std::size_t flush_size = 1 << 18;  // bytes collected before they are written

[[noreturn]] void cannot_write(const std::string& name, int error) {
  fail_in(name, std::string("cannot write the file: ") + std::strerror(error),
          "a folder that can be written to, with room for the results");
}

}  // namespace

output_file output_file::nowhere() {
  output_file file;
  file.place_ = place::nowhere;
  return file;
}

output_file output_file::in_memory() {
  output_file file;
  file.place_ = place::memory;
  return file;
}

output_file::output_file(std::string_view name)
    : name_(trim(name)), place_(place::file), file_(std::fopen(name_.c_str(), "wb")) {
  if (file_ == nullptr) cannot_write(name_, errno);
  std::setvbuf(file_, nullptr, _IONBF, 0);
}

output_file::output_file(output_file&& other) noexcept
    : name_(std::move(other.name_)),
      place_(std::exchange(other.place_, place::none)),
      file_(std::exchange(other.file_, nullptr)),
      held_(std::move(other.held_)) {
  other.held_.clear();
}

output_file& output_file::operator=(output_file&& other) noexcept {
  output_file taken(std::move(other));
  std::swap(name_, taken.name_);
  std::swap(place_, taken.place_);
  std::swap(file_, taken.file_);
  std::swap(held_, taken.held_);
  return *this;
}

output_file::~output_file() {
  if (file_ == nullptr) return;
  std::fwrite(held_.data(), 1, held_.size(), file_);
  std::fclose(file_);
}

void output_file::write(const layout& lines, std::initializer_list<value> values) {
  lines.write(held_, values);
  flush_if_full();
}

void output_file::write(const layout& lines, std::span<const value> values) {
  lines.write(held_, values);
  flush_if_full();
}

void output_file::write(const layout& lines, std::span<const double> values) {
  lines.write(held_, values);
  flush_if_full();
}

void output_file::line(std::string_view text) {
  held_ += text;
  held_ += '\n';
  flush_if_full();
}

void output_file::raw(std::string_view text) {
  held_ += text;
  flush_if_full();
}

void output_file::free_form(std::initializer_list<value> values) {
  held_ += free_line(values);
  flush_if_full();
}

void output_file::save() {
  if (place_ == place::file) flush();
}

void output_file::close() {
  if (place_ != place::file) return;
  flush();
  place_ = place::none;
  if (std::fclose(std::exchange(file_, nullptr)) != 0) cannot_write(name_, errno);
}

void output_file::flush_if_full() {
  if (place_ == place::none) throw std::logic_error("write to a file that is not open");
  if (place_ == place::nowhere) held_.clear();
  if (place_ == place::file && held_.size() >= flush_size) flush();
}

void output_file::flush() {
  const std::size_t written = std::fwrite(held_.data(), 1, held_.size(), file_);
  if (written != held_.size()) {
    const int error = errno;
    held_.clear();
    place_ = place::none;
    std::fclose(std::exchange(file_, nullptr));
    cannot_write(name_, error);
  }
  held_.clear();
}

}  // namespace vbn
