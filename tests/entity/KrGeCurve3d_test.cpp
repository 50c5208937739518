// The generic curve algorithms and the end-point closest pair, seen through lines and segments.
#include "entity/curve/curve_endpoints.h"
#include "tests/entity/EntityKit.h"

TEST(KrGeCurve3d, PointsOnCurvesOfTheClosestPairAndTheNormalPoint) {
  const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 0, 0)), b(KrGePoint3d(1, 1, 1), KrGePoint3d(1, 3, 1));
  KrGePointOnCurve3d onA, onB;
  a.getClosestPointTo(b, onA, onB);
  EXPECT_EQ(onB.curve(), &b);
  EXPECT_EQ(onA.parameter(), 0.25);
  EXPECT_EQ(onB.parameter(), 0.0);
  const KrGeLine3d line(KrGePoint3d(0, 0, 0), KrGeVector3d(2, 0, 0));
  EXPECT_TRUE(line.getNormalPoint(KrGePoint3d(-1, 2, 0), onA));
  EXPECT_EQ(onA.curve(), &line);
  EXPECT_EQ(onA.parameter(), -0.5);
}

// The pair always starts on curve 1 and ties go to curve 1's start; an unbounded curve only
// offers its closest points to the bounded one's ends; two unbounded curves give nothing.
TEST(KrGeCurve3d, EndPointsClosestPairPicksTheNearestEndOfEitherCurve) {
  const struct { const char* name; KrGePoint3d a0, a1, b0, b1, on1, on2; } rows[] = {  // every pair 1 apart
      {"four-way tie", {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}, {0, 0, 0}, {0, 1, 0}},
      {"end of curve 1", {0, 0, 0}, {2, 0, 0}, {3, -1, 0}, {3, 1, 0}, {2, 0, 0}, {3, 0, 0}},
      {"start of curve 2", {0, 0, 0}, {0, 4, 0}, {1, 2, 0}, {5, 2, 0}, {0, 2, 0}, {1, 2, 0}},
      {"end of curve 2", {0, 0, 0}, {0, 4, 0}, {5, 2, 0}, {1, 2, 0}, {0, 2, 0}, {1, 2, 0}}};
  KrGePoint3d p1, p2;
  double distance = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ASSERT_TRUE(krEndPointsClosestPoints(KrGeLineSeg3d(row.a0, row.a1), KrGeLineSeg3d(row.b0, row.b1), p1, p2, &distance, KrGeContext::gTol));
    EXPECT_EQ(distance, 1.0);
    EXPECT_EQ(p1, row.on1);
    EXPECT_EQ(p2, row.on2);
  }
  ASSERT_TRUE(krEndPointsClosestPoints(KrGeLine3d::kXAxis, KrGeLineSeg3d(KrGePoint3d(5, 3, 0), KrGePoint3d(6, 1, 0)), p1, p2, nullptr, KrGeContext::gTol));
  EXPECT_EQ(p1, KrGePoint3d(6, 0, 0));
  EXPECT_FALSE(krEndPointsClosestPoints(KrGeLine3d::kXAxis, KrGeLine3d::kYAxis, p1, p2, &distance, KrGeContext::gTol));
  EXPECT_EQ(distance, DBL_MAX);
}
