// Relations between linear entities and with planes: closest points against brute force,
// intersection with its effective tolerance, overlap, parallelism, projections, and the
// one-time notices of the operations still under self-check.
#include "tests/entity/EntityKit.h"

namespace {

// Each operation under self-check tells once, on its first call in the process (this test runs
// in a process of its own under ctest), whatever the entities.
TEST(KrGeLinearEnt3d, Notices_EachOperationTellsOnceOnItsFirstCall) {
  const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(2, 0, 0)), b(KrGePoint3d(1, 1, 1), KrGePoint3d(3, 1, 1));
  const KrGeVector3d z(0, 0, 1);
  KrGePoint3d p(1, 1, 1), q;
  KrGePointOnCurve3d onA, onB;
  double t1 = 0, t2 = 0;
  bool ok = false;
  KrsArray<void*> offsets, pieces;
  KrsArray<int> flags;
  const auto records = recordsOf([&] {
    for (int round = 0; round < 2; ++round) {
      KrGeCurve3d *piece1 = nullptr, *piece2 = nullptr;
      KrGeLinearEnt3d* common = nullptr;
      delete a.project(KrGePlane(), z);
      a.projIntersectWith(b, z, p, q);
      a.closestPointTo(b, q);
      a.projClosestPointTo(p, z);
      a.projClosestPointTo(b, z, q);
      a.getSplitCurves(0.5, piece1, piece2);
      a.getLocalClosestPoints(p, onA);
      a.getLocalClosestPoints(b, onA, onB);
      KrGeLineSeg3d(a).set(a, b, t1, t2, ok);
      KrGeLineSeg3d(a).set(a, KrGePoint3d(1, 0, 0), t1, ok);
      a.getTrimmedOffset(1.0, z, offsets, KrGe::kFillet);
      a.explode(pieces, flags);
      a.overlap(KrGeLineSeg3d(KrGePoint3d(1, 0, 0), KrGePoint3d(5, 0, 0)), common);
      delete piece1;
      delete piece2;
      delete common;
    }
  });
  for (int i = 0; i < offsets.GetSize(); ++i) delete static_cast<KrGeCurve3d*>(offsets[i]);
  for (const char* name :
       {"project", "projIntersectWith(line, dir, ptOnL, ptOnL, tol)", "closestPointTo(curve, ptOnC, tol)",
        "projClosestPointTo(pt, dir, tol)", "projClosestPointTo(curve, dir, ptOnC, tol)", "getSplitCurves",
        "getLocalClosestPoints(pt, apxPt, ptr, tol)", "getLocalClosestPoints(crv, apxPtOnC, apxPtOnC, ptr, ptr, tol)",
        "set(curve, curve, p1, pt2, bool)", "set(curve, pt, param, bool)", "getTrimmedOffset - fillet/chamfer",
        "explode", "overlap"})
    EXPECT_TRUE(reportedOnce(countMessage(records, noticeText(std::string("KrLinearEnt3dImpl::") + name)))) << name;
}

// p on segment a, q on segment b, and |p - q| the brute-force minimum, from either side.
void expectClosestPair(const Segment& a, const Segment& b, double tol) {
  const KrGeLineSeg3d first(a.p, a.q), second(b.p, b.q);
  KrGePoint3d q, p2;
  const KrGePoint3d p = first.closestPointTo(second, q);
  const KrGePoint3d q2 = second.closestPointTo(first, p2);
  const double reference = bruteForceDistance(a, b);
  EXPECT_LE(distanceToSegment(p, a), tol);
  EXPECT_LE(distanceToSegment(q, b), tol);
  EXPECT_NEAR(p.distanceTo(q), reference, tol);
  EXPECT_NEAR(q2.distanceTo(p2), reference, tol);
}

// Random pairs at every scale; nearly parallel pairs, overlapping or staggered, at angles down to
// 1e-12 radians, where the normal equations lose every digit; degenerate and parallel pairs.
TEST(KrGeLinearEnt3d, Closest_SegmentPairsAgreeWithBruteForce) {
  repeat(1234567, 3000, [](Random& random, int) {
    const double scale = std::fabs(random.logUniform(-3, 3));
    expectClosestPair({random.point(scale), random.point(scale)}, {random.point(scale), random.point(scale)}, 1e-9 * scale);
  });
  repeat(777, 3000, [](Random& random, int trial) {
    const double angle = std::pow(10.0, -random.uniform(1, 12));
    const KrGeVector3d u = random.unitVector(), side = u.crossProduct(random.unitVector()).normal();
    const KrGeVector3d v = (trial % 2 ? u : -u) * std::cos(angle) + side * std::sin(angle);
    const KrGePoint3d start = random.point(5);
    const double gap = trial % 3 == 0 ? 0.0 : std::fabs(random.logUniform(-12, 0));
    const KrGePoint3d start2 = start + u * random.uniform(-5, 5) + random.unitVector().crossProduct(u) * gap;
    expectClosestPair({start, start + u * random.uniform(0.1, 10)}, {start2, start2 + v * random.uniform(0.1, 10)}, 1e-8);
  });
  const KrGePoint3d c(1, 2, 3);
  const struct { const char* name; Segment a, b; } rows[] = {
      {"point and point", {c, c}, {{4, 6, 3}, {4, 6, 3}}},
      {"point and segment", {c, c}, {{0, 0, 0}, {0, 10, 0}}},
      {"coincident points", {c, c}, {c, c}},
      {"point on the segment", {{0, 5, 0}, {0, 5, 0}}, {{0, 0, 0}, {0, 10, 0}}},
      {"tiny segment", {c, c + KrGeVector3d(1e-170, 0, 0)}, {{0, 0, 0}, {0, 10, 0}}},
      {"antiparallel overlapping", {{0, 0, 0}, {10, 0, 0}}, {{15, 0, 4}, {5, 0, 4}}},
      {"staggered", {{0, 0, 0}, {1, 0, 0}}, {{4, 4, 0}, {6, 4, 0}}},
      {"colinear apart", {{0, 0, 0}, {1, 0, 0}}, {{3, 0, 0}, {6, 0, 0}}},
      {"colinear overlapping", {{0, 0, 0}, {4, 0, 0}}, {{6, 0, 0}, {2, 0, 0}}}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    expectClosestPair(row.a, row.b, 1e-12);
  }
}

// Against a line the reference minimises over the segment its (long double) distance to the
// line; two skew lines meet their common perpendicular, two parallel ones this origin's foot.
TEST(KrGeLinearEnt3d, Closest_SegmentAndLineAndTwoLines) {
  repeat(4242, 1000, [](Random& random, int) {
    const KrGePoint3d origin = random.point(10);
    const KrGeVector3d direction = random.unitVector() * std::fabs(random.logUniform(-1, 1));
    const Segment s{random.point(10), random.point(10)};
    const KrGeLine3d line(origin, direction);
    const double reference = bruteForceDistance(s, {origin, origin + direction}, true);
    KrGePoint3d onLine, onSegment;
    const KrGePoint3d fromSegment = KrGeLineSeg3d(s.p, s.q).closestPointTo(line, onLine);
    const KrGePoint3d fromLine = line.closestPointTo(KrGeLineSeg3d(s.p, s.q), onSegment);
    EXPECT_NEAR(fromSegment.distanceTo(onLine), reference, 1e-8);
    EXPECT_NEAR(fromLine.distanceTo(onSegment), reference, 1e-8);
    EXPECT_LE(distanceToSegment(fromSegment, s), 1e-11);
    EXPECT_LE(distanceToSegment(onLine, {origin, origin + direction}, true), 1e-11);
  });
  const KrGeLine3d a(KrGePoint3d(1, 0, 0), KrGeVector3d(0, 2, 0));
  KrGePoint3d q;
  EXPECT_TRUE(within(a.closestPointTo(KrGeLine3d(KrGePoint3d(0, 0, 5), KrGeVector3d(3, 0, 3)), q), KrGePoint3d(1, 0, 0), 1e-12));
  EXPECT_TRUE(within(q, KrGePoint3d(-2, 0, 3), 1e-12));
  EXPECT_EQ(a.closestPointTo(KrGeLine3d(KrGePoint3d(7, 4, 0), KrGeVector3d(0, -1, 0)), q), KrGePoint3d(1, 0, 0));
  EXPECT_EQ(q, KrGePoint3d(7, 0, 0));
  repeat(4343, 300, [](Random& random, int) {  // skew lines: the pair's chord is normal to both
    const KrGeLine3d first(random.point(10), random.vector(-1, 1)), second(random.point(10), random.vector(-1, 1));
    KrGePoint3d onSecond;
    const KrGeVector3d chord = onSecond - first.closestPointTo(second, onSecond);
    EXPECT_NEAR(chord.dotProduct(first.direction()), 0.0, 1e-9);
    EXPECT_NEAR(chord.dotProduct(second.direction()), 0.0, 1e-9);
  });
}

std::unique_ptr<KrGeLinearEnt3d> linear(bool line, const KrGePoint3d& p, const KrGePoint3d& q) {
  if (line) return std::make_unique<KrGeLine3d>(p, q);
  return std::make_unique<KrGeLineSeg3d>(p, q);
}

// The midpoint of the closest pair when its gap is within the effective equalPoint (equal
// counts): the given one near the origin, 1e-14 of the coordinates' size far from it.
TEST(KrGeLinearEnt3d, Intersect_WithinTheToleranceAtTheMidpointOfTheClosestPair) {
  const double e = 1.0 / 1024;
  const bool L = true, S = false;
  const struct { const char* name; bool aLine; KrGePoint3d a0, a1; bool bLine; KrGePoint3d b0, b1; bool meets; KrGePoint3d at; } rows[] = {
      {"crossing segments", S, {0, 0, 0}, {4, 4, 0}, S, {0, 4, 0}, {4, 0, 0}, true, {2, 2, 0}},
      {"lines meet beyond the segment", S, {0, 0, 0}, {4, 4, 0}, L, {0, 9, 0}, {3, 6, 0}, false, {}},
      {"the lines themselves", L, {0, 0, 0}, {4, 4, 0}, L, {0, 9, 0}, {3, 6, 0}, true, {4.5, 4.5, 0}},
      {"skew, gap e", L, {0, 0, 0}, {1, 0, 0}, L, {3, 0, e}, {3, 1, e}, true, {3, 0, 0.5 * e}},
      {"skew, gap 2e", L, {0, 0, 0}, {1, 0, 0}, L, {3, 0, 2 * e}, {3, 1, 2 * e}, false, {}},
      {"parallel", L, {0, 0, 0}, {1, 0, 0}, L, {0, 1, 0}, {-2, 1, 0}, false, {}},
      {"colinear", L, {0, 0, 0}, {1, 0, 0}, L, {5, 0, 0}, {3, 0, 0}, true, {kNaN, 0, 0}},
      {"NaN origin", L, {0, 0, 0}, {1, 0, 0}, L, {kNaN, 0, 0}, {0, 1, 0}, false, {}},
      {"infinite end", L, {0, 0, 0}, {1, 0, 0}, S, {kInf, 0, 0}, {0, 1, 0}, false, {}},
      {"NaN end", S, {0, 0, 0}, {kNaN, kNaN, kNaN}, S, {0, 4, 0}, {4, 0, 0}, false, {}},
      {"zero segment on the line", L, {0, 0, 0}, {1, 0, 0}, S, {2, 0, 0}, {2, 0, 0}, true, {2, 0, 0}},
      {"zero segment and itself", S, {2, 0, 0}, {2, 0, 0}, S, {2, 0, 0}, {2, 0, 0}, true, {2, 0, 0}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    KrGePoint3d at(9, 9, 9);
    EXPECT_EQ(linear(row.aLine, row.a0, row.a1)->intersectWith(*linear(row.bLine, row.b0, row.b1), at, tolerance(e, 1e-10)), row.meets);
    if (row.meets && !std::isnan(row.at.x)) {
      EXPECT_TRUE(within(at, row.at, 1e-12));
    }
  }
  const KrGePoint3d far(1.5e8, -1.5e8, 1.5e8);  // 14 significant digits near 1.5e8 give 1e-5
  const struct { KrGePoint3d centre; double gap; bool meets; } scaled[] = {
      {far, 0.9e-5, true}, {far, 2e-5, false}, {{0, 0, 0}, 0.5e-10, true}, {{0, 0, 0}, 2e-10, false}};
  for (const auto& row : scaled) {
    const KrGeLineSeg3d a(row.centre - KrGeVector3d(3, 1, 0), row.centre + KrGeVector3d(3, 1, 0));
    const KrGeLineSeg3d b(row.centre + KrGeVector3d(-1, 3, row.gap), row.centre + KrGeVector3d(1, -3, row.gap));
    KrGePoint3d at;
    EXPECT_EQ(a.intersectWith(b, at), row.meets) << row.centre.x << " " << row.gap;
  }
}

// The common part of two colinear entities: a segment unless both are lines; touching, apart,
// parallel and crossing entities have none.
TEST(KrGeLinearEnt3d, Overlap_CommonPartOfColinearEntities) {
  KrGeLinearEnt3d* common = nullptr;
  const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  ASSERT_TRUE(a.overlap(KrGeLineSeg3d(KrGePoint3d(12, 0, 0), KrGePoint3d(4, 0, 0)), common));
  std::unique_ptr<KrGeLinearEnt3d> owned(common);
  EXPECT_TRUE(common->isEqualTo(KrGeLineSeg3d(KrGePoint3d(4, 0, 0), KrGePoint3d(10, 0, 0))));
  ASSERT_TRUE(a.overlap(KrGeLine3d(KrGePoint3d(5, 0, 0), KrGeVector3d(-1, 0, 0)), common));
  owned.reset(common);
  EXPECT_TRUE(common->isEqualTo(a));
  ASSERT_TRUE(KrGeLine3d().overlap(KrGeLine3d(KrGePoint3d(3, 0, 0), KrGeVector3d(2, 0, 0)), common));
  owned.reset(common);
  EXPECT_EQ(common->type(), KrGe::kLine3d);
  const double e = 1.0 / 1024;  // the common part must be longer than equalPoint, strictly
  const KrGeLineSeg3d unit(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 0, 0));
  EXPECT_FALSE(unit.overlap(KrGeLineSeg3d(KrGePoint3d(1 - e, 0, 0), KrGePoint3d(2, 0, 0)), common, tolerance(e, 1e-10)));
  ASSERT_TRUE(unit.overlap(KrGeLineSeg3d(KrGePoint3d(1 - 2 * e, 0, 0), KrGePoint3d(2, 0, 0)), common, tolerance(e, 1e-10)));
  owned.reset(common);
  for (const Segment& miss : {Segment{{10, 0, 0}, {15, 0, 0}}, Segment{{11, 0, 0}, {15, 0, 0}},
                              Segment{{1, 1, 0}, {5, 1, 0}}, Segment{{5, -1, 0}, {5, 1, 0}}}) {
    common = reinterpret_cast<KrGeLinearEnt3d*>(1);
    EXPECT_FALSE(a.overlap(KrGeLineSeg3d(miss.p, miss.q), common)) << miss.p.x;
    EXPECT_EQ(common, nullptr);
  }
}

TEST(KrGeLinearEnt3d, Relations_BothSidesOfTheTolerance) {
  const double e = 1.0 / 1024;
  const KrGeTol tol = tolerance(e, 1e-10);
  const KrGeLineSeg3d base(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  const struct { const char* name; Segment other; bool parallel, colinear; } rows[] = {
      {"antiparallel on the line", {{30, 0, 0}, {20, 0, 0}}, true, true},
      {"e apart", {{0, e, 0}, {10, e, 0}}, true, true},
      {"2e apart", {{0, 2 * e, 0}, {10, 2 * e, 0}}, true, false},
      {"tilted", {{0, 0, 0}, {10, 0.1, 0}}, false, false},
      {"point on the line", {{4, 0, 0}, {4, 0, 0}}, true, true},
      {"point off the line", {{4, 1, 0}, {4, 1, 0}}, true, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const KrGeLineSeg3d other(row.other.p, row.other.q);
    EXPECT_EQ(base.isParallelTo(other, tol), row.parallel);
    EXPECT_EQ(other.isParallelTo(base, tol), row.parallel);
    EXPECT_EQ(base.isColinearTo(other, tol), row.colinear);
    EXPECT_EQ(other.isColinearTo(base, tol), row.colinear);
  }
  // A long segment whose chord drifts more than e off the other's line is not parallel, although
  // its angle is within the direction tolerance.
  EXPECT_FALSE(KrGeLine3d().isParallelTo(KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1000, 0.5, 0)), tolerance(1e-3)));
  EXPECT_TRUE(KrGeLine3d().isParallelTo(KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(1000, 0.5, 0)), tolerance(1e-3)));
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 1), KrGePoint3d(3, 4, 1));
  EXPECT_TRUE(segment.isPerpendicularTo(KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(-4, 3, 7))));
  EXPECT_FALSE(segment.isPerpendicularTo(KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(-4, 3.1, 7))));
  EXPECT_TRUE(segment.isPerpendicularTo(KrGePlane(KrGePoint3d(0, 0, 0), KrGeVector3d(3, 4, 0))));
  EXPECT_FALSE(segment.isParallelTo(KrGePlane(KrGePoint3d(0, 0, 0), KrGeVector3d(3, 4, 0))));
  // isOn a plane at equalPoint and twice it; a line also needs its direction in the plane.
  const KrGeTol fine = tolerance(1.0 / 64, 1e-10);
  const KrGePlane at1(KrGePoint3d(5, 5, 1), KrGeVector3d(0, 0, 1));
  EXPECT_TRUE(segment.isOn(KrGePlane(KrGePoint3d(0, 0, 1 + 1.0 / 64), KrGeVector3d(0, 0, 1)), fine));
  EXPECT_FALSE(segment.isOn(KrGePlane(KrGePoint3d(0, 0, 1 + 2.0 / 64), KrGeVector3d(0, 0, 1)), fine));
  EXPECT_FALSE(KrGeLineSeg3d(KrGePoint3d(0, 0, 1), KrGePoint3d(3, 4, 1.5)).isOn(at1, fine));
  EXPECT_FALSE(KrGeLine3d(KrGePoint3d(0, 0, 1), KrGeVector3d(1, 1, 0.1)).isOn(at1));
  EXPECT_TRUE(KrGeLine3d(KrGePoint3d(0, 0, 1), KrGeVector3d()).isOn(at1));
  KrGePlane plane;
  ASSERT_TRUE(KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1)).isCoplanarWith(KrGeLine3d(KrGePoint3d(1, 1, 1), KrGeVector3d(1, 0, 0)), plane));
  EXPECT_TRUE(plane.isOn(KrGePoint3d(5, 1, 1)));
  EXPECT_TRUE(plane.isOn(KrGePoint3d(0, 0, 0)));
  EXPECT_FALSE(KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1)).isCoplanarWith(KrGeLine3d(KrGePoint3d(0, 1, 0), KrGeVector3d(1, 0, 0)), plane));
}

// A segment projects to a segment, or to a point when the direction runs along it; a direction
// parallel to the plane gives nothing. Seen along a direction the pair looks closest as brute
// force finds it on the images in the plane perpendicular to the direction.
TEST(KrGeLinearEnt3d, Project_OntoAPlaneAndClosestInTheView) {
  const KrGePlane ground(KrGePoint3d(0, 0, 2), KrGeVector3d(0, 0, 1));
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 5), KrGePoint3d(4, 0, 7));
  std::unique_ptr<KrGeEntity3d> image(segment.project(ground, KrGeVector3d(1, 0, 1)));
  ASSERT_TRUE(image);
  EXPECT_TRUE(image->isEqualTo(KrGeLineSeg3d(KrGePoint3d(-3, 0, 2), KrGePoint3d(-1, 0, 2))));
  image.reset(segment.project(ground, KrGeVector3d(2, 0, 1)));
  ASSERT_TRUE(image);
  EXPECT_TRUE(image->isEqualTo(KrGePointEnt3d(KrGePoint3d(-6, 0, 2))));
  EXPECT_EQ(segment.project(ground, KrGeVector3d(1, 1, 0)), nullptr);
  repeat(99, 300, [](Random& random, int) {
    const KrGeVector3d view = random.unitVector();
    const Segment a{random.point(5), random.point(5)}, b{random.point(5), random.point(5)};
    const KrGePoint3d target = random.point(5);
    auto flat = [&](const KrGePoint3d& p) { return p - view * p.asVector().dotProduct(view); };
    const Segment flatA{flat(a.p), flat(a.q)};
    KrGePoint3d q;
    const KrGePoint3d p = KrGeLineSeg3d(a.p, a.q).projClosestPointTo(KrGeLineSeg3d(b.p, b.q), view * 3.0, q);
    EXPECT_NEAR(flat(p).distanceTo(flat(q)), bruteForceDistance(flatA, {flat(b.p), flat(b.q)}), 5e-9);
    EXPECT_LE(distanceToSegment(p, a) + distanceToSegment(q, b), 5e-12);
    const KrGePoint3d seen = KrGeLineSeg3d(a.p, a.q).projClosestPointTo(target, view);
    EXPECT_NEAR(flat(seen).distanceTo(flat(target)), distanceToSegment(flat(target), flatA), 5e-9);
  });
  // projIntersectWith takes the global tolerance whatever is passed; on failure both points go
  // to the origin. Without a direction the point is reported.
  const KrGeLine3d a(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 0, 0));
  KrGePoint3d p(1, 1, 1), q(1, 1, 1);
  EXPECT_TRUE(a.projIntersectWith(KrGeLine3d(KrGePoint3d(2, -1, 5), KrGeVector3d(0, 1, 0)), KrGeVector3d(0, 0, 1), p, q));
  EXPECT_TRUE(within(q, KrGePoint3d(2, 0, 5), 1e-12));
  const KrGeLineSeg3d c(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0)), d(KrGePoint3d(2, -1, 5), KrGePoint3d(2, 1, 5));
  EXPECT_FALSE(c.projIntersectWith(d, KrGeVector3d(0, 0, 1), p, q, tolerance(10)));
  EXPECT_EQ(q, KrGePoint3d(0, 0, 0));
  const auto records = recordsOf([&] { EXPECT_EQ(a.projClosestPointTo(KrGePoint3d(3, 4, 5), KrGeVector3d()), KrGePoint3d(3, 0, 0)); });
  EXPECT_EQ(countAssertions(records, "(!pEntity)"), 1);
  const KrGeLineSeg3d upright(KrGePoint3d(1, 1, 0), KrGePoint3d(1, 1, 10));  // seen end-on: nearest in space
  EXPECT_EQ(upright.projClosestPointTo(KrGePoint3d(5, 5, 7), KrGeVector3d(0, 0, 1)), KrGePoint3d(1, 1, 7));
}

TEST(KrGeLinearEnt3d, Local_NeighbourhoodsRestrictTheSearch) {
  const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0)), b(KrGePoint3d(5, -1, 1), KrGePoint3d(5, 1, 1));
  KrGePointOnCurve3d onA, onB;
  a.getLocalClosestPoints(b, onA, onB);
  EXPECT_EQ(onA.parameter(), 0.5);
  EXPECT_EQ(onB.curve(), &b);
  const KrGeInterval nearStart(0.0, 0.2);
  a.getLocalClosestPoints(b, onA, onB, &nearStart, nullptr);
  EXPECT_DOUBLE_EQ(onA.parameter(), 0.2);
  a.getLocalClosestPoints(KrGePoint3d(8, 3, 0), onA, &nearStart);
  EXPECT_DOUBLE_EQ(onA.parameter(), 0.2);
}

}  // namespace
