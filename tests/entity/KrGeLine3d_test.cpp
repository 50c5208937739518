// Infinite lines: construction, the fixed unbounded interval and the deliberate line rules.
#include <gtest/gtest.h>

#include <cfloat>

#include "KrGeBoundBlock3d.h"
#include "KrGeLine3d.h"
#include "KrGePointEnt3d.h"
#include "tests/entity/LinearTestKit.h"

using testkit::MonitorCapture;

namespace {

TEST(KrGeLine3d, Construct_DefaultAxesAndTwoPoints) {
  const KrGeLine3d line;
  EXPECT_EQ(line.pointOnLine(), KrGePoint3d(0, 0, 0));
  EXPECT_EQ(line.direction(), KrGeVector3d::kXAxis);
  KrGeInterval range(0.0, 1.0);
  line.getInterval(range);
  EXPECT_FALSE(range.isBoundedBelow());
  EXPECT_FALSE(range.isBoundedAbove());
  EXPECT_TRUE(KrGeLine3d::kXAxis.isEqualTo(line));
  EXPECT_EQ(KrGeLine3d::kYAxis.direction(), KrGeVector3d::kYAxis);
  EXPECT_EQ(KrGeLine3d::kZAxis.direction(), KrGeVector3d::kZAxis);
  const KrGeLine3d through(KrGePoint3d(1, 1, 1), KrGePoint3d(1, 1, 4));
  EXPECT_EQ(through.evalPoint(1.0), KrGePoint3d(1, 1, 4));
  EXPECT_EQ(through.direction(), KrGeVector3d::kZAxis);
  EXPECT_EQ(through.type(), KrGe::kLine3d);
}

TEST(KrGeLine3d, SetInterval_NeverChangesTheInterval) {
  KrGeLine3d line(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 0, 0));
  EXPECT_FALSE(line.setInterval(KrGeInterval(0.0, 5.0)));
  EXPECT_FALSE(line.setInterval(KrGeInterval(true, 0.0)));
  EXPECT_TRUE(line.setInterval(KrGeInterval()));
  KrGeInterval range;
  line.getInterval(range);
  EXPECT_TRUE(range.isUnBounded() && !range.isBoundedBelow() && !range.isBoundedAbove());
}

TEST(KrGeLine3d, ClosestPointAndLength_UseTheWholeLine) {
  const KrGeLine3d line(KrGePoint3d(2, 3, 4), KrGeVector3d(1, 1, 0));
  EXPECT_EQ(line.pointOnLine(), KrGePoint3d(2, 3, 4));
  EXPECT_EQ(line.length(-1.0, 1.0), 2 * std::sqrt(2.0));
  EXPECT_EQ(line.closestPointTo(KrGePoint3d(0, 3, 4)), KrGePoint3d(1, 2, 4));
  EXPECT_EQ(line.closestPointTo(KrGePoint3d(1000, 1003, 4)), KrGePoint3d(1001, 1002, 4));
}

TEST(KrGeLine3d, ReverseParam_OnlyNegatesTheDirection) {
  KrGeLine3d line(KrGePoint3d(2, 3, 4), KrGeVector3d(1, -2, 0));
  line.reverseParam();
  EXPECT_EQ(line.pointOnLine(), KrGePoint3d(2, 3, 4));
  EXPECT_EQ(line.evalPoint(1.0), KrGePoint3d(1, 5, 4));
}

TEST(KrGeLine3d, SamplePoints_NoneAndAWarning) {
  const KrGeLine3d line;
  KrsArray<KrGePoint3d> points;
  points.Add(KrGePoint3d(1, 1, 1));
  MonitorCapture::clear();
  line.getSamplePoints(4, points);
  const auto records = MonitorCapture::drain();
  EXPECT_EQ(points.GetSize(), 0);
  EXPECT_EQ(testkit::countMessage(records, linear_test::warningText("KrLinearEnt3dImpl::getSamplePoints on unbounded line")), 1);
}

// The open sides are 1e12 directions out, and 1e-8 is added to every coordinate on both sides.
TEST(KrGeLine3d, BoundBlock_AddsTheFixedBumpOnBothSides) {
  const KrGeLine3d line(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 0, 0));
  KrGePoint3d low, high;
  line.boundBlock().getMinMaxPoints(low, high);
  EXPECT_EQ(low, KrGePoint3d(-1e12 + 1e-8, 1e-8, 1e-8));
  EXPECT_EQ(high, KrGePoint3d(1e12 + 1e-8, 1e-8, 1e-8));
  line.orthoBoundBlock(KrGeInterval(false, 2.0)).getMinMaxPoints(low, high);
  EXPECT_EQ(low, KrGePoint3d(-1e12 + 1e-8, 0, 0));
  EXPECT_EQ(high, KrGePoint3d(2, 1e-8, 1e-8));
  KrGePoint3d start(7, 7, 7);
  EXPECT_FALSE(line.hasStartPoint(start));
}

TEST(KrGeLine3d, IsDegenerate_ByTheDirectionsLength) {
  KrGeTol tol;
  tol.setEqualVector(1e-6);
  KrGe::EntityId kind = KrGe::kEntity3d;
  EXPECT_TRUE(KrGeLine3d(KrGePoint3d(1, 2, 3), KrGeVector3d(1e-6, 0, 0)).isDegenerate(kind, tol));
  EXPECT_EQ(kind, KrGe::kPosition3d);
  EXPECT_FALSE(KrGeLine3d(KrGePoint3d(1, 2, 3), KrGeVector3d(2e-6, 0, 0)).isDegenerate(kind, tol));
  EXPECT_EQ(kind, KrGe::kLine3d);
  KrGeEntity3d* point = nullptr;
  ASSERT_TRUE(KrGeLine3d(KrGePoint3d(1, 2, 3), KrGeVector3d()).isDegenerate(point, tol));
  EXPECT_EQ(static_cast<KrGePointEnt3d*>(point)->point3d(), KrGePoint3d(1, 2, 3));
  delete point;
}

}  // namespace
