#include "KrGePointEnt3d.h"

#include "entity/point/KrPointEnt3dImpl.h"

inline KrPointEnt3dImpl* KrGePointEnt3d::impl() const { return krImplAs<KrPointEnt3dImpl>(m_pImpl); }

KrGePointEnt3d::KrGePointEnt3d() { m_pImpl = new KrPointEnt3dImpl(); }
KrGePointEnt3d::KrGePointEnt3d(const KrGePointEnt3d& src) : KrGeEntity3d() { m_pImpl = new KrPointEnt3dImpl(*src.impl()); }
KrGePointEnt3d::KrGePointEnt3d(const KrGePoint3d& point) { m_pImpl = new KrPointEnt3dImpl(point); }
KrGePointEnt3d::KrGePointEnt3d(NoImplementation) {}

KrGePoint3d KrGePointEnt3d::point3d() const { return impl()->point3d(); }
KrGePointEnt3d& KrGePointEnt3d::set(const KrGePoint3d& point) { impl()->set(point); return *this; }
KrGePointEnt3d::operator KrGePoint3d() const { return point3d(); }
KrGePointEnt3d& KrGePointEnt3d::operator=(const KrGePointEnt3d& src) { if (this != &src) *m_pImpl = *src.m_pImpl; return *this; }
