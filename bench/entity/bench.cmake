list(APPEND KRGEL_BENCH_SOURCES
  entity/arc_bench.cpp
  entity/linear_bench.cpp
  entity/plane_bench.cpp
  entity/relation_bench.cpp
  entity/ellipse_bench.cpp
  entity/nurbs_bench.cpp
  entity/composite_bench.cpp
)
