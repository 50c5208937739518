#include "entity/arc/arc_closest.h"

#include <cfloat>
#include <cmath>

#include "entity/arc/arc_angles.h"

namespace {

// Coordinates of point - center along refVec (u) and normal x refVec (v), and their length; the
// length is rescaled where the squares would leave the normal range.
struct InPlane {
  double u, v, rho;
};

InPlane inPlane(const KrArcFrame& arc, const KrGeVector3d& yAxis, const KrGePoint3d& point) {
  const KrGeVector3d w = point - arc.center;
  InPlane result{w.dotProduct(arc.refVec), w.dotProduct(yAxis), 0.0};
  const double sum = result.u * result.u + result.v * result.v;
  result.rho = sum >= 1e-290 && sum <= 1e290 ? std::sqrt(sum) : std::hypot(result.u, result.v);
  return result;
}

bool offAxis(const InPlane& p, double axisTol) { return p.rho > axisTol && p.rho <= DBL_MAX; }

}  // namespace

KrGePoint3d krArcClosestPoint(const KrArcFrame& arc, const KrGePoint3d& point, double axisTol, double* param) {
  const KrGeVector3d yAxis = arc.yAxis();
  const InPlane p = inPlane(arc, yAxis, point);
  if (!offAxis(p, axisTol)) {
    if (param) *param = arc.startAng;
    return arc.pointAt(arc.startAng);
  }
  double offset = 0.0;
  const bool fullCircle = arc.sweep >= kKrTwoPi;
  if (!fullCircle || param) offset = krArcOffset(std::atan2(p.v, p.u), arc.startAng);
  if (fullCircle || offset <= arc.sweep) {
    if (param) *param = arc.startAng + offset;
    const double k = arc.radius / p.rho;
    const double x = p.u * k;
    const double y = p.v * k;
    return KrGePoint3d(arc.center.x + x * arc.refVec.x + y * yAxis.x, arc.center.y + x * arc.refVec.y + y * yAxis.y,
                       arc.center.z + x * arc.refVec.z + y * yAxis.z);
  }
  const double end = arc.endAng();
  const double angle = offset - arc.sweep < kKrTwoPi - offset ? end : arc.startAng;
  if (param) *param = angle;
  return arc.pointAt(angle);
}

double krArcParamOf(const KrArcFrame& arc, const KrGePoint3d& point, double equalPoint) {
  const InPlane p = inPlane(arc, arc.yAxis(), point);
  if (!offAxis(p, equalPoint)) return arc.startAng;
  return krArcParamOfAngle(std::atan2(p.v, p.u), arc.startAng, arc.sweep, krArcAngleTol(arc, equalPoint));
}
