// The point, vector and matrix operations that take a plane or a line.
#include "KrGeLine3d.h"
#include "KrGeMatrix3d.h"
#include "KrGePlane.h"
#include "KrGePoint2d.h"
#include "KrGeVector2d.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/entity/LinearTestKit.h"

using linear_test::warningText;
using testkit::MonitorCapture;

namespace {

constexpr double kPi = 3.141592653589793;

void expectNear(const KrGePoint3d& actual, const KrGePoint3d& expected, double tol) {
  EXPECT_NEAR(actual.x, expected.x, tol);
  EXPECT_NEAR(actual.y, expected.y, tol);
  EXPECT_NEAR(actual.z, expected.z, tol);
}

KrGePlane randomPlane(linear_test::Random& random) {
  return KrGePlane(random.point(20), random.unitVector() * random.uniform(0.5, 2),
                   random.unitVector() * random.uniform(0.5, 2));
}

}  // namespace

TEST(KrGePlaneOps, Convert2d_VectorsUseTheAxesAsStoredAndPointsTheParameters) {
  const KrGePlane plane(KrGePoint3d(1, 1, 1), KrGeVector3d(2, 0, 0), KrGeVector3d(1, 1, 0));
  const KrGeVector2d v = KrGeVector3d(3, 5, 7).convert2d(plane);
  EXPECT_EQ(v.x, 6.0);  // (3, 5, 7) . (2, 0, 0)
  EXPECT_EQ(v.y, 8.0);  // (3, 5, 7) . (1, 1, 0)
  const KrGeVector3d back(plane, KrGeVector2d(1, 2));
  EXPECT_EQ(back.x, 4.0);
  EXPECT_EQ(back.y, 2.0);

  const KrGePoint3d point(plane, KrGePoint2d(2, 3));
  expectNear(point, KrGePoint3d(8, 4, 1), 0.0);
  const KrGePoint2d uv = point.convert2d(plane);
  EXPECT_NEAR(uv.x, 2.0, 1e-14);
  EXPECT_NEAR(uv.y, 3.0, 1e-14);
  KrGePoint3d set;
  set.set(plane, KrGePoint2d(-1, 0));
  expectNear(set, KrGePoint3d(-1, 1, 1), 0.0);
}

TEST(KrGePlaneOps, AngleOnPlane_MeasuresInThePlanesAxes) {
  const KrGePlane plane(KrGePoint3d(), KrGeVector3d(0, 1, 0), KrGeVector3d(0, 0, 1));
  EXPECT_NEAR(KrGeVector3d(5, 0, 1).angleOnPlane(plane), kPi / 2, 1e-15);
  EXPECT_NEAR(KrGeVector3d(0, -1, 0).angleOnPlane(plane), kPi, 1e-15);
  EXPECT_NEAR(KrGeVector3d(0, 0, -1).angleOnPlane(plane), 3 * kPi / 2, 1e-15);
}

TEST(KrGePlaneOps, PointProject_LandsOnThePlaneAlongTheDirection) {
  linear_test::Random random(71);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 200; ++i) {
    const KrGePlane plane = randomPlane(random);
    const KrGePoint3d point = random.point(50);
    const KrGeVector3d direction = random.unitVector();
    if (std::fabs(direction.dotProduct(plane.normal())) < 1e-3) continue;
    const KrGePoint3d projected = point.project(plane, direction);
    EXPECT_NEAR(plane.signedDistanceTo(projected), 0.0, 1e-11);
    const KrGeVector3d moved = projected - point;
    EXPECT_LE(moved.crossProduct(direction).length(), 1e-11 * (1 + moved.length()));
    const KrGePoint3d foot = point.orthoProject(plane);
    EXPECT_NEAR(plane.signedDistanceTo(foot), 0.0, 1e-11);
    EXPECT_NEAR(point.distanceTo(foot), std::fabs(plane.signedDistanceTo(point)), 1e-11);
  }
}

TEST(KrGePlaneOps, PointProject_ParallelDirectionGivesTheOriginNotThePoint) {
  const KrGePlane plane(KrGePoint3d(0, 0, 3), KrGeVector3d(0, 0, 1));
  const KrGePoint3d projected = KrGePoint3d(4, 5, 6).project(plane, KrGeVector3d(1, 1, 0));
  EXPECT_EQ(projected.asVector().lengthSqrd(), 0.0);
  expectNear(KrGePoint3d(4, 5, 6).project(plane, KrGeVector3d(0, 0, -2)), KrGePoint3d(4, 5, 3), 0.0);
}

TEST(KrGePlaneOps, VectorProject_StatusThreeOnlyForDirectionsInThePlane) {
  KrGe::ErrorCondition status = KrGe::kOk;
  const KrGeVector3d normal(0, 0, 2);
  KrGeVector3d image = KrGeVector3d(1, 2, 3).project(normal, KrGeVector3d(1, 0, 1), KrGeTol(), status);
  EXPECT_EQ(status, KrGe::kOk);
  EXPECT_NEAR(image.x, -2.0, 1e-15);  // (1, 2, 3) - 3 * (1, 0, 1)
  EXPECT_NEAR(image.y, 2.0, 1e-15);
  EXPECT_NEAR(image.z, 0.0, 1e-15);
  status = KrGe::k0Arg1;
  KrGeVector3d(1, 2, 3).project(normal, KrGeVector3d(0, 0, 1), KrGeTol(), status);
  EXPECT_EQ(status, KrGe::k0Arg1);  // not written when the direction is not in the plane
  image = KrGeVector3d(1, 2, 3).project(normal, KrGeVector3d(1, 1, 0), KrGeTol(), status);
  EXPECT_EQ(status, KrGe::kPerpendicularArg1Arg2);
  EXPECT_FALSE(std::isfinite(image.x));

  MonitorCapture::clear();
  image = KrGeVector3d(1, 2, 3).project(KrGeVector3d(), KrGeVector3d(0, 0, 1));
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, warningText("KrPlanarEntImpl::set - degenerated normal, OZ used"));
  EXPECT_EQ(image.z, 0.0);  // the zero normal stands for +Z, as in a plane built from it
}

TEST(KrGePlaneOps, Mirror_ReflectsThroughThePlaneAndTwiceIsTheIdentity) {
  linear_test::Random random(72);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 100; ++i) {
    const KrGePlane plane = randomPlane(random);
    const KrGePoint3d point = random.point(30);
    KrGePoint3d image = point;
    image.mirror(plane);
    EXPECT_NEAR(plane.signedDistanceTo(image), -plane.signedDistanceTo(point), 1e-11);
    expectNear(image.orthoProject(plane), point.orthoProject(plane), 1e-11);
    image.mirror(plane);
    expectNear(image, point, 1e-11);
    const KrGeMatrix3d mirroring = KrGeMatrix3d::mirroring(plane);
    EXPECT_NEAR(mirroring.det(), -1.0, 1e-12);
    EXPECT_TRUE((mirroring * mirroring).isEqualTo(KrGeMatrix3d::kIdentity, KrGeTol()));
  }
}

TEST(KrGePlaneOps, MirroringInALine_IsAHalfTurnAboutIt) {
  const KrGeLine3d line(KrGePoint3d(1, 0, 0), KrGeVector3d(0, 0, 3));
  const KrGeMatrix3d halfTurn = KrGeMatrix3d::mirroring(line);
  expectNear(halfTurn * KrGePoint3d(1, 0, 7), KrGePoint3d(1, 0, 7), 1e-15);
  expectNear(halfTurn * KrGePoint3d(3, 1, 2), KrGePoint3d(-1, -1, 2), 1e-14);
  EXPECT_NEAR(halfTurn.det(), 1.0, 1e-15);
}

TEST(KrGePlaneOps, PlaneFrames_MapThePlaneOntoXYAndBack) {
  linear_test::Random random(73);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 100; ++i) {
    const KrGePlane plane(random.point(20), random.unitVector());
    const KrGeMatrix3d toWorld = KrGeMatrix3d::planeToWorld(plane);
    const KrGeMatrix3d toPlane = KrGeMatrix3d::worldToPlane(plane);
    expectNear(toWorld * KrGePoint3d(), plane.pointOnPlane(), 1e-13);
    const KrGePoint3d inPlane = toWorld * KrGePoint3d(random.uniform(-5, 5), random.uniform(-5, 5), 0);
    EXPECT_NEAR(plane.signedDistanceTo(inPlane), 0.0, 1e-12);
    EXPECT_NEAR(plane.signedDistanceTo(toWorld * KrGePoint3d(0, 0, 2)), 2.0, 1e-12);
    EXPECT_TRUE((toPlane * toWorld).isEqualTo(KrGeMatrix3d::kIdentity, KrGeTol()));
    EXPECT_NEAR((toPlane * inPlane).z, 0.0, 1e-12);
  }
}

TEST(KrGePlaneOps, Projection_ImagesLieOnThePlaneAlongTheDirection) {
  linear_test::Random random(74);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 100; ++i) {
    const KrGePlane plane = randomPlane(random);
    const KrGeVector3d direction = random.unitVector();
    if (std::fabs(direction.dotProduct(plane.normal())) < 1e-2) continue;
    const KrGeMatrix3d projection = KrGeMatrix3d::projection(plane, direction);
    const KrGePoint3d point = random.point(30);
    const KrGePoint3d image = projection * point;
    EXPECT_NEAR(plane.signedDistanceTo(image), 0.0, 1e-10);
    expectNear(image, point.project(plane, direction), 1e-10);
    expectNear(projection * image, image, 1e-10);  // idempotent
  }
}
