// The arc's operations with other curves: each is one call into the relation layer.
#include <cmath>

#include "KrGeLinearEnt3d.h"
#include "KrsDiagnostics.h"
#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/relation/KrCurveRelation.h"

namespace {

// The first two points of an intersection result.
bool firstTwo(const KrCurveIntersections& found, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2) {
  numInt = found.count < 2 ? found.count : 2;
  if (numInt > 0) p1 = found.points[0];
  if (numInt > 1) p2 = found.points[1];
  return numInt > 0;
}

}  // namespace

KrGePoint3d KrCircArc3dImpl::closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv,
                                            const KrGeTol& tol) const {
  KrGePoint3d onThis = KrGePoint3d::kOrigin;
  krrelation::closestPair(*this, *curveImplOf(curve2), onThis, pntOnOtherCrv, tol);
  return onThis;
}

bool KrCircArc3dImpl::intersectWith(const KrGeLinearEnt3d& line, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                                    const KrGeTol& tol) const {
  KrCurveIntersections found;
  krrelation::intersect(*this, *curveImplOf(line), tol, found);
  return firstTwo(found, numInt, p1, p2);
}

bool KrCircArc3dImpl::intersectWith(const KrGeCircArc3d& arc, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                                    const KrGeTol& tol) const {
  KrCurveIntersections found;
  krrelation::intersect(*this, *curveImplOf(arc), tol, found);
  return firstTwo(found, numInt, p1, p2);
}
