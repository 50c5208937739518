#include "KrGeCurve3d.h"

#include "entity/curve/KrGeCurve3dImpl.h"

inline KrGeCurve3dImpl* KrGeCurve3d::impl() const { return krImplAs<KrGeCurve3dImpl>(m_pImpl); }

KrGeCurve3d::KrGeCurve3d() = default;
KrGeCurve3d::KrGeCurve3d(const KrGeCurve3d& curve) = default;

bool KrGeCurve3d::isOn(const KrGePoint3d& point, const KrGeTol& tol) const { return impl()->isOn(point, tol); }
void KrGeCurve3d::getInterval(KrGeInterval& range, KrGePoint3d& startPoint, KrGePoint3d& endPoint) const { impl()->getInterval(range, startPoint, endPoint); }
void KrGeCurve3d::getInterval(KrGeInterval& range) const { impl()->getInterval(range); }
KrGeCurve3d& KrGeCurve3d::reverseParam() { impl()->reverseParam(); return *this; }
bool KrGeCurve3d::setInterval(const KrGeInterval& range) { return impl()->setInterval(range); }
KrGeCurve3d& KrGeCurve3d::setInterval() { impl()->setInterval(); return *this; }
double KrGeCurve3d::distanceTo(const KrGeCurve3d& curve2, const KrGeTol& tol) const { return impl()->distanceTo(curve2, tol); }
double KrGeCurve3d::distanceTo(const KrGePoint3d& point, const KrGeTol& tol) const { return impl()->distanceTo(point, tol); }
KrGePoint3d KrGeCurve3d::closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const { return impl()->closestPointTo(curve2, pntOnOtherCrv, tol); }
KrGePoint3d KrGeCurve3d::closestPointTo(const KrGePoint3d& point, const KrGeTol& tol) const { return impl()->closestPointTo(point, tol); }
void KrGeCurve3d::getClosestPointTo(const KrGeCurve3d& curve2, KrGePointOnCurve3d& pntOnThisCrv, KrGePointOnCurve3d& pntOnOtherCrv, const KrGeTol& tol) const { impl()->getClosestPointTo(*this, curve2, pntOnThisCrv, pntOnOtherCrv, tol); }
void KrGeCurve3d::getClosestPointTo(const KrGePoint3d& point, KrGePointOnCurve3d& pntOnCrv, const KrGeTol& tol) const { impl()->getClosestPointTo(*this, point, pntOnCrv, tol); }
KrGePoint3d KrGeCurve3d::projClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection, KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const { return impl()->projClosestPointTo(curve2, projectDirection, pntOnOtherCrv, tol); }
KrGePoint3d KrGeCurve3d::projClosestPointTo(const KrGePoint3d& point, const KrGeVector3d& projectDirection, const KrGeTol& tol) const { return impl()->projClosestPointTo(point, projectDirection, tol); }
void KrGeCurve3d::getProjClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection, KrGePointOnCurve3d& pntOnThisCrv, KrGePointOnCurve3d& pntOnOtherCrv, const KrGeTol& tol) const { impl()->getProjClosestPointTo(*this, curve2, projectDirection, pntOnThisCrv, pntOnOtherCrv, tol); }
void KrGeCurve3d::getProjClosestPointTo(const KrGePoint3d& point, const KrGeVector3d& projectDirection, KrGePointOnCurve3d& pntOnCrv, const KrGeTol& tol) const { impl()->getProjClosestPointTo(*this, point, projectDirection, pntOnCrv, tol); }
bool KrGeCurve3d::getNormalPoint(const KrGePoint3d& point, KrGePointOnCurve3d& pntOnCrv, const KrGeTol& tol) const { return impl()->getNormalPoint(*this, point, pntOnCrv, tol); }
KrGeEntity3d* KrGeCurve3d::project(const KrGePlane& projectionPlane, const KrGeVector3d& projectDirection, const KrGeTol& tol) const { return impl()->project(projectionPlane, projectDirection, tol); }
KrGeEntity3d* KrGeCurve3d::orthoProject(const KrGePlane& projectionPlane, const KrGeTol& tol) const { return impl()->orthoProject(projectionPlane, tol); }
bool KrGeCurve3d::isOn(double param, const KrGeTol& tol) const { return impl()->isOn(param, tol); }
bool KrGeCurve3d::isOn(const KrGePoint3d& point, double& param, const KrGeTol& tol) const { return impl()->isOn(point, param, tol); }
double KrGeCurve3d::paramOf(const KrGePoint3d& point, const KrGeTol& tol) const { return impl()->paramOf(point, tol); }
void KrGeCurve3d::getTrimmedOffset(double distance, const KrGeVector3d& planeNormal, KrsArray<void*>& offsetCurveList, KrGe::OffsetCrvExtType extensionType, const KrGeTol& tol) const { impl()->getTrimmedOffset(distance, planeNormal, offsetCurveList, extensionType, tol); }
bool KrGeCurve3d::isClosed(const KrGeTol& tol) const { return impl()->isClosed(tol); }
bool KrGeCurve3d::isPlanar(KrGePlane& plane, const KrGeTol& tol) const { return impl()->isPlanar(plane, tol); }
bool KrGeCurve3d::isLinear(KrGeLine3d& line, const KrGeTol& tol) const { return impl()->isLinear(line, tol); }
bool KrGeCurve3d::isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const { return impl()->isCoplanarWith(curve2, plane, tol); }
bool KrGeCurve3d::isPeriodic(double& period) const { return impl()->isPeriodic(period); }
double KrGeCurve3d::length(double fromParam, double toParam, double tol) const { return impl()->length(fromParam, toParam, tol); }
double KrGeCurve3d::paramAtLength(double datumParam, double length, bool posParamDir, double tol) const { return impl()->paramAtLength(datumParam, length, posParamDir, tol); }
bool KrGeCurve3d::area(double startParam, double endParam, double& value, const KrGeTol& tol) const { return impl()->area(startParam, endParam, value, tol); }
bool KrGeCurve3d::isDegenerate(KrGeEntity3d*& degenerateEntity, const KrGeTol& tol) const { return impl()->isDegenerate(degenerateEntity, tol); }
bool KrGeCurve3d::isDegenerate(KrGe::EntityId& degenerateType, const KrGeTol& tol) const { return impl()->isDegenerate(degenerateType, tol); }
void KrGeCurve3d::getSplitCurves(double param, KrGeCurve3d*& piece1, KrGeCurve3d*& piece2) const { impl()->getSplitCurves(param, piece1, piece2); }
bool KrGeCurve3d::explode(KrsArray<void*>& explodedCurves, KrsArray<int>& newExplodedCurve, const KrGeInterval* intrvl) const { return impl()->explode(*this, explodedCurves, newExplodedCurve, intrvl); }
void KrGeCurve3d::getLocalClosestPoints(const KrGeCurve3d& curve2, KrGePointOnCurve3d& approxPnt1, KrGePointOnCurve3d& approxPnt2, const KrGeInterval* nbhd1, const KrGeInterval* nbhd2, const KrGeTol& tol) const { impl()->getLocalClosestPoints(*this, curve2, approxPnt1, approxPnt2, nbhd1, nbhd2, tol); }
void KrGeCurve3d::getLocalClosestPoints(const KrGePoint3d& point, KrGePointOnCurve3d& approxPnt, const KrGeInterval* nbhd, const KrGeTol& tol) const { impl()->getLocalClosestPoints(*this, point, approxPnt, nbhd, tol); }
bool KrGeCurve3d::hasStartPoint(KrGePoint3d& startPoint) const { return impl()->hasStartPoint(startPoint); }
bool KrGeCurve3d::hasEndPoint(KrGePoint3d& endPoint) const { return impl()->hasEndPoint(endPoint); }
KrGePoint3d KrGeCurve3d::evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const { return impl()->evalPoint(param, numDeriv, derivArray); }
KrGePoint3d KrGeCurve3d::evalPoint(double param) const { return impl()->evalPoint(param); }
void KrGeCurve3d::getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const { impl()->getSamplePoints(numSample, pointArray); }
void KrGeCurve3d::getSamplePoints(double fromParam, double toParam, double approxEps, KrsArray<KrGePoint3d>& pointArray, KrsArray<double>& paramArray) const { impl()->getSamplePoints(fromParam, toParam, approxEps, pointArray, paramArray); }
// The root assignment, called past the table: copies nothing (see the header).
KrGeCurve3d& KrGeCurve3d::operator=(const KrGeCurve3d& curve) { m_pImpl->KrEnt3dImpl::operator=(*curve.m_pImpl); return *this; }

KrGeBoundBlock3d KrGeCurve3d::boundBlock() const { return impl()->boundBlock(); }
KrGeBoundBlock3d KrGeCurve3d::boundBlock(const KrGeInterval& range) const { return impl()->boundBlock(range); }
KrGeBoundBlock3d KrGeCurve3d::orthoBoundBlock() const { return impl()->orthoBoundBlock(); }
KrGeBoundBlock3d KrGeCurve3d::orthoBoundBlock(const KrGeInterval& range) const { return impl()->orthoBoundBlock(range); }
