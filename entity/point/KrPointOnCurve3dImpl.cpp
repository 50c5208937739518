#include "entity/point/KrPointOnCurve3dImpl.h"

#include "KrGePointOnCurve3d.h"
#include "KrsDiagnostics.h"
#include "KrsException.h"
#include "entity/core/entity_limits.h"

KrGeEntity3d* KrPointOnCurve3dImpl::copy() const { return copyInto(new KrGePointOnCurve3d(), *this); }

bool KrPointOnCurve3dImpl::equalData(const KrPointOnCurve3dImpl& source, const KrGeTol& tol) const {
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
