// Implementation of KrGeBoundBlock3d: the block solid (KrBlock3d, a plain value that curves can
// also build and return without the entity frame) inside the frame's implementation root, so
// that a block facade is copied, assigned, compared and transformed exactly like every other
// entity. Nothing ever registers in a block's owner registry; it costs no memory while empty.
#pragma once

#include "entity/bound/KrBlock3d.h"
#include "entity/core/KrEntityKind.h"

class KrBoundBlock3dImpl final : public KrEntityKind<KrBoundBlock3dImpl, KrEnt3dImpl> {
public:
  static constexpr KrGe::EntityId kKinship[] = {KrGe::kEntity3d};
  static constexpr const char* kReportSource = "KrBoundBlock3dImpl";
  static constexpr int kAssignLine = 14;
  KrBoundBlock3dImpl() = default;
  explicit KrBoundBlock3dImpl(const KrBlock3d& block) : m_block(block) {}
  KrBoundBlock3dImpl(const KrBoundBlock3dImpl& source) = default;

  KrGe::EntityId type() const override { return KrGe::kBoundBlock3d; }
  KrGeEntity3d* copy() const override;
  void assignData(const KrBoundBlock3dImpl& source) { m_block = source.m_block; }
  bool equalData(const KrBoundBlock3dImpl& other, const KrGeTol& tol) const { return m_block.isEqualTo(other.m_block, tol); }
  KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) override;
  // The point lies in the solid within tol.equalPoint().
  bool isOn(const KrGePoint3d& point, const KrGeTol& tol) const override;

  const KrBlock3d& block() const { return m_block; }
  KrBlock3d& block() { return m_block; }

  void getMinMaxPoints(KrGePoint3d& point1, KrGePoint3d& point2) const { m_block.getMinMax(point1, point2); }
  void get(KrGePoint3d& base, KrGeVector3d& dir1, KrGeVector3d& dir2, KrGeVector3d& dir3) const {
    m_block.get(base, dir1, dir2, dir3);
  }
  void set(const KrGePoint3d& point1, const KrGePoint3d& point2) { m_block.setBox(point1, point2); }
  void set(const KrGePoint3d& base, const KrGeVector3d& dir1, const KrGeVector3d& dir2, const KrGeVector3d& dir3) {
    m_block.setParallelepiped(base, dir1, dir2, dir3);
  }
  void extend(const KrGePoint3d& point) { m_block.extend(point); }
  void swell(double distance) { m_block.swell(distance); }
  bool contains(const KrGePoint3d& point) const { return m_block.contains(point, KrGeContext::gTol.equalPoint()); }
  bool isDisjoint(const KrBoundBlock3dImpl& other) const {
    return m_block.isDisjoint(other.m_block, KrGeContext::gTol.equalPoint());
  }
  bool isBox() const { return m_block.isBox(); }
  void setToBox(bool toBox) { m_block.setToBox(toBox); }
  bool isEmpty() const { return m_block.isEmpty(); }

private:
  KrBlock3d m_block;
};
