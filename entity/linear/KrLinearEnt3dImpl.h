// The one implementation of lines and segments: origin + t * direction over an interval, with a
// flag telling an infinite line (interval unbounded on both sides) from a segment (bounded,
// lower <= upper, [0, 1] unless set otherwise). Slots 60 to 82 follow the curve slots.
#pragma once

#include "KrGeInterval.h"
#include "KrGeLinearEnt3d.h"
#include "entity/core/KrEntityKind.h"
#include "entity/curve/KrGeCurve3dImpl.h"
#include "entity/linear/linear_closest.h"

class KrLinearEnt3dImpl final : public KrEntityKind<KrLinearEnt3dImpl, KrGeCurve3dImpl> {
public:
  static constexpr KrGe::EntityId kKinship[] = {KrGe::kLinearEnt3d, KrGe::kCurve3d, KrGe::kEntity3d};
  static constexpr const char* kReportSource = "KrLinearEnt3dImpl";
  static constexpr int kAssignLine = 73;
  // Origin kOrigin, direction kXAxis, the natural interval of the kind.
  explicit KrLinearEnt3dImpl(bool unbounded);
  KrLinearEnt3dImpl(const KrGePoint3d& pnt, const KrGeVector3d& vec, bool unbounded);
  KrLinearEnt3dImpl(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2, bool unbounded);
  KrLinearEnt3dImpl(const KrLinearEnt3dImpl& source) = default;

  using KrGeCurve3dImpl::isOn;
  using KrGeCurve3dImpl::length;

  // Identity, copy and data of the kind (the preamble is KrEntityKind's).
  KrGe::EntityId type() const override { return m_unbounded ? KrGe::kLine3d : KrGe::kLineSeg3d; }
  KrGeEntity3d* copy() const override;
  void assignData(const KrLinearEnt3dImpl& source);
  // Same flag, origins and directions equal within tol, intervals equal at both ends.
  bool equalData(const KrLinearEnt3dImpl& other, const KrGeTol& tol) const;
  KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) override;

  // Curve slots 15 to 59.
  void getInterval(KrGeInterval& range) const override { range = m_interval; }
  KrGeCurve3dImpl& reverseParam() override;
  bool setInterval(const KrGeInterval& range) override;
  KrGeCurve3dImpl& setInterval() override;
  KrGePoint3d closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv,
                             const KrGeTol& tol) const override;
  KrGePoint3d closestPointTo(const KrGePoint3d& point, const KrGeTol& tol) const override;
  KrGePoint3d projClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection,
                                 KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const override;
  KrGePoint3d projClosestPointTo(const KrGePoint3d& point, const KrGeVector3d& projectDirection,
                                 const KrGeTol& tol) const override;
  bool getNormalPoint(const KrGeCurve3d& self, const KrGePoint3d& point, KrGePointOnCurve3d& pntOnCrv,
                      const KrGeTol& tol) const override;
  KrGeBoundBlock3d boundBlock(const KrGeInterval& range) const override;
  KrGeBoundBlock3d orthoBoundBlock(const KrGeInterval& range) const override;
  KrGeEntity3d* project(const KrGePlane& projectionPlane, const KrGeVector3d& projectDirection,
                        const KrGeTol& tol) const override;
  double paramOf(const KrGePoint3d& point, const KrGeTol&) const override {
    return m_direction.dotProduct(point - m_origin) / m_direction.dotProduct(m_direction);
  }
  void getTrimmedOffset(double distance, const KrGeVector3d& planeNormal, KrsArray<void*>& offsetCurveList,
                        KrGe::OffsetCrvExtType extensionType, const KrGeTol& tol) const override;
  bool isClosed(const KrGeTol&) const override { return false; }
  bool isPlanar(KrGePlane& plane, const KrGeTol& tol) const override;
  bool isLinear(KrGeLine3d& line, const KrGeTol& tol) const override;
  bool isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const override;
  bool isPeriodic(double&) const override { return false; }
  double length(double fromParam, double toParam, double tol) const override;
  double paramAtLength(double datumParam, double length, bool posParamDir, double tol) const override;
  bool area(double startParam, double endParam, double& value, const KrGeTol& tol) const override;
  bool isDegenerate(KrGeEntity3d*& degenerateEntity, const KrGeTol& tol) const override;
  bool isDegenerate(KrGe::EntityId& degenerateType, const KrGeTol& tol) const override;
  void getSplitCurves(double param, KrGeCurve3d*& piece1, KrGeCurve3d*& piece2) const override;
  bool explode(const KrGeCurve3d& self, KrsArray<void*>& explodedCurves, KrsArray<int>& newExplodedCurve,
               const KrGeInterval* intrvl) const override;
  void getLocalClosestPoints(const KrGeCurve3d& self, const KrGeCurve3d& curve2, KrGePointOnCurve3d& approxPnt1,
                             KrGePointOnCurve3d& approxPnt2, const KrGeInterval* nbhd1,
                             const KrGeInterval* nbhd2, const KrGeTol& tol) const override;
  void getLocalClosestPoints(const KrGeCurve3d& self, const KrGePoint3d& point, KrGePointOnCurve3d& approxPnt,
                             const KrGeInterval* nbhd, const KrGeTol& tol) const override;
  // Slot 56 replaced by the closed form (no shared array).
  KrGePoint3d evalPoint(double param) const override { return m_origin + m_direction * param; }
  KrGePoint3d evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const override;
  void getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const override;
  void getSamplePoints(double fromParam, double toParam, double approxEps, KrsArray<KrGePoint3d>& pointArray,
                       KrsArray<double>& paramArray) const override;

  // Linear slots 60 to 82.
  virtual double length() const;
  virtual bool intersectWith(const KrGeLinearEnt3d& self, const KrGePlanarEnt& plane, KrGePoint3d& intPnt,
                             const KrGeTol& tol) const;
  virtual bool intersectWith(const KrGeLinearEnt3d& line, KrGePoint3d& intPnt, const KrGeTol& tol) const;
  virtual bool overlap(const KrGeLinearEnt3d& line, KrGeLinearEnt3d*& overlap, const KrGeTol& tol) const;
  virtual bool isOn(const KrGePlane& plane, const KrGeTol& tol) const;
  virtual bool isParallelTo(const KrGePlanarEnt& plane, const KrGeTol& tol) const;
  virtual bool isParallelTo(const KrGeLinearEnt3d& line, const KrGeTol& tol, bool colinear) const;
  virtual bool isPerpendicularTo(const KrGePlanarEnt& plane, const KrGeTol& tol) const;
  virtual bool isPerpendicularTo(const KrGeLinearEnt3d& line, const KrGeTol& tol) const;
  virtual void getPerpPlane(const KrGePoint3d& point, KrGePlane& plane) const;
  virtual KrGePoint3d pointOnLine() const { return m_origin; }
  virtual KrGeVector3d direction() const { return m_direction.normal(KrGeContext::gTol); }
  virtual void getLine(KrGeLine3d& line) const;
  virtual bool projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir,
                                 KrGePoint3d& pntOnThisLine, KrGePoint3d& pntOnOtherLine,
                                 const KrGeTol& tol) const;
  virtual void getBisector(KrGePlane& plane) const;
  virtual KrGePoint3d baryComb(double blendCoeff) const { return evalPoint(blendCoeff); }
  virtual KrGePoint3d startPoint() const;
  virtual KrGePoint3d midPoint() const;
  virtual KrGePoint3d endPoint() const;
  virtual KrLinearEnt3dImpl& set(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2, bool unbounded);
  virtual KrLinearEnt3dImpl& set(const KrGePoint3d& pnt, const KrGeVector3d& vec, bool unbounded);
  virtual KrLinearEnt3dImpl& set(const KrGeCurve3d& curve, const KrGePoint3d& point, double& param,
                                 bool& success);
  virtual KrLinearEnt3dImpl& set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double& param1,
                                 double& param2, bool& success);

  // The linear implementation behind a linear facade.
  static const KrLinearEnt3dImpl& of(const KrGeLinearEnt3d& line) {
    return *krImplAs<const KrLinearEnt3dImpl>(implOf(line));
  }
  // The linear implementation behind a curve facade, or null for other kinds.
  static const KrLinearEnt3dImpl* linearOf(const KrGeCurve3d& curve) {
    const KrEnt3dImpl* impl = implOf(curve);
    return impl && impl->isKindOf(KrGe::kLinearEnt3d) ? static_cast<const KrLinearEnt3dImpl*>(impl) : nullptr;
  }

  // The entity as a span for the closest-point maths (open sides at infinity).
  KrLinearSpan span() const {
    KrLinearSpan result;
    result.origin = m_origin;
    result.direction = m_direction;
    result.lower = m_lower;
    result.upper = m_upper;
    return result;
  }
  bool isUnbounded() const { return m_unbounded; }
  const KrGePoint3d& origin() const { return m_origin; }
  const KrGeVector3d& rawDirection() const { return m_direction; }
  const KrGeInterval& interval() const { return m_interval; }

private:
  // A new facade of this entity's kind holding a copy with another origin/direction/interval.
  KrGeLinearEnt3d* makeLike(const KrGePoint3d& origin, const KrGeVector3d& direction,
                            const KrGeInterval& interval) const;
  bool directionIsZero() const { return m_direction.x == 0.0 && m_direction.y == 0.0 && m_direction.z == 0.0; }
  // Copies the interval's bounds and tolerance into the fields read by the closed forms; called
  // after every change of the interval or of the flag.
  void refreshBounds();

  KrGePoint3d m_origin;
  KrGeVector3d m_direction;
  KrGeInterval m_interval;
  bool m_unbounded;
  // The interval as the hot closed forms read it, without calls: its bounds (infinite on open
  // sides, always for a line) and its tolerance. Derived from m_interval, never set on their own.
  double m_lower = 0.0;
  double m_upper = 1.0;
  double m_paramTol = 1e-12;
};
