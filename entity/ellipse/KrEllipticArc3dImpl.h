// Implementation of the elliptical arc: centre, unit major and minor axes, radii, start angle and
// sweep (KrEllipseFrame), parametrised by the eccentric angle. The maths is in the free functions
// of this folder (length, nearest points, principal axes, intersections); the pairs with other
// curve kinds are rows of the relation layer.
#pragma once

#include "KrGeEllipArc3d.h"
#include "KrGeLine3d.h"
#include "KrGePlanarEnt.h"
#include "entity/core/KrEntityKind.h"
#include "entity/curve/KrGeCurve3dImpl.h"
#include "entity/ellipse/ellipse_frame.h"

class KrEllipticArc3dImpl final : public KrEntityKind<KrEllipticArc3dImpl, KrGeCurve3dImpl> {
public:
  static constexpr KrGe::EntityId kKinship[] = {KrGe::kCurve3d, KrGe::kEntity3d};
  static constexpr const char* kReportSource = "KrEllipArc3dImpl";
  static constexpr int kAssignLine = 160;

  // The unit circle in the XY plane.
  KrEllipticArc3dImpl() = default;
  explicit KrEllipticArc3dImpl(const KrEllipseFrame& frame) : m_frame(frame) {}
  KrEllipticArc3dImpl(const KrEllipticArc3dImpl& source) = default;

  using KrGeCurve3dImpl::isOn;
  using KrGeCurve3dImpl::evalPoint;

  // Identity and data.
  KrGe::EntityId type() const override { return KrGe::kEllipArc3d; }
  KrGeEntity3d* copy() const override;
  void assignData(const KrEllipticArc3dImpl& source) { m_frame = source.m_frame; }
  bool equalData(const KrEllipticArc3dImpl& other, const KrGeTol& tol) const;
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
  KrGePoint3d evalPoint(double param) const override { return m_frame.pointAt(param); }
  KrGePoint3d evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const override;
  void getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const override;
  void getSamplePoints(double fromParam, double toParam, double approxEps, KrsArray<KrGePoint3d>& pointArray,
                       KrsArray<double>& paramArray) const override;

  // The ellipse's own operations.
  virtual KrGePoint3d closestPointToPlane(const KrGePlanarEnt& plane, KrGePoint3d& pointOnPlane,
                                          const KrGeTol& tol) const;
  virtual bool intersectWith(const KrGeLinearEnt3d& line, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                             const KrGeTol& tol) const;
  virtual bool intersectWith(const KrGePlanarEnt& plane, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                             const KrGeTol& tol) const;
  virtual bool projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir, int& numInt,
                                 KrGePoint3d& pntOnEllipse1, KrGePoint3d& pntOnEllipse2, KrGePoint3d& pntOnLine1,
                                 KrGePoint3d& pntOnLine2, const KrGeTol& tol) const;
  virtual bool isCircular(const KrGeTol& tol) const;
  virtual bool isInside(const KrGePoint3d& point, const KrGeTol& tol) const;
  virtual KrGePoint3d startPoint() const { return m_frame.pointAt(m_frame.startAng); }
  virtual KrGePoint3d endPoint() const { return m_frame.pointAt(m_frame.endAng()); }
  virtual void getPlane(KrGePlane& plane) const;
  virtual KrEllipticArc3dImpl& setCenter(const KrGePoint3d& center);
  virtual KrEllipticArc3dImpl& setMajorRadius(double radius);
  virtual KrEllipticArc3dImpl& setMinorRadius(double radius);
  virtual KrEllipticArc3dImpl& setAxes(const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis);
  virtual KrEllipticArc3dImpl& setAngles(double startAngle, double endAngle);
  virtual KrEllipticArc3dImpl& set(const KrGePoint3d& center, const KrGeVector3d& majorAxis,
                                   const KrGeVector3d& minorAxis, double majorRadius, double minorRadius);
  virtual KrEllipticArc3dImpl& set(const KrGePoint3d& center, const KrGeVector3d& majorAxis,
                                   const KrGeVector3d& minorAxis, double majorRadius, double minorRadius,
                                   double startAngle, double endAngle);
  virtual KrEllipticArc3dImpl& set(const KrGeCircArc3d& arc);

  // The ellipse as plain data for the ellipse maths and the relation solvers.
  const KrEllipseFrame& frame() const { return m_frame; }
  // Replaces the whole frame as given (callers keep its invariants).
  void setFrame(const KrEllipseFrame& frame) { m_frame = frame; }
  // The ellipse implementation behind an ellipse facade.
  static const KrEllipticArc3dImpl& of(const KrGeEllipArc3d& ellipse) {
    return *krImplAs<const KrEllipticArc3dImpl>(implOf(ellipse));
  }
private:
  // Exchanges the axes when the minor radius exceeds the major one (see the public contract).
  void orderRadii();

  KrEllipseFrame m_frame;
};
