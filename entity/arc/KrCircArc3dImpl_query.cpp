// Queries of arcs in closed form: closest points and parameters, tangents, the range, lengths
// and areas, and the shape tests.
#include <cmath>

#include "KrGeLine3d.h"
#include "KrGePlane.h"
#include "KrGePointEnt3d.h"
#include "KrGePointOnCurve3d.h"
#include "KrsDiagnostics.h"
#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/arc/arc_angles.h"
#include "entity/arc/arc_closest.h"
#include "entity/arc/arc_plane.h"
#include "entity/linear/KrLinearEnt3dImpl.h"

namespace {

// The unit tangent of the circle at angle t: the derivative direction -sin t X + cos t Y.
KrGeVector3d tangentAt(const KrArcFrame& arc, double t) {
  return arc.refVec * -std::sin(t) + arc.yAxis() * std::cos(t);
}

// phi - sin phi, the doubled area of a circular segment of angle phi on the unit circle. Below 1
// the difference would cancel: the Taylor series phi^3/3! - phi^5/5! + ... is used to phi^17,
// whose first omitted term is below 1e-16 relative there.
double segmentShape(double phi) {
  if (phi >= 1.0) return phi - std::sin(phi);
  const double x = phi * phi;
  double sum = 1.0 / 355687428096000.0;
  const double inverseFactorials[] = {1.0 / 1307674368000.0, 1.0 / 6227020800.0, 1.0 / 39916800.0,
                                      1.0 / 362880.0,        1.0 / 5040.0,       1.0 / 120.0,
                                      1.0 / 6.0};
  for (double term : inverseFactorials) sum = term - x * sum;
  return phi * x * sum;
}

// Whether every point of `arc` lies within tol of the plane through origin with unit normal.
bool liesIn(const KrArcFrame& arc, const KrGePoint3d& origin, const KrGeVector3d& normal, double tol) {
  return krArcPlaneCrossings(arc, origin, normal, tol).inPlane;
}

}  // namespace

KrGePoint3d KrCircArc3dImpl::nearest(const KrGePoint3d& point, const KrGeTol& tol, double* param) const {
  return krArcClosestPoint(m_arc, point, tol.equalPoint(), param);
}

KrGePoint3d KrCircArc3dImpl::closestPointTo(const KrGePoint3d& point, const KrGeTol& tol) const {
  return nearest(point, tol, nullptr);
}

bool KrCircArc3dImpl::isOn(const KrGePoint3d& point, const KrGeTol& tol) const {
  return nearest(point, tol, nullptr).distanceTo(point) <= tol.equalPoint();
}

double KrCircArc3dImpl::paramOf(const KrGePoint3d& point, const KrGeTol& tol) const {
  return krArcParamOf(m_arc, point, tol.equalPoint());
}

// Both circle points in the direction of the point's projection and opposite to it are feet of
// perpendiculars; the nearer one within the sweep is taken.
bool KrCircArc3dImpl::getNormalPoint(const KrGeCurve3d& self, const KrGePoint3d& point, KrGePointOnCurve3d& pntOnCrv,
                                     const KrGeTol& tol) const {
  const KrGeVector3d w = point - m_arc.center;
  const double u = w.dotProduct(m_arc.refVec);
  const double v = w.dotProduct(m_arc.yAxis());
  double param = m_arc.startAng;
  if (std::hypot(u, v) > tol.equalPoint()) {
    const double angleTol = krArcAngleTol(m_arc, tol.equalPoint());
    const double near = std::atan2(v, u);
    const double far = near + kKrPi;
    if (krArcContainsAngle(near, m_arc.startAng, m_arc.sweep, angleTol))
      param = krArcParamOfAngle(near, m_arc.startAng, m_arc.sweep, angleTol);
    else if (krArcContainsAngle(far, m_arc.startAng, m_arc.sweep, angleTol))
      param = krArcParamOfAngle(far, m_arc.startAng, m_arc.sweep, angleTol);
    else
      return false;
  }
  pntOnCrv.setCurve(self);
  pntOnCrv.setParameter(param);
  return true;
}

bool KrCircArc3dImpl::tangent(const KrGePoint3d& point, KrGeLine3d& line, const KrGeTol& tol,
                              KrGe::ErrorCondition* status) const {
  const double e = tol.equalPoint();
  double param = m_arc.startAng;
  const KrGePoint3d onArc = nearest(point, tol, &param);
  KrGe::ErrorCondition result = KrGe::kOk;
  if (!(m_arc.radius > e)) {
    result = KrGe::kDegenerateGeometry;
  } else if (!(onArc.distanceTo(point) <= e)) {
    const KrGeVector3d w = point - m_arc.center;
    const double height = w.dotProduct(m_arc.normal);
    if (!(std::fabs(height) <= e))
      result = KrGe::kNonCoplanarGeometry;
    else if ((w - m_arc.normal * height).length() < m_arc.radius)
      result = KrGe::kArg1InsideThis;
    else
      result = KrGe::kSingularPoint;
  }
  if (status) *status = result;
  if (result != KrGe::kOk) return false;
  line.set(onArc, tangentAt(m_arc, param));
  return true;
}

bool KrCircArc3dImpl::isInside(const KrGePoint3d& point, const KrGeTol& tol) const {
  const double e = tol.equalPoint();
  const KrGeVector3d w = point - m_arc.center;
  const double height = w.dotProduct(m_arc.normal);
  return std::fabs(height) <= e && (w - m_arc.normal * height).length() <= m_arc.radius + e;
}

// With the normal turned over, point(-t) of the new frame is point(t) of the old one.
KrGeCurve3dImpl& KrCircArc3dImpl::reverseParam() {
  const double end = m_arc.endAng();
  m_arc.normal.negate();
  m_arc.startAng = -end;
  return *this;
}

bool KrCircArc3dImpl::setInterval(const KrGeInterval& range) {
  if (!range.isBounded()) return false;
  const double lower = range.lowerBound();
  const double upper = range.upperBound();
  const double eps = krArcAngleTol(m_arc, KrGeContext::gTol.equalPoint());
  const double span = upper - lower;
  if (!std::isfinite(lower) || !(span >= -eps && span <= kKrTwoPi + eps)) return false;
  setAngles(lower, upper);
  return true;
}

KrGeCurve3dImpl& KrCircArc3dImpl::setInterval() {
  m_arc.sweep = kKrTwoPi;
  return *this;
}

double KrCircArc3dImpl::length(double fromParam, double toParam, double) const {
  return std::fabs(toParam - fromParam) * m_arc.radius;
}

double KrCircArc3dImpl::paramAtLength(double datumParam, double length, bool posParamDir, double) const {
  if (!(m_arc.radius > 0.0)) return datumParam;
  const double turn = length / m_arc.radius;
  return posParamDir ? datumParam + turn : datumParam - turn;
}

bool KrCircArc3dImpl::area(double startParam, double endParam, double& value, const KrGeTol&) const {
  const double span = std::fabs(endParam - startParam);
  value = 0.0;
  if (!std::isfinite(span)) return false;
  value = 0.5 * m_arc.radius * m_arc.radius * segmentShape(span < kKrTwoPi ? span : kKrTwoPi);
  return true;
}

bool KrCircArc3dImpl::isClosed(const KrGeTol& tol) const {
  return m_arc.sweep > kKrPi && startPoint().isEqualTo(endPoint(), tol);
}

bool KrCircArc3dImpl::isPlanar(KrGePlane& plane, const KrGeTol&) const {
  getPlane(plane);
  return true;
}

// The sagitta r (1 - cos(sweep / 2)) = 2 r sin^2(sweep / 4) is the arc's greatest distance from
// the line through its ends; the half-angle form keeps its digits for flat arcs.
bool KrCircArc3dImpl::isLinear(KrGeLine3d& line, const KrGeTol& tol) const {
  const double quarter = std::sin(0.25 * m_arc.sweep);
  const double height = 2.0 * m_arc.radius * quarter * quarter;
  if (!std::isfinite(height)) {
    KRS_WARN_AT("GetHeightArc fail", "KrCircArc3dImpl", __LINE__);
    return false;
  }
  if (!(height <= tol.equalPoint())) return false;
  line.set(startPoint(), tangentAt(m_arc, m_arc.startAng + 0.5 * m_arc.sweep));
  return true;
}

bool KrCircArc3dImpl::isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const {
  KrGePlane own;
  getPlane(own);
  if (const KrLinearEnt3dImpl* line = KrLinearEnt3dImpl::linearOf(curve2)) {
    if (!line->isOn(own, tol)) return false;
    plane = own;
    return true;
  }
  if (curve2.type() == KrGe::kCircArc3d) {
    const KrArcFrame& other = of(static_cast<const KrGeCircArc3d&>(curve2)).frame();
    if (liesIn(other, m_arc.center, m_arc.normal, tol.equalPoint())) {
      plane = own;
      return true;
    }
    if (!liesIn(m_arc, other.center, other.normal, tol.equalPoint())) return false;
    plane.set(other.center, other.normal);
    return true;
  }
  KrGePlane theirs;
  if (!curve2.isPlanar(theirs, tol) || !liesIn(m_arc, theirs.pointOnPlane(), theirs.normal(), tol.equalPoint()))
    return false;
  plane = theirs;
  return true;
}

bool KrCircArc3dImpl::isPeriodic(double& period) const {
  if (m_arc.sweep < kKrTwoPi) return false;
  period = kKrTwoPi;
  return true;
}

bool KrCircArc3dImpl::isDegenerate(KrGe::EntityId& degenerateType, const KrGeTol& tol) const {
  const double e = tol.equalPoint();
  const bool degenerate = m_arc.radius <= e || m_arc.radius * m_arc.sweep <= e;
  degenerateType = degenerate ? KrGe::kPosition3d : type();
  return degenerate;
}

bool KrCircArc3dImpl::isDegenerate(KrGeEntity3d*& degenerateEntity, const KrGeTol& tol) const {
  KrGe::EntityId kind;
  degenerateEntity = nullptr;
  if (!isDegenerate(kind, tol)) return false;
  const bool point = m_arc.radius <= tol.equalPoint();
  degenerateEntity = new KrGePointEnt3d(point ? m_arc.center : m_arc.pointAt(m_arc.startAng + 0.5 * m_arc.sweep));
  return true;
}
