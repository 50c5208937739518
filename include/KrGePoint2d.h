// A position in the plane (or a (u, v) parameter pair): two doubles.
#pragma once

#include "KrGeContext.h"
#include "KrGeLExport.h"
#include "KrGeTol.h"
#include "KrGeVector2d.h"

class KrGeLine2d;
class KrGeMatrix2d;

// Coordinates x, y (also [0], [1]). Equality is distance <= equalPoint.
class KRGEL_API KrGePoint2d {
public:
  static const KrGePoint2d kOrigin;  // (0, 0)

  constexpr KrGePoint2d() noexcept : x(0.0), y(0.0) {}
  constexpr KrGePoint2d(double xx, double yy) noexcept : x(xx), y(yy) {}

  // 0 is x, every other index y (no check, no report).
  double operator[](unsigned index) const { return index == 0 ? x : y; }
  double& operator[](unsigned index) { return index == 0 ? x : y; }

  KrGePoint2d& set(double xx, double yy) { x = xx; y = yy; return *this; }

  KrGePoint2d operator+(const KrGeVector2d& v) const { return KrGePoint2d(x + v.x, y + v.y); }
  KrGePoint2d operator-(const KrGeVector2d& v) const { return KrGePoint2d(x - v.x, y - v.y); }
  KrGeVector2d operator-(const KrGePoint2d& p) const { return KrGeVector2d(x - p.x, y - p.y); }
  KrGePoint2d& operator+=(const KrGeVector2d& v) { x += v.x; y += v.y; return *this; }
  KrGePoint2d& operator-=(const KrGeVector2d& v) { x -= v.x; y -= v.y; return *this; }
  KrGePoint2d operator*(double s) const { return KrGePoint2d(x * s, y * s); }
  KrGePoint2d operator/(double s) const { return KrGePoint2d(x / s, y / s); }
  KrGePoint2d& operator*=(double s) { x *= s; y *= s; return *this; }
  KrGePoint2d& operator/=(double s) { x /= s; y /= s; return *this; }
  KrGePoint2d& setToSum(const KrGePoint2d& p, const KrGeVector2d& v) { x = p.x + v.x; y = p.y + v.y; return *this; }
  // this := matrix * point (2x2 block plus translation).
  KrGePoint2d& setToProduct(const KrGeMatrix2d& matrix, const KrGePoint2d& point);
  KrGePoint2d& transformBy(const KrGeMatrix2d& matrix);
  KrGeVector2d asVector() const { return KrGeVector2d(x, y); }

  double distanceTo(const KrGePoint2d& p) const { return (*this - p).length(); }
  // distanceTo(p) <= equalPoint.
  bool isEqualTo(const KrGePoint2d& p, const KrGeTol& tol = KrGeContext::gTol) const {
    return distanceTo(p) <= tol.equalPoint();
  }
  bool operator==(const KrGePoint2d& p) const { return isEqualTo(p, KrGeContext::gTol); }
  bool operator!=(const KrGePoint2d& p) const { return !isEqualTo(p, KrGeContext::gTol); }

  // this := centre + (dx cos - dy sin, dx sin + dy cos), (dx, dy) = this - centre: angle in
  // radians, counterclockwise.
  KrGePoint2d& rotateBy(double angle, const KrGePoint2d& centre = kOrigin);
  // this := centre + factor * (this - centre).
  KrGePoint2d& scaleBy(double factor, const KrGePoint2d& centre = kOrigin);
  // Applies KrGeMatrix2d::setToMirroring(line), which is not implemented: the point stays where
  // it is and the not-implemented assertion and notice are reported.
  KrGePoint2d& mirror(const KrGeLine2d& line);

  double x, y;
};
