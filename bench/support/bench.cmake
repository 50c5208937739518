list(APPEND KRGEL_BENCH_SOURCES
  support/KrsArray_bench.cpp
  support/KrsDiagnostics_bench.cpp
)
