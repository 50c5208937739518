// 3D vectors and points: lengths at the ends of the double range, the tolerance tests on both
// sides of their bounds, angles against an independent atan2 form, and the repairs of rotateTo.
#include "testkit/TestKit.h"

using namespace testkit;

namespace {

// The angle between two vectors by the well-conditioned atan2 form, in long double.
double referenceAngle(const KrGeVector3d& a, const KrGeVector3d& b) {
  const long double cx = (long double)a.y * b.z - (long double)a.z * b.y;
  const long double cy = (long double)a.z * b.x - (long double)a.x * b.z;
  const long double cz = (long double)a.x * b.y - (long double)a.y * b.x;
  const long double dot = (long double)a.x * b.x + (long double)a.y * b.y + (long double)a.z * b.z;
  return (double)std::atan2(std::sqrt(cx * cx + cy * cy + cz * cz), dot);
}

}  // namespace

// Inside the ordinary range the length is the plain formula to the bit; outside it, accurate.
TEST(KrGeVector3d, LengthNeitherUnderflowsNorOverflows) {
  const struct { KrGeVector3d v; double length; } rows[] = {
      {{1e-300, 0, 0}, 1e-300}, {{0, 0, -4.9e-324}, 4.9e-324}, {{1e308, 1e308, 1e308}, 1.7320508075688772e308},
      {{kInf, 1, 0}, kInf}, {{1.5e308, 1.5e308, 1.5e308}, kInf}};
  for (const auto& row : rows) EXPECT_DOUBLE_EQ(row.v.length(), row.length) << row.v.x << " " << row.v.z;
  EXPECT_TRUE(std::isnan(KrGeVector3d(kInf, kNaN, 0).length()));
  repeat(7, 3000, [](Random& random, int) {
    const KrGeVector3d v(random.logUniform(-320, 307), random.logUniform(-320, 307), random.logUniform(-320, 307));
    const double sum = v.x * v.x + v.y * v.y + v.z * v.z;
    const long double exact = std::sqrt((long double)v.x * v.x + (long double)v.y * v.y + (long double)v.z * v.z);
    if (sum >= 2.2250738585072014e-308 && std::isfinite(sum))
      ASSERT_EQ(v.length(), std::sqrt(sum));
    else
      ASSERT_NEAR(v.length() / (double)exact, 1.0, 4e-16);
  });
  KrGe::ErrorCondition status = KrGe::k0Arg1;
  KrGeVector3d tiny(1e-300, 0, 0), zero;
  EXPECT_EQ(tiny.normalize(KrGeTol(), status).x, 1.0);  // only an exact zero cannot be normalised
  EXPECT_EQ(status, KrGe::kOk);
  zero.normalize(tolerance(0.5), status);
  EXPECT_EQ(status, KrGe::k0This);
}

// Each row: a test at its bound or just inside (within) and at twice the bound (outside).
TEST(KrGeVector3d, ToleranceTestsCountTheBoundAsWithin) {
  const double bound = std::ldexp(1.0, -30);  // exact in binary: 1 + bound is representable
  const KrGeTol tol = tolerance(1e-10), binary = tolerance(bound), wide = tolerance(1e-6);
  const KrGeVector3d x(1, 0, 0), unit(0, 1, 0);
  const struct { const char* name; bool in, out; } rows[] = {
      {"zero length", KrGeVector3d(1e-10, 0, 0).isZeroLength(tol), KrGeVector3d(2e-10, 0, 0).isZeroLength(tol)},
      {"unit length", KrGeVector3d(1 + bound, 0, 0).isUnitLength(binary), KrGeVector3d(1 + 2 * bound, 0, 0).isUnitLength(binary)},
      {"unit length below", KrGeVector3d(1 - bound, 0, 0).isUnitLength(binary), KrGeVector3d(1 - 2 * bound, 0, 0).isUnitLength(binary)},
      {"equal", x.isEqualTo(KrGeVector3d(1, 0, bound), binary), x.isEqualTo(KrGeVector3d(1, 0, 2 * bound), binary)},
      {"parallel", x.isParallelTo(KrGeVector3d(-5, 5 * std::tan(0.9e-6), 0), wide), x.isParallelTo(KrGeVector3d(-5, 5 * std::tan(2e-6), 0), wide)},
      {"codirectional", x.isCodirectionalTo(KrGeVector3d(5, 5 * std::tan(0.9e-6), 0), wide), x.isCodirectionalTo(KrGeVector3d(-5, 0, 0), wide)},
      {"perpendicular", x.isPerpendicularTo(KrGeVector3d(0.9e-6 * 7, 7, 0), wide), x.isPerpendicularTo(KrGeVector3d(2e-6 * 7, 7, 0), wide)},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(row.in) << row.name;
    EXPECT_FALSE(row.out) << row.name;
  }
  EXPECT_FALSE(KrGeVector3d(kNaN, 0, 0).isZeroLength(tol));
  EXPECT_FALSE(x.isPerpendicularTo(KrGeVector3d(kNaN, 1, 0), wide));
  // A zero vector has every direction (true, with the status naming it); 1e-300 has its own.
  using DirectionTest = bool (KrGeVector3d::*)(const KrGeVector3d&, const KrGeTol&, KrGe::ErrorCondition&) const;
  for (DirectionTest test : {DirectionTest(&KrGeVector3d::isPerpendicularTo), DirectionTest(&KrGeVector3d::isParallelTo), DirectionTest(&KrGeVector3d::isCodirectionalTo)}) {
    KrGe::ErrorCondition status = KrGe::kOk;
    EXPECT_TRUE((KrGeVector3d().*test)(x, KrGeContext::gTol, status));
    EXPECT_EQ(status, KrGe::k0This);
    EXPECT_TRUE((x.*test)(KrGeVector3d(), KrGeContext::gTol, status));
    EXPECT_EQ(status, KrGe::k0Arg1);
    (KrGeVector3d(1e-300, 0, 0).*test)(unit, KrGeContext::gTol, status);
    EXPECT_EQ(status, KrGe::kOk);
  }
}

TEST(KrGeVector3d, AnglesAgreeWithTheAtan2Form) {
  const KrGeVector3d x(1, 0, 0), y(0, 1, 0);
  EXPECT_EQ(x.angleTo(KrGeVector3d()), 0.0);
  EXPECT_DOUBLE_EQ(KrGeVector3d(1e-300, 0, 0).angleTo(KrGeVector3d(0, 1e-300, 0)), kPi / 2);
  EXPECT_EQ(x.angleTo(KrGeVector3d(-3, 0, 0)), kPi);
  // The reference's threshold is absolute: a tiny negative reference leaves the angle unsigned.
  EXPECT_DOUBLE_EQ(x.angleTo(y, KrGeVector3d(0, 0, -0.9e-10)), 0.5 * kPi);
  EXPECT_DOUBLE_EQ(x.angleTo(y, KrGeVector3d(0, 0, -2e-10)), 1.5 * kPi);
  repeat(99, 1000, [](Random& random, int i) {
    const KrGeVector3d a = random.vector(-5, 5);
    const KrGeVector3d b = i % 3 ? random.vector(-5, 5) : a * random.logUniform(-3, 3) + random.unitVector() * (a.length() * 1e-7);
    ASSERT_NEAR(a.angleTo(b), referenceAngle(a, b), 2e-15);  // acos near +-1 would be off by 1e-8
    const double signedAngle = a.angleTo(b, a.crossProduct(b) * -1.0);
    ASSERT_GE(signedAngle, 0.0);
    ASSERT_LT(signedAngle, 2 * kPi);
  });
  const struct { KrGeVector3d v; unsigned index; } largest[] = {{{2, -2, 1}, 0}, {{1, 3, -3}, 1}, {{0, 0, -1}, 2}, {{0, 0, 0}, 0}};
  for (const auto& row : largest) EXPECT_EQ(row.v.largestElement(), row.index) << row.v.y;
}

TEST(KrGeVector3d, ProjectMirrorAndPerpendicularRoundTrip) {
  KrGe::ErrorCondition status = KrGe::kOk;
  EXPECT_TRUE(KrGeVector3d(1, 2, 3).orthoProject(KrGeVector3d(), KrGeContext::gTol, status).isEqualTo(KrGeVector3d(1, 2, 3)));
  EXPECT_EQ(status, KrGe::k0This);  // deliberately 1 although the argument is the zero one
  repeat(5, 500, [](Random& random, int) {
    const KrGeVector3d a = random.vector(-3, 3), n = random.vector(-3, 3);
    KrGeVector3d twice = a;
    EXPECT_TRUE(within(twice.mirror(n).mirror(n), a, 1e-14 * a.length()));
    ASSERT_NEAR(a.orthoProject(n).dotProduct(n.normal()), 0.0, 1e-14 * a.length());
    ASSERT_NEAR(a.perpVector().dotProduct(a.normal()), 0.0, 1e-15);
    ASSERT_NEAR(a.perpVector().length(), 1.0, 1e-15);
  });
  const auto saved = KrGeContext::gOrthoVector;
  KrGeContext::gOrthoVector = [](const KrGeVector3d& in, KrGeVector3d& out) { out.set(in.z, 7, 0); };
  const KrGeVector3d perp = KrGeVector3d(1, 2, 3).perpVector();
  KrGeContext::gOrthoVector = saved;
  EXPECT_EQ(perp.y, 7.0);  // through the context's callback
}

TEST(KrGeVector3d, RotateToTurnsOntoTheTargetOrWarns) {
  repeat(31, 1000, [](Random& random, int i) {
    const KrGeVector3d v = random.vector(-4, 4);
    const KrGeVector3d target = i % 4 == 1 ? v * -2.5 : i % 4 == 2 ? v * 3.0 : random.vector(-4, 4);
    const KrGeVector3d turned = v.rotateTo(target) * v;
    ASSERT_NEAR(turned.length(), v.length(), 1e-14 * v.length());
    ASSERT_LE((turned.normal() - target.normal()).length(), 1e-13);
  });
  const struct { KrGeVector3d from, to, axis; unsigned line; } bad[] = {
      {{1, 0, 0}, {0, 1, 0}, {0, 1, 1}, 256},  // target not perpendicular to the axis
      {{1, 0, 0}, {0, 0, 0}, {0, 0, 1}, 262},  // a zero target passes the axis check
      {{1e-11, 0, 0}, {0, 1, 0}, {0, 0, 0}, 262}};
  for (const auto& row : bad) {
    const auto records = recordsOf([&] { EXPECT_EQ(row.from.rotateTo(row.to, row.axis).det(), 1.0); });
    ASSERT_EQ(records.size(), 1u) << row.line;
    EXPECT_EQ(records[0].message, warningText("not correct input data"));
    EXPECT_EQ(records[0].source, "Vector3d");
    EXPECT_EQ(records[0].line, row.line);
  }
  // Only the target is checked against the axis: this vector may lean on it.
  EXPECT_TRUE(recordsOf([] { KrGeVector3d(0, 3, 4).rotateTo(KrGeVector3d(1, 0, 0), KrGeVector3d(0, 0, 1)); }).empty());
}

TEST(KrGePoint3d, EqualityIsADistanceTestAndTransformsHandOverToMatrices) {
  const KrGeTol tol = tolerance(1e-6, 0.0);  // points never look at equalVector
  const KrGePoint3d p(10, 20, 30);
  EXPECT_TRUE(p.isEqualTo(KrGePoint3d(10, 20, 30 + 0.9e-6), tol));
  EXPECT_FALSE(p.isEqualTo(KrGePoint3d(10, 20 + 0.8e-6, 30 + 0.8e-6), tol));  // each coordinate within
  KrGePoint3d q(2, 0, 0);
  EXPECT_TRUE(within(q.rotateBy(kPi / 2, KrGeVector3d(0, 0, 1), KrGePoint3d(1, 0, 0)), KrGePoint3d(1, 1, 0), 1e-15));
  EXPECT_TRUE(within(q.scaleBy(3, KrGePoint3d(1, 0, 0)), KrGePoint3d(1, 3, 0), 1e-15));
  EXPECT_TRUE(within(q.mirror(KrGePlane(KrGePoint3d(0, 0, 2), KrGeVector3d(0, 0, 1))), KrGePoint3d(1, 3, 4), 1e-15));
  EXPECT_EQ(q[7], q.z);  // an index above 2 stands for z
}
