#include "entity/arc/arc_plane.h"

#include <cmath>
#include <utility>

#include "entity/arc/arc_angles.h"
#include "entity/arc/arc_closest.h"

namespace {

// Adds the circle point (x, y) of the arc's plane when its direction lies within the sweep.
void addIfOnArc(const KrArcFrame& arc, const KrGeVector3d& yAxis, double x, double y, double angleTol,
                KrArcCrossings& result) {
  const double angle = std::atan2(y, x);
  if (result.count >= 2 || !krArcContainsAngle(angle, arc.startAng, arc.sweep, angleTol)) return;
  result.params[result.count] = krArcParamOfAngle(angle, arc.startAng, arc.sweep, angleTol);
  result.points[result.count] = arc.center + arc.refVec * x + yAxis * y;
  ++result.count;
}

}  // namespace

// Heights above the plane: h(t) = h0 + r (a cos t + b sin t) with a = refVec . n, b = y . n. In
// the arc's plane the plane is the line a x + b y = -h0 at signed distance d = -h0 / s from the
// centre (s = |(a, b)|, the sine of the angle between the planes); a height in the arc's plane
// is s times the distance to that line. The half chord sqrt((r - |d|)(r + |d|)) keeps its digits
// where the circle nearly touches the line.
KrArcCrossings krArcPlaneCrossings(const KrArcFrame& arc, const KrGePoint3d& origin, const KrGeVector3d& normal,
                                   double tol) {
  KrArcCrossings result;
  const KrGeVector3d yAxis = arc.yAxis();
  const double a = arc.refVec.dotProduct(normal);
  const double b = yAxis.dotProduct(normal);
  const double h0 = (arc.center - origin).dotProduct(normal);
  const double r = arc.radius;
  const KrGePoint3d start = arc.pointAt(arc.startAng);
  const KrGePoint3d end = arc.pointAt(arc.endAng());
  const double startHeight = (start - origin).dotProduct(normal);
  const double endHeight = (end - origin).dotProduct(normal);
  result.heights = krArcExtent(h0, r * a, r * b, arc.startAng, arc.endAng(), startHeight, endHeight);
  if (result.heights.low >= -tol && result.heights.high <= tol) {
    result.inPlane = true;
    return result;
  }
  const double s = std::hypot(a, b);
  if (result.heights.low > tol || result.heights.high < -tol || !(s > 0.0)) return result;

  const double angleTol = krArcAngleTol(arc, tol);
  const double d = -h0 / s;
  const double footX = d * (a / s);
  const double footY = d * (b / s);
  const double gap = std::fabs(d);
  const double touchScale = gap > 0.0 ? r / gap : 0.0;
  if (gap >= r) {
    if ((gap - r) * s <= tol) addIfOnArc(arc, yAxis, footX * touchScale, footY * touchScale, angleTol, result);
  } else {
    const double half = std::sqrt((r - gap) * (r + gap));
    if (2.0 * half <= tol) {
      addIfOnArc(arc, yAxis, footX * touchScale, footY * touchScale, angleTol, result);
    } else {
      const double alongX = -b / s * half;
      const double alongY = a / s * half;
      addIfOnArc(arc, yAxis, footX - alongX, footY - alongY, angleTol, result);
      addIfOnArc(arc, yAxis, footX + alongX, footY + alongY, angleTol, result);
      if (result.count == 2 && result.params[1] < result.params[0]) {
        std::swap(result.params[0], result.params[1]);
        std::swap(result.points[0], result.points[1]);
      }
    }
  }
  if (result.count == 0) {
    if (std::fabs(startHeight) <= tol) {
      result.params[result.count] = arc.startAng;
      result.points[result.count++] = start;
    }
    if (std::fabs(endHeight) <= tol && !(result.count == 1 && start.distanceTo(end) <= tol)) {
      result.params[result.count] = arc.endAng();
      result.points[result.count++] = end;
    }
  }
  // An arc that dips within tol of the plane between its ends without crossing it touches it.
  const bool lowNearer = std::fabs(result.heights.low) <= std::fabs(result.heights.high);
  const double nearest = lowNearer ? result.heights.lowParam : result.heights.highParam;
  if (result.count == 0 && std::fabs(lowNearer ? result.heights.low : result.heights.high) <= tol) {
    result.params[0] = nearest;
    result.points[result.count++] = arc.pointAt(nearest);
  }
  return result;
}
