#include "KrGeEntity3d.h"

#include <cstdlib>

#include "KrsDiagnostics.h"
#include "entity/core/KrEnt3dImpl.h"

KrGeEntity3d::KrGeEntity3d() : m_pImpl(nullptr) {}

KrGeEntity3d::KrGeEntity3d(const KrGeEntity3d& entity) : m_pImpl(entity.m_pImpl) {}

KrGeEntity3d::~KrGeEntity3d() {
  delete m_pImpl;
  m_pImpl = nullptr;
}

bool KrGeEntity3d::isKindOf(KrGe::EntityId entType) const { return m_pImpl->isKindOf(entType); }
KrGe::EntityId KrGeEntity3d::type() const { return m_pImpl->type(); }
KrGeEntity3d* KrGeEntity3d::copy() const { return m_pImpl->copy(); }

// Deep copy by way of copy(): the new facade's implementation is taken over and the emptied
// facade deleted, so no implementation is ever shared and none leaks.
KrGeEntity3d& KrGeEntity3d::operator=(const KrGeEntity3d& entity) {
  KRS_FAIL_IF_AT(type() != entity.type(), "krend3d", 37);
  if (type() != entity.type() || this == &entity) return *this;
  KrGeEntity3d* fresh = entity.copy();
  if (!fresh || !fresh->m_pImpl) {  // out of memory: keep the present implementation
    delete fresh;
    return *this;
  }
  delete m_pImpl;
  m_pImpl = fresh->m_pImpl;
  fresh->m_pImpl = nullptr;
  delete fresh;
  return *this;
}

bool KrGeEntity3d::operator==(const KrGeEntity3d& entity) const { return isEqualTo(entity, KrGeContext::gTol); }
bool KrGeEntity3d::operator!=(const KrGeEntity3d& entity) const { return !isEqualTo(entity, KrGeContext::gTol); }
bool KrGeEntity3d::isEqualTo(const KrGeEntity3d& entity, const KrGeTol& tol) const { return m_pImpl->isEqualTo(entity, tol); }

KrGeEntity3d& KrGeEntity3d::transformBy(const KrGeMatrix3d& matrix) {
  m_pImpl->transformBy(matrix);
  return *this;
}

KrGeEntity3d& KrGeEntity3d::translateBy(const KrGeVector3d& translateVec) { return transformBy(KrGeMatrix3d::translation(translateVec)); }
KrGeEntity3d& KrGeEntity3d::rotateBy(double angle, const KrGeVector3d& axis, const KrGePoint3d& wrtPoint) { return transformBy(KrGeMatrix3d::rotation(angle, axis, wrtPoint)); }
KrGeEntity3d& KrGeEntity3d::mirror(const KrGePlane& plane) { return transformBy(KrGeMatrix3d::mirroring(plane)); }
KrGeEntity3d& KrGeEntity3d::scaleBy(double scaleFactor, const KrGePoint3d& wrtPoint) { return transformBy(KrGeMatrix3d::scaling(scaleFactor, wrtPoint)); }

bool KrGeEntity3d::isOn(const KrGePoint3d& point, const KrGeTol& tol) const { return m_pImpl->isOn(point, tol); }

