#include "numeric/polynom_solvers.h"

#include "KrsDiagnostics.h"

#include <cmath>

namespace PolynomRoot {

int solveQuadratic(const Polynom& p, Complex& root1, Complex& root2) {
  if (p.degree() != 2) return 0;
  const Complex a(p.data()[2]);
  const Complex b(p.data()[1]);
  const Complex c(p.data()[0]);
  const Complex d = (b * b - Complex(4.0) * a * c).sqrt();
  const Complex twoA = Complex(2.0) * a;
  root1 = (-b + d) / twoA;
  root2 = (-b - d) / twoA;
  return 2;
}

int solveCubic(const Polynom& p, Complex& x1, Complex& x2, Complex& x3) {
  if (p.degree() != 3) return 0;
  Polynom monic(p);
  normalize(monic);
  const double a = monic.data()[2];
  const double b = monic.data()[1];
  const double c = monic.data()[0];

  // x = y - t removes the square term: y^3 + p y + q with the discriminant D = p^3/27 + q^2/4.
  // Cardano: y = u + v with u^3 = -q/2 + sqrt(D) and u v = -p/3; the other two roots rotate u
  // and v by the cube roots of unity.
  const double t = a / 3.0;
  const double depressedP = b - a * t;
  const double depressedQ = 2.0 * t * t * t - t * b + c;
  const double discriminant = depressedP * depressedP * depressedP / 27.0 + depressedQ * depressedQ / 4.0;
  const Complex s = Complex(discriminant).sqrt();  // exact real: no trigonometry (Complex::sqrt)
  const Complex w = s - depressedQ / 2.0;
  if (w.re == 0.0 && w.im == 0.0) {
    x1 = x2 = x3 = Complex(0.0, 0.0);
    return 3;
  }
  const Complex u = w.nthRoot(3, 0);
  const Complex v = Complex(-depressedP / 3.0) / u;
  const Complex sum = u + v;
  const Complex difference = u - v;
  const Complex rotated = Complex(0.0, std::sqrt(3.0) / 2.0) * difference;
  x1 = sum;
  x2 = -sum / 2.0 + rotated;
  x3 = -sum / 2.0 - rotated;
  x1.re -= t;
  x2.re -= t;
  x3.re -= t;
  return 3;
}

int solveQuartic(const Polynom& p, KrsArray<double>& roots) {
  clearRoots(roots);
  if (p.degree() != 4) {
    KRS_E_FAIL_AT("PolynomRoot", 787);
    return 0;
  }
  Polynom monic(p);
  normalize(monic);
  const double* c = monic.data();
  double k = c[3] / 4.0;
  double depressedP;
  double depressedQ;
  double depressedR;
  if (std::fabs(k) < kZeroCoefficient) {
    k = 0.0;
    depressedP = c[2];
    depressedQ = c[1];
    depressedR = c[0];
  } else {
    // x = y - k: the Taylor coefficients of P at -k are those of y^4 + p y^2 + q y + r.
    const double shift = -k;
    const Polynom first = derivative(monic);
    const Polynom second = derivative(first);
    depressedR = evaluate(monic, shift);
    depressedQ = evaluate(first, shift);
    depressedP = evaluate(second, shift) / 2.0;
  }

  // Descartes-Euler: y = +-w1 +-w2 +-w3 with w_i^2 the roots of the resolvent cubic below and the
  // signs chosen so that the product of the three terms is -q/8.
  Polynom resolvent(3);
  double* r = resolvent.data();
  r[3] = 1.0;
  r[2] = depressedP / 2.0;
  r[1] = (depressedP * depressedP - 4.0 * depressedR) / 16.0;
  r[0] = -depressedQ * depressedQ / 64.0;
  Complex z1;
  Complex z2;
  Complex z3;
  solveCubic(resolvent, z1, z2, z3);
  const Complex w1 = z1.sqrt();
  const Complex w2 = z2.sqrt();
  const Complex w3 = z3.sqrt();
  const Complex product = w1 * w2 * w3;

  Complex candidates[4];
  if ((product - depressedQ / 8.0).modulus() <= (product + depressedQ / 8.0).modulus()) {
    candidates[0] = -w1 - w2 - w3;
    candidates[1] = -w1 + w2 + w3;
    candidates[2] = w1 - w2 + w3;
    candidates[3] = w1 + w2 - w3;
  } else {
    candidates[0] = w1 + w2 + w3;
    candidates[1] = w1 - w2 - w3;
    candidates[2] = -w1 + w2 - w3;
    candidates[3] = -w1 - w2 + w3;
  }
  double found[4];
  int count = 0;
  for (const Complex& candidate : candidates)
    if (candidate.isReal()) found[count++] = candidate.re - k;
  // One append instead of one per root: a single allocation for the caller's array.
  roots.Append(found, count);
  return count;
}

void polishNewtonAll(const Polynom& p, double* x, int count) {
  // Each root runs the same bounded Newton iteration on its own; up to four advance in lockstep
  // only so that their independent dependency chains overlap in the processor. The results are
  // those of polishing the roots one after another.
  constexpr int kLanes = 4;
  const Polynom slope = derivative(p);
  for (int first = 0; first < count; first += kLanes) {
    const int lanes = count - first < kLanes ? count - first : kLanes;
    double* root = x + first;
    double f[kLanes];
    bool active[kLanes];
    for (int l = 0; l < lanes; ++l) {
      f[l] = evaluate(p, root[l]);
      active[l] = true;
    }
    for (int stepCount = 1; stepCount <= 10; ++stepCount) {
      bool any = false;
      for (int l = 0; l < lanes; ++l) {
        if (!active[l]) continue;
        const double step = -f[l] / evaluate(slope, root[l]);
        const double xNew = root[l] + step;
        const double fNew = evaluate(p, xNew);
        // At an exact multiple root the step is 0/0; a residual that is not a number counts as
        // larger, so such a step is rejected like any step that makes the residual grow.
        if (std::isnan(fNew) || std::fabs(f[l]) < std::fabs(fNew)) {
          active[l] = false;
          continue;
        }
        root[l] = xNew;
        f[l] = fNew;
        active[l] = !(std::fabs(step) < 1e-16);
        any = any || active[l];
      }
      if (!any) break;
    }
  }
}

void polishNewton(const Polynom& p, double& x) { polishNewtonAll(p, &x, 1); }

}  // namespace PolynomRoot
