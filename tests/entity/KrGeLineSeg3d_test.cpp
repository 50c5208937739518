// Segments and lines: construction, the interval rules, evaluation and sampling with their
// count checks, degeneracy on both sides of the tolerance, pieces, offsets and the tangent
// constructions.
#include "tests/entity/EntityKit.h"

namespace {

const KrGePoint3d kP(1, 2, 3), kQ(4, -2, 15);  // |Q - P| = 13

}  // namespace

TEST(KrGeLineSeg3d, ConstructReverseAndSetInterval) {
  KrGeLineSeg3d segment(kP, kQ);
  EXPECT_EQ(segment.midPoint(), KrGePoint3d(2.5, 0, 9));
  EXPECT_EQ(segment.length(), 13.0);
  EXPECT_TRUE(KrGeLineSeg3d(kP, KrGeVector3d(3, -4, 12)).isEqualTo(segment));
  segment.reverseParam();  // on [0, 1] the ends swap
  EXPECT_EQ(segment.startPoint(), kQ);
  segment.reverseParam();
  for (const KrGeInterval& refused : {KrGeInterval(2.0, 1.0), KrGeInterval(true, 0.0), KrGeInterval()})
    EXPECT_FALSE(segment.setInterval(refused));  // only bounded, ordered ranges
  EXPECT_EQ(segment.endPoint(), kQ);
  ASSERT_TRUE(segment.setInterval(KrGeInterval(0.25, 3.0)));
  const KrGePoint3d x = segment.evalPoint(2.0);
  segment.reverseParam();  // elsewhere t becomes 1 - t, the interval stays
  KrGeInterval range;
  segment.getInterval(range);
  EXPECT_TRUE(range == KrGeInterval(0.25, 3.0));
  EXPECT_DOUBLE_EQ(segment.paramOf(x), 1.0 - 2.0);
  // The interval's own tolerance (1e-12 in parameter) keeps the projection itself.
  const KrGeLineSeg3d ten(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  EXPECT_GT(ten.closestPointTo(KrGePoint3d(10 + 5e-12, 1, 0)).x, 10.0);
  EXPECT_EQ(ten.closestPointTo(KrGePoint3d(10 + 5e-11, 1, 0)).x, 10.0);
  EXPECT_EQ(KrGeLineSeg3d(kP, kP).closestPointTo(KrGePoint3d(5, 5, 5)), kP);
  const KrGeTol half = tolerance(0.5);  // exactly the tolerance away is on, also beyond an end
  EXPECT_TRUE(ten.isOn(KrGePoint3d(10.5, 0, 0), half));
  EXPECT_FALSE(ten.isOn(KrGePoint3d(10.5000001, 0, 0), half));
}

// Derivatives are the direction then zeros; samples spread over the interval; bad counts are
// reported and repaired (or carried on); sampling by deviation always gives the two parameters.
TEST(KrGeLineSeg3d, EvaluateAndSample) {
  KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(8, 0, 0));
  KrsArray<KrGeVector3d> derivatives;
  EXPECT_EQ(segment.evalPoint(0.5, 3, derivatives), KrGePoint3d(4, 0, 0));
  ASSERT_EQ(derivatives.GetSize(), 3);
  EXPECT_EQ(derivatives[0], KrGeVector3d(8, 0, 0));
  EXPECT_EQ(derivatives[2].lengthSqrd(), 0.0);
  segment.setInterval(KrGeInterval(0.25, 0.75));
  KrsArray<KrGePoint3d> points;
  KrsArray<double> params;
  segment.getSamplePoints(5, points);
  ASSERT_EQ(points.GetSize(), 5);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(points[i], KrGePoint3d(2 + i, 0, 0)) << i;
  const auto records = recordsOf([&] {
    EXPECT_EQ(segment.evalPoint(1.0, -2, derivatives), KrGePoint3d(8, 0, 0));
    segment.getSamplePoints(1, points);
    segment.getSamplePoints(-1.0, 3.0, -0.5, points, params);
  });
  EXPECT_EQ(derivatives.GetSize(), 0);
  ASSERT_EQ(params.GetSize(), 2);
  EXPECT_EQ(params[1], 3.0);
  EXPECT_EQ(points[1], KrGePoint3d(24, 0, 0));
  for (const char* expression : {"(numDeriv<0)", "(numSample < 2)", "(approxEps<0)"}) EXPECT_EQ(countAssertions(records, expression), 1);
  // Beyond the limits of lines (256 derivatives, 2^20 samples): no derivatives, 2^20 samples.
  const auto beyond = recordsOf([&] {
    segment.evalPoint(0.5, 257, derivatives);
    segment.getSamplePoints(INT_MAX, points);
  });
  EXPECT_EQ(derivatives.GetSize(), 0);
  EXPECT_EQ(points.GetSize(), 1 << 20);
  EXPECT_TRUE(reportedOnce(countAssertions(beyond, "(numDeriv>kMaxDerivOrder)")));
  EXPECT_TRUE(reportedOnce(countAssertions(beyond, "(numSample>kMaxSampleCount)")));
  const auto unbounded = recordsOf([&] { KrGeLine3d().getSamplePoints(4, points); });
  EXPECT_EQ(points.GetSize(), 0);
  EXPECT_EQ(warningsIn(unbounded), std::vector<std::string>{warningText("KrLinearEnt3dImpl::getSamplePoints on unbounded line")});
}

// A segment is degenerate when its ends are within equalPoint (a point entity at the middle), a
// line when its direction is within equalVector (a point entity at its origin).
TEST(KrGeLineSeg3d, IsDegenerate_BothSidesOfTheTolerance) {
  const KrGeTol tol = tolerance(1e-3, 1e-6);
  const KrGeLineSeg3d tiny(kP, kP + KrGeVector3d(1e-3, 0, 0)), small(kP, kP + KrGeVector3d(2e-3, 0, 0));
  const KrGeLine3d shortLine(kP, KrGeVector3d(1e-6, 0, 0)), line(kP, KrGeVector3d(2e-6, 0, 0));
  const struct { const KrGeLinearEnt3d* entity; KrGe::EntityId kind; KrGePoint3d collapsed; } rows[] = {
      {&tiny, KrGe::kPosition3d, tiny.midPoint()}, {&small, KrGe::kLineSeg3d, {}},
      {&shortLine, KrGe::kPosition3d, kP}, {&line, KrGe::kLine3d, {}}};
  for (const auto& row : rows) {
    const bool degenerate = row.kind == KrGe::kPosition3d;
    KrGe::EntityId kind = KrGe::kEntity3d;
    EXPECT_EQ(row.entity->isDegenerate(kind, tol), degenerate) << row.entity->type();
    EXPECT_EQ(kind, row.kind);
    KrGeEntity3d* collapsed = reinterpret_cast<KrGeEntity3d*>(1);
    EXPECT_EQ(row.entity->isDegenerate(collapsed, tol), degenerate);
    std::unique_ptr<KrGeEntity3d> owned(collapsed);
    if (degenerate) {
      EXPECT_TRUE(collapsed->isEqualTo(KrGePointEnt3d(row.collapsed)));
    } else {
      EXPECT_EQ(collapsed, nullptr);
    }
  }
}

// The pieces keep the parametrisation; at or beyond an end one or no piece is made; a line is
// not split and says so. Explode gives the segment itself or a new piece of the range.
TEST(KrGeLineSeg3d, SplitAndExplode) {
  const KrGeLineSeg3d segment(kP, kQ);
  for (const double param : {0.25, 0.0, 1.0, 1.5}) {
    KrGeCurve3d *piece1 = reinterpret_cast<KrGeCurve3d*>(1), *piece2 = piece1;
    segment.getSplitCurves(param, piece1, piece2);
    std::unique_ptr<KrGeCurve3d> owned1(piece1), owned2(piece2);
    ASSERT_EQ(piece1 != nullptr, param == 0.25 || param == 1.0) << param;
    ASSERT_EQ(piece2 != nullptr, param == 0.25 || param == 0.0) << param;
    if (piece1 && piece2) {
      KrGePoint3d end;
      EXPECT_TRUE(piece1->hasEndPoint(end));
      EXPECT_EQ(end, segment.evalPoint(0.25));
      EXPECT_DOUBLE_EQ(piece2->paramOf(segment.evalPoint(0.5)), 0.5);
    } else if (piece1 || piece2) {
      EXPECT_TRUE((piece1 ? piece1 : piece2)->isEqualTo(segment)) << param;
    }
  }
  KrGeCurve3d *linePiece1 = nullptr, *linePiece2 = nullptr;
  const auto records = recordsOf([&] { KrGeLine3d(kP, kQ).getSplitCurves(0.5, linePiece1, linePiece2); });
  EXPECT_EQ(linePiece1, nullptr);
  EXPECT_EQ(countAssertions(records, "(pLine1->type()==kLineSeg3d)"), 1);
  KrsArray<void*> curves;
  KrsArray<int> isNew;
  const KrGeInterval part(0.5, 4.0), beyond(2.0, 3.0);
  EXPECT_TRUE(segment.explode(curves, isNew));
  EXPECT_TRUE(segment.explode(curves, isNew, &part));
  ASSERT_EQ(curves.GetSize(), 2);
  EXPECT_EQ(curves[0], &segment);
  EXPECT_EQ(isNew[1], 1);
  std::unique_ptr<KrGeLineSeg3d> piece(static_cast<KrGeLineSeg3d*>(curves[1]));
  EXPECT_EQ(piece->startPoint(), segment.midPoint());
  EXPECT_EQ(piece->endPoint(), kQ);
  EXPECT_FALSE(segment.explode(curves, isNew, &beyond));
}

// Offsets go to the right of the direction seen from the normal's tip; a segment out of the
// plane, a zero normal and a line are refused. The tangent of a linear curve through a point is
// its own line to the farther end; colinear segments are bridged between their nearer ends.
TEST(KrGeLineSeg3d, OffsetsAndTangentConstructions) {
  const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 5), KrGePoint3d(4, 0, 5));
  KrsArray<void*> offsets;
  segment.getTrimmedOffset(2.0, KrGeVector3d(0, 0, 3), offsets, KrGe::kExtend);
  segment.getTrimmedOffset(-1.0, KrGeVector3d(0, 0, 1), offsets, KrGe::kExtend);
  ASSERT_EQ(offsets.GetSize(), 2);
  std::unique_ptr<KrGeLineSeg3d> right(static_cast<KrGeLineSeg3d*>(offsets[0])), left(static_cast<KrGeLineSeg3d*>(offsets[1]));
  EXPECT_TRUE(right->isEqualTo(KrGeLineSeg3d(KrGePoint3d(0, -2, 5), KrGePoint3d(4, -2, 5))));
  EXPECT_EQ(left->startPoint(), KrGePoint3d(0, 1, 5));
  const auto records = recordsOf([&] {
    KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1)).getTrimmedOffset(1.0, KrGeVector3d(0, 0, 1), offsets, KrGe::kExtend);
    segment.getTrimmedOffset(1.0, KrGeVector3d(), offsets, KrGe::kExtend);
    KrGeLine3d().getTrimmedOffset(1.0, KrGeVector3d(0, 0, 1), offsets, KrGe::kExtend);
  });
  EXPECT_EQ(offsets.GetSize(), 2);
  EXPECT_EQ(countAssertions(records, "(((HRESULT)0x80070057L))"), 1);
  const KrGeLineSeg3d curve(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0)), first(KrGePoint3d(0, 0, 0), KrGePoint3d(2, 2, 0));
  KrGeLineSeg3d made;
  double param = -1, param2 = -1;
  bool success = false;
  made.set(curve, KrGePoint3d(3, 0, 0), param, success);
  EXPECT_TRUE(success);
  EXPECT_EQ(param, 1.0);
  EXPECT_TRUE(made.isEqualTo(KrGeLineSeg3d(KrGePoint3d(3, 0, 0), KrGePoint3d(10, 0, 0))));
  made.set(curve, KrGePoint3d(3, 1e-3, 0), param, success);
  EXPECT_FALSE(success);
  EXPECT_EQ(made.startPoint(), KrGePoint3d(3, 0, 0));  // unchanged
  made.set(first, KrGeLineSeg3d(KrGePoint3d(7, 7, 0), KrGePoint3d(5, 5, 0)), param, param2, success);
  EXPECT_TRUE(success);
  EXPECT_TRUE(made.isEqualTo(KrGeLineSeg3d(KrGePoint3d(2, 2, 0), KrGePoint3d(5, 5, 0))));
  made.set(first, KrGeLineSeg3d(KrGePoint3d(7, 7, 1), KrGePoint3d(5, 5, 1)), param, param2, success);
  EXPECT_FALSE(success);
}

// A line's interval never changes; reversing negates its direction; its open sides bound
// 1e12 directions out with 1e-8 added to every coordinate on both sides.
TEST(KrGeLine3d, IntervalReverseAndBoundBlock) {
  EXPECT_TRUE(KrGeLine3d::kYAxis.isEqualTo(KrGeLine3d(KrGePoint3d(), KrGePoint3d(0, 1, 0))));
  KrGeLine3d line(KrGePoint3d(2, 3, 4), KrGeVector3d(1, -2, 0));
  line.reverseParam();
  EXPECT_EQ(line.evalPoint(1.0), KrGePoint3d(1, 5, 4));
  EXPECT_FALSE(line.setInterval(KrGeInterval(0.0, 5.0)));
  EXPECT_TRUE(line.setInterval(KrGeInterval()));
  KrGeInterval range(0.0, 1.0);
  line.getInterval(range);
  EXPECT_TRUE(range.isUnBounded());
  EXPECT_FALSE(range.isBoundedBelow());
  KrGePoint3d low, high;
  KrGeLine3d().boundBlock().getMinMaxPoints(low, high);
  EXPECT_EQ(low, KrGePoint3d(-1e12 + 1e-8, 1e-8, 1e-8));
  EXPECT_EQ(high, KrGePoint3d(1e12 + 1e-8, 1e-8, 1e-8));
  KrGeLine3d().orthoBoundBlock(KrGeInterval(false, 2.0)).getMinMaxPoints(low, high);
  EXPECT_EQ(high, KrGePoint3d(2, 1e-8, 1e-8));
}
