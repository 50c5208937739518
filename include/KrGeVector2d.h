// A displacement or direction in the plane (u, v parameters or planar work): two doubles.
#pragma once

#include <cmath>

#include "KrGe.h"
#include "KrGeContext.h"
#include "KrGeLExport.h"
#include "KrGeTol.h"

class KrGeMatrix2d;

// Components x, y (also [0], [1]). The arithmetic mirrors KrGeVector3d, but
// several tolerance rules differ from 3D and are kept as stated per operation: zero length is
// length() <= equalVector, normalisation fails at length <= 1e-20, the two-argument
// perpendicular test uses the raw dot product, and the parallel tests treat a short vector as
// zero. Comparisons count "<=" as within; a NaN never passes.
class KRGEL_API KrGeVector2d {
public:
  static const KrGeVector2d kIdentity;  // (0, 0)
  static const KrGeVector2d kXAxis;     // (1, 0)
  static const KrGeVector2d kYAxis;     // (0, 1)

  constexpr KrGeVector2d() noexcept : x(0.0), y(0.0) {}
  constexpr KrGeVector2d(double xx, double yy) noexcept : x(xx), y(yy) {}

  // 0 is x, every other index y (no check, no report).
  double operator[](unsigned index) const { return index == 0 ? x : y; }
  double& operator[](unsigned index) { return index == 0 ? x : y; }

  KrGeVector2d& set(double xx, double yy) { x = xx; y = yy; return *this; }

  KrGeVector2d operator+(const KrGeVector2d& v) const { return KrGeVector2d(x + v.x, y + v.y); }
  KrGeVector2d operator-(const KrGeVector2d& v) const { return KrGeVector2d(x - v.x, y - v.y); }
  KrGeVector2d operator-() const { return KrGeVector2d(-x, -y); }
  KrGeVector2d operator*(double s) const { return KrGeVector2d(x * s, y * s); }
  KrGeVector2d operator/(double s) const { return KrGeVector2d(x / s, y / s); }
  KrGeVector2d& operator+=(const KrGeVector2d& v) { x += v.x; y += v.y; return *this; }
  KrGeVector2d& operator-=(const KrGeVector2d& v) { x -= v.x; y -= v.y; return *this; }
  KrGeVector2d& operator*=(double s) { x *= s; y *= s; return *this; }
  KrGeVector2d& operator/=(double s) { x /= s; y /= s; return *this; }
  KrGeVector2d& negate() { x = -x; y = -y; return *this; }
  KrGeVector2d& setToSum(const KrGeVector2d& a, const KrGeVector2d& b) { x = a.x + b.x; y = a.y + b.y; return *this; }
  KrGeVector2d& setToProduct(const KrGeVector2d& v, double s) { x = v.x * s; y = v.y * s; return *this; }
  // this := matrix * vector, 2x2 block only (translation ignored).
  KrGeVector2d& setToProduct(const KrGeMatrix2d& matrix, const KrGeVector2d& vector);
  KrGeVector2d& transformBy(const KrGeMatrix2d& matrix);

  double lengthSqrd() const { return x * x + y * y; }
  // sqrt(x*x + y*y) without intermediate underflow or overflow (bit-identical to the plain
  // formula whenever its sum of squares is a normal finite number).
  double length() const {
    const double sum = x * x + y * y;
    if (sum >= kNormalMin && sum <= kFiniteMax) return std::sqrt(sum);
    return lengthScaled(sum);
  }
  double dotProduct(const KrGeVector2d& v) const { return x * v.x + y * v.y; }
  // (-y, x): the vector turned a quarter counterclockwise (no callback, unlike 3D).
  KrGeVector2d perpVector() const { return KrGeVector2d(-y, x); }

  // Direction angle in [0, 2pi): exact 0, pi/2, pi, 3pi/2 on the axes (a component exactly 0),
  // 0 for the zero vector, otherwise atan2(y, x) lifted into [0, 2pi).
  double angle() const;
  // Unsigned angle in [0, pi] between the directions (normalised with gTol): 0 when the cosine
  // is >= 1, pi when it is <= -1, acos otherwise (no near-parallel refinement).
  double angleTo(const KrGeVector2d& v) const;

  // length(this - v) <= equalVector.
  bool isEqualTo(const KrGeVector2d& v, const KrGeTol& tol = KrGeContext::gTol) const {
    return (*this - v).length() <= tol.equalVector();
  }
  bool operator==(const KrGeVector2d& v) const { return isEqualTo(v, KrGeContext::gTol); }
  bool operator!=(const KrGeVector2d& v) const { return !isEqualTo(v, KrGeContext::gTol); }
  // length() <= equalVector (root taken).
  bool isZeroLength(const KrGeTol& tol = KrGeContext::gTol) const { return length() <= tol.equalVector(); }
  // |length() - 1| <= equalVector.
  bool isUnitLength(const KrGeTol& tol = KrGeContext::gTol) const { return std::fabs(length() - 1.0) <= tol.equalVector(); }

  // Divides by length(); fails (status 1, vector unchanged) when length() <= 1e-20 or is NaN.
  // The tolerance is not used.
  KrGeVector2d& normalize(const KrGeTol& tol = KrGeContext::gTol);
  KrGeVector2d& normalize(const KrGeTol& tol, KrGe::ErrorCondition& status);
  // Normalised copy (unchanged when normalisation fails).
  KrGeVector2d normal(const KrGeTol& tol = KrGeContext::gTol) const;

  // |this . v| <= equalVector on the vectors as they are (raw dot, not normalised).
  bool isPerpendicularTo(const KrGeVector2d& v, const KrGeTol& tol = KrGeContext::gTol) const;
  // Normalised copies: status 1 (this fails) or 2 (v fails) answer true; else |a . b| <= equalVector.
  bool isPerpendicularTo(const KrGeVector2d& v, const KrGeTol& tol, KrGe::ErrorCondition& status) const;
  // length(this) <= equalVector: status 1, true; length(v) <= equalVector: status 2, true;
  // otherwise status 0 and |a - b| <= equalVector or |a + b| <= equalVector for the directions.
  bool isParallelTo(const KrGeVector2d& v, const KrGeTol& tol = KrGeContext::gTol) const;
  bool isParallelTo(const KrGeVector2d& v, const KrGeTol& tol, KrGe::ErrorCondition& status) const;
  // Same zero tests; then normal(tol) of both are isEqualTo within tol.
  bool isCodirectionalTo(const KrGeVector2d& v, const KrGeTol& tol = KrGeContext::gTol) const;
  bool isCodirectionalTo(const KrGeVector2d& v, const KrGeTol& tol, KrGe::ErrorCondition& status) const;

  // Rotation by angle radians, counterclockwise.
  KrGeVector2d& rotateBy(double angle);
  // With L = lineDirection, n = L.normal(gTol), d = this . L:
  // this := (2 d n / length(L) - this) * (L . L). For a unit L the reflection in the line's
  // direction; a longer L deliberately scales the result by its squared length.
  KrGeVector2d& mirror(const KrGeVector2d& lineDirection);

  // The translation matrix by this vector.
  operator KrGeMatrix2d() const;

  double x, y;

private:
  static constexpr double kNormalMin = 2.2250738585072014e-308;
  static constexpr double kFiniteMax = 1.7976931348623157e308;
  double lengthScaled(double sum) const;
};

inline KrGeVector2d operator*(double s, const KrGeVector2d& v) { return v * s; }
