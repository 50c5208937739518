#include "KrGePlane.h"

#include "entity/plane/KrPlanarEntImpl.h"

inline KrPlanarEntImpl* KrGePlane::impl() const { return krImplAs<KrPlanarEntImpl>(m_pImpl); }

const KrGePlane KrGePlane::kXYPlane(KrGePoint3d(0.0, 0.0, 0.0), KrGeVector3d(1.0, 0.0, 0.0), KrGeVector3d(0.0, 1.0, 0.0));
const KrGePlane KrGePlane::kYZPlane(KrGePoint3d(0.0, 0.0, 0.0), KrGeVector3d(0.0, 1.0, 0.0), KrGeVector3d(0.0, 0.0, 1.0));
const KrGePlane KrGePlane::kZXPlane(KrGePoint3d(0.0, 0.0, 0.0), KrGeVector3d(0.0, 0.0, 1.0), KrGeVector3d(1.0, 0.0, 0.0));

KrGePlane::KrGePlane() { m_pImpl = new KrPlanarEntImpl(); }
KrGePlane::KrGePlane(const KrGePlane& src) : KrGePlanarEnt() { m_pImpl = new KrPlanarEntImpl(*src.impl()); }
KrGePlane::KrGePlane(const KrGePoint3d& origin, const KrGeVector3d& normal) { m_pImpl = new KrPlanarEntImpl(origin, normal); }
KrGePlane::KrGePlane(const KrGePoint3d& pntU, const KrGePoint3d& org, const KrGePoint3d& pntV) { m_pImpl = new KrPlanarEntImpl(pntU, org, pntV); }
KrGePlane::KrGePlane(const KrGePoint3d& origin, const KrGeVector3d& uAxis, const KrGeVector3d& vAxis) { m_pImpl = new KrPlanarEntImpl(origin, uAxis, vAxis); }
KrGePlane::KrGePlane(double a, double b, double c, double d) { m_pImpl = new KrPlanarEntImpl(a, b, c, d); }

double KrGePlane::signedDistanceTo(const KrGePoint3d& pnt) const { return impl()->signedDistanceTo(pnt); }
bool KrGePlane::intersectWith(const KrGeLinearEnt3d& linEnt, KrGePoint3d& resultPnt, const KrGeTol& tol) const { return impl()->intersectWith(linEnt, resultPnt, true, tol); }
bool KrGePlane::intersectWith(const KrGePlane& otherPln, KrGeLine3d& resultLine, const KrGeTol& tol) const { return impl()->intersectWith(otherPln, resultLine, tol); }
KrGePlane& KrGePlane::set(const KrGePoint3d& origin, const KrGeVector3d& uAxis, const KrGeVector3d& vAxis) { impl()->set(origin, uAxis, vAxis); return *this; }
KrGePlane& KrGePlane::set(double a, double b, double c, double d) { impl()->set(a, b, c, d); return *this; }
KrGePlane& KrGePlane::set(const KrGePoint3d& pntU, const KrGePoint3d& org, const KrGePoint3d& pntV) { impl()->set(pntU, org, pntV); return *this; }
KrGePlane& KrGePlane::set(const KrGePoint3d& origin, const KrGeVector3d& normal) { impl()->set(origin, normal); return *this; }
KrGePlane& KrGePlane::operator=(const KrGePlane& src) { if (this != &src) *m_pImpl = *src.m_pImpl; return *this; }
