// Implementation of KrGePointOnCurve3d: a curve (borrowed, never owned) and a parameter. The
// point and the derivatives are evaluated from the curve at every request.
#pragma once

#include "KrGeCurve3d.h"
#include "entity/core/KrEntityKind.h"

class KrPointOnCurve3dImpl final : public KrEntityKind<KrPointOnCurve3dImpl, KrEnt3dImpl> {
public:
  static constexpr KrGe::EntityId kKinship[] = {KrGe::kPointEnt3d, KrGe::kEntity3d};
  static constexpr const char* kReportSource = "KrPointOnCurve3dImpl";
  static constexpr int kAssignLine = 14;
  KrPointOnCurve3dImpl() = default;
  KrPointOnCurve3dImpl(const KrGeCurve3d* curve, double param) : m_pCurve(curve), m_param(param) {}
  KrPointOnCurve3dImpl(const KrPointOnCurve3dImpl& source) = default;

  KrGe::EntityId type() const override { return KrGe::kPointOnCurve3d; }
  KrGeEntity3d* copy() const override;
  void assignData(const KrPointOnCurve3dImpl& source) {
    m_pCurve = source.m_pCurve;
    m_param = source.m_param;
  }
  // The same curve object and, when there is one, the same point within tol.
  bool equalData(const KrPointOnCurve3dImpl& other, const KrGeTol& tol) const;
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
