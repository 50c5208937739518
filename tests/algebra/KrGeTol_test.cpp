#include "KrGeContext.h"
#include "KrGeTol.h"
#include "KrGeVector3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <type_traits>

#include "tests/algebra/AlgebraRandom.h"

TEST(KrGeTol, ConstructorIsTenTimesCoarserThanTheLoadedDefault) {
  static_assert(std::is_trivially_copyable<KrGeTol>::value, "plain data");
  const KrGeTol tol;
  EXPECT_EQ(tol.equalPoint(), 1e-9);
  EXPECT_EQ(tol.equalVector(), 1e-9);
  EXPECT_EQ(KrGeContext::gTol.equalPoint(), 1e-10);
  EXPECT_EQ(KrGeContext::gTol.equalVector(), 1e-10);
}

TEST(KrGeTol, SettersStoreZeroForNegativeOrNaN) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const struct { double in, stored; } rows[] = {{-1e-3, 0.0}, {nan, 0.0}, {-0.0, -0.0}, {5e-7, 5e-7}, {inf, inf}, {-inf, 0.0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.in);
    KrGeTol tol;
    tol.setEqualPoint(row.in);
    tol.setEqualVector(row.in);
    EXPECT_EQ(tol.equalPoint(), row.stored);
    EXPECT_EQ(tol.equalVector(), row.stored);
  }
}

TEST(KrGeContext, ReplacedToleranceIsSeenByOperators) {
  KrGeContext::gErrorFunc();  // the default does nothing
  const KrGeTol saved = KrGeContext::gTol;
  const KrGeVector3d u(1, 0, 0), v(1 + 5e-9, 0, 0);
  EXPECT_FALSE(u == v);
  KrGeContext::gTol.setEqualVector(1e-8);
  EXPECT_TRUE(u == v);
  KrGeContext::gTol = saved;
}

// Y x n while |n.x| and |n.y| of the normalised input are both below 1/64 (strictly), else Z x n.
TEST(KrGeContext, DefaultOrthoVectorFollowsTheArbitraryAxisRule) {
  const double zAtBound = std::sqrt(1.0 - 1.0 / 4096.0);
  ASSERT_EQ(KrGeVector3d(1.0 / 64.0, 0, zAtBound).length(), 1.0);
  const double below = 1.0 / std::sqrt(1.0 + 1.0 / 4096.0);
  const struct { KrGeVector3d in, out; } rows[] = {
      {{0, 0, 5}, {1, 0, 0}},
      {{0, 0, -2}, {-1, 0, 0}},
      {{1.0 / 64.0, 0, 1}, {below, 0, -below / 64.0}},  // normalised n.x ~ 0.015623 < 1/64: Y x n
      {{1.0 / 64.0, 0, zAtBound}, {0, 1, 0}},            // n.x exactly 1/64: Z x n
      {{0, 0.02, 1}, {-1, 0, 0}},                        // |n.y| ~ 0.019996 >= 1/64: Z x n
      {{1, 0, 0}, {0, 1, 0}},
      {{0, 0, 0}, {0, 0, 0}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.in.x << " " << row.in.y << " " << row.in.z);
    KrGeVector3d out(9, 9, 9);
    KrGeContext::gOrthoVector(row.in, out);
    EXPECT_NEAR(out.x, row.out.x, 1e-15);
    EXPECT_NEAR(out.y, row.out.y, 1e-15);
    EXPECT_NEAR(out.z, row.out.z, 1e-15);
  }
  algebra_test::Random random(20240611);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 1000; ++i) {
    const KrGeVector3d in = random.vector(-200, 200);
    KrGeVector3d out;
    KrGeContext::gOrthoVector(in, out);
    ASSERT_NEAR(out.length(), 1.0, 1e-15);
    ASSERT_NEAR(out.dotProduct(in.normal()), 0.0, 1e-15);
  }
}
