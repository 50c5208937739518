#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGeMatrix3d.h"
#include "KrGePlane.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tests/entity/LinearTestKit.h"

using linear_test::countAssertions;
using linear_test::warningText;
using testkit::MonitorCapture;

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

KrGeTol tolerance(double point, double vector) {
  KrGeTol tol;
  tol.setEqualPoint(point);
  tol.setEqualVector(vector);
  return tol;
}

// Messages of the warning records sent since the last clear().
std::vector<std::string> warningsSent() {
  std::vector<std::string> messages;
  for (const auto& record : MonitorCapture::drain())
    if (record.message.rfind("WARNING", 0) == 0) messages.push_back(record.message);
  return messages;
}

KrGeVector3d unit(const KrGeVector3d& v) { return v / v.length(); }

// Distance from a point to the plane through `origin` with unit `normal`, in long double.
double heightAbove(const KrGePoint3d& origin, const KrGeVector3d& normal, const KrGePoint3d& point) {
  return (double)(((long double)point.x - origin.x) * normal.x + ((long double)point.y - origin.y) * normal.y +
                  ((long double)point.z - origin.z) * normal.z);
}

void expectNear(const KrGeVector3d& actual, const KrGeVector3d& expected, double tol) {
  EXPECT_NEAR(actual.x, expected.x, tol);
  EXPECT_NEAR(actual.y, expected.y, tol);
  EXPECT_NEAR(actual.z, expected.z, tol);
}
void expectNear(const KrGePoint3d& actual, const KrGePoint3d& expected, double tol) {
  expectNear(actual.asVector(), expected.asVector(), tol);
}

}  // namespace

TEST(KrGePlane, Construct_DefaultAndStaticPlanesHaveRightHandedNormals) {
  const KrGePlane plane;
  EXPECT_EQ(plane.pointOnPlane().asVector().lengthSqrd(), 0.0);
  EXPECT_EQ(plane.normal().z, 1.0);
  EXPECT_EQ(KrGePlane::kXYPlane.normal().z, 1.0);
  EXPECT_EQ(KrGePlane::kYZPlane.normal().x, 1.0);
  EXPECT_EQ(KrGePlane::kZXPlane.normal().y, 1.0);
  EXPECT_FALSE(KrGePlane::kXYPlane.isNormalReversed());
}

TEST(KrGePlane, Construct_FromCoefficientsPutsTheOriginNearestToTheWorldOrigin) {
  const KrGePlane plane(0, 0, 1, -5);
  expectNear(plane.pointOnPlane(), KrGePoint3d(0, 0, 5), 0.0);
  EXPECT_EQ(plane.signedDistanceTo(KrGePoint3d(0, 0, 7)), 2.0);
  EXPECT_EQ(plane.signedDistanceTo(KrGePoint3d(3, -4, 5)), 0.0);

  linear_test::Random random(11);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 200; ++i) {
    const KrGeVector3d n = random.unitVector() * random.magnitude(-3, 3);
    const double d = random.uniform(-1, 1) * random.magnitude(-3, 3);
    const KrGePlane coefficientPlane(n.x, n.y, n.z, d);
    double a, b, c, dd;
    coefficientPlane.getCoefficients(a, b, c, dd);
    const double length = n.length();
    EXPECT_NEAR(a, n.x / length, 1e-15);
    EXPECT_NEAR(b, n.y / length, 1e-15);
    EXPECT_NEAR(c, n.z / length, 1e-15);
    EXPECT_NEAR(dd, d / length, 1e-13 * (1 + std::fabs(d / length)));
  }
}

TEST(KrGePlane, Construct_ThreePointsTakeTheMiddleOneAsOrigin) {
  const KrGePoint3d pntU(4, 1, 1), org(1, 1, 1), pntV(1, 1, 3);
  const KrGePlane plane(pntU, org, pntV);
  KrGePoint3d origin, u, v;
  KrGeVector3d uAxis, vAxis;
  plane.get(origin, uAxis, vAxis);
  expectNear(origin, org, 0.0);
  expectNear(uAxis, KrGeVector3d(3, 0, 0), 0.0);
  expectNear(vAxis, KrGeVector3d(0, 0, 2), 0.0);
  expectNear(plane.normal(), KrGeVector3d(0, -1, 0), 0.0);  // (3,0,0) x (0,0,2) points to -Y
  plane.get(u, origin, v);
  expectNear(u, pntU, 0.0);
  expectNear(v, pntV, 0.0);
}

TEST(KrGePlane, Set_DegenerateNormalFallsBackToZWithItsWarning) {
  ASSERT_TRUE(MonitorCapture::active());
  const struct { const char* name; KrGeVector3d normal; bool degenerate; } rows[] = {
      {"zero", {0, 0, 0}, true},
      {"NaN", {kNaN, 0, 1}, true},
      {"infinite", {kInf, 0, 0}, true},
      {"tiny but not zero is a direction", {0, 1e-300, 0}, false},
      {"long", {0, 3e200, 0}, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    MonitorCapture::clear();
    const KrGePlane plane(KrGePoint3d(1, 2, 3), row.normal);
    const auto warnings = warningsSent();
    if (row.degenerate) {
      ASSERT_EQ(warnings.size(), 1u);
      EXPECT_EQ(warnings[0], warningText("KrPlanarEntImpl::set - degenerated normal, OZ used"));
      EXPECT_EQ(plane.normal().z, 1.0);
    } else {
      EXPECT_TRUE(warnings.empty());
      EXPECT_NEAR(plane.normal().y, 1.0, 1e-15);
    }
    KrGePoint3d origin;
    KrGeVector3d uAxis, vAxis;
    plane.get(origin, uAxis, vAxis);
    EXPECT_NEAR(uAxis.length(), 1.0, 1e-15);
    expectNear(uAxis.crossProduct(vAxis), plane.normal(), 1e-15);
  }
  MonitorCapture::clear();
  const KrGePlane fromCoefficients(0, 0, 0, 5);  // the division is not guarded
  EXPECT_EQ(warningsSent().size(), 1u);
  EXPECT_EQ(fromCoefficients.normal().z, 1.0);
  EXPECT_FALSE(std::isfinite(fromCoefficients.pointOnPlane().x));
}

TEST(KrGePlane, Set_DegenerateAxesFallBackWithTheWarningThatNamesTheFallback) {
  const KrGeVector3d u(2, 0, 0), v(0, 3, 0), zero, nan(kNaN, 0, 0);
  const struct {
    const char* name;
    KrGeVector3d uAxis, vAxis;
    const char* warning;  // null: none
  } rows[] = {
      {"V zero", u, zero, "plane::set(or, uAxis, vAxis) - degenerated V axis, use U, pU, U x pU"},
      {"V parallel and at the zero-length tolerance", u, {-1e-10, 0, 0},
       "plane::set(or, uAxis, vAxis) - degenerated V axis, use U, pU, U x pU"},
      {"V not finite", u, nan, "plane::set(or, uAxis, vAxis) - degenerated V axis, use U, pU, U x pU"},
      {"U zero", zero, v, "plane::set(or, uAxis, vAxis) - degenerated U axis, use V, pV, pV x V"},
      {"both zero", zero, zero, "plane::set(or, uAxis, vAxis) - degenerated axes, use X, Y, Z"},
      {"both not finite", nan, {0, kInf, 0}, "plane::set(or, uAxis, vAxis) - degenerated axes, use X, Y, Z"},
      {"short but not parallel", u, {0, 1e-11, 0}, nullptr},
      {"skew", u, {1, 1, 0}, nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    MonitorCapture::clear();
    KrGePlane plane;
    plane.set(KrGePoint3d(1, 1, 1), row.uAxis, row.vAxis);
    const auto warnings = warningsSent();
    if (row.warning) {
      ASSERT_EQ(warnings.size(), 1u);
      EXPECT_EQ(warnings[0], warningText(row.warning));
    } else {
      EXPECT_TRUE(warnings.empty());
    }
    KrGePoint3d origin;
    KrGeVector3d uAxis, vAxis;
    plane.get(origin, uAxis, vAxis);
    EXPECT_FALSE(uAxis.isParallelTo(vAxis));
    EXPECT_NEAR(plane.normal().length(), 1.0, 1e-15);
    EXPECT_NEAR(plane.normal().dotProduct(uAxis), 0.0, 1e-15);
    EXPECT_NEAR(plane.normal().dotProduct(vAxis), 0.0, 1e-15);
  }
}

TEST(KrGePlane, Set_ParallelNonZeroAxesAreKeptAndLeaveAZeroNormal) {
  MonitorCapture::clear();
  const KrGePlane plane(KrGePoint3d(), KrGeVector3d(1, 0, 0), KrGeVector3d(-2, 0, 0));
  EXPECT_TRUE(warningsSent().empty());
  EXPECT_EQ(plane.normal().lengthSqrd(), 0.0);
}

TEST(KrGePlane, Mirror_TogglesTheReversedFlagAndTwiceRestoresThePlane) {
  linear_test::Random random(5);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 50; ++i) {
    const KrGePlane mirrorPlane(random.point(10), random.unitVector());
    const KrGePlane original(random.point(10), random.unitVector() * 3, random.unitVector() * 0.5);
    KrGePlane plane(original);
    plane.mirror(mirrorPlane);
    EXPECT_TRUE(plane.isNormalReversed());
    KrGePoint3d origin;
    KrGeVector3d uAxis, vAxis;
    plane.get(origin, uAxis, vAxis);
    // A reversed frame's normal is -(U x V); the image of the old normal is the new normal.
    expectNear(plane.normal(), -unit(uAxis.crossProduct(vAxis)), 1e-12);
    KrGeVector3d mirroredNormal = original.normal();
    mirroredNormal.mirror(mirrorPlane.normal());
    expectNear(plane.normal(), mirroredNormal, 1e-12);
    plane.mirror(mirrorPlane);
    EXPECT_FALSE(plane.isNormalReversed());
    EXPECT_TRUE(plane.isEqualTo(original, tolerance(1e-12, 1e-12)));
  }
}

TEST(KrGePlane, ReverseNormal_FlipsNormalButNotAxes) {
  KrGePlane plane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 1));
  plane.reverseNormal();
  EXPECT_TRUE(plane.isNormalReversed());
  EXPECT_EQ(plane.normal().z, -1.0);
  EXPECT_EQ(plane.signedDistanceTo(KrGePoint3d(0, 0, 3)), -2.0);
  // A reversed plane built from a normal keeps it and turns the frame left-handed.
  plane.set(KrGePoint3d(), KrGeVector3d(0, 1, 0));
  KrGePoint3d origin;
  KrGeVector3d uAxis, vAxis;
  plane.get(origin, uAxis, vAxis);
  EXPECT_EQ(plane.normal().y, 1.0);
  expectNear(uAxis.crossProduct(vAxis), KrGeVector3d(0, -1, 0), 1e-15);
}

TEST(KrGePlane, TransformBy_MapsThePlaneOntoTheImageOfItsPoints) {
  linear_test::Random random(23);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 100; ++i) {
    const KrGePlane original(random.point(100), random.unitVector(), random.unitVector());
    KrGeMatrix3d matrix;
    matrix.setToRotation(random.uniform(-3, 3), random.unitVector(), random.point(10));
    matrix.postMultBy(KrGeMatrix3d::scaling(random.uniform(0.1, 10), random.point(10)));
    KrGePlane plane(original);
    plane.transformBy(matrix);
    EXPECT_FALSE(plane.isNormalReversed());
    for (int k = 0; k < 3; ++k) {
      const KrGePoint3d onOriginal = original.evalPoint(KrGePoint2d(random.uniform(-5, 5), random.uniform(-5, 5)));
      EXPECT_NEAR(plane.signedDistanceTo(matrix * onOriginal), 0.0, 1e-10 * 1000);
    }
    const KrGePoint3d above = original.pointOnPlane() + original.normal();
    EXPECT_GT(plane.signedDistanceTo(matrix * above), 0.0);  // the normal follows the map
  }
}

TEST(KrGePlane, TransformBy_CollapsedAxesAreRepairedWithTheirWarnings) {
  const struct {
    const char* name;
    KrGeMatrix3d matrix;
    const char* warning;
  } rows[] = {
      {"U collapses", KrGeMatrix3d::scaling(1.0), "KrPlanarEntImpl::transformBy, result - degenerated U, use pV"},
      {"V collapses", KrGeMatrix3d::scaling(1.0), "KrPlanarEntImpl::transformBy, result - degenerated V, use pU"},
      {"both collapse", KrGeMatrix3d::scaling(0.0), "KrPlanarEntImpl::transformBy, result - degenerated U, V, use X, Y"},
      {"NaN map", KrGeMatrix3d::scaling(kNaN), "KrPlanarEntImpl::transformBy, result - degenerated U, V, use X, Y"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    KrGeMatrix3d matrix = row.matrix;
    if (std::string(row.name) == "U collapses") matrix.entry[0][0] = 0.0;  // squash X
    if (std::string(row.name) == "V collapses") matrix.entry[1][1] = 0.0;  // squash Y
    KrGePlane plane(KrGePoint3d(), KrGeVector3d(2, 0, 0), KrGeVector3d(0, 3, 0));
    MonitorCapture::clear();
    plane.transformBy(matrix);
    const auto warnings = warningsSent();
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0], warningText(row.warning));
    KrGePoint3d origin;
    KrGeVector3d uAxis, vAxis;
    plane.get(origin, uAxis, vAxis);
    EXPECT_FALSE(uAxis.isZeroLength());
    EXPECT_FALSE(vAxis.isZeroLength());
    EXPECT_NEAR(plane.normal().length(), 1.0, 1e-15);
  }
}

TEST(KrGePlane, TransformBy_NegativeDeterminantTogglesReversedOnlyBelowMinusTenToTheMinusTen) {
  const struct { double zScale; bool reversed; } rows[] = {{-1.0, true}, {-2e-10, true}, {-1e-10, false}, {2.0, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.zScale);
    KrGeMatrix3d matrix;
    matrix.entry[2][2] = row.zScale;
    KrGePlane plane(KrGePoint3d(), KrGeVector3d(1, 0, 0), KrGeVector3d(0, 1, 0));
    plane.transformBy(matrix);
    EXPECT_EQ(plane.isNormalReversed(), row.reversed);
  }
}

TEST(KrGePlane, IntersectWithLine_SatisfiesBothEntitiesOnRandomInput) {
  linear_test::Random random(101);
  SCOPED_TRACE(random.trace());
  int hits = 0;
  for (int i = 0; i < 2000; ++i) {
    const double scale = random.magnitude(-3, 6);
    const KrGePlane plane(random.point(scale), random.unitVector());
    const KrGePoint3d lineOrigin = random.point(scale);
    const KrGeVector3d lineDirection = random.unitVector() * random.magnitude(-2, 2);
    const KrGeLine3d line(lineOrigin, lineDirection);
    KrGePoint3d hit;
    if (!plane.intersectWith(line, hit)) {
      EXPECT_LE(std::fabs(lineDirection.dotProduct(plane.normal())), KrGeContext::gTol.equalVector());
      continue;
    }
    ++hits;
    const double size = std::max({scale, hit.asVector().length(), 1.0});
    EXPECT_LE(std::fabs(heightAbove(plane.pointOnPlane(), plane.normal(), hit)), 1e-9 * size);
    EXPECT_LE(line.distanceTo(hit), 1e-9 * size);
  }
  EXPECT_GT(hits, 1900);
}

TEST(KrGePlane, IntersectWithLine_ParallelWithinTheVectorToleranceOfTheStoredDirection) {
  const KrGePlane plane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 1));
  const KrGeTol tol = tolerance(1e-9, 1e-6);
  const struct { KrGeVector3d direction; bool meets; } rows[] = {
      {{1, 0, 1e-6}, false},       // |d . n| equal to the tolerance counts as parallel
      {{1, 0, 2e-6}, true},
      {{1000, 0, 9e-7}, false},    // the stored direction is used as it is, not normalised
      {{1e-3, 0, 2e-6}, true},
      {{-5, 3, 0}, false},
      {{0, 0, 0}, false},
      {{0, 0, kNaN}, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.direction.x << " " << row.direction.z);
    KrGePoint3d hit(7, 7, 7);
    EXPECT_EQ(plane.intersectWith(KrGeLine3d(KrGePoint3d(), row.direction), hit, tol), row.meets);
    if (row.meets) {
      EXPECT_NEAR(hit.z, 1.0, 1e-12);
    }
  }
}

TEST(KrGePlane, IntersectWithSegment_RequiresTheSegmentToReachThePlane) {
  const KrGePlane plane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 1));
  const KrGeTol tol = tolerance(1e-6, 1e-9);
  const struct { double topZ; bool meets; } rows[] = {{2, true}, {1, true}, {1 - 0.5e-6, true}, {1 - 2e-6, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.topZ);
    const KrGeLineSeg3d segment(KrGePoint3d(1, 1, -1), KrGePoint3d(1, 1, row.topZ));
    KrGePoint3d hit;
    EXPECT_EQ(plane.intersectWith(segment, hit, tol), row.meets);
    EXPECT_EQ(static_cast<const KrGePlanarEnt&>(plane).intersectWith(segment, hit, tol), row.meets);
    EXPECT_EQ(segment.intersectWith(plane, hit, tol), row.meets);
  }
}

TEST(KrGePlane, IntersectWithPlane_GivesTheCommonLineOnRandomInput) {
  linear_test::Random random(202);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 2000; ++i) {
    const double scale = random.magnitude(-3, 6);
    const KrGePlane first(random.point(scale), random.unitVector());
    const double angle = random.magnitude(-6, 0.2);
    const KrGeVector3d otherNormal = random.tilted(first.normal(), angle);
    const KrGePlane second(random.point(scale), otherNormal * random.magnitude(-3, 3));
    KrGeLine3d line;
    ASSERT_TRUE(first.intersectWith(second, line));
    const KrGeVector3d direction = line.direction();
    // The cross product of nearly parallel normals carries an absolute rounding error of a few
    // ulps, so its direction is good to about 1e-16 / sin(angle).
    const double directionError = 1e-15 / std::sin(std::min(angle, 1.5));
    EXPECT_NEAR(direction.dotProduct(first.normal()), 0.0, directionError);
    EXPECT_NEAR(direction.dotProduct(second.normal()), 0.0, directionError);
    KrGeLine3d reversed;
    ASSERT_TRUE(second.intersectWith(first, reversed));
    // Far along a nearly parallel pair the points run off; measure relative to where they are.
    const KrGePoint3d point = line.pointOnLine();
    const double size = std::max({scale, point.asVector().length(), reversed.pointOnLine().asVector().length(), 1.0});
    EXPECT_LE(std::fabs(heightAbove(first.pointOnPlane(), first.normal(), point)), 1e-9 * size);
    EXPECT_LE(std::fabs(heightAbove(second.pointOnPlane(), second.normal(), point)), 1e-9 * size);
    EXPECT_TRUE(line.isColinearTo(reversed, tolerance(1e-9 * size, 1e-9)));
  }
}

TEST(KrGePlane, IntersectWithPlane_ParallelAndAntiparallelPlanesDoNotMeet) {
  const KrGePlane plane(KrGePoint3d(), KrGeVector3d(0, 0, 1));
  const KrGeTol tol = tolerance(1e-9, 1e-6);
  const struct { KrGeVector3d normal; bool meets; } rows[] = {
      {{0, 0, 5}, false}, {{0, 0, -1}, false}, {{0.5e-6, 0, 1}, false}, {{0, 3e-6, -1}, true}, {{1, 0, 0}, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.normal.x << " " << row.normal.y << " " << row.normal.z);
    KrGeLine3d line(KrGePoint3d(9, 9, 9), KrGeVector3d(1, 0, 0));
    EXPECT_EQ(plane.intersectWith(KrGePlane(KrGePoint3d(0, 0, 4), row.normal), line, tol), row.meets);
    if (!row.meets) {
      EXPECT_EQ(line.pointOnLine().x, 9.0);  // untouched
    }
  }
}

TEST(KrGePlane, ClosestPointToLinearEnt_CrossingParallelAndShortEntities) {
  const KrGePlane plane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 2));
  KrGePoint3d onLine;
  // A crossing line: its intersection, twice.
  KrGePoint3d onPlane = plane.closestPointToLinearEnt(KrGeLine3d(KrGePoint3d(1, 2, 5), KrGeVector3d(1, 0, -2)), onLine);
  expectNear(onPlane, KrGePoint3d(3, 2, 1), 1e-15);
  expectNear(onLine, onPlane, 1e-15);
  // A parallel line: its origin and that point's foot.
  onPlane = plane.closestPointToLinearEnt(KrGeLine3d(KrGePoint3d(1, 2, 5), KrGeVector3d(1, 1, 0)), onLine);
  expectNear(onLine, KrGePoint3d(1, 2, 5), 0.0);
  expectNear(onPlane, KrGePoint3d(1, 2, 1), 0.0);
  // A segment that stops short: its end nearer the plane.
  onPlane = plane.closestPointToLinearEnt(KrGeLineSeg3d(KrGePoint3d(0, 0, 9), KrGePoint3d(4, 0, 3)), onLine);
  expectNear(onLine, KrGePoint3d(4, 0, 3), 0.0);
  expectNear(onPlane, KrGePoint3d(4, 0, 1), 0.0);
  onPlane = plane.closestPointToLinearEnt(KrGeLineSeg3d(KrGePoint3d(0, 0, -3), KrGePoint3d(4, 0, -9)), onLine);
  expectNear(onLine, KrGePoint3d(0, 0, -3), 0.0);
  // A crossing segment: the crossing, exact at an end that lies on the plane.
  onPlane = plane.closestPointToLinearEnt(KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 0, 4)), onLine);
  expectNear(onPlane, KrGePoint3d(1, 0, 1), 1e-15);
  onPlane = plane.closestPointToLinearEnt(KrGeLineSeg3d(KrGePoint3d(2, 0, 1), KrGePoint3d(4, 0, 4)), onLine);
  expectNear(onLine, KrGePoint3d(2, 0, 1), 0.0);
}

TEST(KrGePlane, ClosestPointToLinearEnt_AgreesWithTheSegmentsOwnDistanceOnRandomInput) {
  linear_test::Random random(303);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 500; ++i) {
    const KrGePlane plane(random.point(10), random.unitVector());
    const KrGeLineSeg3d segment(random.point(10), random.point(10));
    KrGePoint3d onSegment;
    const KrGePoint3d onPlane = plane.closestPointToLinearEnt(segment, onSegment);
    EXPECT_LE(segment.distanceTo(onSegment), 1e-12);
    EXPECT_NEAR(plane.signedDistanceTo(onPlane), 0.0, 1e-12);
    // The smallest |height| over the segment, by sampling: never below the reported gap.
    double smallest = 1e300;
    for (int k = 0; k <= 1000; ++k) smallest = std::min(smallest, std::fabs(plane.signedDistanceTo(segment.evalPoint(k / 1000.0))));
    EXPECT_LE(onPlane.distanceTo(onSegment), smallest + 1e-12);
  }
}

TEST(KrGePlane, ClosestPointToPlanarEnt_CrossingAndParallelPlanes) {
  const KrGePlane plane(KrGePoint3d(3, 4, 0), KrGeVector3d(0, 0, 1));
  KrGePoint3d onOther;
  KrGePoint3d onThis = plane.closestPointToPlanarEnt(KrGePlane(KrGePoint3d(0, 0, 7), KrGeVector3d(0, 0, -1)), onOther);
  expectNear(onThis, KrGePoint3d(3, 4, 0), 0.0);
  expectNear(onOther, KrGePoint3d(3, 4, 7), 0.0);
  // Crossing: the point of the common line x = 1, z = 0 nearest to this origin.
  onThis = plane.closestPointToPlanarEnt(KrGePlane(KrGePoint3d(1, 0, 0), KrGeVector3d(1, 0, 0)), onOther);
  expectNear(onThis, KrGePoint3d(1, 4, 0), 1e-15);
  expectNear(onOther, onThis, 0.0);
}

TEST(KrGePlane, Relations_ParallelPerpendicularAndCoplanarOnBothSidesOfTheTolerance) {
  const KrGeTol tol = tolerance(1e-6, 1e-6);
  const KrGePlane plane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 1));
  EXPECT_TRUE(plane.isParallelTo(KrGePlane(KrGePoint3d(5, 5, 9), KrGeVector3d(0.5e-6, 0, -1)), tol));
  EXPECT_FALSE(plane.isParallelTo(KrGePlane(KrGePoint3d(5, 5, 9), KrGeVector3d(3e-6, 0, -1)), tol));
  EXPECT_TRUE(plane.isCoplanarTo(KrGePlane(KrGePoint3d(5, 5, 1 + 0.5e-6), KrGeVector3d(0, 0, -1)), tol));
  EXPECT_FALSE(plane.isCoplanarTo(KrGePlane(KrGePoint3d(5, 5, 1 + 2e-6), KrGeVector3d(0, 0, -1)), tol));
  EXPECT_TRUE(plane.isPerpendicularTo(KrGePlane(KrGePoint3d(), KrGeVector3d(1, 0, 1e-6)), tol));
  EXPECT_FALSE(plane.isPerpendicularTo(KrGePlane(KrGePoint3d(), KrGeVector3d(1, 0, 2e-6)), tol));

  EXPECT_TRUE(plane.isParallelTo(KrGeLine3d(KrGePoint3d(), KrGeVector3d(1, 0, 1e-6)), tol));
  EXPECT_FALSE(plane.isParallelTo(KrGeLine3d(KrGePoint3d(), KrGeVector3d(1, 0, 2e-6)), tol));
  EXPECT_TRUE(plane.isParallelTo(KrGeLine3d(KrGePoint3d(), KrGeVector3d(0, 0, 0)), tol));
  EXPECT_TRUE(plane.isPerpendicularTo(KrGeLineSeg3d(KrGePoint3d(), KrGePoint3d(0.5e-6, 0, -1)), tol));
  EXPECT_FALSE(plane.isPerpendicularTo(KrGeLineSeg3d(KrGePoint3d(), KrGePoint3d(3e-6, 0, -1)), tol));
}

TEST(KrGePlane, Evaluate_ParamOfInvertsEvalPointOnSkewAxes) {
  linear_test::Random random(404);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 300; ++i) {
    const KrGeVector3d u = random.unitVector() * random.magnitude(-2, 2);
    const KrGeVector3d v = random.tilted(unit(u), random.uniform(0.05, 3.0)) * random.magnitude(-2, 2);
    const KrGePlane plane(random.point(100), u, v);
    const KrGePoint2d param(random.uniform(-50, 50), random.uniform(-50, 50));
    const KrGePoint3d point = plane.evalPoint(param);
    const KrGePoint2d back = plane.paramOf(point);
    const double size = std::max(1.0, point.asVector().length());
    EXPECT_LE(plane.evalPoint(back).distanceTo(point), 1e-12 * size);
    // A point off the plane gets the parameters of its foot.
    const KrGePoint2d ofLifted = plane.paramOf(point + plane.normal() * 7.0);
    EXPECT_LE(plane.evalPoint(ofLifted).distanceTo(point), 1e-11 * size);
    KrGePoint2d onParam;
    EXPECT_TRUE(plane.isOn(point, onParam, tolerance(1e-9 * size, 1e-9)));
    EXPECT_LE(plane.evalPoint(onParam).distanceTo(point), 1e-12 * size);
  }
}

TEST(KrGePlane, Evaluate_DerivativesComeByTotalOrderAndNegativeOrderIsReported) {
  const KrGePlane plane(KrGePoint3d(1, 2, 3), KrGeVector3d(2, 0, 0), KrGeVector3d(1, 1, 0));
  KrsArray<KrGeVector3d> derivatives;
  KrGeVector3d normal;
  const KrGePoint3d point = plane.evalPoint(KrGePoint2d(2, 3), 2, derivatives, normal);
  expectNear(point, KrGePoint3d(8, 5, 3), 0.0);
  ASSERT_EQ(derivatives.GetSize(), 5);  // Su, Sv, Suu, Suv, Svv
  expectNear(derivatives[0], KrGeVector3d(2, 0, 0), 0.0);
  expectNear(derivatives[1], KrGeVector3d(1, 1, 0), 0.0);
  for (int i = 2; i < 5; ++i) EXPECT_EQ(derivatives[i].lengthSqrd(), 0.0);
  expectNear(normal, KrGeVector3d(0, 0, 1), 0.0);
  plane.evalPoint(KrGePoint2d(), 3, derivatives);
  EXPECT_EQ(derivatives.GetSize(), 9);

  MonitorCapture::clear();
  const KrGePoint3d atNegative = plane.evalPoint(KrGePoint2d(2, 3), -1, derivatives);
  EXPECT_EQ(countAssertions(MonitorCapture::drain(), "(derivOrd<0)"), 1);
  EXPECT_EQ(derivatives.GetSize(), 0);
  expectNear(atNegative, point, 0.0);
}

TEST(KrGePlane, Query_IsOnDistanceAndClosestPointOnBothSidesOfTheTolerance) {
  const KrGePlane plane(KrGePoint3d(0, 0, 1), KrGeVector3d(0, 0, 1));
  const KrGeTol tol = tolerance(1e-6, 1e-9);
  EXPECT_TRUE(plane.isOn(KrGePoint3d(100, -100, 1 + 1e-6), tol));
  EXPECT_FALSE(plane.isOn(KrGePoint3d(100, -100, 1 + 2e-6), tol));
  EXPECT_EQ(plane.distanceTo(KrGePoint3d(4, 5, -2)), 3.0);
  expectNear(plane.closestPointTo(KrGePoint3d(4, 5, -2)), KrGePoint3d(4, 5, 1), 0.0);
  KrGeInterval u, v;
  plane.getEnvelope(u, v);
  EXPECT_FALSE(u.isBoundedBelow() || u.isBoundedAbove() || v.isBoundedBelow() || v.isBoundedAbove());
  EXPECT_TRUE(plane.isInside(KrGePoint2d(1e300, -1e300)));
  EXPECT_FALSE(plane.isClosedInU());
  EXPECT_FALSE(plane.isClosedInV());
}

TEST(KrGePlane, GetCoordSystem_IsOrthonormalOnTheSideOfTheVAxis) {
  linear_test::Random random(505);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 100; ++i) {
    KrGePlane plane(random.point(10), random.unitVector() * 4, random.unitVector() * 0.25);
    if (i % 2) plane.mirror(KrGePlane::kXYPlane);
    KrGePoint3d origin;
    KrGeVector3d uAxis, vAxis, axis1, axis2;
    plane.get(origin, uAxis, vAxis);
    plane.getCoordSystem(origin, axis1, axis2);
    EXPECT_NEAR(axis1.length(), 1.0, 1e-15);
    EXPECT_NEAR(axis2.length(), 1.0, 1e-15);
    EXPECT_NEAR(axis1.dotProduct(axis2), 0.0, 1e-15);
    expectNear(axis1, unit(uAxis), 1e-15);
    EXPECT_GT(axis2.dotProduct(vAxis), 0.0);
    EXPECT_NEAR(axis1.dotProduct(plane.normal()), 0.0, 1e-15);
    EXPECT_NEAR(axis2.dotProduct(plane.normal()), 0.0, 1e-12);
  }
}

TEST(KrGePlane, Identity_KinshipCopyAndAssignment) {
  const KrGePlane plane(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 1, 0));
  EXPECT_EQ(plane.type(), KrGe::kPlane);
  for (KrGe::EntityId id : {KrGe::kPlane, KrGe::kSurface, KrGe::kPlanarEnt, KrGe::kEntity3d})
    EXPECT_TRUE(plane.isKindOf(id)) << id;
  for (KrGe::EntityId id : {KrGe::kCurve3d, KrGe::kLine3d, KrGe::kBoundBlock3d, KrGe::kPointEnt3d})
    EXPECT_FALSE(plane.isKindOf(id)) << id;

  std::unique_ptr<KrGeEntity3d> copy(plane.copy());
  ASSERT_EQ(copy->type(), KrGe::kPlane);
  EXPECT_TRUE(*copy == plane);
  copy->translateBy(KrGeVector3d(0, 1, 0));
  EXPECT_TRUE(*copy != plane);
  EXPECT_EQ(plane.pointOnPlane().y, 2.0);

  KrGePlane assigned;
  static_cast<KrGePlanarEnt&>(assigned) = plane;
  EXPECT_TRUE(assigned == plane);
  KrGePlane other;
  other = assigned;
  other.reverseNormal();
  EXPECT_FALSE(assigned.isNormalReversed());
  EXPECT_FALSE(other == assigned);  // the reversed flag and normal take part in equality
  const KrGePlane& alias = other;
  other = alias;
  EXPECT_TRUE(other.isNormalReversed());
  EXPECT_FALSE(plane.isEqualTo(KrGeLine3d()));
}

TEST(KrGePlane, BadInput_NonFiniteCoordinatesNeverCrash) {
  const double bad[] = {kNaN, kInf, -kInf, 1e308};
  for (double value : bad) {
    SCOPED_TRACE(value);
    KrGePlane plane(KrGePoint3d(value, 0, 0), KrGeVector3d(value, 1, 0));
    KrGePoint3d hit;
    KrGeLine3d line;
    plane.intersectWith(KrGeLine3d(KrGePoint3d(0, value, 0), KrGeVector3d(1, 1, value)), hit);
    plane.intersectWith(KrGePlane(KrGePoint3d(1, 1, 1), KrGeVector3d(1, value, 1)), line);
    plane.transformBy(KrGeMatrix3d::scaling(value));
    plane.paramOf(KrGePoint3d(value, value, value));
    plane.closestPointToLinearEnt(KrGeLineSeg3d(KrGePoint3d(value, 0, 0), KrGePoint3d()), hit);
    KrGePoint3d origin;
    KrGeVector3d axis1, axis2;
    plane.getCoordSystem(origin, axis1, axis2);
  }
  MonitorCapture::clear();
}
