// Implementation of KrGePointEnt3d: one position.
#pragma once

#include "entity/core/KrEnt3dImpl.h"

class KrPointEnt3dImpl final : public KrEnt3dImpl {
public:
  KrPointEnt3dImpl() = default;
  explicit KrPointEnt3dImpl(const KrGePoint3d& point) : m_point(point) {}
  KrPointEnt3dImpl(const KrPointEnt3dImpl& source) : KrEnt3dImpl(source), m_point(source.m_point) {}

  bool isKindOf(KrGe::EntityId entType) const override;
  KrGe::EntityId type() const override { return KrGe::kPosition3d; }
  KrGeEntity3d* copy() const override;
  KrEnt3dImpl& operator=(const KrEnt3dImpl& entImpl) override;
  bool isEqualTo(const KrGeEntity3d& entity, const KrGeTol& tol) const override;
  KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) override;
  bool isOn(const KrGePoint3d& point, const KrGeTol& tol) const override { return m_point.isEqualTo(point, tol); }

  const KrGePoint3d& point3d() const { return m_point; }
  void set(const KrGePoint3d& point) { m_point = point; }

private:
  KrGePoint3d m_point;
};
