#include "KrGePolynomRoot.h"

#include "KrsDiagnostics.h"
#include "numeric/polynom_solvers.h"

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>

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

// x 2^n, the bits of ldexp(x, n): for |n| <= 1022 the factor 2^n is a normal double built from its
// bits, and one multiplication rounds the exact product once, as ldexp does (also into the
// subnormal range, to infinity, for zeros and NaN). Only the rare larger |n| calls ldexp.
inline double scaleByPowerOfTwo(double x, int n) {
  if (n < -1022 || n > 1022) return std::ldexp(x, n);
  const std::uint64_t bits = static_cast<std::uint64_t>(n + 1023) << 52;
  double factor;
  std::memcpy(&factor, &bits, sizeof factor);
  return x * factor;
}

// frexp's exponent of a positive normal x, read from its bits (frexp is a library call).
inline int binaryExponent(double x) {
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  return static_cast<int>(bits >> 52) - 1022;
}

// fmax for values that are >= +0 or NaN (a NaN loses to a number), without the library call.
inline double maxOfMagnitudes(double a, double b) { return b > a || a != a ? b : a; }

// The resolvent decides whether a candidate is real by its imaginary part against a fixed 1e-6,
// and its square roots turn rounding noise of size e into an imaginary part of size sqrt(e).
// Far from the unit scale that test fails: a quartic whose roots are symmetric about their mean
// (its resolvent has an exact zero root) loses all four roots once they reach about 100. So the
// quartic is solved for t = x / s, with s the power of two nearest above the Fujiwara bound
//   2 max(|a3|, |a2|^(1/2), |a1|^(1/3), |a0 / 2|^(1/4))
// on the root magnitudes of the monic x^4 + a3 x^3 + a2 x^2 + a1 x + a0. Scaling by a power of two
// is exact, the roots t lie in [-1, 1], and x = s t is exact again before the Newton polish on
// the caller's polynomial. Answers the exponent of s (0: no scaling) from a_i = c[i] / c[4].
int rootScaleExponent(const double* a) {
  const double others = maxOfMagnitudes(maxOfMagnitudes(std::fabs(a[3]), std::sqrt(std::fabs(a[2]))),
                                        std::sqrt(std::sqrt(std::fabs(a[0]) * 0.5)));
  // Only the maximum matters. With 2^(e-1) <= others < 2^e, an |a1| below 2^(3e - 4) has a cube
  // root below 2^(e - 4/3), far under others even with a last-bit error, so the cube root (a
  // library call) is skipped and the maximum keeps its bits.
  const double cubed = std::fabs(a[1]);
  double largest = others;
  if (!(others >= DBL_MIN && others <= DBL_MAX &&
        cubed < scaleByPowerOfTwo(1.0, 3 * binaryExponent(others) - 4)))
    largest = maxOfMagnitudes(others, std::cbrt(cubed));
  const double bound = 2.0 * largest;
  if (!(bound > 0.0) || !std::isfinite(bound)) return 0;
  if (bound >= DBL_MIN) return binaryExponent(bound);
  int exponent = 0;
  std::frexp(bound, &exponent);
  return exponent;
}

// c[i] 2^n / c[4] with the bits of dividing the scaled coefficient, from q = c[i] / c[4]. When
// c[i] 2^n is exact and q and q 2^n are normal, rounding commutes with the power of two and the
// product equals the quotient, which saves a division on the solver's critical path.
inline double scaledQuotient(double c, double lead, double q, int n) {
  const double scaled = scaleByPowerOfTwo(c, n);
  const double product = scaleByPowerOfTwo(q, n);
  if (c == 0.0 || (std::fabs(scaled) > DBL_MIN && std::fabs(scaled) <= DBL_MAX && std::fabs(q) > DBL_MIN &&
                   std::fabs(product) > DBL_MIN && std::fabs(product) <= DBL_MAX))
    return product;
  return scaled / lead;
}

// Real candidates of the quartic c[0..4] (|c[4]| > 1e-10), unpolished, in candidate order.
int solveScaledQuartic(const double* c, double* found) {
  // Normalising divides every coefficient by c[4], which the scaling leaves alone.
  double monic[5];
  for (int i = 0; i <= 4; ++i) monic[i] = c[i] / c[4];
  const int exponent = rootScaleExponent(monic);
  if (exponent == 0) return PolynomRoot::solveMonicQuartic(monic, found);
  for (int i = 0; i < 4; ++i) monic[i] = scaledQuotient(c[i], c[4], monic[i], exponent * (i - 4));
  const int count = PolynomRoot::solveMonicQuartic(monic, found);
  for (int i = 0; i < count; ++i) found[i] = scaleByPowerOfTwo(found[i], exponent);
  return count;
}

// Near-duplicates within 1e-10 go; j advances after a removal too, so the value that moved into
// place j is not compared with r_i. Answers the new count.
int removeNearDuplicates(double* r, int count) {
  for (int i = 0; i < count; ++i)
    for (int j = i + 1; j < count; ++j)
      if (std::fabs(r[i] - r[j]) <= 1e-10) {
        for (int k = j + 1; k < count; ++k) r[k - 1] = r[k];
        --count;
      }
  return count;
}

}  // namespace

int methodDecart(const KrsArray<double>& coefficients, KrsArray<double>& roots) {
  const int size = coefficients.GetSize();
  // A proper quartic, the common case, is solved, polished, checked and thinned on local arrays;
  // the caller's array gets one append. The input is copied before the output is emptied, so both
  // may be the same array.
  if (size == 5 && std::fabs(coefficients.GetData()[4]) > PolynomRoot::kZeroCoefficient) {
    double c[5];
    for (int i = 0; i < 5; ++i) c[i] = coefficients.GetData()[i];
    PolynomRoot::clearRoots(roots);
    double found[4];
    double residual[4];
    int count = solveScaledQuartic(c, found);
    PolynomRoot::polishNewtonQuartic(c, found, count, residual);
    for (int i = 0; i < count; ++i)
      if (!(std::fabs(residual[i]) <= 1e-4)) KRS_WARN_AT("methodDecart fail", "PolynomRoot", 926);
    count = removeNearDuplicates(found, count);
    roots.Append(found, count);
    return count;
  }

  // Leading coefficients of magnitude <= 1e-10 drop before anything is copied: a long array
  // whose significant part is above a quartic has no root here, whatever its length.
  int significant = size - 1;
  while (significant > 0 && std::fabs(coefficients.GetData()[significant]) <= PolynomRoot::kZeroCoefficient)
    --significant;
  Polynom p = fromCoefficients(coefficients, significant > 4 ? 0 : significant);
  PolynomRoot::clearRoots(roots);
  if (size != 5) KRS_E_FAIL_AT("PolynomRoot", 908);
  if (significant > 4) return 0;
  PolynomRoot::trimDegree(p);

  switch (p.degree()) {
    case 4: {
      double found[4];
      double residual[4];
      int count = solveScaledQuartic(p.data(), found);
      PolynomRoot::polishNewtonQuartic(p.data(), found, count, residual);
      for (int i = 0; i < count; ++i)
        if (!(std::fabs(residual[i]) <= 1e-4)) KRS_WARN_AT("methodDecart fail", "PolynomRoot", 926);
      count = removeNearDuplicates(found, count);
      roots.Append(found, count);
      return count;
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
  using PolynomRoot::kMaxDegree;
  const int degree = coefficients.GetSize() - 1;
  PolynomRoot::clearRoots(roots);
  KRS_FAIL_IF(degree>kMaxDegree);
  if (degree > kMaxDegree) return 0;
  const Polynom p = fromCoefficients(coefficients, degree);
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
