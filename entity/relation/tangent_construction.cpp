// The tangent segments: through a point, and common to two curves.
#include "entity/relation/tangent_construction.h"

#include <cmath>
#include <initializer_list>

#include "KrsDiagnostics.h"
#include "entity/linear/KrLinearEnt3dImpl.h"
#include "entity/relation/tangent_curves.h"

using krtangent::Curve;
using krtangent::Plane;

namespace {

// A touch point on a curve with its parameter there.
struct Touch {
  KrGePoint3d point;
  double param = 0.0;
};

// For a linear curve the only tangent line is its own line: the point must lie on it, and the
// segment runs to the curve's end farther from the point.
bool throughPointOnLine(const Curve& line, const KrGePoint3d& point, Touch& touch) {
  if (!line.bounded || line.direction.isZeroLength(KrGeContext::gTol)) return false;
  const KrGePoint3d foot = line.pointAt(line.paramOf(point));
  if (!point.isEqualTo(foot, KrGeContext::gTol)) return false;
  const KrGePoint3d start = line.startPoint();
  const KrGePoint3d end = line.endPoint();
  const bool toEnd = point.distanceTo(end) >= point.distanceTo(start);
  touch.point = toEnd ? end : start;
  if (point.isEqualTo(touch.point, KrGeContext::gTol)) return false;
  touch.param = toEnd ? line.range.upperBound() : line.range.lowerBound();
  return true;
}

// The tangents from an outside point P touch the circle where the radius is perpendicular to the
// line of sight: at angle +-phi from the direction to P, with cos phi = r / |P - C| (in-plane).
bool throughPointOnCircle(const Curve& circle, const KrGePoint3d& point, Touch& touch) {
  const KrArcFrame& arc = circle.arc;
  const Plane plane = Plane::of(arc.center, arc.normal, arc.refVec);
  if (!plane.holds(point)) return false;
  const KrGeVector2d seen = plane.to2d(point);
  const double distance = seen.length();
  if (!(distance > arc.radius + krtangent::equalPointNear(point, arc.center)) || !std::isfinite(distance))
    return false;
  const KrGeVector2d u = seen / distance;
  const double cosine = arc.radius / distance;
  const double sine = std::sqrt(std::fmax(0.0, 1.0 - cosine * cosine));
  bool found = false;
  for (double side : {1.0, -1.0}) {
    const KrGeVector2d radial = u * cosine + u.perpVector() * (side * sine);
    const KrGePoint3d candidate = plane.to3d(radial * arc.radius);
    const double param = circle.paramOf(candidate);
    if (!circle.contains(param) || (found && param >= touch.param)) continue;
    touch.point = candidate;
    touch.param = param;
    found = true;
  }
  return found;
}

// Two bounded colinear linear curves share their line; the segment bridges them from the end of
// curve 1 nearest to curve 2 to the end of curve 2 nearest to curve 1.
bool bridgeLines(const Curve& first, const Curve& second, const KrGeCurve3d& firstCurve,
                 const KrGeCurve3d& secondCurve, Touch& touch1, Touch& touch2) {
  if (!first.bounded || !second.bounded) return false;
  if (first.direction.isZeroLength(KrGeContext::gTol) || second.direction.isZeroLength(KrGeContext::gTol))
    return false;
  const KrLinearEnt3dImpl& firstImpl = *KrLinearEnt3dImpl::linearOf(firstCurve);
  if (!firstImpl.isParallelTo(static_cast<const KrGeLinearEnt3d&>(secondCurve), KrGeContext::gTol, true))
    return false;
  const double ends1[2] = {first.range.lowerBound(), first.range.upperBound()};
  const double ends2[2] = {second.range.lowerBound(), second.range.upperBound()};
  double best = -1.0;
  for (double s : ends1) {
    for (double t : ends2) {
      const double gap = first.pointAt(s).distanceTo(second.pointAt(t));
      if (best >= 0.0 && !(gap < best)) continue;
      best = gap;
      touch1 = {first.pointAt(s), s};
      touch2 = {second.pointAt(t), t};
    }
  }
  return true;
}

// A bounded linear curve whose line touches the circle: the touch point is the foot of the centre
// on the line, which must lie in the arc's range; the segment runs from the linear curve's end
// nearest to it.
bool lineTouchingCircle(const Curve& line, const Curve& circle, Touch& onLine, Touch& onCircle) {
  if (!line.bounded || line.direction.isZeroLength(KrGeContext::gTol)) return false;
  const KrArcFrame& arc = circle.arc;
  const Plane plane = Plane::of(arc.center, arc.normal, arc.refVec);
  if (!plane.holdsLine(line)) return false;
  const KrGePoint3d foot = line.pointAt(line.paramOf(arc.center));
  const double distance = foot.distanceTo(arc.center);
  if (!(std::fabs(distance - arc.radius) <= krtangent::equalPointNear(foot, arc.center))) return false;
  const KrGePoint3d touch = distance > 0.0 ? arc.center + (foot - arc.center) * (arc.radius / distance) : foot;
  onCircle = {touch, circle.paramOf(touch)};
  if (!circle.contains(onCircle.param)) return false;
  const KrGePoint3d start = line.startPoint();
  const KrGePoint3d end = line.endPoint();
  const bool fromEnd = touch.distanceTo(end) < touch.distanceTo(start);
  onLine = {fromEnd ? end : start, fromEnd ? line.range.upperBound() : line.range.lowerBound()};
  return true;
}

// Common tangents of two coplanar circles. A line with unit normal m touches circle i at
// c_i + r_i m (outer: both on the same side) or c2 - r2 m (inner); the touch points lie on one
// line when m . (c2 - c1) = r1 - r2 (outer) or r1 + r2 (inner), so m makes the angle acos of
// that over |c2 - c1| with the line of centres, on either side.
bool circlesTangent(const Curve& first, const Curve& second, Touch& touch1, Touch& touch2) {
  Plane plane;
  if (!krtangent::commonPlane(first, second, plane)) return false;
  const KrGeVector2d c1 = plane.to2d(first.arc.center), c2 = plane.to2d(second.arc.center);
  const double r1 = first.arc.radius, r2 = second.arc.radius;
  const double eps = krtangent::equalPointNear(first.arc.center, second.arc.center);
  const double d = (c2 - c1).length();
  if (!(d > eps) || !std::isfinite(d)) return false;
  const KrGeVector2d u = (c2 - c1) / d;
  double bestLength = -1.0;
  for (double inner : {0.0, 1.0}) {
    const double cosine = (r1 - r2 + inner * 2.0 * r2) / d;
    if (!(std::fabs(cosine) <= 1.0)) continue;
    const double sine = std::sqrt(std::fmax(0.0, 1.0 - cosine * cosine));
    for (double side : {1.0, -1.0}) {
      const KrGeVector2d m = u * cosine + u.perpVector() * (side * sine);
      const KrGePoint3d p1 = plane.to3d(c1 + m * r1);
      const KrGePoint3d p2 = plane.to3d(c2 + m * (inner > 0.0 ? -r2 : r2));
      const double length = p1.distanceTo(p2);
      if (!(length > eps) || (bestLength >= 0.0 && !(length < bestLength))) continue;
      const double param1 = first.paramOf(p1), param2 = second.paramOf(p2);
      if (!first.contains(param1) || !second.contains(param2)) continue;
      bestLength = length;
      touch1 = {p1, param1};
      touch2 = {p2, param2};
    }
  }
  return bestLength >= 0.0;
}

}  // namespace

namespace krrelation {

void tangentSegmentThroughPoint(KrLinearEnt3dImpl& segment, const KrGeCurve3d& curve, const KrGePoint3d& point,
                                double& param, bool& success) {
  success = false;
  const Curve given = Curve::of(curve);
  if (given.kind == Curve::Kind::kOther) {
    KRS_NOT_IMPLEMENTED();
    return;
  }
  Touch touch;
  if (!(given.isLine() ? throughPointOnLine(given, point, touch) : throughPointOnCircle(given, point, touch))) return;
  param = touch.param;
  segment.set(point, touch.point, false);
  success = true;
}

void commonTangentSegment(KrLinearEnt3dImpl& segment, const KrGeCurve3d& curve1, const KrGeCurve3d& curve2,
                          double& param1, double& param2, bool& success) {
  success = false;
  const Curve first = Curve::of(curve1), second = Curve::of(curve2);
  if (first.kind == Curve::Kind::kOther || second.kind == Curve::Kind::kOther) {
    KRS_NOT_IMPLEMENTED();
    return;
  }
  Touch touch1, touch2;
  bool found = false;
  if (first.isLine() && second.isLine())
    found = bridgeLines(first, second, curve1, curve2, touch1, touch2);
  else if (first.isLine())
    found = lineTouchingCircle(first, second, touch1, touch2);
  else if (second.isLine())
    found = lineTouchingCircle(second, first, touch2, touch1);
  else
    found = circlesTangent(first, second, touch1, touch2);
  if (!found) return;
  param1 = touch1.param;
  param2 = touch2.param;
  segment.set(touch1.point, touch2.point, false);
  success = true;
}

}  // namespace krrelation
