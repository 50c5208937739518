#include "entity/core/KrEnt3dImpl.h"

#include "KrsDiagnostics.h"

KrEnt3dImpl::~KrEnt3dImpl() {
  KRS_FAIL_IF_AT(isOwned(), "KrEnt3dImpl", 15);
}

KrEnt3dImpl& KrEnt3dImpl::operator=(const KrEnt3dImpl&) { return *this; }

bool KrEnt3dImpl::operator==(const KrGeEntity3d& entity) const { return isEqualTo(entity, KrGeContext::gTol); }
bool KrEnt3dImpl::operator!=(const KrGeEntity3d& entity) const { return !isEqualTo(entity, KrGeContext::gTol); }

KrEnt3dImpl& KrEnt3dImpl::translateBy(const KrGeVector3d& translateVec) { return transformBy(KrGeMatrix3d::translation(translateVec)); }
KrEnt3dImpl& KrEnt3dImpl::rotateBy(double angle, const KrGeVector3d& axis, const KrGePoint3d& wrtPoint) { return transformBy(KrGeMatrix3d::rotation(angle, axis, wrtPoint)); }
KrEnt3dImpl& KrEnt3dImpl::mirror(const KrGePlane& plane) { return transformBy(KrGeMatrix3d::mirroring(plane)); }
KrEnt3dImpl& KrEnt3dImpl::scaleBy(double scaleFactor, const KrGePoint3d& wrtPoint) { return transformBy(KrGeMatrix3d::scaling(scaleFactor, wrtPoint)); }
