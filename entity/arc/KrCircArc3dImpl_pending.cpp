// Placeholders of the arc operations still to be written; each answers a neutral value.
#include <cmath>

#include "KrGeBoundBlock3d.h"
#include "KrGePlane.h"
#include "entity/arc/KrCircArc3dImpl.h"

bool KrCircArc3dImpl::isOn(const KrGePoint3d& point, const KrGeTol& tol) const { return KrGeCurve3dImpl::isOn(point, tol); }

KrGeCurve3dImpl& KrCircArc3dImpl::reverseParam() { return *this; }

bool KrCircArc3dImpl::setInterval(const KrGeInterval& range) { (void)range; return false; }

KrGeCurve3dImpl& KrCircArc3dImpl::setInterval() { return *this; }

KrGePoint3d KrCircArc3dImpl::closestPointTo(const KrGePoint3d& point, const KrGeTol& tol) const { (void)point; (void)tol; return startPoint(); }

KrGePoint3d KrCircArc3dImpl::projClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection, KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const { (void)curve2; (void)projectDirection; (void)pntOnOtherCrv; (void)tol; return KrGePoint3d::kOrigin; }

KrGePoint3d KrCircArc3dImpl::projClosestPointTo(const KrGePoint3d& point, const KrGeVector3d& projectDirection, const KrGeTol& tol) const { (void)point; (void)projectDirection; (void)tol; return KrGePoint3d::kOrigin; }

bool KrCircArc3dImpl::getNormalPoint(const KrGeCurve3d& self, const KrGePoint3d& point, KrGePointOnCurve3d& pntOnCrv, const KrGeTol& tol) const { (void)self; (void)point; (void)pntOnCrv; (void)tol; return false; }

KrGeBoundBlock3d KrCircArc3dImpl::boundBlock(const KrGeInterval& range) const { (void)range; return KrGeBoundBlock3d(); }

KrGeBoundBlock3d KrCircArc3dImpl::orthoBoundBlock(const KrGeInterval& range) const { (void)range; return KrGeBoundBlock3d(); }

KrGeEntity3d* KrCircArc3dImpl::project(const KrGePlane& projectionPlane, const KrGeVector3d& projectDirection, const KrGeTol& tol) const { (void)projectionPlane; (void)projectDirection; (void)tol; return nullptr; }

double KrCircArc3dImpl::paramOf(const KrGePoint3d& point, const KrGeTol& tol) const { (void)point; (void)tol; return 0.0; }

void KrCircArc3dImpl::getTrimmedOffset(double distance, const KrGeVector3d& planeNormal, KrsArray<void*>& offsetCurveList, KrGe::OffsetCrvExtType extensionType, const KrGeTol& tol) const { (void)distance; (void)planeNormal; (void)offsetCurveList; (void)extensionType; (void)tol; }

bool KrCircArc3dImpl::isClosed(const KrGeTol& tol) const { (void)tol; return false; }

bool KrCircArc3dImpl::isPlanar(KrGePlane& plane, const KrGeTol& tol) const { (void)plane; (void)tol; return true; }

bool KrCircArc3dImpl::isLinear(KrGeLine3d& line, const KrGeTol& tol) const { (void)line; (void)tol; return false; }

bool KrCircArc3dImpl::isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const { (void)curve2; (void)plane; (void)tol; return false; }

bool KrCircArc3dImpl::isPeriodic(double& period) const { (void)period; return false; }

double KrCircArc3dImpl::length(double fromParam, double toParam, double tol) const { (void)tol; return std::fabs(toParam - fromParam) * frame().radius; }

double KrCircArc3dImpl::paramAtLength(double datumParam, double length, bool posParamDir, double tol) const { (void)length; (void)posParamDir; (void)tol; return datumParam; }

bool KrCircArc3dImpl::area(double startParam, double endParam, double& value, const KrGeTol& tol) const { (void)startParam; (void)endParam; (void)tol; value = 0.0; return false; }

bool KrCircArc3dImpl::isDegenerate(KrGeEntity3d*& degenerateEntity, const KrGeTol& tol) const { (void)tol; degenerateEntity = nullptr; return false; }

bool KrCircArc3dImpl::isDegenerate(KrGe::EntityId& degenerateType, const KrGeTol& tol) const { (void)tol; degenerateType = type(); return false; }

void KrCircArc3dImpl::getSplitCurves(double param, KrGeCurve3d*& piece1, KrGeCurve3d*& piece2) const { (void)param; piece1 = nullptr; piece2 = nullptr; }

bool KrCircArc3dImpl::explode(const KrGeCurve3d& self, KrsArray<void*>& explodedCurves, KrsArray<int>& newExplodedCurve, const KrGeInterval* intrvl) const { (void)self; (void)explodedCurves; (void)newExplodedCurve; (void)intrvl; return false; }

void KrCircArc3dImpl::getLocalClosestPoints(const KrGeCurve3d& self, const KrGeCurve3d& curve2, KrGePointOnCurve3d& approxPnt1, KrGePointOnCurve3d& approxPnt2, const KrGeInterval* nbhd1, const KrGeInterval* nbhd2, const KrGeTol& tol) const { (void)self; (void)curve2; (void)approxPnt1; (void)approxPnt2; (void)nbhd1; (void)nbhd2; (void)tol; }

void KrCircArc3dImpl::getLocalClosestPoints(const KrGeCurve3d& self, const KrGePoint3d& point, KrGePointOnCurve3d& approxPnt, const KrGeInterval* nbhd, const KrGeTol& tol) const { (void)self; (void)point; (void)approxPnt; (void)nbhd; (void)tol; }

KrGePoint3d KrCircArc3dImpl::closestPointToPlane(const KrGePlanarEnt& plane, KrGePoint3d& pointOnPlane, const KrGeTol& tol) const { (void)plane; (void)pointOnPlane; (void)tol; return KrGePoint3d::kOrigin; }

bool KrCircArc3dImpl::intersectWith(const KrGePlanarEnt& plane, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2, const KrGeTol& tol) const { (void)plane; (void)p1; (void)p2; (void)tol; numInt = 0; return false; }

bool KrCircArc3dImpl::projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir, int& numInt, KrGePoint3d& pntOnArc1, KrGePoint3d& pntOnArc2, KrGePoint3d& pntOnLine1, KrGePoint3d& pntOnLine2, const KrGeTol& tol) const { (void)line; (void)projDir; (void)pntOnArc1; (void)pntOnArc2; (void)pntOnLine1; (void)pntOnLine2; (void)tol; numInt = 0; return false; }

bool KrCircArc3dImpl::tangent(const KrGePoint3d& point, KrGeLine3d& line, const KrGeTol& tol, KrGe::ErrorCondition* status) const { (void)point; (void)line; (void)tol; (void)status; return false; }

bool KrCircArc3dImpl::isInside(const KrGePoint3d& point, const KrGeTol& tol) const { (void)point; (void)tol; return false; }

void KrCircArc3dImpl::getPlane(KrGePlane& plane) const { plane.set(frame().center, frame().normal); }

KrCircArc3dImpl& KrCircArc3dImpl::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double radius, double& param1, double& param2, bool& success) { (void)curve1; (void)curve2; (void)radius; (void)param1; (void)param2; success = false; return *this; }

KrCircArc3dImpl& KrCircArc3dImpl::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeCurve3d& curve3, double& param1, double& param2, double& param3, bool& success) { (void)curve1; (void)curve2; (void)curve3; (void)param1; (void)param2; (void)param3; success = false; return *this; }
