#include "KrGePolynomRoot.h"

#include "KrsDiagnostics.h"
#include "numeric/polynom_solvers.h"

#include <cmath>

using PolynomRoot::Complex;
using PolynomRoot::Polynom;

namespace {

// A polynomial of degree `degree` holding the first degree + 1 input values (fewer when the input
// is shorter, the rest staying 0).
Polynom fromCoefficients(const KrsArray<double>& coefficients, int degree) {
  Polynom p(degree);
  const int count = coefficients.GetSize() < p.degree() + 1 ? coefficients.GetSize() : p.degree() + 1;
  const double* source = coefficients.GetData();
  for (int i = 0; i < count; ++i) p.data()[i] = source[i];
  return p;
}

void appendIfReal(const Complex& root, KrsArray<double>& roots) {
  if (root.isReal()) roots.Add(root.re);
}

// The resolvent decides whether a candidate is real by its imaginary part against a fixed 1e-6,
// and its square roots turn rounding noise of size e into an imaginary part of size sqrt(e).
// Far from the unit scale that test fails: a quartic whose roots are symmetric about their mean
// (its resolvent has an exact zero root) loses all four roots once they reach about 100. So the
// quartic is solved for t = x / s, with s the power of two nearest above the Fujiwara bound
//   2 max(|a3|, |a2|^(1/2), |a1|^(1/3), |a0 / 2|^(1/4))
// on the root magnitudes of the monic x^4 + a3 x^3 + a2 x^2 + a1 x + a0. Scaling by a power of two
// is exact, the roots t lie in [-1, 1], and x = s t is exact again before the Newton polish on
// the caller's polynomial.
int rootScaleExponent(const Polynom& p) {
  const double* c = p.data();
  const double lead = c[4];
  const double bound = 2.0 * std::fmax(std::fmax(std::fabs(c[3] / lead), std::sqrt(std::fabs(c[2] / lead))),
                                       std::fmax(std::cbrt(std::fabs(c[1] / lead)),
                                                 std::sqrt(std::sqrt(std::fabs(c[0] / lead) * 0.5))));
  if (!(bound > 0.0) || !std::isfinite(bound)) return 0;
  int exponent = 0;
  std::frexp(bound, &exponent);
  return exponent;
}

void solveScaledQuartic(const Polynom& p, KrsArray<double>& roots) {
  const int exponent = rootScaleExponent(p);
  if (exponent == 0) {
    PolynomRoot::solveQuartic(p, roots);
    return;
  }
  Polynom scaled(p);
  for (int i = 0; i <= 4; ++i) scaled.data()[i] = std::ldexp(p.data()[i], exponent * (i - 4));
  PolynomRoot::solveQuartic(scaled, roots);
  for (int i = 0; i < roots.GetSize(); ++i) roots.GetData()[i] = std::ldexp(roots.GetData()[i], exponent);
}

}  // namespace

int methodDecart(const KrsArray<double>& coefficients, KrsArray<double>& roots) {
  // The input is copied before the output is emptied, so both may be the same array.
  const int size = coefficients.GetSize();
  Polynom p = fromCoefficients(coefficients, size - 1);
  PolynomRoot::clearRoots(roots);
  if (size != 5) KRS_E_FAIL_AT("PolynomRoot", 908);
  PolynomRoot::trimDegree(p);

  switch (p.degree()) {
    case 4: {
      solveScaledQuartic(p, roots);
      double* found = roots.GetData();
      PolynomRoot::polishNewtonAll(p, found, roots.GetSize());
      for (int i = 0; i < roots.GetSize(); ++i)
        if (!(std::fabs(PolynomRoot::evaluate(p, found[i])) <= 1e-4)) KRS_WARN_AT("methodDecart fail", "PolynomRoot", 926);
      break;
    }
    case 3: {
      Complex x1;
      Complex x2;
      Complex x3;
      PolynomRoot::solveCubic(p, x1, x2, x3);
      appendIfReal(x1, roots);
      appendIfReal(x2, roots);
      appendIfReal(x3, roots);
      break;
    }
    case 2: {
      Complex root1;
      Complex root2;
      PolynomRoot::solveQuadratic(p, root1, root2);
      appendIfReal(root1, roots);
      appendIfReal(root2, roots);
      break;
    }
    case 0:
      roots.Add(0.0);
      break;
    default:  // linear, and anything above a quartic: no root
      break;
  }

  // Near-duplicates within 1e-10 go; j advances after a removal too, so the value that moved into
  // place j is not compared with r_i.
  for (int i = 0; i < roots.GetSize(); ++i)
    for (int j = i + 1; j < roots.GetSize(); ++j)
      if (std::fabs(roots.GetData()[i] - roots.GetData()[j]) <= 1e-10) roots.RemoveAt(j, 1);
  return roots.GetSize();
}

int methodFindAllRoot(const KrsArray<double>& coefficients, KrsArray<double>& roots, bool removeMultiple) {
  const Polynom p = fromCoefficients(coefficients, coefficients.GetSize() - 1);
  PolynomRoot::clearRoots(roots);
  const int n = p.degree();
  Polynom working(p);
  if (removeMultiple) {
    const Polynom common = PolynomRoot::gcd(p, PolynomRoot::derivative(p));
    if (common.degree() > 0) {
      Polynom remainder(0);
      PolynomRoot::divide(p, common, working, remainder);
    }
  }

  // Deflation: each real root divides out (x - r); a complex root divides out its conjugate pair
  // x^2 - 2 Re z x + |z|^2. Every pass lowers the degree by one or two.
  Polynom remainder(0);
  for (int pass = 0; pass < n && working.degree() > 0; ++pass) {
    const Complex z = PolynomRoot::mullerRoot(working);
    if (z.isReal()) {
      roots.Add(z.re);
      Polynom factor(1);
      factor.data()[1] = 1.0;
      factor.data()[0] = -z.re;
      PolynomRoot::divide(working, factor, working, remainder);
    } else {
      Polynom factor(2);
      factor.data()[2] = 1.0;
      factor.data()[1] = -2.0 * z.re;
      factor.data()[0] = z.re * z.re + z.im * z.im;
      PolynomRoot::divide(working, factor, working, remainder);
    }
  }

  for (int i = 0; i < roots.GetSize(); ++i)
    if (!(std::fabs(PolynomRoot::evaluate(p, roots.GetData()[i])) <= 0.01))
      KRS_WARN_AT("methodFindAllRoot fail", "PolynomRoot", 544);
  return roots.GetSize();
}
