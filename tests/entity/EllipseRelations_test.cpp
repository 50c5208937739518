// Elliptical arcs with lines, planes, circular arcs and other ellipses: intersection counts and
// points against constructions and sign changes sampled here, closest pairs against dense
// sampling, projection and views along a direction. The conic-conic solver is hidden in the
// library; this program compiles it (see tests.cmake) to reach it directly.
#include "entity/ellipse/ellipse_intersect.h"
#include "tests/entity/EllipseTestKit.h"

#include <functional>
#include <memory>

using ellipse_test::LD;
using ellipse_test::place;

namespace {


KrEllipseFrame frameOf(const KrGeEllipArc3d& e) {
  KrEllipseFrame f;
  f.center = e.center();
  f.majorAxis = e.majorAxis();
  f.minorAxis = e.minorAxis();
  f.majorRadius = e.majorRadius();
  f.minorRadius = e.minorRadius();
  f.startAng = e.startAng();
  f.sweep = e.endAng() - e.startAng();
  return f;
}

// Distance from a point to the arc `e`, by the sampled reference.
double distanceTo(const KrGeEllipArc3d& e, const KrGePoint3d& q, int samples = 4096) {
  const KrGeVector3d d = q - e.center();
  return ellipse_test::referenceDistance(e.majorRadius(), e.minorRadius(), e.startAng(), e.endAng() - e.startAng(),
                                         d.dotProduct(e.majorAxis()), d.dotProduct(e.minorAxis()),
                                         d.dotProduct(e.normal()), samples);
}

double distanceToSegment(const KrGePoint3d& q, const KrGePoint3d& p0, const KrGePoint3d& p1) {
  return distanceToSegment(q, Segment{p0, p1});
}

}  // namespace

// Chords through two points of the arc, tangents (touching, and missing by twice the tolerance),
// steep lines through one point, and segments stopping short.
TEST(EllipseRelations, LineIntersection_CountsAndPointsOnBothCurves) {
  const KrGeTol tol = tolerance(1e-9, 1e-10);
  repeat(8, 600, [&](Random& random, int i) {
    const double a = random.magnitude(-2, 2), start = random.uniform(-3, 3), sweep = random.uniform(1, 2 * kPi);
    const ellipse_test::Placed p = place(random, a, random.magnitude(-2, 0), 10, start, start + sweep);
    const double t1 = start + sweep * random.uniform(0.05, 0.45), t2 = start + sweep * random.uniform(0.55, 0.95);
    const KrGePoint3d e1 = p.curve.evalPoint(t1), e2 = p.curve.evalPoint(t2);
    KrsArray<KrGeVector3d> d;
    p.curve.evalPoint(t1, 1, d);
    const KrGeVector3d outward = d[0].crossProduct(p.n) / d[0].length();
    const KrGeVector3d steep = p.n + random.unitVector() * 0.5;
    const std::pair<KrGeLine3d, int> cases[] = {
        {KrGeLine3d(e1, e2), 2},
        {KrGeLine3d(e1, d[0]), 1},
        {KrGeLine3d(e1 + outward * (i % 2 ? 0.5e-9 : 2e-9), d[0]), i % 2},
        {KrGeLine3d(e1, steep), 1}};
    for (const auto& [line, expected] : cases) {
      int count = -1;
      KrGePoint3d q[2];
      p.curve.intersectWith(line, count, q[0], q[1], tol);
      ASSERT_EQ(count, expected) << "case " << &line - &cases[0].first;
      for (int k = 0; k < count; ++k) {
        EXPECT_LE(distanceTo(p.curve, q[k], 1024), 1e-9 * (1 + a));
        EXPECT_LE(line.distanceTo(q[k]), 1e-9 * (1 + a));
      }
    }
    int count = -1;
    KrGePoint3d q[2];
    p.curve.intersectWith(KrGeLineSeg3d(e1 + (e2 - e1) * 0.2, e1 + (e2 - e1) * 0.8), count, q[0], q[1], tol);
    EXPECT_EQ(count, 0);
  });
}

// Random planes: as many points as the height changes sign along the arc (sampled), each on both.
TEST(EllipseRelations, PlaneIntersection_MatchesSampledSignChanges) {
  repeat(9, 400, [](Random& random, int) {
    const double start = random.uniform(-3, 3), sweep = random.uniform(0.5, 2 * kPi);
    const ellipse_test::Placed p = place(random, 2, random.magnitude(-2, 0), 1, start, start + sweep);
    const KrGePlane plane(p.curve.center() + random.unitVector() * random.uniform(0, 2), random.unitVector());
    int changes = 0;
    double previous = plane.signedDistanceTo(p.curve.evalPoint(start)), least = std::fabs(previous);
    for (int k = 1; k <= 4000; ++k) {
      const double h = plane.signedDistanceTo(p.curve.evalPoint(start + sweep * k / 4000));
      changes += (h < 0) != (previous < 0);
      least = std::fmin(least, std::fabs(h));
      previous = h;
    }
    if (least < 1e-3 && changes == 0) return;  // a near touching: not a transversal case
    int count = -1;
    KrGePoint3d q[2];
    p.curve.intersectWith(plane, count, q[0], q[1]);
    ASSERT_EQ(count, changes);
    for (int k = 0; k < count; ++k) {
      EXPECT_LE(std::fabs(plane.signedDistanceTo(q[k])), 1e-12);
      EXPECT_LE(distanceTo(p.curve, q[k]), 1e-12);
    }
  });
}

// Coplanar pairs (one a circle in a third of the cases): as many points as the second ellipse's
// equation changes sign along the first within both arcs; crossing planes through a common point.
TEST(EllipseRelations, ConicIntersection_CountsMatchSignChangesAndCommonPoints) {
  const double tol = 1e-9;
  repeat(10, 300, [&](Random& random, int i) {
    const double s1 = random.uniform(-3, 3), s2 = random.uniform(-3, 3);
    const ellipse_test::Placed p = place(random, 2, random.uniform(0.2, 1), 0, s1, s1 + random.uniform(1, 2 * kPi));
    const double turn = i * 0.7, ra = random.uniform(0.5, 2.5);
    const KrGeVector3d major = p.u * std::cos(turn) + p.v * std::sin(turn);
    const KrGeEllipArc3d other(p.curve.center() + p.u * random.uniform(-1.5, 1.5) + p.v * random.uniform(-1.5, 1.5),
                               major, p.n.crossProduct(major), ra, i % 3 ? random.uniform(0.2, 1) * ra : ra, s2,
                               s2 + random.uniform(1, 2 * kPi));
    const KrEllipseFrame f1 = frameOf(p.curve), f2 = frameOf(other);
    const auto equation = [&](double t) {
      const KrGeVector3d d = p.curve.evalPoint(t) - other.center();
      const double x = d.dotProduct(other.majorAxis()) / other.majorRadius(), y = d.dotProduct(other.minorAxis()) / other.minorRadius();
      return x * x + y * y - 1;
    };
    const int n = 8000;
    const double sweep = p.curve.endAng() - s1;
    std::vector<double> value(n + 1);
    for (int k = 0; k <= n; ++k) value[k] = equation(s1 + sweep * k / n);
    int expected = 0;
    for (int k = 1; k <= n; ++k) {
      if (k < n && std::fabs(value[k]) < 1e-3 && std::fabs(value[k]) <= std::fabs(value[k - 1]) &&
          std::fabs(value[k]) <= std::fabs(value[k + 1]) && (value[k - 1] < 0) == (value[k + 1] < 0))
        return;  // a near tangency: not a transversal case
      if ((value[k] < 0) == (value[k - 1] < 0)) continue;
      const KrGePoint3d crossing = p.curve.evalPoint(s1 + sweep * k / n);
      const double d = distanceTo(other, crossing);
      const bool nearEnd = k == 1 || k == n || crossing.distanceTo(other.startPoint()) < 1e-2 ||
                           crossing.distanceTo(other.endPoint()) < 1e-2;
      if (nearEnd && d < 1e-2) return;  // next to an end of either arc: ambiguous by sampling
      expected += d < 1e-2;
    }
    KrEllipseHit hits[4];
    const int count = krEllipseEllipseHits(f1, f2, tol, hits);
    ASSERT_EQ(count, expected);
    for (int k = 0; k < count; ++k) {
      EXPECT_LE(distanceTo(p.curve, hits[k].point), tol);
      EXPECT_LE(distanceTo(other, hits[k].point), tol);
      EXPECT_TRUE(within(p.curve.evalPoint(hits[k].t), hits[k].point, tol));
      EXPECT_TRUE(within(other.evalPoint(hits[k].s), hits[k].point, tol));
    }
    // The second ellipse tilted about a point P of the first, through P: one point, P.
    const double tp = s1 + sweep * random.uniform(0.1, 0.9);
    const KrGePoint3d common = p.curve.evalPoint(tp);
    const KrGeVector3d axis = random.unitVector();
    const KrGeVector3d across = (common - p.curve.center()).crossProduct(axis);
    const KrGePoint3d center = common + axis * random.uniform(0.5, 1.5) + across * 0.1;
    const KrGeVector3d tiltedMinor = axis.crossProduct(across).crossProduct(axis);
    const KrGeVector3d off = common - center;
    const double u = off.dotProduct(axis), w = off.dotProduct(tiltedMinor / tiltedMinor.length()), r = std::fabs(u) * 1.5;
    const KrGeEllipArc3d tilted(center, axis, tiltedMinor, r, std::fabs(w) / std::sqrt(1 - (u / r) * (u / r)));
    const int tiltedCount = krEllipseEllipseHits(f1, frameOf(tilted), tol, hits);
    ASSERT_GE(tiltedCount, 1);
    EXPECT_TRUE(within(hits[0].point, common, 1e-9) || (tiltedCount == 2 && within(hits[1].point, common, 1e-9)));
  });
  // Touching from inside at the major vertex (a double root) and osculating there (fourfold).
  const KrGeEllipArc3d e(KrGePoint3d(), KrGeVector3d(1, 0, 0), KrGeVector3d(0, 1, 0), 3, 1);
  for (double r : {0.2, 1.0 / 3.0}) {
    const KrGeEllipArc3d circle(KrGePoint3d(3 - r, 0, 0), KrGeVector3d(1, 0, 0), KrGeVector3d(0, 1, 0), r, r);
    KrEllipseHit hits[4];
    ASSERT_EQ(krEllipseEllipseHits(frameOf(e), frameOf(circle), tol, hits), 1) << r;
    EXPECT_TRUE(within(hits[0].point, KrGePoint3d(3, 0, 0), 1e-6)) << r;
  }
  KrEllipseHit hits[4];
  EXPECT_EQ(krEllipseEllipseHits(frameOf(e), frameOf(e), tol, hits), 0);  // coincident
}

// Closest pairs with segments, lines, circular arcs and ellipses against dense sampling of the
// ellipse and the sampled distance to the other curve: the same distance, both points on their
// curves.
TEST(EllipseRelations, ClosestPair_MatchesDenseSampling) {
  repeat(12, 60, [](Random& random, int i) {
    const double start = random.uniform(-3, 3);
    const ellipse_test::Placed p = place(random, random.magnitude(-1, 1), random.magnitude(-2, 0), 2, start,
                                         start + random.uniform(0.5, 2 * kPi));
    const double a = p.curve.majorRadius();
    KrGePoint3d onEllipse, onOther;
    std::function<double(const KrGePoint3d&)> distance;
    std::unique_ptr<KrGeCurve3d> other;
    if (i % 3 == 0) {
      const KrGePoint3d q0 = p.curve.center() + random.unitVector() * a * 2, q1 = q0 + random.unitVector() * a * 3;
      other.reset(new KrGeLineSeg3d(q0, q1));
      distance = [q0, q1](const KrGePoint3d& q) { return distanceToSegment(q, q0, q1); };
    } else {
      const double s = random.uniform(-3, 3);
      const ellipse_test::Placed o = place(random, a * random.uniform(0.3, 2), i % 3 == 1 ? 1.0 : random.uniform(0.1, 1),
                                           2 * a, s, s + random.uniform(0.5, 2 * kPi));
      if (i % 3 == 1)
        other.reset(new KrGeCircArc3d(o.curve.center(), o.n, o.u, o.curve.majorRadius(), s, o.curve.endAng()));
      else
        other.reset(new KrGeEllipArc3d(o.curve));
      const KrGeEllipArc3d asEllipse = o.curve;
      distance = [asEllipse](const KrGePoint3d& q) { return distanceTo(asEllipse, q, 256); };
    }
    onEllipse = p.curve.closestPointTo(*other, onOther);
    double best = 1e300, bestT = start;
    const double sweep = p.curve.endAng() - start;
    for (int k = 0; k <= 400; ++k) {
      const double t = start + sweep * k / 400, d = distance(p.curve.evalPoint(t));
      if (d < best) best = d, bestT = t;
    }
    LD lo = std::fmax(start, bestT - sweep / 400), hi = std::fmin(start + sweep, bestT + sweep / 400);
    for (int k = 0; k < 60; ++k) {
      const LD m1 = hi - 0.618033988749894848L * (hi - lo), m2 = lo + 0.618033988749894848L * (hi - lo);
      const bool left = distance(p.curve.evalPoint((double)m1)) < distance(p.curve.evalPoint((double)m2));
      (left ? hi : lo) = left ? m2 : m1;
    }
    best = std::fmin(best, distance(p.curve.evalPoint((double)((lo + hi) / 2))));
    EXPECT_LE(onEllipse.distanceTo(onOther), best + 1e-9 * a) << "kind " << i % 3;
    EXPECT_LE(distanceTo(p.curve, onEllipse), 1e-12 * a);
    EXPECT_LE(distance(onOther), 1e-9 * a);
  });
}

// The projection onto an oblique plane holds the projected samples at shifted parameters;
// seen edge-on it is the segment covered; projIntersectWith finds a lifted chord's ends.
TEST(EllipseRelations, Projection_ImageHoldsProjectedSamples) {
  const KrGeEllipArc3d e(KrGePoint3d(1, 2, 0), KrGeVector3d(1, 1, 0), KrGeVector3d(-1, 1, 0), 3, 1, 0.5, 4);
  const KrGePlane plane(KrGePoint3d(0, 0, 5), KrGeVector3d(0.3, -0.2, 1));
  const KrGeVector3d direction(0.5, 0.1, 1);
  std::unique_ptr<KrGeEntity3d> image(e.project(plane, direction));
  ASSERT_TRUE(image && image->type() == KrGe::kEllipArc3d);
  const KrGeEllipArc3d& shown = static_cast<const KrGeEllipArc3d&>(*image);
  const double shift = shown.startAng() - e.startAng();
  for (double t = 0.5; t <= 4; t += 0.25)
    EXPECT_TRUE(within(shown.evalPoint(t + shift), e.evalPoint(t).project(plane, direction), 1e-12)) << t;
  std::unique_ptr<KrGeEntity3d> edge(e.project(KrGePlane(KrGePoint3d(), KrGeVector3d(1, -1, 0)), KrGeVector3d(-1, 1, 0)));
  ASSERT_TRUE(edge && edge->type() == KrGe::kLineSeg3d);
  const KrGeLineSeg3d& seg = static_cast<const KrGeLineSeg3d&>(*edge);
  EXPECT_NEAR(seg.length(), 3 * (1 + std::cos(0.5)), 1e-12);  // the arc passes t = pi

  const KrGeLineSeg3d lifted(e.evalPoint(1) + KrGeVector3d(0, 0, 2), e.evalPoint(3) + KrGeVector3d(0, 0, 2));
  int count = 0;
  KrGePoint3d onE[2], onL[2];
  ASSERT_TRUE(e.projIntersectWith(lifted, KrGeVector3d(0, 0, 1), count, onE[0], onE[1], onL[0], onL[1]));
  ASSERT_EQ(count, 2);
  for (int k = 0; k < 2; ++k) {
    EXPECT_TRUE(within(onL[k] - onE[k], KrGeVector3d(0, 0, 2), 1e-12));
    EXPECT_TRUE(within(onE[k], e.evalPoint(1), 1e-12) || within(onE[k], e.evalPoint(3), 1e-12));
  }
  // The point nearest to a slightly tilted plane above, against the least sampled height.
  const KrGePlane above(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0.1, 1));
  KrGePoint3d foot;
  const KrGePoint3d nearest = e.closestPointToPlane(above, foot);
  double least = 1e300;
  for (int k = 0; k <= 20000; ++k) least = std::fmin(least, std::fabs(above.signedDistanceTo(e.evalPoint(0.5 + 3.5 * k / 20000))));
  EXPECT_NEAR(std::fabs(above.signedDistanceTo(nearest)), least, 1e-8);
  EXPECT_LE(distanceTo(e, nearest), 1e-12);
  EXPECT_NEAR(above.signedDistanceTo(foot), 0.0, 1e-15);
  EXPECT_TRUE((nearest - foot).isParallelTo(above.normal()));
}
