#include "entity/plane/KrPlanarEntImpl.h"

#include <cmath>

#include "KrGePlane.h"
#include "KrsDiagnostics.h"
#include "entity/core/entity_limits.h"
#include "entity/linear/KrLinearEnt3dImpl.h"
#include "entity/plane/plane_math.h"

namespace {

bool isFiniteVector(const KrGeVector3d& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

// An axis that cannot span the plane: of zero length (gTol) or with a non-finite component.
bool isDegenerateAxis(const KrGeVector3d& axis) {
  return !isFiniteVector(axis) || axis.isZeroLength(KrGeContext::gTol);
}

constexpr double kMirrorDeterminant = -1e-10;

}  // namespace

KrPlanarEntImpl::KrPlanarEntImpl() { set(KrGePoint3d::kOrigin, KrGeVector3d::kZAxis); }
KrPlanarEntImpl::KrPlanarEntImpl(const KrGePoint3d& origin, const KrGeVector3d& normal) { set(origin, normal); }
KrPlanarEntImpl::KrPlanarEntImpl(const KrGePoint3d& pntU, const KrGePoint3d& org, const KrGePoint3d& pntV) {
  set(pntU, org, pntV);
}
KrPlanarEntImpl::KrPlanarEntImpl(const KrGePoint3d& origin, const KrGeVector3d& uAxis, const KrGeVector3d& vAxis) {
  set(origin, uAxis, vAxis);
}
KrPlanarEntImpl::KrPlanarEntImpl(double a, double b, double c, double d) { set(a, b, c, d); }

KrGeEntity3d* KrPlanarEntImpl::copy() const { return copyInto(new KrGePlane(), *this); }

void KrPlanarEntImpl::assignData(const KrPlanarEntImpl& source) {
  m_origin = source.m_origin;
  m_normal = source.m_normal;
  m_reversed = source.m_reversed;
  m_uAxis = source.m_uAxis;
  m_vAxis = source.m_vAxis;
  m_intervalU = source.m_intervalU;
  m_intervalV = source.m_intervalV;
}

bool KrPlanarEntImpl::equalData(const KrPlanarEntImpl& other, const KrGeTol& tol) const {
  return m_reversed == other.m_reversed && m_origin.isEqualTo(other.m_origin, tol) &&
         m_normal.isEqualTo(other.m_normal, tol) && m_uAxis.isEqualTo(other.m_uAxis, tol) &&
         m_vAxis.isEqualTo(other.m_vAxis, tol) && m_intervalU.isEqualAtLower(other.m_intervalU) &&
         m_intervalU.isEqualAtUpper(other.m_intervalU) && m_intervalV.isEqualAtLower(other.m_intervalV) &&
         m_intervalV.isEqualAtUpper(other.m_intervalV);
}

// Origin as a point, axes as vectors; a mirror (determinant below -1e-10) flips the handedness of
// the frame, which the reversed flag records so that the normal keeps pointing to the mirrored
// side. A map that collapses an axis is repaired with a perpendicular of the surviving one.
KrEnt3dImpl& KrPlanarEntImpl::transformBy(const KrGeMatrix3d& matrix) {
  m_origin = matrix * m_origin;
  m_uAxis = matrix * m_uAxis;
  m_vAxis = matrix * m_vAxis;
  if (matrix.det() < kMirrorDeterminant) m_reversed = !m_reversed;
  m_normal = m_uAxis.crossProduct(m_vAxis).normal(KrGeContext::gTol);
  const bool uDegenerate = isDegenerateAxis(m_uAxis);
  const bool vDegenerate = isDegenerateAxis(m_vAxis);
  if (!uDegenerate && vDegenerate) {
    KRS_WARN("KrPlanarEntImpl::transformBy, result - degenerated V, use pU");
    m_vAxis = m_uAxis.perpVector();
    m_normal = m_uAxis.crossProduct(m_vAxis).normal(KrGeContext::gTol);
  } else if (uDegenerate && !vDegenerate) {
    KRS_WARN("KrPlanarEntImpl::transformBy, result - degenerated U, use pV");
    m_uAxis = m_vAxis.perpVector();
    m_normal = m_uAxis.crossProduct(m_vAxis).normal(KrGeContext::gTol);
  } else if (uDegenerate && vDegenerate) {
    KRS_WARN("KrPlanarEntImpl::transformBy, result - degenerated U, V, use X, Y");
    m_uAxis = KrGeVector3d::kXAxis;
    m_vAxis = KrGeVector3d::kYAxis;
    m_normal = KrGeVector3d::kZAxis;
  }
  if (m_reversed) m_normal.negate();
  return *this;
}

bool KrPlanarEntImpl::isOn(const KrGePoint3d& point, const KrGeTol& tol) const {
  if (!(std::fabs(heightOf(point)) <= tol.equalPoint())) return false;
  return !isBounded() || isInside(paramOf(point, tol), tol);
}

KrGePoint2d KrPlanarEntImpl::paramOf(const KrGePoint3d& point, const KrGeTol&) const {
  return krplane::paramsInFrame(point - m_origin, m_uAxis, m_vAxis);
}

KrGePoint3d KrPlanarEntImpl::closestPointTo(const KrGePoint3d& point, const KrGeTol&) const {
  if (!isBounded()) return footOf(point);
  KRS_AUTOTEST("bounded KrPlanarEntImpl::closestPointTo point");
  return clampToEnvelope(footOf(point));
}

double KrPlanarEntImpl::distanceTo(const KrGePoint3d& point, const KrGeTol& tol) const {
  if (!isBounded()) return std::fabs(heightOf(point));
  return KrSurfaceImpl::distanceTo(point, tol);
}

KrSurfaceImpl& KrPlanarEntImpl::reverseNormal() {
  m_reversed = !m_reversed;
  m_normal.negate();
  return *this;
}

void KrPlanarEntImpl::getEnvelope(KrGeInterval& intrvlU, KrGeInterval& intrvlV) const {
  intrvlU = m_intervalU;
  intrvlV = m_intervalV;
}

KrGePoint3d KrPlanarEntImpl::evalPoint(const KrGePoint2d& param, int derivOrd, KrsArray<KrGeVector3d>& derivatives,
                                       KrGeVector3d& normal) const {
  using krge::kMaxDerivOrder;
  KRS_FAIL_IF(derivOrd<0);
  KRS_FAIL_IF(derivOrd>kMaxDerivOrder);
  const int count = derivOrd <= kMaxDerivOrder ? derivativeCount(derivOrd) : 0;
  derivatives.SetSize(count);
  for (int i = 0; i < count; ++i) derivatives[i] = KrGeVector3d();
  if (count > 0) {
    derivatives[0] = m_uAxis;
    derivatives[1] = m_vAxis;
  }
  normal = m_normal;
  return evalPoint(param);
}

KrGePoint3d KrPlanarEntImpl::clampToEnvelope(const KrGePoint3d& pointInPlane) const {
  const KrGePoint2d param = paramOf(pointInPlane, KrGeContext::gTol);
  if (isInside(param, KrGeContext::gTol)) return pointInPlane;
  // Outside a convex region the nearest point lies on its boundary: try every bounded edge (a
  // segment, ray or line of the other parameter) and keep the nearest.
  KrGePoint3d best = pointInPlane;
  double bestDistance = -1.0;
  const auto tryEdge = [&](const KrGePoint3d& edgeOrigin, const KrGeVector3d& edgeDirection,
                           const KrGeInterval& edgeRange) {
    const double lengthSqrd = edgeDirection.lengthSqrd();
    double t = lengthSqrd > 0.0 ? edgeDirection.dotProduct(pointInPlane - edgeOrigin) / lengthSqrd : 0.0;
    if (edgeRange.isBoundedBelow() && t < edgeRange.lowerBound()) t = edgeRange.lowerBound();
    if (edgeRange.isBoundedAbove() && t > edgeRange.upperBound()) t = edgeRange.upperBound();
    const KrGePoint3d candidate = edgeOrigin + edgeDirection * t;
    const double distance = candidate.distanceTo(pointInPlane);
    if (bestDistance < 0.0 || distance < bestDistance) {
      bestDistance = distance;
      best = candidate;
    }
  };
  if (m_intervalU.isBoundedBelow()) tryEdge(m_origin + m_uAxis * m_intervalU.lowerBound(), m_vAxis, m_intervalV);
  if (m_intervalU.isBoundedAbove()) tryEdge(m_origin + m_uAxis * m_intervalU.upperBound(), m_vAxis, m_intervalV);
  if (m_intervalV.isBoundedBelow()) tryEdge(m_origin + m_vAxis * m_intervalV.lowerBound(), m_uAxis, m_intervalU);
  if (m_intervalV.isBoundedAbove()) tryEdge(m_origin + m_vAxis * m_intervalV.upperBound(), m_uAxis, m_intervalU);
  return best;
}

KrGePoint3d KrPlanarEntImpl::closestPointToLinearEnt(const KrGeLinearEnt3d& line, KrGePoint3d& pointOnLine,
                                                     const KrGeTol& tol) const {
  if (type() != KrGe::kPlane) {
    KRS_CHECK_TEXT_AT(false, KRS_E_UNEXPECTED_TEXT, __FILE__, __LINE__);
    return m_origin;
  }
  const KrLinearEnt3dImpl& linear = KrLinearEnt3dImpl::of(line);
  if (linear.isUnbounded()) {
    double t = 0.0;
    const bool parallel = linear.rawDirection().isPerpendicularTo(m_normal, tol) ||
                          !lineParameter(linear.origin(), linear.rawDirection(), tol, t);
    pointOnLine = parallel ? linear.origin() : linear.origin() + linear.rawDirection() * t;
    return footOf(pointOnLine);
  }
  // A segment crosses the plane when its ends lie on opposite sides (or on it); the crossing is
  // interpolated from the two heights, which is exact at either end.
  const KrGePoint3d start = linear.startPoint();
  const KrGePoint3d end = linear.endPoint();
  const double startHeight = heightOf(start);
  const double endHeight = heightOf(end);
  if ((startHeight <= 0.0 && endHeight >= 0.0) || (startHeight >= 0.0 && endHeight <= 0.0)) {
    pointOnLine = startHeight == endHeight ? start : start + (end - start) * (startHeight / (startHeight - endHeight));
  } else {
    pointOnLine = std::fabs(startHeight) <= std::fabs(endHeight) ? start : end;
  }
  return footOf(pointOnLine);
}

KrGePoint3d KrPlanarEntImpl::closestPointToPlanarEnt(const KrGePlanarEnt& otherPln, KrGePoint3d& pointOnOtherPln,
                                                     const KrGeTol& tol) const {
  const KrPlanarEntImpl& other = of(otherPln);
  if (type() != KrGe::kPlane || other.type() != KrGe::kPlane) {
    KRS_NOT_IMPLEMENTED();
    return m_origin;
  }
  KrGePoint3d linePoint;
  KrGeVector3d lineDirection;
  if (krplane::intersectPlanes(m_origin, m_normal, other.m_origin, other.m_normal, tol, linePoint,
                               lineDirection)) {
    const KrGePoint3d nearest = linePoint + lineDirection * lineDirection.dotProduct(m_origin - linePoint);
    pointOnOtherPln = nearest;
    return nearest;
  }
  pointOnOtherPln = other.footOf(m_origin);
  return m_origin;
}

bool KrPlanarEntImpl::isParallelTo(const KrGePlanarEnt& otherPlnEnt, const KrGeTol& tol, bool coplanar) const {
  const KrPlanarEntImpl& other = of(otherPlnEnt);
  if (!m_normal.isParallelTo(other.m_normal, tol)) return false;
  if (!coplanar) return true;
  return std::fabs(heightOf(other.m_origin)) <= tol.equalPoint() &&
         std::fabs(other.heightOf(m_origin)) <= tol.equalPoint();
}

bool KrPlanarEntImpl::isParallelTo(const KrGeLinearEnt3d& linEnt, const KrGeTol& tol) const {
  return KrLinearEnt3dImpl::of(linEnt).rawDirection().isPerpendicularTo(m_normal, tol);
}

bool KrPlanarEntImpl::isPerpendicularTo(const KrGePlanarEnt& otherPlnEnt, const KrGeTol& tol) const {
  return m_normal.isPerpendicularTo(of(otherPlnEnt).m_normal, tol);
}

bool KrPlanarEntImpl::isPerpendicularTo(const KrGeLinearEnt3d& linEnt, const KrGeTol& tol) const {
  return KrLinearEnt3dImpl::of(linEnt).rawDirection().isParallelTo(m_normal, tol);
}

void KrPlanarEntImpl::get(KrGePoint3d& pntU, KrGePoint3d& org, KrGePoint3d& pntV) const {
  pntU = m_origin + m_uAxis;
  org = m_origin;
  pntV = m_origin + m_vAxis;
}

void KrPlanarEntImpl::get(KrGePoint3d& origin, KrGeVector3d& uAxis, KrGeVector3d& vAxis) const {
  origin = m_origin;
  uAxis = m_uAxis;
  vAxis = m_vAxis;
}

void KrPlanarEntImpl::getCoefficients(double& a, double& b, double& c, double& d) const {
  a = m_normal.x;
  b = m_normal.y;
  c = m_normal.z;
  d = -m_normal.dotProduct(m_origin.asVector());
}

void KrPlanarEntImpl::getCoordSystem(KrGePoint3d& origin, KrGeVector3d& axis1, KrGeVector3d& axis2) const {
  origin = m_origin;
  krplane::orthonormalAxes(m_uAxis, m_vAxis, m_normal, axis1, axis2);
}

double KrPlanarEntImpl::signedDistanceTo(const KrGePoint3d& point) const {
  if (type() != KrGe::kPlane) KRS_NOT_IMPLEMENTED();
  return heightOf(point);
}

bool KrPlanarEntImpl::lineParameter(const KrGePoint3d& origin, const KrGeVector3d& direction, const KrGeTol& tol,
                                    double& t) const {
  const double denominator = direction.dotProduct(m_normal);
  if (!(std::fabs(denominator) > tol.equalVector())) return false;
  // -(normal . origin + d) / denominator, with d = -(normal . planeOrigin) folded into one
  // difference first: far from the world origin the two dot products would cancel.
  t = -heightOf(origin) / denominator;
  return true;
}

bool KrPlanarEntImpl::intersectLine(const KrGePoint3d& lineOrigin, const KrGeVector3d& lineDirection,
                                    KrGePoint3d& intPnt, bool checkBounds, const KrGeTol& tol) const {
  double t = 0.0;
  if (!lineParameter(lineOrigin, lineDirection, tol, t)) return false;
  intPnt = lineOrigin + lineDirection * t;
  return !checkBounds || type() == KrGe::kPlane || isOn(intPnt, tol);
}

bool KrPlanarEntImpl::intersectWith(const KrGeLinearEnt3d& linEnt, KrGePoint3d& intPnt, bool checkBounds,
                                    const KrGeTol& tol) const {
  const KrLinearEnt3dImpl& linear = KrLinearEnt3dImpl::of(linEnt);
  if (!intersectLine(linear.origin(), linear.rawDirection(), intPnt, checkBounds, tol)) return false;
  return !checkBounds || linear.isUnbounded() || linEnt.isOn(intPnt, tol);
}

bool KrPlanarEntImpl::intersectWith(const KrGePlanarEnt& otherPln, KrGeLine3d& resultLine, const KrGeTol& tol) const {
  const KrPlanarEntImpl& other = of(otherPln);
  if (type() != KrGe::kPlane || other.type() != KrGe::kPlane) {
    KRS_AUTOTEST("KrPlanarEntImpl::intersectWith(plane, line, tol)");
    KRS_NOT_IMPLEMENTED();
    return false;
  }
  KrGePoint3d linePoint;
  KrGeVector3d lineDirection;
  if (!krplane::intersectPlanes(m_origin, m_normal, other.m_origin, other.m_normal, tol, linePoint,
                                lineDirection))
    return false;
  resultLine.set(linePoint, lineDirection);
  return true;
}

KrPlanarEntImpl& KrPlanarEntImpl::set(const KrGePoint3d& origin, const KrGeVector3d& uAxis,
                                      const KrGeVector3d& vAxis) {
  m_origin = origin;
  m_uAxis = uAxis;
  m_vAxis = vAxis;
  if (!isFiniteVector(uAxis) || !isFiniteVector(vAxis) || uAxis.isParallelTo(vAxis, KrGeContext::gTol)) {
    const bool uDegenerate = isDegenerateAxis(uAxis);
    const bool vDegenerate = isDegenerateAxis(vAxis);
    if (!uDegenerate && vDegenerate) {
      KRS_WARN("plane::set(or, uAxis, vAxis) - degenerated V axis, use U, pU, U x pU");
      m_vAxis = m_uAxis.perpVector();
    } else if (uDegenerate && !vDegenerate) {
      KRS_WARN("plane::set(or, uAxis, vAxis) - degenerated U axis, use V, pV, pV x V");
      m_uAxis = m_vAxis.perpVector();
    } else if (uDegenerate && vDegenerate) {
      KRS_WARN("plane::set(or, uAxis, vAxis) - degenerated axes, use X, Y, Z");
      m_uAxis = KrGeVector3d::kXAxis;
      m_vAxis = KrGeVector3d::kYAxis;
    }
  }
  m_normal = m_uAxis.crossProduct(m_vAxis);
  if (m_reversed) m_normal.negate();
  m_normal.normalize(KrGeContext::gTol);
  return *this;
}

KrPlanarEntImpl& KrPlanarEntImpl::set(double a, double b, double c, double d) {
  const double k = d / (a * a + b * b + c * c);
  return set(KrGePoint3d(-k * a, -k * b, -k * c), KrGeVector3d(a, b, c));
}

KrPlanarEntImpl& KrPlanarEntImpl::set(const KrGePoint3d& pntU, const KrGePoint3d& org, const KrGePoint3d& pntV) {
  return set(org, pntU - org, pntV - org);
}

KrGeVector3d KrPlanarEntImpl::unitNormalOrZ(const KrGeVector3d& normal) {
  const KrGeVector3d unit = normal.normal(KrGeContext::gTol);
  if (isFiniteVector(unit) && !unit.isZeroLength(KrGeContext::gTol)) return unit;
  KRS_WARN("KrPlanarEntImpl::set - degenerated normal, OZ used");
  return KrGeVector3d::kZAxis;
}

KrPlanarEntImpl& KrPlanarEntImpl::set(const KrGePoint3d& origin, const KrGeVector3d& normal) {
  m_origin = origin;
  m_normal = unitNormalOrZ(normal);
  m_uAxis = m_normal.perpVector();
  m_vAxis = m_reversed ? m_uAxis.crossProduct(m_normal) : m_normal.crossProduct(m_uAxis);
  return *this;
}
