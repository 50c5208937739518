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

namespace {

// Complex Cardano on the monic x^3 + a x^2 + b x + c (see solveCubic).
void solveMonicCubic(double a, double b, double c, Complex& x1, Complex& x2, Complex& x3) {
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
    return;
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
}

}  // namespace

int solveCubic(const Polynom& p, Complex& x1, Complex& x2, Complex& x3) {
  if (p.degree() != 3) return 0;
  Polynom monic(p);
  normalize(monic);
  solveMonicCubic(monic.data()[2], monic.data()[1], monic.data()[0], x1, x2, x3);
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
  double found[4];
  const int count = solveMonicQuartic(monic.data(), found);
  // One append instead of one per root: a single allocation for the caller's array.
  roots.Append(found, count);
  return count;
}

int solveMonicQuartic(const double* c, double* found) {
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
    // x = y - k: the Taylor coefficients of P at -k are those of y^4 + p y^2 + q y + r. Horner on
    // P, P' and P'' (coefficients (i + 1) c_(i+1), then again), written out for the quartic.
    const double shift = -k;
    const double first[4] = {1.0 * c[1], 2.0 * c[2], 3.0 * c[3], 4.0 * c[4]};
    const double second[3] = {1.0 * first[1], 2.0 * first[2], 3.0 * first[3]};
    depressedR = (((c[4] * shift + c[3]) * shift + c[2]) * shift + c[1]) * shift + c[0];
    depressedQ = ((first[3] * shift + first[2]) * shift + first[1]) * shift + first[0];
    depressedP = ((second[2] * shift + second[1]) * shift + second[0]) / 2.0;
  }

  // Descartes-Euler: y = +-w1 +-w2 +-w3 with w_i^2 the roots of the resolvent cubic below and the
  // signs chosen so that the product of the three terms is -q/8. The resolvent is monic already,
  // so it goes to Cardano without a normalising copy.
  Complex z1;
  Complex z2;
  Complex z3;
  solveMonicCubic(depressedP / 2.0, (depressedP * depressedP - 4.0 * depressedR) / 16.0,
                  -depressedQ * depressedQ / 64.0, z1, z2, z3);
  const Complex w1 = z1.sqrt();
  const Complex w2 = z2.sqrt();
  const Complex w3 = z3.sqrt();
  const Complex product = w1 * w2 * w3;

  // |A| <= |B| on the moduli as computed (square roots of the squared sums). sqrt is monotone, so
  // a squared sum that is not larger decides it at once; otherwise the roots may still round equal.
  const Complex minus = product - depressedQ / 8.0;
  const Complex plus = product + depressedQ / 8.0;
  const double minusSquared = minus.re * minus.re + minus.im * minus.im;
  const double plusSquared = plus.re * plus.re + plus.im * plus.im;
  Complex candidates[4];
  if (minusSquared <= plusSquared || std::sqrt(minusSquared) <= std::sqrt(plusSquared)) {
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
  int count = 0;
  for (const Complex& candidate : candidates)
    if (candidate.isReal()) found[count++] = candidate.re - k;
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

void polishNewtonQuartic(const double* c, double* x, int count, double* residual) {
  // polishNewtonAll for a quartic with the Horner loops written out. Up to four roots advance in
  // lockstep without branches: every lane computes a step and a lane that is done (or a padding
  // lane) keeps its accepted values, so the independent chains overlap. P and P' at the new point
  // are evaluated side by side; the next step is taken from them before the acceptance test is
  // known, since a lane that rejects is finished and its further values are never used. Each
  // value has the bits of evaluate() on the polynomial and on its derivative.
  constexpr int kLanes = 4;
  const double slope[4] = {1.0 * c[1], 2.0 * c[2], 3.0 * c[3], 4.0 * c[4]};
  for (int first = 0; first < count; first += kLanes) {
    const int lanes = count - first < kLanes ? count - first : kLanes;
    double root[kLanes];     // last accepted point of each lane
    double f[kLanes];        // P there
    double xTried[kLanes];   // point of the current step's evaluation
    double fTried[kLanes];   // P and P' there
    double fPrimeTried[kLanes];
    bool active[kLanes];
    for (int l = 0; l < kLanes; ++l) {
      active[l] = l < lanes;
      root[l] = active[l] ? x[first + l] : 0.0;
      f[l] = (((c[4] * root[l] + c[3]) * root[l] + c[2]) * root[l] + c[1]) * root[l] + c[0];
      fPrimeTried[l] = ((slope[3] * root[l] + slope[2]) * root[l] + slope[1]) * root[l] + slope[0];
      xTried[l] = root[l];
      fTried[l] = f[l];
    }
    for (int stepCount = 1; stepCount <= 10; ++stepCount) {
      // One operation across the lanes at a time, so that the compiler can pack lanes together.
      double step[kLanes];
      double xNew[kLanes];
      double fNew[kLanes];
      double fPrimeNew[kLanes];
      for (int l = 0; l < kLanes; ++l) step[l] = -fTried[l] / fPrimeTried[l];
      for (int l = 0; l < kLanes; ++l) xNew[l] = xTried[l] + step[l];
      for (int l = 0; l < kLanes; ++l) fNew[l] = c[4] * xNew[l] + c[3];
      for (int l = 0; l < kLanes; ++l) fPrimeNew[l] = slope[3] * xNew[l] + slope[2];
      for (int l = 0; l < kLanes; ++l) fNew[l] = fNew[l] * xNew[l] + c[2];
      for (int l = 0; l < kLanes; ++l) fPrimeNew[l] = fPrimeNew[l] * xNew[l] + slope[1];
      for (int l = 0; l < kLanes; ++l) fNew[l] = fNew[l] * xNew[l] + c[1];
      for (int l = 0; l < kLanes; ++l) fPrimeNew[l] = fPrimeNew[l] * xNew[l] + slope[0];
      for (int l = 0; l < kLanes; ++l) fNew[l] = fNew[l] * xNew[l] + c[0];
      bool any = false;
      for (int l = 0; l < kLanes; ++l) {
        // At an exact multiple root the step is 0/0; a residual that is not a number counts as
        // larger, so such a step is rejected like any step that makes the residual grow.
        const bool accept = active[l] && !(std::isnan(fNew[l]) || std::fabs(f[l]) < std::fabs(fNew[l]));
        root[l] = accept ? xNew[l] : root[l];
        f[l] = accept ? fNew[l] : f[l];
        active[l] = accept && !(std::fabs(step[l]) < 1e-16);
        any = any || active[l];
        xTried[l] = xNew[l];
        fTried[l] = fNew[l];
        fPrimeTried[l] = fPrimeNew[l];
      }
      if (!any) break;
    }
    for (int l = 0; l < lanes; ++l) {
      x[first + l] = root[l];
      residual[first + l] = f[l];
    }
  }
}

void polishNewton(const Polynom& p, double& x) { polishNewtonAll(p, &x, 1); }

}  // namespace PolynomRoot
