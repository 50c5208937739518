// Implementation of the circular arc: centre, unit normal, unit reference vector, radius, start
// angle and sweep (KrArcFrame), parametrised by the angle. The arc's own operations follow the
// curve slots.
#pragma once

#include "KrGeCircArc3d.h"
#include "KrGeLine3d.h"
#include "KrGePlanarEnt.h"
#include "entity/arc/arc_frame.h"
#include "entity/core/KrEntityKind.h"
#include "entity/curve/KrGeCurve3dImpl.h"

class KrCircArc3dImpl final : public KrEntityKind<KrCircArc3dImpl, KrGeCurve3dImpl> {
public:
  static constexpr KrGe::EntityId kKinship[] = {KrGe::kCurve3d, KrGe::kEntity3d};
  static constexpr const char* kReportSource = "KrCircArc3dImpl";
  static constexpr int kAssignLine = 180;
  // The most points getSamplePoints(numSample) produces, and the most derivatives evalPoint gives.
  static constexpr int kMaxSamples = 1 << 20;

  // The unit circle in the XY plane.
  KrCircArc3dImpl() = default;
  KrCircArc3dImpl(const KrGePoint3d& center, const KrGeVector3d& normal, double radius);
  KrCircArc3dImpl(const KrGePoint3d& center, const KrGeVector3d& normal, const KrGeVector3d& refVec, double radius,
                  double startAngle, double endAngle);
  KrCircArc3dImpl(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3);
  KrCircArc3dImpl(const KrCircArc3dImpl& source) = default;

  using KrGeCurve3dImpl::isOn;
  using KrGeCurve3dImpl::evalPoint;

  // Identity and data.
  KrGe::EntityId type() const override { return KrGe::kCircArc3d; }
  KrGeEntity3d* copy() const override;
  void assignData(const KrCircArc3dImpl& source) { m_arc = source.m_arc; }
  bool equalData(const KrCircArc3dImpl& other, const KrGeTol& tol) const;
  KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) override;

  // Curve slots.
  bool isOn(const KrGePoint3d& point, const KrGeTol& tol) const override;
  void getInterval(KrGeInterval& range) const override;
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
  double paramOf(const KrGePoint3d& point, const KrGeTol& tol) const override;
  void getTrimmedOffset(double distance, const KrGeVector3d& planeNormal, KrsArray<void*>& offsetCurveList,
                        KrGe::OffsetCrvExtType extensionType, const KrGeTol& tol) const override;
  bool isClosed(const KrGeTol& tol) const override;
  bool isPlanar(KrGePlane& plane, const KrGeTol& tol) const override;
  bool isLinear(KrGeLine3d& line, const KrGeTol& tol) const override;
  bool isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const override;
  bool isPeriodic(double& period) const override;
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
  KrGePoint3d evalPoint(double param) const override { return m_arc.pointAt(param); }
  KrGePoint3d evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const override;
  void getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const override;
  void getSamplePoints(double fromParam, double toParam, double approxEps, KrsArray<KrGePoint3d>& pointArray,
                       KrsArray<double>& paramArray) const override;

  // The arc's own operations.
  virtual KrGePoint3d closestPointToPlane(const KrGePlanarEnt& plane, KrGePoint3d& pointOnPlane,
                                          const KrGeTol& tol) const;
  virtual bool intersectWith(const KrGeLinearEnt3d& line, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                             const KrGeTol& tol) const;
  virtual bool intersectWith(const KrGePlanarEnt& plane, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                             const KrGeTol& tol) const;
  virtual bool intersectWith(const KrGeCircArc3d& arc, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                             const KrGeTol& tol) const;
  virtual bool projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir, int& numInt,
                                 KrGePoint3d& pntOnArc1, KrGePoint3d& pntOnArc2, KrGePoint3d& pntOnLine1,
                                 KrGePoint3d& pntOnLine2, const KrGeTol& tol) const;
  virtual bool tangent(const KrGePoint3d& point, KrGeLine3d& line, const KrGeTol& tol,
                       KrGe::ErrorCondition* status) const;
  virtual bool isInside(const KrGePoint3d& point, const KrGeTol& tol) const;
  virtual KrGePoint3d startPoint() const { return m_arc.pointAt(m_arc.startAng); }
  virtual KrGePoint3d endPoint() const { return m_arc.pointAt(m_arc.endAng()); }
  virtual void getPlane(KrGePlane& plane) const;
  virtual KrCircArc3dImpl& setCenter(const KrGePoint3d& center);
  virtual KrCircArc3dImpl& setRadius(double radius);
  virtual KrCircArc3dImpl& setAngles(double startAngle, double endAngle);
  virtual KrCircArc3dImpl& setAxes(const KrGeVector3d& normal, const KrGeVector3d& refVec);
  virtual KrCircArc3dImpl& set(const KrGePoint3d& center, const KrGeVector3d& normal, double radius);
  virtual KrCircArc3dImpl& set(const KrGePoint3d& center, const KrGeVector3d& normal, const KrGeVector3d& refVec,
                               double radius, double startAngle, double endAngle);
  virtual KrCircArc3dImpl& set(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3,
                               KrGe::ErrorCondition& status);
  virtual KrCircArc3dImpl& set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double radius,
                               double& param1, double& param2, bool& success);
  virtual KrCircArc3dImpl& set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeCurve3d& curve3,
                               double& param1, double& param2, double& param3, bool& success);

  // The arc as plain data for the arc maths and the relation solvers.
  const KrArcFrame& frame() const { return m_arc; }
  // The arc implementation behind an arc facade.
  static const KrCircArc3dImpl& of(const KrGeCircArc3d& arc) { return *krImplAs<const KrCircArc3dImpl>(implOf(arc)); }

private:
  // A new arc facade holding `frame` as it is (no setter rules applied).
  static KrGeCircArc3d* makeArc(const KrArcFrame& frame);
  // The point of the arc nearest to `point` with the axis rule of tol.equalPoint().
  KrGePoint3d nearest(const KrGePoint3d& point, const KrGeTol& tol, double* param) const;

  KrArcFrame m_arc;
};
