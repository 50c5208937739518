#include "entity/point/KrPointEnt3dImpl.h"

#include "KrGePointEnt3d.h"
#include "KrsDiagnostics.h"

bool KrPointEnt3dImpl::isKindOf(KrGe::EntityId entType) const {
  return entType == KrGe::kPosition3d || entType == KrGe::kEntity3d;
}

KrGeEntity3d* KrPointEnt3dImpl::copy() const { return copyInto(new KrGePointEnt3d(), *this); }

KrEnt3dImpl& KrPointEnt3dImpl::operator=(const KrEnt3dImpl& entImpl) {
  if (&entImpl == this) return *this;
  KRS_FAIL_IF(type() != entImpl.type());
  if (type() != entImpl.type()) return *this;
  KrEnt3dImpl::operator=(entImpl);
  m_point = static_cast<const KrPointEnt3dImpl&>(entImpl).m_point;
  return *this;
}

bool KrPointEnt3dImpl::isEqualTo(const KrGeEntity3d& entity, const KrGeTol& tol) const {
  const KrEnt3dImpl* other = implOf(entity);
  if (other == nullptr || other->type() != type()) return false;
  return m_point.isEqualTo(static_cast<const KrPointEnt3dImpl*>(other)->m_point, tol);
}

KrEnt3dImpl& KrPointEnt3dImpl::transformBy(const KrGeMatrix3d& matrix) {
  m_point = matrix * m_point;
  return *this;
}
