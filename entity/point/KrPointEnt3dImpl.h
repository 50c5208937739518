// Implementation of KrGePointEnt3d: one position.
#pragma once

#include "entity/core/KrEntityKind.h"

class KrPointEnt3dImpl final : public KrEntityKind<KrPointEnt3dImpl, KrEnt3dImpl> {
public:
  static constexpr KrGe::EntityId kKinship[] = {KrGe::kEntity3d};
  static constexpr const char* kReportSource = "KrPointEnt3dImpl";
  static constexpr int kAssignLine = 14;
  KrPointEnt3dImpl() = default;
  explicit KrPointEnt3dImpl(const KrGePoint3d& point) : m_point(point) {}
  KrPointEnt3dImpl(const KrPointEnt3dImpl& source) = default;

  KrGe::EntityId type() const override { return KrGe::kPosition3d; }
  KrGeEntity3d* copy() const override;
  void assignData(const KrPointEnt3dImpl& source) { m_point = source.m_point; }
  bool equalData(const KrPointEnt3dImpl& other, const KrGeTol& tol) const { return m_point.isEqualTo(other.m_point, tol); }
  KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) override;
  bool isOn(const KrGePoint3d& point, const KrGeTol& tol) const override { return m_point.isEqualTo(point, tol); }

  const KrGePoint3d& point3d() const { return m_point; }
  void set(const KrGePoint3d& point) { m_point = point; }

private:
  KrGePoint3d m_point;
};
