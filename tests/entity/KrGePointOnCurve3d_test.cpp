// Point entities: a plain position, and a point on a curve evaluated on demand.
#include "tests/entity/LinearTestKit.h"

using linear_test::countAssertions;
using testkit::MonitorCapture;

TEST(KrGePointEnt3d, Value_TransformCopyAndIsOnBothSidesOfTheTolerance) {
  KrGePointEnt3d point(KrGePoint3d(1, 2, 3)), other;
  std::unique_ptr<KrGeEntity3d> copy(point.copy());
  point.rotateBy(3.141592653589793 / 2, KrGeVector3d(0, 0, 1));
  EXPECT_TRUE(linear_test::within(point.point3d(), KrGePoint3d(-2, 1, 3), 1e-15) && *copy != point);
  EXPECT_TRUE(point.isOn(KrGePoint3d(-2, 1 + 1e-6, 3), linear_test::tolerance(1e-6)));
  EXPECT_FALSE(point.isOn(KrGePoint3d(-2, 1 + 2e-6, 3), linear_test::tolerance(1e-6)));
  other = point;
  other.set(KrGePoint3d(7, 7, 7));
  EXPECT_TRUE(other.point3d() == KrGePoint3d(7, 7, 7) && static_cast<KrGePoint3d>(point) == KrGePoint3d(-2, 1, 3));
}

// Moving the curve moves the point; each evaluation may switch the curve or the parameter;
// setting a position snaps the parameter to the curve's nearest point.
TEST(KrGePointOnCurve3d, Evaluate_PointAndDerivativesFollowTheCurve) {
  KrGeLineSeg3d segment(KrGePoint3d(1, 0, 0), KrGePoint3d(3, 4, 0));
  KrGePointOnCurve3d point(segment, 0.5);
  EXPECT_TRUE(point.point() == KrGePoint3d(2, 2, 0) && point.point3d() == KrGePoint3d(2, 2, 0));
  EXPECT_TRUE(point.deriv(1) == KrGeVector3d(2, 4, 0) && point.deriv(2).lengthSqrd() == 0.0);
  EXPECT_TRUE(point.point(1.0).y == 4.0 && point.parameter() == 1.0);
  segment.translateBy(KrGeVector3d(0, 0, 5));
  EXPECT_EQ(point.point().z, 5.0);
  const KrGeLine3d line(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 2, 0));
  EXPECT_TRUE(point.point(line, 3.0).y == 6.0 && point.curve() == &line);
  EXPECT_TRUE(point.deriv(1, 7.0).y == 2.0 && point.parameter() == 7.0);
  EXPECT_TRUE(point.deriv(1, segment, 0.0).x == 2.0 && point.curve() == &segment);
  KrGePointEnt3d& asPoint = point;
  asPoint.set(KrGePoint3d(4, 1, -3));
  EXPECT_DOUBLE_EQ(point.parameter(), 0.5);
  asPoint.set(KrGePoint3d(40, 3, -1));  // beyond the end: the end's parameter
  EXPECT_TRUE(point.parameter() == 1.0 && asPoint.point3d() == KrGePoint3d(3, 4, 5));
}

// Copies share the curve object; equality needs the same curve object and point.
TEST(KrGePointOnCurve3d, Value_CopiesShareTheCurveAndCompareByCurveAndPoint) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0)), twin(segment);
  KrGePointOnCurve3d point(segment, 0.25), assigned;
  std::unique_ptr<KrGeEntity3d> copy(point.copy());
  const auto& copied = static_cast<const KrGePointOnCurve3d&>(*copy);
  EXPECT_TRUE(copied.curve() == &segment && copied.parameter() == 0.25 && point == copied);
  EXPECT_FALSE(point == KrGePointOnCurve3d(twin, 0.25));
  assigned = point;
  assigned.setParameter(0.5);
  EXPECT_TRUE(point.parameter() == 0.25 && !(assigned == point));
  EXPECT_TRUE(point.isOn(KrGePoint3d(2.5, 0, 0)) && !point.isEqualTo(KrGePointEnt3d(KrGePoint3d(2.5, 0, 0))));
}

// No curve, a derivative order below 1, a transformation (not supported) and an assignment
// across types are each reported and change nothing.
TEST(KrGePointOnCurve3d, Diagnostics_NoCurveBadOrderTransformAndCrossTypeAssignment) {
  ASSERT_TRUE(MonitorCapture::active());
  KrGePointOnCurve3d point;
  EXPECT_TRUE(point.curve() == nullptr && point.parameter() == 0.0);
  MonitorCapture::clear();
  EXPECT_EQ(point.point().asVector().lengthSqrd(), 0.0);
  EXPECT_EQ(countAssertions(MonitorCapture::drain(), "(!m_pCurve)"), 1);
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1));
  point.setCurve(segment);
  MonitorCapture::clear();
  EXPECT_EQ(point.deriv(0).lengthSqrd(), 0.0);
  point.setParameter(0.5).transformBy(KrGeMatrix3d::translation(KrGeVector3d(1, 0, 0)));
  static_cast<KrGePointEnt3d&>(point) = KrGePointEnt3d();
  const auto records = MonitorCapture::drain();
  EXPECT_EQ(countAssertions(records, "(order<1)"), 1);
  EXPECT_EQ(countAssertions(records, "(((HRESULT)0x80004001L))"), 1);
  EXPECT_EQ(countAssertions(records, "(type() != entImpl.type())"), 1);
  EXPECT_TRUE(point.point().x == 0.5 && point.curve() == &segment);
}
