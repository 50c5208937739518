// Public base of every surface: an abstract facade over a surface implementation. It adds no
// data; each operation forwards to the implementation slot noted beside it.
#pragma once

#include "KrGeEntity3d.h"
#include "KrGeInterval.h"
#include "KrGePoint2d.h"
#include "KrsArray.h"

class KrSurfaceImpl;

// A surface maps parameters (u, v) to points. Point tolerances (tol.equalPoint()) are model-space
// distances, "<=" counting as within. Derivative arrays hold the partial derivatives by total
// order, each order from the pure u derivative to the pure v one: Su, Sv, then Suu, Suv, Svv, then
// Suuu, Suuv, Suvv, Svvv, ...; asking for order n resizes the array to n(n+3)/2.
class KRGEL_API KrGeSurface : public KrGeEntity3d {
public:
  using KrGeEntity3d::isOn;

  // Slot 14: the parameters of the surface point nearest to `point` (for a point of the surface,
  // its own parameters).
  virtual KrGePoint2d paramOf(const KrGePoint3d& point, const KrGeTol& tol = KrGeContext::gTol) const;
  // Slot 15: isOn(point, tol); when on, paramPoint receives the point's parameters, otherwise
  // (0, 0).
  virtual bool isOn(const KrGePoint3d& point, KrGePoint2d& paramPoint,
                    const KrGeTol& tol = KrGeContext::gTol) const;
  // Slot 16: the parameter pair lies in the parameter domain (the envelope, each interval with
  // its own tolerance).
  virtual bool isInside(const KrGePoint2d& param, const KrGeTol& tol = KrGeContext::gTol) const;
  // Slot 17: the point of the surface nearest to `point`.
  virtual KrGePoint3d closestPointTo(const KrGePoint3d& point, const KrGeTol& tol = KrGeContext::gTol) const;
  // Slot 18: distance from `point` to closestPointTo(point).
  virtual double distanceTo(const KrGePoint3d& point, const KrGeTol& tol = KrGeContext::gTol) const;
  // Slot 19: the normal is the negation of Su x Sv (a left-handed parametrisation).
  virtual bool isNormalReversed() const;
  // Slot 20: turns the normal to the other side without changing the parametrisation.
  virtual KrGeSurface& reverseNormal();
  // Slot 21: the parameter domain, one interval per parameter.
  virtual void getEnvelope(KrGeInterval& intrvlU, KrGeInterval& intrvlV) const;
  // Slots 22, 23: the surface closes on itself along u (v).
  virtual bool isClosedInU(const KrGeTol& tol = KrGeContext::gTol) const;
  virtual bool isClosedInV(const KrGeTol& tol = KrGeContext::gTol) const;
  // Slot 24: the point at the parameters.
  virtual KrGePoint3d evalPoint(const KrGePoint2d& param) const;
  // Slot 25: the point and its partial derivatives up to order derivOrd (layout above). A
  // negative order or one above 256 (33152 derivatives) reports "(derivOrd<0)" or
  // "(derivOrd>kMaxDerivOrder)" and gives an empty array. The array's growth can throw
  // KrsException(kOutOfMemory), the one exception of this class.
  virtual KrGePoint3d evalPoint(const KrGePoint2d& param, int derivOrd, KrsArray<KrGeVector3d>& derivatives) const;
  // Slot 26: as slot 25, and the unit normal at the point.
  virtual KrGePoint3d evalPoint(const KrGePoint2d& param, int derivOrd, KrsArray<KrGeVector3d>& derivatives,
                                KrGeVector3d& normal) const;

  // Deep copy through KrGeEntity3d::operator= (surfaces of different type() are left unchanged).
  KrGeSurface& operator=(const KrGeSurface& surface);

protected:
  KrGeSurface();
  // Shallow, as KrGeEntity3d's: for derived classes only.
  KrGeSurface(const KrGeSurface& surface);

private:
  KrSurfaceImpl* impl() const;
};
