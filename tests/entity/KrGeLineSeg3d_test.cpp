// Segments: construction, interval rules, evaluation, sampling, pieces and the constructions
// that make new segments.
#include <gtest/gtest.h>

#include <cfloat>

#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGePlane.h"
#include "KrGePointEnt3d.h"
#include "tests/entity/LinearTestKit.h"

using testkit::MonitorCapture;

namespace {

const KrGePoint3d kP(1, 2, 3);
const KrGePoint3d kQ(4, -2, 15);

TEST(KrGeLineSeg3d, FromTwoPoints_RunsFromTheFirstToTheSecond) {
  const KrGeLineSeg3d segment(kP, kQ);
  EXPECT_EQ(segment.startPoint(), kP);
  EXPECT_EQ(segment.endPoint(), kQ);
  EXPECT_EQ(segment.midPoint(), KrGePoint3d(2.5, 0, 9));
  EXPECT_EQ(segment.length(), 13.0);
  EXPECT_EQ(segment.paramOf(kQ), 1.0);
  EXPECT_EQ(segment.pointOnLine(), kP);
  EXPECT_TRUE(segment.direction().isEqualTo(KrGeVector3d(3, -4, 12) / 13.0));
  EXPECT_EQ(segment.baryComb(0.5), segment.midPoint());
  KrGeInterval range;
  segment.getInterval(range);
  EXPECT_TRUE(range == KrGeInterval(0.0, 1.0));
  EXPECT_EQ(KrGeLineSeg3d(kP, KrGeVector3d(3, -4, 12)).endPoint(), kQ);
  const KrGeLineSeg3d unit;
  EXPECT_EQ(unit.startPoint(), KrGePoint3d(0, 0, 0));
  EXPECT_EQ(unit.endPoint(), KrGePoint3d(1, 0, 0));
}

TEST(KrGeLineSeg3d, ReverseParam_SwapsTheEndsAndKeepsTheInterval) {
  KrGeLineSeg3d segment(kP, kQ);
  segment.reverseParam();
  EXPECT_EQ(segment.startPoint(), kQ);
  EXPECT_EQ(segment.endPoint(), kP);
  segment.reverseParam();
  EXPECT_TRUE(segment.isEqualTo(KrGeLineSeg3d(kP, kQ)));

  KrGeLineSeg3d ranged(kP, kQ);
  ranged.setInterval(KrGeInterval(0.25, 3.0));
  const KrGePoint3d x = ranged.evalPoint(2.0);
  ranged.reverseParam();
  KrGeInterval range;
  ranged.getInterval(range);
  EXPECT_TRUE(range == KrGeInterval(0.25, 3.0));
  EXPECT_DOUBLE_EQ(ranged.paramOf(x), 1.0 - 2.0);
}

TEST(KrGeLineSeg3d, SetInterval_AcceptsOnlyBoundedOrderedRanges) {
  KrGeLineSeg3d segment(kP, kQ);
  EXPECT_FALSE(segment.setInterval(KrGeInterval(2.0, 1.0)));
  EXPECT_FALSE(segment.setInterval(KrGeInterval(true, 0.0)));
  EXPECT_FALSE(segment.setInterval(KrGeInterval()));
  EXPECT_EQ(segment.endPoint(), kQ);
  EXPECT_TRUE(segment.setInterval(KrGeInterval(1.0, 1.0)));
  EXPECT_TRUE(segment.setInterval(KrGeInterval(0.0, 5.0)));
  EXPECT_EQ(segment.endPoint(), kP + (kQ - kP) * 5.0);
  segment.setInterval();
  EXPECT_EQ(segment.endPoint(), kQ);
}

TEST(KrGeLineSeg3d, ClosestPointTo_ClampsBeyondTheEnds) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  struct Row {
    KrGePoint3d point;
    KrGePoint3d expected;
  } rows[] = {{{12, 3, 0}, {10, 0, 0}}, {{-5, -1, 2}, {0, 0, 0}}, {{4, 7, -7}, {4, 0, 0}}, {{10, 1, 0}, {10, 0, 0}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.point.x);
    EXPECT_EQ(segment.closestPointTo(row.point), row.expected);
  }
  // Within the interval's own tolerance (1e-12 in parameter) the projection itself is kept.
  EXPECT_GT(segment.closestPointTo(KrGePoint3d(10 + 5e-12, 1, 0)).x, 10.0);
  EXPECT_EQ(segment.closestPointTo(KrGePoint3d(10 + 5e-11, 1, 0)).x, 10.0);
  const KrGeLineSeg3d point(KrGePoint3d(1, 1, 1), KrGePoint3d(1, 1, 1));
  EXPECT_EQ(point.closestPointTo(KrGePoint3d(5, 5, 5)), KrGePoint3d(1, 1, 1));
}

TEST(KrGeLineSeg3d, EvalPoint_DerivativesAreTheDirectionThenZero) {
  const KrGeLineSeg3d segment(kP, kQ);
  KrsArray<KrGeVector3d> derivatives;
  EXPECT_EQ(segment.evalPoint(0.5, 3, derivatives), segment.midPoint());
  ASSERT_EQ(derivatives.GetSize(), 3);
  EXPECT_EQ(derivatives[0], kQ - kP);
  EXPECT_TRUE(derivatives[1].isZeroLength(KrGeTol()) && derivatives[1].length() == 0.0);
  EXPECT_EQ(derivatives[2].length(), 0.0);
  MonitorCapture::clear();
  EXPECT_EQ(segment.evalPoint(1.0, -2, derivatives), kQ);
  EXPECT_EQ(derivatives.GetSize(), 0);
  EXPECT_EQ(linear_test::countAssertions(MonitorCapture::drain(), "(numDeriv<0)"), 1);
}

TEST(KrGeLineSeg3d, SamplePoints_EvenlyOverTheIntervalAtLeastTwo) {
  KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(8, 0, 0));
  segment.setInterval(KrGeInterval(0.25, 0.75));
  KrsArray<KrGePoint3d> points;
  points.Add(KrGePoint3d(9, 9, 9));
  segment.getSamplePoints(5, points);
  ASSERT_EQ(points.GetSize(), 5);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(points[i], KrGePoint3d(2 + i, 0, 0));
  MonitorCapture::clear();
  segment.getSamplePoints(1, points);
  EXPECT_EQ(points.GetSize(), 2);
  EXPECT_EQ(points[1], KrGePoint3d(6, 0, 0));
  EXPECT_EQ(linear_test::countAssertions(MonitorCapture::drain(), "(numSample < 2)"), 1);
}

TEST(KrGeLineSeg3d, SamplePointsByDeviation_AreAlwaysTheTwoGivenParameters) {
  const KrGeLineSeg3d segment(kP, kQ);
  KrsArray<KrGePoint3d> points;
  KrsArray<double> params;
  MonitorCapture::clear();
  segment.getSamplePoints(-1.0, 3.0, -0.5, points, params);
  EXPECT_EQ(linear_test::countAssertions(MonitorCapture::drain(), "(approxEps<0)"), 1);
  ASSERT_EQ(params.GetSize(), 2);
  EXPECT_EQ(params[0], -1.0);
  EXPECT_EQ(params[1], 3.0);
  EXPECT_EQ(points[1], segment.evalPoint(3.0));
}

TEST(KrGeLineSeg3d, Lengths_AndParameterAtLength) {
  const KrGeLineSeg3d segment(kP, kQ);  // |direction| = 13
  EXPECT_DOUBLE_EQ(segment.length(0.5, -1.0), 19.5);
  EXPECT_DOUBLE_EQ(segment.paramAtLength(0.5, 26.0, true), 2.5);
  EXPECT_DOUBLE_EQ(segment.paramAtLength(0.5, 26.0, false), -1.5);
  double area = -1;
  EXPECT_TRUE(segment.area(0, 1, area));
  EXPECT_EQ(area, 0.0);
  double period = -1;
  EXPECT_FALSE(segment.isPeriodic(period));
  EXPECT_FALSE(segment.isClosed());
}

TEST(KrGeLineSeg3d, IsDegenerate_BothSidesOfTheTolerance) {
  KrGeTol tol;
  tol.setEqualPoint(1e-3);
  KrGe::EntityId kind = KrGe::kEntity3d;
  const KrGeLineSeg3d tiny(kP, kP + KrGeVector3d(1e-3, 0, 0));
  EXPECT_TRUE(tiny.isDegenerate(kind, tol));
  EXPECT_EQ(kind, KrGe::kPosition3d);
  const KrGeLineSeg3d small(kP, kP + KrGeVector3d(2e-3, 0, 0));
  EXPECT_FALSE(small.isDegenerate(kind, tol));
  EXPECT_EQ(kind, KrGe::kLineSeg3d);

  KrGeEntity3d* collapsed = reinterpret_cast<KrGeEntity3d*>(1);
  EXPECT_FALSE(small.isDegenerate(collapsed, tol));
  EXPECT_EQ(collapsed, nullptr);
  ASSERT_TRUE(tiny.isDegenerate(collapsed, tol));
  ASSERT_NE(collapsed, nullptr);
  EXPECT_EQ(collapsed->type(), KrGe::kPosition3d);
  EXPECT_EQ(static_cast<KrGePointEnt3d*>(collapsed)->point3d(), tiny.midPoint());
  delete collapsed;
}

TEST(KrGeLineSeg3d, Bisector_IsEquidistantFromTheEnds) {
  const KrGeLineSeg3d segment(kP, kQ);
  KrGePlane bisector;
  segment.getBisector(bisector);
  EXPECT_NEAR(bisector.signedDistanceTo(segment.midPoint()), 0.0, 1e-12);
  EXPECT_TRUE(bisector.normal().isParallelTo(kQ - kP));
  const KrGePoint3d elsewhere = segment.midPoint() + bisector.normal().perpVector() * 7.0;
  EXPECT_NEAR(elsewhere.distanceTo(kP), elsewhere.distanceTo(kQ), 1e-12);
  KrGePlane plane;
  EXPECT_TRUE(KrGeLineSeg3d(kP, kP).isPlanar(plane));  // no direction: the plane takes +Z
  EXPECT_EQ(plane.normal(), KrGeVector3d::kZAxis);
}

TEST(KrGeLineSeg3d, SplitCurves_PiecesKeepTheParametrisation) {
  const KrGeLineSeg3d segment(kP, kQ);
  struct Row {
    const char* name;
    double param;
    bool first, second;
  } rows[] = {{"inside", 0.25, true, true}, {"at start", 0.0, false, true},
              {"at end", 1.0, true, false}, {"outside", 1.5, false, false}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KrGeCurve3d* piece1 = reinterpret_cast<KrGeCurve3d*>(1);
    KrGeCurve3d* piece2 = reinterpret_cast<KrGeCurve3d*>(1);
    segment.getSplitCurves(row.param, piece1, piece2);
    ASSERT_EQ(piece1 != nullptr, row.first);
    ASSERT_EQ(piece2 != nullptr, row.second);
    if (piece1 && piece2) {
      EXPECT_EQ(piece1->type(), KrGe::kLineSeg3d);
      KrGePoint3d start, end;
      piece1->hasEndPoint(end);
      piece2->hasStartPoint(start);
      EXPECT_EQ(end, segment.evalPoint(0.25));
      EXPECT_EQ(start, end);
      EXPECT_DOUBLE_EQ(piece2->paramOf(segment.evalPoint(0.5)), 0.5);
      EXPECT_TRUE(piece1->isOn(kP));
      EXPECT_TRUE(piece2->isOn(kQ));
    } else if (piece1 || piece2) {
      EXPECT_TRUE((piece1 ? piece1 : piece2)->isEqualTo(segment));
    }
    delete piece1;
    delete piece2;
  }
}

TEST(KrGeLineSeg3d, SplitOfALine_IsNotSupported) {
  MonitorCapture::clear();
  KrGeCurve3d* piece1 = nullptr;
  KrGeCurve3d* piece2 = nullptr;
  KrGeLine3d(kP, kQ).getSplitCurves(0.5, piece1, piece2);
  EXPECT_EQ(piece1, nullptr);
  EXPECT_EQ(piece2, nullptr);
  const auto records = MonitorCapture::drain();
  EXPECT_EQ(linear_test::countAssertions(records, "(pLine1->type()==kLineSeg3d)"), 1);
  EXPECT_EQ(linear_test::countAssertions(records, "(((HRESULT)0x80004001L))"), 1);
}

TEST(KrGeLineSeg3d, Explode_IntoItselfOrANewPieceOfTheRange) {
  const KrGeLineSeg3d segment(kP, kQ);
  KrsArray<void*> curves;
  KrsArray<int> isNew;
  EXPECT_TRUE(segment.explode(curves, isNew));
  ASSERT_EQ(curves.GetSize(), 1);
  EXPECT_EQ(curves[0], &segment);
  EXPECT_EQ(isNew[0], 0);
  const KrGeInterval part(0.5, 4.0);
  EXPECT_TRUE(segment.explode(curves, isNew, &part));
  ASSERT_EQ(curves.GetSize(), 2);
  EXPECT_EQ(isNew[1], 1);
  auto* piece = static_cast<KrGeLineSeg3d*>(curves[1]);
  EXPECT_EQ(piece->startPoint(), segment.midPoint());
  EXPECT_EQ(piece->endPoint(), kQ);
  delete piece;
  const KrGeInterval beyond(2.0, 3.0);
  EXPECT_FALSE(segment.explode(curves, isNew, &beyond));
  EXPECT_EQ(curves.GetSize(), 2);
}

TEST(KrGeLineSeg3d, TrimmedOffset_MovesTheSegmentToTheRightInItsPlane) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 5), KrGePoint3d(4, 0, 5));
  KrsArray<void*> offsets;
  segment.getTrimmedOffset(2.0, KrGeVector3d(0, 0, 3), offsets, KrGe::kExtend);
  segment.getTrimmedOffset(-1.0, KrGeVector3d(0, 0, 1), offsets, KrGe::kExtend);
  ASSERT_EQ(offsets.GetSize(), 2);
  auto* right = static_cast<KrGeLineSeg3d*>(offsets[0]);
  auto* left = static_cast<KrGeLineSeg3d*>(offsets[1]);
  EXPECT_EQ(right->startPoint(), KrGePoint3d(0, -2, 5));
  EXPECT_EQ(right->endPoint(), KrGePoint3d(4, -2, 5));
  EXPECT_EQ(left->startPoint(), KrGePoint3d(0, 1, 5));
  delete right;
  delete left;
}

TEST(KrGeLineSeg3d, TrimmedOffset_RefusesBadPlanesAndLines) {
  KrsArray<void*> offsets;
  MonitorCapture::clear();
  KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1)).getTrimmedOffset(1.0, KrGeVector3d(0, 0, 1), offsets, KrGe::kExtend);
  KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0)).getTrimmedOffset(1.0, KrGeVector3d(), offsets, KrGe::kExtend);
  KrGeLine3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0)).getTrimmedOffset(1.0, KrGeVector3d(0, 0, 1), offsets, KrGe::kExtend);
  const auto records = MonitorCapture::drain();
  EXPECT_EQ(offsets.GetSize(), 0);
  EXPECT_EQ(linear_test::countAssertions(records, "(((HRESULT)0x80070057L))"), 1);
  EXPECT_EQ(linear_test::countAssertions(records, "(((HRESULT)0x80004001L))"), 1);
}

TEST(KrGeLineSeg3d, TangentThroughAPoint_OfALinearCurveIsItsOwnLine) {
  const KrGeLineSeg3d curve(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  KrGeLineSeg3d segment;
  double param = -1;
  bool success = false;
  segment.set(curve, KrGePoint3d(3, 0, 0), param, success);
  ASSERT_TRUE(success);
  EXPECT_EQ(param, 1.0);
  EXPECT_EQ(segment.startPoint(), KrGePoint3d(3, 0, 0));
  EXPECT_EQ(segment.endPoint(), KrGePoint3d(10, 0, 0));
  const KrGeLineSeg3d before(segment);
  segment.set(curve, KrGePoint3d(3, 1e-3, 0), param, success);
  EXPECT_FALSE(success);
  EXPECT_TRUE(segment.isEqualTo(before));
}

TEST(KrGeLineSeg3d, TangentToTwoCurves_BridgesColinearSegments) {
  const KrGeLineSeg3d first(KrGePoint3d(0, 0, 0), KrGePoint3d(2, 2, 0));
  const KrGeLineSeg3d second(KrGePoint3d(7, 7, 0), KrGePoint3d(5, 5, 0));
  KrGeLineSeg3d bridge;
  double param1 = -1, param2 = -1;
  bool success = false;
  bridge.set(first, second, param1, param2, success);
  ASSERT_TRUE(success);
  EXPECT_EQ(param1, 1.0);
  EXPECT_EQ(param2, 1.0);
  EXPECT_EQ(bridge.startPoint(), KrGePoint3d(2, 2, 0));
  EXPECT_EQ(bridge.endPoint(), KrGePoint3d(5, 5, 0));
  bridge.set(first, KrGeLineSeg3d(KrGePoint3d(7, 7, 1), KrGePoint3d(5, 5, 1)), param1, param2, success);
  EXPECT_FALSE(success);
}

}  // namespace
