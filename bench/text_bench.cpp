// Times numbers to text, text to numbers and the scanning of files against what the standard libraries offer.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "text/input_file.hpp"  // for input_file
#include "text/layout.hpp"      // for layout

namespace {

constexpr int row_length = 900;            // elements of a matrix row at 300 atoms
constexpr int number_count = 500'000;      // reals of a force-constant matrix in a file
constexpr int log_line_count = 1'000'000;  // lines of a large log

// Nanoseconds for each of the `count` items of one pass.
void count_each(benchmark::State& run, int count) {
  run.counters["each"] = benchmark::Counter(static_cast<double>(run.iterations()) * count,
                                            benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void count_bytes(benchmark::State& run, std::size_t size) {
  run.SetBytesProcessed(static_cast<std::int64_t>(run.iterations()) * static_cast<std::int64_t>(size));
}

std::vector<double> matrix_elements(int count) {
  std::mt19937_64 random(1);
  std::normal_distribution<double> element(0.0, 0.1);
  std::vector<double> elements(static_cast<std::size_t>(count));
  for (double& r : elements) r = element(random);
  return elements;
}

std::string number_lines(const char* notation) {
  std::string out;
  vbn::layout(notation).write(out, matrix_elements(number_count));
  return out;
}

std::string log_lines() {
  std::string out;
  for (int i = 0; i < log_line_count; ++i) {
    out += "  some line of a log that holds no marker at all, number ";
    out += std::to_string(i);
    out += '\n';
  }
  out += " MASS-WEIGHTED PROJECTED HESSIAN (Hartree/Bohr/Bohr/Kamu)\n";
  return out;
}

// A file that its owner deletes.
struct scratch_file {
  std::string name =
      (std::filesystem::temp_directory_path() / ("vbn_bench_" + std::to_string(::getpid()))).string();

  explicit scratch_file(const std::string& content) { std::ofstream(name, std::ios::binary) << content; }
  scratch_file(const scratch_file&) = delete;
  scratch_file& operator=(const scratch_file&) = delete;
  ~scratch_file() { std::filesystem::remove(name); }
};

void write_row(benchmark::State& run, const char* notation) {
  const std::vector<double> row = matrix_elements(row_length);
  const vbn::layout lines(notation);
  std::string out;
  for (auto _ : run) {
    out.clear();
    lines.write(out, row);
    benchmark::DoNotOptimize(out.data());
  }
  count_each(run, row_length);
}

void print_row(benchmark::State& run, const char* notation) {
  const std::vector<double> row = matrix_elements(row_length);
  std::vector<char> out(std::size_t{row_length} * 20);
  for (auto _ : run) {
    char* p = out.data();
    for (const double r : row) p += std::snprintf(p, 20, notation, r);
    benchmark::DoNotOptimize(out.data());
  }
  count_each(run, row_length);
}

void read_reals(benchmark::State& run, const char* notation) {
  vbn::input_file file = vbn::input_file::from_memory("numbers", number_lines(notation));
  std::vector<double> numbers(number_count);
  for (auto _ : run) {
    file.rewind();
    file.read(numbers, "the numbers");
    benchmark::DoNotOptimize(numbers.data());
  }
  count_each(run, number_count);
}

void read_reals_getline(benchmark::State& run) {
  const scratch_file scratch(number_lines("(5es16.8)"));
  std::vector<double> numbers(number_count);
  for (auto _ : run) {
    std::ifstream file(scratch.name);
    std::string line;
    std::size_t i = 0;
    while (std::getline(file, line)) {
      const char* p = line.c_str();
      char* end = nullptr;
      for (double r = std::strtod(p, &end); end != p; r = std::strtod(p = end, &end)) numbers[i++] = r;
    }
    benchmark::DoNotOptimize(numbers.data());
  }
  count_each(run, number_count);
}

void open_file(benchmark::State& run) {
  const std::string content = log_lines();
  const scratch_file scratch(content);
  for (auto _ : run) {
    vbn::input_file file(scratch.name, {});
    benchmark::DoNotOptimize(file.content().data());
  }
  count_bytes(run, content.size());
}

void scan_lines(benchmark::State& run) {
  const std::string content = log_lines();
  vbn::input_file file = vbn::input_file::from_memory("log", content);
  for (auto _ : run) {
    file.rewind();
    std::string_view line;
    int found = 0;
    while (file.read_line(line)) found += line.starts_with(" MASS-WEIGHTED") ? 1 : 0;
    benchmark::DoNotOptimize(found);
  }
  count_bytes(run, content.size());
}

void scan_memchr(benchmark::State& run) {
  const std::string content = log_lines();
  for (auto _ : run) {
    int found = 0;
    const char* p = content.data();
    const char* end = p + content.size();
    while (p != end) {
      const void* feed = std::memchr(p, '\n', static_cast<std::size_t>(end - p));
      found += std::strncmp(p, " MASS-WEIGHTED", 14) == 0 ? 1 : 0;
      p = static_cast<const char*>(feed) + 1;
    }
    benchmark::DoNotOptimize(found);
  }
  count_bytes(run, content.size());
}

void scan_memmem(benchmark::State& run) {
  const std::string content = log_lines();
  for (auto _ : run) {
    benchmark::DoNotOptimize(::memmem(content.data(), content.size(), " MASS-WEIGHTED", 14));
  }
  count_bytes(run, content.size());
}

BENCHMARK_CAPTURE(write_row, es13_6, "(10(ES13.6,X))");
BENCHMARK_CAPTURE(print_row, snprintf_es13_6, "%13.6E ");
BENCHMARK_CAPTURE(write_row, f9_5, "(900(2X,F9.5))");
BENCHMARK_CAPTURE(print_row, snprintf_f9_5, "  %9.5f");
BENCHMARK_CAPTURE(write_row, d15_8, "(5(2x,d15.8))");
BENCHMARK_CAPTURE(read_reals, es16_8, "(5es16.8)")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_reals, d22_13, "(4d22.13)")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_reals, es24_16, "(3es24.16)")->Unit(benchmark::kMillisecond);
BENCHMARK(read_reals_getline)->Unit(benchmark::kMillisecond);
BENCHMARK(open_file)->Unit(benchmark::kMillisecond);
BENCHMARK(scan_lines)->Unit(benchmark::kMillisecond);
BENCHMARK(scan_memchr)->Unit(benchmark::kMillisecond);
BENCHMARK(scan_memmem)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
