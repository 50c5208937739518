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
      PolynomRoot::solveQuartic(p, roots);
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
