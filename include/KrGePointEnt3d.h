// A point as an entity: a position that can be copied, compared and transformed like every other
// entity, and the base of points that live on curves.
#pragma once

#include "KrGeEntity3d.h"

class KrPointEnt3dImpl;

// type() is kPosition3d; isKindOf is true for kPosition3d and kEntity3d only (a point on a curve
// is not a kind of it). isOn and isEqualTo compare positions with tol.equalPoint() ("<=").
class KRGEL_API KrGePointEnt3d : public KrGeEntity3d {
public:
  // At the origin.
  KrGePointEnt3d();
  KrGePointEnt3d(const KrGePointEnt3d& src);
  explicit KrGePointEnt3d(const KrGePoint3d& point);

  // The position (a point on a curve evaluates its curve).
  virtual KrGePoint3d point3d() const;
  // Moves the point (a point on a curve moves its parameter instead; see KrGePointOnCurve3d).
  virtual KrGePointEnt3d& set(const KrGePoint3d& point);
  operator KrGePoint3d() const;

  using KrGeEntity3d::operator=;
  // In-place copy; between a point and a point on a curve it changes nothing and reports
  // "(type() != entImpl.type())".
  KrGePointEnt3d& operator=(const KrGePointEnt3d& src);

protected:
  // For derived point kinds, which allocate their own implementation: leaves m_pImpl null.
  struct NoImplementation {};
  explicit KrGePointEnt3d(NoImplementation);

private:
  KrPointEnt3dImpl* impl() const;
};
