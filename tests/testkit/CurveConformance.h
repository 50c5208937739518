// The generic curve contract, as a typed test suite every curve class instantiates:
//
//   template <> struct testkit::CurveSamples<KrGeCircArc3d> {
//     static std::vector<KrGeCircArc3d> make();   // a handful of varied, non-degenerate curves
//   };
//   INSTANTIATE_TYPED_TEST_SUITE_P(Arc, CurveConformance, ::testing::Types<KrGeCircArc3d>);
//
// Only the public curve interface and properties that hold for every curve kind are used; the
// samples are chosen so that their projections onto an oblique plane are curves.
#pragma once

#include <climits>
#include <memory>

#include "testkit/TestKit.h"

namespace testkit {

template <class Curve>
struct CurveSamples;  // static std::vector<Curve> make();

template <class Curve>
class CurveConformance : public ::testing::Test {
protected:
  // Each sample curve with `count` parameters spread over its interval ([-3, 3] on an open side)
  // and a length scale: the span of that window, at least 1.
  template <class Check>
  static void forEach(int count, Check check) {
    for (const Curve& curve : CurveSamples<Curve>::make()) {
      KrGeInterval range;
      curve.getInterval(range);
      const double lower = range.isBoundedBelow() ? range.lowerBound() : -3.0;
      const double upper = range.isBoundedAbove() ? range.upperBound() : 3.0;
      std::vector<double> params;
      for (int i = 0; i < count; ++i) params.push_back(lower + (upper - lower) * i / (count - 1));
      check(curve, params, std::fmax(1.0, curve.evalPoint(lower).distanceTo(curve.evalPoint(upper))));
    }
  }
};

TYPED_TEST_SUITE_P(CurveConformance);

// copy() makes an independent curve of the class; through KrGeCurve3d& nothing is copied (kept
// on purpose), through KrGeEntity3d& and the class operator the copy is deep; self-assignment
// through any of them leaves the curve.
TYPED_TEST_P(CurveConformance, CopyAndAssignment_DeepThroughEntityNoneThroughCurve) {
  const std::vector<TypeParam> all = CurveSamples<TypeParam>::make();
  ASSERT_GE(all.size(), 2u);
  std::unique_ptr<KrGeEntity3d> made(all[0].copy());
  ASSERT_NE(dynamic_cast<TypeParam*>(made.get()), nullptr);
  EXPECT_TRUE(made->isEqualTo(all[0]));
  EXPECT_TRUE(made->isKindOf(KrGe::kCurve3d));
  made->translateBy(KrGeVector3d(1, 2, 3));
  EXPECT_FALSE(made->isEqualTo(all[0]));
  TypeParam source(all[1]), target(all[0]);
  static_cast<KrGeCurve3d&>(target) = static_cast<const KrGeCurve3d&>(source);
  EXPECT_TRUE(target.isEqualTo(all[0]));
  static_cast<KrGeEntity3d&>(target) = static_cast<const KrGeEntity3d&>(source);
  source.translateBy(KrGeVector3d(0, 0, 5));
  EXPECT_TRUE(target.isEqualTo(all[1]));
  target = all[0];
  const TypeParam& alias = target;
  target = alias;
  static_cast<KrGeCurve3d&>(target) = static_cast<const KrGeCurve3d&>(alias);
  static_cast<KrGeEntity3d&>(target) = static_cast<const KrGeEntity3d&>(alias);
  EXPECT_TRUE(target.isEqualTo(all[0]));
}

// Derivatives against central differences, point -> parameter -> point, and the end points that
// getInterval and hasStart/EndPoint give (the point of an open side is left untouched).
TYPED_TEST_P(CurveConformance, Evaluation_DerivativesParamOfAndEndPoints) {
  this->forEach(7, [](const TypeParam& curve, const std::vector<double>& params, double scale) {
    for (double t : params) {
      SCOPED_TRACE(t);
      KrsArray<KrGeVector3d> derivatives;
      const KrGePoint3d point = curve.evalPoint(t, 1, derivatives);
      ASSERT_EQ(derivatives.GetSize(), 1);
      EXPECT_TRUE(within(point, curve.evalPoint(t), 0.0));
      const KrGeVector3d difference = (curve.evalPoint(t + 1e-5) - curve.evalPoint(t - 1e-5)) / 2e-5;
      EXPECT_LE((difference - derivatives[0]).length(), 1e-6 * (1 + derivatives[0].length()));
      EXPECT_TRUE(within(curve.evalPoint(curve.paramOf(point)), point, 1e-9 * scale));
      double onParam = -99;
      EXPECT_TRUE(curve.isOn(point, onParam));
      EXPECT_TRUE(within(curve.evalPoint(onParam), point, 1e-9 * scale));
    }
    const KrGePoint3d none(-7, -7, -7);
    KrGeInterval range;
    KrGePoint3d ends[4] = {none, none, none, none};
    curve.getInterval(range, ends[0], ends[1]);
    EXPECT_EQ(curve.hasStartPoint(ends[2]), range.isBoundedBelow());
    EXPECT_EQ(curve.hasEndPoint(ends[3]), range.isBoundedAbove());
    const KrGePoint3d start = range.isBoundedBelow() ? curve.evalPoint(range.lowerBound()) : none;
    const KrGePoint3d end = range.isBoundedAbove() ? curve.evalPoint(range.upperBound()) : none;
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(within(ends[i], i % 2 ? end : start, 0.0)) << i;
  });
}

TYPED_TEST_P(CurveConformance, ClosestPoint_IsOnTheCurveAndNoFartherThanAnySample) {
  std::mt19937_64 engine(20240611);
  std::uniform_real_distribution<double> coordinate(-10, 10);
  this->forEach(201, [&](const TypeParam& curve, const std::vector<double>& params, double scale) {
    for (int trial = 0; trial < 20; ++trial) {
      const KrGePoint3d target(coordinate(engine), coordinate(engine), coordinate(engine));
      const KrGePoint3d closest = curve.closestPointTo(target);
      EXPECT_TRUE(curve.isOn(closest, KrGeTol()));
      EXPECT_DOUBLE_EQ(curve.distanceTo(target), target.distanceTo(closest));
      for (double t : params)
        ASSERT_LE(target.distanceTo(closest), target.distanceTo(curve.evalPoint(t)) + 1e-9 * scale);
      KrGePointOnCurve3d onCurve;
      curve.getClosestPointTo(target, onCurve);
      EXPECT_EQ(onCurve.curve(), &curve);
      EXPECT_TRUE(within(onCurve.point(), closest, 1e-9 * scale));
    }
  });
}

// Sideways off the curve at half and at twice the tolerance; a point off the curve gets param 0.
TYPED_TEST_P(CurveConformance, IsOn_BothSidesOfTheTolerance) {
  KrGeTol tol;
  tol.setEqualPoint(1e-3);
  this->forEach(5, [&](const TypeParam& curve, const std::vector<double>& params, double) {
    for (double t : params) {
      KrsArray<KrGeVector3d> derivatives;
      const KrGePoint3d point = curve.evalPoint(t, 1, derivatives);
      double param = 42;
      EXPECT_TRUE(curve.isOn(point + derivatives[0].perpVector() * 0.5e-3, tol)) << "t " << t;
      EXPECT_FALSE(curve.isOn(point + derivatives[0].perpVector() * 2e-3, param, tol)) << "t " << t;
      EXPECT_EQ(param, 0.0);
    }
  });
}

// Transformation round trips; the blocks hold the curve (with slack for the 1e-8 a line pads its
// open sides by); the orthogonal projection is the projection along the normal, in the plane.
TYPED_TEST_P(CurveConformance, TransformBlocksAndProjection_FollowTheCurve) {
  const KrGeMatrix3d matrix = KrGeMatrix3d::rotation(0.8, KrGeVector3d(1, 2, 2), KrGePoint3d(3, -1, 2)) *
                              KrGeMatrix3d::scaling(1.5, KrGePoint3d(1, 1, 1));
  const KrGePlane plane(KrGePoint3d(1, 2, 3), KrGeVector3d(1, -1, 2));
  this->forEach(11, [&](const TypeParam& curve, const std::vector<double>& params, double scale) {
    TypeParam moved(curve);
    moved.transformBy(matrix);
    KrGePoint3d low[2], high[2];
    curve.boundBlock().getMinMaxPoints(low[0], high[0]);
    curve.orthoBoundBlock().getMinMaxPoints(low[1], high[1]);
    EXPECT_TRUE(curve.orthoBoundBlock().isBox());
    std::unique_ptr<KrGeEntity3d> ortho(curve.orthoProject(plane)), along(curve.project(plane, plane.normal()));
    ASSERT_TRUE(ortho);
    ASSERT_TRUE(along);
    EXPECT_TRUE(ortho->isEqualTo(*along));
    for (double t : params) {
      const KrGePoint3d p = curve.evalPoint(t);
      EXPECT_TRUE(within(moved.evalPoint(t), matrix * p, 1e-9 * scale));
      for (int k = 0; k < 6; ++k)
        EXPECT_TRUE(low[k / 3][k % 3] - 1e-7 * scale <= p[k % 3] && p[k % 3] <= high[k / 3][k % 3] + 1e-7 * scale)
            << "t " << t << " block " << k / 3 << " axis " << k % 3;
      EXPECT_LE(std::fabs(plane.signedDistanceTo(static_cast<const KrGeCurve3d&>(*ortho).evalPoint(t))), 1e-9 * scale);
    }
    moved.transformBy(matrix.inverse());
    EXPECT_TRUE(moved.isEqualTo(curve, KrGeTol()));
  });
}

// Hostile counts: every kind states its limits, and none hands out more than 2^20 derivatives or
// samples from one call, throws, or stays silent about it; a point on the curve refuses orders
// above 256 with the zero vector.
TYPED_TEST_P(CurveConformance, HostileCounts_AreReportedAndNeverAllocatedFor) {
  const TypeParam curve = CurveSamples<TypeParam>::make()[0];
  KrGePointOnCurve3d onCurve(curve, 0.5);
  KrsArray<KrGeVector3d> derivatives;
  KrsArray<KrGePoint3d> samples;
  const std::vector<Record> records = recordsOf([&] {
    EXPECT_TRUE(within(curve.evalPoint(0.5, INT_MAX, derivatives), curve.evalPoint(0.5), 0.0));
    EXPECT_EQ(onCurve.deriv(INT_MAX).lengthSqrd(), 0.0);
    curve.getSamplePoints(INT_MAX, samples);
  });
  EXPECT_LE(derivatives.GetSize(), 1 << 20);
  EXPECT_LE(samples.GetSize(), 1 << 20);
  EXPECT_TRUE(reportedOnce(countAssertions(records, "(order>kMaxDerivOrder)")));
  curve.evalPoint(0.5, 256, derivatives);
  EXPECT_EQ(derivatives.GetSize(), 256);
}

REGISTER_TYPED_TEST_SUITE_P(CurveConformance, CopyAndAssignment_DeepThroughEntityNoneThroughCurve,
                            Evaluation_DerivativesParamOfAndEndPoints,
                            ClosestPoint_IsOnTheCurveAndNoFartherThanAnySample, IsOn_BothSidesOfTheTolerance,
                            TransformBlocksAndProjection_FollowTheCurve,
                            HostileCounts_AreReportedAndNeverAllocatedFor);

}  // namespace testkit
