#include "KrGeMatrix3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <type_traits>

#include "tests/algebra/AlgebraRandom.h"

using namespace algebra_test;

namespace {


KrGeMatrix3d fromColumns(const KrGeVector3d& x, const KrGeVector3d& y, const KrGeVector3d& z,
                         const KrGePoint3d& origin = KrGePoint3d::kOrigin) {
  KrGeMatrix3d m;
  return m.setCoordSystem(origin, x, y, z);
}

double maxDifference(const KrGeMatrix3d& a, const KrGeMatrix3d& b, unsigned rows = 4) {
  double largest = 0;
  for (unsigned i = 0; i < rows; ++i)
    for (unsigned j = 0; j < 4; ++j) largest = std::fmax(largest, std::fabs(a(i, j) - b(i, j)));
  return largest;
}

// Rodrigues' closed form, written independently of the frame conjugation under test.
KrGePoint3d rodrigues(const KrGePoint3d& p, double angle, const KrGeVector3d& axis, const KrGePoint3d& centre) {
  const KrGeVector3d k = axis / axis.length();
  const KrGeVector3d v = p - centre;
  const KrGeVector3d r = v * std::cos(angle) + k.crossProduct(v) * std::sin(angle) +
                         k * (k.dotProduct(v) * (1 - std::cos(angle)));
  return centre + r;
}
}  // namespace

TEST(KrGeMatrix3d, IsPlainDataAndProductsNeverReadTheFourthRow) {
  static_assert(sizeof(KrGeMatrix3d) == 16 * sizeof(double), "sixteen doubles");
  static_assert(std::is_trivially_copyable<KrGeMatrix3d>::value, "plain data");
  const KrGeMatrix3d identity;
  for (unsigned i = 0; i < 4; ++i)
    for (unsigned j = 0; j < 4; ++j) EXPECT_EQ(identity(i, j), i == j ? 1.0 : 0.0);
  EXPECT_EQ(maxDifference(KrGeMatrix3d::kIdentity, identity), 0.0);
  KrGeMatrix3d m = fromColumns({0, 1, 0}, {-1, 0, 0}, {0, 0, 2}, {10, 20, 30});
  m(3, 0) = kNaN;
  m(3, 3) = 0;
  EXPECT_TRUE((m * KrGePoint3d(1, 2, 3)).isEqualTo(KrGePoint3d(8, 21, 36), tolerance(0.0)));
  EXPECT_TRUE((m * KrGeVector3d(1, 2, 3)).isEqualTo(KrGeVector3d(-2, 1, 6), tolerance(0.0)));
  EXPECT_TRUE(m.isEqualTo(fromColumns({0, 1, 0}, {-1, 0, 0}, {0, 0, 2}, {10, 20, 30})));  // fourth row not compared
}

TEST(KrGeMatrix3d, MeasuresUseTheBlockOnly) {
  const KrGeMatrix3d m = fromColumns({1, 2, 3}, {4, 5, 6}, {7, 8, 10}, {-100, -2, -3});
  KrGePoint3d origin;
  KrGeVector3d x, y, z;
  m.getCoordSystem(origin, x, y, z);
  EXPECT_TRUE(origin.isEqualTo(KrGePoint3d(-100, -2, -3)) && y.isEqualTo(KrGeVector3d(4, 5, 6)));
  EXPECT_TRUE(x.isEqualTo(KrGeVector3d(1, 2, 3)) && z.isEqualTo(KrGeVector3d(7, 8, 10)));
  EXPECT_EQ(m.det(), -3.0);
  EXPECT_EQ(m.norm(), 10.0);
  EXPECT_EQ(KrGeMatrix3d::translation(KrGeVector3d(5, -9, 1)).norm(), 1.0);
  EXPECT_DOUBLE_EQ(m.scale(), std::sqrt(49.0 + 64.0 + 100.0));
  EXPECT_EQ(m.transpose()(3, 0), -100.0);
  EXPECT_TRUE(std::isnan(fromColumns({kNaN, 0, 0}, {0, 1, 0}, {0, 0, 1}).norm()));
  KrGeMatrix3d moved = m;
  moved.setTranslation(KrGeVector3d(4, 5, 6));  // the translation column only
  EXPECT_EQ(maxDifference(moved, fromColumns({1, 2, 3}, {4, 5, 6}, {7, 8, 10}, {4, 5, 6})), 0.0);
  EXPECT_EQ(maxDifference(KrGeMatrix3d(KrGeVector3d(4, 5, 6)), KrGeMatrix3d::translation(KrGeVector3d(4, 5, 6))), 0.0);
}

TEST(KrGeMatrix3d, ProductIsSafeWhenTheResultAliasesAnOperand) {
  const KrGeMatrix3d a = KrGeMatrix3d::rotation(0.3, KrGeVector3d(1, 2, 3), KrGePoint3d(1, 0, 0));
  const KrGeMatrix3d b = KrGeMatrix3d::scaling(2.5, KrGePoint3d(0, 4, 0));
  const KrGeMatrix3d expected = a * b;
  KrGeMatrix3d left = a, right = b;
  EXPECT_EQ(maxDifference(left.postMultBy(b), expected), 0.0);
  EXPECT_EQ(maxDifference(right.preMultBy(a), expected), 0.0);
  KrGeMatrix3d self = a;
  self.setToProduct(self, self);
  EXPECT_EQ(maxDifference(self, a * a), 0.0);
  const KrGePoint3d p(3, -1, 2);
  EXPECT_LE(((a * b) * p).distanceTo(a * (b * p)), 1e-14);
}

TEST(KrGeMatrix3d, RotationAboutAZeroAxisIsTheIdentity) {
  const KrGeMatrix3d zero = KrGeMatrix3d::rotation(1.0, KrGeVector3d(0, 0, 0), KrGePoint3d(5, 6, 7));
  EXPECT_EQ(maxDifference(zero, KrGeMatrix3d::kIdentity), 0.0);
  EXPECT_EQ(maxDifference(KrGeMatrix3d::rotation(1.0, KrGeVector3d(1e-10, 0, 0)), KrGeMatrix3d::kIdentity), 0.0);
  EXPECT_GT(maxDifference(KrGeMatrix3d::rotation(1.0, KrGeVector3d(2e-10, 0, 0)), KrGeMatrix3d::kIdentity), 0.1);
}

TEST(KrGeMatrix3d, RotationPreservesAxisLengthsAndAnglesAndMatchesRodrigues) {
  algebra_test::Random random(424242);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 1000; ++i) {
    const KrGeVector3d axis = i % 10 == 0 ? KrGeVector3d(0, 0, random.uniform(0.5, 3)) : random.vector(-3, 3);
    const KrGePoint3d centre = random.point(100);
    const double angle = random.uniform(-10, 10);
    const KrGeMatrix3d r = KrGeMatrix3d::rotation(angle, axis, centre);
    ASSERT_NEAR(r.det(), 1.0, 1e-14);
    ASSERT_LE((r * axis - axis).length(), 1e-14 * axis.length());
    ASSERT_LE((r * (centre + axis)).distanceTo(centre + axis), 1e-12);
    const KrGeVector3d u = random.vector(-2, 2), w = random.vector(-2, 2);
    ASSERT_NEAR((r * u).length(), u.length(), 1e-14 * u.length());
    ASSERT_NEAR((r * u).angleTo(r * w), u.angleTo(w), 1e-13);
    const KrGePoint3d p = random.point(100);
    ASSERT_LE((r * p).distanceTo(rodrigues(p, angle, axis, centre)), 1e-12);
  }
}

TEST(KrGeMatrix3d, InverseTimesMatrixIsIdentity) {
  algebra_test::Random random(8675309);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 2000; ++i) {
    const KrGeVector3d x = random.unitVector(), y = random.unitVector(), z = random.unitVector();
    if (std::fabs(x.crossProduct(y).dotProduct(z)) < 0.2) continue;  // well-conditioned only
    const double s = random.logUniform(-2, 2);
    const KrGeMatrix3d m = fromColumns(x * s, y * s, z * s, random.point(10));
    const KrGeMatrix3d product = m.inverse() * m;
    ASSERT_LE(maxDifference(product, KrGeMatrix3d::kIdentity), 1e-12) << i;
    KrGeMatrix3d inverted = m;
    ASSERT_LE(maxDifference(inverted.invert().invert(), m), 1e-12 * (1 + 10 / std::fabs(s)));
  }
}

// On integer entries the translation of the inverse is one correctly rounded quotient: the
// solution of A x = -t by Cramer's rule, its determinants exact in 64-bit integers.
TEST(KrGeMatrix3d, InverseTranslationIsExactOnIntegerInput) {
  std::mt19937_64 engine(4417);
  std::uniform_int_distribution<int> entry(-99, 99);
  const auto det3 = [](const long long (&a)[3][3]) {
    return a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) - a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
           a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
  };
  for (int trial = 0; trial < 500; ++trial) {
    long long a[3][3], t[3];
    KrGeMatrix3d m;
    for (unsigned i = 0; i < 3; ++i) {
      for (unsigned j = 0; j < 3; ++j) m(i, j) = static_cast<double>(a[i][j] = entry(engine));
      m(i, 3) = static_cast<double>(t[i] = entry(engine));
    }
    const long long det = det3(a);
    if (det == 0) continue;
    const KrGeMatrix3d inverse = m.inverse();
    for (unsigned k = 0; k < 3; ++k) {
      long long replaced[3][3];
      for (unsigned i = 0; i < 3; ++i)
        for (unsigned j = 0; j < 3; ++j) replaced[i][j] = j == k ? -t[i] : a[i][j];
      ASSERT_EQ(inverse(k, 3), static_cast<double>(det3(replaced)) / static_cast<double>(det))
          << "seed 4417, trial " << trial << ", row " << k;
    }
  }
}

TEST(KrGeMatrix3d, InverseIgnoresToleranceAndLeavesTheFourthRow) {
  KrGeMatrix3d result;
  for (unsigned j = 0; j < 4; ++j) result(3, j) = 7.0;
  const KrGeMatrix3d singular = fromColumns({0, 0, 0}, {0, 1, 0}, {0, 0, 1});
  EXPECT_TRUE(singular.inverse(result, tolerance(1.0)));
  EXPECT_FALSE(std::isfinite(result(0, 0)));
  for (unsigned j = 0; j < 4; ++j) EXPECT_EQ(result(3, j), 7.0);
  KrGeMatrix3d odd = KrGeMatrix3d::scaling(2.0);
  odd(3, 1) = 5.0;
  EXPECT_EQ(odd.inverse()(3, 1), 5.0);  // inverse() starts from a copy
  EXPECT_EQ(odd.inverse()(0, 0), 0.5);
}

TEST(KrGeMatrix3d, SingularIsPairwiseNotADeterminant) {
  const struct { const char* name; KrGeVector3d x, y, z; bool singular; } rows[] = {
      {"coplanar distinct", {1, 0, 0}, {0, 1, 0}, {1, 1, 0}, false},
      {"x parallel y", {1, 0, 0}, {2, 0, 0}, {0, 0, 1}, true},
      {"z antiparallel x", {1, 0, 0}, {0, 1, 0}, {-3, 0, 0}, true},
      {"zero column at tolerance", {1, 0, 0}, {0, 1e-10, 0}, {0, 0, 1}, true},
      {"short column above tolerance", {1, 0, 0}, {0, 2e-10, 0}, {0, 0, 1}, false},
      {"identity", {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(fromColumns(row.x, row.y, row.z).isSingular(), row.singular);
  }
}

TEST(KrGeMatrix3d, OrthogonalityTestsUseAbsoluteLengths) {
  KrGeMatrix3d m = KrGeMatrix3d::scaling(1.0);
  m(1, 1) = 1 + 5e-11;
  EXPECT_TRUE(m.isUniScaledOrtho());
  m = KrGeMatrix3d::scaling(1000.0);
  m(1, 1) = 1000 + 2e-10;
  EXPECT_FALSE(m.isUniScaledOrtho());
  EXPECT_TRUE(m.isScaledOrtho());
  EXPECT_FALSE(fromColumns({1, 0, 0}, {0, 1, 0}, {0, 0, 1e-10}).isScaledOrtho());  // not strictly longer
  EXPECT_TRUE(fromColumns({1, 0, 0}, {0, 1, 0}, {0, 0, 2e-10}).isScaledOrtho());
  EXPECT_FALSE(fromColumns({1, 0, 0}, {0.1, 1, 0}, {0, 0, 1}).isScaledOrtho());
  EXPECT_TRUE(KrGeMatrix3d::rotation(0.7, KrGeVector3d(1, 2, 3)).isUniScaledOrtho());
  EXPECT_FALSE(fromColumns({kNaN, 0, 0}, {0, 1, 0}, {0, 0, 1}).isUniScaledOrtho());
}

TEST(KrGeMatrix3d, EqualityComparesTranslationWithEqualVector) {
  KrGeTol tol;
  tol.setEqualPoint(1.0);
  tol.setEqualVector(1e-6);
  const KrGeMatrix3d a = KrGeMatrix3d::translation(KrGeVector3d(1, 2, 3));
  EXPECT_TRUE(a.isEqualTo(KrGeMatrix3d::translation(KrGeVector3d(1, 2, 3 + 0.9e-6)), tol));
  EXPECT_FALSE(a.isEqualTo(KrGeMatrix3d::translation(KrGeVector3d(1, 2, 3 + 2e-6)), tol));
  KrGeMatrix3d b = a;
  b(3, 2) = 99;
  EXPECT_TRUE(a == b);
  b(0, 1) = 2e-10;
  EXPECT_TRUE(a != b);
}

TEST(KrGeMatrix3d, MirroringAndScalingKeepTheirCentre) {
  const KrGePoint3d c(1, -2, 3);
  const KrGeMatrix3d m = KrGeMatrix3d::mirroring(c);
  EXPECT_TRUE((m * KrGePoint3d(2, 0, 0)).isEqualTo(KrGePoint3d(0, -4, 6)));
  EXPECT_LE(maxDifference(m * m, KrGeMatrix3d::kIdentity), 1e-15);
  EXPECT_EQ(m.det(), -1.0);
  EXPECT_TRUE((KrGeMatrix3d::scaling(3.0, c) * KrGePoint3d(2, -2, 3)).isEqualTo(KrGePoint3d(4, -2, 3)));
}

TEST(KrGeMatrix3d, PlaneToWorldIsARightHandedOrthonormalFrame) {
  algebra_test::Random random(12);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 300; ++i) {
    const KrGeVector3d n = random.vector(-5, 5);
    const KrGeMatrix3d frame = KrGeMatrix3d::planeToWorld(n);
    ASSERT_TRUE(frame.isUniScaledOrtho(tolerance(1e-14)));
    ASSERT_NEAR(frame.det(), 1.0, 1e-14);
    ASSERT_LE((frame * KrGeVector3d(0, 0, 1) - n.normal()).length(), 1e-15);
    ASSERT_LE(maxDifference(KrGeMatrix3d::worldToPlane(n) * frame, KrGeMatrix3d::kIdentity), 1e-14);
  }
}

TEST(KrGeMatrix3d, AlignCoordSysMapsTheSourceFrameOntoTheTarget) {
  algebra_test::Random random(2718);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 500; ++i) {
    const KrGePoint3d fromO = random.point(50), toO = random.point(50);
    const KrGeVector3d fx = random.vector(-1, 1), fy = random.vector(-1, 1), fz = random.vector(-1, 1);
    if (std::fabs(fx.normal().crossProduct(fy.normal()).dotProduct(fz.normal())) < 0.2) continue;
    const KrGeVector3d tx = random.vector(-1, 1), ty = random.vector(-1, 1), tz = random.vector(-1, 1);
    const KrGeMatrix3d m = KrGeMatrix3d::alignCoordSys(fromO, fx, fy, fz, toO, tx, ty, tz);
    const double scale = 1e-11 * (1 + 100 * (tx.length() + ty.length() + tz.length()) /
                                          (fx.length() * fy.length() * fz.length()));
    ASSERT_LE((m * fromO).distanceTo(toO), scale * 50);
    ASSERT_LE((m * fx - tx).length(), scale);
    ASSERT_LE((m * fy - ty).length(), scale);
    ASSERT_LE((m * (fromO + fz)).distanceTo(toO + tz), scale * 50);
  }
}

TEST(KrGeMatrix3d, NonFiniteInputNeverCrashes) {
  for (double s : {kNaN, std::numeric_limits<double>::infinity(), 1e308}) {
    SCOPED_TRACE(s);
    const KrGeMatrix3d m = fromColumns({s, 0, 0}, {0, 1, 0}, {0, 0, 1}, {s, s, s});
    (void)(KrGeMatrix3d::rotation(s, KrGeVector3d(s, 1, 0), KrGePoint3d(s, 0, 0)) * m.inverse());
    (void)KrGeMatrix3d::planeToWorld(KrGeVector3d(s, 0, s));
    EXPECT_FALSE(m.isUniScaledOrtho());
  }
}
