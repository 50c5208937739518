#include "numeric/Polynom.h"

#include "KrsDiagnostics.h"

#include <cmath>
#include <new>

namespace PolynomRoot {

Polynom::Polynom(int degree) {
  const int clamped = degree < 0 ? 0 : degree;
  allocate(clamped + 1);
  m_degree = clamped;
}

Polynom::Polynom(const Polynom& source) {
  allocate(source.m_degree + 1);
  m_degree = source.m_degree;
  for (int i = 0; i <= m_degree; ++i) m_coefficients[i] = source.m_coefficients[i];
}

Polynom& Polynom::operator=(const Polynom& source) {
  if (this == &source) return *this;
  release();
  allocate(source.m_degree + 1);
  m_degree = source.m_degree;
  for (int i = 0; i <= m_degree; ++i) m_coefficients[i] = source.m_coefficients[i];
  return *this;
}

Polynom::~Polynom() { release(); }

// Every polynomial the solvers take (degree up to kMaxDegree) lives inside the object, so root
// finding never touches the heap and cannot fail for memory; larger ones own a heap array.
void Polynom::allocate(int count) {
  m_coefficients = count <= kLocalCount ? m_local : new double[static_cast<unsigned>(count)];
  m_count = count;
  for (int i = 0; i < count; ++i) m_coefficients[i] = 0.0;
}

void Polynom::release() {
  if (m_coefficients != m_local) delete[] m_coefficients;
  m_coefficients = m_local;
  m_count = 0;
  m_degree = 0;
}

double& Polynom::operator[](int i) {
  if (i < 0 || i > m_degree) {
    KRS_E_FAIL_AT("PolynomRoot", 238);
    if (i < 0 || i >= m_count) return m_spare;
  }
  return m_coefficients[i];
}

double Polynom::operator[](int i) const {
  if (i < 0 || i > m_degree) {
    KRS_E_FAIL_AT("PolynomRoot", 245);
    if (i < 0 || i >= m_count) return m_spare;
  }
  return m_coefficients[i];
}

void Polynom::setDegree(int degree) {
  if (degree < 0) degree = 0;
  if (degree >= m_count) degree = m_count - 1;
  m_degree = degree;
}

Polynom derivative(const Polynom& p) {
  Polynom result(p.degree() - 1);
  const double* c = p.data();
  double* d = result.data();
  for (int i = 0; i < p.degree(); ++i) d[i] = (i + 1) * c[i + 1];
  return result;
}

namespace {

// Highest index whose coefficient exceeds the zero threshold, -1 when none does. A NaN
// coefficient never exceeds it.
int highestSignificant(const Polynom& p) {
  const double* c = p.data();
  for (int i = p.degree(); i >= 0; --i)
    if (std::fabs(c[i]) > kZeroCoefficient) return i;
  return -1;
}

}  // namespace

void trimDegree(Polynom& p) {
  const int top = highestSignificant(p);
  p.setDegree(top < 0 ? 0 : top);
}

void normalize(Polynom& p) {
  const int top = highestSignificant(p);
  if (top < 0) {
    p.setDegree(0);
    p.data()[0] = 0.0;
    return;
  }
  double* c = p.data();
  const double lead = c[top];
  for (int i = 0; i <= top; ++i) c[i] /= lead;
}

void divide(const Polynom& a, const Polynom& b, Polynom& quotient, Polynom& remainder) {
  const int degreeA = a.degree();
  const int degreeB = b.degree();
  // The outputs may alias the inputs: work on locals and assign at the end.
  Polynom q(degreeA - degreeB);
  Polynom r(a);
  const double* divisor = b.data();
  double* rest = r.data();
  const double lead = divisor[degreeB];
  for (int top = degreeA; top >= degreeB; --top) {
    const double factor = rest[top] / lead;
    q.data()[top - degreeB] = factor;
    for (int j = 0; j < degreeB; ++j) rest[top - degreeB + j] -= factor * divisor[j];
    // The leading term cancels by construction; storing the exact zero keeps a rounding residue
    // of a large coefficient from surviving the trim as a spurious leading term.
    rest[top] = 0.0;
  }
  trimDegree(r);
  trimDegree(q);
  remainder = r;
  quotient = q;
}

Polynom gcd(const Polynom& a, const Polynom& b) {
  // Euclid's recursion gcd(a, b) = gcd(b mod a, a), unrolled: the larger degree falls by at least
  // one per pass (every eliminated coefficient is an exact zero), so the loop ends within
  // deg a + deg b + 1 passes. Normalising once at the end equals normalising on every return of
  // the recursion, because a normalised polynomial is unchanged by normalize.
  Polynom first(a);
  Polynom second(b);
  Polynom quotient(0);
  Polynom remainder(0);
  bool recursed = false;
  const int maxPasses = a.degree() + b.degree() + 2;
  for (int pass = 0; pass < maxPasses; ++pass) {
    const bool firstIsDivisor = first.degree() < second.degree();
    const Polynom& dividend = firstIsDivisor ? second : first;
    const Polynom& divisor = firstIsDivisor ? first : second;
    divide(dividend, divisor, quotient, remainder);
    if (remainder.degree() > 0) {
      Polynom nextDivisor(divisor);
      first = remainder;
      second = nextDivisor;
      recursed = true;
      continue;
    }
    Polynom result(0);
    if (std::fabs(remainder.data()[0]) < kZeroCoefficient)
      result = divisor;
    else
      result.data()[0] = 1.0;
    if (recursed) normalize(result);
    return result;
  }
  Polynom one(0);
  one.data()[0] = 1.0;
  return one;
}

}  // namespace PolynomRoot
