// Interval containment and intersection, the queries curve code runs per parameter. A plain
// inline two-comparison test runs beside them for scale.
#include "KrGeInterval.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

std::vector<double> samples() {
  std::mt19937_64 engine(21);
  std::uniform_real_distribution<double> unit(-0.5, 1.5);
  std::vector<double> values(1024);
  for (double& v : values) v = unit(engine);
  return values;
}

void BM_Interval_contains(benchmark::State& state) {
  const KrGeInterval interval(0.0, 1.0);
  const KrGeInterval& view = interval;
  const std::vector<double> values = samples();
  size_t k = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(view.contains(values[k]));
    k = (k + 1) & 1023;
  }
}
BENCHMARK(BM_Interval_contains);

void BM_Interval_plainContains(benchmark::State& state) {
  const double lower = 0.0;
  const double upper = 1.0;
  const double tol = 1e-12;
  const std::vector<double> values = samples();
  size_t k = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(!(values[k] < lower - tol) && !(values[k] > upper + tol));
    k = (k + 1) & 1023;
  }
}
BENCHMARK(BM_Interval_plainContains);

void BM_Interval_intersectWith(benchmark::State& state) {
  const std::vector<double> values = samples();
  std::vector<KrGeInterval> others;
  for (size_t k = 0; k + 1 < values.size(); k += 2) others.emplace_back(values[k], values[k] + 0.5);
  const KrGeInterval interval(0.0, 1.0);
  KrGeInterval result;
  size_t k = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(interval.intersectWith(others[k], result));
    benchmark::ClobberMemory();
    k = (k + 1) % others.size();
  }
}
BENCHMARK(BM_Interval_intersectWith);

}  // namespace
