// The internal polynomial algebra and single-polynomial solvers; their sources are compiled into
// this test program (see tests.cmake), so the checks here run the library's own code.
#include "numeric/Polynom.h"
#include "numeric/polynom_solvers.h"
#include "testkit/TestKit.h"

using namespace PolynomRoot;
using testkit::recordsOf;

namespace {

Polynom make(std::initializer_list<double> ascending) {
  Polynom p(static_cast<int>(ascending.size()) - 1);
  int i = 0;
  for (double c : ascending) p.data()[i++] = c;
  return p;
}

Polynom fromRoots(const std::vector<double>& roots) {
  Polynom p(static_cast<int>(roots.size()));
  p.data()[0] = 1.0;
  for (size_t k = 0; k < roots.size(); ++k) {
    for (size_t i = k + 1; i > 0; --i) p.data()[i] = p.data()[i - 1] - roots[k] * p.data()[i];
    p.data()[0] *= -roots[k];
  }
  return p;
}

}  // namespace

TEST(Polynom, AccessTrimNormalizeAndDerivative) {
  Polynom p = make({1, 2, 3});
  const Polynom& view = p;
  const auto records = recordsOf([&] {
    EXPECT_EQ(view[-1], 0.0);  // a spare slot, never memory outside the object
    p[7] = 5.0;
  });
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].message, testkit::assertionText("(((HRESULT)0x80004005L))", "PolynomRoot", 245));
  EXPECT_EQ(records[1].message, testkit::assertionText("(((HRESULT)0x80004005L))", "PolynomRoot", 238));
  const struct { Polynom p; int degree; } trims[] = {{make({2, 4, 1e-10, 1.5e-10}), 3}, {make({2, 4, 1e-10, -1e-10}), 1}};
  for (auto row : trims) {
    trimDegree(row.p);
    EXPECT_EQ(row.p.degree(), row.degree);  // the threshold 1e-10 itself counts as zero
  }
  Polynom q = make({2, 4, 8, 1e-11});
  normalize(q);  // degree and the negligible top stay
  EXPECT_EQ(q.degree(), 3);
  EXPECT_EQ(q[0], 0.25);
  const Polynom d = derivative(make({7, 1, 3, 2}));
  EXPECT_EQ(d.degree(), 2);
  EXPECT_EQ(d[1], 6.0);
  EXPECT_EQ(d[2], 6.0);
}

TEST(Polynom, DivisionRecomposesTheDividendAndGcdFindsTheRepeatedFactor) {
  std::mt19937_64 engine(77);
  std::uniform_real_distribution<double> coefficient(-10, 10);
  for (int trial = 0; trial < 100; ++trial) {
    Polynom a(3 + trial % 6), b(1 + trial % 3), q(0), r(0);
    for (int k = 0; k <= a.degree(); ++k) a[k] = coefficient(engine);
    for (int k = 0; k <= b.degree(); ++k) b[k] = coefficient(engine);
    b[b.degree()] += b[b.degree()] < 0 ? -1 : 1;
    divide(a, b, q, r);
    EXPECT_EQ(q.degree(), a.degree() - b.degree());
    for (int k = 0; k <= a.degree(); ++k) {  // q*b + r, multiplied out here
      double sum = k <= r.degree() ? r[k] : 0.0;
      for (int i = 0; i <= q.degree(); ++i)
        if (k - i >= 0 && k - i <= b.degree()) sum += q[i] * b[k - i];
      ASSERT_NEAR(sum, a[k], 1e-9 * (1 + std::fabs(a[k]))) << "seed 77 trial " << trial;
    }
  }
  const Polynom p = fromRoots({1, 1, -2});
  const Polynom g = gcd(p, derivative(p));
  ASSERT_EQ(g.degree(), 1);
  EXPECT_NEAR(g[0], -1.0, 1e-12);  // normalised x - 1
  EXPECT_EQ(gcd(make({1, -2, 1}), make({-2, 2})).data()[1], 2.0);  // exact first division: the divisor as it is
  EXPECT_EQ(gcd(make({-3, 1}), make({-1, 0, 1})).degree(), 0);   // coprime
}

TEST(Polynom, ClosedFormsAndComplexRoots) {
  Complex x[3];
  ASSERT_EQ(solveCubic(make({1, 0, 0, 1}), x[0], x[1], x[2]), 3);  // x^3 + 1: s - q/2 is exactly 0
  EXPECT_EQ(x[2].modulus(), 0.0);
  EXPECT_EQ(solveCubic(make({1, 0, 1}), x[0], x[1], x[2]), 0);
  std::mt19937_64 engine(5);
  std::uniform_real_distribution<double> unit(-4, 4);
  for (int trial = 0; trial < 100; ++trial) {
    Polynom p = fromRoots({unit(engine), unit(engine), unit(engine)});
    for (int k = 0; k <= 3; ++k) p[k] *= 3.0;  // not monic: the solver normalises
    solveCubic(p, x[0], x[1], x[2]);
    for (const Complex& root : x) ASSERT_LT(evaluate(p, root).modulus(), 1e-6) << "seed 5 trial " << trial;
  }
  Complex r1(9, 9), r2(9, 9);
  EXPECT_EQ(solveQuadratic(make({1, 2}), r1, r2), 0);
  EXPECT_EQ(r1.re, 9.0);  // untouched
  solveQuadratic(make({-6, 5, -1}), r1, r2);  // not normalised: with a < 0 the plus root is 2
  EXPECT_NEAR(r1.re, 2.0, 1e-14);
  EXPECT_NEAR(r2.re, 3.0, 1e-14);
  EXPECT_NEAR(Complex(-8).nthRoot(3, 1).re, -2.0, 1e-15);  // k = 1: a further third of a turn
  KrsArray<double> roots;
  roots.Add(42.0);
  const auto records = recordsOf([&] { EXPECT_EQ(solveQuartic(make({1, 2, 3, 4}), roots), 0); });
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, testkit::assertionText("(((HRESULT)0x80004005L))", "PolynomRoot", 787));
  EXPECT_EQ(roots.GetSize(), 0);
}

TEST(Polynom, NewtonAndMullerStayBounded) {
  double x = 1.0;
  polishNewton(make({1, -2, 1}), x);  // exact double root: the 0/0 step is rejected
  EXPECT_EQ(x, 1.0);
  x = 0.5 + 1e-4;
  polishNewton(fromRoots({0.5, 2, 3}), x);
  EXPECT_NEAR(x, 0.5, 1e-15);
  const Polynom startRoots = fromRoots({0, 1, 2});  // the first parabola is the zero polynomial
  EXPECT_LT(evaluate(startRoots, mullerRoot(startRoots)).modulus(), 1e-12);
  EXPECT_NEAR(mullerRoot(make({2, -3, 1})).re, 2.0, 1e-15);  // the plus-sign root
  const Polynom noReal = make({1, 0, 0, 0, 1});
  EXPECT_LT(evaluate(noReal, mullerRoot(noReal)).modulus(), 1e-9);
  const Complex bad = mullerRoot(make({NAN, 1, 1, 1}));  // bounded even when nothing converges
  EXPECT_TRUE(std::isnan(bad.re) || std::isnan(bad.im));
}
