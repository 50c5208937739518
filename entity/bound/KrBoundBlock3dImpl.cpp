#include "entity/bound/KrBoundBlock3dImpl.h"

#include "KrGeBoundBlock3d.h"
#include "KrsDiagnostics.h"

bool KrBoundBlock3dImpl::isKindOf(KrGe::EntityId entType) const {
  return entType == KrGe::kBoundBlock3d || entType == KrGe::kEntity3d;
}

KrGeEntity3d* KrBoundBlock3dImpl::copy() const { return copyInto(new KrGeBoundBlock3d(), *this); }

KrEnt3dImpl& KrBoundBlock3dImpl::operator=(const KrEnt3dImpl& entImpl) {
  if (&entImpl == this) return *this;
  KRS_FAIL_IF(type() != entImpl.type());
  if (type() != entImpl.type()) return *this;
  KrEnt3dImpl::operator=(entImpl);
  m_block = static_cast<const KrBoundBlock3dImpl&>(entImpl).m_block;
  return *this;
}

bool KrBoundBlock3dImpl::isEqualTo(const KrGeEntity3d& entity, const KrGeTol& tol) const {
  const KrEnt3dImpl* other = implOf(entity);
  if (other == nullptr || other->type() != type()) return false;
  return m_block.isEqualTo(static_cast<const KrBoundBlock3dImpl*>(other)->m_block, tol);
}

KrEnt3dImpl& KrBoundBlock3dImpl::transformBy(const KrGeMatrix3d& matrix) {
  m_block.transformBy(matrix);
  return *this;
}

bool KrBoundBlock3dImpl::isOn(const KrGePoint3d& point, const KrGeTol& tol) const {
  return m_block.contains(point, tol.equalPoint());
}
