// Independent references for the elliptical-arc tests, in long double: adaptive Gauss-Legendre
// for lengths, dense sampling refined by golden section for nearest points, and a seeded maker of
// ellipses in random frames with log-uniform sizes.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/entity/EntityKit.h"

namespace ellipse_test {

using LD = long double;
const LD kPiL = 3.14159265358979323846264338327950288L;

// 8-point Gauss-Legendre nodes and weights on [-1, 1], by Newton's method on P8 in long double.
struct Legendre8 {
  LD node[8], weight[8];
  Legendre8() {
    for (int i = 0; i < 8; ++i) {
      LD x = std::cos(kPiL * (i + 0.75L) / 8.5L), p1 = 0, p0 = 0;
      for (int step = 0; step < 30; ++step) {
        p0 = 1;
        p1 = x;
        for (int k = 2; k <= 8; ++k) {
          const LD p2 = ((2 * k - 1) * x * p1 - (k - 1) * p0) / k;
          p0 = p1;
          p1 = p2;
        }
        x -= p1 / (8 * (x * p1 - p0) / (x * x - 1));
      }
      const LD slope = 8 * (x * p1 - p0) / (x * x - 1);
      node[i] = x;
      weight[i] = 2 / ((1 - x * x) * slope * slope);
    }
  }
};

inline LD speed(LD a, LD b, LD t) { return std::sqrt(a * a * std::sin(t) * std::sin(t) + b * b * std::cos(t) * std::cos(t)); }

inline LD rule(LD a, LD b, LD l, LD r) {
  static const Legendre8 gl;
  LD sum = 0;
  for (int i = 0; i < 8; ++i) sum += gl.weight[i] * speed(a, b, (l + r) / 2 + (r - l) / 2 * gl.node[i]);
  return sum * (r - l) / 2;
}

// Halves until the two halves agree with the whole to within the interval's share of the error
// budget (the difference bounds the coarser rule's error).
inline LD adaptive(LD a, LD b, LD l, LD r, LD whole, LD budget, int depth) {
  const LD m = (l + r) / 2, left = rule(a, b, l, m), right = rule(a, b, m, r);
  if (depth > 40 || std::fabs(left + right - whole) <= budget) return left + right;
  return adaptive(a, b, l, m, left, budget / 2, depth + 1) + adaptive(a, b, m, r, right, budget / 2, depth + 1);
}

// Arc length from `from` to `to` (from <= to), split at the vertices and around the major ones.
inline double referenceLength(double a, double b, double from, double to) {
  std::vector<LD> cuts = {from, to};
  for (LD k = std::floor(from / (kPiL / 2)); k * kPiL / 2 <= to; ++k)
    for (LD offset : {0.0L, (LD)b / a, 10.0L * b / a, -(LD)b / a, -10.0L * b / a})
      if (from < k * kPiL / 2 + offset && k * kPiL / 2 + offset < to) cuts.push_back(k * kPiL / 2 + offset);
  std::sort(cuts.begin(), cuts.end());
  LD sum = 0;
  for (size_t i = 0; i + 1 < cuts.size(); ++i) {
    const LD whole = rule(a, b, cuts[i], cuts[i + 1]);
    sum += adaptive(a, b, cuts[i], cuts[i + 1], whole, 1e-17L * whole, 0);
  }
  return (double)sum;
}

// Distance from the local point (x, y, h) to the arc [start, start + sweep] of (a cos t, b sin t):
// `n` samples, the 4 best local minima (and the ends) refined by golden section.
inline double referenceDistance(double a, double b, double start, double sweep, double x, double y, double h,
                                int n = 4096) {
  const auto d2 = [&](LD t) {
    const LD dx = a * std::cos(t) - x, dy = b * std::sin(t) - y;
    return dx * dx + dy * dy + (LD)h * h;
  };
  std::vector<LD> value(n + 1);
  for (int i = 0; i <= n; ++i) value[i] = d2(start + (LD)sweep * i / n);
  LD best = std::min(value[0], value[n]);
  std::vector<std::pair<LD, int>> minima;
  for (int i = 1; i < n; ++i)
    if (value[i] <= value[i - 1] && value[i] <= value[i + 1]) minima.push_back({value[i], i});
  std::sort(minima.begin(), minima.end());
  for (size_t k = 0; k < minima.size() && k < 4; ++k) {
    LD lo = start + (LD)sweep * (minima[k].second - 1) / n, hi = start + (LD)sweep * (minima[k].second + 1) / n;
    for (int step = 0; step < 120; ++step) {
      const LD m1 = hi - 0.618033988749894848L * (hi - lo), m2 = lo + 0.618033988749894848L * (hi - lo);
      (d2(m1) < d2(m2) ? hi : lo) = d2(m1) < d2(m2) ? m2 : m1;
    }
    best = std::min(best, d2((lo + hi) / 2));
  }
  return (double)std::sqrt(best);
}

// An ellipse (or arc) in a random frame: centre in a cube of `reach`, major radius a, minor a *
// ratio, and the local coordinates of a point put back into space.
struct Placed {
  KrGeEllipArc3d curve;
  KrGeVector3d u, v, n;
  KrGePoint3d at(double x, double y, double h) const { return curve.center() + u * x + v * y + n * h; }
};
inline Placed place(Random& random, double a, double ratio, double reach, double start, double end) {
  Placed p;
  p.u = random.unitVector();
  p.v = p.u.crossProduct(random.unitVector());
  p.v = p.v / p.v.length();
  p.n = p.u.crossProduct(p.v);
  p.curve.set(random.point(reach), p.u, p.v, a, a * ratio, start, end);
  return p;
}

}  // namespace ellipse_test
