// Closest points, projected closest points, intersections and direction relations of lines and
// segments.
#include <cmath>

#include "KrGeLine3d.h"
#include "KrGePointOnCurve3d.h"
#include "KrsDiagnostics.h"
#include "entity/linear/KrLinearEnt3dImpl.h"
#include "entity/relation/KrCurveRelation.h"

namespace {

bool isExactlyZero(const KrGeVector3d& v) { return v.x == 0.0 && v.y == 0.0 && v.z == 0.0; }

// Distance from `point` to its projection on the infinite line of `line` (gTol parameter).
double offLine(const KrLinearEnt3dImpl& line, const KrGePoint3d& point) {
  return point.distanceTo(line.evalPoint(line.paramOf(point, KrGeContext::gTol)));
}

// Length of the part of `chord` perpendicular to `direction`.
double perpendicularPart(const KrGeVector3d& chord, const KrGeVector3d& direction) {
  const KrGeVector3d unit = direction.normal(KrGeContext::gTol);
  return (chord - unit * chord.dotProduct(unit)).length();
}

}  // namespace

KrGePoint3d KrLinearEnt3dImpl::closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv,
                                              const KrGeTol& tol) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::closestPointTo(curve, ptOnC, tol)");
  KrGePoint3d onThis = KrGePoint3d::kOrigin;
  const KrGeCurve3dImpl& other = *curveImplOf(curve2);
  const KrGe::EntityId kind = other.type();
  if (kind == KrGe::kLine3d || kind == KrGe::kLineSeg3d) {
    // The commonest pair is solved here, as the relation table would, without the table's
    // lookup and indirect call: they would cost about as much as the solve itself.
    krClosestPoints(span(), static_cast<const KrLinearEnt3dImpl&>(other).span(), onThis, pntOnOtherCrv);
    return onThis;
  }
  krrelation::closestPair(*this, other, onThis, pntOnOtherCrv, tol);
  return onThis;
}

bool KrLinearEnt3dImpl::intersectWith(const KrGeLinearEnt3d& line, KrGePoint3d& intPnt, const KrGeTol& tol) const {
  KrGePoint3d onOther;
  const KrGePoint3d onThis = closestPointTo(line, onOther, tol);
  const double distance = onThis.distanceTo(onOther);
  if (!(distance <= krEffectiveEqualPoint(onThis, onOther, tol.equalPoint()))) return false;
  intPnt = onThis + (onOther - onThis) * 0.5;
  return true;
}

KrGePoint3d KrLinearEnt3dImpl::projClosestPointTo(const KrGePoint3d& point, const KrGeVector3d& projectDirection,
                                                  const KrGeTol& tol) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::projClosestPointTo(pt, dir, tol)");
  KrLinearSpan seen;
  const KrLinearSpan* pEntity = krSeenAlong(span(), m_origin, projectDirection, seen);
  KRS_FAIL_IF(!pEntity);
  if (!pEntity) return closestPointTo(point, tol);
  // Seen end-on (its image no longer than tol.equalPoint()) every point of the entity looks the
  // same: the one nearest in space is taken. A line's image is infinite unless its direction
  // vanishes in the view (0 * inf is NaN and fails the test as wanted).
  const double imageLength = pEntity->direction.length() * (m_upper - m_lower);
  if (!(imageLength > tol.equalPoint())) return closestPointTo(point, tol);
  KrLinearSpan target;
  target.origin = point;
  target.lower = target.upper = 0.0;
  KrLinearSpan targetSeen;
  if (!krSeenAlong(target, m_origin, projectDirection, targetSeen)) return closestPointTo(point, tol);
  double s = 0.0;
  double t = 0.0;
  krClosestParams(*pEntity, targetSeen, s, t);
  return evalPoint(s);
}

KrGePoint3d KrLinearEnt3dImpl::projClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection,
                                                  KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::projClosestPointTo(curve, dir, ptOnC, tol)");
  KrGePoint3d onThis = KrGePoint3d::kOrigin;
  krrelation::projClosestPair(*this, *curveImplOf(curve2), projectDirection, onThis, pntOnOtherCrv, tol);
  return onThis;
}

bool KrLinearEnt3dImpl::projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir,
                                          KrGePoint3d& pntOnThisLine, KrGePoint3d& pntOnOtherLine,
                                          const KrGeTol&) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::projIntersectWith(line, dir, ptOnL, ptOnL, tol)");
  pntOnThisLine = projClosestPointTo(line, projDir, pntOnOtherLine, KrGeContext::gTol);
  if ((pntOnThisLine - pntOnOtherLine).isParallelTo(projDir, KrGeContext::gTol)) return true;
  pntOnThisLine = KrGePoint3d::kOrigin;
  pntOnOtherLine = KrGePoint3d::kOrigin;
  return false;
}

bool KrLinearEnt3dImpl::getNormalPoint(const KrGeCurve3d& self, const KrGePoint3d& point,
                                       KrGePointOnCurve3d& pntOnCrv, const KrGeTol& tol) const {
  pntOnCrv.setCurve(self);
  pntOnCrv.setParameter(paramOf(point, tol));
  return true;
}

void KrLinearEnt3dImpl::getLocalClosestPoints(const KrGeCurve3d& self, const KrGePoint3d& point,
                                              KrGePointOnCurve3d& approxPnt, const KrGeInterval* nbhd,
                                              const KrGeTol&) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::getLocalClosestPoints(pt, apxPt, ptr, tol)");
  approxPnt.setCurve(self);
  approxPnt.setParameter(krClosestParamToPoint(krRestrictedSpan(span(), nbhd), point));
}

void KrLinearEnt3dImpl::getLocalClosestPoints(const KrGeCurve3d& self, const KrGeCurve3d& curve2,
                                              KrGePointOnCurve3d& approxPnt1, KrGePointOnCurve3d& approxPnt2,
                                              const KrGeInterval* nbhd1, const KrGeInterval* nbhd2,
                                              const KrGeTol& tol) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::getLocalClosestPoints(crv, apxPtOnC, apxPtOnC, ptr, ptr, tol)");
  double s = 0.0;
  double t = 0.0;
  if (!krrelation::localClosestPair(*this, *curveImplOf(curve2), nbhd1, nbhd2, s, t, tol)) return;
  approxPnt1.setCurve(self);
  approxPnt1.setParameter(s);
  approxPnt2.setCurve(curve2);
  approxPnt2.setParameter(t);
}

bool KrLinearEnt3dImpl::isParallelTo(const KrGeLinearEnt3d& line, const KrGeTol& tol, bool colinear) const {
  const KrLinearEnt3dImpl& other = of(line);
  const double e = tol.equalPoint();
  if (isExactlyZero(m_direction)) {
    if (isExactlyZero(other.m_direction)) return true;
    return !colinear || offLine(other, m_origin) <= e;
  }
  if (isExactlyZero(other.m_direction)) return !colinear || offLine(*this, other.m_origin) <= e;
  if (!m_direction.isParallelTo(other.m_direction, tol)) return false;

  // Each segment must stay within e of the other's direction across its whole chord and, for
  // colinearity, have both ends within e of the other's line.
  for (int side = 0; side < 2; ++side) {
    const KrLinearEnt3dImpl& a = side == 0 ? *this : other;
    const KrLinearEnt3dImpl& b = side == 0 ? other : *this;
    if (a.m_unbounded) continue;
    const KrGePoint3d start = a.startPoint();
    const KrGePoint3d end = a.endPoint();
    if (perpendicularPart(end - start, b.m_direction) > e) return false;
    if (colinear && (offLine(b, start) > e || offLine(b, end) > e)) return false;
  }
  if (colinear && m_unbounded && other.m_unbounded)
    return offLine(other, m_origin) <= e && offLine(*this, other.m_origin) <= e;
  return true;
}

bool KrLinearEnt3dImpl::isPerpendicularTo(const KrGeLinearEnt3d& line, const KrGeTol& tol) const {
  return m_direction.isPerpendicularTo(of(line).m_direction, tol);
}
