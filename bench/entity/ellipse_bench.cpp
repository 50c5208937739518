// Speed of the elliptical arc through the public interface, each beside a plain route on the
// same inputs: the arc length beside the pair of std::ellint_2 calls, the nearest point beside
// unguarded Newton steps, the line intersection beside the bare quadratic. Accuracy against a
// long-double quadrature is reported as a counter next to both length routes.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "KrGeEllipArc3d.h"
#include "KrGeLineSeg3d.h"

namespace {

constexpr int kInputs = 1024;
constexpr double kA = 3.0;
constexpr double kB = 1.0;
const double kHalfPi = 1.5707963267948966;

struct Inputs {
  KrGeEllipArc3d ellipse{KrGePoint3d(1, 2, 3), KrGeVector3d(1, 1, 0), KrGeVector3d(-1, 1, 0), kA, kB};
  std::vector<double> from, to;           // arcs within [0, pi]
  std::vector<KrGePoint3d> points;        // around the ellipse, in its plane and off it
  std::vector<double> localX, localY;     // the same points in the ellipse's plane coordinates
  std::vector<KrGeLineSeg3d> segments;    // chords through the ellipse, in its plane
  std::vector<KrGePoint3d> origins;
  std::vector<KrGeVector3d> directions;   // the same segments in plane coordinates (z = 0)
  Inputs() {
    std::mt19937_64 engine(11);
    std::uniform_real_distribution<double> unit(0, 1);
    const KrGeVector3d u = ellipse.majorAxis(), v = ellipse.minorAxis();
    for (int i = 0; i < kInputs; ++i) {
      const double a = unit(engine) * 3.0, w = i % 4 == 0 ? std::pow(10.0, -6 * unit(engine)) : unit(engine) * (3.1 - a);
      from.push_back(a);
      to.push_back(a + w);
      const double x = (unit(engine) - 0.5) * 8, y = (unit(engine) - 0.5) * 8;
      localX.push_back(x);
      localY.push_back(y);
      points.push_back(ellipse.center() + u * x + v * y + ellipse.normal() * (i % 2 ? 0.5 : 0.0));
      const KrGePoint3d p(x, y, 0), q(-y * 0.3, x * 0.3, 0);
      origins.push_back(p);
      directions.push_back(q - p);
      segments.emplace_back(ellipse.center() + u * p.x + v * p.y, ellipse.center() + u * q.x + v * q.y);
    }
  }
};

const Inputs& inputs() {
  static const Inputs data;
  return data;
}

long double reference(double from, double to) {
  const int n = 4096;  // composite Gauss-Legendre (5 points) on n pieces, in long double
  const long double x[3] = {0.0L, 0.538469310105683091036L, 0.906179845938663992798L};
  const long double w[3] = {0.568888888888888888889L, 0.478628670499366468041L, 0.236926885056189087515L};
  long double sum = 0;
  for (int k = 0; k < n; ++k) {
    const long double l = from + (long double)(to - from) * k / n, h = (long double)(to - from) / n / 2;
    for (int j = -2; j <= 2; ++j) {
      const long double t = l + h + h * (j < 0 ? -x[-j] : x[j]);
      sum += w[j < 0 ? -j : j] * h * std::sqrt(kA * kA * std::sin(t) * std::sin(t) + kB * kB * std::cos(t) * std::cos(t));
    }
  }
  return sum;
}

template <class Length>
void lengthAccuracy(benchmark::State& state, Length length) {
  const Inputs& in = inputs();
  double worst = 0;
  for (int i = 0; i < kInputs; i += 16) {
    const long double expected = reference(in.from[i], in.to[i]);
    worst = std::fmax(worst, (double)(std::fabs(length(in.from[i], in.to[i]) - expected) / expected));
  }
  state.counters["worstRelErr"] = worst;
}

void BM_EllipseArcLength_Api(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.ellipse.length(in.from[i], in.to[i]));
    i = (i + 1) & (kInputs - 1);
  }
  lengthAccuracy(state, [&](double f, double t) { return in.ellipse.length(f, t); });
}
BENCHMARK(BM_EllipseArcLength_Api);

// a (E(pi/2 - from | k) - E(pi/2 - to | k)), k^2 = 1 - b^2/a^2: the textbook pair.
double ellint2Pair(double from, double to) {
  const double k = std::sqrt(1.0 - (kB / kA) * (kB / kA));
  return kA * (std::ellint_2(k, kHalfPi - from) - std::ellint_2(k, kHalfPi - to));
}

void BM_EllipseArcLength_StdEllint2Pair(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(ellint2Pair(in.from[i], in.to[i]));
    i = (i + 1) & (kInputs - 1);
  }
  lengthAccuracy(state, ellint2Pair);
}
BENCHMARK(BM_EllipseArcLength_StdEllint2Pair);

void BM_EllipseClosestPoint_Api(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.ellipse.closestPointTo(in.points[i]));
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_EllipseClosestPoint_Api);

// Six Newton steps on (p(t) - x) . p'(t) from the point's own eccentric angle: no bracket, no
// special cases, wrong near the evolute; the floor a guarded method is measured against.
void BM_EllipseClosestPoint_PlainNewton(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const double x = in.localX[i], y = in.localY[i];
    double t = std::atan2(kA * y, kB * x);
    for (int k = 0; k < 6; ++k) {
      const double c = std::cos(t), s = std::sin(t);
      const double g = (kB * kB - kA * kA) * s * c + kA * x * s - kB * y * c;
      const double dg = (kB * kB - kA * kA) * (c * c - s * s) + kA * x * c + kB * y * s;
      t -= g / dg;
    }
    benchmark::DoNotOptimize(kA * std::cos(t));
    benchmark::DoNotOptimize(kB * std::sin(t));
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_EllipseClosestPoint_PlainNewton);

void BM_LineEllipseIntersect_Api(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    int count = 0;
    KrGePoint3d p1, p2;
    benchmark::DoNotOptimize(in.ellipse.intersectWith(in.segments[i], count, p1, p2));
    benchmark::DoNotOptimize(p1);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_LineEllipseIntersect_Api);

// The quadratic of the segment already in plane coordinates, no tolerance, no range test.
void BM_LineEllipseIntersect_PlainQuadratic(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    const KrGePoint3d& o = in.origins[i];
    const KrGeVector3d& d = in.directions[i];
    const double qa = kB * kB * d.x * d.x + kA * kA * d.y * d.y;
    const double qb = kB * kB * o.x * d.x + kA * kA * o.y * d.y;
    const double qc = kB * kB * o.x * o.x + kA * kA * o.y * o.y - kA * kA * kB * kB;
    const double disc = qb * qb - qa * qc;
    if (disc >= 0) {
      const double root = std::sqrt(disc);
      benchmark::DoNotOptimize(o + d * ((-qb + root) / qa));
      benchmark::DoNotOptimize(o + d * ((-qb - root) / qa));
    }
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_LineEllipseIntersect_PlainQuadratic);

}  // namespace
