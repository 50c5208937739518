#include "KrGeMatrix3d.h"
#include "KrGePoint3d.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/algebra/AlgebraRandom.h"

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

TEST(KrGePoint3d, TransformationsRoundTrip) {
  algebra_test::Random random(11);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 500; ++i) {
    const KrGePoint3d p = random.point(1e3), centre = random.point(1e3);
    const KrGeVector3d axis = random.vector(-2, 2);
    const double angle = random.uniform(-7, 7);
    KrGePoint3d q = p;
    q.rotateBy(angle, axis, centre);
    ASSERT_NEAR(q.distanceTo(centre), p.distanceTo(centre), 1e-11);
    q.rotateBy(-angle, axis, centre);
    ASSERT_LE(q.distanceTo(p), 1e-11);
    const double factor = random.logUniform(-3, 3);
    q = p;
    q.scaleBy(factor, centre);
    ASSERT_LE(q.distanceTo(centre + (p - centre) * factor), 1e-12 * (1 + std::fabs(factor)) * 1e3);
  }
  KrGePoint3d p(2, 0, 0);
  p.transformBy(KrGeMatrix3d::translation(KrGeVector3d(1, 1, 1)));
  EXPECT_TRUE(p.isEqualTo(KrGePoint3d(3, 1, 1)));
  EXPECT_TRUE(KrGePoint3d().setToProduct(KrGeMatrix3d::scaling(2, KrGePoint3d(1, 1, 1)), p).isEqualTo(KrGePoint3d(5, 1, 1)));
}
