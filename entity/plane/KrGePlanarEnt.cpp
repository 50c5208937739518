#include "KrGePlanarEnt.h"

#include "entity/plane/KrPlanarEntImpl.h"

inline KrPlanarEntImpl* KrGePlanarEnt::impl() const { return krImplAs<KrPlanarEntImpl>(m_pImpl); }

KrGePlanarEnt::KrGePlanarEnt() = default;
KrGePlanarEnt::KrGePlanarEnt(const KrGePlanarEnt& src) = default;

bool KrGePlanarEnt::intersectWith(const KrGeLinearEnt3d& linEnt, KrGePoint3d& pnt, const KrGeTol& tol) const { return impl()->intersectWith(linEnt, pnt, true, tol); }
KrGePoint3d KrGePlanarEnt::closestPointToLinearEnt(const KrGeLinearEnt3d& line, KrGePoint3d& pointOnLine, const KrGeTol& tol) const { return impl()->closestPointToLinearEnt(line, pointOnLine, tol); }
KrGePoint3d KrGePlanarEnt::closestPointToPlanarEnt(const KrGePlanarEnt& otherPln, KrGePoint3d& pointOnOtherPln, const KrGeTol& tol) const { return impl()->closestPointToPlanarEnt(otherPln, pointOnOtherPln, tol); }
bool KrGePlanarEnt::isParallelTo(const KrGePlanarEnt& otherPlnEnt, const KrGeTol& tol) const { return impl()->isParallelTo(otherPlnEnt, tol, false); }
bool KrGePlanarEnt::isParallelTo(const KrGeLinearEnt3d& linEnt, const KrGeTol& tol) const { return impl()->isParallelTo(linEnt, tol); }
bool KrGePlanarEnt::isPerpendicularTo(const KrGePlanarEnt& otherPlnEnt, const KrGeTol& tol) const { return impl()->isPerpendicularTo(otherPlnEnt, tol); }
bool KrGePlanarEnt::isPerpendicularTo(const KrGeLinearEnt3d& linEnt, const KrGeTol& tol) const { return impl()->isPerpendicularTo(linEnt, tol); }
bool KrGePlanarEnt::isCoplanarTo(const KrGePlanarEnt& otherPlnEnt, const KrGeTol& tol) const { return impl()->isParallelTo(otherPlnEnt, tol, true); }
void KrGePlanarEnt::get(KrGePoint3d& pntU, KrGePoint3d& org, KrGePoint3d& pntV) const { impl()->get(pntU, org, pntV); }
void KrGePlanarEnt::get(KrGePoint3d& origin, KrGeVector3d& uAxis, KrGeVector3d& vAxis) const { impl()->get(origin, uAxis, vAxis); }
KrGePoint3d KrGePlanarEnt::pointOnPlane() const { return impl()->pointOnPlane(); }
KrGeVector3d KrGePlanarEnt::normal() const { return impl()->normal(); }
void KrGePlanarEnt::getCoefficients(double& a, double& b, double& c, double& d) const { impl()->getCoefficients(a, b, c, d); }
void KrGePlanarEnt::getCoordSystem(KrGePoint3d& origin, KrGeVector3d& axis1, KrGeVector3d& axis2) const { impl()->getCoordSystem(origin, axis1, axis2); }
KrGePlanarEnt& KrGePlanarEnt::operator=(const KrGePlanarEnt& src) { if (this != &src) *m_pImpl = *src.m_pImpl; return *this; }
