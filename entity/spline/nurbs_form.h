// The evaluable form of a NURBS curve: clamped-or-not knots and homogeneous control points
// (w x, w y, w z, w) in flat arrays, checked once when the definition changes so that every
// evaluation is branch-light. The NURBS data object rebuilds it after each change; the curve
// algorithms (evaluation, length, nearest point, bounds, splitting) read only this form.
#pragma once

#include <cstddef>

#include "KrGePoint3d.h"
#include "KrsArray.h"
#include "KrGeVector3d.h"

// Highest degree the curve algorithms evaluate (basis tables live on the stack).
constexpr int kKrNurbsMaxDegree = 32;

// A growable run of doubles, copied deeply. Plain code rather than a standard container, so that
// no template of the standard library is instantiated for the library's own data.
class KrDoubles {
public:
  KrDoubles() = default;
  KrDoubles(const KrDoubles& other) { *this = other; }
  KrDoubles& operator=(const KrDoubles& other) {
    if (this == &other) return *this;
    resize(other.m_size);
    for (std::size_t i = 0; i < m_size; ++i) m_data[i] = other.m_data[i];
    return *this;
  }
  ~KrDoubles() { delete[] m_data; }

  std::size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }
  double* data() { return m_data; }
  const double* data() const { return m_data; }
  double& operator[](std::size_t i) { return m_data[i]; }
  const double& operator[](std::size_t i) const { return m_data[i]; }
  const double* begin() const { return m_data; }
  const double* end() const { return m_data + m_size; }
  void clear() { m_size = 0; }
  // New places are zero.
  void resize(std::size_t n) {
    if (n > m_capacity) {
      const std::size_t capacity = n > 2 * m_capacity ? n : 2 * m_capacity;
      double* grown = new double[capacity];
      for (std::size_t i = 0; i < m_size; ++i) grown[i] = m_data[i];
      delete[] m_data;
      m_data = grown;
      m_capacity = capacity;
    }
    for (std::size_t i = m_size; i < n; ++i) m_data[i] = 0.0;
    m_size = n;
  }
  void assign(std::size_t n, double value) {
    resize(n);
    for (std::size_t i = 0; i < n; ++i) m_data[i] = value;
  }
  void swap(KrDoubles& other) {
    double* data = m_data;
    m_data = other.m_data;
    other.m_data = data;
    const std::size_t size = m_size, capacity = m_capacity;
    m_size = other.m_size;
    m_capacity = other.m_capacity;
    other.m_size = size;
    other.m_capacity = capacity;
  }

private:
  double* m_data = nullptr;
  std::size_t m_size = 0, m_capacity = 0;
};

struct KrNurbsForm {
  int degree = 0;
  int count = 0;           // control points in use: min(stored, knots - degree - 1)
  bool rational = false;
  bool valid = false;      // see krNurbsBuild for the conditions
  KrDoubles knots;  // count + degree + 1 values when valid
  KrDoubles hw;     // 4 per control point
  // Per span s (degree <= s < count): its Bezier control points, homogeneous, (degree + 1) * 4
  // doubles from bezier[bezierStride() * (s - degree)], and the box of the projected ones
  // (6 doubles: low xyz, high xyz); zero for empty spans. Filled by krNurbsPrepare.
  KrDoubles bezier;
  KrDoubles spanBox;

  int bezierStride() const { return 4 * (degree + 1); }
  const double* bezierOf(int span) const { return &bezier[static_cast<std::size_t>(bezierStride()) * (span - degree)]; }
  const double* boxOf(int span) const { return &spanBox[6 * static_cast<std::size_t>(span - degree)]; }

  double startParam() const { return knots[degree]; }
  double endParam() const { return knots[count]; }
  // The span index s with knots[s] <= u < knots[s + 1], clamped to [degree, count - 1]; the end
  // parameter belongs to the last non-empty span.
  int spanOf(double u) const;
  KrGePoint3d controlPoint(int i) const {
    const double* p = &hw[4 * static_cast<std::size_t>(i)];
    return KrGePoint3d(p[0] / p[3], p[1] / p[3], p[2] / p[3]);
  }
  double weight(int i) const { return hw[4 * static_cast<std::size_t>(i) + 3]; }
};

// Builds the form from a definition. It is valid when 1 <= degree <= kKrNurbsMaxDegree, at
// least degree + 1 control points are in use, every knot is finite and not below its
// predecessor, knots[degree] < knots[count], every control point is finite and, for a rational
// curve, every weight in use is finite and > 0, and no weighted or Bezier point overflows. Surplus control points (beyond knots - degree -
// 1) and surplus weights are not used.
void krNurbsBuild(KrNurbsForm& form, int degree, const double* knots, int numKnots, const KrGePoint3d* points,
                  int numPoints, const double* weights, int numWeights);

// Fills the per-span Bezier points and boxes of a valid form (after hw or knots changed).
void krNurbsPrepare(KrNurbsForm& form);

// The point at u (valid form; u outside the range extrapolates the end span's polynomial).
// `span` (when >= 0) picks the span whose polynomial is evaluated (one side of a knot).
KrGePoint3d krNurbsPoint(const KrNurbsForm& form, double u, int span = -1);
// The point and derivatives 1..numDeriv at u into out[0..numDeriv] (out[0] is the point as a
// vector from the origin). Derivatives above the degree are zero for polynomial curves; rational
// ones follow the quotient rule in Taylor-coefficient form, which needs no binomials.
void krNurbsDerivs(const KrNurbsForm& form, double u, int numDeriv, KrGeVector3d* out, int span = -1);
// Point, first and second derivative (the hot path of the solvers).
void krNurbsPoint2(const KrNurbsForm& form, double u, KrGePoint3d& point, KrGeVector3d& d1, KrGeVector3d& d2,
                   int span = -1);

// The blossom (polar form) of span s at the `degree` arguments args, homogeneous (4 doubles).
// With args = (a..a, b..b) it gives the Bezier control points of the piece [a, b] of span s.
void krNurbsBlossom(const KrNurbsForm& form, int span, const double* args, double* out4);
// The axis-aligned box of the Bezier control polygon of the piece [a, b] (within one span or
// across several): contains the curve over [a, b] because weights are positive.
void krNurbsPieceHull(const KrNurbsForm& form, double a, double b, KrGePoint3d& low, KrGePoint3d& high);

// Textbook knot insertion (Boehm) of u, `times` times, on the homogeneous form.
void krNurbsInsertKnot(KrNurbsForm& form, double u, int times);
// The sub-curve over [a, b] (startParam <= a < b <= endParam), by raising a and b to
// multiplicity degree and dropping what lies outside.
KrNurbsForm krNurbsExtract(const KrNurbsForm& form, double a, double b);
// Distinct knot values within [startParam, endParam], ascending (span boundaries).
void krNurbsBreaks(const KrNurbsForm& form, KrsArray<double>& breaks);
