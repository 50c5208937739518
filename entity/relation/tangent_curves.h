// The plain geometry behind the tangent constructions: a line or a circular arc read from its
// facade, a plane to work in with its 2D coordinates, and the effective point tolerance.
#pragma once

#include "KrGeInterval.h"
#include "KrGePoint3d.h"
#include "KrGeVector2d.h"
#include "KrGeVector3d.h"
#include "entity/arc/arc_frame.h"

class KrGeCurve3d;

namespace krtangent {

// A line (origin + t * direction, bounded for a segment) or a circular arc (angle parameter over
// [startAng, startAng + sweep]); kOther for every other kind.
struct Curve {
  enum class Kind { kLine, kCircle, kOther };
  Kind kind = Kind::kOther;
  KrGePoint3d origin;
  KrGeVector3d direction;
  bool bounded = false;
  KrArcFrame arc;
  KrGeInterval range;

  static Curve of(const KrGeCurve3d& curve);
  bool isLine() const { return kind == Kind::kLine; }
  bool isCircle() const { return kind == Kind::kCircle; }
  KrGePoint3d pointAt(double param) const;
  // A line's projection parameter; an arc's angle of the point, brought into the turn that
  // starts just before startAng (by the slack of contains()).
  double paramOf(const KrGePoint3d& point) const;
  // Within the range by its own tolerance; for arcs also by gTol.equalPoint() / radius in angle.
  bool contains(double param) const;
  // The point of the range's bounds (a segment's ends).
  KrGePoint3d startPoint() const { return pointAt(range.lowerBound()); }
  KrGePoint3d endPoint() const { return pointAt(range.upperBound()); }

private:
  double angleSlack() const;
};

// gTol.equalPoint(), raised where coordinates are too large for it (14 significant digits).
double equalPointNear(const KrGePoint3d& a, const KrGePoint3d& b);

// A plane with an orthonormal frame; 2D coordinates are taken along xAxis and yAxis.
struct Plane {
  KrGePoint3d origin;
  KrGeVector3d xAxis, yAxis, normal;

  // Through `origin`, with unit `normal` and `xAxis` perpendicular to it.
  static Plane of(const KrGePoint3d& origin, const KrGeVector3d& normal, const KrGeVector3d& xAxis);
  KrGeVector2d to2d(const KrGePoint3d& point) const {
    const KrGeVector3d offset = point - origin;
    return KrGeVector2d(offset.dotProduct(xAxis), offset.dotProduct(yAxis));
  }
  KrGeVector2d to2d(const KrGeVector3d& vector) const {
    return KrGeVector2d(vector.dotProduct(xAxis), vector.dotProduct(yAxis));
  }
  KrGePoint3d to3d(const KrGeVector2d& point) const { return origin + xAxis * point.x + yAxis * point.y; }
  // The point lies in the plane within equalPointNear.
  bool holds(const KrGePoint3d& point) const;
  // A line lies in the plane: its origin and a second point a unit further along it.
  bool holdsLine(const Curve& line) const;
};

// The common plane of a line or circle with another; false when they are not coplanar (two lines
// must also cross: parallel lines have no plane of their own here).
bool commonPlane(const Curve& first, const Curve& second, Plane& plane);

inline double cross(const KrGeVector2d& a, const KrGeVector2d& b) { return a.x * b.y - a.y * b.x; }

}  // namespace krtangent
