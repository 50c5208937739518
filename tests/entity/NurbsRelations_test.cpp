// The generic pair solver with NURBS curves: closest pairs against a brute-force grid for every
// partner kind, both argument orders, and crossings against sign changes found by dense sampling.
#include "tests/entity/NurbsTestKit.h"

#include <functional>

#include "entity/curve/KrGeCurve3dImpl.h"
#include "entity/relation/generic_pair.h"

namespace {

double rangeOf(const KrGeCurve3d& c, double& lo) {
  KrGeInterval r;
  c.getInterval(r);
  lo = r.isBoundedBelow() ? r.lowerBound() : -20.0;
  return (r.isBoundedAbove() ? r.upperBound() : 20.0) - lo;
}

// The smallest distance over a grid of both parameters: an upper bound of the true minimum.
double gridDistance(const KrGeCurve3d& a, const KrGeCurve3d& b, int n) {
  double loA, loB;
  const double wA = rangeOf(a, loA), wB = rangeOf(b, loB);
  std::vector<KrGePoint3d> pb(n + 1);
  for (int j = 0; j <= n; ++j) pb[j] = b.evalPoint(loB + wB * j / n);
  double best = HUGE_VAL;
  for (int i = 0; i <= n; ++i) {
    const KrGePoint3d p = a.evalPoint(loA + wA * i / n);
    for (const KrGePoint3d& q : pb) best = std::min(best, p.distanceTo(q));
  }
  return best;
}

// A planar cubic zigzag in z = 0 between y = -1 and y = 1, over [0, 1].
KrGeNurbCurve3d zigzag(int teeth) {
  nurbs_test::Definition d;
  d.degree = 3;
  const int n = 2 * teeth + 2;
  d.knots.assign(4, 0.0);
  for (int i = 1; i < n - 3; ++i) d.knots.push_back(double(i) / (n - 3));
  d.knots.insert(d.knots.end(), 4, 1.0);
  for (int i = 0; i < n; ++i) d.points.emplace_back(i, i % 2 ? 1.6 : -1.6, 0.0);
  return d.curve();
}

// The implementation behind a curve (a plain cast: the library keeps its type information).
const KrGeCurve3dImpl& implOf(const KrGeCurve3d& curve) {
  return *static_cast<const KrGeCurve3dImpl*>(KrEnt3dImpl::implOf(curve));
}

}  // namespace

TEST(NurbsRelations, ClosestPair_NoFartherThanTheGridForEveryPartnerKind) {
  const unsigned seed = 808;
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> coordinate(-10, 10);
  auto randomPoint = [&] { return KrGePoint3d(coordinate(engine), coordinate(engine), coordinate(engine)); };
  for (int trial = 0; trial < 30; ++trial) {
    const KrGeNurbCurve3d curve = nurbs_test::randomDefinition(engine).curve();
    const KrGeNurbCurve3d other = nurbs_test::randomDefinition(engine).curve();
    const KrGeLineSeg3d segment(randomPoint(), randomPoint());
    const KrGeCircArc3d arc(randomPoint(), KrGeVector3d(1, 2, 3), KrGeVector3d(3, -1, 0) / 3.16, 4, 0.5, 4.0);
    const KrGeEllipArc3d ellipse(randomPoint(), KrGeVector3d(1, 0, 1), KrGeVector3d(0, 1, 0), 6, 2, 1, 5);
    const KrGeCurve3d* partners[] = {&other, &segment, &arc, &ellipse};
    for (const KrGeCurve3d* partner : partners) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " trial " << trial << " kind " << partner->type());
      KrGePoint3d onPartner;
      const KrGePoint3d onCurve = curve.closestPointTo(*partner, onPartner);
      const double distance = onCurve.distanceTo(onPartner);
      EXPECT_LE(distance, gridDistance(curve, *partner, 500) + 1e-12);
      EXPECT_TRUE(curve.isOn(onCurve, KrGeTol()));
      EXPECT_TRUE(partner->isOn(onPartner, KrGeTol()));
      EXPECT_NEAR(partner->distanceTo(curve), distance, 1e-9);
    }
  }
}

// Every crossing of a zigzag with the X axis and with a circle: as many points as the sampled
// signed distance changes sign, each on both curves, the same points in both orders.
TEST(NurbsRelations, Intersections_EveryTransversalCrossing) {
  const KrGeNurbCurve3d curve = zigzag(6);
  const KrGeLine3d axis(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 0, 0));
  const KrGeCircArc3d circle(KrGePoint3d(7, 0.2, 0), KrGeVector3d::kZAxis, 4.5);
  struct Case {
    const KrGeCurve3d* partner;
    std::function<double(const KrGePoint3d&)> side;
  };
  const Case cases[] = {{&axis, [](const KrGePoint3d& p) { return p.y; }},
                        {&circle, [](const KrGePoint3d& p) { return p.distanceTo(KrGePoint3d(7, 0.2, 0)) - 4.5; }}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.partner->type());
    int changes = 0;
    double previous = c.side(curve.evalPoint(0.0));
    for (int i = 1; i <= 100000; ++i) {
      const double value = c.side(curve.evalPoint(i / 100000.0));
      if ((value > 0) != (previous > 0)) ++changes;
      previous = value;
    }
    KrsArray<double> s, t, s2, t2;
    const int count = krGenericIntersections(implOf(curve), implOf(*c.partner), nullptr, nullptr, KrGeTol(), s, t);
    EXPECT_EQ(count, changes);
    for (int i = 0; i < count; ++i) {
      EXPECT_NEAR(c.side(curve.evalPoint(s[i])), 0.0, 1e-9) << i;
      EXPECT_LE(curve.evalPoint(s[i]).distanceTo(c.partner->evalPoint(t[i])), 1e-9) << i;
    }
    EXPECT_EQ(krGenericIntersections(implOf(*c.partner), implOf(curve), nullptr, nullptr, KrGeTol(), t2, s2), count);
    for (int i = 0; i < s2.GetSize(); ++i) {
      double nearest = HUGE_VAL;
      for (int j = 0; j < count; ++j) nearest = std::min(nearest, std::fabs(s2[i] - s[j]));
      EXPECT_LE(nearest, 1e-9) << i;
    }
  }
}
