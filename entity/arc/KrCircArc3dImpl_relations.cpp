// The arc's operations with other curves: each is one call into the relation layer.
#include <cmath>

#include "KrGeLinearEnt3d.h"
#include "KrsDiagnostics.h"
#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/linear/KrLinearEnt3dImpl.h"
#include "entity/relation/KrCurveRelation.h"
#include "entity/relation/arc_arc.h"
#include "entity/relation/line_arc.h"

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
  // The pair of kinds is known here: its solver is called without the relation table (only
  // the points are reported, so the parameters need not be swapped back).
  KrCurveIntersections found;
  krLineArcIntersections(static_cast<const KrLinearEnt3dImpl&>(*curveImplOf(line)).span(), m_arc,
                         tol.equalPoint(), found);
  return firstTwo(found, numInt, p1, p2);
}

bool KrCircArc3dImpl::intersectWith(const KrGeCircArc3d& arc, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                                    const KrGeTol& tol) const {
  KrCurveIntersections found;
  krArcArcIntersections(m_arc, static_cast<const KrCircArc3dImpl&>(*curveImplOf(arc)).frame(), tol.equalPoint(),
                        found);
  return firstTwo(found, numInt, p1, p2);
}
