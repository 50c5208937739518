// Implementation base of every curve. It adds no data; it declares the curve slots 14 to 59 in
// table order and supplies the generic algorithms that need only the concrete curve's
// evaluation, interval, closest point and parameter of a point. A concrete curve supplies the
// pure slots and may replace any generic one with an exact or faster version.
//
// Slots that hand the curve to a KrGePointOnCurve3d take the calling facade as `self`.
#pragma once

#include "KrGeCurve3d.h"
#include "KrGeInterval.h"
#include "KrsArray.h"
#include "entity/core/KrEnt3dImpl.h"
#include "entity/curve/curve_endpoints.h"

class KrGeCurve3dImpl : public KrEnt3dImpl {
public:
  // Slot 13 (generic): distanceTo(point, tol) <= tol.equalPoint().
  bool isOn(const KrGePoint3d& point, const KrGeTol& tol) const override;
  // Slot 14 (generic): getInterval(range), then the points at the bounds that exist.
  virtual void getInterval(KrGeInterval& range, KrGePoint3d& startPoint, KrGePoint3d& endPoint) const;
  // Slots 15 to 18 (pure).
  virtual void getInterval(KrGeInterval& range) const = 0;
  virtual KrGeCurve3dImpl& reverseParam() = 0;
  virtual bool setInterval(const KrGeInterval& range) = 0;
  virtual KrGeCurve3dImpl& setInterval() = 0;
  // Slots 19, 20 (generic): |p - q| of closestPointTo(curve2, q), |point - closestPointTo(point)|.
  virtual double distanceTo(const KrGeCurve3d& curve2, const KrGeTol& tol) const;
  virtual double distanceTo(const KrGePoint3d& point, const KrGeTol& tol) const;
  // Slots 21, 22 (pure).
  virtual KrGePoint3d closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv,
                                     const KrGeTol& tol) const = 0;
  virtual KrGePoint3d closestPointTo(const KrGePoint3d& point, const KrGeTol& tol) const = 0;
  // Slots 23, 24 (generic).
  virtual void getClosestPointTo(const KrGeCurve3d& self, const KrGeCurve3d& curve2,
                                 KrGePointOnCurve3d& pntOnThisCrv, KrGePointOnCurve3d& pntOnOtherCrv,
                                 const KrGeTol& tol) const;
  virtual void getClosestPointTo(const KrGeCurve3d& self, const KrGePoint3d& point,
                                 KrGePointOnCurve3d& pntOnCrv, const KrGeTol& tol) const;
  // Slots 25, 26 (pure).
  virtual KrGePoint3d projClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection,
                                         KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const = 0;
  virtual KrGePoint3d projClosestPointTo(const KrGePoint3d& point, const KrGeVector3d& projectDirection,
                                         const KrGeTol& tol) const = 0;
  // Slots 27, 28 (generic).
  virtual void getProjClosestPointTo(const KrGeCurve3d& self, const KrGeCurve3d& curve2,
                                     const KrGeVector3d& projectDirection, KrGePointOnCurve3d& pntOnThisCrv,
                                     KrGePointOnCurve3d& pntOnOtherCrv, const KrGeTol& tol) const;
  virtual void getProjClosestPointTo(const KrGeCurve3d& self, const KrGePoint3d& point,
                                     const KrGeVector3d& projectDirection, KrGePointOnCurve3d& pntOnCrv,
                                     const KrGeTol& tol) const;
  // Slot 29 (pure).
  virtual bool getNormalPoint(const KrGeCurve3d& self, const KrGePoint3d& point, KrGePointOnCurve3d& pntOnCrv,
                              const KrGeTol& tol) const = 0;
  // Slots 30 (pure), 31 (generic: the block of the curve's own interval).
  virtual KrGeBoundBlock3d boundBlock(const KrGeInterval& range) const = 0;
  virtual KrGeBoundBlock3d boundBlock() const;
  // Slots 32 (pure), 33 (generic).
  virtual KrGeBoundBlock3d orthoBoundBlock(const KrGeInterval& range) const = 0;
  virtual KrGeBoundBlock3d orthoBoundBlock() const;
  // Slot 34 (pure).
  virtual KrGeEntity3d* project(const KrGePlane& projectionPlane, const KrGeVector3d& projectDirection,
                                const KrGeTol& tol) const = 0;
  // Slot 35 (generic): project(plane, plane.normal(), tol).
  virtual KrGeEntity3d* orthoProject(const KrGePlane& projectionPlane, const KrGeTol& tol) const;
  // Slots 36, 37 (generic).
  virtual bool isOn(double param, const KrGeTol& tol) const;
  virtual bool isOn(const KrGePoint3d& point, double& param, const KrGeTol& tol) const;
  // Slots 38 to 53 (pure).
  virtual double paramOf(const KrGePoint3d& point, const KrGeTol& tol) const = 0;
  virtual void getTrimmedOffset(double distance, const KrGeVector3d& planeNormal,
                                KrsArray<void*>& offsetCurveList, KrGe::OffsetCrvExtType extensionType,
                                const KrGeTol& tol) const = 0;
  virtual bool isClosed(const KrGeTol& tol) const = 0;
  virtual bool isPlanar(KrGePlane& plane, const KrGeTol& tol) const = 0;
  virtual bool isLinear(KrGeLine3d& line, const KrGeTol& tol) const = 0;
  virtual bool isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const = 0;
  virtual bool isPeriodic(double& period) const = 0;
  virtual double length(double fromParam, double toParam, double tol) const = 0;
  virtual double paramAtLength(double datumParam, double length, bool posParamDir, double tol) const = 0;
  virtual bool area(double startParam, double endParam, double& value, const KrGeTol& tol) const = 0;
  virtual bool isDegenerate(KrGeEntity3d*& degenerateEntity, const KrGeTol& tol) const = 0;
  virtual bool isDegenerate(KrGe::EntityId& degenerateType, const KrGeTol& tol) const = 0;
  virtual void getSplitCurves(double param, KrGeCurve3d*& piece1, KrGeCurve3d*& piece2) const = 0;
  virtual bool explode(const KrGeCurve3d& self, KrsArray<void*>& explodedCurves,
                       KrsArray<int>& newExplodedCurve, const KrGeInterval* intrvl) const = 0;
  virtual void getLocalClosestPoints(const KrGeCurve3d& self, const KrGeCurve3d& curve2,
                                     KrGePointOnCurve3d& approxPnt1, KrGePointOnCurve3d& approxPnt2,
                                     const KrGeInterval* nbhd1, const KrGeInterval* nbhd2,
                                     const KrGeTol& tol) const = 0;
  virtual void getLocalClosestPoints(const KrGeCurve3d& self, const KrGePoint3d& point,
                                     KrGePointOnCurve3d& approxPnt, const KrGeInterval* nbhd,
                                     const KrGeTol& tol) const = 0;
  // Slots 54, 55 (generic): the point at the lower (upper) bound when the range has one.
  virtual bool hasStartPoint(KrGePoint3d& startPoint) const;
  virtual bool hasEndPoint(KrGePoint3d& endPoint) const;
  // Slot 56 (generic): evalPoint(param, 0, an empty derivative array of its own).
  virtual KrGePoint3d evalPoint(double param) const;
  // Slots 57 to 59 (pure).
  virtual KrGePoint3d evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const = 0;
  virtual void getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const = 0;
  virtual void getSamplePoints(double fromParam, double toParam, double approxEps,
                               KrsArray<KrGePoint3d>& pointArray, KrsArray<double>& paramArray) const = 0;

  // The end-point closest pair of two curves (entity/curve/curve_endpoints.h).
  static bool getEndPointsClosestPoints(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2,
                                        KrGePoint3d& point1, KrGePoint3d& point2, double* distance,
                                        const KrGeTol& tol) {
    return krEndPointsClosestPoints(curve1, curve2, point1, point2, distance, tol);
  }

  // The curve implementation behind a curve facade.
  static KrGeCurve3dImpl* curveImplOf(const KrGeCurve3d& curve) {
    return krImplAs<KrGeCurve3dImpl>(implOf(curve));
  }

  // Slot 4 stays KrEnt3dImpl's (copies nothing) until a concrete curve overrides it; the
  // class-typed form dispatches through slot 4 so that it never bypasses the override.
  using KrEnt3dImpl::operator=;
  KrGeCurve3dImpl& operator=(const KrGeCurve3dImpl& source) {
    static_cast<KrEnt3dImpl&>(*this) = source;
    return *this;
  }

protected:
  KrGeCurve3dImpl() = default;
  KrGeCurve3dImpl(const KrGeCurve3dImpl& source) = default;
};
