// The generic curve algorithms and the end-point closest pair, seen through lines and segments.
#include <gtest/gtest.h>

#include <cfloat>

#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGePointOnCurve3d.h"
#include "entity/curve/curve_endpoints.h"

namespace {

TEST(KrGeCurve3d, IsOn_DistanceEqualToTheToleranceCounts) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  KrGeTol tol;
  tol.setEqualPoint(0.5);
  EXPECT_TRUE(segment.isOn(KrGePoint3d(5, 0.5, 0), tol));
  EXPECT_FALSE(segment.isOn(KrGePoint3d(5, 0.5000001, 0), tol));
  EXPECT_TRUE(segment.isOn(KrGePoint3d(10.5, 0, 0), tol));  // beyond the end, measured to the end
  EXPECT_FALSE(segment.isOn(KrGePoint3d(10.5000001, 0, 0), tol));
}

TEST(KrGeCurve3d, GetClosestPointTo_FillsBothPointsOnCurves) {
  const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 0, 0));
  const KrGeLineSeg3d b(KrGePoint3d(1, 1, 1), KrGePoint3d(1, 3, 1));
  KrGePointOnCurve3d onA, onB;
  a.getClosestPointTo(b, onA, onB);
  EXPECT_EQ(onA.curve(), &a);
  EXPECT_EQ(onB.curve(), &b);
  EXPECT_DOUBLE_EQ(onA.parameter(), 0.25);
  EXPECT_DOUBLE_EQ(onB.parameter(), 0.0);
  KrGePointOnCurve3d onLine;
  const KrGeLine3d line(KrGePoint3d(0, 0, 0), KrGeVector3d(2, 0, 0));
  line.getClosestPointTo(KrGePoint3d(3, 5, 0), onLine);
  EXPECT_EQ(onLine.curve(), &line);
  EXPECT_DOUBLE_EQ(onLine.parameter(), 1.5);
  KrGePointOnCurve3d foot;
  EXPECT_TRUE(line.getNormalPoint(KrGePoint3d(-1, 2, 0), foot));
  EXPECT_DOUBLE_EQ(foot.parameter(), -0.5);
}

// Two parallel unit segments one apart: all four end-point distances tie at 1 and curve 1's
// start wins.
TEST(KrGeCurve3dEndPoints, TieGoesToTheStartOfCurveOne) {
  const KrGeLineSeg3d c1(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0));
  const KrGeLineSeg3d c2(KrGePoint3d(0, 1, 0), KrGePoint3d(1, 1, 0));
  KrGePoint3d p1, p2;
  double distance = 0;
  ASSERT_TRUE(krEndPointsClosestPoints(c1, c2, p1, p2, &distance, KrGeContext::gTol));
  EXPECT_EQ(distance, 1.0);
  EXPECT_EQ(p1, KrGePoint3d(0, 0, 0));
  EXPECT_EQ(p2, KrGePoint3d(0, 1, 0));
}

TEST(KrGeCurve3dEndPoints, PicksTheNearestEndOfEitherCurve) {
  struct Row {
    const char* name;
    KrGePoint3d a0, a1, b0, b1;
    KrGePoint3d on1, on2;
  } rows[] = {
      {"end of curve 1", {0, 0, 0}, {2, 0, 0}, {3, -1, 0}, {3, 1, 0}, {2, 0, 0}, {3, 0, 0}},
      {"start of curve 2", {0, 0, 0}, {0, 4, 0}, {1, 2, 0}, {5, 2, 0}, {0, 2, 0}, {1, 2, 0}},
      {"end of curve 2", {0, 0, 0}, {0, 4, 0}, {5, 2, 0}, {1, 2, 0}, {0, 2, 0}, {1, 2, 0}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KrGePoint3d p1, p2;
    ASSERT_TRUE(krEndPointsClosestPoints(KrGeLineSeg3d(row.a0, row.a1), KrGeLineSeg3d(row.b0, row.b1), p1, p2,
                                         nullptr, KrGeContext::gTol));
    EXPECT_EQ(p1, row.on1);
    EXPECT_EQ(p2, row.on2);
  }
}

TEST(KrGeCurve3dEndPoints, UnboundedCurvesUseOnlyTheBoundedOnesEnds) {
  const KrGeLine3d line(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 0, 0));
  const KrGeLineSeg3d segment(KrGePoint3d(5, 3, 0), KrGePoint3d(6, 1, 0));
  KrGePoint3d p1, p2;
  double distance = 0;
  ASSERT_TRUE(krEndPointsClosestPoints(line, segment, p1, p2, &distance, KrGeContext::gTol));
  EXPECT_EQ(distance, 1.0);
  EXPECT_EQ(p1, KrGePoint3d(6, 0, 0));
  EXPECT_EQ(p2, KrGePoint3d(6, 1, 0));
  EXPECT_FALSE(krEndPointsClosestPoints(line, line, p1, p2, &distance, KrGeContext::gTol));
  EXPECT_EQ(distance, DBL_MAX);
}

}  // namespace
