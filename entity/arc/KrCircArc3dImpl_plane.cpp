// Arcs against planes: the arc's own plane, the closest pair with a plane and the crossings.
#include <cmath>

#include "KrGePlane.h"
#include "KrsDiagnostics.h"
#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/arc/arc_plane.h"

void KrCircArc3dImpl::getPlane(KrGePlane& plane) const { plane.set(m_arc.center, m_arc.normal); }

// A crossing is at distance 0; otherwise the height above the plane is a sinusoid of the angle
// whose extreme nearest to zero over the range is the closest point. An arc parallel to the
// plane is equally near everywhere and answers its start point.
KrGePoint3d KrCircArc3dImpl::closestPointToPlane(const KrGePlanarEnt& plane, KrGePoint3d& pointOnPlane,
                                                 const KrGeTol& tol) const {
  const KrGeVector3d normal = plane.normal();
  const KrArcCrossings crossings = krArcPlaneCrossings(m_arc, plane.pointOnPlane(), normal, tol.equalPoint());
  double param = m_arc.startAng;
  if (crossings.count > 0)
    param = crossings.params[0];
  else if (crossings.inPlane || m_arc.normal.isParallelTo(normal, tol))
    param = m_arc.startAng;
  else
    param = crossings.heights.low > 0.0 ? crossings.heights.lowParam : crossings.heights.highParam;
  const KrGePoint3d onArc = crossings.count > 0 ? crossings.points[0] : m_arc.pointAt(param);
  pointOnPlane = plane.closestPointTo(onArc, tol);
  return onArc;
}

bool KrCircArc3dImpl::intersectWith(const KrGePlanarEnt& plane, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                                    const KrGeTol& tol) const {
  const KrArcCrossings crossings = krArcPlaneCrossings(m_arc, plane.pointOnPlane(), plane.normal(), tol.equalPoint());
  const bool bounded = plane.type() != KrGe::kPlane;
  if (bounded) KRS_AUTOTEST("bool KrCircArc3dImpl::intersectWith bounded plane");
  numInt = 0;
  KrGePoint3d* out[2] = {&p1, &p2};
  for (int i = 0; i < crossings.count; ++i)
    if (!bounded || plane.isOn(crossings.points[i], tol)) *out[numInt++] = crossings.points[i];
  return numInt > 0;
}
