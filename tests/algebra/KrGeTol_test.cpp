// Tolerances, the library-wide context and its arbitrary-axis rule.
#include "testkit/TestKit.h"

using namespace testkit;

TEST(KrGeTol, DefaultsAndSettersStoreZeroForNegativeOrNaN) {
  EXPECT_EQ(KrGeTol().equalPoint(), 1e-9);
  EXPECT_EQ(KrGeTol().equalVector(), 1e-9);
  EXPECT_EQ(KrGeContext::gTol.equalPoint(), 1e-10);  // set at load
  EXPECT_EQ(KrGeContext::gTol.equalVector(), 1e-10);
  const struct { double in, stored; } rows[] = {{-1e-3, 0.0}, {kNaN, 0.0}, {5e-7, 5e-7}, {kInf, kInf}, {-kInf, 0.0}};
  for (const auto& row : rows) {
    const KrGeTol tol = tolerance(row.in);
    EXPECT_EQ(tol.equalPoint(), row.stored) << row.in;
    EXPECT_EQ(tol.equalVector(), row.stored) << row.in;
  }
  KrGeContext::gErrorFunc();  // the default does nothing
  const KrGeTol saved = KrGeContext::gTol;
  KrGeContext::gTol.setEqualVector(1e-8);
  EXPECT_TRUE(KrGeVector3d(1, 0, 0) == KrGeVector3d(1 + 5e-9, 0, 0));  // operators read gTol
  KrGeContext::gTol = saved;
  EXPECT_FALSE(KrGeVector3d(1, 0, 0) == KrGeVector3d(1 + 5e-9, 0, 0));
}

// Y x n while |n.x| and |n.y| of the normalised input are both below 1/64 (strictly), else Z x n.
TEST(KrGeContext, DefaultOrthoVectorFollowsTheArbitraryAxisRule) {
  const double zAtBound = std::sqrt(1.0 - 1.0 / 4096.0);
  ASSERT_EQ(KrGeVector3d(1.0 / 64.0, 0, zAtBound).length(), 1.0);
  const double below = 1.0 / std::sqrt(1.0 + 1.0 / 4096.0);
  const struct { KrGeVector3d in, out; } rows[] = {
      {{0, 0, -2}, {-1, 0, 0}},
      {{1.0 / 64.0, 0, 1}, {below, 0, -below / 64.0}},  // normalised n.x ~ 0.015623 < 1/64: Y x n
      {{1.0 / 64.0, 0, zAtBound}, {0, 1, 0}},            // n.x exactly 1/64: Z x n
      {{0, 0.02, 1}, {-1, 0, 0}},                        // |n.y| ~ 0.019996 >= 1/64: Z x n
      {{0, 0, 0}, {0, 0, 0}},
  };
  for (const auto& row : rows) {
    KrGeVector3d out(9, 9, 9);
    KrGeContext::gOrthoVector(row.in, out);
    EXPECT_TRUE(within(out, row.out, 1e-15)) << row.in.x << " " << row.in.y << " " << row.in.z;
  }
  repeat(20240611, 1000, [](Random& random, int) {
    const KrGeVector3d in = random.vector(-200, 200);
    KrGeVector3d out;
    KrGeContext::gOrthoVector(in, out);
    ASSERT_NEAR(out.length(), 1.0, 1e-15);
    ASSERT_NEAR(out.dotProduct(in.normal()), 0.0, 1e-15);
  });
}
