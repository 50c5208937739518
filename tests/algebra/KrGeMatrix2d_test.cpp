// 2D matrices: inverse round trips, the maps with a centre, and the tests on raw dots and
// absolute lengths.
#include "testkit/TestKit.h"

using namespace testkit;

namespace {

KrGeMatrix2d fromColumns(const KrGeVector2d& x, const KrGeVector2d& y, const KrGePoint2d& origin = KrGePoint2d::kOrigin) {
  KrGeMatrix2d m;
  return m.setCoordSystem(origin, x, y);
}

double maxDifference(const KrGeMatrix2d& a, const KrGeMatrix2d& b) {
  double largest = 0;
  for (unsigned i = 0; i < 3; ++i)
    for (unsigned j = 0; j < 3; ++j) largest = std::fmax(largest, std::fabs(a(i, j) - b(i, j)));
  return largest;
}

}  // namespace

TEST(KrGeMatrix2d, InverseRoundTripsAndMapsKeepTheirCentre) {
  repeat(1729, 1000, [](Random& random, int) {
    const KrGeMatrix2d m = fromColumns({random.uniform(-10, 10), random.uniform(-10, 10)},
                                       {random.uniform(-10, 10), random.uniform(-10, 10)},
                                       {random.uniform(-10, 10), random.uniform(-10, 10)});
    if (std::fabs(m.det()) >= 1.0) {
      ASSERT_LE(maxDifference(m.inverse() * m, KrGeMatrix2d::kIdentity), 1e-12);
    }
  });
  KrGeMatrix2d odd = KrGeMatrix2d::scaling(2);
  odd(2, 0) = 9;
  EXPECT_EQ(odd.inverse()(2, 0), 0.0);  // the inverse starts from the identity
  const KrGeMatrix2d m = fromColumns({1, 2}, {3, 4}, {5, 6});
  EXPECT_EQ(m.det(), -2.0);
  EXPECT_EQ(m.scale(), 5.0);
  EXPECT_TRUE(std::isnan(fromColumns({1, 0}, {kNaN, 0}).scale()));
  EXPECT_EQ((m * KrGeVector2d(1, 1)).x, 4.0);  // vectors ignore the translation
  const KrGePoint2d c(1, -2);
  EXPECT_TRUE((KrGeMatrix2d::rotation(kPi / 2, c) * KrGePoint2d(2, -2)).isEqualTo(KrGePoint2d(1, -1)));
  EXPECT_TRUE((KrGeMatrix2d::mirroring(c) * KrGePoint2d(0, 0)).isEqualTo(KrGePoint2d(2, -4)));
  EXPECT_TRUE((KrGeMatrix2d::scaling(2, c) * KrGePoint2d(2, -2)).isEqualTo(KrGePoint2d(3, -2)));
  const KrGeMatrix2d align = KrGeMatrix2d::alignCoordSys({1, 1}, {2, 0}, {0, 3}, {-5, 0}, {0, 1}, {-1, 0});
  EXPECT_TRUE((align * KrGePoint2d(1, 1)).isEqualTo(KrGePoint2d(-5, 0)));
  EXPECT_TRUE((align * KrGeVector2d(2, 0)).isEqualTo(KrGeVector2d(0, 1)));
  EXPECT_TRUE((align * KrGeVector2d(0, 3)).isEqualTo(KrGeVector2d(-1, 0)));
}

TEST(KrGeMatrix2d, TestsUseTheRawDotAndAbsoluteLengths) {
  const struct { const char* name; KrGeVector2d x, y; bool singular, scaledOrtho, uniScaledOrtho; } rows[] = {
      {"identity", {1, 0}, {0, 1}, false, true, true},
      {"short column", {1, 0}, {0, 1e-10}, true, false, false},
      {"parallel", {1, 0}, {-2, 0}, true, false, false},
      {"large, raw dot 1e-9", {1000, 0}, {1e-12, 1000}, false, false, false},
      {"lengths 1000 and 1000+2e-10", {1000, 0}, {0, 1000 + 2e-10}, false, true, false},
      {"lengths 1 and 1+5e-11", {1, 0}, {0, 1 + 5e-11}, false, true, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const KrGeMatrix2d m = fromColumns(row.x, row.y);
    EXPECT_EQ(m.isSingular(), row.singular);
    EXPECT_EQ(m.isScaledOrtho(), row.scaledOrtho);
    EXPECT_EQ(m.isUniScaledOrtho(), row.uniScaledOrtho);
  }
  KrGeMatrix2d a = KrGeMatrix2d::translation(KrGeVector2d(1, 2)), b = a;
  b(2, 0) = 42;  // the third row is not compared
  EXPECT_TRUE(a == b);
  b(1, 2) = 2 + 2e-10;
  EXPECT_TRUE(a != b);
}

TEST(KrGeMatrix2d, IsConformalReportsScaleAngleAndMirror) {
  double scale = -1, angle = -1;
  bool isMirror = true;
  KrGeVector2d reflex(9, 9);
  ASSERT_TRUE((KrGeMatrix2d::rotation(-kPi / 6) * KrGeMatrix2d::scaling(2)).isConformal(scale, angle, isMirror, reflex));
  EXPECT_DOUBLE_EQ(scale, 2.0);
  EXPECT_NEAR(angle, -kPi / 6, 1e-15);
  EXPECT_FALSE(isMirror);
  EXPECT_EQ(reflex.x, 9.0);  // not written without a mirror
  ASSERT_TRUE(fromColumns({0, 3}, {3, 0}).isConformal(scale, angle, isMirror, reflex));
  EXPECT_TRUE(isMirror);
  EXPECT_EQ(reflex.x, 3.0);
  EXPECT_NEAR(angle, kPi / 2, 1e-15);
  // A fixed 1e-10 threshold on the length difference, whatever the tolerance.
  EXPECT_TRUE(fromColumns({1, 0}, {0, 1 + 0.5e-10}).isConformal(scale, angle, isMirror, reflex));
  scale = 7;
  EXPECT_FALSE(fromColumns({1, 0}, {0, 1 + 2e-10}).isConformal(scale, angle, isMirror, reflex));
  EXPECT_FALSE(fromColumns({1, 0}, {0.1, 1}).isConformal(scale, angle, isMirror, reflex));
  EXPECT_EQ(scale, 7.0);  // outputs untouched by the early failures
  EXPECT_FALSE(fromColumns({0, 0}, {0, 0}).isConformal(scale, angle, isMirror, reflex));
  EXPECT_EQ(scale, 0.0);
}
