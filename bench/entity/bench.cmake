list(APPEND KRGEL_BENCH_SOURCES
  entity/linear_bench.cpp
  entity/plane_bench.cpp
  entity/ellipse_bench.cpp
)
