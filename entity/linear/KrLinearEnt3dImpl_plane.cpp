// Lines and segments against planes: incidence, direction relations, planes built from a line,
// projection onto a plane and the offset of a segment within a plane.
#include <cmath>

#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGePlane.h"
#include "KrGePointEnt3d.h"
#include "KrsDiagnostics.h"
#include "entity/linear/KrLinearEnt3dImpl.h"

bool KrLinearEnt3dImpl::intersectWith(const KrGeLinearEnt3d& self, const KrGePlanarEnt& plane, KrGePoint3d& intPnt,
                                      const KrGeTol& tol) const {
  return plane.intersectWith(self, intPnt, tol);
}

bool KrLinearEnt3dImpl::isOn(const KrGePlane& plane, const KrGeTol& tol) const {
  const double e = tol.equalPoint();
  if (!m_unbounded)
    return std::fabs(plane.signedDistanceTo(startPoint())) <= e && std::fabs(plane.signedDistanceTo(endPoint())) <= e;
  if (!(std::fabs(plane.signedDistanceTo(m_origin)) <= e)) return false;
  return directionIsZero() || m_direction.isPerpendicularTo(plane.normal(), tol);
}

bool KrLinearEnt3dImpl::isParallelTo(const KrGePlanarEnt& plane, const KrGeTol& tol) const {
  return m_direction.isPerpendicularTo(plane.normal(), tol);
}

bool KrLinearEnt3dImpl::isPerpendicularTo(const KrGePlanarEnt& plane, const KrGeTol& tol) const {
  return m_direction.isParallelTo(plane.normal(), tol);
}

void KrLinearEnt3dImpl::getPerpPlane(const KrGePoint3d& point, KrGePlane& plane) const { plane.set(point, m_direction); }

void KrLinearEnt3dImpl::getBisector(KrGePlane& plane) const { plane.set(midPoint(), direction()); }

bool KrLinearEnt3dImpl::isPlanar(KrGePlane& plane, const KrGeTol&) const {
  if (directionIsZero())
    plane.set(m_origin, KrGeVector3d::kZAxis);
  else
    plane.set(m_origin, m_direction.normal(KrGeContext::gTol).perpVector());
  return true;
}

// Two linear entities are coplanar when their lines meet or are parallel. The plane holds this
// line and, when they are parallel but apart, the other's origin; colinear (or point-like)
// pairs take the plane of isPlanar. Another curve kind is coplanar when it is planar and this
// entity lies in its plane.
bool KrLinearEnt3dImpl::isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const {
  const KrLinearEnt3dImpl* other = linearOf(curve2);
  if (!other) {
    KrGePlane curvePlane;
    if (!curve2.isPlanar(curvePlane, tol) || !isOn(curvePlane, tol)) return false;
    plane = curvePlane;
    return true;
  }
  const bool zero1 = m_direction.isZeroLength(tol);
  const bool zero2 = other->m_direction.isZeroLength(tol);
  if (zero1 && zero2) return isPlanar(plane, tol);
  const KrLinearEnt3dImpl& axis = zero1 ? *other : *this;
  const KrGePoint3d apart = zero1 ? m_origin : other->m_origin;
  const KrGeVector3d d1 = axis.m_direction.normal(KrGeContext::gTol);
  if (zero1 || zero2 || d1.isParallelTo(other->m_direction, tol)) {
    const KrGeVector3d toApart = apart - axis.m_origin;
    const KrGeVector3d normal = d1.crossProduct(toApart);
    if (normal.length() <= tol.equalPoint()) return axis.isPlanar(plane, tol);
    plane.set(axis.m_origin, normal);
    return true;
  }
  const KrGeVector3d normal = d1.crossProduct(other->m_direction.normal(KrGeContext::gTol)).normal(KrGeContext::gTol);
  const double gap = std::fabs((other->m_origin - m_origin).dotProduct(normal));
  if (!(gap <= tol.equalPoint())) return false;
  plane.set(m_origin, normal);
  return true;
}

// Parallel projection is affine, so origin + t * direction maps to origin' + t * direction' and
// the interval carries over unchanged. A direction within the plane (|cos| <= equalVector)
// projects nowhere; an entity that collapses (seen end-on) becomes a point entity.
KrGeEntity3d* KrLinearEnt3dImpl::project(const KrGePlane& projectionPlane, const KrGeVector3d& projectDirection,
                                         const KrGeTol& tol) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::project");
  const KrGeVector3d normal = projectionPlane.normal();
  const KrGeVector3d along = projectDirection.normal(KrGeContext::gTol);
  const double cosine = along.dotProduct(normal);
  if (along.isZeroLength(tol) || !(std::fabs(cosine) > tol.equalVector())) return nullptr;
  const double height = (m_origin - projectionPlane.pointOnPlane()).dotProduct(normal);
  const KrGePoint3d origin = m_origin - along * (height / cosine);
  const KrGeVector3d direction = m_direction - along * (m_direction.dotProduct(normal) / cosine);
  const KrLinearEnt3dImpl image(origin, direction, m_unbounded);
  const bool collapsed = m_unbounded ? direction.isZeroLength(tol)
                                     : image.evalPoint(m_interval.lowerBound())
                                           .isEqualTo(image.evalPoint(m_interval.upperBound()), tol);
  if (collapsed) {
    const KrGePoint3d at = m_unbounded ? origin : image.evalPoint((m_interval.lowerBound() + m_interval.upperBound()) * 0.5);
    return new KrGePointEnt3d(at);
  }
  return makeLike(origin, direction, m_interval);
}

// The segment moved by `distance` along direction x planeNormal (to the right of the segment
// seen from the tip of the normal; negative distances move it left). A single segment has no
// corners, so fillet and chamfer extensions have nothing to close.
void KrLinearEnt3dImpl::getTrimmedOffset(double distance, const KrGeVector3d& planeNormal,
                                         KrsArray<void*>& offsetCurveList, KrGe::OffsetCrvExtType extensionType,
                                         const KrGeTol& tol) const {
  if (extensionType == KrGe::kFillet || extensionType == KrGe::kChamfer)
    KRS_AUTOTEST("KrLinearEnt3dImpl::getTrimmedOffset - fillet/chamfer");
  if (m_unbounded) {
    KRS_NOT_IMPLEMENTED();
    return;
  }
  const bool knownExtension = extensionType == KrGe::kFillet || extensionType == KrGe::kChamfer ||
                              extensionType == KrGe::kExtend;
  const bool valid = knownExtension && std::isfinite(distance) && !planeNormal.isZeroLength(tol) &&
                     !m_direction.isZeroLength(tol) && m_direction.isPerpendicularTo(planeNormal, tol);
  KRS_CHECK_TEXT_AT(valid, KRS_E_INVALIDARG_TEXT, __FILE__, __LINE__);
  if (!valid) return;
  const KrGeVector3d side = m_direction.crossProduct(planeNormal).normal(KrGeContext::gTol);
  offsetCurveList.Add(makeLike(m_origin + side * distance, m_direction, m_interval));
}

bool KrLinearEnt3dImpl::isLinear(KrGeLine3d& line, const KrGeTol&) const {
  line.set(m_origin, m_direction);
  return true;
}

void KrLinearEnt3dImpl::getLine(KrGeLine3d& line) const { line.set(m_origin, m_direction); }
