// Speed of the curve-pair relations through the public interface, each beside the plain closed
// form of the same query on the same inputs, so that the figures read as ratios. The closed
// forms compute what the library reports: points and, for arcs, the angle of each point (the
// relation layer hands both parameters on to the intersection object).
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "KrGeCircArc3d.h"
#include "KrGeLine3d.h"

namespace {

constexpr int kInputs = 1024;  // cycled, so that branches are not all predicted alike

struct Circle {
  KrGePoint3d c;
  KrGeVector3d n, u, v;
  double r;
};

struct Inputs {
  std::vector<KrGeCircArc3d> planar, skew;  // circles in the XY plane, circles in any plane
  std::vector<Circle> planarData, skewData;
  std::vector<KrGeLine3d> planarLines, skewLines;
  std::vector<KrGePoint3d> origins;
  std::vector<KrGeVector3d> directions;
  Inputs() {
    std::mt19937_64 engine(2025);
    std::uniform_real_distribution<double> coordinate(-1, 1), radius(0.5, 1.5);
    const auto unit = [&] {
      const KrGeVector3d v(coordinate(engine), coordinate(engine), coordinate(engine) + 0.01);
      return v / v.length();
    };
    for (int i = 0; i < kInputs; ++i) {
      const KrGePoint3d c(coordinate(engine), coordinate(engine), 0.0);
      const double r = radius(engine);
      planar.emplace_back(c, KrGeVector3d(0, 0, 1), r);
      const Circle data{c, planar.back().normal(), planar.back().refVec(),
                        planar.back().normal().crossProduct(planar.back().refVec()), r};
      planarData.push_back(data);
      const double angle = 3.0 * coordinate(engine);
      const KrGeVector3d along(std::cos(angle), std::sin(angle), 0.0);
      planarLines.emplace_back(c + KrGeVector3d(-along.y, along.x, 0) * (r * coordinate(engine)), along);
      skew.emplace_back(KrGePoint3d(coordinate(engine), coordinate(engine), coordinate(engine)), unit(), r);
      skewData.push_back(Circle{skew.back().center(), skew.back().normal(), skew.back().refVec(),
                                skew.back().normal().crossProduct(skew.back().refVec()), r});
      origins.push_back(KrGePoint3d(coordinate(engine), coordinate(engine), coordinate(engine)));
      directions.push_back(unit());
      skewLines.emplace_back(origins.back(), directions.back());
    }
  }
};

const Inputs& inputs() {
  static const Inputs data;
  return data;
}

void BM_CoplanarCircleCircleIntersect_Api(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0, count = 0;
  KrGePoint3d p1, p2;
  for (auto _ : state) {
    const int j = (i + 1) & (kInputs - 1);
    benchmark::DoNotOptimize(in.planar[i].intersectWith(in.planar[j], count, p1, p2));
    benchmark::DoNotOptimize(p1);
    benchmark::DoNotOptimize(p2);
    i = j;
  }
}
BENCHMARK(BM_CoplanarCircleCircleIntersect_Api);

// The textbook construction in the common plane: a along the centre line, h across it, and the
// angle of each point on each circle.
void BM_CoplanarCircleCircleIntersect_ClosedForm(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const int j = (i + 1) & (kInputs - 1);
    const Circle& a = in.planarData[i];
    const Circle& b = in.planarData[j];
    const KrGeVector3d w = b.c - a.c;
    const double d = w.length();
    int count = 0;
    if (d <= a.r + b.r && d >= std::fabs(a.r - b.r) && d > 0.0) {
      const double along = (d * d + a.r * a.r - b.r * b.r) / (2.0 * d);
      const double h = std::sqrt(std::fmax(0.0, a.r * a.r - along * along));
      const KrGeVector3d e = w / d, across = a.n.crossProduct(e);
      for (const double sign : {-1.0, 1.0}) {
        const KrGeVector3d fromA = e * along + across * (sign * h), fromB = fromA - w;
        benchmark::DoNotOptimize(a.c + fromA);
        benchmark::DoNotOptimize(std::atan2(fromA.dotProduct(a.v), fromA.dotProduct(a.u)));
        benchmark::DoNotOptimize(std::atan2(fromB.dotProduct(b.v), fromB.dotProduct(b.u)));
        ++count;
      }
    }
    benchmark::DoNotOptimize(count);
    i = j;
  }
}
BENCHMARK(BM_CoplanarCircleCircleIntersect_ClosedForm);

void BM_CoplanarLineCircleIntersect_Api(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0, count = 0;
  KrGePoint3d p1, p2;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.planar[i].intersectWith(in.planarLines[i], count, p1, p2));
    benchmark::DoNotOptimize(p1);
    benchmark::DoNotOptimize(p2);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_CoplanarLineCircleIntersect_Api);

// The quadratic |o + t d - c|^2 = r^2 in the line parameter, and the angle of each point.
void BM_CoplanarLineCircleIntersect_ClosedForm(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const Circle& a = in.planarData[i];
    const KrGePoint3d o = in.planarLines[i].pointOnLine();
    const KrGeVector3d d = in.planarLines[i].direction(), w = o - a.c;
    const double b = w.dotProduct(d), disc = b * b - (w.dotProduct(w) - a.r * a.r);
    int count = 0;
    if (disc >= 0.0) {
      const double root = std::sqrt(disc);
      for (const double t : {-b - root, -b + root}) {
        const KrGeVector3d fromA = w + d * t;
        benchmark::DoNotOptimize(a.c + fromA);
        benchmark::DoNotOptimize(std::atan2(fromA.dotProduct(a.v), fromA.dotProduct(a.u)));
        ++count;
      }
    }
    benchmark::DoNotOptimize(count);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_CoplanarLineCircleIntersect_ClosedForm);

void BM_LineCircleClosest3d_Api(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  KrGePoint3d onLine;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.skew[i].closestPointTo(in.skewLines[i], onLine));
    benchmark::DoNotOptimize(onLine);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_LineCircleClosest3d_Api);

void BM_SkewCircleCircleClosest_Api(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  KrGePoint3d onOther;
  for (auto _ : state) {
    const int j = (i + 1) & (kInputs - 1);
    benchmark::DoNotOptimize(in.skew[i].closestPointTo(in.skew[j], onOther));
    benchmark::DoNotOptimize(onOther);
    i = j;
  }
}
BENCHMARK(BM_SkewCircleCircleClosest_Api);

// The unit of the two closest-pair figures above: the closed form nearest point of a circle to
// a point (radial projection), with its angle, on the same circles as plain data.
void BM_PointCircleAngle_ClosedForm(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const Circle& a = in.skewData[i];
    const KrGeVector3d w = in.origins[i] - a.c;
    const double x = w.dotProduct(a.u), y = w.dotProduct(a.v), r = std::sqrt(x * x + y * y);
    benchmark::DoNotOptimize(a.c + (a.u * x + a.v * y) * (a.r / r));
    benchmark::DoNotOptimize(std::atan2(y, x));
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_PointCircleAngle_ClosedForm);

void BM_LineLineClosest_Api(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  KrGePoint3d onOther;
  for (auto _ : state) {
    const int j = (i + 1) & (kInputs - 1);
    const KrGeCurve3d& a = in.skewLines[i];
    benchmark::DoNotOptimize(a.closestPointTo(in.skewLines[j], onOther));
    benchmark::DoNotOptimize(onOther);
    i = j;
  }
}
BENCHMARK(BM_LineLineClosest_Api);

// The 2x2 normal equations of two infinite lines, unguarded.
void BM_LineLineClosest_ClosedForm(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const int j = (i + 1) & (kInputs - 1);
    const KrGeVector3d &d1 = in.directions[i], &d2 = in.directions[j];
    const KrGeVector3d r = in.origins[i] - in.origins[j];
    const double a = d1.dotProduct(d1), b = d1.dotProduct(d2), c = d1.dotProduct(r);
    const double e = d2.dotProduct(d2), f = d2.dotProduct(r), denom = a * e - b * b;
    const double s = (b * f - c * e) / denom, t = (a * f - b * c) / denom;
    benchmark::DoNotOptimize(in.origins[i] + d1 * s);
    benchmark::DoNotOptimize(in.origins[j] + d2 * t);
    i = j;
  }
}
BENCHMARK(BM_LineLineClosest_ClosedForm);

}  // namespace
