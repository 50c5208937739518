// Speed of NURBS curves through the public interface, each beside a plain evaluator written
// here on the same data (span search, triangular basis, weighted sum, no checks): the point and
// first derivative of a rational cubic with 20 control points, the nearest point to a point
// beside sampling plus Newton, the closest pair of two such curves beside a sample grid.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "KrGeNurbCurve3d.h"

namespace {

constexpr int kInputs = 1024;
constexpr int kDegree = 3;
constexpr int kPoints = 20;

struct Plain {
  std::vector<double> knots, hw;  // homogeneous points (w x, w y, w z, w)

  int span(double u) const {
    int lo = kDegree, hi = kPoints;
    if (u >= knots[hi]) return hi - 1;
    while (hi - lo > 1) {
      const int mid = (lo + hi) / 2;
      (u < knots[mid] ? hi : lo) = mid;
    }
    return lo;
  }
  // Basis functions and (when d is given) their first derivatives on span s.
  void basis(int s, double u, double* N, double* d) const {
    double left[kDegree + 1], right[kDegree + 1], lower[kDegree + 1] = {1.0};
    N[0] = 1.0;
    for (int j = 1; j <= kDegree; ++j) {
      left[j] = u - knots[s + 1 - j];
      right[j] = knots[s + j] - u;
      double saved = 0.0;
      for (int r = 0; r < j; ++r) {
        const double temp = N[r] / (right[r + 1] + left[j - r]);
        N[r] = saved + right[r + 1] * temp;
        saved = left[j - r] * temp;
      }
      N[j] = saved;
      if (j == kDegree - 1)
        for (int r = 0; r < kDegree; ++r) lower[r] = N[r];
    }
    if (!d) return;
    for (int r = 0; r <= kDegree; ++r) {
      const int i = s - kDegree + r;
      const double a = r > 0 ? lower[r - 1] / (knots[i + kDegree] - knots[i]) : 0.0;
      const double b = r < kDegree ? lower[r] / (knots[i + kDegree + 1] - knots[i + 1]) : 0.0;
      d[r] = kDegree * (a - b);
    }
  }
  KrGePoint3d point(double u) const {
    const int s = span(u);
    double N[kDegree + 1];
    basis(s, u, N, nullptr);
    double x = 0, y = 0, z = 0, w = 0;
    for (int j = 0; j <= kDegree; ++j) {
      const double* h = &hw[4 * (s - kDegree + j)];
      x += N[j] * h[0], y += N[j] * h[1], z += N[j] * h[2], w += N[j] * h[3];
    }
    return KrGePoint3d(x / w, y / w, z / w);
  }
  KrGeVector3d derivative(double u, KrGePoint3d& p) const {
    const int s = span(u);
    double N[kDegree + 1], d[kDegree + 1];
    basis(s, u, N, d);
    double a[4] = {0, 0, 0, 0}, b[4] = {0, 0, 0, 0};
    for (int j = 0; j <= kDegree; ++j)
      for (int c = 0; c < 4; ++c) {
        a[c] += N[j] * hw[4 * (s - kDegree + j) + c];
        b[c] += d[j] * hw[4 * (s - kDegree + j) + c];
      }
    p = KrGePoint3d(a[0] / a[3], a[1] / a[3], a[2] / a[3]);
    return KrGeVector3d((b[0] - p.x * b[3]) / a[3], (b[1] - p.y * b[3]) / a[3], (b[2] - p.z * b[3]) / a[3]);
  }
};

struct Curve {
  KrGeNurbCurve3d nurbs;
  Plain plain;
};

Curve makeCurve(unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> unit(0, 1);
  std::vector<double> knots(kDegree + 1, 0.0);
  for (int i = 1; i < kPoints - kDegree; ++i) knots.push_back(i + 0.3 * unit(engine));
  knots.insert(knots.end(), kDegree + 1, double(kPoints - kDegree));
  KrsArray<KrGePoint3d> points;
  KrsArray<double> weights;
  Curve curve;
  for (int i = 0; i < kPoints; ++i) {
    const double angle = 0.6 * i;
    points.Add(KrGePoint3d(i + 3 * std::cos(angle), 3 * std::sin(angle), 2 * unit(engine)));
    weights.Add(0.5 + unit(engine));
    const double w = weights[i];
    curve.plain.hw.insert(curve.plain.hw.end(), {w * points[i].x, w * points[i].y, w * points[i].z, w});
  }
  curve.plain.knots = knots;
  curve.nurbs = KrGeNurbCurve3d(kDegree, KrGeKnotVector(int(knots.size()), knots.data()), points, weights);
  return curve;
}

struct Inputs {
  Curve curve = makeCurve(1), other = makeCurve(2);
  std::vector<double> params;
  std::vector<KrGePoint3d> points;
  Inputs() {
    other.nurbs.translateBy(KrGeVector3d(0.5, 1.0, 4.0));
    std::mt19937_64 engine(9);
    std::uniform_real_distribution<double> unit(0, 1);
    for (int i = 0; i < kInputs; ++i) {
      params.push_back(unit(engine) * (kPoints - kDegree));
      points.emplace_back(unit(engine) * 20 - 1, unit(engine) * 10 - 5, unit(engine) * 6 - 3);
    }
  }
};

const Inputs& inputs() {
  static const Inputs data;
  return data;
}

void BM_NurbsPoint(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.curve.nurbs.evalPoint(in.params[i]));
    i = (i + 1) % kInputs;
  }
}
BENCHMARK(BM_NurbsPoint);

void BM_PlainPoint(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.curve.plain.point(in.params[i]));
    i = (i + 1) % kInputs;
  }
}
BENCHMARK(BM_PlainPoint);

void BM_NurbsFirstDerivative(benchmark::State& state) {
  const Inputs& in = inputs();
  KrsArray<KrGeVector3d> derivs;
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.curve.nurbs.evalPoint(in.params[i], 1, derivs));
    benchmark::DoNotOptimize(derivs[0]);
    i = (i + 1) % kInputs;
  }
}
BENCHMARK(BM_NurbsFirstDerivative);

void BM_PlainFirstDerivative(benchmark::State& state) {
  const Inputs& in = inputs();
  KrGePoint3d p;
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.curve.plain.derivative(in.params[i], p));
    benchmark::DoNotOptimize(p);
    i = (i + 1) % kInputs;
  }
}
BENCHMARK(BM_PlainFirstDerivative);

void BM_NurbsClosestPoint(benchmark::State& state) {
  const Inputs& in = inputs();
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.curve.nurbs.closestPointTo(in.points[i]));
    i = (i + 1) % kInputs;
  }
}
BENCHMARK(BM_NurbsClosestPoint);

// 4 samples per span and five unguarded Newton steps from the best: fast, not always global.
void BM_PlainClosestPoint(benchmark::State& state) {
  const Inputs& in = inputs();
  const Plain& plain = in.curve.plain;
  const double end = kPoints - kDegree;
  int i = 0;
  for (auto _ : state) {
    const KrGePoint3d& q = in.points[i];
    double best = HUGE_VAL, t = 0;
    for (int k = 0; k <= 4 * (kPoints - kDegree); ++k) {
      const double u = end * k / (4 * (kPoints - kDegree));
      const double d = plain.point(u).distanceTo(q);
      if (d < best) best = d, t = u;
    }
    for (int step = 0; step < 5; ++step) {
      KrGePoint3d p;
      const KrGeVector3d d1 = plain.derivative(t, p);
      t = std::fmax(0.0, std::fmin(end, t - d1.dotProduct(p - q) / d1.dotProduct(d1)));
    }
    benchmark::DoNotOptimize(t);
    i = (i + 1) % kInputs;
  }
}
BENCHMARK(BM_PlainClosestPoint);

void BM_NurbsClosestPair(benchmark::State& state) {
  const Inputs& in = inputs();
  KrGePoint3d onOther;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.curve.nurbs.closestPointTo(in.other.nurbs, onOther));
    benchmark::DoNotOptimize(onOther);
  }
}
BENCHMARK(BM_NurbsClosestPair)->Unit(benchmark::kMicrosecond);

// A 200 x 200 sample grid of both curves (accurate to about 1e-2 only).
void BM_PlainClosestPairGrid(benchmark::State& state) {
  const Inputs& in = inputs();
  std::vector<KrGePoint3d> a(200), b(200);
  for (auto _ : state) {
    const double end = kPoints - kDegree;
    for (int k = 0; k < 200; ++k) {
      a[k] = in.curve.plain.point(end * k / 199);
      b[k] = in.other.plain.point(end * k / 199) + KrGeVector3d(0.5, 1.0, 4.0);
    }
    double best = HUGE_VAL;
    for (const KrGePoint3d& p : a)
      for (const KrGePoint3d& q : b) best = std::fmin(best, p.distanceTo(q));
    benchmark::DoNotOptimize(best);
  }
}
BENCHMARK(BM_PlainClosestPairGrid)->Unit(benchmark::kMicrosecond);

}  // namespace
