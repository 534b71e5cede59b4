// Fuzz target: free-form and fixed-column reads, from a file and from a text.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "text/free_form.hpp"   // for read_free, read_free_after
#include "text/input_file.hpp"  // for input_file, read_free, read_fixed
#include "text/layout.hpp"      // for layout

namespace {

template <class Read>
void attempt(Read read) {
  try {
    read();
  } catch (const vbn::run_end&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vbn;
  if (size == 0) return 0;
  const std::string content(reinterpret_cast<const char*>(data) + 1, size - 1);
  const int how = data[0];
  int i = 0;
  double r = 0.0;
  std::string word;
  std::vector<double> numbers(static_cast<std::size_t>(how % 37));
  static const std::array<layout, 3> columns{layout("(20X,9F12.8)"), layout("(7x,5(  E14.7))"),
                                             layout("(6f10.7)")};

  input_file file = input_file::from_memory("fuzz", content);
  while (!file.at_end()) {
    const int line = file.line_number();
    attempt([&] {
      switch (how % 5) {
        case 0:
          file.read({word, target::skip(), i, r}, "a word, a word, an integer and a real");
          break;
        case 1:
          file.read_after(how % 4, numbers, "reals");
          break;
        case 2:
          file.read_fixed(columns[static_cast<std::size_t>(how) % columns.size()], numbers,
                          "reals in columns");
          break;
        case 3:
          file.try_read({i, i, word, r});
          break;
        default:
          file.read(numbers, "reals");
      }
    });
    if (file.line_number() == line) break;
  }
  attempt([&] { read_free(content, {i, word, r}); });
  attempt([&] { read_free_after(content, how % 3, numbers); });
  attempt([&] { read_fixed(content, columns[0], numbers); });
  return 0;
}
