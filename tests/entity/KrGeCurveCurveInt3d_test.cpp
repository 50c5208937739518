// The intersection object: the result model, its deliberate oddities, the candidate test against
// ranges and degenerate curves, the configurations, and its reports.
#include "tests/entity/EntityKit.h"

using testkit::MonitorCapture;
using Config = KrGe::KrGeXConfig;

namespace {
const KrGePoint3d kX(1, 2, 0);  // where the two crossing segments meet
const KrGeLineSeg3d kAlongX(KrGePoint3d(-3, 2, 0), KrGePoint3d(5, 2, 0));
const KrGeLineSeg3d kAlongY(KrGePoint3d(1, -1, 0), KrGePoint3d(1, 7, 0));
}  // namespace

// kX is at parameter 0.5 on kAlongX: a range that stops short of it excludes it. A zero-length
// segment has no usable parameter: it is tested with isOn instead of its range.
TEST(KrGeCurveCurveInt3d, Set_CandidatesWithinTheRangesOrOnDegenerateCurves) {
  const KrGeLineSeg3d dot(kX, kX), offDot(kX + KrGeVector3d(0, 1e-3, 0), kX + KrGeVector3d(0, 1e-3, 0));
  const struct {
    const KrGeCurve3d *a, *b;
    double lower, upper;
    int count;
  } rows[] = {{&kAlongX, &kAlongY, 0, 1, 1}, {&kAlongX, &kAlongY, 0, 0.49, 0}, {&kAlongX, &kAlongY, 0.5, 0.6, 1},
              {&kAlongX, &dot, 0, 1, 1},     {&dot, &kAlongY, 0, 1, 1},          {&kAlongX, &offDot, 0, 1, 0}};
  for (const auto& row : rows) {
    const KrGeCurveCurveInt3d crossing(*row.a, *row.b, KrGeInterval(row.lower, row.upper), KrGeInterval(0, 1));
    ASSERT_EQ(crossing.numIntPoints(), row.count) << &row - rows;
    EXPECT_TRUE(within(crossing.intPoint(0), row.count ? kX : KrGePoint3d::kOrigin, 1e-15));
  }
  KrGeInterval range1, range2(5.0, 6.0);
  KrGeCurveCurveInt3d(kAlongX, kAlongY).getIntRanges(range1, range2);
  EXPECT_TRUE(range2 == KrGeInterval(0, 1));
}

// Index 4 is accepted without a report; in reversed order index i reads slot count - 1 - i.
TEST(KrGeCurveCurveInt3d, Indexes_FourIsAcceptedReversedOrderReadsFromTheEnd) {
  ASSERT_TRUE(MonitorCapture::active());
  KrGeCurveCurveInt3d crossing(kAlongX, kAlongY);
  KrGePointOnCurve3d onCurve;
  KrGe::KrGeXConfig c1 = KrGe::kUnknown, c2 = KrGe::kUnknown;
  const auto records = recordsOf([&] {
    EXPECT_EQ(crossing.intPoint(4), KrGePoint3d::kOrigin);
    EXPECT_EQ(crossing.intPoint(5), KrGePoint3d::kOrigin);
    EXPECT_EQ(crossing.intPoint(-1), KrGePoint3d::kOrigin);
    crossing.getPointOnCurve1(7, onCurve);
    crossing.getPointOnCurve2(-2, onCurve);
    crossing.getIntConfigs(9, c1, c2);
  });
  EXPECT_EQ(countAssertions(records, "(intNum < 0 || intNum > 4)"), 1);
  EXPECT_EQ(countAssertions(records, "(intNum<0 || intNum>4)"), 3);
  EXPECT_EQ(c1, KrGe::kNotDefined);
  crossing.changeCurveOrder();
  EXPECT_TRUE(within(crossing.intPoint(0), kX, 1e-15));
  EXPECT_EQ(crossing.intPoint(1), KrGePoint3d::kOrigin);
  EXPECT_EQ(crossing.intPoint(INT_MIN), KrGePoint3d::kOrigin);  // found by fuzzing: no slot, no overflow
  crossing.getPointOnCurve2(0, onCurve);
  EXPECT_EQ(onCurve.curve(), &kAlongY);
  EXPECT_DOUBLE_EQ(onCurve.parameter(), 3.0 / 8.0);
}

// The operations that are not provided only report, once each, and touch nothing.
TEST(KrGeCurveCurveInt3d, NotProvided_ReportOncePerOperationAndLeaveOutputs) {
  ASSERT_TRUE(MonitorCapture::active());
  KrGeCurveCurveInt3d crossing(kAlongX, kAlongY);
  double p1 = 7.0, p2 = 8.0;
  KrGeInterval r1(2.0, 3.0), r2(4.0, 5.0);
  const auto records = recordsOf([&] {
    for (int round = 0; round < 2; ++round) {
      crossing.getIntParams(0, p1, p2);
      EXPECT_EQ(crossing.intPointTol(0), 0.0);
      EXPECT_EQ(crossing.overlapCount(), 0);
      crossing.getOverlapRanges(0, r1, r2);
      EXPECT_FALSE(crossing.overlapDirection());  // one point only
      crossing.orderWrt1();
      crossing.orderWrt2();
    }
  });
  EXPECT_EQ(countAssertions(records, "(((HRESULT)0x80004001L))"), 7);
  EXPECT_EQ(p1, 7.0);
  EXPECT_EQ(p2, 8.0);
  EXPECT_TRUE(r1 == KrGeInterval(2.0, 3.0));
}

// Copies share the borrowed curves; transformBy moves the stored points only.
TEST(KrGeCurveCurveInt3d, Value_CopiesShareCurvesTransformMovesPoints) {
  const KrGeCurveCurveInt3d crossing(kAlongX, kAlongY, KrGeVector3d(0, 0, 2), tolerance(1e-6, 1e-10));
  KrGeCurveCurveInt3d assigned(kAlongY, kAlongX);
  assigned = crossing;
  std::unique_ptr<KrGeEntity3d> copied(crossing.copy());
  EXPECT_TRUE(*copied == crossing);
  EXPECT_EQ(assigned.curve1(), &kAlongX);
  EXPECT_EQ(assigned.curve2(), &kAlongY);
  EXPECT_EQ(assigned.planeNormal(), KrGeVector3d(0, 0, 2));
  EXPECT_EQ(assigned.tolerance().equalPoint(), 1e-6);
  EXPECT_TRUE(assigned.isOn(kX + KrGeVector3d(0, 0, 1e-6), tolerance(1e-6, 1e-10)));
  EXPECT_FALSE(assigned.isOn(kX + KrGeVector3d(0, 0, 2e-6), tolerance(1e-6, 1e-10)));
  assigned.translateBy(KrGeVector3d(0, 0, 1));
  EXPECT_TRUE(assigned.isOn(kX + KrGeVector3d(0, 0, 1)));
  EXPECT_TRUE(assigned != crossing);
  EXPECT_FALSE(KrGeCurveCurveInt3d(kAlongY, kAlongX) == crossing);
}

// Seen from +Z: curve 1 against the other's direction, before and after the point, and the
// reverse; a segment that starts or ends at the point has no side there; colinear segments
// overlap. A normal of -Z swaps left and right.
TEST(KrGeCurveCurveInt3d, Configs_LinesCrossTouchEndAndOverlap) {
  const KrGeLineSeg3d fromX(kX, KrGePoint3d(1, 9, 0)), toX(KrGePoint3d(1, -4, 0), kX);
  const KrGeLineSeg3d alongXAgain(KrGePoint3d(4, 2, 0), KrGePoint3d(9, 2, 0));
  const KrGeCircArc3d circle(KrGePoint3d(5, 5, 0), KrGeVector3d(0, 0, 1), 3.0);
  const KrGeLine3d touch(KrGePoint3d(0, 8, 0), KrGeVector3d(1, 0, 0));
  const struct {
    const char* name;
    const KrGeCurve3d* a;
    const KrGeCurve3d* b;
    double normalZ;
    Config wanted1, wanted2;
    bool tangential;
  } rows[] = {
      {"cross", &kAlongX, &kAlongY, 1, KrGe::kLeftRight, KrGe::kRightLeft, false},
      {"cross seen from below", &kAlongX, &kAlongY, -1, KrGe::kRightLeft, KrGe::kLeftRight, false},
      {"starts there", &fromX, &kAlongX, 1, KrGe::kPointLeft, KrGe::kLeftRight, false},
      {"ends there", &toX, &kAlongX, 1, KrGe::kPointRight, KrGe::kLeftRight, false},
      // The one point of colinear segments is where the second one begins.
      {"colinear overlap", &kAlongX, &alongXAgain, 1, KrGe::kOverlapOverlap, KrGe::kOverlapStart, true},
      // On top of the counter-clockwise circle: each lies right of the other.
      {"line touching a circle", &circle, &touch, 1, KrGe::kRightRight, KrGe::kRightRight, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const KrGeCurveCurveInt3d crossing(*row.a, *row.b, KrGeVector3d(0, 0, row.normalZ));
    ASSERT_EQ(crossing.numIntPoints(), 1);
    Config c1 = KrGe::kNotDefined, c2 = KrGe::kNotDefined;
    crossing.getIntConfigs(0, c1, c2);
    EXPECT_EQ(c1, row.wanted1);
    EXPECT_EQ(c2, row.wanted2);
    EXPECT_EQ(crossing.isTangential(0), row.tangential);
    EXPECT_EQ(crossing.isTransversal(0), !row.tangential);
  }
  Config c1 = KrGe::kNotDefined, c2 = KrGe::kNotDefined;
  KrGeCurveCurveInt3d(kAlongX, kAlongY, KrGeVector3d(0, 0, 0)).getIntConfigs(0, c1, c2);
  EXPECT_EQ(c1, KrGe::kUnknown);
  EXPECT_FALSE(KrGeCurveCurveInt3d().isTangential(0));
}

// A line through a circle: seen from +Z the line enters the counter-clockwise circle from its
// right (outside) and leaves it to the right; orderWrt1 sorts the points along the line.
TEST(KrGeCurveCurveInt3d, LineAndCircle_OrderAndConfigs) {
  const KrGeCircArc3d circle(KrGePoint3d(5, 5, 0), KrGeVector3d(0, 0, 1), 3.0);
  const KrGeLine3d cut(KrGePoint3d(0, 4, 0), KrGeVector3d(1, 0, 0));
  KrGeCurveCurveInt3d crossing(cut, circle);
  ASSERT_EQ(crossing.numIntPoints(), 2);
  crossing.orderWrt1();
  const double x[2] = {5 - std::sqrt(8.0), 5 + std::sqrt(8.0)};
  const Config lineWanted[2] = {KrGe::kRightLeft, KrGe::kLeftRight};
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(within(crossing.intPoint(i), KrGePoint3d(x[i], 4, 0), 1e-14)) << i;
    Config c1 = KrGe::kNotDefined, c2 = KrGe::kNotDefined;
    crossing.getIntConfigs(i, c1, c2);
    EXPECT_EQ(c1, lineWanted[i]) << i;
    EXPECT_EQ(c2, lineWanted[i] == KrGe::kRightLeft ? KrGe::kLeftRight : KrGe::kRightLeft) << i;
  }
  EXPECT_TRUE(crossing.overlapDirection());  // below its centre the circle runs along +X as the line does
  crossing.changeCurveOrder();
  EXPECT_TRUE(within(crossing.intPoint(0), KrGePoint3d(x[1], 4, 0), 1e-14));
}

// Random coplanar circles and lines in random planes, sizes 1e-3 to 1e5: as many points as the
// textbook count (two where the distance of centre to line, or of centres, allows a crossing),
// each on both curves within the tolerance.
TEST(KrGeCurveCurveInt3d, RandomCirclesAndLines_EveryCrossingFoundOnBothCurves) {
  repeat(43, 3000, [](Random& random, int trial) {
    const double r1 = random.magnitude(-3, 5), scale = r1 * random.magnitude(-1, 1);
    const KrGeVector3d normal = random.unitVector();
    const KrGePoint3d c1 = random.point(1e3);
    const KrGeVector3d side = normal.crossProduct(random.unitVector()).normal();
    const double gap = random.uniform(0.05, 0.95);
    const KrGeTol tol = tolerance(1e-9 * (r1 + scale + c1.asVector().length()), 1e-10);
    const KrGeCircArc3d first(c1, normal, r1);
    // A circle whose centre is `gap` of the way between the two tangent positions, or a line at
    // gap * r1 from the centre.
    const double d = std::fabs(r1 - scale) + gap * (r1 + scale - std::fabs(r1 - scale));
    const std::unique_ptr<KrGeCurve3d> second(
        trial % 2 ? static_cast<KrGeCurve3d*>(new KrGeLine3d(c1 + side * (gap * r1), normal.crossProduct(side)))
                  : new KrGeCircArc3d(c1 + side * d, normal, scale));
    const KrGeCurveCurveInt3d crossing(first, *second, normal, tol);
    ASSERT_EQ(crossing.numIntPoints(), 2);
    for (int i = 0; i < 2; ++i) {
      EXPECT_TRUE(first.isOn(crossing.intPoint(i), tol)) << i;
      EXPECT_TRUE(second->isOn(crossing.intPoint(i), tol)) << i;
      EXPECT_TRUE(crossing.isTransversal(i)) << i;
    }
  });
}
