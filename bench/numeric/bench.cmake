list(APPEND KRGEL_BENCH_SOURCES
  numeric/PolynomRoot_bench.cpp
  numeric/KrGeInterval_bench.cpp
  numeric/KrGeKnotVector_bench.cpp
)
