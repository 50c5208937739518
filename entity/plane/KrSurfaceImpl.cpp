#include "entity/plane/KrSurfaceImpl.h"

bool KrSurfaceImpl::isOn(const KrGePoint3d& point, const KrGeTol& tol) const {
  return distanceTo(point, tol) <= tol.equalPoint();
}

bool KrSurfaceImpl::isOn(const KrGePoint3d& point, KrGePoint2d& paramPoint, const KrGeTol& tol) const {
  paramPoint.set(0.0, 0.0);
  if (!isOn(point, tol)) return false;
  paramPoint = paramOf(point, tol);
  return true;
}

bool KrSurfaceImpl::isInside(const KrGePoint2d& param, const KrGeTol&) const {
  KrGeInterval intervalU, intervalV;
  getEnvelope(intervalU, intervalV);
  return intervalU.contains(param.x) && intervalV.contains(param.y);
}

double KrSurfaceImpl::distanceTo(const KrGePoint3d& point, const KrGeTol& tol) const {
  return point.distanceTo(closestPointTo(point, tol));
}

KrGePoint3d KrSurfaceImpl::evalPoint(const KrGePoint2d& param) const {
  KrsArray<KrGeVector3d> noDerivatives;
  KrGeVector3d normal;
  return evalPoint(param, 0, noDerivatives, normal);
}

KrGePoint3d KrSurfaceImpl::evalPoint(const KrGePoint2d& param, int derivOrd,
                                     KrsArray<KrGeVector3d>& derivatives) const {
  KrGeVector3d normal;
  return evalPoint(param, derivOrd, derivatives, normal);
}
