#include "KrGeSurface.h"

#include "entity/plane/KrSurfaceImpl.h"

inline KrSurfaceImpl* KrGeSurface::impl() const { return krImplAs<KrSurfaceImpl>(m_pImpl); }

KrGeSurface::KrGeSurface() = default;
KrGeSurface::KrGeSurface(const KrGeSurface& surface) = default;

KrGePoint2d KrGeSurface::paramOf(const KrGePoint3d& point, const KrGeTol& tol) const { return impl()->paramOf(point, tol); }
bool KrGeSurface::isOn(const KrGePoint3d& point, KrGePoint2d& paramPoint, const KrGeTol& tol) const { return impl()->isOn(point, paramPoint, tol); }
bool KrGeSurface::isInside(const KrGePoint2d& param, const KrGeTol& tol) const { return impl()->isInside(param, tol); }
KrGePoint3d KrGeSurface::closestPointTo(const KrGePoint3d& point, const KrGeTol& tol) const { return impl()->closestPointTo(point, tol); }
double KrGeSurface::distanceTo(const KrGePoint3d& point, const KrGeTol& tol) const { return impl()->distanceTo(point, tol); }
bool KrGeSurface::isNormalReversed() const { return impl()->isNormalReversed(); }
KrGeSurface& KrGeSurface::reverseNormal() { impl()->reverseNormal(); return *this; }
void KrGeSurface::getEnvelope(KrGeInterval& intrvlU, KrGeInterval& intrvlV) const { impl()->getEnvelope(intrvlU, intrvlV); }
bool KrGeSurface::isClosedInU(const KrGeTol& tol) const { return impl()->isClosedInU(tol); }
bool KrGeSurface::isClosedInV(const KrGeTol& tol) const { return impl()->isClosedInV(tol); }
KrGePoint3d KrGeSurface::evalPoint(const KrGePoint2d& param) const { return impl()->evalPoint(param); }
KrGePoint3d KrGeSurface::evalPoint(const KrGePoint2d& param, int derivOrd, KrsArray<KrGeVector3d>& derivatives) const { return impl()->evalPoint(param, derivOrd, derivatives); }
KrGePoint3d KrGeSurface::evalPoint(const KrGePoint2d& param, int derivOrd, KrsArray<KrGeVector3d>& derivatives, KrGeVector3d& normal) const { return impl()->evalPoint(param, derivOrd, derivatives, normal); }
KrGeSurface& KrGeSurface::operator=(const KrGeSurface& surface) { KrGeEntity3d::operator=(surface); return *this; }
