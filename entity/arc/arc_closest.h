// Closest points and parameters of points for a circular arc given as plain data.
#pragma once

#include <cfloat>
#include <cmath>

#include "entity/arc/arc_angles.h"
#include "entity/arc/arc_frame.h"

// Coordinates of point - center along refVec (u) and normal x refVec (v), and their length; the
// length is rescaled where the squares would leave the normal range.
struct KrArcInPlane {
  double u, v, rho;
};

inline double krPlanarLength(double sum, const KrGeVector3d& v) {
  return sum >= 1e-290 && sum <= 1e290 ? std::sqrt(sum) : v.length();
}

inline KrArcInPlane krArcInPlane(const KrArcFrame& arc, const KrGeVector3d& yAxis, const KrGePoint3d& point) {
  const KrGeVector3d w = point - arc.center;
  KrArcInPlane result{w.dotProduct(arc.refVec), w.dotProduct(yAxis), 0.0};
  result.rho = krPlanarLength(result.u * result.u + result.v * result.v, KrGeVector3d(result.u, result.v, 0.0));
  return result;
}

// Far enough from the axis for a direction, and finite.
inline bool krArcOffAxis(const KrArcInPlane& p, double axisTol) { return p.rho > axisTol && p.rho <= DBL_MAX; }

// The point of the arc nearest to `point`, exactly. The distance to the circle point at angle t
// grows with the angle between t and the direction of the point's projection into the arc's
// plane, so the answer is the circle point in that direction when it lies within the sweep and
// otherwise the end at the smaller angle (a tie gives the start). A point within axisTol of the
// axis (or not finite) is within 2 axisTol of being equally near every point of the circle: it
// gets the start point. *param, when given, receives the parameter of the answer.
inline KrGePoint3d krArcClosestPoint(const KrArcFrame& arc, const KrGePoint3d& point, double axisTol, double* param) {
  // A full circle needs no angle: the answer lies along the point's projection into the plane.
  if (arc.sweep >= kKrTwoPi && !param) {
    const KrGeVector3d w = point - arc.center;
    const KrGeVector3d across = w - arc.normal * w.dotProduct(arc.normal);
    const double rho = krPlanarLength(across.dotProduct(across), across);
    if (!(rho > axisTol && rho <= DBL_MAX)) return arc.pointAt(arc.startAng);
    return arc.center + across * (arc.radius / rho);
  }
  const KrGeVector3d yAxis = arc.yAxis();
  const KrArcInPlane p = krArcInPlane(arc, yAxis, point);
  if (!krArcOffAxis(p, axisTol)) {
    if (param) *param = arc.startAng;
    return arc.pointAt(arc.startAng);
  }
  const double offset = krArcOffset(std::atan2(p.v, p.u), arc.startAng);
  if (offset <= arc.sweep) {
    if (param) *param = arc.startAng + offset;
    const double k = arc.radius / p.rho;
    const double x = p.u * k;
    const double y = p.v * k;
    return KrGePoint3d(arc.center.x + x * arc.refVec.x + y * yAxis.x, arc.center.y + x * arc.refVec.y + y * yAxis.y,
                       arc.center.z + x * arc.refVec.z + y * yAxis.z);
  }
  const double angle = offset - arc.sweep < kKrTwoPi - offset ? arc.endAng() : arc.startAng;
  if (param) *param = angle;
  return arc.pointAt(angle);
}

// The parameter of the point's direction seen from the centre (krArcParamOfAngle with the angular
// tolerance equalPoint / radius): a point of the arc answers its angle within [startAng, endAng],
// a point in the gap the parameter just outside the range on its nearer side. A point within
// equalPoint of the axis (or not finite) answers startAng.
double krArcParamOf(const KrArcFrame& arc, const KrGePoint3d& point, double equalPoint);

// The angle tolerance that matches a model-space distance on the arc: distance / radius, 0 for a
// radius of 0.
inline double krArcAngleTol(const KrArcFrame& arc, double distance) {
  return arc.radius > 0.0 ? distance / arc.radius : 0.0;
}
