// Implementation of KrGePointOnCurve3d: a curve (borrowed, never owned) and a parameter. The
// point and the derivatives are evaluated from the curve at every request.
#pragma once

#include "KrGeCurve3d.h"
#include "entity/core/KrEnt3dImpl.h"

class KrPointOnCurve3dImpl final : public KrEnt3dImpl {
public:
  KrPointOnCurve3dImpl() = default;
  KrPointOnCurve3dImpl(const KrGeCurve3d* curve, double param) : m_pCurve(curve), m_param(param) {}
  KrPointOnCurve3dImpl(const KrPointOnCurve3dImpl& source)
      : KrEnt3dImpl(source), m_pCurve(source.m_pCurve), m_param(source.m_param) {}

  bool isKindOf(KrGe::EntityId entType) const override;
  KrGe::EntityId type() const override { return KrGe::kPointOnCurve3d; }
  KrGeEntity3d* copy() const override;
  KrEnt3dImpl& operator=(const KrEnt3dImpl& entImpl) override;
  bool isEqualTo(const KrGeEntity3d& entity, const KrGeTol& tol) const override;
  KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) override;
  bool isOn(const KrGePoint3d& point, const KrGeTol& tol) const override { return point3d().isEqualTo(point, tol); }

  const KrGeCurve3d* curve() const { return m_pCurve; }
  double parameter() const { return m_param; }
  void setCurve(const KrGeCurve3d& curve) { m_pCurve = &curve; }
  void setParameter(double param) { m_param = param; }

  KrGePoint3d point3d() const;
  KrGeVector3d deriv(int order) const;
  void set(const KrGePoint3d& point);

private:
  const KrGeCurve3d* m_pCurve = nullptr;
  double m_param = 0.0;
};
