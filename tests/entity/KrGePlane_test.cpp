// Planes: construction and the fallbacks of every setter, the reversed flag, transformation,
// intersections with lines and planes against independent checks, closest points, relations and
// evaluation.
#include <tuple>

#include "tests/entity/EntityKit.h"

namespace {

KrGeVector3d unit(const KrGeVector3d& v) { return v / v.length(); }

// Height of a point above the plane, in long double from its origin and unit normal.
double heightAbove(const KrGePlane& plane, const KrGePoint3d& point) {
  const KrGePoint3d o = plane.pointOnPlane();
  const KrGeVector3d n = plane.normal();
  return (double)(((long double)point.x - o.x) * n.x + ((long double)point.y - o.y) * n.y +
                  ((long double)point.z - o.z) * n.z);
}

struct Frame {
  KrGePoint3d origin;
  KrGeVector3d u, v;
};
Frame frameOf(const KrGePlane& plane) {
  Frame frame;
  plane.get(frame.origin, frame.u, frame.v);
  return frame;
}

// A usable frame: axes not parallel, and a unit normal along U x V (against it when reversed).
void expectSoundFrame(const KrGePlane& plane) {
  const Frame frame = frameOf(plane);
  EXPECT_FALSE(frame.u.isParallelTo(frame.v));
  EXPECT_TRUE(within(plane.normal(), unit(frame.u.crossProduct(frame.v)) * (plane.isNormalReversed() ? -1 : 1), 1e-15));
}

// The warnings sent while `action` runs equal `text` once, or none for null.
template <class Action>
void expectWarning(const char* text, Action action) {
  EXPECT_EQ(warningsIn(recordsOf(action)), text ? std::vector<std::string>{warningText(text)} : std::vector<std::string>{});
}

}  // namespace

TEST(KrGePlane, Construct_FromCoefficientsThreePointsAndTheStatics) {
  EXPECT_EQ(KrGePlane::kZXPlane.normal(), KrGeVector3d::kYAxis);
  const KrGePlane plane(0, 0, 1, -5);  // the origin nearest to the world origin
  EXPECT_EQ(plane.pointOnPlane(), KrGePoint3d(0, 0, 5));
  const Frame frame = frameOf(KrGePlane(KrGePoint3d(4, 1, 1), KrGePoint3d(1, 1, 1), KrGePoint3d(1, 1, 3)));
  EXPECT_EQ(frame.u, KrGeVector3d(3, 0, 0));
  EXPECT_EQ(frame.v, KrGeVector3d(0, 0, 2));
  repeat(11, 200, [](Random& random, int) {
    const KrGeVector3d n = random.unitVector() * random.magnitude(-3, 3);
    const double d = random.uniform(-1, 1) * random.magnitude(-3, 3);
    double a, b, c, dd;
    KrGePlane(n.x, n.y, n.z, d).getCoefficients(a, b, c, dd);
    EXPECT_TRUE(within(KrGeVector3d(a, b, c), unit(n), 2e-15));
    EXPECT_NEAR(dd, d / n.length(), 1e-13 * (1 + std::fabs(d / n.length())));
  });
}

// A zero or non-finite normal becomes +Z with its warning (also from coefficients, where the
// division is not guarded); a tiny one is still a direction.
TEST(KrGePlane, Set_DegenerateNormalFallsBackToZWithItsWarning) {
  const char* const warning = "KrPlanarEntImpl::set - degenerated normal, OZ used";
  const std::pair<KrGeVector3d, bool> rows[] = {
      {{0, 0, 0}, true}, {{kNaN, 0, 1}, true}, {{kInf, 0, 0}, true}, {{0, 1e-300, 0}, false}, {{0, 3e200, 0}, false}};
  for (const auto& [normal, degenerate] : rows) {
    SCOPED_TRACE(testing::Message() << normal.x << " " << normal.y);
    KrGePlane plane;
    expectWarning(degenerate ? warning : nullptr, [&, n = normal] { plane.set(KrGePoint3d(1, 2, 3), n); });
    EXPECT_TRUE(within(plane.normal(), degenerate ? KrGeVector3d::kZAxis : KrGeVector3d::kYAxis, 1e-15));
    expectSoundFrame(plane);
  }
  KrGePlane plane;
  expectWarning(warning, [&] { plane.set(0, 0, 0, 5); });
  EXPECT_EQ(plane.normal(), KrGeVector3d::kZAxis);
}

// Parallel axes that are both usable are kept as they are and leave a zero normal.
TEST(KrGePlane, Set_DegenerateAxesFallBackWithTheWarningThatNamesTheFallback) {
  const KrGeVector3d u(2, 0, 0), v(0, 3, 0), zero, nan(kNaN, 0, 0);
  const char* const vFallback = "plane::set(or, uAxis, vAxis) - degenerated V axis, use U, pU, U x pU";
  const char* const axesFallback = "plane::set(or, uAxis, vAxis) - degenerated axes, use X, Y, Z";
  const std::tuple<const char*, KrGeVector3d, KrGeVector3d, const char*> rows[] = {
      {"V zero", u, zero, vFallback},
      {"V parallel and at the zero-length tolerance", u, {-1e-10, 0, 0}, vFallback},
      {"V not finite", u, nan, vFallback},
      {"U zero", zero, v, "plane::set(or, uAxis, vAxis) - degenerated U axis, use V, pV, pV x V"},
      {"both zero", zero, zero, axesFallback},
      {"both not finite", nan, {0, kInf, 0}, axesFallback},
      {"short but not parallel", u, {0, 1e-11, 0}, nullptr},
      {"skew", u, {1, 1, 0}, nullptr}};
  for (const auto& [name, uAxis, vAxis, warning] : rows) {
    SCOPED_TRACE(name);
    KrGePlane plane;
    expectWarning(warning, [&, axisU = uAxis, axisV = vAxis] { plane.set(KrGePoint3d(1, 1, 1), axisU, axisV); });
    expectSoundFrame(plane);
  }
  KrGePlane plane;
  expectWarning(nullptr, [&] { plane.set(KrGePoint3d(), u, u * -1.0); });
  EXPECT_EQ(plane.normal().lengthSqrd(), 0.0);
}

// Random planes on skew axes: paramOf inverts evalPoint (a point off the plane gets its foot's
// parameters); a mirror toggles the reversed flag, the normal being the image of the old one, and
// twice restores the plane; getCoordSystem is orthonormal along U on the side of V; a
// transformation maps the plane onto the images of its points with the normal following.
TEST(KrGePlane, RandomPlanes_EvaluationMirrorFrameAndTransform) {
  repeat(404, 300, [](Random& random, int) {
    const KrGeVector3d u = random.unitVector() * random.magnitude(-2, 2);
    const KrGeVector3d v = random.tilted(unit(u), random.uniform(0.05, 3.0)) * random.magnitude(-2, 2);
    const KrGePlane original(random.point(100), u, v);
    const KrGePoint3d point = original.evalPoint(KrGePoint2d(random.uniform(-50, 50), random.uniform(-50, 50)));
    const double size = std::max(1.0, point.asVector().length());
    KrGePoint2d onParam;
    EXPECT_TRUE(original.isOn(point, onParam, tolerance(1e-9 * size, 1e-9)));
    EXPECT_LE(original.evalPoint(onParam).distanceTo(point), 1e-12 * size);
    EXPECT_LE(original.evalPoint(original.paramOf(point + original.normal() * 7.0)).distanceTo(point), 1e-11 * size);

    const KrGePlane mirrorPlane(random.point(10), random.unitVector());
    KrGePlane plane(original);
    plane.mirror(mirrorPlane);
    KrGeVector3d mirroredNormal = original.normal();
    EXPECT_TRUE(plane.isNormalReversed());
    expectSoundFrame(plane);
    EXPECT_TRUE(within(plane.normal(), mirroredNormal.mirror(mirrorPlane.normal()), 1e-12));
    const Frame frame = frameOf(plane);
    KrGePoint3d origin;
    KrGeVector3d axis1, axis2;
    plane.getCoordSystem(origin, axis1, axis2);
    EXPECT_TRUE(within(axis1, unit(frame.u), 1e-15));
    EXPECT_TRUE(within(axis1.crossProduct(axis2), unit(frame.u.crossProduct(frame.v)), 1e-12));
    EXPECT_GT(axis2.dotProduct(frame.v), 0.0);
    plane.mirror(mirrorPlane);
    EXPECT_TRUE(plane.isEqualTo(original, tolerance(1e-12)));

    const KrGeMatrix3d matrix = KrGeMatrix3d::rotation(random.uniform(-3, 3), random.unitVector(), random.point(10)) *
                                KrGeMatrix3d::scaling(random.uniform(0.1, 10), random.point(10));
    plane.transformBy(matrix);
    EXPECT_FALSE(plane.isNormalReversed());
    EXPECT_NEAR(heightAbove(plane, matrix * point), 0.0, 1e-7 * size);
    EXPECT_GT(plane.signedDistanceTo(matrix * (original.pointOnPlane() + original.normal())), 0.0);
  });
  KrGePlane plane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 1));
  plane.reverseNormal();
  EXPECT_EQ(plane.signedDistanceTo(KrGePoint3d(0, 0, 3)), -2.0);
  plane.set(KrGePoint3d(), KrGeVector3d(0, 1, 0));  // keeps the flag: a left-handed frame
  EXPECT_EQ(plane.normal(), KrGeVector3d(0, 1, 0));
  expectSoundFrame(plane);
}

// Axes that collapse are repaired with a warning that names the repair; the reversed flag toggles
// only for a determinant below -1e-10.
TEST(KrGePlane, TransformBy_RepairsCollapsedAxesAndTogglesTheFlagOnlyBelowTheThreshold) {
  const char* const both = "KrPlanarEntImpl::transformBy, result - degenerated U, V, use X, Y";
  const std::tuple<KrGeVector3d, const char*, bool> rows[] = {
      {{0, 1, 1}, "KrPlanarEntImpl::transformBy, result - degenerated U, use pV", false},
      {{1, 0, 1}, "KrPlanarEntImpl::transformBy, result - degenerated V, use pU", false},
      {{0, 0, 0}, both, false},
      {{kNaN, kNaN, kNaN}, both, false},
      {{1, 1, -1}, nullptr, true},
      {{1, 1, -2e-10}, nullptr, true},
      {{1, 1, -1e-10}, nullptr, false}};
  for (const auto& [diagonal, warning, reversed] : rows) {
    SCOPED_TRACE(testing::Message() << diagonal.x << " " << diagonal.y << " " << diagonal.z);
    KrGeMatrix3d matrix;
    for (int i = 0; i < 3; ++i) matrix.entry[i][i] = diagonal[i];
    KrGePlane plane(KrGePoint3d(), KrGeVector3d(2, 0, 0), KrGeVector3d(0, 3, 0));
    expectWarning(warning, [&] { plane.transformBy(matrix); });
    EXPECT_EQ(plane.isNormalReversed(), reversed);
    expectSoundFrame(plane);
  }
}

// Both results lie on both entities to 1e-9 relative. For nearly parallel planes the direction of
// the common line is good to about 1e-16 / sin(angle), and far along such a pair the points run
// off, so heights are relative to where the points are.
TEST(KrGePlane, Intersections_SatisfyBothEntitiesOnRandomInput) {
  int hits = 0;
  repeat(101, 2000, [&](Random& random, int) {
    const double scale = random.magnitude(-3, 6);
    const KrGePlane first(random.point(scale), random.unitVector());
    const KrGePoint3d lineOrigin = random.point(scale);
    const KrGeVector3d lineDirection = random.unitVector() * random.magnitude(-2, 2);
    const KrGeLine3d line(lineOrigin, lineDirection);
    KrGePoint3d hit;
    if (first.intersectWith(line, hit)) {
      ++hits;
      const double size = std::max({scale, hit.asVector().length(), 1.0});
      EXPECT_LE(std::fabs(heightAbove(first, hit)), 1e-9 * size);
      EXPECT_LE(line.distanceTo(hit), 1e-9 * size);
    } else {
      EXPECT_LE(std::fabs(lineDirection.dotProduct(first.normal())), KrGeContext::gTol.equalVector());
    }
    const double angle = random.magnitude(-6, 0.2);
    const KrGeVector3d otherNormal = random.tilted(first.normal(), angle);
    const KrGePlane second(random.point(scale), otherNormal * random.magnitude(-3, 3));
    KrGeLine3d common, reversed;
    ASSERT_TRUE(first.intersectWith(second, common));
    ASSERT_TRUE(second.intersectWith(first, reversed));
    const double directionError = 1e-15 / std::sin(std::min(angle, 1.5));
    EXPECT_NEAR(common.direction().dotProduct(first.normal()), 0.0, directionError);
    EXPECT_NEAR(common.direction().dotProduct(second.normal()), 0.0, directionError);
    const KrGePoint3d point = common.pointOnLine();
    const double size = std::max({scale, point.asVector().length(), reversed.pointOnLine().asVector().length(), 1.0});
    EXPECT_LE(std::fabs(heightAbove(first, point)) + std::fabs(heightAbove(second, point)), 1e-9 * size);
    EXPECT_TRUE(common.isColinearTo(reversed, tolerance(1e-9 * size, 1e-9)));
  });
  EXPECT_GT(hits, 1900);
}

// Parallel when |d . n| <= equalVector for the stored, not normalised, direction (normals alike
// for planes, which then leave the line untouched); a segment must also reach the plane, through
// every entry point.
TEST(KrGePlane, Intersections_ParallelAndShortEntitiesDoNotMeet) {
  const KrGePlane plane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 1));
  const KrGeTol tol = tolerance(1e-9, 1e-6), segmentTol = tolerance(1e-6, 1e-9);
  const std::pair<KrGeVector3d, bool> lines[] = {
      {{1, 0, 1e-6}, false}, {{1, 0, 2e-6}, true}, {{1000, 0, 9e-7}, false}, {{1e-3, 0, 2e-6}, true},
      {{-5, 3, 0}, false},   {{0, 0, 0}, false},   {{0, 0, kNaN}, false}};
  for (const auto& [direction, meets] : lines) {
    SCOPED_TRACE(testing::Message() << direction.x << " " << direction.z);
    KrGePoint3d hit(7, 7, 7);
    EXPECT_EQ(plane.intersectWith(KrGeLine3d(KrGePoint3d(), direction), hit, tol), meets);
    EXPECT_EQ(std::fabs(hit.z - 1.0) < 1e-12, meets);
  }
  const std::pair<KrGeVector3d, bool> planes[] = {
      {{0, 0, 5}, false}, {{0, 0, -1}, false}, {{0.5e-6, 0, 1}, false}, {{0, 3e-6, -1}, true}, {{1, 0, 0}, true}};
  for (const auto& [normal, meets] : planes) {
    SCOPED_TRACE(testing::Message() << normal.x << " " << normal.y << " " << normal.z);
    KrGeLine3d line(KrGePoint3d(9, 9, 9), KrGeVector3d(1, 0, 0));
    EXPECT_EQ(plane.intersectWith(KrGePlane(KrGePoint3d(0, 0, 4), normal), line, tol), meets);
    EXPECT_EQ(line.pointOnLine().x == 9.0, !meets);
  }
  const std::pair<double, bool> segments[] = {{2.0, true}, {1.0, true}, {1 - 0.5e-6, true}, {1 - 2e-6, false}};
  for (const auto& [topZ, meets] : segments) {
    SCOPED_TRACE(topZ);
    const KrGeLineSeg3d segment(KrGePoint3d(1, 1, -1), KrGePoint3d(1, 1, topZ));
    KrGePoint3d hit;
    EXPECT_EQ(plane.intersectWith(segment, hit, segmentTol), meets);
    EXPECT_EQ(static_cast<const KrGePlanarEnt&>(plane).intersectWith(segment, hit, segmentTol), meets);
    EXPECT_EQ(segment.intersectWith(plane, hit, segmentTol), meets);
  }
}

// Crossing: the crossing, twice; parallel: the line's origin and its foot; segments against a
// sampled minimum of |height|. Between planes: the common line's point nearest this origin.
TEST(KrGePlane, ClosestPoints_ToLinearAndPlanarEntities) {
  const KrGePlane plane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 2));
  KrGePoint3d onLine;
  KrGePoint3d onPlane = plane.closestPointToLinearEnt(KrGeLine3d(KrGePoint3d(1, 2, 5), KrGeVector3d(1, 0, -2)), onLine);
  EXPECT_TRUE(within(onPlane, KrGePoint3d(3, 2, 1), 1e-15));
  EXPECT_TRUE(within(onLine, onPlane, 1e-15));
  onPlane = plane.closestPointToLinearEnt(KrGeLine3d(KrGePoint3d(1, 2, 5), KrGeVector3d(1, 1, 0)), onLine);
  EXPECT_EQ(onPlane, KrGePoint3d(1, 2, 1));
  plane.closestPointToLinearEnt(KrGeLineSeg3d(KrGePoint3d(2, 0, 1), KrGePoint3d(4, 0, 4)), onLine);
  EXPECT_TRUE(within(onLine, KrGePoint3d(2, 0, 1), 0.0));  // exact at an end on the plane
  repeat(303, 500, [](Random& random, int) {
    const KrGePlane other(random.point(10), random.unitVector());
    const KrGeLineSeg3d segment(random.point(10), random.point(10));
    KrGePoint3d onSegment;
    const KrGePoint3d onOther = other.closestPointToLinearEnt(segment, onSegment);
    EXPECT_LE(segment.distanceTo(onSegment) + std::fabs(other.signedDistanceTo(onOther)), 1e-12);
    double smallest = 1e300;
    for (int k = 0; k <= 1000; ++k)
      smallest = std::min(smallest, std::fabs(other.signedDistanceTo(segment.evalPoint(k / 1000.0))));
    EXPECT_LE(onOther.distanceTo(onSegment), smallest + 1e-12);
  });
  const KrGePlane ground(KrGePoint3d(3, 4, 0), KrGeVector3d(0, 0, 1));
  KrGePoint3d onOther;
  onPlane = ground.closestPointToPlanarEnt(KrGePlane(KrGePoint3d(0, 0, 7), KrGeVector3d(0, 0, -1)), onOther);
  EXPECT_EQ(onOther, KrGePoint3d(3, 4, 7));
  onPlane = ground.closestPointToPlanarEnt(KrGePlane(KrGePoint3d(1, 0, 0), KrGeVector3d(1, 0, 0)), onOther);
  EXPECT_TRUE(within(onPlane, KrGePoint3d(1, 4, 0), 1e-15));
}

TEST(KrGePlane, Relations_ParallelPerpendicularCoplanarAndIsOnOnBothSidesOfTheTolerance) {
  const KrGeTol tol = tolerance(1e-6, 1e-6);
  const KrGePlane plane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 1));
  const KrGePoint3d o;
  EXPECT_TRUE(plane.isParallelTo(KrGePlane(o, KrGeVector3d(0.5e-6, 0, -1)), tol));
  EXPECT_FALSE(plane.isParallelTo(KrGePlane(o, KrGeVector3d(3e-6, 0, -1)), tol));
  EXPECT_TRUE(plane.isCoplanarTo(KrGePlane(KrGePoint3d(5, 5, 1 + 0.5e-6), KrGeVector3d(0, 0, -1)), tol));
  EXPECT_FALSE(plane.isCoplanarTo(KrGePlane(KrGePoint3d(5, 5, 1 + 2e-6), KrGeVector3d(0, 0, -1)), tol));
  // Its origin on this plane, parallel within the tolerance, but this origin half a unit off it.
  EXPECT_FALSE(plane.isCoplanarTo(KrGePlane(KrGePoint3d(1e6, 0, 1), KrGeVector3d(0.5e-6, 0, 1)), tol));
  EXPECT_TRUE(plane.isPerpendicularTo(KrGePlane(o, KrGeVector3d(1, 0, 1e-6)), tol));
  EXPECT_FALSE(plane.isPerpendicularTo(KrGePlane(o, KrGeVector3d(1, 0, 2e-6)), tol));
  EXPECT_TRUE(plane.isParallelTo(KrGeLine3d(o, KrGeVector3d(1, 0, 1e-6)), tol));
  EXPECT_FALSE(plane.isParallelTo(KrGeLine3d(o, KrGeVector3d(1, 0, 2e-6)), tol));
  EXPECT_TRUE(plane.isParallelTo(KrGeLine3d(o, KrGeVector3d(0, 0, 0)), tol));
  EXPECT_TRUE(plane.isPerpendicularTo(KrGeLineSeg3d(o, KrGePoint3d(0.5e-6, 0, -1)), tol));
  EXPECT_FALSE(plane.isPerpendicularTo(KrGeLineSeg3d(o, KrGePoint3d(3e-6, 0, -1)), tol));
  EXPECT_TRUE(plane.isOn(KrGePoint3d(100, -100, 1 + 1e-6), tol));
  EXPECT_FALSE(plane.isOn(KrGePoint3d(100, -100, 1 + 2e-6), tol));
  EXPECT_EQ(plane.distanceTo(KrGePoint3d(4, 5, -2)), 3.0);
}

// Derivatives by total order (Su, Sv, Suu, Suv, Svv, ...), n(n+3)/2 of them up to order 256; a
// negative order and one beyond the limit (where the count would overflow or exhaust memory) are
// reported and give no derivative.
TEST(KrGePlane, Evaluate_DerivativesComeByTotalOrderWithinTheLimit) {
  const KrGePlane plane(KrGePoint3d(1, 2, 3), KrGeVector3d(2, 0, 0), KrGeVector3d(1, 1, 0));
  KrsArray<KrGeVector3d> derivatives;
  KrGeVector3d normal;
  EXPECT_EQ(plane.evalPoint(KrGePoint2d(2, 3), 2, derivatives, normal), KrGePoint3d(8, 5, 3));
  ASSERT_EQ(derivatives.GetSize(), 5);
  EXPECT_EQ(derivatives[1], KrGeVector3d(1, 1, 0));
  EXPECT_EQ(normal, KrGeVector3d(0, 0, 1));
  EXPECT_EQ(derivatives[2].lengthSqrd() + derivatives[3].lengthSqrd() + derivatives[4].lengthSqrd(), 0.0);
  plane.evalPoint(KrGePoint2d(2, 3), 256, derivatives);
  EXPECT_EQ(derivatives.GetSize(), 33152);
  for (int order : {-1, 257, 46341, INT_MAX}) {
    const auto records = recordsOf([&] { EXPECT_EQ(plane.evalPoint(KrGePoint2d(2, 3), order, derivatives), KrGePoint3d(8, 5, 3)); });
    EXPECT_EQ(derivatives.GetSize(), 0) << order;
    EXPECT_EQ(countAssertions(records, order < 0 ? "(derivOrd<0)" : "(derivOrd>kMaxDerivOrder)"), order < 300) << order;
  }
}

// Copies and assignments are independent and keep the reversed flag, which takes part in equality.
TEST(KrGePlane, Value_CopyAndAssignmentKeepTheReversedFlag) {
  const KrGePlane plane(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 1, 0));
  KrGePlane assigned, other;
  static_cast<KrGePlanarEnt&>(assigned) = plane;
  EXPECT_TRUE(assigned == plane);
  other = assigned;
  other.reverseNormal();
  EXPECT_FALSE(other == assigned);
  std::unique_ptr<KrGeEntity3d> copy(other.copy());
  EXPECT_TRUE(static_cast<KrGePlane&>(*copy).isNormalReversed());
}
