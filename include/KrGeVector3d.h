// A displacement or direction in 3D space: three doubles, plain data.
#pragma once

#include <cmath>
#include <cstddef>

#include "KrGe.h"
#include "KrGeContext.h"
#include "KrGeLExport.h"
#include "KrsHeapObject.h"
#include "KrGeTol.h"

class KrGeMatrix3d;
class KrGePlanarEnt;
class KrGeVector2d;

// Components x, y, z (also reachable as [0], [1], [2]). Arithmetic takes no
// tolerance and guards nothing (division by zero gives infinities or NaNs). Tolerance tests
// count "<=" as within and a NaN never passes. Direction tests (perpendicular, parallel,
// codirectional) answer true on zero-length input and say so in their status:
// 1 when this vector is the zero one, 2 when the argument is.
class KRGEL_API KrGeVector3d : public KrsHeapObject {
public:
  static const KrGeVector3d kIdentity;  // (0, 0, 0): rotateTo reads it as "no axis given"
  static const KrGeVector3d kXAxis;     // (1, 0, 0)
  static const KrGeVector3d kYAxis;     // (0, 1, 0)
  static const KrGeVector3d kZAxis;     // (0, 0, 1)

  constexpr KrGeVector3d() noexcept : x(0.0), y(0.0), z(0.0) {}
  constexpr KrGeVector3d(double xx, double yy, double zz) noexcept : x(xx), y(yy), z(zz) {}
  // u * axis1 + v * axis2 of the plane (its axes as the plane returns them, not normalised).
  KrGeVector3d(const KrGePlanarEnt& plane, const KrGeVector2d& vector2d);

  // 0 is x, 1 is y, and every other index z (no check, no report).
  double operator[](unsigned index) const { return index == 0 ? x : index == 1 ? y : z; }
  double& operator[](unsigned index) { return index == 0 ? x : index == 1 ? y : z; }

  KrGeVector3d& set(double xx, double yy, double zz) { x = xx; y = yy; z = zz; return *this; }
  // this := u * axis1 + v * axis2 of the plane.
  KrGeVector3d& set(const KrGePlanarEnt& plane, const KrGeVector2d& vector2d);

  KrGeVector3d operator+(const KrGeVector3d& v) const { return KrGeVector3d(x + v.x, y + v.y, z + v.z); }
  KrGeVector3d operator-(const KrGeVector3d& v) const { return KrGeVector3d(x - v.x, y - v.y, z - v.z); }
  KrGeVector3d operator-() const { return KrGeVector3d(-x, -y, -z); }
  KrGeVector3d operator*(double s) const { return KrGeVector3d(x * s, y * s, z * s); }
  KrGeVector3d operator/(double s) const { return KrGeVector3d(x / s, y / s, z / s); }
  KrGeVector3d& operator+=(const KrGeVector3d& v) { x += v.x; y += v.y; z += v.z; return *this; }
  KrGeVector3d& operator-=(const KrGeVector3d& v) { x -= v.x; y -= v.y; z -= v.z; return *this; }
  KrGeVector3d& operator*=(double s) { x *= s; y *= s; z *= s; return *this; }
  KrGeVector3d& operator/=(double s) { x /= s; y /= s; z /= s; return *this; }
  KrGeVector3d& negate() { x = -x; y = -y; z = -z; return *this; }
  KrGeVector3d& setToSum(const KrGeVector3d& a, const KrGeVector3d& b) {
    x = a.x + b.x; y = a.y + b.y; z = a.z + b.z; return *this;
  }
  KrGeVector3d& setToProduct(const KrGeVector3d& v, double s) { x = v.x * s; y = v.y * s; z = v.z * s; return *this; }
  // this := matrix * vector with the upper-left 3x3 block only (translation ignored).
  inline KrGeVector3d& setToProduct(const KrGeMatrix3d& matrix, const KrGeVector3d& vector);
  // this := matrix * this, 3x3 block only.
  inline KrGeVector3d& transformBy(const KrGeMatrix3d& matrix);

  double lengthSqrd() const { return x * x + y * y + z * z; }
  // sqrt(x*x + y*y + z*z), computed without intermediate underflow or overflow: bit-identical to
  // the plain formula whenever its sum of squares is a normal finite number, and exact-scaled
  // otherwise (so (1e-300, 0, 0) has length 1e-300). NaN in gives NaN, infinity gives infinity.
  double length() const {
    const double sum = x * x + y * y + z * z;
    if (sum >= kNormalMin && sum <= kFiniteMax) return std::sqrt(sum);
    return lengthScaled(sum);
  }
  double dotProduct(const KrGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
  // (y*v.z - z*v.y, z*v.x - x*v.z, x*v.y - y*v.x): right-handed.
  KrGeVector3d crossProduct(const KrGeVector3d& v) const {
    return KrGeVector3d(y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x);
  }
  // Index of the largest absolute component; ties go to the lower index.
  unsigned largestElement() const;

  // length(this - v) <= tol.equalVector.
  bool isEqualTo(const KrGeVector3d& v, const KrGeTol& tol = KrGeContext::gTol) const {
    return (*this - v).length() <= tol.equalVector();
  }
  bool operator==(const KrGeVector3d& v) const { return isEqualTo(v, KrGeContext::gTol); }
  bool operator!=(const KrGeVector3d& v) const { return !isEqualTo(v, KrGeContext::gTol); }
  // x*x + y*y + z*z <= equalVector^2 (squared, no root; a length equal to the tolerance is zero).
  bool isZeroLength(const KrGeTol& tol = KrGeContext::gTol) const {
    return x * x + y * y + z * z <= tol.equalVector() * tol.equalVector();
  }
  // |length() - 1| <= equalVector.
  bool isUnitLength(const KrGeTol& tol = KrGeContext::gTol) const;

  // |a . b| <= equalVector for the normalised copies a, b (a cosine test). A zero this gives
  // status 1, a zero v status 2; both answer true.
  bool isPerpendicularTo(const KrGeVector3d& v, const KrGeTol& tol = KrGeContext::gTol) const;
  bool isPerpendicularTo(const KrGeVector3d& v, const KrGeTol& tol, KrGe::ErrorCondition& status) const;
  // |a - b| <= equalVector or |a + b| <= equalVector for the directions a, b (a chord on the unit
  // sphere, about the angle in radians). Zero means all three components exactly 0: status 1
  // for this, 2 for v, answer true.
  bool isParallelTo(const KrGeVector3d& v, const KrGeTol& tol = KrGeContext::gTol) const;
  bool isParallelTo(const KrGeVector3d& v, const KrGeTol& tol, KrGe::ErrorCondition& status) const;
  // As isParallelTo, with only |a - b| <= equalVector (same sense).
  bool isCodirectionalTo(const KrGeVector3d& v, const KrGeTol& tol = KrGeContext::gTol) const;
  bool isCodirectionalTo(const KrGeVector3d& v, const KrGeTol& tol, KrGe::ErrorCondition& status) const;

  // Divides by length(). Fails only when the length is exactly 0 (status 1, vector unchanged):
  // the tolerance is deliberately not consulted, so (1e-300, 0, 0) becomes (1, 0, 0), and a
  // subnormal length is rescaled exactly first so the result is still unit to rounding. A NaN
  // length divides and gives NaNs.
  KrGeVector3d& normalize(const KrGeTol& tol = KrGeContext::gTol);
  KrGeVector3d& normalize(const KrGeTol& tol, KrGe::ErrorCondition& status);
  // Normalised copy; the zero vector yields the zero vector.
  KrGeVector3d normal(const KrGeTol& tol = KrGeContext::gTol) const;

  // Unsigned angle in [0, pi], radians; 0 when either length is exactly 0. acos of the cosine
  // while |cos| <= 0.9, else asin of the cross-product length of the unit vectors (accurate near
  // 0 and pi). Huge or tiny coordinates whose plain cosine quotient over- or underflows still
  // give the angle.
  double angleTo(const KrGeVector3d& v) const;
  // Angle in [0, 2pi): 2pi - angleTo(v) when (this x v) . reference < -1e-10 (absolute
  // threshold; the reference is not normalised), angleTo(v) otherwise.
  double angleTo(const KrGeVector3d& v, const KrGeVector3d& reference) const;
  // Direction angle in [0, 2pi) of convert2d(plane) in the plane's axes.
  double angleOnPlane(const KrGePlanarEnt& plane) const;

  // this - (this . n) n with n the normalised normal; a zero normal gives this unchanged.
  KrGeVector3d orthoProject(const KrGeVector3d& planeNormal) const;
  // The same, the normal normalised with (tol, status); when it is zero status is 1
  // (deliberately 1, although the argument failed) and this is returned unchanged.
  KrGeVector3d orthoProject(const KrGeVector3d& planeNormal, const KrGeTol& tol,
                            KrGe::ErrorCondition& status) const;
  // Parallel projection along projectDirection onto the plane through the origin with
  // planeNormal. When the direction lies in that plane (isPerpendicularTo with gTol) status is
  // set to 3, otherwise status is not written (clear it first); the result is computed in both
  // cases (non-finite when the direction lies in the plane). tol is not used.
  KrGeVector3d project(const KrGeVector3d& planeNormal, const KrGeVector3d& projectDirection) const;
  KrGeVector3d project(const KrGeVector3d& planeNormal, const KrGeVector3d& projectDirection,
                       const KrGeTol& tol, KrGe::ErrorCondition& status) const;
  // (this . axis1, this . axis2) with the plane's axes as returned (not normalised).
  KrGeVector2d convert2d(const KrGePlanarEnt& plane) const;

  // KrGeContext::gOrthoVector of this vector: with the default rule a unit vector perpendicular
  // to this one (zero for the zero vector).
  KrGeVector3d perpVector() const;
  // Rotation by angle (radians, counterclockwise about axis) of KrGeMatrix3d::setToRotation
  // about the origin, applied as to a vector.
  KrGeVector3d& rotateBy(double angle, const KrGeVector3d& axis);
  // Reflection in the plane through the origin with normal n = planeNormal.normal(gTol):
  // this := this - 2 (this . n) n. A zero normal leaves the vector unchanged.
  KrGeVector3d& mirror(const KrGeVector3d& planeNormal);
  // Rotation matrix (about the origin) that turns this vector into the direction of target,
  // about `axis` when one is given (not kIdentity), else about this x target (or the target's
  // perpVector when the two are parallel). The warning "not correct input data" is sent and the
  // identity returned when the target is not perpendicular to a given axis (source Vector3d,
  // line 256) or when this or the target is of zero length (line 262); all tests use gTol.
  KrGeMatrix3d rotateTo(const KrGeVector3d& target, const KrGeVector3d& axis = kIdentity) const;

  // The translation matrix by this vector.
  operator KrGeMatrix3d() const;


  double x, y, z;

private:
  static constexpr double kNormalMin = 2.2250738585072014e-308;  // smallest normal double
  static constexpr double kFiniteMax = 1.7976931348623157e308;   // largest finite double
  // length() when the plain sum of squares is zero, subnormal, infinite or NaN.
  double lengthScaled(double sum) const;
};

inline KrGeVector3d operator*(double s, const KrGeVector3d& v) { return v * s; }

// Points, and through them the matrix with the inline matrix products of this class.
#include "KrGePoint3d.h"
