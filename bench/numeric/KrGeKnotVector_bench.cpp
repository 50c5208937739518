// Multiplicity queries on a 1000-knot clamped vector with interior knots of multiplicity 1 to 3.
#include "KrGeKnotVector.h"

#include <benchmark/benchmark.h>

namespace {

KrGeKnotVector thousandKnots() {
  KrGeKnotVector knots;
  for (int i = 0; i < 4; ++i) knots.append(0.0);
  for (int span = 1; knots.length() < 996; ++span)
    for (int m = 0; m < 1 + span % 3 && knots.length() < 996; ++m) knots.append(span * 0.01);
  const double end = knots.endParam() + 0.01;
  for (int i = 0; i < 4; ++i) knots.append(end);
  return knots;
}

void BM_KnotVector_multiplicityAt(benchmark::State& state) {
  const KrGeKnotVector knots = thousandKnots();
  int index = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(knots.multiplicityAt(index));
    index = index + 1 == knots.length() ? 0 : index + 1;
  }
  state.counters["knots"] = knots.length();
}
BENCHMARK(BM_KnotVector_multiplicityAt);

void BM_KnotVector_isOn(benchmark::State& state) {
  const KrGeKnotVector knots = thousandKnots();
  double x = 0.0;
  const double end = knots.endParam();
  for (auto _ : state) {
    benchmark::DoNotOptimize(knots.isOn(x));
    x = x + 0.00377 > end ? 0.0 : x + 0.00377;
  }
}
BENCHMARK(BM_KnotVector_isOn);

}  // namespace
