// The exported root finders, called through the shared library as a host calls them, against
// polynomials built from known roots.
#include "numeric/polynom_solvers.h"
#include "testkit/TestKit.h"

using testkit::recordsOf;

namespace {

KrsArray<double> array(std::initializer_list<double> values) {
  KrsArray<double> a;
  for (double v : values) a.Add(v);
  return a;
}

// Coefficients of lead * prod (x - r), expanded in long double to stay close to the roots.
KrsArray<double> fromRoots(const std::vector<double>& roots, double lead = 1.0) {
  std::vector<long double> c(roots.size() + 1, 0.0L);
  c[0] = lead;
  for (size_t k = 0; k < roots.size(); ++k) {
    for (size_t i = k + 1; i > 0; --i) c[i] = c[i - 1] - roots[k] * c[i];
    c[0] *= -roots[k];
  }
  KrsArray<double> a;
  for (long double v : c) a.Add(static_cast<double>(v));
  return a;
}

// Largest relative distance from an expected root to the nearest found one.
double worstRelativeMiss(const std::vector<double>& expected, const KrsArray<double>& found) {
  double worst = 0;
  for (double x : expected) {
    double nearest = HUGE_VAL;
    for (int i = 0; i < found.GetSize(); ++i) nearest = std::min(nearest, std::fabs(found.GetData()[i] - x));
    worst = std::max(worst, nearest / std::fabs(x));
  }
  return worst;
}

// Roots in [-scale, scale], pairwise at least `gap` * scale apart and away from 0.
std::vector<double> separatedRoots(testkit::Random& random, int count, double scale, double gap) {
  std::vector<double> roots;
  for (int attempt = 0; attempt < 10000 && static_cast<int>(roots.size()) < count; ++attempt) {
    const double x = random.uniform(-1, 1) * scale;
    bool apart = std::fabs(x) > gap * scale;
    for (double y : roots) apart = apart && std::fabs(x - y) > gap * scale;
    if (apart) roots.push_back(x);
  }
  return roots;
}

}  // namespace

TEST(PolynomRoot, Decart_LowDegreeRulesAndSizes) {
  KrsArray<double> roots;
  KrsArray<double> cubic = fromRoots({-1, 0.5, 2});  // a leading 1e-11 drops: Cardano, unpolished
  cubic.Add(1e-11);
  ASSERT_EQ(methodDecart(cubic, roots), 3);
  PolynomRoot::Polynom p(3);
  PolynomRoot::Complex x[3];
  for (int k = 0; k <= 3; ++k) p[k] = cubic[k];
  PolynomRoot::solveCubic(p, x[0], x[1], x[2]);
  for (int k = 0; k < 3; ++k) EXPECT_EQ(roots[k], x[k].re);
  const struct { const char* name; KrsArray<double> coefficients; std::vector<double> expected; } rows[] = {
      {"constant gives 0", array({5, 0, 0, 0, 0}), {0.0}},
      {"linear gives nothing", array({3, 2, 0, 0, 0}), {}},
      {"quadratic, plus root first", array({6, -5, 1, 0, 0}), {3, 2}},
      {"quadratic without real roots", array({1, 0, 1, 0, 0}), {}},
      {"roots 2^-20 apart stay two", array({1 + std::ldexp(1, -20), -2 - std::ldexp(1, -20), 1, 0, 0}), {1 + std::ldexp(1, -20), 1}},
      {"x^4 + 1", array({1, 0, 0, 0, 1}), {}},
      // After a removal the next root is skipped, so a fourfold root keeps two.
      {"fourfold root keeps two", fromRoots({1, 1, 1, 1}), {1, 1}},
      {"three coefficients: the quadratic", array({6, -5, 1}), {3, 2}},
      {"empty: the constant 0", KrsArray<double>(), {0.0}},
      {"above a quartic: none", fromRoots({1, 2, 3, 4, 5}), {}},
      {"long, a quadratic after trimming", array({6, -5, 1, 0, 1e-10, 0, 0}), {3, 2}},
  };
  const auto records = recordsOf([&] {
    for (const auto& row : rows) {
      ASSERT_EQ(methodDecart(row.coefficients, roots), static_cast<int>(row.expected.size())) << row.name;
      for (size_t k = 0; k < row.expected.size(); ++k) EXPECT_NEAR(roots[(int)k], row.expected[k], 1e-12) << row.name;
    }
  });
  ASSERT_EQ(records.size(), 1u);  // the size site reports once
  EXPECT_EQ(records[0].message, testkit::assertionText("(((HRESULT)0x80004005L))", "PolynomRoot", 908));
  KrsArray<double> same = fromRoots({1, 2, 3, 4});
  EXPECT_EQ(methodDecart(same, same), 4);  // input and output may be one array
}

// Well-separated roots come out within 1e-9 relative at every scale, also when symmetric about
// their mean (the resolvent's zero root then carries absolute noise that only the unit-scale
// solve keeps below the fixed 1e-6 test on imaginary parts). Roots near 1e5 keep their accuracy
// but warn: the residual is rounding noise of terms near 1e20.
TEST(PolynomRoot, Decart_AccuracyOnQuarticsFromKnownRoots) {
  testkit::repeat(1234567, 1500, [](testkit::Random& random, int trial) {
    const double scale = std::pow(10.0, 3 * (trial % 3) - 3);
    const std::vector<double> roots = separatedRoots(random, 4, scale, 0.05);
    KrsArray<double> found;
    ASSERT_EQ(methodDecart(fromRoots(roots, trial % 2 ? -3.5 : 1.0), found), 4);
    ASSERT_LT(worstRelativeMiss(roots, found), 1e-9);
    const double centre = random.uniform(-3, 3) * scale, a = (0.1 + random.uniform(0, 1)) * scale;
    const double b = a + (0.1 + random.uniform(0, 1)) * scale;
    const std::vector<double> symmetric = {centre - b, centre - a, centre + a, centre + b};
    ASSERT_EQ(methodDecart(fromRoots(symmetric), found), 4);
    ASSERT_LT(worstRelativeMiss(symmetric, found), 1e-9);
  });
  KrsArray<double> roots;
  const std::vector<double> large = {1.1e5, 2.3e5, 3.7e5, 5.3e5};
  const auto records = recordsOf([&] { ASSERT_EQ(methodDecart(fromRoots(large), roots), 4); });
  EXPECT_GE(testkit::countMessage(records, "WARNING 'methodDecart fail'"), 1);
  EXPECT_EQ(records.at(0).line, 926u);
  EXPECT_LT(worstRelativeMiss(large, roots), 1e-12);
}

TEST(PolynomRoot, FindAll_MultipleRootsDegreeLimitAndBadInput) {
  KrsArray<double> roots;
  ASSERT_EQ(methodFindAllRoot(array({1, -2, 1}), roots, true), 1);
  ASSERT_EQ(methodFindAllRoot(array({1, -2, 1}), roots, false), 2);
  EXPECT_NEAR(roots[1], 1.0, 1e-12);
  EXPECT_EQ(methodFindAllRoot(array({1, 0, 1}), roots, false), 0);  // a complex pair only
  ASSERT_EQ(methodFindAllRoot(fromRoots({-1.5, -1.5, 0.25, 2, 2, 2}), roots, true), 3);
  EXPECT_LT(worstRelativeMiss({-1.5, 0.25, 2}, roots), 1e-8);
  // A zero leading coefficient: the linear "root" is infinite and its residual is not a number.
  auto records = recordsOf([&] { EXPECT_EQ(methodFindAllRoot(array({1, 0}), roots, false), 1); });
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, "WARNING 'methodFindAllRoot fail'");
  EXPECT_EQ(records[0].line, 544u);
  KrsArray<double> degree65;
  degree65.SetSize(66);
  degree65[65] = 1.0;  // x^65: beyond the limit of 64, reported and rootless
  records = recordsOf([&] { EXPECT_EQ(methodFindAllRoot(degree65, roots, false), 0); });
  EXPECT_EQ(testkit::countAssertions(records, "(degree>kMaxDegree)"), 1);
  testkit::repeat(424242, 300, [&](testkit::Random& random, int trial) {
    const int degree = 1 + trial % 10;
    const std::vector<double> expected = separatedRoots(random, degree, 3.0, 0.05);
    const auto noise = recordsOf([&] {
      ASSERT_EQ(methodFindAllRoot(fromRoots(expected, 0.5 + trial % 3), roots, trial % 2 == 0), degree);
    });
    EXPECT_LT(worstRelativeMiss(expected, roots), 1e-6);
    EXPECT_TRUE(noise.empty());
  });
}
