#include "entity/relation/tangent_curves.h"

#include <algorithm>
#include <cmath>

#include "KrGeCircArc3d.h"
#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/arc/arc_angles.h"
#include "entity/linear/KrLinearEnt3dImpl.h"

namespace krtangent {

Curve Curve::of(const KrGeCurve3d& curve) {
  Curve result;
  if (const KrLinearEnt3dImpl* linear = KrLinearEnt3dImpl::linearOf(curve)) {
    result.kind = Kind::kLine;
    result.origin = linear->origin();
    result.direction = linear->rawDirection();
    result.bounded = !linear->isUnbounded();
    result.range = linear->interval();
  } else if (curve.type() == KrGe::kCircArc3d && KrEnt3dImpl::implOf(curve)) {
    result.kind = Kind::kCircle;
    result.arc = KrCircArc3dImpl::of(static_cast<const KrGeCircArc3d&>(curve)).frame();
    result.bounded = true;
    result.range = KrGeInterval(result.arc.startAng, result.arc.endAng());
  }
  return result;
}

KrGePoint3d Curve::pointAt(double param) const {
  return isCircle() ? arc.pointAt(param) : origin + direction * param;
}

double Curve::angleSlack() const {
  return arc.radius > 0.0 ? KrGeContext::gTol.equalPoint() / arc.radius : 0.0;
}

double Curve::paramOf(const KrGePoint3d& point) const {
  if (isLine()) {
    const double squared = direction.lengthSqrd();
    return squared > 0.0 ? direction.dotProduct(point - origin) / squared : 0.0;
  }
  const KrGeVector3d offset = point - arc.center;
  const double angle = std::atan2(offset.dotProduct(arc.yAxis()), offset.dotProduct(arc.refVec));
  // Into [startAng - slack, startAng - slack + 2 pi): a touch point a hair before the start
  // keeps its place at the start instead of jumping a full turn.
  const double base = arc.startAng - angleSlack();
  double turn = std::fmod(angle - base, kKrTwoPi);
  if (turn < 0.0) turn += kKrTwoPi;
  return base + turn;
}

bool Curve::contains(double param) const {
  if (!isCircle()) return range.contains(param);
  const double slack = std::max(angleSlack(), range.tolerance());
  return param >= range.lowerBound() - slack && param <= range.upperBound() + slack;
}

double equalPointNear(const KrGePoint3d& a, const KrGePoint3d& b) {
  const double m = std::max({std::fabs(a.x), std::fabs(a.y), std::fabs(a.z), std::fabs(b.x), std::fabs(b.y),
                             std::fabs(b.z)});
  const double equalPoint = KrGeContext::gTol.equalPoint();
  if (!(m > 0.0) || !std::isfinite(m)) return equalPoint;
  return std::max(equalPoint, std::pow(10.0, std::ceil(std::log10(m)) - 14.0));
}

Plane Plane::of(const KrGePoint3d& origin, const KrGeVector3d& normal, const KrGeVector3d& xAxis) {
  Plane plane;
  plane.origin = origin;
  plane.normal = normal;
  plane.xAxis = xAxis;
  plane.yAxis = normal.crossProduct(xAxis);
  return plane;
}

bool Plane::holds(const KrGePoint3d& point) const {
  return std::fabs((point - origin).dotProduct(normal)) <= equalPointNear(point, origin);
}

bool Plane::holdsLine(const Curve& line) const {
  const double length = line.direction.length();
  if (!(length > 0.0) || !std::isfinite(length)) return false;
  return holds(line.origin) && holds(line.origin + line.direction / length);
}

bool commonPlane(const Curve& first, const Curve& second, Plane& plane) {
  const KrGeTol& tol = KrGeContext::gTol;
  if (first.isCircle()) {
    plane = Plane::of(first.arc.center, first.arc.normal, first.arc.refVec);
    if (second.isLine()) return plane.holdsLine(second);
    return second.arc.normal.isParallelTo(first.arc.normal, tol) && plane.holds(second.arc.center);
  }
  if (second.isCircle()) return commonPlane(second, first, plane);
  if (first.direction.isZeroLength(tol) || second.direction.isZeroLength(tol) ||
      first.direction.isParallelTo(second.direction, tol))
    return false;
  const KrGeVector3d xAxis = first.direction.normal(tol);
  const KrGeVector3d normal = first.direction.crossProduct(second.direction).normal(tol);
  plane = Plane::of(first.origin, normal, xAxis);
  return plane.holdsLine(second);
}

}  // namespace krtangent
