#include "entity/bound/KrBoundBlock3dImpl.h"

#include "KrGeBoundBlock3d.h"
#include "KrsDiagnostics.h"

KrGeEntity3d* KrBoundBlock3dImpl::copy() const { return copyInto(new KrGeBoundBlock3d(), *this); }

KrEnt3dImpl& KrBoundBlock3dImpl::transformBy(const KrGeMatrix3d& matrix) {
  m_block.transformBy(matrix);
  return *this;
}

bool KrBoundBlock3dImpl::isOn(const KrGePoint3d& point, const KrGeTol& tol) const {
  return m_block.contains(point, tol.equalPoint());
}
