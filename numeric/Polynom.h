// Real polynomials of the root finders, coefficient i multiplying x^i (constant term first), and
// the algebra the solvers use. Library-internal; the test program compiles these sources too.
#pragma once

#include "numeric/Complex.h"

namespace PolynomRoot {

// Coefficients of magnitude <= this count as zero when a degree is trimmed or a leading
// coefficient is chosen.
constexpr double kZeroCoefficient = 1e-10;
// Highest degree the iterative solver takes: Muller's iteration with deflation loses its accuracy
// long before, and every polynomial up to it fits inside a Polynom object.
constexpr int kMaxDegree = 64;

class Polynom {
public:
  // Degree `degree` (a negative request is clamped to 0), all coefficients 0.0.
  explicit Polynom(int degree);
  Polynom(const Polynom& source);
  // Reallocates for the source's degree and copies its coefficients; self-assignment does nothing.
  Polynom& operator=(const Polynom& source);
  ~Polynom();

  int degree() const { return m_degree; }
  // Coefficient i. Outside 0 <= i <= degree() the E_FAIL assertion is raised (writable form at
  // line 238, read form at line 245) and the access still happens: to the stored coefficient when
  // i lies inside the array (trimming does not shorten it), else to a spare slot of this object.
  double& operator[](int i);
  double operator[](int i) const;

  // Unchecked access to the coefficient array, for the solvers' inner loops.
  const double* data() const { return m_coefficients; }
  double* data() { return m_coefficients; }
  // Number of stored coefficients (degree() + 1 until the degree is trimmed).
  int storedCount() const { return m_count; }
  // Lowers or restores the degree within the stored coefficients (trimDegree, normalize).
  void setDegree(int degree);

private:
  static constexpr int kLocalCount = kMaxDegree + 1;

  void allocate(int count);
  void release();

  int m_degree = 0;
  int m_count = 0;
  double* m_coefficients = nullptr;
  double m_spare = 0.0;
  double m_local[kLocalCount];  // zeroed by allocate() as far as used
};

// p(x) by Horner's scheme from the highest coefficient down (inline: the Newton polish and Muller
// steps are made of little else).
inline double evaluate(const Polynom& p, double x) {
  const double* c = p.data();
  double value = c[p.degree()];
  for (int i = p.degree() - 1; i >= 0; --i) value = value * x + c[i];
  return value;
}
inline Complex evaluate(const Polynom& p, const Complex& z) {
  const double* c = p.data();
  Complex value(c[p.degree()]);
  for (int i = p.degree() - 1; i >= 0; --i) value = value * z + c[i];
  return value;
}
// Degree max(degree - 1, 0), coefficient i = (i + 1) * c(i+1); a constant gives the zero constant.
Polynom derivative(const Polynom& p);
// Degree becomes the highest i with |c_i| > 1e-10, 0 when there is none; nothing is discarded.
void trimDegree(Polynom& p);
// Divides c_0..c_i by c_i, i the highest index with |c_i| > 1e-10; degree and the coefficients
// above i are left alone. All coefficients negligible: degree 0, c_0 = 0.
void normalize(Polynom& p);
// Schoolbook long division a = q*b + r; q has degree max(0, deg a - deg b); both are trimmed.
void divide(const Polynom& a, const Polynom& b, Polynom& quotient, Polynom& remainder);
// Greatest common divisor by Euclid's algorithm: normalised when a remainder step was taken, the
// divisor itself when the first division is exact, the constant 1 when the two are coprime.
Polynom gcd(const Polynom& a, const Polynom& b);

}  // namespace PolynomRoot
