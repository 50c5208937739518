#include "KrGeLinearEnt3d.h"

#include "entity/linear/KrLinearEnt3dImpl.h"

inline KrLinearEnt3dImpl* KrGeLinearEnt3d::impl() const { return krImplAs<KrLinearEnt3dImpl>(m_pImpl); }

KrGeLinearEnt3d::KrGeLinearEnt3d() = default;
KrGeLinearEnt3d::KrGeLinearEnt3d(const KrGeLinearEnt3d& line) = default;

bool KrGeLinearEnt3d::intersectWith(const KrGePlanarEnt& plane, KrGePoint3d& intPnt, const KrGeTol& tol) const { return impl()->intersectWith(*this, plane, intPnt, tol); }
bool KrGeLinearEnt3d::intersectWith(const KrGeLinearEnt3d& line, KrGePoint3d& intPnt, const KrGeTol& tol) const { return impl()->intersectWith(line, intPnt, tol); }
bool KrGeLinearEnt3d::overlap(const KrGeLinearEnt3d& line, KrGeLinearEnt3d*& overlap, const KrGeTol& tol) const { return impl()->overlap(line, overlap, tol); }
bool KrGeLinearEnt3d::isOn(const KrGePlane& plane, const KrGeTol& tol) const { return impl()->isOn(plane, tol); }
bool KrGeLinearEnt3d::isParallelTo(const KrGePlanarEnt& plane, const KrGeTol& tol) const { return impl()->isParallelTo(plane, tol); }
bool KrGeLinearEnt3d::isParallelTo(const KrGeLinearEnt3d& line, const KrGeTol& tol) const { return impl()->isParallelTo(line, tol, false); }
bool KrGeLinearEnt3d::isColinearTo(const KrGeLinearEnt3d& line, const KrGeTol& tol) const { return impl()->isParallelTo(line, tol, true); }
bool KrGeLinearEnt3d::isPerpendicularTo(const KrGePlanarEnt& plane, const KrGeTol& tol) const { return impl()->isPerpendicularTo(plane, tol); }
bool KrGeLinearEnt3d::isPerpendicularTo(const KrGeLinearEnt3d& line, const KrGeTol& tol) const { return impl()->isPerpendicularTo(line, tol); }
void KrGeLinearEnt3d::getPerpPlane(const KrGePoint3d& point, KrGePlane& plane) const { impl()->getPerpPlane(point, plane); }
KrGePoint3d KrGeLinearEnt3d::pointOnLine() const { return impl()->pointOnLine(); }
KrGeVector3d KrGeLinearEnt3d::direction() const { return impl()->direction(); }
void KrGeLinearEnt3d::getLine(KrGeLine3d& line) const { impl()->getLine(line); }
bool KrGeLinearEnt3d::projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir, KrGePoint3d& pntOnThisLine, KrGePoint3d& pntOnOtherLine, const KrGeTol& tol) const { return impl()->projIntersectWith(line, projDir, pntOnThisLine, pntOnOtherLine, tol); }
KrGeLinearEnt3d& KrGeLinearEnt3d::operator=(const KrGeLinearEnt3d& line) { if (this != &line) *m_pImpl = *line.m_pImpl; return *this; }
