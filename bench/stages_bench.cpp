// Times the force-constant reader, the pairing of modes and the symmetry tables, with simple alternatives.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "bench/molecule.hpp"        // for chain
#include "modes/ordering.hpp"        // for large_elements
#include "molecule/record.hpp"       // for atom_data, symmetry_data
#include "readers/qm_file.hpp"       // for qm_file_fc
#include "symmetry/point_group.hpp"  // for point_group1, id9
#include "text/layout.hpp"           // for layout

namespace {

constexpr double symm_tol = 0.01;  // bohr

// The force constants of a chain in the layout of a numerical-frequency file.
std::string numerical_frequency_file(int natom) {
  const vbn::array2<double> fc = vbn::bench::chain(natom, 1).fc;
  const vbn::layout rows("(5es16.8)");
  std::string out = " NUMERICAL FREQUENCY\n VERSION 1.2\n NAtoms " + std::to_string(natom) +
                    "\n Unprojected Force Constant Matrix\n";
  for (int i = 1; i <= fc.rows(); ++i) {
    out += " row\n";
    rows.write(out, fc.column(i));
  }
  return out;
}

void read_force_constants(benchmark::State& run) {
  const int natom = static_cast<int>(run.range(0));
  vbn::qm_file file{vbn::input_file::from_memory("bench", numerical_frequency_file(natom)),
                    vbn::file_kind::numforce};
  for (auto _ : run) {
    file.file.rewind();
    const vbn::array2<double> fc = vbn::qm_file_fc(file, natom);
    benchmark::DoNotOptimize(fc.data());
  }
}

void read_force_constants_getline(benchmark::State& run) {
  const int natom = static_cast<int>(run.range(0));
  const std::string content = numerical_frequency_file(natom);
  for (auto _ : run) {
    std::istringstream stream(content);
    std::vector<double> fc;
    for (std::string line; std::getline(stream, line);) {
      const char* at = line.c_str();
      for (char* end = nullptr;; at = end) {
        const double element = std::strtod(at, &end);
        if (end == at) break;
        fc.push_back(element);
      }
    }
    benchmark::DoNotOptimize(fc.data());
  }
}

// Overlaps as between two similar states: near the unit matrix, with noise.
vbn::array2<double> overlaps(int n) {
  std::mt19937 random(1);
  std::normal_distribution<double> noise(0.0, 0.05);
  vbn::array2<double> s(n, n);
  for (double& element : s.span()) element = noise(random);
  for (int i = 1; i <= n; ++i) s(i, i) += 0.8;
  return s;
}

void pair_modes(benchmark::State& run) {
  const int n = static_cast<int>(run.range(0));
  const vbn::array2<double> s = overlaps(n);
  vbn::array1<int> all(n);
  std::iota(all.begin(), all.end(), 1);
  for (auto _ : run) {
    vbn::array1<int> j = all;
    vbn::array1<int> k = all;
    vbn::large_elements(j, k, s, 1);
    benchmark::DoNotOptimize(k.data());
  }
}

// The same assignment by std::stable_sort and a scan of the pairs accepted so far.
void pair_modes_by_scan(benchmark::State& run) {
  const int n = static_cast<int>(run.range(0));
  const vbn::array2<double> s = overlaps(n);
  for (auto _ : run) {
    std::vector<int> place(s.span().size());
    std::iota(place.begin(), place.end(), 0);
    std::stable_sort(place.begin(), place.end(),
                     [&](int a, int b) { return std::abs(s.data()[a]) > std::abs(s.data()[b]); });
    std::vector<std::pair<int, int>> pairs;
    for (const int at : place) {
      const bool taken = std::any_of(pairs.begin(), pairs.end(), [&](const auto& pair) {
        return pair.first == at % n || pair.second == at / n;
      });
      if (!taken) pairs.emplace_back(at % n, at / n);
    }
    benchmark::DoNotOptimize(pairs.data());
  }
}

// The group search of a molecule without symmetry, and the representative of every pair of its atoms.
void symmetry_tables(benchmark::State& run) {
  const vbn::bench::molecule m = vbn::bench::chain(static_cast<int>(run.range(0)), 1);
  vbn::atom_data atoms;
  atoms.natom = m.nat.size();
  atoms.n3 = 3 * atoms.natom;
  atoms.nat = m.nat;
  atoms.mass = m.mass;
  atoms.x = m.x;
  for (auto _ : run) {
    vbn::symmetry_data symmetry;
    const vbn::symmetry_search found = vbn::point_group1(atoms, symm_tol, symmetry, {});
    int sum = 0;
    for (int i = 1; i <= atoms.natom; ++i)
      for (int j = 1; j <= atoms.natom; ++j) sum += vbn::id9(found, 1, j, 1, i).sg;
    benchmark::DoNotOptimize(sum);
  }
}

}  // namespace

BENCHMARK(read_force_constants)->Arg(100)->Arg(300)->Unit(benchmark::kMillisecond);
BENCHMARK(read_force_constants_getline)->Arg(100)->Arg(300)->Unit(benchmark::kMillisecond);
BENCHMARK(pair_modes)->Arg(300)->Arg(600)->Unit(benchmark::kMillisecond);
BENCHMARK(pair_modes_by_scan)->Arg(300)->Arg(600)->Unit(benchmark::kMillisecond);
BENCHMARK(symmetry_tables)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
