// Closest pairs and intersections of lines and segments with elliptical arcs.
#include "entity/relation/line_ellipse.h"

#include "KrsDiagnostics.h"
#include "entity/ellipse/KrEllipticArc3dImpl.h"
#include "entity/ellipse/ellipse_intersect.h"
#include "entity/linear/KrLinearEnt3dImpl.h"
#include "entity/relation/ellipse_pairs.h"

namespace {

const KrLinearEnt3dImpl& linear(const KrGeCurve3dImpl& curve) { return static_cast<const KrLinearEnt3dImpl&>(curve); }
const KrEllipticArc3dImpl& ellipse(const KrGeCurve3dImpl& curve) {
  return static_cast<const KrEllipticArc3dImpl&>(curve);
}

}  // namespace

namespace krrelation {

bool closestLineEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                        KrGePoint3d& onSecond, const KrGeTol&) {
  const KrPairMinimum pair = krellipsepairs::closest(ellipse(second).frame(), linear(first).span());
  onFirst = pair.onOther;
  onSecond = pair.onEllipse;
  return true;
}

bool projClosestLineEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                            const KrGeVector3d& direction, KrGePoint3d& onFirst, KrGePoint3d& onSecond,
                            const KrGeTol& tol) {
  double t = 0.0;
  double s = 0.0;
  const bool pSeen = krellipsepairs::closestSeen(ellipse(second).frame(), linear(first).span(), direction, t, s);
  KRS_FAIL_IF(!pSeen);
  if (!pSeen) return closestLineEllipse(first, second, onFirst, onSecond, tol);
  onFirst = linear(first).evalPoint(s);
  onSecond = ellipse(second).evalPoint(t);
  return true;
}

bool localClosestLineEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                             const KrGeInterval* nbhdFirst, const KrGeInterval* nbhdSecond, double& paramFirst,
                             double& paramSecond, const KrGeTol&) {
  const KrPairMinimum pair = krellipsepairs::closest(krellipsepairs::restricted(ellipse(second).frame(), nbhdSecond),
                                                     krRestrictedSpan(linear(first).span(), nbhdFirst));
  paramFirst = pair.otherParam;
  paramSecond = pair.t;
  return true;
}

bool intersectLineEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
                          KrCurveIntersections& result) {
  KrEllipseHit hits[2];
  const int count = krEllipseLineHits(ellipse(second).frame(), linear(first).span(), tol.equalPoint(), true, hits);
  for (int i = 0; i < count; ++i) result.add(hits[i].point, hits[i].s, hits[i].t);
  return true;
}

}  // namespace krrelation
