// The exported root finders, called through the shared library as a host calls them.
#include "KrGePolynomRoot.h"

#include "numeric/polynom_solvers.h"
#include "testkit/MonitorCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <initializer_list>
#include <random>
#include <vector>

using testkit::MonitorCapture;

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
std::vector<double> separatedRoots(std::mt19937_64& engine, int count, double scale, double gap) {
  std::uniform_real_distribution<double> unit(-1, 1);
  std::vector<double> roots;
  for (int attempt = 0; attempt < 10000 && static_cast<int>(roots.size()) < count; ++attempt) {
    const double x = unit(engine) * scale;
    bool apart = std::fabs(x) > gap * scale;
    for (double y : roots) apart = apart && std::fabs(x - y) > gap * scale;
    if (apart) roots.push_back(x);
  }
  return roots;
}

}  // namespace

TEST(PolynomRoot, Decart_IntegerQuarticPolishedWithoutWarning) {
  KrsArray<double> roots;
  roots.Add(99);
  MonitorCapture::clear();
  ASSERT_EQ(methodDecart(fromRoots({1, 2, 3, 4}), roots), 4);
  EXPECT_LT(worstRelativeMiss({1, 2, 3, 4}, roots), 1e-10);
  EXPECT_TRUE(MonitorCapture::drain().empty());
  EXPECT_EQ(methodDecart(array({1, 0, 0, 0, 1}), roots), 0);  // x^4 + 1
  KrsArray<double> same = fromRoots({1, 2, 3, 4});
  EXPECT_EQ(methodDecart(same, same), 4);  // input and output may be one array
}

TEST(PolynomRoot, Decart_LowDegreeRules) {
  KrsArray<double> roots;
  // A leading 1e-11 is dropped: the cubic's roots come straight from Cardano, not polished.
  KrsArray<double> cubic = fromRoots({-1, 0.5, 2});
  cubic.Add(1e-11);
  ASSERT_EQ(methodDecart(cubic, roots), 3);
  PolynomRoot::Polynom p(3);
  PolynomRoot::Complex x[3];
  for (int k = 0; k <= 3; ++k) p[k] = cubic[k];
  PolynomRoot::solveCubic(p, x[0], x[1], x[2]);
  for (int k = 0; k < 3; ++k) EXPECT_EQ(roots[k], x[k].re);

  struct Row {
    const char* name;
    KrsArray<double> coefficients;
    std::vector<double> expected;
  } rows[] = {
      {"constant gives 0", array({5, 0, 0, 0, 0}), {0.0}},
      {"zero constant gives 0", array({0, 0, 0, 0, 0}), {0.0}},
      {"linear gives nothing", array({3, 2, 0, 0, 0}), {}},
      {"quadratic, plus root first", array({6, -5, 1, 0, 0}), {3, 2}},
      {"quadratic without real roots", array({1, 0, 1, 0, 0}), {}},
      // x^4: four equal roots; after a removal the next one is skipped, so two remain.
      {"fourfold root keeps two", array({0, 0, 0, 0, 1}), {0, 0}},
      {"shifted fourfold root", fromRoots({1, 1, 1, 1}), {1, 1}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    ASSERT_EQ(methodDecart(row.coefficients, roots), static_cast<int>(row.expected.size()));
    for (size_t k = 0; k < row.expected.size(); ++k) EXPECT_NEAR(roots[static_cast<int>(k)], row.expected[k], 1e-12);
  }
}

TEST(PolynomRoot, Decart_WrongSizeAssertsOnceAndSolvesWhatItGot) {
  KrsArray<double> roots;
  MonitorCapture::clear();
  ASSERT_EQ(methodDecart(array({6, -5, 1}), roots), 2);  // solved as the quadratic it is
  EXPECT_NEAR(roots[0], 3.0, 1e-12);
  auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, testkit::assertionText("(((HRESULT)0x80004005L))", "PolynomRoot", 908));
  EXPECT_EQ(methodDecart(KrsArray<double>(), roots), 1);  // empty: the constant 0, root 0.0
  EXPECT_EQ(methodDecart(fromRoots({1, 2, 3, 4, 5}), roots), 0);  // above a quartic: none
  EXPECT_TRUE(MonitorCapture::drain().empty());  // the site reported once
  for (int k = 0; k < 15; ++k) {  // NaN or an infinity in each place: terminates, at most four roots
    KrsArray<double> input = fromRoots({1, 2, 3, 4});
    input[k % 5] = k < 5 ? NAN : (k < 10 ? HUGE_VAL : -HUGE_VAL);
    EXPECT_LE(methodDecart(input, roots), 4);
  }
}

TEST(PolynomRoot, Decart_LargeResidualWarnsButKeepsRoot) {
  // Roots near 1e5: the residual of a polished root is rounding noise of terms near 1e20.
  KrsArray<double> roots;
  MonitorCapture::clear();
  ASSERT_EQ(methodDecart(fromRoots({1.1e5, 2.3e5, 3.7e5, 5.3e5}), roots), 4);
  const auto records = MonitorCapture::drain();
  EXPECT_GE(testkit::countMessage(records, "WARNING 'methodDecart fail'"), 1);
  EXPECT_EQ(records.at(0).source, "PolynomRoot");
  EXPECT_EQ(records.at(0).line, 926u);
  EXPECT_LT(worstRelativeMiss({1.1e5, 2.3e5, 3.7e5, 5.3e5}, roots), 1e-12);
}

// Accuracy over random quartics with known roots (fixed seed). Well-separated roots must come out
// within 1e-9 relative at every scale; clustered and double roots are reported, not judged.
TEST(PolynomRoot, Decart_AccuracyOnQuarticsFromKnownRoots) {
  const unsigned seed = 1234567;
  SCOPED_TRACE(testing::Message() << "seed " << seed);
  std::mt19937_64 engine(seed);
  for (double scale : {1e-3, 1.0, 1e3}) {
    for (int trial = 0; trial < 500; ++trial) {
      const std::vector<double> roots = separatedRoots(engine, 4, scale, 0.05);
      KrsArray<double> found;
      MonitorCapture::clear();
      ASSERT_EQ(methodDecart(fromRoots(roots, trial % 2 ? -3.5 : 1.0), found), 4) << "scale " << scale;
      ASSERT_LT(worstRelativeMiss(roots, found), 1e-9) << "scale " << scale << " trial " << trial;
    }
  }

  // Roots symmetric about their mean make the resolvent's zero root carry absolute rounding
  // noise, which the fixed 1e-6 test on imaginary parts rejects unless the quartic is solved at
  // the unit scale: they must come out at every scale too.
  std::uniform_real_distribution<double> unit(-1, 1);
  for (int exponent = -3; exponent <= 5; ++exponent) {
    for (int trial = 0; trial < 40; ++trial) {
      const double scale = std::pow(10.0, exponent);
      const double centre = unit(engine) * 3.0 * scale;
      const double a = (0.1 + std::fabs(unit(engine))) * scale;
      const double b = a + (0.1 + std::fabs(unit(engine))) * scale;
      const std::vector<double> roots = {centre - b, centre - a, centre + a, centre + b};
      KrsArray<double> found;
      MonitorCapture::clear();
      ASSERT_EQ(methodDecart(fromRoots(roots), found), 4) << "symmetric, scale " << scale << " trial " << trial;
      ASSERT_LT(worstRelativeMiss(roots, found), 1e-9) << "symmetric, scale " << scale << " trial " << trial;
    }
  }

  // Reported, not judged: a pair within 1e-3 and a double root.
  const char* names[] = {"clustered within 1e-3", "double root"};
  int missed[2] = {0, 0};
  const int trials = 500;
  for (int trial = 0; trial < trials; ++trial) {
    const double centre = 0.5 + std::fabs(unit(engine));
    const std::vector<double> cases[] = {{centre, centre + 1e-3 * std::fabs(unit(engine)), -2.0, 3.0},
                                         {centre, centre, -2.0, 3.0}};
    for (int c = 0; c < 2; ++c) {
      KrsArray<double> found;
      methodDecart(fromRoots(cases[c]), found);
      missed[c] += worstRelativeMiss(cases[c], found) > 1e-6;
    }
  }
  MonitorCapture::clear();
  for (int c = 0; c < 2; ++c) {
    std::printf("[ report ] %s: %d/%d with a root missed by more than 1e-6 relative\n", names[c], missed[c], trials);
    RecordProperty(names[c], missed[c]);
  }
}

TEST(PolynomRoot, FindAll_MultipleRootsOnceOrRepeated) {
  KrsArray<double> roots;
  ASSERT_EQ(methodFindAllRoot(array({1, -2, 1}), roots, true), 1);
  EXPECT_NEAR(roots[0], 1.0, 1e-12);
  ASSERT_EQ(methodFindAllRoot(array({1, -2, 1}), roots, false), 2);
  EXPECT_NEAR(roots[0], 1.0, 1e-12);
  EXPECT_NEAR(roots[1], 1.0, 1e-12);
  EXPECT_EQ(methodFindAllRoot(array({1, 0, 1}), roots, false), 0);  // a complex pair only
  EXPECT_EQ(methodFindAllRoot(array({4}), roots, true), 0);
  EXPECT_EQ(methodFindAllRoot(KrsArray<double>(), roots, false), 0);

  ASSERT_EQ(methodFindAllRoot(fromRoots({-1.5, -1.5, 0.25, 2, 2, 2}), roots, true), 3);
  EXPECT_LT(worstRelativeMiss({-1.5, 0.25, 2}, roots), 1e-8);

  // A zero leading coefficient: the linear "root" is infinite and its residual is not a number.
  MonitorCapture::clear();
  EXPECT_EQ(methodFindAllRoot(array({1, 0}), roots, false), 1);
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, "WARNING 'methodFindAllRoot fail'");
  EXPECT_EQ(records[0].line, 544u);
  for (const KrsArray<double>& input : {array({NAN, 1, 1, 1}), array({1, 1, HUGE_VAL, 1}), array({1, 2, 3, 0, 0})})
    EXPECT_LE(methodFindAllRoot(input, roots, true), 4);  // bounded, no trap
}

TEST(PolynomRoot, FindAll_RandomRealRootedPolynomialsUpToDegreeTen) {
  const unsigned seed = 424242;
  SCOPED_TRACE(testing::Message() << "seed " << seed);
  std::mt19937_64 engine(seed);
  for (int trial = 0; trial < 300; ++trial) {
    const int degree = 1 + trial % 10;
    const std::vector<double> roots = separatedRoots(engine, degree, 3.0, 0.05);
    KrsArray<double> found;
    MonitorCapture::clear();
    ASSERT_EQ(methodFindAllRoot(fromRoots(roots, 0.5 + trial % 3), found, trial % 2 == 0), degree) << "trial " << trial;
    EXPECT_LT(worstRelativeMiss(roots, found), 1e-6) << "trial " << trial;
    EXPECT_EQ(testkit::countMessage(MonitorCapture::drain(), "WARNING 'methodFindAllRoot fail'"), 0) << trial;
  }
}
