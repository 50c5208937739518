// Speed of the linear entities through the public interface, each beside the plain closed form
// on the same inputs, so that the figures read as ratios.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGeMatrix3d.h"
#include "KrGePlane.h"

namespace {

constexpr int kInputs = 1024;  // cycled, so that branches are not all predicted alike

struct Inputs {
  std::vector<KrGeLineSeg3d> segments;
  std::vector<KrGePoint3d> ends;  // two per segment
  std::vector<KrGePoint3d> points;
  Inputs() {
    std::mt19937_64 engine(2024);
    std::uniform_real_distribution<double> coordinate(-10, 10);
    auto point = [&] { return KrGePoint3d(coordinate(engine), coordinate(engine), coordinate(engine)); };
    for (int i = 0; i < kInputs; ++i) {
      const KrGePoint3d p = point(), q = point();
      segments.emplace_back(p, q);
      ends.push_back(p);
      ends.push_back(q);
      points.push_back(point());
    }
  }
};

const Inputs& inputs() {
  static const Inputs data;
  return data;
}

void BM_PointSegmentClosest_Api(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const KrGeCurve3d& curve = in.segments[i];
    benchmark::DoNotOptimize(curve.closestPointTo(in.points[i]));
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_PointSegmentClosest_Api);

void BM_PointSegmentClosest_ClosedForm(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const KrGePoint3d& p = in.ends[2 * i];
    const KrGeVector3d d = in.ends[2 * i + 1] - p;
    const double t = std::clamp(d.dotProduct(in.points[i] - p) / d.dotProduct(d), 0.0, 1.0);
    benchmark::DoNotOptimize(p + d * t);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_PointSegmentClosest_ClosedForm);

void BM_SegmentSegmentClosest_Api(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  KrGePoint3d other;
  for (auto _ : state) {
    const KrGeCurve3d& a = in.segments[i];
    const KrGeCurve3d& b = in.segments[(i + 1) & (kInputs - 1)];
    benchmark::DoNotOptimize(a.closestPointTo(b, other));
    benchmark::DoNotOptimize(other);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_SegmentSegmentClosest_Api);

// The textbook clamped closed form from the 2x2 normal equations (no robustness measures).
void BM_SegmentSegmentClosest_ClosedForm(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const int j = (i + 1) & (kInputs - 1);
    const KrGePoint3d& p1 = in.ends[2 * i];
    const KrGePoint3d& p2 = in.ends[2 * j];
    const KrGeVector3d d1 = in.ends[2 * i + 1] - p1, d2 = in.ends[2 * j + 1] - p2, r = p1 - p2;
    const double a = d1.dotProduct(d1), e = d2.dotProduct(d2), f = d2.dotProduct(r);
    const double c = d1.dotProduct(r), b = d1.dotProduct(d2), denom = a * e - b * b;
    double s = denom != 0.0 ? std::clamp((b * f - c * e) / denom, 0.0, 1.0) : 0.0;
    double t = (b * s + f) / e;
    if (t < 0.0) {
      t = 0.0;
      s = std::clamp(-c / a, 0.0, 1.0);
    } else if (t > 1.0) {
      t = 1.0;
      s = std::clamp((b - c) / a, 0.0, 1.0);
    }
    benchmark::DoNotOptimize(p1 + d1 * s);
    benchmark::DoNotOptimize(p2 + d2 * t);
    i = j;
  }
}
BENCHMARK(BM_SegmentSegmentClosest_ClosedForm);

void BM_LinePlaneIntersect_Api(benchmark::State& state) {
  const Inputs& in = inputs();
  const KrGePlane plane(KrGePoint3d(1, 2, 3), KrGeVector3d(0.2, -0.3, 0.9));
  std::vector<KrGeLine3d> lines;
  for (int i = 0; i < kInputs; ++i) lines.emplace_back(in.ends[2 * i], in.ends[2 * i + 1]);
  int i = 0;
  KrGePoint3d at;
  for (auto _ : state) {
    benchmark::DoNotOptimize(lines[i].intersectWith(static_cast<const KrGePlanarEnt&>(plane), at));
    benchmark::DoNotOptimize(at);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_LinePlaneIntersect_Api);

void BM_LinePlaneIntersect_ClosedForm(benchmark::State& state) {
  const Inputs& in = inputs();
  const KrGeVector3d n = KrGeVector3d(0.2, -0.3, 0.9).normal();
  const double d = -n.dotProduct(KrGeVector3d(1, 2, 3));
  int i = 0;
  for (auto _ : state) {
    const KrGePoint3d& o = in.ends[2 * i];
    const KrGeVector3d dir = in.ends[2 * i + 1] - o;
    const double denom = dir.dotProduct(n);
    const bool hit = std::fabs(denom) > 1e-10;
    const double t = hit ? -(n.dotProduct(o.asVector()) + d) / denom : 0.0;
    benchmark::DoNotOptimize(hit);
    benchmark::DoNotOptimize(o + dir * t);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_LinePlaneIntersect_ClosedForm);

void BM_SegmentTransformBy_Api(benchmark::State& state) {
  KrGeLineSeg3d segment(KrGePoint3d(1, 2, 3), KrGePoint3d(4, -5, 6));
  const KrGeMatrix3d matrix = KrGeMatrix3d::rotation(1e-3, KrGeVector3d(1, 2, 3), KrGePoint3d(0.5, 0, 0));
  for (auto _ : state) {
    segment.transformBy(matrix);
    benchmark::ClobberMemory();
  }
  benchmark::DoNotOptimize(segment.startPoint());
}
BENCHMARK(BM_SegmentTransformBy_Api);

void BM_SegmentTransformBy_ClosedForm(benchmark::State& state) {
  KrGePoint3d origin(1, 2, 3);
  KrGeVector3d direction(3, -7, 3);
  const KrGeMatrix3d matrix = KrGeMatrix3d::rotation(1e-3, KrGeVector3d(1, 2, 3), KrGePoint3d(0.5, 0, 0));
  for (auto _ : state) {
    origin = matrix * origin;
    direction = matrix * direction;
    benchmark::DoNotOptimize(origin);
    benchmark::DoNotOptimize(direction);
  }
}
BENCHMARK(BM_SegmentTransformBy_ClosedForm);

}  // namespace
