// Helpers of the NURBS tests: random clamped curves and a naive evaluator (the recursive
// Cox-de Boor definition, derivatives by its recursive derivative rule, rational derivatives by
// the Leibniz rule with binomials), written independently of the library's evaluator.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "KrGeL.h"

namespace nurbs_test {

struct Definition {
  int degree = 1;
  std::vector<double> knots;
  std::vector<KrGePoint3d> points;
  std::vector<double> weights;  // empty: not rational

  KrGeNurbCurve3d curve() const {
    KrGeKnotVector kv(static_cast<int>(knots.size()), knots.data());
    KrsArray<KrGePoint3d> cps;
    for (const KrGePoint3d& p : points) cps.Add(p);
    KrsArray<double> ws;
    for (double w : weights) ws.Add(w);
    return KrGeNurbCurve3d(degree, kv, cps, ws);
  }
};

// Degree 1..5, p + 1 to p + 8 points, interior knots with repeats up to the degree, the domain
// moved and scaled, weights log-uniform in [0.1, 10] on half the curves.
// Smooth ones are cubic to quintic with simple interior knots.
inline Definition randomDefinition(std::mt19937_64& engine, bool smooth = false) {
  std::uniform_int_distribution<int> degreeOf(smooth ? 3 : 1, 5), extra(0, 7), coin(0, 1);
  std::uniform_real_distribution<double> unit(0.0, 1.0), coordinate(-10.0, 10.0);
  Definition d;
  d.degree = degreeOf(engine);
  const int n = d.degree + 1 + extra(engine);
  const double start = coordinate(engine), width = std::pow(10.0, 2.0 * unit(engine) - 1.0);
  std::vector<double> interior;
  while (static_cast<int>(interior.size()) < n - d.degree - 1) {
    const double value = unit(engine);
    const int repeat = smooth ? 1 : 1 + static_cast<int>(unit(engine) * unit(engine) * d.degree);
    for (int r = 0; r < repeat && static_cast<int>(interior.size()) < n - d.degree - 1; ++r) interior.push_back(value);
  }
  std::sort(interior.begin(), interior.end());
  d.knots.assign(d.degree + 1, start);
  for (double k : interior) d.knots.push_back(start + width * k);
  d.knots.insert(d.knots.end(), d.degree + 1, start + width);
  for (int i = 0; i < n; ++i) d.points.emplace_back(coordinate(engine), coordinate(engine), coordinate(engine));
  if (coin(engine))
    for (int i = 0; i < n; ++i) d.weights.push_back(std::pow(10.0, 2.0 * unit(engine) - 1.0));
  return d;
}

// The k-th derivative of basis function i of degree p at u (right-continuous; the last
// non-empty span is closed at the end knot).
inline double naiveBasis(const std::vector<double>& t, int i, int p, int k, double u) {
  if (k > p) return 0.0;
  if (p == 0) {
    if (t[i] <= u && u < t[i + 1]) return 1.0;
    if (u == t.back() && t[i] < t[i + 1] && t[i + 1] == t.back()) return 1.0;
    return 0.0;
  }
  auto ratio = [](double a, double b) { return b == 0.0 ? 0.0 : a / b; };
  if (k == 0)
    return ratio(u - t[i], t[i + p] - t[i]) * naiveBasis(t, i, p - 1, 0, u) +
           ratio(t[i + p + 1] - u, t[i + p + 1] - t[i + 1]) * naiveBasis(t, i + 1, p - 1, 0, u);
  return p * (ratio(naiveBasis(t, i, p - 1, k - 1, u), t[i + p] - t[i]) -
              ratio(naiveBasis(t, i + 1, p - 1, k - 1, u), t[i + p + 1] - t[i + 1]));
}

// Point (k = 0) and derivatives up to maxOrder of the curve at u.
inline std::vector<KrGeVector3d> naiveDerivs(const Definition& d, double u, int maxOrder) {
  const int n = static_cast<int>(d.points.size());
  std::vector<KrGeVector3d> a(maxOrder + 1);
  std::vector<double> w(maxOrder + 1, 0.0);
  for (int k = 0; k <= maxOrder; ++k)
    for (int i = 0; i < n; ++i) {
      const double b = naiveBasis(d.knots, i, d.degree, k, u);
      const double wi = d.weights.empty() ? 1.0 : d.weights[i];
      a[k] += b * wi * d.points[i].asVector();
      w[k] += b * wi;
    }
  std::vector<KrGeVector3d> c(maxOrder + 1);
  for (int k = 0; k <= maxOrder; ++k) {
    KrGeVector3d v = a[k];
    double binomial = 1.0;
    for (int i = 1; i <= k; ++i) {
      binomial = binomial * (k - i + 1) / i;
      v -= binomial * w[i] * c[k - i];
    }
    c[k] = v / w[0];
  }
  return c;
}

inline ::testing::AssertionResult near(const KrGeVector3d& got, const KrGeVector3d& want, double tol) {
  if ((got - want).length() <= tol) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "(" << got.x << ", " << got.y << ", " << got.z << ") vs (" << want.x << ", "
                                       << want.y << ", " << want.z << "): " << (got - want).length() << " > " << tol;
}

}  // namespace nurbs_test
