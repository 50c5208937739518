// The NURBS curve's distance and measure queries: nearest points (to a point, along a direction,
// near an approximation), parameters of points, lengths, areas, and the pairs with other curves
// through the relation layer.
#include <algorithm>
#include <cmath>

#include "KrGePointOnCurve3d.h"
#include "entity/relation/KrCurveRelation.h"
#include "entity/relation/generic_pair.h"
#include "entity/spline/KrGeNurbCurve3dImpl.h"
#include "entity/spline/nurbs_closest.h"
#include "entity/spline/nurbs_measure.h"

namespace {

double clampInto(double t, double lo, double hi) { return std::max(lo, std::min(hi, t)); }

// The range [lo, hi] of a neighbourhood clipped to the curve's; false when they do not meet.
bool clippedRange(const KrNurbsForm& form, const KrGeInterval* nbhd, double& lo, double& hi) {
  lo = form.startParam();
  hi = form.endParam();
  if (!nbhd) return true;
  if (nbhd->isBoundedBelow()) lo = std::max(lo, nbhd->lowerBound());
  if (nbhd->isBoundedAbove()) hi = std::min(hi, nbhd->upperBound());
  return lo <= hi;
}

}  // namespace

double KrGeNurbCurve3dImpl::nearestParam(const KrGePoint3d& point, double lo, double hi, double* distance) const {
  return krNurbsNearestParam(m_form, point, lo, hi, distance);
}

KrGePoint3d KrGeNurbCurve3dImpl::closestPointTo(const KrGePoint3d& point, const KrGeTol&) const {
  if (!valid()) return evalPoint(m_knots.isEmpty() ? 0.0 : m_knots[0]);
  return krNurbsPoint(m_form, nearestParam(point, m_form.startParam(), m_form.endParam(), nullptr));
}

double KrGeNurbCurve3dImpl::paramOf(const KrGePoint3d& point, const KrGeTol&) const {
  if (!valid()) return m_knots.isEmpty() ? 0.0 : m_knots[0];
  return nearestParam(point, m_form.startParam(), m_form.endParam(), nullptr);
}

KrGePoint3d KrGeNurbCurve3dImpl::projClosestPointTo(const KrGePoint3d& point, const KrGeVector3d& projectDirection,
                                                    const KrGeTol& tol) const {
  if (!valid()) return closestPointTo(point, tol);
  if (projectDirection.isZeroLength(tol)) return closestPointTo(point, tol);
  // Flattening along the direction is affine: the flattened curve is the NURBS curve of the
  // flattened control points, with the same parameters.
  const KrGeVector3d n = projectDirection.normal(tol);
  KrNurbsForm flat = m_form;
  for (int i = 0; i < flat.count; ++i) {
    double* h = &flat.hw[4 * static_cast<std::size_t>(i)];
    const KrGeVector3d p(h[0] / h[3], h[1] / h[3], h[2] / h[3]);
    const KrGeVector3d q = p - (p - point.asVector()).dotProduct(n) * n;
    h[0] = q.x * h[3];
    h[1] = q.y * h[3];
    h[2] = q.z * h[3];
  }
  krNurbsPrepare(flat);
  return krNurbsPoint(m_form, krNurbsNearestParam(flat, point, flat.startParam(), flat.endParam(), nullptr));
}

bool KrGeNurbCurve3dImpl::getNormalPoint(const KrGeCurve3d& self, const KrGePoint3d& point,
                                         KrGePointOnCurve3d& pntOnCrv, const KrGeTol& tol) const {
  if (!valid()) return false;
  const double t = nearestParam(point, m_form.startParam(), m_form.endParam(), nullptr);
  KrGeVector3d d[2];
  krNurbsDerivs(m_form, t, 1, d);
  const KrGeVector3d arm = KrGePoint3d(d[0].x, d[0].y, d[0].z) - point;
  const bool foot = arm.length() <= tol.equalPoint() ||
                    std::fabs(arm.dotProduct(d[1])) <= tol.equalVector() * arm.length() * d[1].length();
  if (!foot) return false;
  pntOnCrv.setCurve(self);
  pntOnCrv.setParameter(t);
  return true;
}

void KrGeNurbCurve3dImpl::getLocalClosestPoints(const KrGeCurve3d& self, const KrGePoint3d& point,
                                                KrGePointOnCurve3d& approxPnt, const KrGeInterval* nbhd,
                                                const KrGeTol&) const {
  double lo, hi;
  if (!valid() || !clippedRange(m_form, nbhd, lo, hi)) return;
  approxPnt.setCurve(self);
  approxPnt.setParameter(nearestParam(point, lo, hi, nullptr));
}

double KrGeNurbCurve3dImpl::length(double fromParam, double toParam, double tol) const {
  if (!valid() || !std::isfinite(fromParam) || !std::isfinite(toParam)) return 0.0;
  const double a = clampInto(std::min(fromParam, toParam), m_form.startParam(), m_form.endParam());
  const double b = clampInto(std::max(fromParam, toParam), m_form.startParam(), m_form.endParam());
  return krNurbsLength(m_form, a, b, std::isfinite(tol) ? tol : 0.0);
}

double KrGeNurbCurve3dImpl::paramAtLength(double datumParam, double length, bool posParamDir, double tol) const {
  if (!valid() || !std::isfinite(datumParam) || !std::isfinite(length)) return datumParam;
  if (length < 0.0) {
    length = -length;
    posParamDir = !posParamDir;
  }
  const double datum = clampInto(datumParam, m_form.startParam(), m_form.endParam());
  return krNurbsParamAtLength(m_form, datum, length, posParamDir, std::isfinite(tol) ? tol : 0.0);
}

bool KrGeNurbCurve3dImpl::area(double startParam, double endParam, double& value, const KrGeTol& tol) const {
  KrGePlane plane;
  if (!valid() || !std::isfinite(startParam) || !std::isfinite(endParam) || !isPlanar(plane, tol)) return false;
  const double a = clampInto(std::min(startParam, endParam), m_form.startParam(), m_form.endParam());
  const double b = clampInto(std::max(startParam, endParam), m_form.startParam(), m_form.endParam());
  value = std::fabs(krNurbsChordArea(m_form, a, b, plane.normal(), tol.equalPoint()));
  return true;
}

KrGePoint3d KrGeNurbCurve3dImpl::closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv,
                                                const KrGeTol& tol) const {
  KrGePoint3d onThis = evalPoint(valid() ? m_form.startParam() : 0.0);
  krrelation::closestPair(*this, *curveImplOf(curve2), onThis, pntOnOtherCrv, tol);
  return onThis;
}

KrGePoint3d KrGeNurbCurve3dImpl::projClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection,
                                                    KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const {
  KrGePoint3d onThis = evalPoint(valid() ? m_form.startParam() : 0.0);
  krrelation::projClosestPair(*this, *curveImplOf(curve2), projectDirection, onThis, pntOnOtherCrv, tol);
  return onThis;
}

void KrGeNurbCurve3dImpl::getLocalClosestPoints(const KrGeCurve3d& self, const KrGeCurve3d& curve2,
                                                KrGePointOnCurve3d& approxPnt1, KrGePointOnCurve3d& approxPnt2,
                                                const KrGeInterval* nbhd1, const KrGeInterval* nbhd2,
                                                const KrGeTol& tol) const {
  double s = 0.0, t = 0.0;
  if (!krrelation::localClosestPair(*this, *curveImplOf(curve2), nbhd1, nbhd2, s, t, tol)) return;
  approxPnt1.setCurve(self);
  approxPnt1.setParameter(s);
  approxPnt2.setCurve(curve2);
  approxPnt2.setParameter(t);
}
