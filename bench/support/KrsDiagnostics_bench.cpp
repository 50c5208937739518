// What a report costs a host while no monitor is running: the channel has no monitor, so the
// report is dropped after a clock read; the endpoint is looked up again at most once a second.
#include "KrsDiagnostics.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

// No monitor, wherever the environment would otherwise point.
void pointAtMissingMonitor() { setenv("KRGE_MONITOR", "/nonexistent/krgel-bench/_indebmon", 1); }

void Report_WarningWithoutMonitor(benchmark::State& state) {
  pointAtMissingMonitor();
  for (auto _ : state) benchmark::DoNotOptimize(KRS_WARN("degenerated normal, OZ used"));
}

void Report_ErrorWithoutMonitor(benchmark::State& state) {
  pointAtMissingMonitor();
  for (auto _ : state) benchmark::DoNotOptimize(KrsReportError(0x80004005u, "RETERR marco", __FILE__, __LINE__));
}

// The baseline: a check site whose assertion state is off costs one branch.
void Report_AssertionSiteWhileOff(benchmark::State& state) {
  int index = -1;
  for (auto _ : state) {
    benchmark::DoNotOptimize(index);
    KRS_ASSERT(index >= 0);
  }
}

}  // namespace

BENCHMARK(Report_WarningWithoutMonitor);
BENCHMARK(Report_ErrorWithoutMonitor);
BENCHMARK(Report_AssertionSiteWhileOff);
