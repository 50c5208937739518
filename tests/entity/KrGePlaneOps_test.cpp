// The point, vector and matrix operations that take a plane or a line.
#include "tests/entity/EntityKit.h"

// Vectors are converted with the axes as stored (not normalised), points by their parameters;
// angles are measured in the plane's axes over the whole turn.
TEST(KrGePlaneOps, Convert2dAndAngles_UseThePlanesAxes) {
  const KrGePlane plane(KrGePoint3d(1, 1, 1), KrGeVector3d(2, 0, 0), KrGeVector3d(1, 1, 0));
  const KrGeVector2d v = KrGeVector3d(3, 5, 7).convert2d(plane);
  EXPECT_EQ(v.x, 6.0);
  EXPECT_EQ(v.y, 8.0);
  EXPECT_TRUE(within(KrGeVector3d(plane, KrGeVector2d(1, 2)), KrGeVector3d(4, 2, 0), 0.0));
  EXPECT_TRUE(within(KrGePoint3d(plane, KrGePoint2d(2, 3)), KrGePoint3d(8, 4, 1), 0.0));
  const KrGePoint2d uv = KrGePoint3d(8, 4, 1).convert2d(plane);
  EXPECT_TRUE(std::fabs(uv.x - 2.0) + std::fabs(uv.y - 3.0) < 1e-14);
  const KrGePlane yz(KrGePoint3d(), KrGeVector3d(0, 1, 0), KrGeVector3d(0, 0, 1));
  const double quarter = kPi / 2;
  EXPECT_NEAR(KrGeVector3d(5, 0, 1).angleOnPlane(yz), quarter, 1e-15);
  EXPECT_NEAR(KrGeVector3d(0, -1, 0).angleOnPlane(yz), 2 * quarter, 1e-15);
  EXPECT_NEAR(KrGeVector3d(0, 0, -1).angleOnPlane(yz), 3 * quarter, 1e-15);
}

// Random planes on oblique axes: projections land on the plane along their direction (the matrix
// agrees and is idempotent); mirroring negates heights and twice is the identity; the plane frames
// map the plane onto XY and back.
TEST(KrGePlaneOps, RandomPlanes_ProjectMirrorAndFrames) {
  repeat(71, 200, [&](Random& random, int) {
    const KrGePoint3d origin = random.point(20), point = random.point(30);
    const KrGeVector3d u = random.unitVector() * random.uniform(0.5, 2), direction = random.unitVector();
    const KrGePlane plane(origin, u, random.unitVector() * random.uniform(0.5, 2));
    if (std::fabs(direction.dotProduct(plane.normal())) < 1e-2) return;
    const KrGePoint3d projected = point.project(plane, direction), foot = point.orthoProject(plane);
    EXPECT_NEAR(plane.signedDistanceTo(projected) + plane.signedDistanceTo(foot), 0.0, 1e-11);
    EXPECT_LE((projected - point).crossProduct(direction).length(), 1e-11 * (1 + (projected - point).length()));
    EXPECT_NEAR(point.distanceTo(foot), std::fabs(plane.signedDistanceTo(point)), 1e-11);
    const KrGeMatrix3d projection = KrGeMatrix3d::projection(plane, direction);
    EXPECT_TRUE(within(projection * point, projected, 1e-10));
    EXPECT_TRUE(within(projection * projected, projected, 1e-10));

    KrGePoint3d image = point;
    EXPECT_NEAR(plane.signedDistanceTo(image.mirror(plane)), -plane.signedDistanceTo(point), 1e-11);
    EXPECT_TRUE(within(image.orthoProject(plane), foot, 1e-11));
    EXPECT_TRUE(within(image.mirror(plane), point, 1e-11));
    const KrGeMatrix3d mirroring = KrGeMatrix3d::mirroring(plane);
    EXPECT_NEAR(mirroring.det(), -1.0, 1e-12);
    EXPECT_TRUE((mirroring * mirroring).isEqualTo(KrGeMatrix3d::kIdentity, KrGeTol()));

    const KrGeMatrix3d toWorld = KrGeMatrix3d::planeToWorld(plane);
    EXPECT_TRUE(within(toWorld * KrGePoint3d(), plane.pointOnPlane(), 1e-13));
    EXPECT_NEAR(plane.signedDistanceTo(toWorld * KrGePoint3d(random.uniform(-5, 5), random.uniform(-5, 5), 2)), 2.0,
                1e-12);
    EXPECT_TRUE((KrGeMatrix3d::worldToPlane(plane) * toWorld).isEqualTo(KrGeMatrix3d::kIdentity, KrGeTol()));
  });
  const KrGePlane plane(KrGePoint3d(0, 0, 3), KrGeVector3d(0, 0, 1));
  EXPECT_EQ(KrGePoint3d(4, 5, 6).project(plane, KrGeVector3d(1, 1, 0)).asVector().lengthSqrd(), 0.0);  // the origin
  EXPECT_TRUE(within(KrGePoint3d(4, 5, 6).project(plane, KrGeVector3d(0, 0, -2)), KrGePoint3d(4, 5, 3), 0.0));
  const KrGeMatrix3d halfTurn = KrGeMatrix3d::mirroring(KrGeLine3d(KrGePoint3d(1, 0, 0), KrGeVector3d(0, 0, 3)));
  EXPECT_TRUE(within(halfTurn * KrGePoint3d(1, 0, 7), KrGePoint3d(1, 0, 7), 1e-15));
  EXPECT_TRUE(within(halfTurn * KrGePoint3d(3, 1, 2), KrGePoint3d(-1, -1, 2), 1e-14));
  EXPECT_NEAR(halfTurn.det(), 1.0, 1e-15);
}

// The status is written only for a direction in the plane; a zero normal stands for +Z, as in a
// plane built from it, with the same warning.
TEST(KrGePlaneOps, VectorProject_StatusOnlyForDirectionsInThePlane) {
  KrGe::ErrorCondition status = KrGe::kOk;
  const KrGeVector3d vector(1, 2, 3), normal(0, 0, 2);
  EXPECT_TRUE(within(vector.project(normal, KrGeVector3d(1, 0, 1), KrGeTol(), status), KrGeVector3d(-2, 2, 0), 1e-15));
  EXPECT_EQ(status, KrGe::kOk);
  status = KrGe::k0Arg1;
  vector.project(normal, KrGeVector3d(0, 0, 1), KrGeTol(), status);
  EXPECT_EQ(status, KrGe::k0Arg1);
  EXPECT_FALSE(std::isfinite(vector.project(normal, KrGeVector3d(1, 1, 0), KrGeTol(), status).x));
  EXPECT_EQ(status, KrGe::kPerpendicularArg1Arg2);
  const auto records = recordsOf([&] { EXPECT_EQ(vector.project(KrGeVector3d(), KrGeVector3d(0, 0, 1)).z, 0.0); });
  EXPECT_EQ(warningsIn(records).size(), 1u);
}
