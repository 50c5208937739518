// Segments: construction, interval rules, evaluation, sampling, pieces and the constructions
// that make new segments.
#include "tests/entity/LinearTestKit.h"

using linear_test::countAssertions;
using testkit::MonitorCapture;

const KrGePoint3d kP(1, 2, 3), kQ(4, -2, 15);  // |Q - P| = 13

TEST(KrGeLineSeg3d, Construct_RunsFromTheFirstPointToTheSecond) {
  const KrGeLineSeg3d segment(kP, kQ);
  EXPECT_TRUE(segment.startPoint() == kP && segment.endPoint() == kQ && segment.midPoint() == KrGePoint3d(2.5, 0, 9));
  EXPECT_TRUE(segment.length() == 13.0 && segment.paramOf(kQ) == 1.0);
  EXPECT_TRUE(segment.direction().isEqualTo(KrGeVector3d(3, -4, 12) / 13.0));
  EXPECT_TRUE(KrGeLineSeg3d(kP, KrGeVector3d(3, -4, 12)).isEqualTo(segment));
  EXPECT_TRUE(KrGeLineSeg3d().isEqualTo(KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0))));
}

// The interval is not touched: on [0, 1] the ends swap, elsewhere the parameter t becomes 1 - t.
// Only bounded, ordered ranges are accepted.
TEST(KrGeLineSeg3d, ReverseParamAndSetInterval_KeepTheIntervalRules) {
  KrGeLineSeg3d segment(kP, kQ);
  segment.reverseParam();
  EXPECT_TRUE(segment.startPoint() == kQ && segment.endPoint() == kP);
  segment.reverseParam();
  EXPECT_TRUE(segment.isEqualTo(KrGeLineSeg3d(kP, kQ)));
  EXPECT_FALSE(segment.setInterval(KrGeInterval(2.0, 1.0)) || segment.setInterval(KrGeInterval(true, 0.0)) ||
               segment.setInterval(KrGeInterval()));
  EXPECT_EQ(segment.endPoint(), kQ);
  EXPECT_TRUE(segment.setInterval(KrGeInterval(1.0, 1.0)) && segment.setInterval(KrGeInterval(0.25, 3.0)));
  const KrGePoint3d x = segment.evalPoint(2.0);
  segment.reverseParam();
  KrGeInterval range;
  segment.getInterval(range);
  EXPECT_TRUE(range == KrGeInterval(0.25, 3.0));
  EXPECT_DOUBLE_EQ(segment.paramOf(x), 1.0 - 2.0);
  segment.setInterval();
  EXPECT_EQ(segment.startPoint(), kQ);
}

// Within the interval's own tolerance (1e-12 in parameter) the projection itself is kept.
TEST(KrGeLineSeg3d, ClosestPointTo_ClampsBeyondTheIntervalTolerance) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  EXPECT_GT(segment.closestPointTo(KrGePoint3d(10 + 5e-12, 1, 0)).x, 10.0);
  EXPECT_EQ(segment.closestPointTo(KrGePoint3d(10 + 5e-11, 1, 0)).x, 10.0);
  EXPECT_EQ(KrGeLineSeg3d(kP, kP).closestPointTo(KrGePoint3d(5, 5, 5)), kP);
}

// Derivatives are the direction then zeros; samples spread over the interval; bad counts are
// reported and repaired (or carried on); sampling by deviation always gives the two parameters.
TEST(KrGeLineSeg3d, EvalAndSample_CountsAreReportedAndRepaired) {
  KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(8, 0, 0));
  KrsArray<KrGeVector3d> derivatives;
  EXPECT_EQ(segment.evalPoint(0.5, 3, derivatives), KrGePoint3d(4, 0, 0));
  ASSERT_EQ(derivatives.GetSize(), 3);
  EXPECT_TRUE(derivatives[0] == KrGeVector3d(8, 0, 0) && derivatives[1].length() + derivatives[2].length() == 0.0);
  segment.setInterval(KrGeInterval(0.25, 0.75));
  KrsArray<KrGePoint3d> points;
  KrsArray<double> params;
  points.Add(KrGePoint3d(9, 9, 9));
  segment.getSamplePoints(5, points);
  ASSERT_EQ(points.GetSize(), 5);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(points[i], KrGePoint3d(2 + i, 0, 0)) << i;
  MonitorCapture::clear();
  EXPECT_EQ(segment.evalPoint(1.0, -2, derivatives), KrGePoint3d(8, 0, 0));
  EXPECT_EQ(derivatives.GetSize(), 0);
  segment.getSamplePoints(1, points);
  EXPECT_TRUE(points.GetSize() == 2 && points[1] == KrGePoint3d(6, 0, 0));
  segment.getSamplePoints(-1.0, 3.0, -0.5, points, params);
  ASSERT_EQ(params.GetSize(), 2);
  EXPECT_TRUE(params[0] == -1.0 && params[1] == 3.0 && points[1] == KrGePoint3d(24, 0, 0));
  const auto records = MonitorCapture::drain();
  EXPECT_EQ(countAssertions(records, "(numDeriv<0)"), 1);
  EXPECT_EQ(countAssertions(records, "(numSample < 2)"), 1);
  EXPECT_EQ(countAssertions(records, "(approxEps<0)"), 1);
}

// Degenerate when the ends are within equalPoint: a point entity at the middle.
TEST(KrGeLineSeg3d, IsDegenerate_BothSidesOfTheTolerance) {
  const KrGeTol tol = linear_test::tolerance(1e-3);
  const KrGeLineSeg3d tiny(kP, kP + KrGeVector3d(1e-3, 0, 0)), small(kP, kP + KrGeVector3d(2e-3, 0, 0));
  KrGe::EntityId kind = KrGe::kEntity3d;
  EXPECT_TRUE(tiny.isDegenerate(kind, tol) && kind == KrGe::kPosition3d);
  EXPECT_TRUE(!small.isDegenerate(kind, tol) && kind == KrGe::kLineSeg3d);
  KrGeEntity3d* collapsed = reinterpret_cast<KrGeEntity3d*>(1);
  EXPECT_FALSE(small.isDegenerate(collapsed, tol));
  EXPECT_EQ(collapsed, nullptr);
  ASSERT_TRUE(tiny.isDegenerate(collapsed, tol));
  EXPECT_TRUE(collapsed->isEqualTo(KrGePointEnt3d(tiny.midPoint())));
  delete collapsed;
}

// The bisector is equidistant from the ends; without a direction the plane takes +Z.
TEST(KrGeLineSeg3d, BisectorAndPlane) {
  KrGePlane plane;
  KrGeLineSeg3d(kP, kQ).getBisector(plane);
  const KrGePoint3d elsewhere = plane.pointOnPlane() + plane.normal().perpVector() * 7.0;
  EXPECT_NEAR(plane.signedDistanceTo(KrGePoint3d(2.5, 0, 9)), 0.0, 1e-12);
  EXPECT_NEAR(elsewhere.distanceTo(kP), elsewhere.distanceTo(kQ), 1e-12);
  EXPECT_TRUE(KrGeLineSeg3d(kP, kP).isPlanar(plane) && plane.normal() == KrGeVector3d::kZAxis);
}

// The pieces keep the parametrisation; at or beyond an end only one or no piece is made; a line
// is not split and says so.
TEST(KrGeLineSeg3d, SplitCurves_PiecesKeepTheParametrisation) {
  const KrGeLineSeg3d segment(kP, kQ);
  for (const double param : {0.25, 0.0, 1.0, 1.5}) {
    SCOPED_TRACE(param);
    KrGeCurve3d *piece1 = reinterpret_cast<KrGeCurve3d*>(1), *piece2 = piece1;
    segment.getSplitCurves(param, piece1, piece2);
    ASSERT_EQ(piece1 != nullptr, param == 0.25 || param == 1.0);
    ASSERT_EQ(piece2 != nullptr, param == 0.25 || param == 0.0);
    KrGePoint3d start, end;
    if (piece1 && piece2 && piece1->hasEndPoint(end) && piece2->hasStartPoint(start)) {
      EXPECT_TRUE(end == segment.evalPoint(0.25) && start == end && piece1->isOn(kP) && piece2->isOn(kQ));
      EXPECT_DOUBLE_EQ(piece2->paramOf(segment.evalPoint(0.5)), 0.5);
    } else if (piece1 || piece2) {
      EXPECT_TRUE((piece1 ? piece1 : piece2)->isEqualTo(segment));
    }
    delete piece1;
    delete piece2;
  }
  KrGeCurve3d *linePiece1 = nullptr, *linePiece2 = nullptr;
  MonitorCapture::clear();
  KrGeLine3d(kP, kQ).getSplitCurves(0.5, linePiece1, linePiece2);
  const auto records = MonitorCapture::drain();
  EXPECT_TRUE(linePiece1 == nullptr && linePiece2 == nullptr);
  EXPECT_EQ(countAssertions(records, "(pLine1->type()==kLineSeg3d)"), 1);
  EXPECT_EQ(countAssertions(records, "(((HRESULT)0x80004001L))"), 1);
}

// Into itself (not new), or a new piece of the given range; nothing for a range beyond it.
TEST(KrGeLineSeg3d, Explode_IntoItselfOrANewPieceOfTheRange) {
  const KrGeLineSeg3d segment(kP, kQ);
  KrsArray<void*> curves;
  KrsArray<int> isNew;
  const KrGeInterval part(0.5, 4.0), beyond(2.0, 3.0);
  EXPECT_TRUE(segment.explode(curves, isNew) && segment.explode(curves, isNew, &part));
  ASSERT_EQ(curves.GetSize(), 2);
  EXPECT_TRUE(curves[0] == &segment && isNew[0] == 0 && isNew[1] == 1);
  auto* piece = static_cast<KrGeLineSeg3d*>(curves[1]);
  EXPECT_TRUE(piece->startPoint() == segment.midPoint() && piece->endPoint() == kQ);
  delete piece;
  EXPECT_FALSE(segment.explode(curves, isNew, &beyond));
  EXPECT_EQ(curves.GetSize(), 2);
}

// To the right of the direction seen from the normal's tip; a segment out of the plane, a zero
// normal and a line are refused.
TEST(KrGeLineSeg3d, TrimmedOffset_MovesTheSegmentToTheRightInItsPlane) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 5), KrGePoint3d(4, 0, 5));
  KrsArray<void*> offsets;
  segment.getTrimmedOffset(2.0, KrGeVector3d(0, 0, 3), offsets, KrGe::kExtend);
  segment.getTrimmedOffset(-1.0, KrGeVector3d(0, 0, 1), offsets, KrGe::kExtend);
  ASSERT_EQ(offsets.GetSize(), 2);
  std::unique_ptr<KrGeLineSeg3d> right(static_cast<KrGeLineSeg3d*>(offsets[0])),
      left(static_cast<KrGeLineSeg3d*>(offsets[1]));
  EXPECT_TRUE(right->startPoint() == KrGePoint3d(0, -2, 5) && right->endPoint() == KrGePoint3d(4, -2, 5));
  EXPECT_EQ(left->startPoint(), KrGePoint3d(0, 1, 5));
  MonitorCapture::clear();
  KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1))
      .getTrimmedOffset(1.0, KrGeVector3d(0, 0, 1), offsets, KrGe::kExtend);
  segment.getTrimmedOffset(1.0, KrGeVector3d(), offsets, KrGe::kExtend);
  KrGeLine3d().getTrimmedOffset(1.0, KrGeVector3d(0, 0, 1), offsets, KrGe::kExtend);
  const auto records = MonitorCapture::drain();
  EXPECT_EQ(offsets.GetSize(), 2);
  EXPECT_EQ(countAssertions(records, "(((HRESULT)0x80070057L))"), 1);
  EXPECT_EQ(countAssertions(records, "(((HRESULT)0x80004001L))"), 1);
}

// For a linear curve the tangent through a point is its own line, from the point to the farther
// end; two colinear segments are bridged between their nearer ends; otherwise nothing changes.
TEST(KrGeLineSeg3d, TangentConstructions_FromLinearCurves) {
  const KrGeLineSeg3d curve(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0)),
      first(KrGePoint3d(0, 0, 0), KrGePoint3d(2, 2, 0));
  KrGeLineSeg3d segment;
  double param = -1, param2 = -1;
  bool success = false;
  segment.set(curve, KrGePoint3d(3, 0, 0), param, success);
  EXPECT_TRUE(success && param == 1.0);
  EXPECT_TRUE(segment.startPoint() == KrGePoint3d(3, 0, 0) && segment.endPoint() == KrGePoint3d(10, 0, 0));
  const KrGeLineSeg3d before(segment);
  segment.set(curve, KrGePoint3d(3, 1e-3, 0), param, success);
  EXPECT_TRUE(!success && segment.isEqualTo(before));
  segment.set(first, KrGeLineSeg3d(KrGePoint3d(7, 7, 0), KrGePoint3d(5, 5, 0)), param, param2, success);
  EXPECT_TRUE(success && param == 1.0 && param2 == 1.0);
  EXPECT_TRUE(segment.startPoint() == KrGePoint3d(2, 2, 0) && segment.endPoint() == KrGePoint3d(5, 5, 0));
  segment.set(first, KrGeLineSeg3d(KrGePoint3d(7, 7, 1), KrGePoint3d(5, 5, 1)), param, param2, success);
  EXPECT_FALSE(success);
}
