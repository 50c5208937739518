// Queries of elliptical arcs: nearest points, parameters, lengths, areas, bounding blocks,
// degenerate forms, pieces and the plane of the arc.
#include <cmath>

#include "KrGeBoundBlock3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGePlane.h"
#include "KrGePointEnt3d.h"
#include "KrGePointOnCurve3d.h"
#include "KrsDiagnostics.h"
#include "entity/ellipse/KrEllipticArc3dImpl.h"
#include "entity/ellipse/ellipse_closest.h"
#include "entity/ellipse/ellipse_length.h"
#include "entity/linear/KrLinearEnt3dImpl.h"

namespace {

constexpr double kPi = 3.141592653589793;

// t - sin t, without cancelling for small t (Taylor form below 1; its first omitted term is below
// 1e-17 relative there).
double minusSine(double t) {
  if (std::fabs(t) >= 1.0) return t - std::sin(t);
  const double t2 = t * t;
  return t * t2 * (1.0 / 6 + t2 * (-1.0 / 120 + t2 * (1.0 / 5040 + t2 * (-1.0 / 362880 + t2 * (1.0 / 39916800 +
         t2 * (-1.0 / 6227020800.0 + t2 * (1.0 / 1307674368000.0 + t2 * (-1.0 / 355687428096000.0))))))));
}

// The range of c cos t + s sin t (c, s the coefficients) over [lower, upper]: the values at the
// ends, widened to +-hypot(c, s) where the extreme angles atan2(s, c) (+ pi) fall inside.
void sinusoidRange(double c, double s, double lower, double upper, double& low, double& high) {
  const double atLower = c * std::cos(lower) + s * std::sin(lower);
  const double atUpper = c * std::cos(upper) + s * std::sin(upper);
  low = std::fmin(atLower, atUpper);
  high = std::fmax(atLower, atUpper);
  const double amplitude = std::hypot(c, s);
  if (amplitude == 0.0) return;
  const double peak = std::atan2(s, c);
  if (krArcHoldsAngle(lower, upper - lower, peak, 0.0)) high = amplitude;
  if (krArcHoldsAngle(lower, upper - lower, peak + kPi, 0.0)) low = -amplitude;
}

// The parameter range of `range` on the ellipse: an unbounded side opens the whole turn.
void boundsOf(const KrGeInterval& range, const KrEllipseFrame& frame, double& lower, double& upper) {
  lower = range.isBoundedBelow() ? range.lowerBound() : frame.startAng;
  upper = range.isBoundedAbove() ? range.upperBound() : lower + kKrEllipseTwoPi;
  if (!range.isBounded()) upper = lower + kKrEllipseTwoPi;
  if (upper - lower > kKrEllipseTwoPi) upper = lower + kKrEllipseTwoPi;
}

// A new arc of this ellipse over [lower, lower + sweep].
KrGeEllipArc3d* piece(const KrEllipseFrame& frame, double lower, double sweep) {
  KrEllipseFrame part = frame;
  part.startAng = lower;
  part.sweep = sweep;
  KrGeEllipArc3d* made = new KrGeEllipArc3d();
  if (made && KrEnt3dImpl::implOf(*made)) static_cast<KrEllipticArc3dImpl*>(KrEnt3dImpl::implOf(*made))->setFrame(part);
  return made;
}

}  // namespace

// Points off the plane have the nearest points of their foot; the full ellipse needs no angle.
KrGePoint3d KrEllipticArc3dImpl::closestPointTo(const KrGePoint3d& point, const KrGeTol&) const {
  double x = 0.0;
  double y = 0.0;
  double height = 0.0;
  m_frame.toLocal(point, x, y, height);
  if (m_frame.isFull()) {
    const KrEllipseFoot foot = krEllipseNearest(m_frame.majorRadius, m_frame.minorRadius, x, y);
    if (foot.everywhere) return startPoint();
    return m_frame.pointOfLocal(foot.x, foot.y);
  }
  double footX = 0.0;
  double footY = 0.0;
  krEllipseArcNearest(m_frame.majorRadius, m_frame.minorRadius, m_frame.startAng, m_frame.sweep, x, y, footX, footY);
  return m_frame.pointOfLocal(footX, footY);
}

bool KrEllipticArc3dImpl::isOn(const KrGePoint3d& point, const KrGeTol& tol) const {
  double x = 0.0;
  double y = 0.0;
  double height = 0.0;
  m_frame.toLocal(point, x, y, height);
  if (!(std::fabs(height) <= tol.equalPoint())) return false;
  return point.distanceTo(closestPointTo(point, tol)) <= tol.equalPoint();
}

// The ends answer their own parameters exactly when the point is within tol of them; otherwise
// the parameter of the whole ellipse's nearest point, placed next to the arc's range.
double KrEllipticArc3dImpl::paramOf(const KrGePoint3d& point, const KrGeTol& tol) const {
  if (point.distanceTo(startPoint()) <= tol.equalPoint()) return m_frame.startAng;
  if (point.distanceTo(endPoint()) <= tol.equalPoint()) return m_frame.endAng();
  double x = 0.0;
  double y = 0.0;
  double height = 0.0;
  m_frame.toLocal(point, x, y, height);
  const KrEllipseFoot foot = krEllipseNearest(m_frame.majorRadius, m_frame.minorRadius, x, y);
  if (foot.everywhere) return m_frame.startAng;
  return krArcParamOf(m_frame.startAng, m_frame.sweep, foot.angle());
}

bool KrEllipticArc3dImpl::getNormalPoint(const KrGeCurve3d& self, const KrGePoint3d& point,
                                         KrGePointOnCurve3d& pntOnCrv, const KrGeTol& tol) const {
  const KrGePoint3d nearest = closestPointTo(point, tol);
  pntOnCrv.setCurve(self);
  pntOnCrv.setParameter(paramOf(nearest, KrGeContext::gTol));
  return true;
}

void KrEllipticArc3dImpl::getLocalClosestPoints(const KrGeCurve3d& self, const KrGePoint3d& point,
                                                KrGePointOnCurve3d& approxPnt, const KrGeInterval* nbhd,
                                                const KrGeTol&) const {
  double lower = m_frame.startAng;
  double upper = m_frame.endAng();
  if (nbhd) {
    if (nbhd->isBoundedBelow() && nbhd->lowerBound() > lower) lower = nbhd->lowerBound();
    if (nbhd->isBoundedAbove() && nbhd->upperBound() < upper) upper = nbhd->upperBound();
    if (upper < lower) {
      lower = m_frame.startAng;
      upper = m_frame.endAng();
    }
  }
  double x = 0.0;
  double y = 0.0;
  double height = 0.0;
  m_frame.toLocal(point, x, y, height);
  double footX = 0.0;
  double footY = 0.0;
  approxPnt.setCurve(self);
  approxPnt.setParameter(
      krEllipseArcNearest(m_frame.majorRadius, m_frame.minorRadius, lower, upper - lower, x, y, footX, footY));
}

double KrEllipticArc3dImpl::length(double fromParam, double toParam, double) const {
  return std::fabs(krEllipseArcLength(m_frame.majorRadius, m_frame.minorRadius, fromParam, toParam));
}

double KrEllipticArc3dImpl::paramAtLength(double datumParam, double length, bool posParamDir, double) const {
  return krEllipseParamAtLength(m_frame.majorRadius, m_frame.minorRadius, datumParam, posParamDir ? length : -length);
}

// The segment between the arc and its chord is the sector (a b / 2) d less the triangle
// (a b / 2) sin d, d = endParam - startParam (the affine image of the circle's). At most one
// turn; non-finite parameters answer false.
bool KrEllipticArc3dImpl::area(double startParam, double endParam, double& value, const KrGeTol&) const {
  value = 0.0;
  const double d = std::fabs(endParam - startParam);
  if (!std::isfinite(d) || d > kKrEllipseTwoPi + 1e-12) return false;
  value = 0.5 * m_frame.majorRadius * m_frame.minorRadius * minusSine(d);
  return true;
}

// Each coordinate is center + cos t (a U_i) + sin t (b V_i), a sinusoid in t.
KrGeBoundBlock3d KrEllipticArc3dImpl::orthoBoundBlock(const KrGeInterval& range) const {
  double lower = 0.0;
  double upper = 0.0;
  boundsOf(range, m_frame, lower, upper);
  KrGePoint3d low;
  KrGePoint3d high;
  for (unsigned i = 0; i < 3; ++i) {
    double from = 0.0;
    double to = 0.0;
    sinusoidRange(m_frame.majorRadius * m_frame.majorAxis[i], m_frame.minorRadius * m_frame.minorAxis[i], lower,
                  upper, from, to);
    low[i] = m_frame.center[i] + from;
    high[i] = m_frame.center[i] + to;
  }
  return KrGeBoundBlock3d(low, high);
}

// The flat parallelepiped of the arc's extents along its own axes.
KrGeBoundBlock3d KrEllipticArc3dImpl::boundBlock(const KrGeInterval& range) const {
  double lower = 0.0;
  double upper = 0.0;
  boundsOf(range, m_frame, lower, upper);
  double x0 = 0.0;
  double x1 = 0.0;
  double y0 = 0.0;
  double y1 = 0.0;
  sinusoidRange(m_frame.majorRadius, 0.0, lower, upper, x0, x1);
  sinusoidRange(0.0, m_frame.minorRadius, lower, upper, y0, y1);
  return KrGeBoundBlock3d(m_frame.pointOfLocal(x0, y0), m_frame.majorAxis * (x1 - x0),
                          m_frame.minorAxis * (y1 - y0), KrGeVector3d());
}

bool KrEllipticArc3dImpl::isDegenerate(KrGe::EntityId& degenerateType, const KrGeTol& tol) const {
  degenerateType = type();
  if (!(m_frame.minorRadius <= tol.equalPoint())) return false;
  degenerateType = m_frame.majorRadius <= tol.equalPoint() ? KrGe::kPosition3d : KrGe::kLineSeg3d;
  return true;
}

// A flat arc is the segment its points cover on the major axis; a tiny one the centre.
bool KrEllipticArc3dImpl::isDegenerate(KrGeEntity3d*& degenerateEntity, const KrGeTol& tol) const {
  degenerateEntity = nullptr;
  KrGe::EntityId kind = type();
  if (!isDegenerate(kind, tol)) return false;
  if (kind == KrGe::kPosition3d) {
    degenerateEntity = new KrGePointEnt3d(m_frame.center);
    return true;
  }
  double x0 = 0.0;
  double x1 = 0.0;
  sinusoidRange(m_frame.majorRadius, 0.0, m_frame.startAng, m_frame.endAng(), x0, x1);
  degenerateEntity = new KrGeLineSeg3d(m_frame.pointOfLocal(x0, 0.0), m_frame.pointOfLocal(x1, 0.0));
  return true;
}

// Pieces keep the parametrisation. A parameter at an end (within 1e-12) leaves the piece on that
// side null and the other the whole arc; outside the range both are null.
void KrEllipticArc3dImpl::getSplitCurves(double param, KrGeCurve3d*& piece1, KrGeCurve3d*& piece2) const {
  piece1 = nullptr;
  piece2 = nullptr;
  constexpr double kSlack = 1e-12;
  const double lower = m_frame.startAng;
  const double upper = m_frame.endAng();
  if (!(param >= lower - kSlack && param <= upper + kSlack)) return;
  if (std::fabs(param - lower) <= kSlack) {
    piece2 = piece(m_frame, lower, m_frame.sweep);
    return;
  }
  if (std::fabs(param - upper) <= kSlack) {
    piece1 = piece(m_frame, lower, m_frame.sweep);
    return;
  }
  piece1 = piece(m_frame, lower, param - lower);
  piece2 = piece(m_frame, param, upper - param);
}

// An arc is its own single piece: without an interval (or with one covering it) the list gets
// this curve, flagged 0; a range within it gives a new arc over the common range, flagged 1.
bool KrEllipticArc3dImpl::explode(const KrGeCurve3d& self, KrsArray<void*>& explodedCurves,
                                  KrsArray<int>& newExplodedCurve, const KrGeInterval* intrvl) const {
  const double lower = m_frame.startAng;
  const double upper = m_frame.endAng();
  const double from = intrvl && intrvl->isBoundedBelow() ? std::fmax(lower, intrvl->lowerBound()) : lower;
  const double to = intrvl && intrvl->isBoundedAbove() ? std::fmin(upper, intrvl->upperBound()) : upper;
  if (!(from <= to)) return false;
  if (from == lower && to == upper) {
    explodedCurves.Add(const_cast<KrGeCurve3d*>(&self));
    newExplodedCurve.Add(0);
    return true;
  }
  explodedCurves.Add(piece(m_frame, from, to - from));
  newExplodedCurve.Add(1);
  return true;
}

// The offset of an ellipse is not an ellipse (nor any conic): not provided.
void KrEllipticArc3dImpl::getTrimmedOffset(double, const KrGeVector3d&, KrsArray<void*>&, KrGe::OffsetCrvExtType,
                                           const KrGeTol&) const {
  KRS_NOT_IMPLEMENTED();
}

bool KrEllipticArc3dImpl::isClosed(const KrGeTol& tol) const { return startPoint().isEqualTo(endPoint(), tol); }

bool KrEllipticArc3dImpl::isPlanar(KrGePlane& plane, const KrGeTol&) const {
  getPlane(plane);
  return true;
}

// A flat ellipse (minor radius within tol) lies on its major axis.
bool KrEllipticArc3dImpl::isLinear(KrGeLine3d& line, const KrGeTol& tol) const {
  if (!(m_frame.minorRadius <= tol.equalPoint())) return false;
  line.set(m_frame.center, m_frame.majorAxis);
  return true;
}

// A linear entity is coplanar when it lies in the ellipse's plane (a segment: both ends within
// tol; a line: its origin, and its direction perpendicular to the normal); another curve when it
// is planar in the same plane.
bool KrEllipticArc3dImpl::isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const {
  KrGePlane mine;
  getPlane(mine);
  const KrLinearEnt3dImpl* linear = KrLinearEnt3dImpl::linearOf(curve2);
  if (linear) {
    if (!linear->isOn(mine, tol)) return false;
  } else {
    KrGePlane other;
    if (!curve2.isPlanar(other, tol) || !mine.isCoplanarTo(other, tol)) return false;
  }
  plane = mine;
  return true;
}

bool KrEllipticArc3dImpl::isPeriodic(double& period) const {
  if (!m_frame.isFull()) return false;
  period = kKrEllipseTwoPi;
  return true;
}

bool KrEllipticArc3dImpl::isCircular(const KrGeTol& tol) const {
  return m_frame.majorRadius - m_frame.minorRadius <= tol.equalPoint();
}

bool KrEllipticArc3dImpl::isInside(const KrGePoint3d& point, const KrGeTol& tol) const {
  double x = 0.0;
  double y = 0.0;
  double height = 0.0;
  m_frame.toLocal(point, x, y, height);
  if (!(std::fabs(height) <= tol.equalPoint())) return false;
  const double a = m_frame.majorRadius;
  const double b = m_frame.minorRadius;
  if (b > 0.0 && (x / a) * (x / a) + (y / b) * (y / b) <= 1.0) return true;
  const KrEllipseFoot foot = krEllipseNearest(a, b, x, y);
  return std::hypot(foot.x - x, foot.y - y) <= tol.equalPoint();
}

void KrEllipticArc3dImpl::getPlane(KrGePlane& plane) const { plane.set(m_frame.center, m_frame.normal()); }
