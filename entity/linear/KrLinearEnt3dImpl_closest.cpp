// Closest points, projected closest points, intersections and direction relations of lines and
// segments.
#include <cmath>

#include "KrGeLine3d.h"
#include "KrGePointOnCurve3d.h"
#include "KrsDiagnostics.h"
#include "entity/linear/KrLinearEnt3dImpl.h"

namespace {

bool isExactlyZero(const KrGeVector3d& v) { return v.x == 0.0 && v.y == 0.0 && v.z == 0.0; }

// The span restricted to a parameter neighbourhood; a neighbourhood that misses the span's
// range is ignored (the whole span is searched).
KrLinearSpan restricted(KrLinearSpan span, const KrGeInterval* nbhd) {
  if (!nbhd) return span;
  const double lower = nbhd->isBoundedBelow() ? std::fmax(span.lower, nbhd->lowerBound()) : span.lower;
  const double upper = nbhd->isBoundedAbove() ? std::fmin(span.upper, nbhd->upperBound()) : span.upper;
  if (lower <= upper) {
    span.lower = lower;
    span.upper = upper;
  }
  return span;
}

// The span as seen along `direction`: origin and direction with their components along it
// removed, the origin taken relative to `base` so that large coordinates cancel first. Null when
// nothing can be seen: a zero or non-finite direction, or non-finite data of the span.
const KrLinearSpan* seenAlong(const KrLinearSpan& span, const KrGePoint3d& base, const KrGeVector3d& direction,
                              KrLinearSpan& seen) {
  if (direction.isZeroLength(KrGeContext::gTol)) return nullptr;
  const KrGeVector3d u = direction.normal(KrGeContext::gTol);
  const KrGeVector3d offset = span.origin - base;
  seen = span;
  seen.origin = KrGePoint3d::kOrigin + (offset - u * offset.dotProduct(u));
  seen.direction = span.direction - u * span.direction.dotProduct(u);
  const bool finite = std::isfinite(u.x) && std::isfinite(u.y) && std::isfinite(u.z) &&
                      std::isfinite(seen.origin.x) && std::isfinite(seen.origin.y) && std::isfinite(seen.origin.z) &&
                      std::isfinite(seen.direction.x) && std::isfinite(seen.direction.y) &&
                      std::isfinite(seen.direction.z);
  return finite ? &seen : nullptr;
}

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

// Both lines through the origin of line 1 see the same geometry; the first parameter comes from
// the cross-product form (the Lagrange identity writes |d1|^2|d2|^2 - (d1.d2)^2 out as the
// squared components of d1 x d2, which does not cancel for nearly parallel lines).
bool KrLinearEnt3dImpl::closestPointsOfLines(const KrLinearEnt3dImpl& line1, const KrLinearEnt3dImpl& line2,
                                             KrGePoint3d& point1, KrGePoint3d& point2, const KrGeTol& tol) {
  const KrGeVector3d d1 = line1.m_direction.normal(KrGeContext::gTol);
  const KrGeVector3d d2 = line2.m_direction.normal(KrGeContext::gTol);
  if (d1.isZeroLength(KrGeContext::gTol) || d2.isZeroLength(KrGeContext::gTol)) return false;
  if (d1.isParallelTo(d2, tol)) return false;
  const double cx = d1.y * d2.z - d1.z * d2.y;
  const double cy = d1.z * d2.x - d1.x * d2.z;
  const double cz = d1.x * d2.y - d1.y * d2.x;
  const double denom = cx * cx + cy * cy + cz * cz;
  if (std::fabs(denom) < 1e-100) return false;
  const KrGeVector3d w = line2.m_origin - line1.m_origin;
  const KrGeVector3d wx = w.crossProduct(d2);
  const double s = (wx.x * cx + wx.y * cy + wx.z * cz) / denom;
  point1 = line1.m_origin + d1 * s;
  // The second point is the projection of the first on line 2: with unit directions the second
  // denominator |d2|^2 is 1 and always larger than the cross term |d1 . d2| of non-parallel lines.
  const double denom2 = d2.dotProduct(d2);
  const double cross = std::fabs(d1.dotProduct(d2));
  if (denom2 <= cross || denom2 <= 1e-10) {
    point2 = line2.m_origin + d2 * d2.dotProduct(point1 - line2.m_origin);
    return true;
  }
  KRS_FAIL_IF(fabs(denom2) < 1e-10);
  if (std::fabs(denom2) < 1e-10) return false;
  point2 = line2.m_origin + d2 * (d2.dotProduct(point1 - line2.m_origin) / denom2);
  return true;
}

KrGePoint3d KrLinearEnt3dImpl::closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv,
                                              const KrGeTol& tol) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::closestPointTo(curve, ptOnC, tol)");
  const KrLinearEnt3dImpl* other = linearOf(curve2);
  if (!other) {
    KRS_NOT_IMPLEMENTED();
    return KrGePoint3d::kOrigin;
  }
  // Two infinite lines: the classical pair; lines parallel within tol have no distinguished pair
  // and answer this origin with its foot on the other line.
  if (m_unbounded && other->m_unbounded) {
    KrGePoint3d point1;
    if (closestPointsOfLines(*this, *other, point1, pntOnOtherCrv, tol)) return point1;
    pntOnOtherCrv = other->closestPointTo(m_origin, tol);
    return m_origin;
  }
  double s = 0.0;
  double t = 0.0;
  krClosestParams(span(), other->span(), s, t);
  pntOnOtherCrv = other->evalPoint(t);
  return evalPoint(s);
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
  const KrLinearSpan* pEntity = seenAlong(span(), m_origin, projectDirection, seen);
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
  if (!seenAlong(target, m_origin, projectDirection, targetSeen)) return closestPointTo(point, tol);
  double s = 0.0;
  double t = 0.0;
  krClosestParams(*pEntity, targetSeen, s, t);
  return evalPoint(s);
}

KrGePoint3d KrLinearEnt3dImpl::projClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection,
                                                  KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::projClosestPointTo(curve, dir, ptOnC, tol)");
  const KrLinearEnt3dImpl* other = linearOf(curve2);
  if (!other) {
    KRS_NOT_IMPLEMENTED();
    return KrGePoint3d::kOrigin;
  }
  KrLinearSpan seen1;
  KrLinearSpan seen2;
  const KrLinearSpan* pEntity1 = seenAlong(span(), m_origin, projectDirection, seen1);
  KRS_FAIL_IF(!pEntity1);
  if (!pEntity1) return closestPointTo(curve2, pntOnOtherCrv, tol);
  const KrLinearSpan* pEntity2 = seenAlong(other->span(), m_origin, projectDirection, seen2);
  KRS_FAIL_IF(!pEntity2);
  if (!pEntity2) return closestPointTo(curve2, pntOnOtherCrv, tol);
  double s = 0.0;
  double t = 0.0;
  krClosestParams(*pEntity1, *pEntity2, s, t);
  pntOnOtherCrv = other->evalPoint(t);
  return evalPoint(s);
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
  approxPnt.setParameter(krClosestParamToPoint(restricted(span(), nbhd), point));
}

void KrLinearEnt3dImpl::getLocalClosestPoints(const KrGeCurve3d& self, const KrGeCurve3d& curve2,
                                              KrGePointOnCurve3d& approxPnt1, KrGePointOnCurve3d& approxPnt2,
                                              const KrGeInterval* nbhd1, const KrGeInterval* nbhd2,
                                              const KrGeTol&) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::getLocalClosestPoints(crv, apxPtOnC, apxPtOnC, ptr, ptr, tol)");
  const KrLinearEnt3dImpl* other = linearOf(curve2);
  if (!other) {
    KRS_NOT_IMPLEMENTED();
    return;
  }
  double s = 0.0;
  double t = 0.0;
  krClosestParams(restricted(span(), nbhd1), restricted(other->span(), nbhd2), s, t);
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
