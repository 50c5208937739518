// Appending ten million doubles one at a time: the container's growth rule (half the size, at
// most one megabyte per step, moved by realloc) against std::vector's doubling, in the same run.
#include "KrsArray.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr int kCount = 10000000;

void KrsArray_Add10MillionDoubles(benchmark::State& state) {
  for (auto _ : state) {
    KrsArray<double> values;
    for (int i = 0; i < kCount; ++i) values.Add(static_cast<double>(i));
    benchmark::DoNotOptimize(values.GetData());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}

void StdVector_PushBack10MillionDoubles(benchmark::State& state) {
  for (auto _ : state) {
    std::vector<double> values;
    for (int i = 0; i < kCount; ++i) values.push_back(static_cast<double>(i));
    benchmark::DoNotOptimize(values.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}

}  // namespace

BENCHMARK(KrsArray_Add10MillionDoubles)->Unit(benchmark::kMillisecond);
BENCHMARK(StdVector_PushBack10MillionDoubles)->Unit(benchmark::kMillisecond);
