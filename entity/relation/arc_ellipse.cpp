// Closest pairs and intersections of a circular arc (first) and an elliptical arc (second): the circular arc is taken as the ellipse of
// equal radii, so both go through the conic routines of the ellipse.
#include "entity/relation/arc_ellipse.h"

#include "KrsDiagnostics.h"
#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/ellipse/KrEllipticArc3dImpl.h"
#include "entity/ellipse/ellipse_intersect.h"
#include "entity/relation/ellipse_pairs.h"

namespace {

const KrEllipticArc3dImpl& ellipse(const KrGeCurve3dImpl& curve) {
  return static_cast<const KrEllipticArc3dImpl&>(curve);
}
KrEllipseFrame firstFrame(const KrGeCurve3dImpl& first) { return krEllipseFrameOf(static_cast<const KrCircArc3dImpl&>(first).frame()); }

}  // namespace

namespace krrelation {

bool closestArcEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                        KrGePoint3d& onSecond, const KrGeTol&) {
  const KrPairMinimum pair = krellipsepairs::closest(ellipse(second).frame(), firstFrame(first));
  onFirst = pair.onOther;
  onSecond = pair.onEllipse;
  return true;
}

bool projClosestArcEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                            const KrGeVector3d& direction, KrGePoint3d& onFirst, KrGePoint3d& onSecond,
                            const KrGeTol& tol) {
  double t = 0.0;
  double s = 0.0;
  const bool pSeen = krellipsepairs::closestSeen(ellipse(second).frame(), firstFrame(first), direction, t, s);
  KRS_FAIL_IF(!pSeen);
  if (!pSeen) return closestArcEllipse(first, second, onFirst, onSecond, tol);
  onFirst = firstFrame(first).pointAt(s);
  onSecond = ellipse(second).evalPoint(t);
  return true;
}

bool localClosestArcEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                             const KrGeInterval* nbhdFirst, const KrGeInterval* nbhdSecond, double& paramFirst,
                             double& paramSecond, const KrGeTol&) {
  const KrPairMinimum pair = krellipsepairs::closest(krellipsepairs::restricted(ellipse(second).frame(), nbhdSecond),
                                                     krellipsepairs::restricted(firstFrame(first), nbhdFirst));
  paramFirst = pair.otherParam;
  paramSecond = pair.t;
  return true;
}

bool intersectArcEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
                          KrCurveIntersections& result) {
  KrEllipseHit hits[4];
  const int count = krEllipseEllipseHits(firstFrame(first), ellipse(second).frame(), tol.equalPoint(), hits);
  for (int i = 0; i < count; ++i) result.add(hits[i].point, hits[i].t, hits[i].s);
  return true;
}

}  // namespace krrelation
