// Point entities: a plain position, and a point on a curve evaluated on demand.
#include "tests/entity/EntityKit.h"

TEST(KrGePointEnt3d, TransformCopyAndIsOnBothSidesOfTheTolerance) {
  KrGePointEnt3d point(KrGePoint3d(1, 2, 3)), other;
  std::unique_ptr<KrGeEntity3d> copy(point.copy());
  point.rotateBy(kPi / 2, KrGeVector3d(0, 0, 1));
  EXPECT_TRUE(within(point.point3d(), KrGePoint3d(-2, 1, 3), 1e-15));
  EXPECT_TRUE(*copy != point);
  EXPECT_TRUE(point.isOn(KrGePoint3d(-2, 1 + 1e-6, 3), tolerance(1e-6)));
  EXPECT_FALSE(point.isOn(KrGePoint3d(-2, 1 + 2e-6, 3), tolerance(1e-6)));
  other = point;
  other.set(KrGePoint3d(7, 7, 7));
  EXPECT_EQ(static_cast<KrGePoint3d>(point), KrGePoint3d(-2, 1, 3));
}

// Moving the curve moves the point; each evaluation may switch the curve or the parameter;
// setting a position snaps the parameter to the curve's nearest point. Copies share the curve,
// and equality needs the same curve object.
TEST(KrGePointOnCurve3d, PointAndDerivativesFollowTheCurve) {
  KrGeLineSeg3d segment(KrGePoint3d(1, 0, 0), KrGePoint3d(3, 4, 0));
  const KrGeLineSeg3d twin(segment);
  KrGePointOnCurve3d point(segment, 0.5);
  EXPECT_EQ(point.point3d(), KrGePoint3d(2, 2, 0));
  EXPECT_EQ(point.deriv(1), KrGeVector3d(2, 4, 0));
  EXPECT_EQ(point.deriv(2).lengthSqrd(), 0.0);
  EXPECT_EQ(point.point(1.0).y, 4.0);
  segment.translateBy(KrGeVector3d(0, 0, 5));
  EXPECT_EQ(point.point().z, 5.0);
  std::unique_ptr<KrGeEntity3d> copy(point.copy());
  EXPECT_TRUE(point == *copy);
  EXPECT_FALSE(point == KrGePointOnCurve3d(twin, 1.0));
  const KrGeLine3d line(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 2, 0));
  EXPECT_EQ(point.point(line, 3.0).y, 6.0);
  EXPECT_EQ(point.deriv(1, 7.0).y, 2.0);
  EXPECT_EQ(point.parameter(), 7.0);
  EXPECT_EQ(point.deriv(1, segment, 0.0).x, 2.0);
  EXPECT_EQ(point.curve(), &segment);
  KrGePointEnt3d& asPoint = point;
  asPoint.set(KrGePoint3d(4, 1, -3));
  EXPECT_DOUBLE_EQ(point.parameter(), 0.5);
  asPoint.set(KrGePoint3d(40, 3, -1));  // beyond the end: the end's parameter
  EXPECT_EQ(point.parameter(), 1.0);
}

// No curve, a derivative order below 1, a transformation (not supported) and an assignment
// across types are each reported and change nothing.
TEST(KrGePointOnCurve3d, BadUseIsReportedAndChangesNothing) {
  KrGePointOnCurve3d point;
  auto records = recordsOf([&] { EXPECT_EQ(point.point().asVector().lengthSqrd(), 0.0); });
  EXPECT_EQ(countAssertions(records, "(!m_pCurve)"), 1);
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1));
  point.setCurve(segment).setParameter(0.5);
  records = recordsOf([&] {
    EXPECT_EQ(point.deriv(0).lengthSqrd(), 0.0);
    point.transformBy(KrGeMatrix3d::translation(KrGeVector3d(1, 0, 0)));
    static_cast<KrGePointEnt3d&>(point) = KrGePointEnt3d();
  });
  for (const char* expression : {"(order<1)", "(((HRESULT)0x80004001L))", "(type() != entImpl.type())"})
    EXPECT_EQ(countAssertions(records, expression), 1) << expression;
  EXPECT_EQ(point.point().x, 0.5);
}
