// The ellipse's operations with other curves, planes and directions: closest pairs through the
// relation layer, intersections with lines and planes on the ellipse maths directly, views along
// a direction and projection.
#include <cmath>
#include <initializer_list>

#include "KrGeLinearEnt3d.h"
#include "KrGePlane.h"
#include "KrGePointOnCurve3d.h"
#include "KrsDiagnostics.h"
#include "entity/ellipse/KrEllipticArc3dImpl.h"
#include "entity/ellipse/ellipse_affine.h"
#include "entity/ellipse/ellipse_closest.h"
#include "entity/ellipse/ellipse_intersect.h"
#include "entity/ellipse/ellipse_project.h"
#include "entity/linear/KrLinearEnt3dImpl.h"
#include "entity/relation/KrCurveRelation.h"

namespace {

constexpr double kPi = 3.141592653589793;

bool firstTwo(const KrEllipseHit* hits, int count, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2) {
  numInt = count < 2 ? count : 2;
  if (numInt > 0) p1 = hits[0].point;
  if (numInt > 1) p2 = hits[1].point;
  return numInt > 0;
}

// A unit direction, or false for one of zero length (gTol) or not finite.
bool unitOf(const KrGeVector3d& direction, KrGeVector3d& unit) {
  const double length = direction.length();
  if (!std::isfinite(length) || direction.isZeroLength(KrGeContext::gTol)) return false;
  unit = direction / length;
  return true;
}

}  // namespace

KrGePoint3d KrEllipticArc3dImpl::closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv,
                                                const KrGeTol& tol) const {
  KrGePoint3d onThis = KrGePoint3d::kOrigin;
  krrelation::closestPair(*this, *curveImplOf(curve2), onThis, pntOnOtherCrv, tol);
  return onThis;
}

KrGePoint3d KrEllipticArc3dImpl::projClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection,
                                                    KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const {
  KrGePoint3d onThis = KrGePoint3d::kOrigin;
  krrelation::projClosestPair(*this, *curveImplOf(curve2), projectDirection, onThis, pntOnOtherCrv, tol);
  return onThis;
}

// Seen along the direction the arc is an ellipse (or a segment) whose parameters are the arc's
// moved by the shift of its principal form; the nearest point there is taken back.
KrGePoint3d KrEllipticArc3dImpl::projClosestPointTo(const KrGePoint3d& point, const KrGeVector3d& projectDirection,
                                                    const KrGeTol& tol) const {
  KrGeVector3d unit;
  const bool pDirection = unitOf(projectDirection, unit);
  KRS_FAIL_IF(!pDirection);
  if (!pDirection) return closestPointTo(point, tol);
  double shift = 0.0;
  const KrEllipseFrame seen = krEllipseSeenAlong(m_frame, unit, m_frame.center, shift);
  if (!(seen.majorRadius > tol.equalPoint())) return closestPointTo(point, tol);
  double x = 0.0;
  double y = 0.0;
  double height = 0.0;
  seen.toLocal(point, x, y, height);
  double footX = 0.0;
  double footY = 0.0;
  const double param =
      krEllipseArcNearest(seen.majorRadius, seen.minorRadius, seen.startAng, seen.sweep, x, y, footX, footY);
  return evalPoint(param + shift);
}

void KrEllipticArc3dImpl::getLocalClosestPoints(const KrGeCurve3d& self, const KrGeCurve3d& curve2,
                                                KrGePointOnCurve3d& approxPnt1, KrGePointOnCurve3d& approxPnt2,
                                                const KrGeInterval* nbhd1, const KrGeInterval* nbhd2,
                                                const KrGeTol& tol) const {
  double s = 0.0;
  double t = 0.0;
  if (!krrelation::localClosestPair(*this, *curveImplOf(curve2), nbhd1, nbhd2, s, t, tol)) return;
  approxPnt1.setCurve(self);
  approxPnt1.setParameter(s);
  approxPnt2.setCurve(curve2);
  approxPnt2.setParameter(t);
}

// The same maths as the relation layer's row, called directly: a full ellipse then needs no
// angles at all.
bool KrEllipticArc3dImpl::intersectWith(const KrGeLinearEnt3d& line, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                                        const KrGeTol& tol) const {
  KrEllipseHit hits[2];
  const int count = krEllipseLineHits(m_frame, KrLinearEnt3dImpl::of(line).span(), tol.equalPoint(), false, hits);
  return firstTwo(hits, count, numInt, p1, p2);
}

bool KrEllipticArc3dImpl::intersectWith(const KrGePlanarEnt& plane, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                                        const KrGeTol& tol) const {
  KrEllipseHit hits[2];
  const int count = krEllipsePlaneHits(m_frame, plane.pointOnPlane(), plane.normal(), tol.equalPoint(), hits);
  return firstTwo(hits, count, numInt, p1, p2);
}

// The height above the plane is h0 + R cos(t - phi): least in magnitude at a crossing, else at
// t = phi + pi or phi (when the arc holds them) or at an end.
KrGePoint3d KrEllipticArc3dImpl::closestPointToPlane(const KrGePlanarEnt& plane, KrGePoint3d& pointOnPlane,
                                                     const KrGeTol& tol) const {
  const KrGeVector3d normal = plane.normal();
  KrEllipseHit hits[2];
  const int count = krEllipsePlaneHits(m_frame, plane.pointOnPlane(), normal, tol.equalPoint(), hits);
  double best = m_frame.startAng;
  if (count > 0) {
    best = count > 1 && hits[1].t < hits[0].t ? hits[1].t : hits[0].t;
  } else {
    const double h0 = (m_frame.center - plane.pointOnPlane()).dotProduct(normal);
    const double ca = m_frame.majorRadius * m_frame.majorAxis.dotProduct(normal);
    const double cb = m_frame.minorRadius * m_frame.minorAxis.dotProduct(normal);
    const auto height = [&](double t) { return std::fabs(h0 + ca * std::cos(t) + cb * std::sin(t)); };
    double least = height(best);
    const double phi = std::atan2(cb, ca);
    for (double t : {m_frame.endAng(), phi, phi + kPi}) {
      if (!krArcHoldsAngle(m_frame.startAng, m_frame.sweep, t, 0.0)) continue;
      const double h = height(t);
      if (h < least) {
        least = h;
        best = t;
      }
    }
  }
  const KrGePoint3d onArc = m_frame.pointAt(best);
  pointOnPlane = onArc - normal * (onArc - plane.pointOnPlane()).dotProduct(normal);
  return onArc;
}

// The points of the arc that the line covers when seen along projDir lie in the plane through
// the line spanned by it and projDir; each faces the line point o + s d with
// s = ((E - o) x u) . (d x u) / |d x u|^2, u the unit projection direction.
bool KrEllipticArc3dImpl::projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir, int& numInt,
                                            KrGePoint3d& pntOnEllipse1, KrGePoint3d& pntOnEllipse2,
                                            KrGePoint3d& pntOnLine1, KrGePoint3d& pntOnLine2,
                                            const KrGeTol& tol) const {
  numInt = 0;
  KrGeVector3d unit;
  if (!unitOf(projDir, unit)) return false;
  const KrLinearSpan span = KrLinearEnt3dImpl::of(line).span();
  const KrGeVector3d across = span.direction.crossProduct(unit);
  const double acrossLength = across.length();
  KrGePoint3d onEllipse[2];
  KrGePoint3d onLine[2];
  int count = 0;
  if (!(acrossLength > KrGeContext::gTol.equalVector() * span.direction.length())) {
    // Seen end-on, the line is the point of its origin.
    KrLinearSpan sight;
    sight.origin = span.origin;
    sight.direction = unit;
    KrEllipseHit hits[2];
    const int n = krEllipseLineHits(m_frame, sight, tol.equalPoint(), true, hits);
    for (int i = 0; i < n; ++i) {
      onEllipse[count] = m_frame.pointAt(hits[i].t);
      onLine[count++] = span.origin;
    }
  } else {
    KrEllipseHit hits[2];
    const int n = krEllipsePlaneHits(m_frame, span.origin, across / acrossLength, tol.equalPoint(), hits);
    const double slack = tol.equalPoint() / span.direction.length();
    for (int i = 0; i < n; ++i) {
      const double s = (hits[i].point - span.origin).crossProduct(unit).dotProduct(across) / (acrossLength * acrossLength);
      if (!(s >= span.lower - slack && s <= span.upper + slack)) continue;
      onEllipse[count] = hits[i].point;
      onLine[count++] = span.at(s);
    }
  }
  numInt = count;
  if (count > 0) {
    pntOnEllipse1 = onEllipse[0];
    pntOnLine1 = onLine[0];
  }
  if (count > 1) {
    pntOnEllipse2 = onEllipse[1];
    pntOnLine2 = onLine[1];
  }
  return count > 0;
}

KrGeEntity3d* KrEllipticArc3dImpl::project(const KrGePlane& projectionPlane, const KrGeVector3d& projectDirection,
                                           const KrGeTol& tol) const {
  return krProjectEllipseArc(m_frame, projectionPlane, projectDirection, tol);
}
