// Implementation of KrGeCurveCurveInt3d: the two borrowed curves with their ranges, the plane
// normal and tolerance of the request, and up to four points found by the computation (slot 36).
// Slots 14 to 36 follow the entity slots in the order of the facade's operations.
#pragma once

#include "KrGeCurve3d.h"
#include "KrGeInterval.h"
#include "entity/core/KrEntityKind.h"

class KrCurveCurveInt3dImpl final : public KrEntityKind<KrCurveCurveInt3dImpl, KrEnt3dImpl> {
public:
  static constexpr KrGe::EntityId kKinship[] = {KrGe::kEntity3d};
  static constexpr const char* kReportSource = "KrCurveCurveInt3dImpl";
  static constexpr int kAssignLine = 52;
  static constexpr int kMaxPoints = 4;

  KrCurveCurveInt3dImpl();
  KrCurveCurveInt3dImpl(const KrCurveCurveInt3dImpl& source) = default;

  KrGe::EntityId type() const override { return KrGe::kCurveCurveInt3d; }
  KrGeEntity3d* copy() const override;
  void assignData(const KrCurveCurveInt3dImpl& source);
  bool equalData(const KrCurveCurveInt3dImpl& other, const KrGeTol& tol) const;
  KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) override;
  bool isOn(const KrGePoint3d& point, const KrGeTol& tol) const override;

  // Slots 14 to 36.
  virtual const KrGeCurve3d* curve1() const { return m_pCurve1; }
  virtual const KrGeCurve3d* curve2() const { return m_pCurve2; }
  virtual void getIntRanges(KrGeInterval& range1, KrGeInterval& range2) const;
  virtual KrGeVector3d planeNormal() const { return m_planeNormal; }
  virtual KrGeTol tolerance() const { return m_tol; }
  virtual int numIntPoints() const { return m_numIntPoints; }
  virtual KrGePoint3d intPoint(int intNum) const;
  virtual void getIntParams(int intNum, double& param1, double& param2) const;
  virtual void getPointOnCurve1(int intNum, KrGePointOnCurve3d& intPnt) const;
  virtual void getPointOnCurve2(int intNum, KrGePointOnCurve3d& intPnt) const;
  virtual void getIntConfigs(int intNum, KrGe::KrGeXConfig& config1wrt2, KrGe::KrGeXConfig& config2wrt1) const;
  virtual bool isTangential(int intNum) const;
  virtual bool isTransversal(int intNum) const;
  virtual double intPointTol(int intNum) const;
  virtual int overlapCount() const;
  virtual bool overlapDirection() const;
  virtual void getOverlapRanges(int overlapNum, KrGeInterval& range1, KrGeInterval& range2) const;
  virtual void changeCurveOrder() { m_orderReversed = !m_orderReversed; }
  virtual void orderWrt1();
  virtual void orderWrt2();
  virtual void set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeInterval& range1,
                   const KrGeInterval& range2, const KrGeVector3d& planeNormal, const KrGeTol& tol);
  virtual void set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeVector3d& planeNormal,
                   const KrGeTol& tol);
  virtual void calculate();

private:
  // The stored slot read for index intNum in the present order, or -1 when there is none.
  int slotOf(int intNum) const;
  // The point of index intNum, the origin where no slot is stored (no report).
  KrGePoint3d pointAt(int intNum) const;
  // The parameters of the point of index intNum on both curves (KrGeContext::gTol); false
  // without curves or without a point there.
  bool paramsOf(int intNum, double& param1, double& param2) const;
  // Reverses the reading order when the second point comes before the first on curve 1.
  void orderByCurve1();

  KrGeVector3d m_planeNormal;
  const KrGeCurve3d* m_pCurve1 = nullptr;
  const KrGeCurve3d* m_pCurve2 = nullptr;
  // Carried with the object and copied; no operation reads it.
  double m_block[4][4] = {};
  KrGeInterval m_range1;
  KrGeInterval m_range2;
  KrGeTol m_tol;
  int m_numIntPoints = 0;
  bool m_orderReversed = false;
  KrGePoint3d m_points[kMaxPoints];
};
