// Implementation base of every surface: slots 14 to 26 after the entity slots, with generic
// versions of the queries that follow from evaluation and the closest point.
#pragma once

#include "KrGeInterval.h"
#include "KrGePoint2d.h"
#include "KrGeSurface.h"
#include "KrsArray.h"
#include "entity/core/KrEnt3dImpl.h"

class KrSurfaceImpl : public KrEnt3dImpl {
public:
  // Slot 13 (generic): distanceTo(point, tol) <= tol.equalPoint().
  bool isOn(const KrGePoint3d& point, const KrGeTol& tol) const override;
  // Slot 14.
  virtual KrGePoint2d paramOf(const KrGePoint3d& point, const KrGeTol& tol) const = 0;
  // Slot 15 (generic): paramPoint := (0, 0); when isOn(point, tol), paramPoint := paramOf(point, tol).
  virtual bool isOn(const KrGePoint3d& point, KrGePoint2d& paramPoint, const KrGeTol& tol) const;
  // Slot 16 (generic): both envelope intervals contain their parameter.
  virtual bool isInside(const KrGePoint2d& param, const KrGeTol& tol) const;
  // Slot 17.
  virtual KrGePoint3d closestPointTo(const KrGePoint3d& point, const KrGeTol& tol) const = 0;
  // Slot 18 (generic): |point - closestPointTo(point, tol)|.
  virtual double distanceTo(const KrGePoint3d& point, const KrGeTol& tol) const;
  // Slots 19 to 23.
  virtual bool isNormalReversed() const = 0;
  virtual KrSurfaceImpl& reverseNormal() = 0;
  virtual void getEnvelope(KrGeInterval& intrvlU, KrGeInterval& intrvlV) const = 0;
  virtual bool isClosedInU(const KrGeTol& tol) const = 0;
  virtual bool isClosedInV(const KrGeTol& tol) const = 0;
  // Slots 24, 25 (generic): slot 26 without derivatives or without the normal.
  virtual KrGePoint3d evalPoint(const KrGePoint2d& param) const;
  virtual KrGePoint3d evalPoint(const KrGePoint2d& param, int derivOrd, KrsArray<KrGeVector3d>& derivatives) const;
  // Slot 26.
  virtual KrGePoint3d evalPoint(const KrGePoint2d& param, int derivOrd, KrsArray<KrGeVector3d>& derivatives,
                                KrGeVector3d& normal) const = 0;

  // Number of partial derivatives of total order 1 to derivOrd: derivOrd (derivOrd + 3) / 2.
  static int derivativeCount(int derivOrd) { return derivOrd <= 0 ? 0 : derivOrd * (derivOrd + 3) / 2; }

  using KrEnt3dImpl::operator=;

protected:
  KrSurfaceImpl() = default;
  KrSurfaceImpl(const KrSurfaceImpl& source) = default;
};
