// Arc operations not provided yet: each announces itself once, reports the not-implemented
// assertion once and answers neutral values. The tangent-circle constructions, announced once as
// not yet validated, are the shared ones of entity/relation/tangent_construction.
#include "KrGePlane.h"
#include "KrsDiagnostics.h"
#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/relation/tangent_construction.h"

KrGePoint3d KrCircArc3dImpl::projClosestPointTo(const KrGePoint3d&, const KrGeVector3d&, const KrGeTol&) const {
  KRS_AUTOTEST("KrGePoint3d KrCircArc3dImpl::projClosestPointTo(pnt, projDir, tol)");
  KRS_NOT_IMPLEMENTED();
  return KrGePoint3d::kOrigin;
}

KrGePoint3d KrCircArc3dImpl::projClosestPointTo(const KrGeCurve3d&, const KrGeVector3d&, KrGePoint3d& pntOnOtherCrv,
                                                const KrGeTol&) const {
  KRS_AUTOTEST("KrGePoint3d KrCircArc3dImpl::projClosestPointTo(curve, projDir, pntOnOtherCrv, tol)");
  KRS_NOT_IMPLEMENTED();
  pntOnOtherCrv = KrGePoint3d::kOrigin;
  return KrGePoint3d::kOrigin;
}

void KrCircArc3dImpl::getLocalClosestPoints(const KrGeCurve3d&, const KrGePoint3d&, KrGePointOnCurve3d&,
                                            const KrGeInterval*, const KrGeTol&) const {
  KRS_AUTOTEST("void KrCircArc3dImpl::getLocalClosestPoints(pt, approxpt, pNbhd, tol)");
  KRS_NOT_IMPLEMENTED();
}

void KrCircArc3dImpl::getLocalClosestPoints(const KrGeCurve3d&, const KrGeCurve3d&, KrGePointOnCurve3d&,
                                            KrGePointOnCurve3d&, const KrGeInterval*, const KrGeInterval*,
                                            const KrGeTol&) const {
  KRS_AUTOTEST("void KrCircArc3dImpl::getLocalClosestPoints(otherCurve, approxPtT, approxPtO, p1, p2, tol)");
  KRS_NOT_IMPLEMENTED();
}

bool KrCircArc3dImpl::projIntersectWith(const KrGeLinearEnt3d&, const KrGeVector3d&, int& numInt,
                                        KrGePoint3d& pntOnArc1, KrGePoint3d& pntOnArc2, KrGePoint3d& pntOnLine1,
                                        KrGePoint3d& pntOnLine2, const KrGeTol&) const {
  KRS_AUTOTEST("bool KrCircArc3dImpl::projIntersectWith(line, dir, ni, pa1, pa2, pl1, pl2, tol)");
  KRS_NOT_IMPLEMENTED();
  numInt = 0;
  pntOnArc1 = pntOnArc2 = pntOnLine1 = pntOnLine2 = KrGePoint3d::kOrigin;
  return false;
}

bool KrCircArc3dImpl::explode(const KrGeCurve3d&, KrsArray<void*>&, KrsArray<int>&, const KrGeInterval*) const {
  KRS_AUTOTEST("bool KrCircArc3dImpl::explode(curves, flags, pInterval)");
  KRS_NOT_IMPLEMENTED();
  return false;
}

KrCircArc3dImpl& KrCircArc3dImpl::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double radius,
                                      double& param1, double& param2, bool& success) {
  KRS_AUTOTEST("KrCircArc3dImpl& KrCircArc3dImpl::set(curve1, curve2, r, p1, p2, flag)");
  krrelation::arcTangentToTwoCurves(*this, curve1, curve2, radius, param1, param2, success);
  return *this;
}

KrCircArc3dImpl& KrCircArc3dImpl::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2,
                                      const KrGeCurve3d& curve3, double& param1, double& param2, double& param3,
                                      bool& success) {
  KRS_AUTOTEST("KrCircArc3dImpl& KrCircArc3dImpl::set(curve1, curve2, curve3, p1, p2, p3, flag)");
  krrelation::arcTangentToThreeCurves(*this, curve1, curve2, curve3, param1, param2, param3, success);
  return *this;
}
