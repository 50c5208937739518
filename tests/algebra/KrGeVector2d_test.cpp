#include "KrGeLine2d.h"
#include "KrGeMatrix2d.h"
#include "KrGePoint2d.h"
#include "KrGeVector2d.h"

#include "testkit/MonitorCapture.h"

#include <gtest/gtest.h>

#include "tests/algebra/AlgebraRandom.h"

#include <cmath>
#include <limits>

using testkit::MonitorCapture;

using namespace algebra_test;

// The rules that differ from 3D: normalisation fails up to a fixed 1e-20 (3D only at exact 0),
// zero length takes the root.
TEST(KrGeVector2d, NormalizeFailsAtTheFixedFloorAndZeroLengthTakesTheRoot) {
  const struct { double x; bool fails; } rows[] = {{1e-21, true}, {1e-20, true}, {2e-20, false}, {0, true}, {kNaN, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.x);
    KrGeVector2d v(row.x, 0);
    KrGe::ErrorCondition status = KrGe::kOk;
    v.normalize(KrGeTol(), status);
    EXPECT_EQ(status, row.fails ? KrGe::k0This : KrGe::kOk);
    if (!std::isnan(row.x)) { EXPECT_EQ(v.x, row.fails ? row.x : 1.0); }  // unchanged on failure
  }
  EXPECT_TRUE(KrGeVector2d(1e-10, 0).isZeroLength());
  EXPECT_FALSE(KrGeVector2d(2e-10, 0).isZeroLength());
  EXPECT_FALSE(KrGeVector2d(kNaN, 0).isZeroLength());
  EXPECT_TRUE(KrGeVector2d(0, -1.00000000005).isUnitLength());
  EXPECT_FALSE(KrGeVector2d(0, -1.0000000002).isUnitLength());
  EXPECT_EQ(KrGeVector2d(3e-200, -4e-200).length(), 5e-200);
}

TEST(KrGeVector2d, PerpendicularTwoArgumentFormUsesTheRawDot) {
  const KrGeVector2d a(2, 0), b(1e-10, 5);
  EXPECT_FALSE(a.isPerpendicularTo(b));  // raw dot 2e-10
  EXPECT_TRUE(a.isPerpendicularTo(KrGeVector2d(0.5e-10, 7)));
  KrGe::ErrorCondition status = KrGe::k0Arg2;
  EXPECT_TRUE(a.isPerpendicularTo(b, KrGeContext::gTol, status));  // normalised copies
  EXPECT_EQ(status, KrGe::kOk);
  EXPECT_TRUE(a.isPerpendicularTo(KrGeVector2d(), KrGeContext::gTol, status));
  EXPECT_EQ(status, KrGe::k0Arg1);
  EXPECT_TRUE(KrGeVector2d(1e-21, 0).isPerpendicularTo(a, KrGeContext::gTol, status));
  EXPECT_EQ(status, KrGe::k0This);
}

TEST(KrGeVector2d, ParallelTreatsShortVectorsAsZero) {
  const struct { const char* name; KrGeVector2d a, b; bool parallel, codirectional; KrGe::ErrorCondition status; } rows[] = {
      {"short this", {1e-10, 0}, {0, 1}, true, true, KrGe::k0This},
      {"short argument", {0, 1}, {1e-10, 0}, true, true, KrGe::k0Arg1},
      {"just above tolerance", {2e-10, 0}, {0, 1}, false, false, KrGe::kOk},
      {"opposite", {1, 0}, {-3, 0}, true, false, KrGe::kOk},
      {"off by 0.9e-10 rad", {1, 0}, {1, 0.9e-10}, true, true, KrGe::kOk},
      {"off by 2e-10 rad", {1, 0}, {1, 2e-10}, false, false, KrGe::kOk},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    KrGe::ErrorCondition status = KrGe::kSingularPoint;
    EXPECT_EQ(row.a.isParallelTo(row.b, KrGeContext::gTol, status), row.parallel);
    EXPECT_EQ(status, row.status);
    status = KrGe::kSingularPoint;
    EXPECT_EQ(row.a.isCodirectionalTo(row.b, KrGeContext::gTol, status), row.codirectional);
    EXPECT_EQ(status, row.status);
  }
}

TEST(KrGeVector2d, AnglesAreExactOnTheAxesAndUnsignedBetweenVectors) {
  const struct { KrGeVector2d v; double angle; } exact[] = {
      {{5, 0}, 0.0}, {{0, 2}, kPi / 2}, {{-1, 0}, kPi}, {{0, -3}, 3 * kPi / 2}, {{0, 0}, 0.0}, {{1, 1}, kPi / 4}};
  for (const auto& row : exact) EXPECT_EQ(row.v.angle(), row.angle) << row.v.x << " " << row.v.y;
  const double nearFullTurn = KrGeVector2d(1, -1e-300).angle();  // lifted, yet below 2 pi
  EXPECT_LT(nearFullTurn, 2 * kPi);
  EXPECT_GT(nearFullTurn, 6.28);
  EXPECT_TRUE(std::isnan(KrGeVector2d(kNaN, 0).angle()));
  EXPECT_EQ(KrGeVector2d(3, 4).angleTo(KrGeVector2d(6, 8)), 0.0);
  EXPECT_EQ(KrGeVector2d(1, 0).angleTo(KrGeVector2d(-2, 0)), kPi);
  EXPECT_DOUBLE_EQ(KrGeVector2d(0, -1).angleTo(KrGeVector2d(1, 0)), kPi / 2);
}

TEST(KrGeVector2d, MirrorScalesBySquaredDirectionLength) {
  KrGeVector2d v(1, 2);
  EXPECT_TRUE(v.mirror(KrGeVector2d(2, 0)).isEqualTo(KrGeVector2d(4, -8)));
  v.set(3, 1);
  EXPECT_TRUE(v.mirror(KrGeVector2d(1, 1) / std::sqrt(2.0)).isEqualTo(KrGeVector2d(1, 3), KrGeTol()));
  EXPECT_TRUE(KrGeVector2d(1, 2).perpVector().isEqualTo(KrGeVector2d(-2, 1)));
}

TEST(KrGePoint2d, RotateScaleAndEquality) {
  KrGePoint2d p(2, 1);
  EXPECT_TRUE(p.rotateBy(kPi / 2, KrGePoint2d(1, 1)).isEqualTo(KrGePoint2d(1, 2)));
  EXPECT_TRUE(p.scaleBy(3, KrGePoint2d(1, 1)).isEqualTo(KrGePoint2d(1, 4)));
  EXPECT_TRUE(p == KrGePoint2d(1, 4 + 0.5e-10));
  EXPECT_TRUE(p != KrGePoint2d(1, 4 + 2e-10));
  for (double angle : {0.3, -2.0, 5.0}) {
    KrGePoint2d direct(3, -1), byMatrix(3, -1);
    direct.rotateBy(angle, KrGePoint2d(-2, 4));
    byMatrix.transformBy(KrGeMatrix2d::rotation(angle, KrGePoint2d(-2, 4)));
    EXPECT_LE(direct.distanceTo(byMatrix), 1e-14);
  }
}

TEST(KrGePoint2d, MirrorInALineIsNotImplementedAndReportsOnce) {
  ASSERT_TRUE(MonitorCapture::active());
  MonitorCapture::clear();
  KrGePoint2d p(3, 4);
  p.mirror(KrGeLine2d(KrGePoint2d(0, 0), KrGeVector2d(1, 0)));
  EXPECT_TRUE(p.x == 3.0 && p.y == 4.0);
  auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].message, testkit::assertionText("(((HRESULT)0x80004001L))", "Matrix2d", 358));
  EXPECT_EQ(records[0].source, "Matrix2d");
  EXPECT_EQ(records[1].message, "AUTOTEST not passed for \"KrGeMatrix2d KrGeMatrix2d::mirroring(const KrGeLine2d& line)\"");
  EXPECT_EQ(records[1].source, "Matrix2d");
  EXPECT_EQ(records[1].line, 359u);
  EXPECT_TRUE(KrGeMatrix2d::mirroring(KrGeLine2d()).isEqualTo(KrGeMatrix2d::kIdentity, KrGeTol()));
  EXPECT_TRUE(MonitorCapture::drain().empty());  // both sites report once per process
}
