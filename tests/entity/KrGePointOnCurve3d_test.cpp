#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGeMatrix3d.h"
#include "KrGePointEnt3d.h"
#include "KrGePointOnCurve3d.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/entity/LinearTestKit.h"

using linear_test::countAssertions;
using testkit::MonitorCapture;

TEST(KrGePointEnt3d, Identity_KindOfPositionAndEntityOnly) {
  const KrGePointEnt3d point(KrGePoint3d(1, 2, 3));
  EXPECT_EQ(point.type(), KrGe::kPosition3d);
  EXPECT_TRUE(point.isKindOf(KrGe::kPosition3d));
  EXPECT_TRUE(point.isKindOf(KrGe::kEntity3d));
  EXPECT_FALSE(point.isKindOf(KrGe::kPointEnt3d));
  EXPECT_FALSE(point.isKindOf(KrGe::kPointOnCurve3d));
  EXPECT_FALSE(point.isKindOf(KrGe::kCurve3d));
}

TEST(KrGePointEnt3d, Value_TransformCopyAndCompare) {
  KrGePointEnt3d point(KrGePoint3d(1, 2, 3));
  const KrGePoint3d asPoint = point;
  EXPECT_EQ(asPoint.z, 3.0);
  std::unique_ptr<KrGeEntity3d> copy(point.copy());
  ASSERT_EQ(copy->type(), KrGe::kPosition3d);
  EXPECT_TRUE(*copy == point);
  point.rotateBy(3.141592653589793 / 2, KrGeVector3d(0, 0, 1));
  EXPECT_NEAR(point.point3d().x, -2.0, 1e-15);
  EXPECT_NEAR(point.point3d().y, 1.0, 1e-15);
  EXPECT_TRUE(*copy != point);
  KrGeTol tol;
  tol.setEqualPoint(1e-6);
  EXPECT_TRUE(point.isOn(KrGePoint3d(-2, 1 + 1e-6, 3), tol));
  EXPECT_FALSE(point.isOn(KrGePoint3d(-2, 1 + 2e-6, 3), tol));
  KrGePointEnt3d other;
  other = point;
  other.set(KrGePoint3d(7, 7, 7));
  EXPECT_EQ(point.point3d().z, 3.0);
  EXPECT_EQ(other.point3d().x, 7.0);
}

TEST(KrGePointOnCurve3d, Identity_KindOfAbstractPointButNotOfPosition) {
  const KrGePointOnCurve3d point;
  EXPECT_EQ(point.type(), KrGe::kPointOnCurve3d);
  EXPECT_TRUE(point.isKindOf(KrGe::kPointOnCurve3d));
  EXPECT_TRUE(point.isKindOf(KrGe::kPointEnt3d));
  EXPECT_TRUE(point.isKindOf(KrGe::kEntity3d));
  EXPECT_FALSE(point.isKindOf(KrGe::kPosition3d));
  EXPECT_EQ(point.curve(), nullptr);
  EXPECT_EQ(point.parameter(), 0.0);
}

TEST(KrGePointOnCurve3d, Evaluate_PointAndDerivativesFollowTheCurve) {
  KrGeLineSeg3d segment(KrGePoint3d(1, 0, 0), KrGePoint3d(3, 4, 0));
  KrGePointOnCurve3d point(segment, 0.5);
  EXPECT_EQ(point.curve(), &segment);
  const KrGePoint3d middle = point.point();
  EXPECT_EQ(middle.x, 2.0);
  EXPECT_EQ(middle.y, 2.0);
  EXPECT_EQ(point.point3d().y, 2.0);
  const KrGeVector3d first = point.deriv(1);
  EXPECT_EQ(first.x, 2.0);
  EXPECT_EQ(first.y, 4.0);
  EXPECT_EQ(point.deriv(2).lengthSqrd(), 0.0);
  EXPECT_EQ(point.point(1.0).y, 4.0);
  EXPECT_EQ(point.parameter(), 1.0);

  // Evaluated on demand: moving the curve moves the point.
  segment.translateBy(KrGeVector3d(0, 0, 5));
  EXPECT_EQ(point.point().z, 5.0);

  const KrGeLine3d line(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 2, 0));
  EXPECT_EQ(point.point(line, 3.0).y, 6.0);
  EXPECT_EQ(point.curve(), &line);
  EXPECT_EQ(point.deriv(1, 7.0).y, 2.0);
  EXPECT_EQ(point.parameter(), 7.0);
  EXPECT_EQ(point.deriv(1, segment, 0.0).x, 2.0);
  EXPECT_EQ(point.curve(), &segment);
}

TEST(KrGePointOnCurve3d, Set_SnapsTheParameterToTheNearestCurvePoint) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  KrGePointOnCurve3d point(segment);
  KrGePointEnt3d& asPoint = point;
  asPoint.set(KrGePoint3d(4, 3, -1));
  EXPECT_DOUBLE_EQ(point.parameter(), 0.4);
  asPoint.set(KrGePoint3d(40, 3, -1));  // beyond the end: the end point's parameter
  EXPECT_DOUBLE_EQ(point.parameter(), 1.0);
  EXPECT_EQ(asPoint.point3d().x, 10.0);
}

TEST(KrGePointOnCurve3d, Value_CopiesShareTheCurveAndCompareByCurveAndPoint) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  const KrGeLineSeg3d twin(segment);
  KrGePointOnCurve3d point(segment, 0.25);
  std::unique_ptr<KrGeEntity3d> copy(point.copy());
  ASSERT_EQ(copy->type(), KrGe::kPointOnCurve3d);
  const KrGePointOnCurve3d& copied = static_cast<const KrGePointOnCurve3d&>(*copy);
  EXPECT_EQ(copied.curve(), &segment);
  EXPECT_EQ(copied.parameter(), 0.25);
  EXPECT_TRUE(point == copied);
  EXPECT_FALSE(point == KrGePointOnCurve3d(twin, 0.25));  // another curve object
  KrGePointOnCurve3d assigned;
  assigned = point;
  assigned.setParameter(0.5);
  EXPECT_EQ(point.parameter(), 0.25);
  EXPECT_FALSE(assigned == point);
  EXPECT_TRUE(point.isOn(KrGePoint3d(2.5, 0, 0)));
  EXPECT_FALSE(point.isEqualTo(KrGePointEnt3d(KrGePoint3d(2.5, 0, 0))));
}

TEST(KrGePointOnCurve3d, Diagnostics_NoCurveBadOrderAndTransformAreReported) {
  ASSERT_TRUE(MonitorCapture::active());
  KrGePointOnCurve3d point;
  MonitorCapture::clear();
  EXPECT_EQ(point.point().asVector().lengthSqrd(), 0.0);
  EXPECT_EQ(countAssertions(MonitorCapture::drain(), "(!m_pCurve)"), 1);

  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1));
  point.setCurve(segment);
  MonitorCapture::clear();
  EXPECT_EQ(point.deriv(0).lengthSqrd(), 0.0);
  EXPECT_EQ(countAssertions(MonitorCapture::drain(), "(order<1)"), 1);

  MonitorCapture::clear();
  point.setParameter(0.5).transformBy(KrGeMatrix3d::translation(KrGeVector3d(1, 0, 0)));
  EXPECT_EQ(countAssertions(MonitorCapture::drain(), "(((HRESULT)0x80004001L))"), 1);
  EXPECT_EQ(point.point().x, 0.5);  // unchanged

  KrGePointEnt3d position;
  MonitorCapture::clear();
  static_cast<KrGePointEnt3d&>(point) = position;  // across types: unchanged, reported
  EXPECT_EQ(countAssertions(MonitorCapture::drain(), "(type() != entImpl.type())"), 1);
  EXPECT_EQ(point.curve(), &segment);
}

TEST(KrGePointOnCurve3d, Curve_GetClosestPointToFillsThePointOnCurve) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(0, 8, 0));
  KrGePointOnCurve3d onCurve;
  segment.getClosestPointTo(KrGePoint3d(5, 2, 0), onCurve);
  EXPECT_EQ(onCurve.curve(), &segment);
  EXPECT_DOUBLE_EQ(onCurve.parameter(), 0.25);
  EXPECT_DOUBLE_EQ(onCurve.point().y, 2.0);
}
