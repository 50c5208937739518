#include "numeric/polynom_solvers.h"

#include <cmath>

namespace PolynomRoot {

Complex mullerStep(const Polynom& p, const Complex& x0, const Complex& x1, const Complex& x2) {
  const Complex f0 = evaluate(p, x0);
  const Complex f1 = evaluate(p, x1);
  const Complex f2 = evaluate(p, x2);
  // Newton's divided differences give the interpolating parabola
  //   f2 + d12 (x - x2) + a2 (x - x2)(x - x1),
  // expanded here into absolute coefficients a2 x^2 + a1 x + a0.
  const Complex d01 = (f1 - f0) / (x1 - x0);
  const Complex d12 = (f2 - f1) / (x2 - x1);
  const Complex a2 = (d12 - d01) / (x2 - x0);
  const Complex a1 = d12 - a2 * (x1 + x2);
  const Complex a0 = f2 - d12 * x2 + a2 * x1 * x2;
  if (a2.re == 0.0 && a2.im == 0.0) {
    // The three points are collinear: the "parabola" is a line, or the constant zero when all
    // three are roots already (x2 is then one of them).
    if (a1.re == 0.0 && a1.im == 0.0) return x2;
    return -a0 / a1;
  }
  const Complex root = (a1 * a1 - Complex(4.0) * a2 * a0).sqrt();
  const Complex twoA2 = Complex(2.0) * a2;
  const Complex plus = (-a1 + root) / twoA2;
  const Complex minus = (-a1 - root) / twoA2;
  return distance(plus, x2) < distance(minus, x2) ? plus : minus;
}

Complex mullerRoot(const Polynom& p) {
  const double* c = p.data();
  if (p.degree() == 1) return Complex(-c[0] / c[1]);
  if (p.degree() == 2) {
    const Complex a(c[2]);
    const Complex b(c[1]);
    const Complex d = (b * b - Complex(4.0) * a * c[0]).sqrt();
    return (-b + d) / (Complex(2.0) * a);
  }
  constexpr double kResidualStop = 1e-20;
  constexpr double kStepStop = 1e-10;
  constexpr int kMaxSteps = 10000;
  Complex x0(0.0);
  Complex x1(1.0);
  Complex x2(2.0);
  Complex x3 = mullerStep(p, x0, x1, x2);
  if (evaluate(p, x3).modulus() < kResidualStop) return x3;
  for (int counter = 0;;) {
    if (distance(x2, x3) < kStepStop) break;
    if (++counter > kMaxSteps) break;
    x0 = x1;
    x1 = x2;
    x2 = x3;
    x3 = mullerStep(p, x0, x1, x2);
    if (evaluate(p, x3).modulus() < kResidualStop) break;
  }
  return x3;
}

}  // namespace PolynomRoot
