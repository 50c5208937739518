#include "KrGeMatrix3d.h"
#include "KrGePoint3d.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(KrGePoint3d, EqualityIsADistanceTestWithinEqualPoint) {
  KrGeTol tol;
  tol.setEqualPoint(1e-6);
  tol.setEqualVector(0.0);  // points never look at equalVector
  const KrGePoint3d p(10, 20, 30);
  EXPECT_TRUE(p.isEqualTo(KrGePoint3d(10, 20, 30 + 0.9e-6), tol));
  EXPECT_FALSE(p.isEqualTo(KrGePoint3d(10, 20 + 0.8e-6, 30 + 0.8e-6), tol));  // each coordinate within
  EXPECT_TRUE(p == KrGePoint3d(10, 20, 30 + 0.5e-10));
  EXPECT_TRUE(p != KrGePoint3d(10, 20, 30 + 2e-10));
  EXPECT_EQ(KrGePoint3d(1e-300, 0, 0).distanceTo(KrGePoint3d::kOrigin), 1e-300);
}

// rotateBy, scaleBy and transformBy hand over to the matrices, whose own tests cover the
// geometry: one call each checks the arguments arrive in their places.
TEST(KrGePoint3d, TransformationsHandOverToTheMatrices) {
  KrGePoint3d p(2, 0, 0);
  EXPECT_TRUE(p.rotateBy(std::acos(0.0), KrGeVector3d(0, 0, 1), KrGePoint3d(1, 0, 0)).isEqualTo(KrGePoint3d(1, 1, 0)));
  EXPECT_TRUE(p.scaleBy(3, KrGePoint3d(1, 0, 0)).isEqualTo(KrGePoint3d(1, 3, 0)));
  EXPECT_TRUE(p.transformBy(KrGeMatrix3d::translation(KrGeVector3d(1, 1, 1))).isEqualTo(KrGePoint3d(2, 4, 1)));
  EXPECT_TRUE(KrGePoint3d().setToProduct(KrGeMatrix3d::scaling(2, KrGePoint3d(1, 1, 1)), p).isEqualTo(KrGePoint3d(3, 7, 1)));
}
