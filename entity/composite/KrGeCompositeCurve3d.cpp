#include "KrGeCompositeCurve3d.h"

#include "entity/composite/KrCompositeCurve3dImpl.h"

inline KrCompositeCurve3dImpl* KrGeCompositeCurve3d::impl() const { return krImplAs<KrCompositeCurve3dImpl>(m_pImpl); }

KrGeCompositeCurve3d::KrGeCompositeCurve3d() { m_pImpl = new KrCompositeCurve3dImpl(); }
KrGeCompositeCurve3d::KrGeCompositeCurve3d(const KrGeCompositeCurve3d& curve) : KrGeCurve3d() { m_pImpl = new KrCompositeCurve3dImpl(*curve.impl()); }
KrGeCompositeCurve3d::KrGeCompositeCurve3d(const KrsArray<void*>& curveList) { m_pImpl = new KrCompositeCurve3dImpl(); if (m_pImpl) impl()->setCurveList(curveList); }
KrGeCompositeCurve3d::KrGeCompositeCurve3d(const KrsArray<void*>& curveList, const KrsArray<int>& isOwnerOfCurves) { m_pImpl = new KrCompositeCurve3dImpl(); if (m_pImpl) impl()->setCurveList(curveList, isOwnerOfCurves); }

KrGeCompositeCurve3d& KrGeCompositeCurve3d::operator=(const KrGeCompositeCurve3d& curve) { if (this != &curve) *m_pImpl = *curve.m_pImpl; return *this; }

void KrGeCompositeCurve3d::getCurveList(KrsArray<void*>& curveList) const { impl()->getCurveList(curveList); }
KrGeCompositeCurve3d& KrGeCompositeCurve3d::setCurveList(const KrsArray<void*>& curveList, const KrsArray<int>& isOwnerOfCurves) { impl()->setCurveList(curveList, isOwnerOfCurves); return *this; }
KrGeCompositeCurve3d& KrGeCompositeCurve3d::setCurveList(const KrsArray<void*>& curveList) { impl()->setCurveList(curveList); return *this; }
double KrGeCompositeCurve3d::globalToLocalParam(double param, int& segNum) const { return impl()->globalToLocalParam(param, segNum); }
double KrGeCompositeCurve3d::localToGlobalParam(double param, int segNum) const { return impl()->localToGlobalParam(param, segNum); }
