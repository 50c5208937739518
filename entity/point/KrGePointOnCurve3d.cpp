#include "KrGePointOnCurve3d.h"

#include "entity/point/KrPointOnCurve3dImpl.h"

inline KrPointOnCurve3dImpl* KrGePointOnCurve3d::impl() const { return krImplAs<KrPointOnCurve3dImpl>(m_pImpl); }

KrGePointOnCurve3d::KrGePointOnCurve3d() : KrGePointEnt3d(NoImplementation()) { m_pImpl = new KrPointOnCurve3dImpl(); }
KrGePointOnCurve3d::KrGePointOnCurve3d(const KrGePointOnCurve3d& src) : KrGePointEnt3d(NoImplementation()) { m_pImpl = new KrPointOnCurve3dImpl(*src.impl()); }
KrGePointOnCurve3d::KrGePointOnCurve3d(const KrGeCurve3d& crv, double param) : KrGePointEnt3d(NoImplementation()) { m_pImpl = new KrPointOnCurve3dImpl(&crv, param); }

const KrGeCurve3d* KrGePointOnCurve3d::curve() const { return impl()->curve(); }
double KrGePointOnCurve3d::parameter() const { return impl()->parameter(); }
KrGePoint3d KrGePointOnCurve3d::point() const { return impl()->point3d(); }
KrGePoint3d KrGePointOnCurve3d::point(double param) { return setParameter(param).point(); }
KrGePoint3d KrGePointOnCurve3d::point(const KrGeCurve3d& crv, double param) { return setCurve(crv).setParameter(param).point(); }
KrGeVector3d KrGePointOnCurve3d::deriv(int order) const { return impl()->deriv(order); }
KrGeVector3d KrGePointOnCurve3d::deriv(int order, double param) { return setParameter(param).deriv(order); }
KrGeVector3d KrGePointOnCurve3d::deriv(int order, const KrGeCurve3d& crv, double param) { return setCurve(crv).setParameter(param).deriv(order); }
KrGePointOnCurve3d& KrGePointOnCurve3d::setCurve(const KrGeCurve3d& crv) { impl()->setCurve(crv); return *this; }
KrGePointOnCurve3d& KrGePointOnCurve3d::setParameter(double param) { impl()->setParameter(param); return *this; }
KrGePoint3d KrGePointOnCurve3d::point3d() const { return impl()->point3d(); }
KrGePointEnt3d& KrGePointOnCurve3d::set(const KrGePoint3d& point) { impl()->set(point); return *this; }
KrGePointOnCurve3d& KrGePointOnCurve3d::operator=(const KrGePointOnCurve3d& src) { if (this != &src) *m_pImpl = *src.m_pImpl; return *this; }
