// Times the eigensolver, the plain loops and LAPACK (dsyev, dsyevd), one thread each.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/molecule.hpp"            // for chain, mass_weighted
#include "linalg/eigen.hpp"              // for diag_symm
#include "linalg/lane_kernels.hpp"       // for available_kernels
#include "tests/linalg/plain_eigen.hpp"  // for plain::tred2e, plain::tql2e

extern "C" {
void dsyev_(const char* jobz, const char* uplo, const int* n, double* a, const int* lda, double* w,
            double* work, const int* lwork, int* info);
void dsyevd_(const char* jobz, const char* uplo, const int* n, double* a, const int* lda, double* w,
             double* work, const int* lwork, int* iwork, const int* liwork, int* info);
[[gnu::weak]] void openblas_set_num_threads(int threads);
}

namespace {

vbn::array2<double> hessian(int n) { return mass_weighted(vbn::bench::chain(n / 3, 1)); }

void fast(benchmark::State& run) {
  const vbn::array2<double> a = hessian(static_cast<int>(run.range(0)));
  vbn::array1<double> eval;
  vbn::array2<double> vector;
  int info = 0;
  for (auto _ : run) diag_symm(a, eval, vector, info);
}

// The kernels of one vector width: 0 for two lanes, 1 for four, 2 for eight.
void fast_with_kernels(benchmark::State& run) {
  const vbn::array2<double> a = hessian(static_cast<int>(run.range(0)));
  const auto width = static_cast<std::size_t>(run.range(1));
  if (width >= vbn::available_kernels().size()) {
    run.SkipWithError("this processor lacks the instructions");
    return;
  }
  vbn::array1<double> d;
  vbn::array1<double> e;
  vbn::array2<double> z;
  int ierr = 0;
  for (auto _ : run) {
    tred2e(a, d, e, z, vbn::available_kernels()[width]);
    tql2e(d, e, z, ierr, vbn::available_kernels()[width]);
  }
}

void plain(benchmark::State& run) {
  const vbn::array2<double> a = hessian(static_cast<int>(run.range(0)));
  vbn::array1<double> d;
  vbn::array1<double> e;
  vbn::array2<double> z;
  int ierr = 0;
  for (auto _ : run) {
    vbn::plain::tred2e(a, d, e, z);
    vbn::plain::tql2e(d, e, z, ierr);
  }
}

void lapack_dsyev(benchmark::State& run) {
  const vbn::array2<double> a = hessian(static_cast<int>(run.range(0)));
  const int n = a.rows();
  const int lwork = 40 * n;
  std::vector<double> w(static_cast<std::size_t>(n));
  std::vector<double> work(static_cast<std::size_t>(lwork));
  int info = 0;
  for (auto _ : run) {
    vbn::array2<double> z = a;
    dsyev_("V", "L", &n, z.data(), &n, w.data(), work.data(), &lwork, &info);
  }
}

void lapack_dsyevd(benchmark::State& run) {
  const vbn::array2<double> a = hessian(static_cast<int>(run.range(0)));
  const int n = a.rows();
  const int lwork = 1 + 6 * n + 2 * n * n;
  const int liwork = 3 + 5 * n;
  std::vector<double> w(static_cast<std::size_t>(n));
  std::vector<double> work(static_cast<std::size_t>(lwork));
  std::vector<int> iwork(static_cast<std::size_t>(liwork));
  int info = 0;
  for (auto _ : run) {
    vbn::array2<double> z = a;
    dsyevd_("V", "L", &n, z.data(), &n, w.data(), work.data(), &lwork, iwork.data(), &liwork, &info);
  }
}

void sizes(benchmark::internal::Benchmark* all) {
  all->Arg(3)->Arg(30)->Arg(108)->Arg(300)->Arg(900)->Arg(1500)->Unit(benchmark::kMillisecond);
}

BENCHMARK(fast)->Apply(sizes);
BENCHMARK(lapack_dsyev)->Apply(sizes);
BENCHMARK(lapack_dsyevd)->Apply(sizes);
BENCHMARK(plain)->Apply(sizes);
BENCHMARK(fast_with_kernels)->ArgsProduct({{300, 900}, {0, 1, 2}})->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  if (openblas_set_num_threads != nullptr) openblas_set_num_threads(1);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
