// Complex numbers of the polynomial root finders. Roots, powers and quotients go through the
// polar form (atan2 and a modulus), which keeps the principal branch explicit: the angle lies in
// (-pi, pi], so the principal square root has a non-negative real part and a negative real number
// has a purely imaginary root with a positive imaginary part (for a zero imaginary part of +0).
#pragma once

#include <cmath>

namespace PolynomRoot {

// Values whose imaginary part is below this in magnitude are taken as real roots.
constexpr double kRealTolerance = 1e-6;

struct Complex {
  double re = 0.0;
  double im = 0.0;

  Complex() = default;
  constexpr Complex(double real, double imaginary = 0.0) : re(real), im(imaginary) {}

  // One sincos call: the compiler merges cos(t) and sin(t) by itself, but not cos(t) and sin(-t)
  // of a quotient, which it rewrites to cos(t) first. The C library's sincos gives the bits of
  // its sin and cos.
  static Complex fromPolar(double angle, double modulus) {
#if defined(__GLIBC__)
    double sine;
    double cosine;
    ::sincos(angle, &sine, &cosine);
    return Complex(modulus * cosine, modulus * sine);
#else
    return Complex(modulus * std::cos(angle), modulus * std::sin(angle));
#endif
  }
  // sqrt(re^2 + im^2), written out: callers compare moduli computed the same way.
  double modulus() const { return std::sqrt(re * re + im * im); }
  double angle() const { return std::atan2(im, re); }
  static double angle(double real, double imaginary) { return std::atan2(imaginary, real); }
  void toPolar(double& angleOut, double& modulusOut) const {
    angleOut = angle();
    modulusOut = modulus();
  }
  bool isReal() const { return std::fabs(im) < kRealTolerance; }

  // Principal square root: modulus sqrt|z|, half the angle. On the real axis the polar form is
  // evaluated without trigonometry: angle 0 or +-pi halves to cos 1 / sin +-0 or to
  // cos(pi/2) / sin +-1, so the result has the same bits at a fraction of the cost.
  Complex sqrt() const {
    if (im == 0.0 && (re > 0.0 || re < 0.0)) {
      const double root = std::sqrt(modulus());
      if (re > 0.0) return Complex(root, im);
      // cos(pi/2) from the C library at run time, as fromPolar gets it: a value folded at compile
      // time is correctly rounded, which not every C library's cos is.
      static const double cosHalfPi = [] {
        volatile double halfTurn = angle(-1.0, 0.0) / 2.0;
        return fromPolar(halfTurn, 1.0).re;
      }();
      return Complex(root * cosHalfPi, std::signbit(im) ? -root : root);
    }
    return fromPolar(angle() / 2.0, std::sqrt(modulus()));
  }
  // The k-th of the n n-th roots: modulus |z|^(1/n) (as exp(ln|z| / n)), angle arg(z)/n + 2*pi*k/n.
  Complex nthRoot(int n, int k = 0) const {
    constexpr double kTwoPi = 6.283185307179586476925286766559;
    return fromPolar(angle() / n + k * kTwoPi / n, std::exp(std::log(modulus()) / n));
  }
};

inline Complex operator+(const Complex& a, const Complex& b) { return Complex(a.re + b.re, a.im + b.im); }
inline Complex operator-(const Complex& a, const Complex& b) { return Complex(a.re - b.re, a.im - b.im); }
inline Complex operator-(const Complex& a) { return Complex(-a.re, -a.im); }
inline Complex operator*(const Complex& a, const Complex& b) {
  return Complex(a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re);
}
// a / b as a times the value of modulus 1/|b| and angle -arg(b). A zero b gives infinities or NaN.
inline Complex operator/(const Complex& a, const Complex& b) {
  return a * Complex::fromPolar(-b.angle(), 1.0 / b.modulus());
}
inline Complex operator*(const Complex& a, double s) { return Complex(a.re * s, a.im * s); }
inline Complex operator/(const Complex& a, double s) { return Complex(a.re / s, a.im / s); }
inline Complex operator+(const Complex& a, double s) { return Complex(a.re + s, a.im); }
inline Complex operator-(const Complex& a, double s) { return Complex(a.re - s, a.im); }
inline double distance(const Complex& a, const Complex& b) { return (a - b).modulus(); }

}  // namespace PolynomRoot
