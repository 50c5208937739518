#include "entity/point/KrPointEnt3dImpl.h"

#include "KrGePointEnt3d.h"
#include "KrsDiagnostics.h"

KrGeEntity3d* KrPointEnt3dImpl::copy() const { return copyInto(new KrGePointEnt3d(), *this); }

KrEnt3dImpl& KrPointEnt3dImpl::transformBy(const KrGeMatrix3d& matrix) {
  m_point = matrix * m_point;
  return *this;
}
