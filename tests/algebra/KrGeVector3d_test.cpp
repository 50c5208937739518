#include "KrGeMatrix3d.h"
#include "KrGeVector3d.h"

#include "testkit/MonitorCapture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>

#include "tests/algebra/AlgebraRandom.h"

using testkit::MonitorCapture;

using namespace algebra_test;

TEST(KrGeVector3d, LengthNeitherUnderflowsNorOverflows) {
  const struct { KrGeVector3d v; double length; } rows[] = {
      {{1e-300, 0, 0}, 1e-300}, {{0, 0, -4.9e-324}, 4.9e-324}, {{1e308, 1e308, 1e308}, 1.7320508075688772e308},
      {{kInf, 1, 0}, kInf}, {{1.5e308, 1.5e308, 1.5e308}, kInf}};  // the last: the true length is not representable
  for (const auto& row : rows) EXPECT_DOUBLE_EQ(row.v.length(), row.length) << row.v.x << " " << row.v.z;
  EXPECT_TRUE(std::isnan(KrGeVector3d(kInf, kNaN, 0).length()));

  // Inside the ordinary range the result is the plain formula to the bit; outside it, accurate.
  algebra_test::Random random(7);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 3000; ++i) {
    const KrGeVector3d v(random.logUniform(-320, 307), random.logUniform(-320, 307), random.logUniform(-320, 307));
    const double sum = v.x * v.x + v.y * v.y + v.z * v.z;
    const long double exact = std::sqrt((long double)v.x * v.x + (long double)v.y * v.y + (long double)v.z * v.z);
    if (sum >= 2.2250738585072014e-308 && std::isfinite(sum))
      ASSERT_EQ(v.length(), std::sqrt(sum));
    else
      ASSERT_NEAR(v.length() / (double)exact, 1.0, 4e-16);
  }
}

TEST(KrGeVector3d, NormalizeFailsOnlyAtExactZero) {
  KrGe::ErrorCondition status = KrGe::k0Arg1;
  KrGeVector3d tiny(1e-300, 0, 0);
  tiny.normalize(KrGeTol(), status);
  EXPECT_EQ(status, KrGe::kOk);
  EXPECT_EQ(tiny.x, 1.0);
  KrGeVector3d subnormal(0, -1e-310, 1e-310);
  EXPECT_NEAR(subnormal.normalize().length(), 1.0, 1e-15);
  KrGeVector3d zero;
  zero.normalize(tolerance(0.5), status);
  EXPECT_EQ(status, KrGe::k0This);
  EXPECT_EQ(zero.lengthSqrd(), 0.0);
}

TEST(KrGeVector3d, ToleranceTestsCountTheBoundaryAsWithin) {
  const KrGeTol tol = tolerance(1e-10);
  EXPECT_TRUE(KrGeVector3d(1e-10, 0, 0).isZeroLength(tol));
  EXPECT_FALSE(KrGeVector3d(2e-10, 0, 0).isZeroLength(tol));
  EXPECT_FALSE(KrGeVector3d(kNaN, 0, 0).isZeroLength(tol));
  EXPECT_TRUE(KrGeVector3d(1.00000000005, 0, 0).isUnitLength(tol));
  EXPECT_FALSE(KrGeVector3d(1.0000000002, 0, 0).isUnitLength(tol));
  EXPECT_TRUE(KrGeVector3d(1, 2, 3).isEqualTo(KrGeVector3d(1, 2, 3 + 0.9e-10), tol));
  EXPECT_FALSE(KrGeVector3d(1, 2, 3).isEqualTo(KrGeVector3d(1, 2, 3 + 2e-10), tol));
  EXPECT_FALSE(KrGeVector3d(kNaN, 2, 3).isEqualTo(KrGeVector3d(kNaN, 2, 3), tol));
  // Direction tests: chord for parallel (0.9e-6 rad in, 2e-6 out, either sense), cosine for
  // perpendicular.
  const KrGeTol wide = tolerance(1e-6);
  const KrGeVector3d x(1, 0, 0);
  for (double sense : {1.0, -1.0}) {
    SCOPED_TRACE(sense);
    EXPECT_TRUE(x.isParallelTo(KrGeVector3d(sense * 5, 5 * std::tan(0.9e-6), 0), wide));
    EXPECT_FALSE(x.isParallelTo(KrGeVector3d(sense * 5, 5 * std::tan(2e-6), 0), wide));
    EXPECT_EQ(x.isCodirectionalTo(KrGeVector3d(sense * 5, 5 * std::tan(0.9e-6), 0), wide), sense > 0);
  }
  EXPECT_TRUE(x.isPerpendicularTo(KrGeVector3d(0.9e-6 * 7, 7, 0), wide));
  EXPECT_FALSE(x.isPerpendicularTo(KrGeVector3d(2e-6 * 7, 7, 0), wide));
  EXPECT_FALSE(x.isPerpendicularTo(KrGeVector3d(kNaN, 1, 0), wide));
}

TEST(KrGeVector3d, DirectionTestsAnswerTrueOnExactZeroWithStatus) {
  const KrGeVector3d zero, x(1, 0, 0), tinyX(1e-300, 0, 0), y(0, 1, 0);
  using DirectionTest = bool (KrGeVector3d::*)(const KrGeVector3d&, const KrGeTol&, KrGe::ErrorCondition&) const;
  const DirectionTest tests[] = {&KrGeVector3d::isPerpendicularTo, &KrGeVector3d::isParallelTo,
                                 &KrGeVector3d::isCodirectionalTo};
  for (const DirectionTest test : tests) {
    KrGe::ErrorCondition status = KrGe::kOk;
    EXPECT_TRUE((zero.*test)(x, KrGeContext::gTol, status));
    EXPECT_EQ(status, KrGe::k0This);
    EXPECT_TRUE((x.*test)(zero, KrGeContext::gTol, status));
    EXPECT_EQ(status, KrGe::k0Arg1);
    status = KrGe::k0Arg2;  // a 1e-300 vector has a direction
    (tinyX.*test)(y, KrGeContext::gTol, status);
    EXPECT_EQ(status, KrGe::kOk);
  }
  EXPECT_FALSE(tinyX.isParallelTo(y));  // parallel looks at exact zero components, not length
  EXPECT_TRUE(tinyX.isPerpendicularTo(y));
}

TEST(KrGeVector3d, AngleToIsAccurateEverywhere) {
  const KrGeVector3d x(1, 0, 0), y(0, 1, 0);
  EXPECT_EQ(x.angleTo(KrGeVector3d()), 0.0);
  EXPECT_EQ(KrGeVector3d().angleTo(x), 0.0);
  EXPECT_DOUBLE_EQ(KrGeVector3d(1e300, 0, 0).angleTo(KrGeVector3d(1e300, 1e300, 0)), kPi / 4);
  EXPECT_DOUBLE_EQ(KrGeVector3d(1e-300, 0, 0).angleTo(KrGeVector3d(0, 1e-300, 0)), kPi / 2);
  // With a reference: its threshold is absolute, so a tiny negative reference stays unsigned.
  EXPECT_DOUBLE_EQ(x.angleTo(y, KrGeVector3d(0, 0, 1)), 0.5 * kPi);
  EXPECT_DOUBLE_EQ(x.angleTo(y, KrGeVector3d(0, 0, -0.9e-10)), 0.5 * kPi);
  EXPECT_DOUBLE_EQ(x.angleTo(y, KrGeVector3d(0, 0, -2e-10)), 1.5 * kPi);

  algebra_test::Random random(99);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 1000; ++i) {
    const KrGeVector3d a = random.vector(-5, 5);
    KrGeVector3d b = random.vector(-5, 5);
    if (i % 3 == 0) b = a * random.logUniform(-3, 3) + random.unitVector() * (a.length() * 1e-7);
    // acos near +-1 would be off by ~1e-8 here; the sine branch keeps the error at rounding.
    ASSERT_NEAR(a.angleTo(b), algebra_test::referenceAngle(a, b), 2e-15);
    const double signedAngle = a.angleTo(b, a.crossProduct(b) * -1.0);
    ASSERT_GE(signedAngle, 0.0);
    ASSERT_LT(signedAngle, 2 * kPi);
  }
}

TEST(KrGeVector3d, LargestElementTiesGoToTheLowerIndex) {
  const struct { KrGeVector3d v; unsigned index; } rows[] = {
      {{2, -2, 1}, 0}, {{1, 3, -3}, 1}, {{0, 0, -1}, 2}, {{0, 0, 0}, 0}};
  for (const auto& row : rows) EXPECT_EQ(row.v.largestElement(), row.index) << row.v.x << " " << row.v.y << " " << row.v.z;
}

TEST(KrGeVector3d, OrthoProjectAndMirror) {
  const KrGeVector3d v(1, 2, 3);
  EXPECT_TRUE(v.orthoProject(KrGeVector3d(0, 0, 5)).isEqualTo(KrGeVector3d(1, 2, 0)));
  KrGe::ErrorCondition status = KrGe::kOk;
  EXPECT_TRUE(v.orthoProject(KrGeVector3d(), KrGeContext::gTol, status).isEqualTo(v));
  EXPECT_EQ(status, KrGe::k0This);  // deliberately 1 although the argument is the zero one
  KrGeVector3d mirrored = v;
  EXPECT_TRUE(mirrored.mirror(KrGeVector3d(0, 0, -2)).isEqualTo(KrGeVector3d(1, 2, -3)));
  algebra_test::Random random(5);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 500; ++i) {
    const KrGeVector3d a = random.vector(-3, 3), n = random.vector(-3, 3);
    KrGeVector3d twice = a;
    twice.mirror(n).mirror(n);
    ASSERT_LE((twice - a).length(), 1e-14 * a.length());
    ASSERT_NEAR(a.orthoProject(n).dotProduct(n.normal()), 0.0, 1e-14 * a.length());
  }
}

TEST(KrGeVector3d, PerpVectorGoesThroughTheContextCallback) {
  const auto saved = KrGeContext::gOrthoVector;
  KrGeContext::gOrthoVector = [](const KrGeVector3d& in, KrGeVector3d& out) { out.set(in.z, 7, 0); };
  const KrGeVector3d perp = KrGeVector3d(1, 2, 3).perpVector();
  KrGeContext::gOrthoVector = saved;
  EXPECT_TRUE(perp.isEqualTo(KrGeVector3d(3, 7, 0)));
}

TEST(KrGeVector3d, RotateToTurnsOntoTheTargetDirection) {
  algebra_test::Random random(31);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 1000; ++i) {
    const KrGeVector3d v = random.vector(-4, 4);
    KrGeVector3d target = random.vector(-4, 4);
    if (i % 4 == 1) target = v * -2.5;  // antiparallel: turned about the target's perpVector
    if (i % 4 == 2) target = v * 3.0;
    const KrGeVector3d turned = v.rotateTo(target) * v;
    ASSERT_NEAR(turned.length(), v.length(), 1e-14 * v.length());
    ASSERT_LE((turned.normal() - target.normal()).length(), 1e-13) << i;
  }
  for (double sense : {1.0, -1.0}) {
    const KrGeMatrix3d r = KrGeVector3d(1, 0, 0).rotateTo(KrGeVector3d(0, 3, 0), KrGeVector3d(0, 0, sense));
    EXPECT_TRUE((r * KrGeVector3d(1, 0, 0)).isEqualTo(KrGeVector3d(0, 1, 0), tolerance(1e-15)));
  }
}

TEST(KrGeVector3d, RotateToWarnsAndReturnsIdentityOnBadInput) {
  ASSERT_TRUE(MonitorCapture::active());
  const struct { KrGeVector3d from, to, axis; unsigned line; } rows[] = {
      {{1, 0, 0}, {0, 1, 0}, {0, 1, 1}, 256},  // target not perpendicular to the axis
      {{1, 0, 0}, {0, 0, 0}, {0, 0, 1}, 262},  // a zero target passes the axis check
      {{1e-11, 0, 0}, {0, 1, 0}, {0, 0, 0}, 262},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.line);
    MonitorCapture::clear();
    EXPECT_TRUE(row.from.rotateTo(row.to, row.axis).isEqualTo(KrGeMatrix3d::kIdentity, tolerance(0.0)));
    const auto records = MonitorCapture::drain();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].message, "WARNING 'not correct input data'");
    EXPECT_EQ(records[0].source, "Vector3d");
    EXPECT_EQ(records[0].line, row.line);
  }
  MonitorCapture::clear();
  // Only the target is checked against the axis: this vector may lean on it.
  KrGeVector3d(0, 3, 4).rotateTo(KrGeVector3d(1, 0, 0), KrGeVector3d(0, 0, 1));
  EXPECT_TRUE(MonitorCapture::drain().empty());
}

// The class-level allocation operators (points inherit the same ones).
TEST(KrGeVector3d, ClassAllocationFormsUseTheHeapAndPlacement) {
  delete new KrGeVector3d(1, 2, 3);
  delete[] new KrGeVector3d[4];
  alignas(KrGeVector3d) unsigned char storage[sizeof(KrGeVector3d)];
  EXPECT_EQ(static_cast<void*>(new (storage) KrGeVector3d(4, 5, 6)), static_cast<void*>(storage));
  KrGeVector3d* debug = new (__FILE__, __LINE__) KrGeVector3d(7, 8, 9);
  EXPECT_EQ(debug->z, 9.0);
  KrGeVector3d::operator delete(debug, __FILE__, __LINE__);
}

TEST(KrGeVector3d, NonFiniteInputNeverCrashesAndPropagates) {
  const KrGeVector3d x(1, 0, 0);
  for (const KrGeVector3d& s : {KrGeVector3d(kNaN, 0, 0), KrGeVector3d(-kInf, kInf, 1), KrGeVector3d(1e308, -1e308, 1e308)}) {
    SCOPED_TRACE(testing::Message() << s.x << " " << s.y << " " << s.z);
    KrGeVector3d r = x;
    r.rotateBy(1.0, s).mirror(s);
    (void)(s.rotateTo(x) * x.rotateTo(s));
    (void)s.perpVector();
    EXPECT_FALSE(s.isZeroLength());
    EXPECT_EQ(std::isnan(s.angleTo(x, s)), !std::isfinite(s.x));
  }
}
