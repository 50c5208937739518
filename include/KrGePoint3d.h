// A position in 3D space: three doubles, plain data.
#pragma once

#include <cstddef>

#include "KrGeContext.h"
#include "KrGeLExport.h"
#include "KrsHeapObject.h"
#include "KrGeTol.h"
#include "KrGeVector3d.h"

class KrGeMatrix3d;
class KrGePlanarEnt;
class KrGePlane;
class KrGePoint2d;

// Coordinates x, y, z (also [0], [1], [2]). Arithmetic takes no tolerance and
// guards nothing; equality is a distance test against equalPoint with "<=" counting as equal.
class KRGEL_API KrGePoint3d : public KrsHeapObject {
public:
  static const KrGePoint3d kOrigin;  // (0, 0, 0)

  constexpr KrGePoint3d() noexcept : x(0.0), y(0.0), z(0.0) {}
  constexpr KrGePoint3d(double xx, double yy, double zz) noexcept : x(xx), y(yy), z(zz) {}
  // plane.evalPoint(point2d): the point of the plane at parameters (u, v).
  KrGePoint3d(const KrGePlanarEnt& plane, const KrGePoint2d& point2d);

  // 0 is x, 1 is y, and every other index z (no check, no report).
  double operator[](unsigned index) const { return index == 0 ? x : index == 1 ? y : z; }
  double& operator[](unsigned index) { return index == 0 ? x : index == 1 ? y : z; }

  KrGePoint3d& set(double xx, double yy, double zz) { x = xx; y = yy; z = zz; return *this; }
  // this := plane.evalPoint(point2d).
  KrGePoint3d& set(const KrGePlanarEnt& plane, const KrGePoint2d& point2d);

  KrGePoint3d operator+(const KrGeVector3d& v) const { return KrGePoint3d(x + v.x, y + v.y, z + v.z); }
  KrGePoint3d operator-(const KrGeVector3d& v) const { return KrGePoint3d(x - v.x, y - v.y, z - v.z); }
  KrGeVector3d operator-(const KrGePoint3d& p) const { return KrGeVector3d(x - p.x, y - p.y, z - p.z); }
  KrGePoint3d& operator+=(const KrGeVector3d& v) { x += v.x; y += v.y; z += v.z; return *this; }
  KrGePoint3d& operator-=(const KrGeVector3d& v) { x -= v.x; y -= v.y; z -= v.z; return *this; }
  KrGePoint3d operator*(double s) const { return KrGePoint3d(x * s, y * s, z * s); }
  KrGePoint3d operator/(double s) const { return KrGePoint3d(x / s, y / s, z / s); }
  KrGePoint3d& operator*=(double s) { x *= s; y *= s; z *= s; return *this; }
  KrGePoint3d& operator/=(double s) { x /= s; y /= s; z /= s; return *this; }
  KrGePoint3d& setToSum(const KrGePoint3d& p, const KrGeVector3d& v) {
    x = p.x + v.x; y = p.y + v.y; z = p.z + v.z; return *this;
  }
  // this := matrix * point, full affine map (3x3 block plus translation; fourth row unread).
  inline KrGePoint3d& setToProduct(const KrGeMatrix3d& matrix, const KrGePoint3d& point);
  KrGeVector3d asVector() const { return KrGeVector3d(x, y, z); }

  // length(this - p), without intermediate underflow or overflow.
  double distanceTo(const KrGePoint3d& p) const { return (*this - p).length(); }
  // Index of the largest absolute coordinate; ties go to the lower index.
  unsigned largestElement() const { return asVector().largestElement(); }

  // distanceTo(p) <= tol.equalPoint.
  bool isEqualTo(const KrGePoint3d& p, const KrGeTol& tol = KrGeContext::gTol) const {
    return distanceTo(p) <= tol.equalPoint();
  }
  bool operator==(const KrGePoint3d& p) const { return isEqualTo(p, KrGeContext::gTol); }
  bool operator!=(const KrGePoint3d& p) const { return !isEqualTo(p, KrGeContext::gTol); }

  // Each builds the matrix of the matching KrGeMatrix3d::setTo... and applies it to this point.
  inline KrGePoint3d& transformBy(const KrGeMatrix3d& matrix);
  // Rotation by angle radians, counterclockwise about axis through centre.
  KrGePoint3d& rotateBy(double angle, const KrGeVector3d& axis, const KrGePoint3d& centre = kOrigin);
  // Reflection in the plane.
  KrGePoint3d& mirror(const KrGePlane& plane);
  // Uniform scaling by factor about centre.
  KrGePoint3d& scaleBy(double factor, const KrGePoint3d& centre = kOrigin);

  // Intersection of the line through this point along direction with the plane (gTol). When
  // they do not meet (direction parallel to the plane) the result is (0, 0, 0), deliberately not
  // this point.
  KrGePoint3d project(const KrGePlanarEnt& plane, const KrGeVector3d& direction) const;
  // project(plane, plane.normal()).
  KrGePoint3d orthoProject(const KrGePlanarEnt& plane) const;
  // plane.paramOf(this, gTol): the (u, v) parameters of this point on the plane.
  KrGePoint2d convert2d(const KrGePlanarEnt& plane) const;


  double x, y, z;
};

// The matrix products above are defined inline with the matrix, so that transforming points costs
// no call into the library.
#include "KrGeMatrix3d.h"
