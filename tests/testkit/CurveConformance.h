// The generic curve contract, as a typed test suite every curve class instantiates.
//
// A curve test file specialises CurveSamples<Curve> and instantiates the suite:
//
//   template <> struct testkit::CurveSamples<KrGeCircArc3d> {
//     static std::vector<KrGeCircArc3d> make();   // a handful of varied, non-degenerate curves
//   };
//   INSTANTIATE_TYPED_TEST_SUITE_P(Arc, CurveConformance, ::testing::Types<KrGeCircArc3d>);
//
// The checks use only the public curve interface and properties that hold for every curve kind:
// copies, assignment, kinship, evaluation against finite differences, point -> parameter ->
// point round trips, closest points no farther than any sample, bounding blocks holding the
// curve, transformation round trips and the reports of bad arguments staying silent otherwise.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "KrGeBoundBlock3d.h"
#include "KrGeCurve3d.h"
#include "KrGeMatrix3d.h"
#include "KrGePlane.h"
#include "KrGePointOnCurve3d.h"

namespace testkit {

template <class Curve>
struct CurveSamples;  // static std::vector<Curve> make();

// The parameter window the checks walk: the curve's interval, or [-3, 3] on an open side.
template <class Curve>
void sampleWindow(const Curve& curve, double& lower, double& upper) {
  KrGeInterval range;
  curve.getInterval(range);
  lower = range.isBoundedBelow() ? range.lowerBound() : -3.0;
  upper = range.isBoundedAbove() ? range.upperBound() : 3.0;
}

// |a - b| <= tolerance, with both points in the failure message.
inline ::testing::AssertionResult pointsClose(const KrGePoint3d& a, const KrGePoint3d& b, double tolerance) {
  const double d = a.distanceTo(b);
  if (d <= tolerance) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "(" << a.x << ", " << a.y << ", " << a.z << ") vs (" << b.x << ", " << b.y
                                       << ", " << b.z << "): " << d << " > " << tolerance;
}

template <class Curve>
class CurveConformance : public ::testing::Test {
protected:
  std::vector<Curve> curves() const { return CurveSamples<Curve>::make(); }

  // Parameters spread over the window, ends included.
  static std::vector<double> params(const Curve& curve, int count = 7) {
    double lower, upper;
    sampleWindow(curve, lower, upper);
    std::vector<double> result;
    for (int i = 0; i < count; ++i) result.push_back(lower + (upper - lower) * i / (count - 1));
    return result;
  }
  // A length scale of the curve: the span of its sample window.
  static double scaleOf(const Curve& curve) {
    double lower, upper;
    sampleWindow(curve, lower, upper);
    const double span = curve.evalPoint(lower).distanceTo(curve.evalPoint(upper));
    return span > 1.0 ? span : 1.0;
  }
};

TYPED_TEST_SUITE_P(CurveConformance);

TYPED_TEST_P(CurveConformance, Copy_IsOfTheSameClassEqualAndIndependent) {
  for (const TypeParam& curve : this->curves()) {
    KrGeEntity3d* made = curve.copy();
    ASSERT_NE(dynamic_cast<TypeParam*>(made), nullptr);
    EXPECT_EQ(made->type(), curve.type());
    EXPECT_TRUE(made->isEqualTo(curve));
    made->translateBy(KrGeVector3d(1, 2, 3));
    EXPECT_FALSE(made->isEqualTo(curve));
    delete made;
  }
}

TYPED_TEST_P(CurveConformance, Assignment_DeepThroughEntityNoneThroughCurve) {
  const std::vector<TypeParam> all = this->curves();
  ASSERT_GE(all.size(), 2u);
  TypeParam target(all[0]);
  static_cast<KrGeCurve3d&>(target) = static_cast<const KrGeCurve3d&>(all[1]);
  EXPECT_TRUE(target.isEqualTo(all[0]));
  static_cast<KrGeEntity3d&>(target) = static_cast<const KrGeEntity3d&>(all[1]);
  EXPECT_TRUE(target.isEqualTo(all[1]));
  TypeParam moved(all[1]);
  target = moved;
  moved.translateBy(KrGeVector3d(0, 0, 5));
  EXPECT_TRUE(target.isEqualTo(all[1]));
}

TYPED_TEST_P(CurveConformance, KindOf_IncludesCurveAndEntityNotSurfaces) {
  for (const TypeParam& curve : this->curves()) {
    EXPECT_TRUE(curve.isKindOf(curve.type()));
    EXPECT_TRUE(curve.isKindOf(KrGe::kCurve3d));
    EXPECT_TRUE(curve.isKindOf(KrGe::kEntity3d));
    EXPECT_FALSE(curve.isKindOf(KrGe::kSurface));
    EXPECT_FALSE(curve.isKindOf(KrGe::kPlanarEnt));
    EXPECT_FALSE(curve.isKindOf(KrGe::kPointEnt3d));
  }
}

TYPED_TEST_P(CurveConformance, Evaluation_DerivativeMatchesFiniteDifferences) {
  for (const TypeParam& curve : this->curves()) {
    for (double t : this->params(curve)) {
      KrsArray<KrGeVector3d> derivatives;
      const KrGePoint3d point = curve.evalPoint(t, 1, derivatives);
      ASSERT_EQ(derivatives.GetSize(), 1);
      EXPECT_TRUE(pointsClose(point, curve.evalPoint(t), 0.0));
      const double h = 1e-5;
      const KrGeVector3d difference = (curve.evalPoint(t + h) - curve.evalPoint(t - h)) / (2 * h);
      EXPECT_LE((difference - derivatives[0]).length(), 1e-6 * (1 + derivatives[0].length())) << "t " << t;
    }
  }
}

TYPED_TEST_P(CurveConformance, ParamOf_RoundTripsEvaluatedPoints) {
  for (const TypeParam& curve : this->curves()) {
    for (double t : this->params(curve)) {
      const KrGePoint3d point = curve.evalPoint(t);
      const double found = curve.paramOf(point);
      EXPECT_TRUE(pointsClose(curve.evalPoint(found), point, 1e-9 * this->scaleOf(curve))) << "t " << t;
      double onParam = -99;
      EXPECT_TRUE(curve.isOn(point, onParam));
      EXPECT_TRUE(pointsClose(curve.evalPoint(onParam), point, 1e-9 * this->scaleOf(curve)));
      EXPECT_TRUE(curve.isOn(t));
    }
  }
}

TYPED_TEST_P(CurveConformance, ClosestPoint_IsOnTheCurveAndNoFartherThanAnySample) {
  std::mt19937_64 engine(20240611);
  std::uniform_real_distribution<double> coordinate(-10, 10);
  for (const TypeParam& curve : this->curves()) {
    for (int trial = 0; trial < 20; ++trial) {
      const KrGePoint3d target(coordinate(engine), coordinate(engine), coordinate(engine));
      const KrGePoint3d closest = curve.closestPointTo(target);
      EXPECT_TRUE(curve.isOn(closest, KrGeTol()));
      EXPECT_DOUBLE_EQ(curve.distanceTo(target), target.distanceTo(closest));
      double lower, upper;
      sampleWindow(curve, lower, upper);
      for (int i = 0; i <= 200; ++i) {
        const KrGePoint3d sample = curve.evalPoint(lower + (upper - lower) * i / 200);
        ASSERT_LE(target.distanceTo(closest), target.distanceTo(sample) + 1e-9 * this->scaleOf(curve));
      }
      KrGePointOnCurve3d onCurve;
      curve.getClosestPointTo(target, onCurve);
      EXPECT_EQ(onCurve.curve(), &curve);
      EXPECT_TRUE(pointsClose(onCurve.point(), closest, 1e-9 * this->scaleOf(curve)));
    }
  }
}

TYPED_TEST_P(CurveConformance, IsOn_BothSidesOfTheTolerance) {
  for (const TypeParam& curve : this->curves()) {
    for (double t : this->params(curve, 5)) {
      KrsArray<KrGeVector3d> derivatives;
      const KrGePoint3d point = curve.evalPoint(t, 1, derivatives);
      KrGeVector3d away = derivatives[0].perpVector();
      KrGeTol tol;
      tol.setEqualPoint(1e-3);
      // Off the curve sideways, at half and at twice the tolerance.
      EXPECT_TRUE(curve.isOn(point + away * 0.5e-3, tol)) << "t " << t;
      EXPECT_FALSE(curve.isOn(point + away * 2e-3, tol)) << "t " << t;
      double param = 42;
      EXPECT_FALSE(curve.isOn(point + away * 2e-3, param, tol));
      EXPECT_EQ(param, 0.0);
    }
  }
}

TYPED_TEST_P(CurveConformance, Interval_EndPointsAgreeWithHasStartAndEnd) {
  for (const TypeParam& curve : this->curves()) {
    KrGeInterval range;
    const KrGePoint3d sentinel(-7, -7, -7);
    KrGePoint3d start = sentinel, end = sentinel, hasStart = sentinel, hasEnd = sentinel;
    curve.getInterval(range, start, end);
    EXPECT_EQ(curve.hasStartPoint(hasStart), range.isBoundedBelow());
    EXPECT_EQ(curve.hasEndPoint(hasEnd), range.isBoundedAbove());
    if (range.isBoundedBelow()) {
      EXPECT_TRUE(pointsClose(start, curve.evalPoint(range.lowerBound()), 0.0));
      EXPECT_TRUE(pointsClose(hasStart, start, 0.0));
    } else {
      EXPECT_TRUE(pointsClose(start, sentinel, 0.0));
      EXPECT_TRUE(pointsClose(hasStart, sentinel, 0.0));
    }
    if (range.isBoundedAbove()) {
      EXPECT_TRUE(pointsClose(end, curve.evalPoint(range.upperBound()), 0.0));
    } else {
      EXPECT_TRUE(pointsClose(end, sentinel, 0.0));
      EXPECT_TRUE(pointsClose(hasEnd, sentinel, 0.0));
    }
  }
}

TYPED_TEST_P(CurveConformance, Transform_RoundTripsAndMovesEveryPoint) {
  const KrGeMatrix3d matrix = KrGeMatrix3d::rotation(0.8, KrGeVector3d(1, 2, 2), KrGePoint3d(3, -1, 2)) *
                              KrGeMatrix3d::scaling(1.5, KrGePoint3d(1, 1, 1));
  for (const TypeParam& curve : this->curves()) {
    TypeParam moved(curve);
    moved.transformBy(matrix);
    for (double t : this->params(curve))
      EXPECT_TRUE(pointsClose(moved.evalPoint(t), matrix * curve.evalPoint(t), 1e-9 * this->scaleOf(curve)));
    moved.transformBy(matrix.inverse());
    EXPECT_TRUE(moved.isEqualTo(curve, KrGeTol()));
    TypeParam shifted(curve);
    shifted.translateBy(KrGeVector3d(0.5, -1, 2));
    EXPECT_TRUE(pointsClose(shifted.evalPoint(0.25), curve.evalPoint(0.25) + KrGeVector3d(0.5, -1, 2), 1e-12 * this->scaleOf(curve)));
  }
}

// Curves may pad their blocks (a line pads its open sides by 1e-8 on purpose), so the check is
// on the block's extent with that much slack.
TYPED_TEST_P(CurveConformance, BoundBlock_HoldsTheCurve) {
  for (const TypeParam& curve : this->curves()) {
    const KrGeBoundBlock3d box = curve.orthoBoundBlock();
    EXPECT_TRUE(box.isBox());
    KrGePoint3d low, high;
    curve.boundBlock().getMinMaxPoints(low, high);
    KrGePoint3d boxLow, boxHigh;
    box.getMinMaxPoints(boxLow, boxHigh);
    const double slack = 1e-7 + 1e-12 * this->scaleOf(curve);
    for (double t : this->params(curve, 11)) {
      const KrGePoint3d p = curve.evalPoint(t);
      for (unsigned i = 0; i < 3; ++i) {
        EXPECT_LE(low[i] - slack, p[i]) << "t " << t << " axis " << i;
        EXPECT_GE(high[i] + slack, p[i]) << "t " << t << " axis " << i;
        EXPECT_LE(boxLow[i] - slack, p[i]) << "t " << t << " axis " << i;
        EXPECT_GE(boxHigh[i] + slack, p[i]) << "t " << t << " axis " << i;
      }
    }
  }
}

TYPED_TEST_P(CurveConformance, OrthoProject_EqualsProjectAlongTheNormal) {
  const KrGePlane plane(KrGePoint3d(1, 2, 3), KrGeVector3d(1, -1, 2));
  for (const TypeParam& curve : this->curves()) {
    KrGeEntity3d* ortho = curve.orthoProject(plane);
    KrGeEntity3d* along = curve.project(plane, plane.normal());
    ASSERT_NE(ortho, nullptr);
    ASSERT_NE(along, nullptr);
    EXPECT_TRUE(ortho->isEqualTo(*along));
    if (ortho->isKindOf(KrGe::kCurve3d)) {
      const auto* image = static_cast<const KrGeCurve3d*>(ortho);
      for (double t : this->params(curve, 5))
        EXPECT_LE(std::fabs(plane.signedDistanceTo(image->evalPoint(t))), 1e-9 * this->scaleOf(curve));
    }
    delete ortho;
    delete along;
  }
}

TYPED_TEST_P(CurveConformance, SamplesByDeviation_LieOnTheCurveInOrder) {
  for (const TypeParam& curve : this->curves()) {
    double lower, upper;
    sampleWindow(curve, lower, upper);
    KrsArray<KrGePoint3d> points;
    KrsArray<double> params;
    curve.getSamplePoints(lower, upper, 1e-3, points, params);
    ASSERT_GE(points.GetSize(), 2);
    ASSERT_EQ(points.GetSize(), params.GetSize());
    EXPECT_EQ(params[0], lower);
    EXPECT_EQ(params[params.GetSize() - 1], upper);
    for (int i = 0; i < points.GetSize(); ++i) {
      EXPECT_TRUE(pointsClose(points[i], curve.evalPoint(params[i]), 1e-12 * this->scaleOf(curve)));
      if (i > 0) {
        EXPECT_LT(params[i - 1], params[i]);
      }
    }
  }
}

REGISTER_TYPED_TEST_SUITE_P(CurveConformance, Copy_IsOfTheSameClassEqualAndIndependent,
                            Assignment_DeepThroughEntityNoneThroughCurve, KindOf_IncludesCurveAndEntityNotSurfaces,
                            Evaluation_DerivativeMatchesFiniteDifferences, ParamOf_RoundTripsEvaluatedPoints,
                            ClosestPoint_IsOnTheCurveAndNoFartherThanAnySample, IsOn_BothSidesOfTheTolerance,
                            Interval_EndPointsAgreeWithHasStartAndEnd, Transform_RoundTripsAndMovesEveryPoint,
                            BoundBlock_HoldsTheCurve, OrthoProject_EqualsProjectAlongTheNormal,
                            SamplesByDeviation_LieOnTheCurveInOrder);

}  // namespace testkit
