// 3D matrices against independent forms: Rodrigues' rotation, Cramer's rule in exact integers,
// frames that must be orthonormal; and the tests on pairwise directions and absolute lengths.
#include "testkit/TestKit.h"

using namespace testkit;

namespace {

KrGeMatrix3d fromColumns(const KrGeVector3d& x, const KrGeVector3d& y, const KrGeVector3d& z,
                         const KrGePoint3d& origin = KrGePoint3d::kOrigin) {
  KrGeMatrix3d m;
  return m.setCoordSystem(origin, x, y, z);
}

double maxDifference(const KrGeMatrix3d& a, const KrGeMatrix3d& b) {
  double largest = 0;
  for (unsigned i = 0; i < 4; ++i)
    for (unsigned j = 0; j < 4; ++j) largest = std::fmax(largest, std::fabs(a(i, j) - b(i, j)));
  return largest;
}

KrGePoint3d rodrigues(const KrGePoint3d& p, double angle, const KrGeVector3d& axis, const KrGePoint3d& centre) {
  const KrGeVector3d k = axis / axis.length(), v = p - centre;
  return centre + v * std::cos(angle) + k.crossProduct(v) * std::sin(angle) + k * (k.dotProduct(v) * (1 - std::cos(angle)));
}

long long det3(const long long (&a)[3][3]) {
  return a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) - a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
         a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
}

}  // namespace

TEST(KrGeMatrix3d, ProductsNeverReadTheFourthRowAndMayAliasAnOperand) {
  KrGeMatrix3d m = fromColumns({0, 1, 0}, {-1, 0, 0}, {0, 0, 2}, {10, 20, 30});
  m(3, 0) = kNaN;
  m(3, 3) = 0;
  EXPECT_TRUE(within(m * KrGePoint3d(1, 2, 3), KrGePoint3d(8, 21, 36), 0.0));
  EXPECT_TRUE(within(m * KrGeVector3d(1, 2, 3), KrGeVector3d(-2, 1, 6), 0.0));
  EXPECT_TRUE(m.isEqualTo(fromColumns({0, 1, 0}, {-1, 0, 0}, {0, 0, 2}, {10, 20, 30})));  // the fourth row is not compared
  const KrGeMatrix3d a = KrGeMatrix3d::rotation(0.3, KrGeVector3d(1, 2, 3), KrGePoint3d(1, 0, 0));
  KrGeMatrix3d self = a;
  EXPECT_EQ(maxDifference(self.setToProduct(self, self), a * a), 0.0);
  const KrGeMatrix3d n = fromColumns({1, 2, 3}, {4, 5, 6}, {7, 8, 10}, {-100, -2, -3});
  EXPECT_LE(((a * n) * KrGePoint3d(3, -1, 2)).distanceTo(a * (n * KrGePoint3d(3, -1, 2))), 1e-12);
  EXPECT_EQ(n.det(), -3.0);
  EXPECT_EQ(n.norm(), 10.0);
  EXPECT_EQ(KrGeMatrix3d::translation(KrGeVector3d(5, -9, 1)).norm(), 1.0);
  EXPECT_DOUBLE_EQ(n.scale(), std::sqrt(49.0 + 64.0 + 100.0));
  EXPECT_EQ(n(9, 9), n(3, 3));  // an index above 3 stands for 3
}

TEST(KrGeMatrix3d, RotationMatchesRodriguesAndAZeroAxisGivesTheIdentity) {
  repeat(424242, 1000, [](Random& random, int i) {
    const KrGeVector3d axis = i % 10 == 0 ? KrGeVector3d(0, 0, random.uniform(0.5, 3)) : random.vector(-3, 3);
    const KrGePoint3d centre = random.point(100), p = random.point(100);
    const double angle = random.uniform(-10, 10);
    const KrGeMatrix3d r = KrGeMatrix3d::rotation(angle, axis, centre);
    ASSERT_NEAR(r.det(), 1.0, 1e-14);
    ASSERT_LE((r * p).distanceTo(rodrigues(p, angle, axis, centre)), 1e-12);
  });
  EXPECT_EQ(maxDifference(KrGeMatrix3d::rotation(1.0, KrGeVector3d(1e-10, 0, 0), KrGePoint3d(5, 6, 7)), KrGeMatrix3d::kIdentity), 0.0);
  EXPECT_GT(maxDifference(KrGeMatrix3d::rotation(1.0, KrGeVector3d(2e-10, 0, 0)), KrGeMatrix3d::kIdentity), 0.1);
  const KrGePoint3d c(1, -2, 3);
  EXPECT_TRUE(within(KrGeMatrix3d::mirroring(c) * KrGePoint3d(2, 0, 0), KrGePoint3d(0, -4, 6), 0.0));
  EXPECT_TRUE(within(KrGeMatrix3d::scaling(3.0, c) * KrGePoint3d(2, -2, 3), KrGePoint3d(4, -2, 3), 0.0));
}

TEST(KrGeMatrix3d, InverseRoundTripsAndIsExactOnIntegerInput) {
  repeat(8675309, 2000, [](Random& random, int) {
    const KrGeVector3d x = random.unitVector(), y = random.unitVector(), z = random.unitVector();
    if (std::fabs(x.crossProduct(y).dotProduct(z)) < 0.2) return;  // well-conditioned only
    const double s = random.logUniform(-2, 2);
    const KrGeMatrix3d m = fromColumns(x * s, y * s, z * s, random.point(10));
    ASSERT_LE(maxDifference(m.inverse() * m, KrGeMatrix3d::kIdentity), 1e-12);
  });
  // Integer entries: each translation entry is the solution of A x = -t by Cramer's rule, its
  // determinants exact in 64-bit integers, rounded once.
  std::mt19937_64 engine(4417);
  std::uniform_int_distribution<int> entry(-99, 99);
  for (int trial = 0; trial < 500; ++trial) {
    long long a[3][3], t[3], replaced[3][3];
    KrGeMatrix3d m;
    for (unsigned i = 0; i < 3; ++i) {
      for (unsigned j = 0; j < 3; ++j) m(i, j) = static_cast<double>(a[i][j] = entry(engine));
      m(i, 3) = static_cast<double>(t[i] = entry(engine));
    }
    if (det3(a) == 0) continue;
    for (unsigned k = 0; k < 3; ++k) {
      for (unsigned i = 0; i < 3; ++i)
        for (unsigned j = 0; j < 3; ++j) replaced[i][j] = j == k ? -t[i] : a[i][j];
      ASSERT_EQ(m.inverse()(k, 3), static_cast<double>(det3(replaced)) / static_cast<double>(det3(a)))
          << "seed 4417, trial " << trial << ", row " << k;
    }
  }
  KrGeMatrix3d result;
  for (unsigned j = 0; j < 4; ++j) result(3, j) = 7.0;
  EXPECT_TRUE(fromColumns({0, 0, 0}, {0, 1, 0}, {0, 0, 1}).inverse(result, tolerance(1.0)));  // no test, no pivot
  EXPECT_FALSE(std::isfinite(result(0, 0)));
  EXPECT_EQ(result(3, 2), 7.0);  // the fourth row is not written
}

TEST(KrGeMatrix3d, SingularAndOrthogonalAreTestedPairwiseOnAbsoluteLengths) {
  const struct { const char* name; KrGeVector3d x, y, z; bool singular, scaledOrtho; } rows[] = {
      {"coplanar distinct", {1, 0, 0}, {0, 1, 0}, {1, 1, 0}, false, false},
      {"x parallel y", {1, 0, 0}, {2, 0, 0}, {0, 0, 1}, true, false},
      {"z antiparallel x", {1, 0, 0}, {0, 1, 0}, {-3, 0, 0}, true, false},
      {"zero column at tolerance", {1, 0, 0}, {0, 1e-10, 0}, {0, 0, 1}, true, false},
      {"short column above tolerance", {1, 0, 0}, {0, 2e-10, 0}, {0, 0, 1}, false, true},
      {"sheared", {1, 0, 0}, {0.1, 1, 0}, {0, 0, 1}, false, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(fromColumns(row.x, row.y, row.z).isSingular(), row.singular);
    EXPECT_EQ(fromColumns(row.x, row.y, row.z).isScaledOrtho(), row.scaledOrtho);
  }
  KrGeMatrix3d m = KrGeMatrix3d::scaling(1.0);
  m(1, 1) = 1 + 5e-11;
  EXPECT_TRUE(m.isUniScaledOrtho());
  m = KrGeMatrix3d::scaling(1000.0);
  m(1, 1) = 1000 + 2e-10;  // the length difference is absolute
  EXPECT_FALSE(m.isUniScaledOrtho());
  EXPECT_FALSE(fromColumns({kNaN, 0, 0}, {0, 1, 0}, {0, 0, 1}).isUniScaledOrtho());
  const KrGeTol tol = tolerance(1.0, 1e-6);  // the translation is compared with equalVector
  const KrGeMatrix3d t = KrGeMatrix3d::translation(KrGeVector3d(1, 2, 3));
  EXPECT_TRUE(t.isEqualTo(KrGeMatrix3d::translation(KrGeVector3d(1, 2, 3 + 0.9e-6)), tol));
  EXPECT_FALSE(t.isEqualTo(KrGeMatrix3d::translation(KrGeVector3d(1, 2, 3 + 2e-6)), tol));
}

TEST(KrGeMatrix3d, FramesAreOrthonormalAndAlignmentMapsOneFrameOntoTheOther) {
  repeat(12, 300, [](Random& random, int) {
    const KrGeVector3d n = random.vector(-5, 5);
    const KrGeMatrix3d frame = KrGeMatrix3d::planeToWorld(n);
    ASSERT_TRUE(frame.isUniScaledOrtho(tolerance(1e-14)));
    ASSERT_NEAR(frame.det(), 1.0, 1e-14);
    ASSERT_TRUE(within(frame * KrGeVector3d(0, 0, 1), n.normal(), 1e-15));
    ASSERT_LE(maxDifference(KrGeMatrix3d::worldToPlane(n) * frame, KrGeMatrix3d::kIdentity), 1e-14);
  });
  repeat(2718, 500, [](Random& random, int) {
    const KrGePoint3d fromO = random.point(50), toO = random.point(50);
    const KrGeVector3d fx = random.vector(-1, 1), fy = random.vector(-1, 1), fz = random.vector(-1, 1);
    const KrGeVector3d tx = random.vector(-1, 1), ty = random.vector(-1, 1), tz = random.vector(-1, 1);
    if (std::fabs(fx.normal().crossProduct(fy.normal()).dotProduct(fz.normal())) < 0.2) return;
    const KrGeMatrix3d m = KrGeMatrix3d::alignCoordSys(fromO, fx, fy, fz, toO, tx, ty, tz);
    const double scale = 1e-11 * (1 + 100 * (tx.length() + ty.length() + tz.length()) / (fx.length() * fy.length() * fz.length()));
    ASSERT_LE((m * fromO).distanceTo(toO), scale * 50);
    ASSERT_TRUE(within(m * fx, tx, scale));
    ASSERT_TRUE(within(m * fy, ty, scale));
    ASSERT_LE((m * (fromO + fz)).distanceTo(toO + tz), scale * 50);
  });
}
