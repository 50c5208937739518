// The generic curve algorithms: everything here works through the concrete curve's table.
#include "entity/curve/KrGeCurve3dImpl.h"

#include "KrGePlane.h"
#include "KrGePointOnCurve3d.h"

bool KrGeCurve3dImpl::isOn(const KrGePoint3d& point, const KrGeTol& tol) const {
  return distanceTo(point, tol) <= tol.equalPoint();
}

void KrGeCurve3dImpl::getInterval(KrGeInterval& range, KrGePoint3d& startPoint, KrGePoint3d& endPoint) const {
  getInterval(range);
  if (range.isBoundedBelow()) startPoint = evalPoint(range.lowerBound());
  if (range.isBoundedAbove()) endPoint = evalPoint(range.upperBound());
}

double KrGeCurve3dImpl::distanceTo(const KrGePoint3d& point, const KrGeTol& tol) const {
  return point.distanceTo(closestPointTo(point, tol));
}

double KrGeCurve3dImpl::distanceTo(const KrGeCurve3d& curve2, const KrGeTol& tol) const {
  KrGePoint3d onOther;
  const KrGePoint3d onThis = closestPointTo(curve2, onOther, tol);
  return onThis.distanceTo(onOther);
}

void KrGeCurve3dImpl::getClosestPointTo(const KrGeCurve3d& self, const KrGeCurve3d& curve2,
                                        KrGePointOnCurve3d& pntOnThisCrv, KrGePointOnCurve3d& pntOnOtherCrv,
                                        const KrGeTol& tol) const {
  KrGePoint3d onOther;
  const KrGePoint3d onThis = closestPointTo(curve2, onOther, tol);
  pntOnThisCrv.setCurve(self);
  pntOnThisCrv.setParameter(paramOf(onThis, tol));
  pntOnOtherCrv.setCurve(curve2);
  pntOnOtherCrv.setParameter(curve2.paramOf(onOther, tol));
}

// The parameter is found with the global tolerance, not with tol (kept on purpose).
void KrGeCurve3dImpl::getClosestPointTo(const KrGeCurve3d& self, const KrGePoint3d& point,
                                        KrGePointOnCurve3d& pntOnCrv, const KrGeTol& tol) const {
  const KrGePoint3d onThis = closestPointTo(point, tol);
  pntOnCrv.setParameter(paramOf(onThis, KrGeContext::gTol));
  pntOnCrv.setCurve(self);
}

void KrGeCurve3dImpl::getProjClosestPointTo(const KrGeCurve3d& self, const KrGeCurve3d& curve2,
                                            const KrGeVector3d& projectDirection, KrGePointOnCurve3d& pntOnThisCrv,
                                            KrGePointOnCurve3d& pntOnOtherCrv, const KrGeTol& tol) const {
  KrGePoint3d onOther;
  const KrGePoint3d onThis = projClosestPointTo(curve2, projectDirection, onOther, tol);
  pntOnThisCrv.setCurve(self);
  pntOnThisCrv.setParameter(paramOf(onThis, KrGeContext::gTol));
  pntOnOtherCrv.setCurve(curve2);
  pntOnOtherCrv.setParameter(curve2.paramOf(onOther, KrGeContext::gTol));
}

void KrGeCurve3dImpl::getProjClosestPointTo(const KrGeCurve3d& self, const KrGePoint3d& point,
                                            const KrGeVector3d& projectDirection, KrGePointOnCurve3d& pntOnCrv,
                                            const KrGeTol& tol) const {
  const KrGePoint3d onThis = projClosestPointTo(point, projectDirection, tol);
  pntOnCrv.setCurve(self);
  pntOnCrv.setParameter(paramOf(onThis, KrGeContext::gTol));
}

KrGeBoundBlock3d KrGeCurve3dImpl::boundBlock() const {
  KrGeInterval range(1e-12);
  getInterval(range);
  return boundBlock(range);
}

KrGeBoundBlock3d KrGeCurve3dImpl::orthoBoundBlock() const {
  KrGeInterval range(1e-12);
  getInterval(range);
  return orthoBoundBlock(range);
}

KrGeEntity3d* KrGeCurve3dImpl::orthoProject(const KrGePlane& projectionPlane, const KrGeTol& tol) const {
  return project(projectionPlane, projectionPlane.normal(), tol);
}

bool KrGeCurve3dImpl::isOn(double param, const KrGeTol& tol) const { return isOn(evalPoint(param), tol); }

bool KrGeCurve3dImpl::isOn(const KrGePoint3d& point, double& param, const KrGeTol& tol) const {
  param = 0.0;
  if (!isOn(point, tol)) return false;
  param = paramOf(point, KrGeContext::gTol);
  return true;
}

bool KrGeCurve3dImpl::hasStartPoint(KrGePoint3d& startPoint) const {
  KrGeInterval range(1e-12);
  getInterval(range);
  if (!range.isBoundedBelow()) return false;
  startPoint = evalPoint(range.lowerBound());
  return true;
}

bool KrGeCurve3dImpl::hasEndPoint(KrGePoint3d& endPoint) const {
  KrGeInterval range(1e-12);
  getInterval(range);
  if (!range.isBoundedAbove()) return false;
  endPoint = evalPoint(range.upperBound());
  return true;
}

// Each call has its own empty derivative array: an empty KrsArray holds no block, so this costs
// no allocation, and curves used on different threads share nothing.
KrGePoint3d KrGeCurve3dImpl::evalPoint(double param) const {
  KrsArray<KrGeVector3d> derivatives;
  return evalPoint(param, 0, derivatives);
}
