// Public base of every 3D curve: an abstract facade over a curve implementation. It adds no data;
// each operation forwards to the implementation of the concrete curve.
#pragma once

#include "KrGeBoundBlock3d.h"
#include "KrGeEntity3d.h"
#include "KrGeInterval.h"
#include "KrsArray.h"

class KrGeCurve3dImpl;

// Parameters are model-independent doubles; the parameter range is a KrGeInterval (an infinite
// line's is unbounded). Point tolerances (tol.equalPoint()) are model-space distances, "<="
// counting as within. Operations that return a new entity or fill a list of curves hand
// ownership of the new facades to the caller (delete them with delete).
// Evaluation and query operations are const: they never change the curve.
// Hostile input: each kind states the limits of its derivative orders and sample counts; no call
// hands out more than 2^20 of either, and a request beyond a limit is reported and answered
// neutrally or lowered to the limit, as noted below. Nothing throws, except that an operation
// filling a KrsArray (evalPoint with derivatives, getSamplePoints, explode, getTrimmedOffset)
// throws KrsException(kOutOfMemory) when that array cannot grow; the array is then left valid.
class KRGEL_API KrGeCurve3d : public KrGeEntity3d {
public:
  using KrGeEntity3d::operator=;

  // DistanceTo(point, tol) <= tol.equalPoint().
  bool isOn(const KrGePoint3d& point, const KrGeTol& tol = KrGeContext::gTol) const override;
  // The range and the points at its bounds; a point whose bound is missing is left as
  // it was.
  virtual void getInterval(KrGeInterval& range, KrGePoint3d& startPoint, KrGePoint3d& endPoint) const;
  // The parameter range.
  virtual void getInterval(KrGeInterval& range) const;
  // Reverses the direction of parametrisation (each kind states what happens to its
  // range).
  virtual KrGeCurve3d& reverseParam();
  // Restricts or extends the range; false when the kind refuses it (nothing changes).
  virtual bool setInterval(const KrGeInterval& range);
  // The curve's natural range.
  virtual KrGeCurve3d& setInterval();
  // |p - q| of the closest pair with curve2.
  virtual double distanceTo(const KrGeCurve3d& curve2, const KrGeTol& tol = KrGeContext::gTol) const;
  // Distance from the point to closestPointTo(point).
  virtual double distanceTo(const KrGePoint3d& point, const KrGeTol& tol = KrGeContext::gTol) const;
  // The closest pair between the two curves; answers the point on this curve and
  // writes the one on curve2.
  virtual KrGePoint3d closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv,
                                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The point of this curve nearest to `point`.
  virtual KrGePoint3d closestPointTo(const KrGePoint3d& point, const KrGeTol& tol = KrGeContext::gTol) const;
  // The closest pair with curve2 as points on curves; both parameters are found with tol.
  virtual void getClosestPointTo(const KrGeCurve3d& curve2, KrGePointOnCurve3d& pntOnThisCrv,
                                 KrGePointOnCurve3d& pntOnOtherCrv,
                                 const KrGeTol& tol = KrGeContext::gTol) const;
  // The closest point as a point on this curve. The parameter is found with
  // KrGeContext::gTol whatever tol is (deliberate).
  virtual void getClosestPointTo(const KrGePoint3d& point, KrGePointOnCurve3d& pntOnCrv,
                                 const KrGeTol& tol = KrGeContext::gTol) const;
  // The closest pair as seen along projectDirection (distances measured in the plane
  // perpendicular to it); answers the point on this curve, writes the one on curve2.
  virtual KrGePoint3d projClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection,
                                         KrGePoint3d& pntOnOtherCrv,
                                         const KrGeTol& tol = KrGeContext::gTol) const;
  // The point of this curve that looks nearest to `point` along projectDirection.
  virtual KrGePoint3d projClosestPointTo(const KrGePoint3d& point, const KrGeVector3d& projectDirection,
                                         const KrGeTol& tol = KrGeContext::gTol) const;
  // The projected closest pair (point) as points on curves; parameters found with
  // KrGeContext::gTol.
  virtual void getProjClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection,
                                     KrGePointOnCurve3d& pntOnThisCrv, KrGePointOnCurve3d& pntOnOtherCrv,
                                     const KrGeTol& tol = KrGeContext::gTol) const;
  virtual void getProjClosestPointTo(const KrGePoint3d& point, const KrGeVector3d& projectDirection,
                                     KrGePointOnCurve3d& pntOnCrv,
                                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The foot of the perpendicular from the point, as a point on this curve.
  virtual bool getNormalPoint(const KrGePoint3d& point, KrGePointOnCurve3d& pntOnCrv,
                              const KrGeTol& tol = KrGeContext::gTol) const;
  // Parallel projection onto the plane along projectDirection: a new entity (a curve,
  // or a point entity when the curve collapses), null when no projection exists. Caller owns it.
  virtual KrGeEntity3d* project(const KrGePlane& projectionPlane, const KrGeVector3d& projectDirection,
                                const KrGeTol& tol = KrGeContext::gTol) const;
  // Project(plane, plane.normal(), tol).
  virtual KrGeEntity3d* orthoProject(const KrGePlane& projectionPlane,
                                     const KrGeTol& tol = KrGeContext::gTol) const;
  // IsOn(evalPoint(param), tol).
  virtual bool isOn(double param, const KrGeTol& tol = KrGeContext::gTol) const;
  // IsOn(point, tol); when on, param = paramOf(point, KrGeContext::gTol), else 0.
  virtual bool isOn(const KrGePoint3d& point, double& param, const KrGeTol& tol = KrGeContext::gTol) const;
  // The parameter of a point of the curve.
  virtual double paramOf(const KrGePoint3d& point, const KrGeTol& tol = KrGeContext::gTol) const;
  // The curve offset by `distance` in the plane with normal planeNormal; new curves
  // are appended to offsetCurveList (caller owns them).
  virtual void getTrimmedOffset(double distance, const KrGeVector3d& planeNormal,
                                KrsArray<void*>& offsetCurveList,
                                KrGe::OffsetCrvExtType extensionType = KrGe::kFillet,
                                const KrGeTol& tol = KrGeContext::gTol) const;
  // Start and end coincide.
  virtual bool isClosed(const KrGeTol& tol = KrGeContext::gTol) const;
  // The curve lies in a plane, written to `plane`.
  virtual bool isPlanar(KrGePlane& plane, const KrGeTol& tol = KrGeContext::gTol) const;
  // The curve lies on a line, written to `line`.
  virtual bool isLinear(KrGeLine3d& line, const KrGeTol& tol = KrGeContext::gTol) const;
  // Both curves lie in one plane, written to `plane`.
  virtual bool isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane,
                              const KrGeTol& tol = KrGeContext::gTol) const;
  // Periodic, with its period.
  virtual bool isPeriodic(double& period) const;
  // Arc length between two parameters (tol: the accuracy asked of numerical kinds).
  virtual double length(double fromParam, double toParam, double tol = KrGeContext::gTol.equalPoint()) const;
  // The parameter at arc length `length` from datumParam, forwards or backwards.
  virtual double paramAtLength(double datumParam, double length, bool posParamDir = true,
                               double tol = KrGeContext::gTol.equalPoint()) const;
  // Area between the curve and its chord over [startParam, endParam].
  virtual bool area(double startParam, double endParam, double& value,
                    const KrGeTol& tol = KrGeContext::gTol) const;
  // The curve collapses within tol; the first form also makes a new entity of the
  // collapsed kind (caller owns it; null when not degenerate).
  virtual bool isDegenerate(KrGeEntity3d*& degenerateEntity, const KrGeTol& tol = KrGeContext::gTol) const;
  virtual bool isDegenerate(KrGe::EntityId& degenerateType, const KrGeTol& tol = KrGeContext::gTol) const;
  // Two new curves split at `param` (caller owns them; a missing piece is null).
  virtual void getSplitCurves(double param, KrGeCurve3d*& piece1, KrGeCurve3d*& piece2) const;
  // The elementary pieces of the curve (restricted to intrvl when given). Entries
  // flagged 1 in newExplodedCurve are new curves the caller owns; entries flagged 0 point at
  // existing curves (possibly this one).
  virtual bool explode(KrsArray<void*>& explodedCurves, KrsArray<int>& newExplodedCurve,
                       const KrGeInterval* intrvl = nullptr) const;
  // The closest pair (point) near given approximations, searching within the
  // parameter neighbourhoods when given; results are written to the points on curves.
  virtual void getLocalClosestPoints(const KrGeCurve3d& curve2, KrGePointOnCurve3d& approxPnt1,
                                     KrGePointOnCurve3d& approxPnt2, const KrGeInterval* nbhd1 = nullptr,
                                     const KrGeInterval* nbhd2 = nullptr,
                                     const KrGeTol& tol = KrGeContext::gTol) const;
  virtual void getLocalClosestPoints(const KrGePoint3d& point, KrGePointOnCurve3d& approxPnt,
                                     const KrGeInterval* nbhd = nullptr,
                                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The range is bounded below (above); the point at that bound. An open side
  // answers false and leaves the point as it was.
  virtual bool hasStartPoint(KrGePoint3d& startPoint) const;
  virtual bool hasEndPoint(KrGePoint3d& endPoint) const;
  // The point at param and, in derivArray (resized to numDeriv), its first numDeriv
  // derivatives with respect to the parameter. A negative numDeriv reports "(numDeriv<0)" and
  // empties the array; lines and segments report one above 256 as "(numDeriv>kMaxDerivOrder)" and
  // empty the array too (arcs: their own limit). The point is always given.
  virtual KrGePoint3d evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const;
  // The point at param.
  virtual KrGePoint3d evalPoint(double param) const;
  // NumSample points spread evenly over the range; for lines and segments fewer than 2 are
  // reported and raised to 2, more than 2^20 reported "(numSample>kMaxSampleCount)" and lowered
  // to 2^20 (arcs: their own rules).
  virtual void getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const;
  // Points and parameters over [fromParam, toParam] whose chords deviate from the
  // curve by at most approxEps.
  virtual void getSamplePoints(double fromParam, double toParam, double approxEps,
                               KrsArray<KrGePoint3d>& pointArray, KrsArray<double>& paramArray) const;
  // Copies nothing, deliberately: assigning curves through KrGeCurve3d references
  // leaves the target unchanged. Assign through KrGeEntity3d& or the concrete class.
  virtual KrGeCurve3d& operator=(const KrGeCurve3d& curve);

  // Bounding blocks of the whole curve or of a parameter range: boundBlock follows the curve
  // (a parallelepiped where that fits it better), orthoBoundBlock is axis-aligned.
  KrGeBoundBlock3d boundBlock() const;
  KrGeBoundBlock3d boundBlock(const KrGeInterval& range) const;
  KrGeBoundBlock3d orthoBoundBlock() const;
  KrGeBoundBlock3d orthoBoundBlock(const KrGeInterval& range) const;

protected:
  KrGeCurve3d();
  // Shallow, as KrGeEntity3d's: for derived classes only.
  KrGeCurve3d(const KrGeCurve3d& curve);

private:
  KrGeCurve3dImpl* impl() const;
};
