#include "KrGeCurveCurveInt3d.h"

#include "entity/intersect/KrCurveCurveInt3dImpl.h"

inline KrCurveCurveInt3dImpl* KrGeCurveCurveInt3d::impl() const { return krImplAs<KrCurveCurveInt3dImpl>(m_pImpl); }

KrGeCurveCurveInt3d::KrGeCurveCurveInt3d() { m_pImpl = new KrCurveCurveInt3dImpl(); }
KrGeCurveCurveInt3d::KrGeCurveCurveInt3d(const KrGeCurveCurveInt3d& src) : KrGeEntity3d() { m_pImpl = new KrCurveCurveInt3dImpl(*src.impl()); }
KrGeCurveCurveInt3d::KrGeCurveCurveInt3d(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeVector3d& planeNormal, const KrGeTol& tol) : KrGeCurveCurveInt3d() { if (impl()) impl()->set(curve1, curve2, planeNormal, tol); }
KrGeCurveCurveInt3d::KrGeCurveCurveInt3d(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeInterval& range1, const KrGeInterval& range2, const KrGeVector3d& planeNormal, const KrGeTol& tol) : KrGeCurveCurveInt3d() { if (impl()) impl()->set(curve1, curve2, range1, range2, planeNormal, tol); }

KrGeCurveCurveInt3d& KrGeCurveCurveInt3d::operator=(const KrGeCurveCurveInt3d& src) { if (this != &src) *m_pImpl = *src.m_pImpl; return *this; }

const KrGeCurve3d* KrGeCurveCurveInt3d::curve1() const { return impl()->curve1(); }
const KrGeCurve3d* KrGeCurveCurveInt3d::curve2() const { return impl()->curve2(); }
void KrGeCurveCurveInt3d::getIntRanges(KrGeInterval& range1, KrGeInterval& range2) const { impl()->getIntRanges(range1, range2); }
KrGeVector3d KrGeCurveCurveInt3d::planeNormal() const { return impl()->planeNormal(); }
KrGeTol KrGeCurveCurveInt3d::tolerance() const { return impl()->tolerance(); }
int KrGeCurveCurveInt3d::numIntPoints() const { return impl()->numIntPoints(); }
KrGePoint3d KrGeCurveCurveInt3d::intPoint(int intNum) const { return impl()->intPoint(intNum); }
void KrGeCurveCurveInt3d::getIntParams(int intNum, double& param1, double& param2) const { impl()->getIntParams(intNum, param1, param2); }
void KrGeCurveCurveInt3d::getPointOnCurve1(int intNum, KrGePointOnCurve3d& intPnt) const { impl()->getPointOnCurve1(intNum, intPnt); }
void KrGeCurveCurveInt3d::getPointOnCurve2(int intNum, KrGePointOnCurve3d& intPnt) const { impl()->getPointOnCurve2(intNum, intPnt); }
void KrGeCurveCurveInt3d::getIntConfigs(int intNum, KrGe::KrGeXConfig& config1wrt2, KrGe::KrGeXConfig& config2wrt1) const { impl()->getIntConfigs(intNum, config1wrt2, config2wrt1); }
bool KrGeCurveCurveInt3d::isTangential(int intNum) const { return impl()->isTangential(intNum); }
bool KrGeCurveCurveInt3d::isTransversal(int intNum) const { return impl()->isTransversal(intNum); }
double KrGeCurveCurveInt3d::intPointTol(int intNum) const { return impl()->intPointTol(intNum); }
int KrGeCurveCurveInt3d::overlapCount() const { return impl()->overlapCount(); }
bool KrGeCurveCurveInt3d::overlapDirection() const { return impl()->overlapDirection(); }
void KrGeCurveCurveInt3d::getOverlapRanges(int overlapNum, KrGeInterval& range1, KrGeInterval& range2) const { impl()->getOverlapRanges(overlapNum, range1, range2); }
void KrGeCurveCurveInt3d::changeCurveOrder() { impl()->changeCurveOrder(); }
KrGeCurveCurveInt3d& KrGeCurveCurveInt3d::orderWrt1() { impl()->orderWrt1(); return *this; }
KrGeCurveCurveInt3d& KrGeCurveCurveInt3d::orderWrt2() { impl()->orderWrt2(); return *this; }
KrGeCurveCurveInt3d& KrGeCurveCurveInt3d::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeVector3d& planeNormal, const KrGeTol& tol) { impl()->set(curve1, curve2, planeNormal, tol); return *this; }
KrGeCurveCurveInt3d& KrGeCurveCurveInt3d::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeInterval& range1, const KrGeInterval& range2, const KrGeVector3d& planeNormal, const KrGeTol& tol) { impl()->set(curve1, curve2, range1, range2, planeNormal, tol); return *this; }
