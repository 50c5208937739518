#include "KrGeCircArc3d.h"

#include "entity/arc/KrCircArc3dImpl.h"

inline KrCircArc3dImpl* KrGeCircArc3d::impl() const { return krImplAs<KrCircArc3dImpl>(m_pImpl); }

KrGeCircArc3d::KrGeCircArc3d() { m_pImpl = new KrCircArc3dImpl(); }
KrGeCircArc3d::KrGeCircArc3d(const KrGeCircArc3d& arc) : KrGeCurve3d() { m_pImpl = new KrCircArc3dImpl(*arc.impl()); }
KrGeCircArc3d::KrGeCircArc3d(const KrGePoint3d& center, const KrGeVector3d& normal, double radius) { m_pImpl = new KrCircArc3dImpl(center, normal, radius); }
KrGeCircArc3d::KrGeCircArc3d(const KrGePoint3d& center, const KrGeVector3d& normal, const KrGeVector3d& refVec, double radius, double startAngle, double endAngle) { m_pImpl = new KrCircArc3dImpl(center, normal, refVec, radius, startAngle, endAngle); }
KrGeCircArc3d::KrGeCircArc3d(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3) { m_pImpl = new KrCircArc3dImpl(point1, point2, point3); }

KrGeCircArc3d& KrGeCircArc3d::operator=(const KrGeCircArc3d& arc) { if (this != &arc) *m_pImpl = *arc.m_pImpl; return *this; }

KrGePoint3d KrGeCircArc3d::closestPointToPlane(const KrGePlanarEnt& plane, KrGePoint3d& pointOnPlane, const KrGeTol& tol) const { return impl()->closestPointToPlane(plane, pointOnPlane, tol); }
bool KrGeCircArc3d::intersectWith(const KrGeLinearEnt3d& line, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2, const KrGeTol& tol) const { return impl()->intersectWith(line, numInt, p1, p2, tol); }
bool KrGeCircArc3d::intersectWith(const KrGePlanarEnt& plane, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2, const KrGeTol& tol) const { return impl()->intersectWith(plane, numInt, p1, p2, tol); }
bool KrGeCircArc3d::intersectWith(const KrGeCircArc3d& arc, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2, const KrGeTol& tol) const { return impl()->intersectWith(arc, numInt, p1, p2, tol); }
bool KrGeCircArc3d::projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir, int& numInt, KrGePoint3d& pntOnArc1, KrGePoint3d& pntOnArc2, KrGePoint3d& pntOnLine1, KrGePoint3d& pntOnLine2, const KrGeTol& tol) const { return impl()->projIntersectWith(line, projDir, numInt, pntOnArc1, pntOnArc2, pntOnLine1, pntOnLine2, tol); }
bool KrGeCircArc3d::tangent(const KrGePoint3d& point, KrGeLine3d& line, const KrGeTol& tol) const { return impl()->tangent(point, line, tol, nullptr); }
bool KrGeCircArc3d::tangent(const KrGePoint3d& point, KrGeLine3d& line, const KrGeTol& tol, KrGe::ErrorCondition& status) const { return impl()->tangent(point, line, tol, &status); }
bool KrGeCircArc3d::isInside(const KrGePoint3d& point, const KrGeTol& tol) const { return impl()->isInside(point, tol); }

KrGePoint3d KrGeCircArc3d::center() const { return impl()->frame().center; }
double KrGeCircArc3d::radius() const { return impl()->frame().radius; }
double KrGeCircArc3d::startAng() const { return impl()->frame().startAng; }
double KrGeCircArc3d::endAng() const { return impl()->frame().endAng(); }
KrGeVector3d KrGeCircArc3d::normal() const { return impl()->frame().normal; }
KrGeVector3d KrGeCircArc3d::refVec() const { return impl()->frame().refVec; }
void KrGeCircArc3d::getPlane(KrGePlane& plane) const { impl()->getPlane(plane); }
KrGePoint3d KrGeCircArc3d::startPoint() const { return impl()->startPoint(); }
KrGePoint3d KrGeCircArc3d::endPoint() const { return impl()->endPoint(); }

KrGeCircArc3d& KrGeCircArc3d::setCenter(const KrGePoint3d& center) { impl()->setCenter(center); return *this; }
KrGeCircArc3d& KrGeCircArc3d::setRadius(double radius) { impl()->setRadius(radius); return *this; }
KrGeCircArc3d& KrGeCircArc3d::setAngles(double startAngle, double endAngle) { impl()->setAngles(startAngle, endAngle); return *this; }
KrGeCircArc3d& KrGeCircArc3d::setAxes(const KrGeVector3d& normal, const KrGeVector3d& refVec) { impl()->setAxes(normal, refVec); return *this; }
KrGeCircArc3d& KrGeCircArc3d::set(const KrGePoint3d& center, const KrGeVector3d& normal, double radius) { impl()->set(center, normal, radius); return *this; }
KrGeCircArc3d& KrGeCircArc3d::set(const KrGePoint3d& center, const KrGeVector3d& normal, const KrGeVector3d& refVec, double radius, double startAngle, double endAngle) { impl()->set(center, normal, refVec, radius, startAngle, endAngle); return *this; }
KrGeCircArc3d& KrGeCircArc3d::set(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3) { KrGe::ErrorCondition status; impl()->set(point1, point2, point3, status); return *this; }
KrGeCircArc3d& KrGeCircArc3d::set(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3, KrGe::ErrorCondition& status) { impl()->set(point1, point2, point3, status); return *this; }
KrGeCircArc3d& KrGeCircArc3d::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double radius, double& param1, double& param2, bool& success) { impl()->set(curve1, curve2, radius, param1, param2, success); return *this; }
KrGeCircArc3d& KrGeCircArc3d::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeCurve3d& curve3, double& param1, double& param2, double& param3, bool& success) { impl()->set(curve1, curve2, curve3, param1, param2, param3, success); return *this; }
