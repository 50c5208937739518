// Relations between linear entities and with planes: closest points against brute force,
// intersection with its effective tolerance, overlap, parallelism, projections, and the
// one-time notices of the operations still under self-check.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGePlane.h"
#include "KrGePointEnt3d.h"
#include "KrGePointOnCurve3d.h"
#include "tests/entity/LinearTestKit.h"

using linear_test::Random;
using testkit::MonitorCapture;

namespace {

// The first call of each operation under self-check, made before any test runs so that the
// notices are seen whatever order the tests run in; each operation is then called again.
std::vector<testkit::Record> gFirstCallRecords;

class FirstCallsEnvironment : public ::testing::Environment {
public:
  // Records are collected after every call: the monitor socket holds only so many.
  void SetUp() override {
    MonitorCapture::clear();
    for (int round = 0; round < 2; ++round) callEach();
  }

private:
  static void collect() {
    const auto records = MonitorCapture::drain();
    gFirstCallRecords.insert(gFirstCallRecords.end(), records.begin(), records.end());
  }

  static void callEach() {
    const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(2, 0, 0));
    const KrGeLineSeg3d b(KrGePoint3d(1, 1, 1), KrGePoint3d(3, 1, 1));
    const KrGeVector3d z(0, 0, 1);
    KrGePoint3d p, q;
    KrGePointOnCurve3d onA, onB;
    double t1 = 0, t2 = 0;
    bool ok = false;
    delete a.project(KrGePlane(), z);
    collect();
    a.projIntersectWith(b, z, p, q);
    collect();
    a.closestPointTo(b, q);
    collect();
    a.projClosestPointTo(KrGePoint3d(1, 1, 1), z);
    collect();
    a.projClosestPointTo(b, z, q);
    collect();
    KrGeCurve3d* piece1 = nullptr;
    KrGeCurve3d* piece2 = nullptr;
    a.getSplitCurves(0.5, piece1, piece2);
    delete piece1;
    delete piece2;
    collect();
    a.getLocalClosestPoints(KrGePoint3d(1, 1, 1), onA);
    collect();
    a.getLocalClosestPoints(b, onA, onB);
    collect();
    KrGeLineSeg3d(a).set(a, b, t1, t2, ok);
    collect();
    KrGeLineSeg3d(a).set(a, KrGePoint3d(1, 0, 0), t1, ok);
    collect();
    KrsArray<void*> offsets;
    a.getTrimmedOffset(1.0, z, offsets, KrGe::kFillet);
    for (int i = 0; i < offsets.GetSize(); ++i) delete static_cast<KrGeCurve3d*>(offsets[i]);
    collect();
    KrsArray<void*> pieces;
    KrsArray<int> flags;
    a.explode(pieces, flags);
    collect();
    KrGeLinearEnt3d* common = nullptr;
    a.overlap(KrGeLineSeg3d(KrGePoint3d(1, 0, 0), KrGePoint3d(5, 0, 0)), common);
    delete common;
    collect();
  }
};

const auto* const kFirstCalls = ::testing::AddGlobalTestEnvironment(new FirstCallsEnvironment);

TEST(KrGeLinearEnt3dNotices, EachOperationTellsOnceOnItsFirstCall) {
  const char* signatures[] = {"KrLinearEnt3dImpl::project",
                              "KrLinearEnt3dImpl::projIntersectWith(line, dir, ptOnL, ptOnL, tol)",
                              "KrLinearEnt3dImpl::closestPointTo(curve, ptOnC, tol)",
                              "KrLinearEnt3dImpl::projClosestPointTo(pt, dir, tol)",
                              "KrLinearEnt3dImpl::projClosestPointTo(curve, dir, ptOnC, tol)",
                              "KrLinearEnt3dImpl::getSplitCurves",
                              "KrLinearEnt3dImpl::getLocalClosestPoints(pt, apxPt, ptr, tol)",
                              "KrLinearEnt3dImpl::getLocalClosestPoints(crv, apxPtOnC, apxPtOnC, ptr, ptr, tol)",
                              "KrLinearEnt3dImpl::set(curve, curve, p1, pt2, bool)",
                              "KrLinearEnt3dImpl::set(curve, pt, param, bool)",
                              "KrLinearEnt3dImpl::getTrimmedOffset - fillet/chamfer",
                              "KrLinearEnt3dImpl::explode",
                              "KrLinearEnt3dImpl::overlap"};
  ASSERT_NE(kFirstCalls, nullptr);
  for (const char* signature : signatures)
    EXPECT_EQ(testkit::countMessage(gFirstCallRecords, linear_test::noticeText(signature)), 1) << signature;
}

double distanceToSegment(const KrGePoint3d& x, const linear_test::Segment& s) {
  return (double)linear_test::distanceToSegment(s, x.x, x.y, x.z);
}

// p on segment a, q on segment b, and |p - q| the brute-force minimum, all to `tolerance`.
void expectClosestPair(const linear_test::Segment& a, const linear_test::Segment& b, double tolerance) {
  const KrGeLineSeg3d first(a.p, a.q);
  const KrGeLineSeg3d second(b.p, b.q);
  KrGePoint3d q;
  const KrGePoint3d p = first.closestPointTo(second, q);
  EXPECT_LE(distanceToSegment(p, a), tolerance);
  EXPECT_LE(distanceToSegment(q, b), tolerance);
  const double reference = linear_test::bruteForceDistance(a, b);
  EXPECT_NEAR(p.distanceTo(q), reference, tolerance);
  // Symmetric: the pair found from the other side is as close.
  KrGePoint3d p2;
  const KrGePoint3d q2 = second.closestPointTo(first, p2);
  EXPECT_NEAR(q2.distanceTo(p2), reference, tolerance);
}

TEST(KrGeLinearEnt3dClosest, RandomSegmentPairs_AgreeWithBruteForce) {
  Random random(1234567);
  SCOPED_TRACE(random.trace());
  for (int trial = 0; trial < 3000; ++trial) {
    const double scale = random.magnitude(-3, 3);
    const linear_test::Segment a{random.point(scale), random.point(scale)};
    const linear_test::Segment b{random.point(scale), random.point(scale)};
    SCOPED_TRACE(trial);
    expectClosestPair(a, b, 1e-9 * scale);
    if (HasFailure()) return;
  }
}

// Nearly parallel pairs, overlapping or staggered, crossing or apart, at angles from 0.1 down to
// 1e-12 radians: where the normal equations lose every digit.
TEST(KrGeLinearEnt3dClosest, NearlyParallelSegments_AgreeWithBruteForce) {
  Random random(777);
  SCOPED_TRACE(random.trace());
  for (int trial = 0; trial < 3000; ++trial) {
    const double angle = std::pow(10.0, -random.uniform(1, 12));
    const KrGeVector3d u = random.unitVector();
    const KrGePoint3d start = random.point(5);
    const double length1 = random.uniform(0.1, 10);
    const double length2 = random.uniform(0.1, 10);
    const double gap = trial % 3 == 0 ? 0.0 : random.magnitude(-12, 0);
    const KrGePoint3d start2 = start + u * random.uniform(-5, 5) + random.unitVector().crossProduct(u) * gap;
    const linear_test::Segment a{start, start + u * length1};
    const KrGeVector3d v = random.tilted(trial % 2 ? u : -u, angle);
    const linear_test::Segment b{start2, start2 + v * length2};
    SCOPED_TRACE(trial);
    expectClosestPair(a, b, 1e-9 * 10);
    if (HasFailure()) return;
  }
}

TEST(KrGeLinearEnt3dClosest, DegenerateSegments_ArePoints) {
  const KrGePoint3d c(1, 2, 3);
  struct Row {
    const char* name;
    linear_test::Segment a, b;
  } rows[] = {
      {"point and point", {c, c}, {{4, 6, 3}, {4, 6, 3}}},
      {"point and segment", {c, c}, {{0, 0, 0}, {0, 10, 0}}},
      {"segment and point", {{0, 0, 0}, {0, 10, 0}}, {c, c}},
      {"coincident points", {c, c}, {c, c}},
      {"point on the segment", {{0, 5, 0}, {0, 5, 0}}, {{0, 0, 0}, {0, 10, 0}}},
      {"tiny segment", {c, c + KrGeVector3d(1e-170, 0, 0)}, {{0, 0, 0}, {0, 10, 0}}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    expectClosestPair(row.a, row.b, 1e-12);
  }
}

TEST(KrGeLinearEnt3dClosest, ParallelAndAntiparallelSegments_AnyClosestPair) {
  struct Row {
    const char* name;
    linear_test::Segment a, b;
    double distance;
  } rows[] = {
      {"overlapping", {{0, 0, 0}, {10, 0, 0}}, {{5, 3, 0}, {15, 3, 0}}, 3},
      {"antiparallel overlapping", {{0, 0, 0}, {10, 0, 0}}, {{15, 0, 4}, {5, 0, 4}}, 4},
      {"staggered", {{0, 0, 0}, {1, 0, 0}}, {{4, 4, 0}, {6, 4, 0}}, 5},
      {"colinear apart", {{0, 0, 0}, {1, 0, 0}}, {{3, 0, 0}, {6, 0, 0}}, 2},
      {"colinear overlapping", {{0, 0, 0}, {4, 0, 0}}, {{6, 0, 0}, {2, 0, 0}}, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    expectClosestPair(row.a, row.b, 1e-12);
    KrGePoint3d q;
    const KrGePoint3d p = KrGeLineSeg3d(row.a.p, row.a.q).closestPointTo(KrGeLineSeg3d(row.b.p, row.b.q), q);
    EXPECT_DOUBLE_EQ(p.distanceTo(q) + 1.0, row.distance + 1.0);
  }
}

// A segment against an infinite line: the reference minimises the distance from the segment's
// points to the line (a golden-section search on the segment's parameter).
TEST(KrGeLinearEnt3dClosest, SegmentAndLine_AgreeWithBruteForce) {
  Random random(4242);
  SCOPED_TRACE(random.trace());
  for (int trial = 0; trial < 1000; ++trial) {
    const KrGePoint3d o = random.point(10);
    const KrGeVector3d d = random.unitVector() * random.magnitude(-1, 1);
    const linear_test::Segment s{random.point(10), random.point(10)};
    const KrGeLine3d line(o, d);
    const KrGeLineSeg3d segment(s.p, s.q);
    auto toLine = [&](long double t) {
      const KrGePoint3d x = s.p + (s.q - s.p) * (double)t;
      return x.distanceTo(line.closestPointTo(x));
    };
    long double lo = 0, hi = 1;
    for (int i = 0; i < 200; ++i) {
      const long double m1 = lo + (hi - lo) / 3, m2 = hi - (hi - lo) / 3;
      if (toLine(m1) <= toLine(m2)) hi = m2; else lo = m1;
    }
    const double reference = std::min({toLine(lo), toLine(0), toLine(1)});
    KrGePoint3d onLine, onSegment;
    const KrGePoint3d fromSegment = segment.closestPointTo(line, onLine);
    const KrGePoint3d fromLine = line.closestPointTo(segment, onSegment);
    SCOPED_TRACE(trial);
    EXPECT_NEAR(fromSegment.distanceTo(onLine), reference, 1e-9 * 10);
    EXPECT_NEAR(fromLine.distanceTo(onSegment), reference, 1e-9 * 10);
    EXPECT_LE(distanceToSegment(fromSegment, s), 1e-12 * 10);
    EXPECT_TRUE(line.isOn(onLine, KrGeTol()));
    if (HasFailure()) return;
  }
}

TEST(KrGeLinearEnt3dClosest, TwoLines_CommonPerpendicularOrTheOriginsFoot) {
  const KrGeLine3d a(KrGePoint3d(1, 0, 0), KrGeVector3d(0, 2, 0));
  const KrGeLine3d b(KrGePoint3d(0, 0, 5), KrGeVector3d(3, 0, 3));
  KrGePoint3d q;
  const KrGePoint3d p = a.closestPointTo(b, q);
  EXPECT_NEAR((q - p).dotProduct(KrGeVector3d(0, 1, 0)), 0.0, 1e-12);
  EXPECT_NEAR((q - p).dotProduct(KrGeVector3d(1, 0, 1)), 0.0, 1e-12);
  EXPECT_NEAR(p.distanceTo(q), 6 / std::sqrt(2.0), 1e-12);
  const KrGeLine3d parallel(KrGePoint3d(7, 4, 0), KrGeVector3d(0, -1, 0));
  const KrGePoint3d p2 = a.closestPointTo(parallel, q);
  EXPECT_EQ(p2, KrGePoint3d(1, 0, 0));
  EXPECT_EQ(q, KrGePoint3d(7, 0, 0));
}

TEST(KrGeLinearEnt3dIntersect, CrossingAndMissing) {
  KrGePoint3d at;
  const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 4, 0));
  EXPECT_TRUE(a.intersectWith(KrGeLineSeg3d(KrGePoint3d(0, 4, 0), KrGePoint3d(4, 0, 0)), at));
  EXPECT_EQ(at, KrGePoint3d(2, 2, 0));
  // The lines cross at (4.5, 4.5, 0), beyond the end of a.
  const KrGeLine3d across(KrGePoint3d(0, 9, 0), KrGePoint3d(3, 6, 0));
  EXPECT_FALSE(a.intersectWith(across, at));
  EXPECT_TRUE(KrGeLine3d(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 4, 0)).intersectWith(across, at));
  EXPECT_TRUE(at.isEqualTo(KrGePoint3d(4.5, 4.5, 0)));
  EXPECT_FALSE(a.intersectWith(KrGeLineSeg3d(KrGePoint3d(0, 4, 1), KrGePoint3d(4, 0, 1)), at));
}

// Skew lines whose gap is the tolerance meet, at twice the tolerance they do not; the midpoint
// of the closest pair is the answer.
TEST(KrGeLinearEnt3dIntersect, ToleranceCountsAsMeeting) {
  KrGeTol tol;
  tol.setEqualPoint(1.0 / 1024);
  const KrGeLine3d a(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 0, 0));
  KrGePoint3d at;
  EXPECT_TRUE(a.intersectWith(KrGeLine3d(KrGePoint3d(3, 0, 1.0 / 1024), KrGeVector3d(0, 1, 0)), at, tol));
  EXPECT_EQ(at, KrGePoint3d(3, 0, 0.5 / 1024));
  EXPECT_FALSE(a.intersectWith(KrGeLine3d(KrGePoint3d(3, 0, 2.0 / 1024), KrGeVector3d(0, 1, 0)), at, tol));
}

// Far from the origin equalPoint is below the coordinates' precision: 14 significant digits of
// coordinates near 1.5e8 give 1e-5.
TEST(KrGeLinearEnt3dIntersect, LargeCoordinatesUseTheEffectiveTolerance) {
  const KrGePoint3d far(1.5e8, -1.5e8, 1.5e8);
  const KrGeLineSeg3d a(far - KrGeVector3d(3, 1, 0), far + KrGeVector3d(3, 1, 0));
  KrGePoint3d at;
  EXPECT_TRUE(a.intersectWith(KrGeLineSeg3d(far + KrGeVector3d(-1, 3, 0.9e-5), far + KrGeVector3d(1, -3, 0.9e-5)), at));
  EXPECT_LE(at.distanceTo(far), 1e-5);
  EXPECT_FALSE(a.intersectWith(KrGeLineSeg3d(far + KrGeVector3d(-1, 3, 2e-5), far + KrGeVector3d(1, -3, 2e-5)), at));
  // Near the origin the given tolerance rules.
  const KrGeLineSeg3d b(KrGePoint3d(-3, -1, 0), KrGePoint3d(3, 1, 0));
  EXPECT_FALSE(b.intersectWith(KrGeLineSeg3d(KrGePoint3d(-1, 3, 2e-10), KrGePoint3d(1, -3, 2e-10)), at));
  EXPECT_TRUE(b.intersectWith(KrGeLineSeg3d(KrGePoint3d(-1, 3, 0.5e-10), KrGePoint3d(1, -3, 0.5e-10)), at));
}

TEST(KrGeLinearEnt3dIntersect, ParallelAndBadInputNeverCrash) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const KrGeLine3d a(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 0, 0));
  KrGePoint3d at(9, 9, 9);
  EXPECT_FALSE(a.intersectWith(KrGeLine3d(KrGePoint3d(0, 1, 0), KrGeVector3d(-2, 0, 0)), at));
  EXPECT_TRUE(a.intersectWith(KrGeLine3d(KrGePoint3d(5, 0, 0), KrGeVector3d(-2, 0, 0)), at));
  EXPECT_FALSE(a.intersectWith(KrGeLine3d(KrGePoint3d(nan, 0, 0), KrGeVector3d(0, 1, 0)), at));
  EXPECT_FALSE(a.intersectWith(KrGeLineSeg3d(KrGePoint3d(inf, 0, 0), KrGePoint3d(0, 1, 0)), at));
  EXPECT_FALSE(KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(nan, nan, nan))
                   .intersectWith(KrGeLineSeg3d(KrGePoint3d(0, 1, 0), KrGePoint3d(1, 1, 0)), at));
  const KrGeLineSeg3d zero(KrGePoint3d(2, 0, 0), KrGePoint3d(2, 0, 0));
  EXPECT_TRUE(a.intersectWith(zero, at));
  EXPECT_EQ(at, KrGePoint3d(2, 0, 0));
  EXPECT_TRUE(zero.intersectWith(zero, at));
  KrGePoint3d q;
  KrGeLineSeg3d(KrGePoint3d(nan, 0, 0), KrGePoint3d(1, 1, 1)).closestPointTo(KrGeLineSeg3d(), q);
  KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(inf, 0, 0)).closestPointTo(KrGePoint3d(1, 1, 1));
}

TEST(KrGeLinearEnt3dOverlap, CommonPartOfColinearEntities) {
  KrGeLinearEnt3d* common = nullptr;
  const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  ASSERT_TRUE(a.overlap(KrGeLineSeg3d(KrGePoint3d(12, 0, 0), KrGePoint3d(4, 0, 0)), common));
  ASSERT_EQ(common->type(), KrGe::kLineSeg3d);
  EXPECT_EQ(static_cast<KrGeLineSeg3d*>(common)->startPoint(), KrGePoint3d(4, 0, 0));
  EXPECT_EQ(static_cast<KrGeLineSeg3d*>(common)->endPoint(), KrGePoint3d(10, 0, 0));
  delete common;
  ASSERT_TRUE(a.overlap(KrGeLine3d(KrGePoint3d(5, 0, 0), KrGeVector3d(-1, 0, 0)), common));
  EXPECT_TRUE(common->isEqualTo(a));
  delete common;
  ASSERT_TRUE(KrGeLine3d().overlap(KrGeLine3d(KrGePoint3d(3, 0, 0), KrGeVector3d(2, 0, 0)), common));
  EXPECT_EQ(common->type(), KrGe::kLine3d);
  delete common;
  struct Row {
    const char* name;
    KrGeLineSeg3d other;
  } misses[] = {{"touching", KrGeLineSeg3d(KrGePoint3d(10, 0, 0), KrGePoint3d(15, 0, 0))},
                {"apart", KrGeLineSeg3d(KrGePoint3d(11, 0, 0), KrGePoint3d(15, 0, 0))},
                {"parallel", KrGeLineSeg3d(KrGePoint3d(1, 1, 0), KrGePoint3d(5, 1, 0))},
                {"crossing", KrGeLineSeg3d(KrGePoint3d(5, -1, 0), KrGePoint3d(5, 1, 0))}};
  for (const Row& row : misses) {
    SCOPED_TRACE(row.name);
    common = reinterpret_cast<KrGeLinearEnt3d*>(1);
    EXPECT_FALSE(a.overlap(row.other, common));
    EXPECT_EQ(common, nullptr);
  }
}

TEST(KrGeLinearEnt3dRelations, ParallelAndColinear_TableOfCases) {
  const double e = 1.0 / 1024;
  KrGeTol tol;
  tol.setEqualPoint(e);
  const KrGeLineSeg3d base(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  struct Row {
    const char* name;
    KrGeLineSeg3d other;
    bool parallel, colinear;
  } rows[] = {
      {"coincident", KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0)), true, true},
      {"antiparallel on the line", KrGeLineSeg3d(KrGePoint3d(30, 0, 0), KrGePoint3d(20, 0, 0)), true, true},
      {"e apart", KrGeLineSeg3d(KrGePoint3d(0, e, 0), KrGePoint3d(10, e, 0)), true, true},
      {"2e apart", KrGeLineSeg3d(KrGePoint3d(0, 2 * e, 0), KrGePoint3d(10, 2 * e, 0)), true, false},
      {"far apart", KrGeLineSeg3d(KrGePoint3d(0, 5, 5), KrGePoint3d(-10, 5, 5)), true, false},
      {"tilted", KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0.1, 0)), false, false},
      {"point on the line", KrGeLineSeg3d(KrGePoint3d(4, 0, 0), KrGePoint3d(4, 0, 0)), true, true},
      {"point off the line", KrGeLineSeg3d(KrGePoint3d(4, 1, 0), KrGePoint3d(4, 1, 0)), true, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(base.isParallelTo(row.other, tol), row.parallel);
    EXPECT_EQ(row.other.isParallelTo(base, tol), row.parallel);
    EXPECT_EQ(base.isColinearTo(row.other, tol), row.colinear);
    EXPECT_EQ(row.other.isColinearTo(base, tol), row.colinear);
  }
  const KrGeLine3d zeroLine(KrGePoint3d(1, 1, 1), KrGeVector3d());
  EXPECT_TRUE(zeroLine.isParallelTo(KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 1, 0))));
  EXPECT_TRUE(KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 1, 0)).isParallelTo(zeroLine));
  // A long segment whose chord drifts more than e from the other direction is not parallel
  // although the angle is within the direction tolerance.
  KrGeTol loose;
  loose.setEqualVector(1e-3);
  loose.setEqualPoint(1e-3);
  const KrGeLineSeg3d longOne(KrGePoint3d(0, 0, 0), KrGePoint3d(1000, 0.5, 0));
  EXPECT_FALSE(KrGeLine3d().isParallelTo(longOne, loose));
  EXPECT_TRUE(KrGeLine3d().isParallelTo(KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(1000, 0.5, 0)), loose));
}

TEST(KrGeLinearEnt3dRelations, PerpendicularAndPlanes) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 1), KrGePoint3d(3, 4, 1));
  const KrGePlane ground(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 0, 1));
  const KrGePlane wall(KrGePoint3d(0, 0, 0), KrGeVector3d(3, 4, 0));
  EXPECT_TRUE(segment.isPerpendicularTo(KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(-4, 3, 7))));
  EXPECT_FALSE(segment.isPerpendicularTo(KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(-4, 3.1, 7))));
  EXPECT_TRUE(segment.isParallelTo(ground));
  EXPECT_FALSE(segment.isParallelTo(wall));
  EXPECT_TRUE(segment.isPerpendicularTo(wall));
  EXPECT_FALSE(segment.isPerpendicularTo(ground));

  KrGeTol tol;
  tol.setEqualPoint(1.0 / 64);
  EXPECT_TRUE(segment.isOn(KrGePlane(KrGePoint3d(0, 0, 1 + 1.0 / 64), KrGeVector3d(0, 0, 1)), tol));
  EXPECT_FALSE(segment.isOn(KrGePlane(KrGePoint3d(0, 0, 1 + 2.0 / 64), KrGeVector3d(0, 0, 1)), tol));
  EXPECT_FALSE(KrGeLineSeg3d(KrGePoint3d(0, 0, 1), KrGePoint3d(3, 4, 1.5)).isOn(KrGePlane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 1)), tol));
  EXPECT_TRUE(KrGeLine3d(KrGePoint3d(0, 0, 1), KrGeVector3d(1, 1, 0)).isOn(KrGePlane(KrGePoint3d(5, 5, 1), KrGeVector3d(0, 0, 1))));
  EXPECT_FALSE(KrGeLine3d(KrGePoint3d(0, 0, 1), KrGeVector3d(1, 1, 0.1)).isOn(KrGePlane(KrGePoint3d(5, 5, 1), KrGeVector3d(0, 0, 1))));
  EXPECT_TRUE(KrGeLine3d(KrGePoint3d(0, 0, 1), KrGeVector3d()).isOn(KrGePlane(KrGePoint3d(5, 5, 1), KrGeVector3d(0, 0, 1))));

  KrGePoint3d at;
  EXPECT_TRUE(KrGeLineSeg3d(KrGePoint3d(1, 1, -1), KrGePoint3d(1, 1, 3)).intersectWith(static_cast<const KrGePlanarEnt&>(ground), at));
  EXPECT_EQ(at, KrGePoint3d(1, 1, 0));
  EXPECT_FALSE(segment.intersectWith(static_cast<const KrGePlanarEnt&>(ground), at));
  KrGePlane perpendicular;
  segment.getPerpPlane(KrGePoint3d(9, 9, 9), perpendicular);
  EXPECT_TRUE(perpendicular.normal().isEqualTo(KrGeVector3d(0.6, 0.8, 0)));
  EXPECT_NEAR(perpendicular.signedDistanceTo(KrGePoint3d(9, 9, 9)), 0.0, 1e-12);
}

TEST(KrGeLinearEnt3dProject, OntoAPlaneAlongADirection) {
  const KrGePlane ground(KrGePoint3d(0, 0, 2), KrGeVector3d(0, 0, 1));
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 5), KrGePoint3d(4, 0, 7));
  KrGeEntity3d* image = segment.project(ground, KrGeVector3d(1, 0, 1));
  ASSERT_NE(image, nullptr);
  ASSERT_EQ(image->type(), KrGe::kLineSeg3d);
  EXPECT_TRUE(static_cast<KrGeLineSeg3d*>(image)->startPoint().isEqualTo(KrGePoint3d(-3, 0, 2)));
  EXPECT_TRUE(static_cast<KrGeLineSeg3d*>(image)->endPoint().isEqualTo(KrGePoint3d(-1, 0, 2)));
  delete image;
  image = segment.project(ground, KrGeVector3d(2, 0, 1));
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->type(), KrGe::kPosition3d);
  EXPECT_TRUE(static_cast<KrGePointEnt3d*>(image)->point3d().isEqualTo(KrGePoint3d(-6, 0, 2)));
  delete image;
  EXPECT_EQ(segment.project(ground, KrGeVector3d(1, 1, 0)), nullptr);
  image = KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 1, 1)).orthoProject(ground);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->type(), KrGe::kLine3d);
  EXPECT_TRUE(static_cast<KrGeLine3d*>(image)->isOn(KrGePoint3d(1, 1, 2)));
  delete image;
}

// Seen along a direction, the pair looks closest: compared with brute force on the segments'
// images in the plane perpendicular to the direction.
TEST(KrGeLinearEnt3dProject, ProjectedClosestPoints_AgreeWithBruteForceInTheView) {
  Random random(99);
  SCOPED_TRACE(random.trace());
  for (int trial = 0; trial < 500; ++trial) {
    const KrGeVector3d view = random.unitVector();
    const linear_test::Segment a{random.point(5), random.point(5)};
    const linear_test::Segment b{random.point(5), random.point(5)};
    auto flat = [&](const KrGePoint3d& p) { return p - view * p.asVector().dotProduct(view); };
    const double reference = linear_test::bruteForceDistance({flat(a.p), flat(a.q)}, {flat(b.p), flat(b.q)});
    KrGePoint3d q;
    const KrGePoint3d p = KrGeLineSeg3d(a.p, a.q).projClosestPointTo(KrGeLineSeg3d(b.p, b.q), view * 3.0, q);
    SCOPED_TRACE(trial);
    EXPECT_NEAR(flat(p).distanceTo(flat(q)), reference, 1e-9 * 5);
    EXPECT_LE(distanceToSegment(p, a), 1e-12 * 5);
    EXPECT_LE(distanceToSegment(q, b), 1e-12 * 5);
    const KrGePoint3d target = random.point(5);
    const KrGePoint3d seen = KrGeLineSeg3d(a.p, a.q).projClosestPointTo(target, view);
    const linear_test::Segment flatA{flat(a.p), flat(a.q)};
    EXPECT_NEAR(flat(seen).distanceTo(flat(target)), distanceToSegment(flat(target), flatA), 1e-9 * 5);
    if (HasFailure()) return;
  }
}

TEST(KrGeLinearEnt3dProject, ProjIntersectWith_IgnoresItsToleranceArgument) {
  const KrGeLine3d a(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 0, 0));
  const KrGeLine3d b(KrGePoint3d(2, -1, 5), KrGeVector3d(0, 1, 0));
  KrGePoint3d p(1, 1, 1), q(1, 1, 1);
  EXPECT_TRUE(a.projIntersectWith(b, KrGeVector3d(0, 0, 1), p, q));
  EXPECT_EQ(p, KrGePoint3d(2, 0, 0));
  EXPECT_EQ(q, KrGePoint3d(2, 0, 5));
  KrGeTol huge;
  huge.setEqualVector(10);
  huge.setEqualPoint(10);
  // Segments whose views miss each other: their closest pair is not along the view.
  const KrGeLineSeg3d c(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0));
  const KrGeLineSeg3d d(KrGePoint3d(2, -1, 5), KrGePoint3d(2, 1, 5));
  EXPECT_FALSE(c.projIntersectWith(d, KrGeVector3d(0, 0, 1), p, q, huge));
  EXPECT_EQ(p, KrGePoint3d(0, 0, 0));
  EXPECT_EQ(q, KrGePoint3d(0, 0, 0));
  MonitorCapture::clear();
  const KrGePoint3d plain = a.projClosestPointTo(KrGePoint3d(3, 4, 5), KrGeVector3d());
  EXPECT_EQ(plain, KrGePoint3d(3, 0, 0));
  EXPECT_EQ(linear_test::countAssertions(MonitorCapture::drain(), "(!pEntity)"), 1);
  // Seen end-on, the segment's point nearest in space is the answer.
  const KrGeLineSeg3d upright(KrGePoint3d(1, 1, 0), KrGePoint3d(1, 1, 10));
  EXPECT_EQ(upright.projClosestPointTo(KrGePoint3d(5, 5, 7), KrGeVector3d(0, 0, 1)), KrGePoint3d(1, 1, 7));
}

TEST(KrGeLinearEnt3dLocal, NeighbourhoodsRestrictTheSearch) {
  const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  const KrGeLineSeg3d b(KrGePoint3d(5, -1, 1), KrGePoint3d(5, 1, 1));
  KrGePointOnCurve3d onA, onB;
  a.getLocalClosestPoints(b, onA, onB);
  EXPECT_DOUBLE_EQ(onA.parameter(), 0.5);
  EXPECT_DOUBLE_EQ(onB.parameter(), 0.5);
  EXPECT_EQ(onB.curve(), &b);
  const KrGeInterval near(0.0, 0.2);
  a.getLocalClosestPoints(b, onA, onB, &near, nullptr);
  EXPECT_DOUBLE_EQ(onA.parameter(), 0.2);
  a.getLocalClosestPoints(KrGePoint3d(8, 3, 0), onA, &near);
  EXPECT_EQ(onA.curve(), &a);
  EXPECT_DOUBLE_EQ(onA.parameter(), 0.2);
}

TEST(KrGeLinearEnt3dRelations, CoplanarWith_MeetingOrParallelLines) {
  const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1));
  KrGePlane plane;
  ASSERT_TRUE(a.isCoplanarWith(KrGeLine3d(KrGePoint3d(1, 1, 1), KrGeVector3d(1, 0, 0)), plane));
  EXPECT_NEAR(plane.signedDistanceTo(KrGePoint3d(5, 1, 1)), 0.0, 1e-12);
  EXPECT_NEAR(plane.signedDistanceTo(KrGePoint3d(0, 0, 0)), 0.0, 1e-12);
  ASSERT_TRUE(a.isCoplanarWith(KrGeLineSeg3d(KrGePoint3d(0, 0, 3), KrGePoint3d(2, 2, 5)), plane));
  EXPECT_NEAR(plane.signedDistanceTo(KrGePoint3d(2, 2, 5)), 0.0, 1e-12);
  EXPECT_FALSE(a.isCoplanarWith(KrGeLine3d(KrGePoint3d(0, 1, 0), KrGeVector3d(1, 0, 0)), plane));
  EXPECT_TRUE(a.isCoplanarWith(a, plane));
}

}  // namespace
