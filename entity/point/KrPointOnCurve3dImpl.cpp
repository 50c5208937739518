#include "entity/point/KrPointOnCurve3dImpl.h"

#include "KrGePointOnCurve3d.h"
#include "KrsDiagnostics.h"
#include "KrsException.h"
#include "entity/core/entity_limits.h"

bool KrPointOnCurve3dImpl::isKindOf(KrGe::EntityId entType) const {
  return entType == KrGe::kPointOnCurve3d || entType == KrGe::kPointEnt3d || entType == KrGe::kEntity3d;
}

KrGeEntity3d* KrPointOnCurve3dImpl::copy() const { return copyInto(new KrGePointOnCurve3d(), *this); }

KrEnt3dImpl& KrPointOnCurve3dImpl::operator=(const KrEnt3dImpl& entImpl) {
  if (&entImpl == this) return *this;
  KRS_FAIL_IF(type() != entImpl.type());
  if (type() != entImpl.type()) return *this;
  KrEnt3dImpl::operator=(entImpl);
  const KrPointOnCurve3dImpl& source = static_cast<const KrPointOnCurve3dImpl&>(entImpl);
  m_pCurve = source.m_pCurve;
  m_param = source.m_param;
  return *this;
}

bool KrPointOnCurve3dImpl::isEqualTo(const KrGeEntity3d& entity, const KrGeTol& tol) const {
  const KrEnt3dImpl* other = implOf(entity);
  if (other == nullptr || other->type() != type()) return false;
  const KrPointOnCurve3dImpl& source = *static_cast<const KrPointOnCurve3dImpl*>(other);
  return m_pCurve == source.m_pCurve && (m_pCurve == nullptr || point3d().isEqualTo(source.point3d(), tol));
}

KrEnt3dImpl& KrPointOnCurve3dImpl::transformBy(const KrGeMatrix3d&) {
  KRS_NOT_IMPLEMENTED();
  return *this;
}

KrGePoint3d KrPointOnCurve3dImpl::point3d() const {
  KRS_FAIL_IF(!m_pCurve);
  return m_pCurve ? m_pCurve->evalPoint(m_param) : KrGePoint3d::kOrigin;
}

// The derivatives are evaluated into an array of their own; should even that not get memory,
// the answer is the zero vector: this operation never throws.
KrGeVector3d KrPointOnCurve3dImpl::deriv(int order) const {
  using krge::kMaxDerivOrder;
  KRS_FAIL_IF(order<1);
  KRS_FAIL_IF(order>kMaxDerivOrder);
  KRS_FAIL_IF(!m_pCurve);
  if (order < 1 || order > kMaxDerivOrder || !m_pCurve) return KrGeVector3d();
  try {
    KrsArray<KrGeVector3d> derivatives;
    m_pCurve->evalPoint(m_param, order, derivatives);
    return derivatives.GetSize() >= order ? derivatives[order - 1] : KrGeVector3d();
  } catch (const KrsException&) {
    return KrGeVector3d();
  }
}

void KrPointOnCurve3dImpl::set(const KrGePoint3d& point) {
  if (!m_pCurve) return;
  m_param = m_pCurve->paramOf(m_pCurve->closestPointTo(point, KrGeContext::gTol), KrGeContext::gTol);
}
