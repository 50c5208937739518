// 2D vectors and points: the rules that differ from 3D (a fixed normalisation floor, raw-dot
// perpendicularity, short vectors as zero), exact axis angles, and the one unimplemented mirror.
#include "testkit/TestKit.h"

using namespace testkit;

TEST(KrGeVector2d, NormalizeFailsAtTheFixedFloorAndZeroLengthTakesTheRoot) {
  const struct { double x; bool fails; } rows[] = {{1e-21, true}, {1e-20, true}, {2e-20, false}, {0, true}, {kNaN, true}};
  for (const auto& row : rows) {
    KrGeVector2d v(row.x, 0);
    KrGe::ErrorCondition status = KrGe::kOk;
    v.normalize(KrGeTol(), status);
    EXPECT_EQ(status, row.fails ? KrGe::k0This : KrGe::kOk) << row.x;
    if (!std::isnan(row.x)) {
      EXPECT_EQ(v.x, row.fails ? row.x : 1.0) << row.x;  // unchanged on failure
    }
  }
  EXPECT_TRUE(KrGeVector2d(1e-10, 0).isZeroLength());
  EXPECT_FALSE(KrGeVector2d(2e-10, 0).isZeroLength());
  EXPECT_TRUE(KrGeVector2d(0, -1.00000000005).isUnitLength());
  EXPECT_FALSE(KrGeVector2d(0, -1.0000000002).isUnitLength());
  EXPECT_EQ(KrGeVector2d(3e-200, -4e-200).length(), 5e-200);
}

TEST(KrGeVector2d, DirectionTestsOnShortAndNearlyAlignedVectors) {
  const KrGeVector2d a(2, 0), b(1e-10, 5);
  EXPECT_FALSE(a.isPerpendicularTo(b));  // the plain form takes the raw dot, 2e-10
  EXPECT_TRUE(a.isPerpendicularTo(KrGeVector2d(0.5e-10, 7)));
  KrGe::ErrorCondition status = KrGe::k0Arg2;
  EXPECT_TRUE(a.isPerpendicularTo(b, KrGeContext::gTol, status));  // the status form normalises
  EXPECT_EQ(status, KrGe::kOk);
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
    status = KrGe::kSingularPoint;
    EXPECT_EQ(row.a.isParallelTo(row.b, KrGeContext::gTol, status), row.parallel);
    EXPECT_EQ(status, row.status);
    EXPECT_EQ(row.a.isCodirectionalTo(row.b, KrGeContext::gTol, status), row.codirectional);
  }
}

TEST(KrGeVector2d, AnglesAreExactOnTheAxesAndMirrorScalesBySquaredLength) {
  const struct { KrGeVector2d v; double angle; } rows[] = {
      {{5, 0}, 0.0}, {{0, 2}, kPi / 2}, {{-1, 0}, kPi}, {{0, -3}, 3 * kPi / 2}, {{0, 0}, 0.0}, {{1, 1}, kPi / 4}};
  for (const auto& row : rows) EXPECT_EQ(row.v.angle(), row.angle) << row.v.x << " " << row.v.y;
  EXPECT_LT(KrGeVector2d(1, -1e-300).angle(), 2 * kPi);  // lifted, yet below a full turn
  EXPECT_EQ(KrGeVector2d(1, 0).angleTo(KrGeVector2d(-2, 0)), kPi);
  EXPECT_DOUBLE_EQ(KrGeVector2d(0, -1).angleTo(KrGeVector2d(1, 0)), kPi / 2);
  KrGeVector2d v(1, 2);
  EXPECT_TRUE(v.mirror(KrGeVector2d(2, 0)).isEqualTo(KrGeVector2d(4, -8)));
}

TEST(KrGePoint2d, RotationAgreesWithTheMatrixAndMirrorInALineIsNotImplemented) {
  for (double angle : {0.3, -2.0, 5.0}) {
    KrGePoint2d direct(3, -1), byMatrix(3, -1);
    direct.rotateBy(angle, KrGePoint2d(-2, 4));
    byMatrix.transformBy(KrGeMatrix2d::rotation(angle, KrGePoint2d(-2, 4)));
    EXPECT_LE(direct.distanceTo(byMatrix), 1e-14) << angle;
  }
  KrGePoint2d p(3, 4);
  const auto records = recordsOf([&] { p.mirror(KrGeLine2d(KrGePoint2d(0, 0), KrGeVector2d(1, 0))); });
  EXPECT_EQ(p.y, 4.0);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].message, assertionText("(((HRESULT)0x80004001L))", "Matrix2d", 358));
  EXPECT_EQ(records[1].message, noticeText("KrGeMatrix2d KrGeMatrix2d::mirroring(const KrGeLine2d& line)"));
  EXPECT_EQ(records[1].line, 359u);
  EXPECT_TRUE(recordsOf([] { KrGeMatrix2d::mirroring(KrGeLine2d()); }).empty());  // once per process
}
