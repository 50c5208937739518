// Infinite lines: construction, the fixed unbounded interval and the deliberate line rules.
#include "tests/entity/LinearTestKit.h"

// The axes run through the origin; reversing only negates the direction.
TEST(KrGeLine3d, Construct_AxesTwoPointsAndReverseParam) {
  EXPECT_TRUE(KrGeLine3d::kXAxis.isEqualTo(KrGeLine3d()));
  EXPECT_TRUE(KrGeLine3d::kYAxis.isEqualTo(KrGeLine3d(KrGePoint3d(), KrGePoint3d(0, 1, 0))));
  EXPECT_TRUE(KrGeLine3d::kZAxis.isEqualTo(KrGeLine3d(KrGePoint3d(), KrGeVector3d(0, 0, 1))));
  KrGeLine3d line(KrGePoint3d(2, 3, 4), KrGeVector3d(1, -2, 0));
  line.reverseParam();
  EXPECT_TRUE(line.pointOnLine() == KrGePoint3d(2, 3, 4) && line.evalPoint(1.0) == KrGePoint3d(1, 5, 4));
}

// The interval never changes; the answer only tells whether the range was unbounded.
TEST(KrGeLine3d, SetInterval_NeverChangesTheInterval) {
  KrGeLine3d line;
  EXPECT_FALSE(line.setInterval(KrGeInterval(0.0, 5.0)) || line.setInterval(KrGeInterval(true, 0.0)));
  EXPECT_TRUE(line.setInterval(KrGeInterval()));
  KrGeInterval range(0.0, 1.0);
  line.getInterval(range);
  EXPECT_TRUE(!range.isBoundedBelow() && !range.isBoundedAbove());
}

TEST(KrGeLine3d, SamplePoints_NoneAndAWarning) {
  KrsArray<KrGePoint3d> points;
  points.Add(KrGePoint3d(1, 1, 1));
  const auto records = linear_test::recordsOf([&] { KrGeLine3d().getSamplePoints(4, points); });
  EXPECT_EQ(points.GetSize(), 0);
  EXPECT_EQ(linear_test::warningsIn(records),
            std::vector<std::string>{linear_test::warningText("KrLinearEnt3dImpl::getSamplePoints on unbounded line")});
}

// The open sides are 1e12 directions out, and 1e-8 is added to every coordinate on both sides.
TEST(KrGeLine3d, BoundBlock_AddsTheFixedBumpOnBothSides) {
  KrGePoint3d low, high;
  KrGeLine3d().boundBlock().getMinMaxPoints(low, high);
  EXPECT_TRUE(low == KrGePoint3d(-1e12 + 1e-8, 1e-8, 1e-8) && high == KrGePoint3d(1e12 + 1e-8, 1e-8, 1e-8));
  KrGeLine3d().orthoBoundBlock(KrGeInterval(false, 2.0)).getMinMaxPoints(low, high);
  EXPECT_TRUE(low == KrGePoint3d(-1e12 + 1e-8, 0, 0) && high == KrGePoint3d(2, 1e-8, 1e-8));
}

// Degenerate when the direction is of zero length by equalVector; the point is the origin.
TEST(KrGeLine3d, IsDegenerate_ByTheDirectionsLength) {
  const KrGeTol tol = linear_test::tolerance(1e-10, 1e-6);
  KrGe::EntityId kind = KrGe::kEntity3d;
  EXPECT_TRUE(KrGeLine3d(KrGePoint3d(1, 2, 3), KrGeVector3d(1e-6, 0, 0)).isDegenerate(kind, tol) &&
              kind == KrGe::kPosition3d);
  EXPECT_TRUE(!KrGeLine3d(KrGePoint3d(1, 2, 3), KrGeVector3d(2e-6, 0, 0)).isDegenerate(kind, tol) &&
              kind == KrGe::kLine3d);
  KrGeEntity3d* point = nullptr;
  ASSERT_TRUE(KrGeLine3d(KrGePoint3d(1, 2, 3), KrGeVector3d()).isDegenerate(point, tol));
  EXPECT_TRUE(point->isEqualTo(KrGePointEnt3d(KrGePoint3d(1, 2, 3))));
  delete point;
}
