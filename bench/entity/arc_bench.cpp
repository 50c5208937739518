// Speed of circular arcs through the public interface, each beside the plain closed form on the
// same inputs, so that the figures read as ratios.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "KrGeCircArc3d.h"

namespace {

constexpr int kInputs = 1024;  // cycled, so that branches are not all predicted alike
constexpr double kTwoPi = 6.283185307179586;

struct Arc {
  KrGePoint3d center;
  KrGeVector3d normal, x, y;  // unit normal, refVec and normal x refVec
  double radius, start, sweep;
};

struct Inputs {
  std::vector<KrGeCircArc3d> circles, arcs;
  std::vector<Arc> plainCircles, plainArcs;
  std::vector<KrGePoint3d> points;
  Inputs() {
    std::mt19937_64 engine(2024);
    std::uniform_real_distribution<double> coordinate(-10, 10), angle(-3, 3), sweep(0.1, 6.0);
    auto point = [&] { return KrGePoint3d(coordinate(engine), coordinate(engine), coordinate(engine)); };
    for (int i = 0; i < kInputs; ++i) {
      const KrGePoint3d c = point();
      const KrGeVector3d n = (point() - KrGePoint3d::kOrigin).normal();
      const KrGeVector3d x = n.perpVector();
      const double r = 1.0 + std::fabs(coordinate(engine)), start = angle(engine), span = sweep(engine);
      circles.emplace_back(c, n, x, r, 0.0, kTwoPi);
      arcs.emplace_back(c, n, x, r, start, start + span);
      plainCircles.push_back({c, n, x, n.crossProduct(x), r, 0.0, kTwoPi});
      plainArcs.push_back({c, n, x, n.crossProduct(x), r, start, span});
      points.push_back(point());
    }
  }
};

const Inputs& inputs() {
  static const Inputs data;
  return data;
}

void closestApi(benchmark::State& state, const std::vector<KrGeCircArc3d>& curves) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const KrGeCurve3d& curve = curves[i];
    benchmark::DoNotOptimize(curve.closestPointTo(in.points[i]));
    i = (i + 1) & (kInputs - 1);
  }
}

void BM_PointCircleClosest_Api(benchmark::State& state) { closestApi(state, inputs().circles); }
BENCHMARK(BM_PointCircleClosest_Api);

// The textbook form on centre, unit normal and radius: the centre plus the radius along the
// point's projection into the plane.
void BM_PointCircleClosest_ClosedForm(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const Arc& a = in.plainCircles[i];
    const KrGeVector3d w = in.points[i] - a.center;
    const KrGeVector3d across = w - a.normal * w.dotProduct(a.normal);
    benchmark::DoNotOptimize(a.center + across * (a.radius / across.length()));
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_PointCircleClosest_ClosedForm);

void BM_PointArcClosest_Api(benchmark::State& state) { closestApi(state, inputs().arcs); }
BENCHMARK(BM_PointArcClosest_Api);

// The same with the sweep test by the angle of the projection, and the nearer end outside it.
void BM_PointArcClosest_ClosedForm(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const Arc& a = in.plainArcs[i];
    const KrGeVector3d w = in.points[i] - a.center;
    const double u = w.dotProduct(a.x), v = w.dotProduct(a.y);
    double offset = std::atan2(v, u) - a.start;
    offset -= kTwoPi * std::floor(offset / kTwoPi);
    if (offset <= a.sweep) {
      const double k = a.radius / std::sqrt(u * u + v * v);
      benchmark::DoNotOptimize(a.center + a.x * (u * k) + a.y * (v * k));
    } else {
      const double t = offset - a.sweep < kTwoPi - offset ? a.start + a.sweep : a.start;
      benchmark::DoNotOptimize(a.center + a.x * (a.radius * std::cos(t)) + a.y * (a.radius * std::sin(t)));
    }
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_PointArcClosest_ClosedForm);

constexpr int kSamples = 1000;

// Time per call over kSamples points; the per-point figure is the time divided by kSamples
// (items_per_second counts points).
void BM_ArcSampling_Api(benchmark::State& state) {
  const KrGeCircArc3d& arc = inputs().arcs[0];
  KrsArray<KrGePoint3d> points;
  for (auto _ : state) {
    arc.getSamplePoints(kSamples, points);
    benchmark::DoNotOptimize(points.GetData());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kSamples);
}
BENCHMARK(BM_ArcSampling_Api);

// Two trigonometric calls per point.
void BM_ArcSampling_ClosedForm(benchmark::State& state) {
  const Arc& a = inputs().plainArcs[0];
  std::vector<KrGePoint3d> points(kSamples);
  const KrGeVector3d x = a.x * a.radius, y = a.y * a.radius;
  for (auto _ : state) {
    const double step = a.sweep / (kSamples - 1);
    for (int i = 0; i < kSamples; ++i) {
      const double t = a.start + i * step;
      points[i] = a.center + x * std::cos(t) + y * std::sin(t);
    }
    benchmark::DoNotOptimize(points.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kSamples);
}
BENCHMARK(BM_ArcSampling_ClosedForm);

}  // namespace
