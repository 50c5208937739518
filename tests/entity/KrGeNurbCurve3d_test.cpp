// NURBS curves: evaluation against a naive Cox-de Boor, rational circles, length against
// adaptive quadrature, nearest points against dense sampling, the stored-definition operations
// with their departures from textbook forms, lifetime, and bad definitions.
#include "testkit/CurveConformance.h"
#include "tests/entity/NurbsTestKit.h"

#include <algorithm>
#include <functional>

using nurbs_test::Definition;
using nurbs_test::near;

namespace {

const double kPi = 3.141592653589793;

// The full circle of radius r about the origin in the XY plane: nine points, quarter knots.
Definition circle(double r) {
  Definition d;
  d.degree = 2;
  d.knots = {0, 0, 0, 0.25, 0.25, 0.5, 0.5, 0.75, 0.75, 1, 1, 1};
  const double xs[] = {1, 1, 0, -1, -1, -1, 0, 1, 1}, ys[] = {0, 1, 1, 1, 0, -1, -1, -1, 0};
  for (int i = 0; i < 9; ++i) {
    d.points.emplace_back(r * xs[i], r * ys[i], 0.0);
    d.weights.push_back(i % 2 ? std::sqrt(0.5) : 1.0);
  }
  return d;
}

Definition quarterCircle() {
  Definition d;
  d.degree = 2;
  d.knots = {0, 0, 0, 1, 1, 1};
  d.points = {KrGePoint3d(1, 0, 0), KrGePoint3d(1, 1, 0), KrGePoint3d(0, 1, 0)};
  d.weights = {1.0, std::sqrt(0.5), 1.0};
  return d;
}

// Adaptive Simpson of f over [a, b] to an absolute tolerance (the independent reference).
double simpson(const std::function<double(double)>& f, double a, double b, double tol, int depth = 0) {
  const double m = 0.5 * (a + b), whole = (b - a) / 6 * (f(a) + 4 * f(m) + f(b));
  const double left = (m - a) / 6 * (f(a) + 4 * f(0.5 * (a + m)) + f(m));
  const double right = (b - m) / 6 * (f(m) + 4 * f(0.5 * (m + b)) + f(b));
  if (depth > 40 || std::fabs(left + right - whole) <= 15 * tol) return left + right + (left + right - whole) / 15;
  return simpson(f, a, m, tol / 2, depth + 1) + simpson(f, m, b, tol / 2, depth + 1);
}

double lengthReference(const Definition& d) {
  double total = 0.0;
  for (std::size_t i = 0; i + 1 < d.knots.size(); ++i)
    if (d.knots[i] < d.knots[i + 1])
      total += simpson([&](double u) { return nurbs_test::naiveDerivs(d, u, 1)[1].length(); }, d.knots[i],
                       d.knots[i + 1], 1e-12);
  return total;
}

double rangeStart(const KrGeCurve3d& c) { KrGeInterval r; c.getInterval(r); return r.lowerBound(); }
double rangeEnd(const KrGeCurve3d& c) { KrGeInterval r; c.getInterval(r); return r.upperBound(); }

}  // namespace

namespace testkit {
template <>
struct CurveSamples<KrGeNurbCurve3d> {
  static std::vector<KrGeNurbCurve3d> make() {
    std::mt19937_64 engine(7);
    std::vector<KrGeNurbCurve3d> all{quarterCircle().curve()};
    for (int i = 0; i < 3; ++i) all.push_back(nurbs_test::randomDefinition(engine, true).curve());
    return all;
  }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Nurbs, CurveConformance, ::testing::Types<KrGeNurbCurve3d>);
}  // namespace testkit

TEST(KrGeNurbCurve3d, Evaluate_MatchesNaiveCoxDeBoorToThirdDerivative) {
  const unsigned seed = 20261125;
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  for (int trial = 0; trial < 600; ++trial) {
    const Definition d = nurbs_test::randomDefinition(engine);
    const KrGeNurbCurve3d curve = d.curve();
    double smallest = HUGE_VAL, size = 0.0;
    for (std::size_t i = 0; i + 1 < d.knots.size(); ++i)
      if (d.knots[i + 1] > d.knots[i]) smallest = std::min(smallest, d.knots[i + 1] - d.knots[i]);
    for (const KrGePoint3d& p : d.points) size = std::max(size, p.asVector().length());
    double wRatio = 1.0;
    if (!d.weights.empty())
      wRatio = *std::max_element(d.weights.begin(), d.weights.end()) / *std::min_element(d.weights.begin(), d.weights.end());
    std::vector<double> params{d.knots.front(), d.knots.back()};
    for (int i = 0; i < 6; ++i) params.push_back(d.knots.front() + unit(engine) * (d.knots.back() - d.knots.front()));
    for (double k : d.knots) params.push_back(k);
    for (double u : params) {
      // Each order asked separately: the evaluator has its own route for one and two.
      const int orders = 1 + static_cast<int>(engine() % 3);
      KrsArray<KrGeVector3d> derivs;
      const KrGePoint3d point = curve.evalPoint(u, orders, derivs);
      const std::vector<KrGeVector3d> want = nurbs_test::naiveDerivs(d, u, orders);
      ASSERT_EQ(derivs.GetSize(), orders);
      for (int k = 0; k <= orders; ++k) {
        const KrGeVector3d got = k == 0 ? point.asVector() : derivs[k - 1];
        const double scale = size * std::pow(wRatio * d.degree / smallest, k);
        EXPECT_TRUE(near(got, want[k], 1e-12 * std::max(want[k].length(), scale)))
            << "seed " << seed << " trial " << trial << " u " << u << " order " << k;
      }
    }
  }
}

TEST(KrGeNurbCurve3d, Evaluate_RationalCirclesStayOnTheCircle) {
  for (double r : {1e-12, 1.0, 1e8}) {
    const KrGeNurbCurve3d curve = circle(r).curve();
    KrsArray<KrGePoint3d> samples;
    curve.getSamplePoints(1001, samples);
    ASSERT_EQ(samples.GetSize(), 1001);
    for (int i = 0; i < samples.GetSize(); ++i)
      EXPECT_NEAR(samples[i].asVector().length(), r, 1e-14 * r) << "r " << r << " sample " << i;
    KrsArray<KrGeVector3d> d;
    curve.evalPoint(0.1, 2, d);
    EXPECT_NEAR(d[0].dotProduct(curve.evalPoint(0.1).asVector()), 0.0, 1e-12 * r * d[0].length()) << r;
  }
  EXPECT_NEAR(quarterCircle().curve().length(0, 1, 1e-14), kPi / 2, 1e-14);
}

TEST(KrGeNurbCurve3d, Length_MatchesAdaptiveQuadratureAndInverts) {
  const unsigned seed = 977;
  std::mt19937_64 engine(seed);
  for (int trial = 0; trial < 20; ++trial) {
    const Definition d = nurbs_test::randomDefinition(engine);
    const KrGeNurbCurve3d curve = d.curve();
    const double a = d.knots.front(), b = d.knots.back();
    const double want = lengthReference(d);
    const double got = curve.length(a, b, 1e-13 * want);
    EXPECT_NEAR(got, want, 1e-10 * want) << "seed " << seed << " trial " << trial;
    for (double share : {0.1, 0.5, 0.93}) {
      const double t = a + share * (b - a);
      const double partial = curve.length(a, t, 1e-13 * want);
      EXPECT_NEAR(curve.paramAtLength(a, partial, true, 1e-13 * want), t, 1e-9 * (b - a)) << trial << " " << share;
      EXPECT_NEAR(curve.paramAtLength(b, got - partial, false, 1e-13 * want), t, 1e-9 * (b - a)) << trial;
    }
    EXPECT_EQ(curve.paramAtLength(a, 2 * got), b) << trial;
  }
}

TEST(KrGeNurbCurve3d, ClosestPoint_NoFartherThanDenseSamplesAndParamOfRoundTrips) {
  const unsigned seed = 4242;
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> coordinate(-15, 15);
  for (int trial = 0; trial < 60; ++trial) {
    const Definition d = nurbs_test::randomDefinition(engine);
    const KrGeNurbCurve3d curve = d.curve();
    const double a = d.knots.front(), b = d.knots.back();
    for (int q = 0; q < 5; ++q) {
      const KrGePoint3d p(coordinate(engine), coordinate(engine), coordinate(engine));
      const KrGePoint3d c = curve.closestPointTo(p);
      double brute = HUGE_VAL;
      for (int i = 0; i <= 4000; ++i) brute = std::min(brute, p.distanceTo(curve.evalPoint(a + (b - a) * i / 4000)));
      EXPECT_LE(p.distanceTo(c), brute + 1e-12) << "seed " << seed << " trial " << trial;
      EXPECT_LE(curve.evalPoint(curve.paramOf(c)).distanceTo(c), 1e-9) << trial;
    }
  }
}

TEST(KrGeNurbCurve3d, ShapeQueries_SplitReverseTrimBlockAndTransform) {
  std::mt19937_64 engine(99);
  for (int trial = 0; trial < 30; ++trial) {
    const Definition d = nurbs_test::randomDefinition(engine);
    KrGeNurbCurve3d curve = d.curve();
    const double a = d.knots.front(), b = d.knots.back(), mid = a + 0.37 * (b - a);
    KrGeCurve3d *left = nullptr, *right = nullptr;
    curve.getSplitCurves(mid, left, right);
    ASSERT_TRUE(left && right);
    EXPECT_EQ(rangeEnd(*left), mid);
    for (double s : {0.0, 0.2, 0.7, 1.0}) {
      EXPECT_LE(left->evalPoint(a + s * (mid - a)).distanceTo(curve.evalPoint(a + s * (mid - a))), 1e-11) << trial;
      EXPECT_LE(right->evalPoint(mid + s * (b - mid)).distanceTo(curve.evalPoint(mid + s * (b - mid))), 1e-11);
    }
    delete left;
    delete right;
    KrGeNurbCurve3d reversed(curve);
    reversed.reverseParam();
    EXPECT_LE(reversed.evalPoint(a + b - mid).distanceTo(curve.evalPoint(mid)), 1e-11) << trial;
    // The exact block against each coordinate's extremes: the best of dense samples, refined
    // by ternary search between its neighbours.
    KrGePoint3d low, high;
    curve.boundBlock().getMinMaxPoints(low, high);
    for (unsigned c = 0; c < 3; ++c)
      for (double sign : {-1.0, 1.0}) {
        auto value = [&](double t) { return sign * curve.evalPoint(t)[c]; };
        int best = 0;
        for (int i = 0; i <= 4000; ++i)
          if (value(a + (b - a) * i / 4000) > value(a + (b - a) * best / 4000)) best = i;
        double lo = a + (b - a) * std::max(0, best - 1) / 4000, hi = a + (b - a) * std::min(4000, best + 1) / 4000;
        for (int step = 0; step < 200; ++step) {
          const double m1 = lo + (hi - lo) / 3, m2 = hi - (hi - lo) / 3;
          if (value(m1) < value(m2)) lo = m1; else hi = m2;
        }
        const double extreme = std::max(value(lo), value(a + (b - a) * best / 4000));
        EXPECT_NEAR(sign > 0 ? high[c] : -low[c], extreme, 1e-9) << trial << " axis " << c;
      }
    KrGeNurbCurve3d trimmed(curve);
    ASSERT_TRUE(trimmed.setInterval(KrGeInterval(mid, b)));
    EXPECT_EQ(rangeStart(trimmed), mid);
    EXPECT_LE(trimmed.evalPoint(mid).distanceTo(curve.evalPoint(mid)), 1e-11);
    const KrGeMatrix3d m = KrGeMatrix3d::rotation(0.7, KrGeVector3d(1, 2, 3), KrGePoint3d(1, 0, 2));
    KrGeNurbCurve3d moved(curve);
    moved.transformBy(m).transformBy(m.inverse());
    EXPECT_TRUE(moved.isEqualTo(curve, KrGeTol()));
  }
}

TEST(KrGeNurbCurve3d, Samples_ChordsStayWithinApproxEps) {
  std::mt19937_64 engine(5);
  for (int trial = 0; trial < 20; ++trial) {
    const Definition d = nurbs_test::randomDefinition(engine);
    const KrGeNurbCurve3d curve = d.curve();
    KrsArray<KrGePoint3d> points;
    KrsArray<double> params;
    curve.getSamplePoints(d.knots.front(), d.knots.back(), 1e-3, points, params);
    ASSERT_GE(points.GetSize(), 2);
    for (int i = 0; i + 1 < params.GetSize(); ++i) {
      ASSERT_LT(params[i], params[i + 1]);
      const KrGeLineSeg3d chord(points[i], points[i + 1]);
      for (int j = 1; j < 8; ++j)
        EXPECT_LE(chord.distanceTo(curve.evalPoint(params[i] + (params[i + 1] - params[i]) * j / 8)), 1e-3) << trial;
    }
  }
}

// The stored definition as its operations leave it, observed through the stored point
// evaluation and the curve's range.
TEST(KrGeNurbCurve3d, Definition_KnotOperationsAsSpecified) {
  KrGeNurbCurve3d line;
  EXPECT_EQ(line.numFitPoints(), 2);
  EXPECT_EQ(line.numWeights(), 0);
  EXPECT_TRUE(line.evaluatePoint(0.5).isEqualTo(KrGePoint3d(0.5, 0, 0)));
  EXPECT_EQ(line.type(), KrGe::kNurbCurve3d);
  for (int id : {1, 11, 15, 17, 23, 41, 42, 47})
    EXPECT_EQ(line.isKindOf(KrGe::EntityId(id)), id == 1 || id == 15 || id == 41 || id == 42) << id;
  KrGeNurbCurve3d same(line);
  same.addKnot(1.0);
  EXPECT_EQ(rangeEnd(same), 1.0);
  line.addKnot(0.5);  // knots [0, 0, 0.5, 1, 1], still two points: the range shrinks to [0, 0.5]
  EXPECT_EQ(rangeEnd(line), 0.5);
  EXPECT_TRUE(line.evaluatePoint(0.25).isEqualTo(KrGePoint3d(0.5, 0, 0)));
  KrGeNurbCurve3d inserted;
  inserted.insertKnot(0.5);  // points P0, P1, P1 in use: the second half stays at P1
  EXPECT_EQ(inserted.numFitPoints(), 5);
  EXPECT_TRUE(inserted.evalPoint(0.25).isEqualTo(KrGePoint3d(0.5, 0, 0)));
  EXPECT_TRUE(inserted.evalPoint(0.75).isEqualTo(KrGePoint3d(1, 0, 0)));
  KrGeNurbCurve3d lowered;
  lowered.elevateDegree(-1);
  EXPECT_TRUE(lowered.evaluatePoint(0.5).isEqualTo(KrGePoint3d(1, 0, 0)));
  EXPECT_FALSE(lowered.purgeFitData());
  KrsArray<KrGePoint3d> fit;
  fit.Add(KrGePoint3d(1, 2, 3));
  lowered.setFitData(3, fit);
  KrGePoint3d got;
  EXPECT_FALSE(lowered.getFitPointAt(0, got));
  EXPECT_TRUE(got.isEqualTo(KrGePoint3d(1, 2, 3)));
  EXPECT_TRUE(lowered.purgeFitData());
  EXPECT_FALSE(lowered.purgeFitData());
  EXPECT_EQ(line.degree(), 0);
  EXPECT_TRUE(line.knots().isEmpty());
  EXPECT_TRUE(line.controlPointAt(0).isEqualTo(KrGePoint3d::kOrigin));
  const KrGeNurbCurve3d fromSegment(KrGeLineSeg3d(KrGePoint3d(1, 1, 1), KrGePoint3d(4, 5, 1)));
  EXPECT_EQ(rangeEnd(fromSegment), 5.0);
  EXPECT_TRUE(fromSegment.evalPoint(2.5).isEqualTo(KrGePoint3d(2.5, 3, 1)));
}

// Inserting the end parameter changes no point in use, for every degree; the weights of a
// rational curve stop counting (more points than weights afterwards).
TEST(KrGeNurbCurve3d, InsertKnot_EndParameterLeavesTheShape) {
  std::mt19937_64 engine(31);
  for (int trial = 0; trial < 40; ++trial) {
    Definition d = nurbs_test::randomDefinition(engine);
    d.weights.clear();
    KrGeNurbCurve3d curve = d.curve();
    const KrGeNurbCurve3d before(curve);
    curve.insertKnot(d.knots.back());
    for (int i = 0; i <= 10; ++i) {
      const double u = d.knots.front() + (d.knots.back() - d.knots.front()) * i / 10;
      EXPECT_LE(curve.evalPoint(u).distanceTo(before.evalPoint(u)), 1e-12) << trial;
    }
  }
}

TEST(KrGeNurbCurve3d, BasisValue_PartitionOfUnityAndNaiveAgreement) {
  std::mt19937_64 engine(12);
  for (int trial = 0; trial < 30; ++trial) {
    const Definition d = nurbs_test::randomDefinition(engine);
    const KrGeNurbCurve3d curve = d.curve();
    for (double u : {d.knots.front(), 0.5 * (d.knots.front() + d.knots.back()), d.knots.back()}) {
      double sum = 0.0;
      for (int i = 0; i < static_cast<int>(d.points.size()); ++i) {
        const double value = curve.basisValue(u, i, d.degree + 1);
        EXPECT_NEAR(value, nurbs_test::naiveBasis(d.knots, i, d.degree, 0, u), 1e-14) << trial;
        sum += value;
      }
      EXPECT_NEAR(sum, 1.0, 1e-14) << trial;
    }
  }
}

TEST(KrGeNurbCurve3d, Lifetime_CopiesAndAssignmentsInAnyOrder) {
  std::mt19937_64 engine(3);
  std::vector<KrGeNurbCurve3d*> live;
  for (int step = 0; step < 300; ++step) {
    const int action = static_cast<int>(engine() % 4);
    if (action == 0 || live.size() < 2) {
      live.push_back(new KrGeNurbCurve3d(nurbs_test::randomDefinition(engine).curve()));
    } else if (action == 1) {
      live.push_back(static_cast<KrGeNurbCurve3d*>(live[engine() % live.size()]->copy()));
    } else if (action == 2) {
      KrGeEntity3d& target = *live[engine() % live.size()];
      target = *live[engine() % live.size()];
    } else {
      const std::size_t index = engine() % live.size();
      delete live[index];
      live.erase(live.begin() + static_cast<long>(index));
    }
  }
  for (KrGeNurbCurve3d* curve : live) {
    KrGeNurbCurve3d copy(*curve);
    *curve = copy;
    EXPECT_TRUE(curve->isEqualTo(copy));
    delete curve;
  }
}

// Bad definitions: no crash, the documented neutral answers.
TEST(KrGeNurbCurve3d, BadInput_NeutralAnswers) {
  const double nan = std::nan("");
  struct Row {
    const char* name;
    int degree;
    std::vector<double> knots;
    int numPoints;
    std::vector<double> weights;
  };
  const Row rows[] = {
      {"degree 0", 0, {0, 0, 1, 1}, 2, {}},
      {"negative degree", -3, {0, 0, 1, 1}, 2, {}},
      {"knots out of order", 2, {0, 0, 0, 2, 1, 3, 3, 3}, 5, {}},
      {"too few points", 3, {0, 0, 0, 0, 1, 1, 1, 1}, 3, {}},
      {"zero weight", 2, {0, 0, 0, 1, 1, 1}, 3, {1, 0, 1}},
      {"negative weight", 2, {0, 0, 0, 1, 1, 1}, 3, {1, -2, 1}},
      {"NaN knot", 1, {0, 0, nan, 1}, 2, {}},
      {"NaN weight", 1, {0, 0, 1, 1}, 2, {1, nan}},
      {"huge degree", 1 << 30, {0, 1}, 2, {}},
      {"no knots", 2, {}, 3, {}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KrGeKnotVector knots(static_cast<int>(row.knots.size()), row.knots.data());
    KrsArray<KrGePoint3d> points;
    for (int i = 0; i < row.numPoints; ++i) points.Add(KrGePoint3d(i, i * i, 1));
    KrsArray<double> weights;
    for (double w : row.weights) weights.Add(w);
    const KrGeNurbCurve3d curve(row.degree, knots, points, weights);
    EXPECT_EQ(curve.length(-10, 10), 0.0);
    KrsArray<KrGePoint3d> samples;
    curve.getSamplePoints(10, samples);
    EXPECT_EQ(samples.GetSize(), 0);
    EXPECT_TRUE(curve.boundBlock().isEmpty());
    EXPECT_FALSE(curve.isClosed());
    KrGeCurve3d *one = nullptr, *two = nullptr;
    curve.getSplitCurves(0.5, one, two);
    EXPECT_EQ(one, nullptr);
    EXPECT_EQ(two, nullptr);
    KrsArray<KrGeVector3d> derivs;
    curve.evalPoint(0.5, 2, derivs);
    ASSERT_EQ(derivs.GetSize(), 2);
    EXPECT_EQ(derivs[1].length(), 0.0);
    curve.evaluatePoint(nan);
    curve.closestPointTo(KrGePoint3d(1, 1, 1));
  }
}
