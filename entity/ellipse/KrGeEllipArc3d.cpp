#include "KrGeEllipArc3d.h"

#include "entity/ellipse/KrEllipticArc3dImpl.h"

inline KrEllipticArc3dImpl* KrGeEllipArc3d::impl() const { return krImplAs<KrEllipticArc3dImpl>(m_pImpl); }

KrGeEllipArc3d::KrGeEllipArc3d() { m_pImpl = new KrEllipticArc3dImpl(); }
KrGeEllipArc3d::KrGeEllipArc3d(const KrGeEllipArc3d& ellipse) : KrGeCurve3d() { m_pImpl = new KrEllipticArc3dImpl(*ellipse.impl()); }
KrGeEllipArc3d::KrGeEllipArc3d(const KrGeCircArc3d& arc) { m_pImpl = new KrEllipticArc3dImpl(); if (m_pImpl) impl()->set(arc); }
KrGeEllipArc3d::KrGeEllipArc3d(const KrGePoint3d& center, const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis, double majorRadius, double minorRadius) { m_pImpl = new KrEllipticArc3dImpl(); if (m_pImpl) impl()->set(center, majorAxis, minorAxis, majorRadius, minorRadius); }
KrGeEllipArc3d::KrGeEllipArc3d(const KrGePoint3d& center, const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis, double majorRadius, double minorRadius, double startAngle, double endAngle) { m_pImpl = new KrEllipticArc3dImpl(); if (m_pImpl) impl()->set(center, majorAxis, minorAxis, majorRadius, minorRadius, startAngle, endAngle); }

KrGeEllipArc3d& KrGeEllipArc3d::operator=(const KrGeEllipArc3d& ellipse) { if (this != &ellipse) *m_pImpl = *ellipse.m_pImpl; return *this; }

KrGePoint3d KrGeEllipArc3d::closestPointToPlane(const KrGePlanarEnt& plane, KrGePoint3d& pointOnPlane, const KrGeTol& tol) const { return impl()->closestPointToPlane(plane, pointOnPlane, tol); }
bool KrGeEllipArc3d::intersectWith(const KrGeLinearEnt3d& line, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2, const KrGeTol& tol) const { return impl()->intersectWith(line, numInt, p1, p2, tol); }
bool KrGeEllipArc3d::intersectWith(const KrGePlanarEnt& plane, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2, const KrGeTol& tol) const { return impl()->intersectWith(plane, numInt, p1, p2, tol); }
bool KrGeEllipArc3d::projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir, int& numInt, KrGePoint3d& pntOnEllipse1, KrGePoint3d& pntOnEllipse2, KrGePoint3d& pntOnLine1, KrGePoint3d& pntOnLine2, const KrGeTol& tol) const { return impl()->projIntersectWith(line, projDir, numInt, pntOnEllipse1, pntOnEllipse2, pntOnLine1, pntOnLine2, tol); }
bool KrGeEllipArc3d::isCircular(const KrGeTol& tol) const { return impl()->isCircular(tol); }
bool KrGeEllipArc3d::isInside(const KrGePoint3d& point, const KrGeTol& tol) const { return impl()->isInside(point, tol); }

KrGePoint3d KrGeEllipArc3d::center() const { return impl()->frame().center; }
double KrGeEllipArc3d::majorRadius() const { return impl()->frame().majorRadius; }
double KrGeEllipArc3d::minorRadius() const { return impl()->frame().minorRadius; }
KrGeVector3d KrGeEllipArc3d::majorAxis() const { return impl()->frame().majorAxis; }
KrGeVector3d KrGeEllipArc3d::minorAxis() const { return impl()->frame().minorAxis; }
KrGeVector3d KrGeEllipArc3d::normal() const { return impl()->frame().normal(); }
double KrGeEllipArc3d::startAng() const { return impl()->frame().startAng; }
double KrGeEllipArc3d::endAng() const { return impl()->frame().endAng(); }
KrGePoint3d KrGeEllipArc3d::startPoint() const { return impl()->startPoint(); }
KrGePoint3d KrGeEllipArc3d::endPoint() const { return impl()->endPoint(); }
void KrGeEllipArc3d::getPlane(KrGePlane& plane) const { impl()->getPlane(plane); }

KrGeEllipArc3d& KrGeEllipArc3d::setCenter(const KrGePoint3d& center) { impl()->setCenter(center); return *this; }
KrGeEllipArc3d& KrGeEllipArc3d::setMajorRadius(double radius) { impl()->setMajorRadius(radius); return *this; }
KrGeEllipArc3d& KrGeEllipArc3d::setMinorRadius(double radius) { impl()->setMinorRadius(radius); return *this; }
KrGeEllipArc3d& KrGeEllipArc3d::setAxes(const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis) { impl()->setAxes(majorAxis, minorAxis); return *this; }
KrGeEllipArc3d& KrGeEllipArc3d::setAngles(double startAngle, double endAngle) { impl()->setAngles(startAngle, endAngle); return *this; }
KrGeEllipArc3d& KrGeEllipArc3d::set(const KrGePoint3d& center, const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis, double majorRadius, double minorRadius) { impl()->set(center, majorAxis, minorAxis, majorRadius, minorRadius); return *this; }
KrGeEllipArc3d& KrGeEllipArc3d::set(const KrGePoint3d& center, const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis, double majorRadius, double minorRadius, double startAngle, double endAngle) { impl()->set(center, majorAxis, minorAxis, majorRadius, minorRadius, startAngle, endAngle); return *this; }
KrGeEllipArc3d& KrGeEllipArc3d::set(const KrGeCircArc3d& arc) { impl()->set(arc); return *this; }
