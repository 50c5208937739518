#include "KrGeLineSeg3d.h"

#include "entity/linear/KrLinearEnt3dImpl.h"

inline KrLinearEnt3dImpl* KrGeLineSeg3d::impl() const { return krImplAs<KrLinearEnt3dImpl>(m_pImpl); }

KrGeLineSeg3d::KrGeLineSeg3d() { m_pImpl = new KrLinearEnt3dImpl(false); }
KrGeLineSeg3d::KrGeLineSeg3d(const KrGeLineSeg3d& line) : KrGeLinearEnt3d() { m_pImpl = new KrLinearEnt3dImpl(*line.impl()); }
KrGeLineSeg3d::KrGeLineSeg3d(const KrGePoint3d& pnt, const KrGeVector3d& vec) { m_pImpl = new KrLinearEnt3dImpl(pnt, vec, false); }
KrGeLineSeg3d::KrGeLineSeg3d(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2) { m_pImpl = new KrLinearEnt3dImpl(pnt1, pnt2, false); }

KrGeLineSeg3d& KrGeLineSeg3d::operator=(const KrGeLineSeg3d& line) { if (this != &line) *m_pImpl = *line.m_pImpl; return *this; }
double KrGeLineSeg3d::length() const { return impl()->length(); }
void KrGeLineSeg3d::getBisector(KrGePlane& plane) const { impl()->getBisector(plane); }
KrGePoint3d KrGeLineSeg3d::baryComb(double blendCoeff) const { return impl()->baryComb(blendCoeff); }
KrGePoint3d KrGeLineSeg3d::startPoint() const { return impl()->startPoint(); }
KrGePoint3d KrGeLineSeg3d::midPoint() const { return impl()->midPoint(); }
KrGePoint3d KrGeLineSeg3d::endPoint() const { return impl()->endPoint(); }
KrGeLineSeg3d& KrGeLineSeg3d::set(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2) { impl()->set(pnt1, pnt2, false); return *this; }
KrGeLineSeg3d& KrGeLineSeg3d::set(const KrGePoint3d& pnt, const KrGeVector3d& vec) { impl()->set(pnt, vec, false); return *this; }
KrGeLineSeg3d& KrGeLineSeg3d::set(const KrGeCurve3d& curve, const KrGePoint3d& point, double& param, bool& success) { impl()->set(curve, point, param, success); return *this; }
KrGeLineSeg3d& KrGeLineSeg3d::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double& param1, double& param2, bool& success) { impl()->set(curve1, curve2, param1, param2, success); return *this; }
