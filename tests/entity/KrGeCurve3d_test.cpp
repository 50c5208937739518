// The generic curve algorithms and the end-point closest pair, seen through lines and segments.
#include <gtest/gtest.h>

#include <cfloat>

#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGePlane.h"
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

TEST(KrGeCurve3d, IsOnParam_EvaluatesThenTests) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  EXPECT_TRUE(segment.isOn(0.5));
  EXPECT_FALSE(segment.isOn(1.5));  // off the segment, measured to its end
  const KrGeLine3d line(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  EXPECT_TRUE(line.isOn(1.5));
}

TEST(KrGeCurve3d, IsOnWithParam_OffCurveClearsTheParameter) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 0, 0));
  double param = 7;
  EXPECT_FALSE(segment.isOn(KrGePoint3d(2, 1, 0), param));
  EXPECT_EQ(param, 0.0);
  EXPECT_TRUE(segment.isOn(KrGePoint3d(3, 0, 0), param));
  EXPECT_EQ(param, 0.75);
}

TEST(KrGeCurve3d, GetIntervalWithPoints_LeavesOpenEndsUntouched) {
  const KrGePoint3d sentinel(9, 9, 9);
  KrGePoint3d start = sentinel, end = sentinel;
  KrGeInterval range;
  KrGeLine3d(KrGePoint3d(1, 0, 0), KrGeVector3d(0, 1, 0)).getInterval(range, start, end);
  EXPECT_FALSE(range.isBoundedBelow());
  EXPECT_EQ(start, sentinel);
  EXPECT_EQ(end, sentinel);
  KrGeLineSeg3d(KrGePoint3d(1, 0, 0), KrGePoint3d(1, 2, 0)).getInterval(range, start, end);
  EXPECT_EQ(start, KrGePoint3d(1, 0, 0));
  EXPECT_EQ(end, KrGePoint3d(1, 2, 0));
}

TEST(KrGeCurve3d, HasStartAndEnd_OnlyForBoundedSides) {
  KrGePoint3d point(5, 5, 5);
  EXPECT_FALSE(KrGeLine3d().hasStartPoint(point));
  EXPECT_FALSE(KrGeLine3d().hasEndPoint(point));
  EXPECT_EQ(point, KrGePoint3d(5, 5, 5));
  const KrGeLineSeg3d segment(KrGePoint3d(1, 2, 3), KrGePoint3d(3, 2, 1));
  EXPECT_TRUE(segment.hasStartPoint(point));
  EXPECT_EQ(point, KrGePoint3d(1, 2, 3));
  EXPECT_TRUE(segment.hasEndPoint(point));
  EXPECT_EQ(point, KrGePoint3d(3, 2, 1));
}

TEST(KrGeCurve3d, DistanceTo_IsTheClosestPairDistance) {
  const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0));
  const KrGeLineSeg3d b(KrGePoint3d(3, -1, 2), KrGePoint3d(3, 1, 2));
  EXPECT_DOUBLE_EQ(a.distanceTo(b), std::sqrt(8.0));
  EXPECT_DOUBLE_EQ(a.distanceTo(KrGePoint3d(-3, 4, 0)), 5.0);
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

TEST(KrGeCurve3d, OrthoProject_IsProjectionAlongTheNormal) {
  const KrGeLineSeg3d segment(KrGePoint3d(1, 2, 3), KrGePoint3d(-2, 0, 5));
  const KrGePlane plane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 2));
  KrGeEntity3d* image = segment.orthoProject(plane);
  ASSERT_NE(image, nullptr);
  ASSERT_EQ(image->type(), KrGe::kLineSeg3d);
  const auto* projected = static_cast<const KrGeLineSeg3d*>(image);
  EXPECT_EQ(projected->startPoint(), KrGePoint3d(1, 2, 1));
  EXPECT_EQ(projected->endPoint(), KrGePoint3d(-2, 0, 1));
  delete image;
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
