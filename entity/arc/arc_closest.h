// Closest points and parameters of points for a circular arc given as plain data.
#pragma once

#include "entity/arc/arc_frame.h"

// The point of the arc nearest to `point`, exactly. The distance to the circle point at angle t
// grows with the angle between t and the direction of the point's projection into the arc's
// plane, so the answer is the circle point in that direction when it lies within the sweep and
// otherwise the end at the smaller angle (a tie gives the start). A point within axisTol of the
// axis (or not finite) is within 2 axisTol of being equally near every point of the circle: it
// gets the start point. *param, when given, receives the parameter of the answer.
KrGePoint3d krArcClosestPoint(const KrArcFrame& arc, const KrGePoint3d& point, double axisTol, double* param);

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
