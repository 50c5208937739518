// Composite operations not provided: each reports the not-implemented assertion once, announces
// itself once, and answers a neutral value with its outputs untouched.
#include "KrsDiagnostics.h"
#include "entity/composite/KrCompositeCurve3dImpl.h"

namespace {
const char* const kSource = KrCompositeCurve3dImpl::kReportSource;
}  // namespace

#define KR_COMPOSITE_NOT_PROVIDED(signature) \
  do {                                       \
    KRS_NOT_IMPLEMENTED_AT(kSource, __LINE__); \
    KRS_AUTOTEST_AT(signature, kSource, __LINE__); \
  } while (0)

KrGePoint3d KrCompositeCurve3dImpl::projClosestPointTo(const KrGeCurve3d&, const KrGeVector3d&, KrGePoint3d&,
                                                       const KrGeTol&) const {
  KR_COMPOSITE_NOT_PROVIDED("KrGePoint3d KrCompositeCurve3dImpl::projClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection, KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const");
  return KrGePoint3d::kOrigin;
}

KrGePoint3d KrCompositeCurve3dImpl::projClosestPointTo(const KrGePoint3d&, const KrGeVector3d&,
                                                       const KrGeTol&) const {
  KR_COMPOSITE_NOT_PROVIDED("KrGePoint3d KrCompositeCurve3dImpl::projClosestPointTo(const KrGePoint3d& pnt, const KrGeVector3d& projectDirection, const KrGeTol& tol) const");
  return KrGePoint3d::kOrigin;
}

bool KrCompositeCurve3dImpl::getNormalPoint(const KrGeCurve3d&, const KrGePoint3d&, KrGePointOnCurve3d&,
                                            const KrGeTol&) const {
  KR_COMPOSITE_NOT_PROVIDED("bool KrCompositeCurve3dImpl::getNormalPoint(const KrGePoint3d& pnt, KrGePointOnCurve3d& pntOnCrv, const KrGeTol& tol) const");
  return false;
}

KrGeEntity3d* KrCompositeCurve3dImpl::project(const KrGePlane&, const KrGeVector3d&, const KrGeTol&) const {
  KR_COMPOSITE_NOT_PROVIDED("KrGeEntity3d* KrCompositeCurve3dImpl::project(const KrGePlane& projectionPlane, const KrGeVector3d& projectDirection, const KrGeTol& tol) const");
  return nullptr;
}

double KrCompositeCurve3dImpl::paramAtLength(double, double, bool, double) const {
  KR_COMPOSITE_NOT_PROVIDED("double KrCompositeCurve3dImpl::paramAtLength(double datumParam, double length, bool posParamDir, double tol) const");
  return 0.0;
}

bool KrCompositeCurve3dImpl::area(double, double, double&, const KrGeTol&) const {
  KR_COMPOSITE_NOT_PROVIDED("bool KrCompositeCurve3dImpl::area(double startParam, double endParam, double& value, const KrGeTol& tol) const");
  return false;
}

bool KrCompositeCurve3dImpl::isDegenerate(KrGeEntity3d*&, const KrGeTol&) const {
  KR_COMPOSITE_NOT_PROVIDED("bool KrCompositeCurve3dImpl::isDegenerate(KrGeEntity3d*& degenerateEntity, const KrGeTol& tol) const");
  return false;
}

bool KrCompositeCurve3dImpl::isDegenerate(KrGe::EntityId&, const KrGeTol&) const {
  KR_COMPOSITE_NOT_PROVIDED("bool KrCompositeCurve3dImpl::isDegenerate(KrGe::EntityId& degenerateType, const KrGeTol& tol) const");
  return false;
}

void KrCompositeCurve3dImpl::getSplitCurves(double, KrGeCurve3d*&, KrGeCurve3d*&) const {
  KR_COMPOSITE_NOT_PROVIDED("void KrCompositeCurve3dImpl::getSplitCurves(double param, KrGeCurve3d*& piece1, KrGeCurve3d*& piece2) const");
}

bool KrCompositeCurve3dImpl::explode(const KrGeCurve3d&, KrsArray<void*>&, KrsArray<int>&, const KrGeInterval*) const {
  KR_COMPOSITE_NOT_PROVIDED("bool KrCompositeCurve3dImpl::explod(...)");
  return false;
}

void KrCompositeCurve3dImpl::getLocalClosestPoints(const KrGeCurve3d&, const KrGeCurve3d&, KrGePointOnCurve3d&,
                                                   KrGePointOnCurve3d&, const KrGeInterval*, const KrGeInterval*,
                                                   const KrGeTol&) const {
  KR_COMPOSITE_NOT_PROVIDED("void KrCompositeCurve3dImpl::getLocalClosestPoints(const KrGeCurve3d& curve2, KrGePointOnCurve3d& approxPnt1, KrGePointOnCurve3d& approxPnt2, const KrGeInterval* nbhd1, const KrGeInterval* nbhd2, const KrGeTol& tol) const");
}

void KrCompositeCurve3dImpl::getLocalClosestPoints(const KrGeCurve3d&, const KrGePoint3d&, KrGePointOnCurve3d&,
                                                   const KrGeInterval*, const KrGeTol&) const {
  KR_COMPOSITE_NOT_PROVIDED("void KrCompositeCurve3dImpl::getLocalClosestPoints(const KrGePoint3d& pnt, KrGePointOnCurve3d& approxPnt, const KrGeInterval* nbhd, const KrGeTol& tol) const");
}
