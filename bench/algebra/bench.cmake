list(APPEND KRGEL_BENCH_SOURCES
  algebra/KrGeMatrix3d_bench.cpp
)
