#include "entity/arc/arc_closest.h"

#include <cmath>

#include "entity/arc/arc_angles.h"

double krArcParamOf(const KrArcFrame& arc, const KrGePoint3d& point, double equalPoint) {
  const KrArcInPlane p = krArcInPlane(arc, arc.yAxis(), point);
  if (!krArcOffAxis(p, equalPoint)) return arc.startAng;
  return krArcParamOfAngle(std::atan2(p.v, p.u), arc.startAng, arc.sweep, krArcAngleTol(arc, equalPoint));
}
