// Root of every public geometric entity: a facade of exactly two members, its virtual table and
// the owned implementation `m_pImpl`. The concrete facade's constructor creates the
// implementation, this class's destructor deletes it; implementations are never shared.
#pragma once

#include <cstddef>

#include "KrGe.h"
#include "KrGeContext.h"
#include "KrGeForward.h"
#include "KrGeLExport.h"
#include "KrsHeapObject.h"
#include "KrGePoint3d.h"
#include "KrGeTol.h"
#include "KrGeVector3d.h"

class KrEnt3dImpl;

// Every virtual operation forwards to the implementation slot of the same number. Copies are
// deep (copy(), the copy constructors of concrete classes, operator= through this class);
// operator= between entities of different type() changes nothing.
class KRGEL_API KrGeEntity3d : public KrsHeapObject {
public:
  // Slot 0: deletes the implementation through its virtual destructor.
  virtual ~KrGeEntity3d();

  // Slot 1: true for the entity's own type and its fixed list of ancestor kinds (a point on a
  // curve is a kind of kPointEnt3d but not of kPosition3d; a plane is a kind of kSurface and
  // kPlanarEnt; every entity is a kind of kEntity3d).
  virtual bool isKindOf(KrGe::EntityId entType) const;
  // Slot 2: the concrete kind (a line reports kLine3d, a segment kLineSeg3d).
  virtual KrGe::EntityId type() const;
  // Slot 3: a new heap facade of the same concrete class holding its own implementation copy;
  // the caller deletes it.
  virtual KrGeEntity3d* copy() const;
  // Slot 4: deep copy of `entity`. Entities of different type() are left unchanged and the
  // assertion "(type() != entity.type())" is reported; self-assignment does nothing.
  virtual KrGeEntity3d& operator=(const KrGeEntity3d& entity);
  // Slots 5, 6: isEqualTo with KrGeContext::gTol, and its negation. Different types never
  // compare equal.
  virtual bool operator==(const KrGeEntity3d& entity) const;
  virtual bool operator!=(const KrGeEntity3d& entity) const;
  // Slot 7: same type and the same geometry within tol (the concrete class says how).
  virtual bool isEqualTo(const KrGeEntity3d& entity, const KrGeTol& tol = KrGeContext::gTol) const;
  // Slot 8: applies the affine matrix in place. Slots 9 to 12 build their matrix with the
  // matching KrGeMatrix3d::setTo... and call this slot, so overriding transformBy alone changes
  // all five.
  virtual KrGeEntity3d& transformBy(const KrGeMatrix3d& matrix);
  virtual KrGeEntity3d& translateBy(const KrGeVector3d& translateVec);
  // Rotation by angle radians, counterclockwise about axis through wrtPoint.
  virtual KrGeEntity3d& rotateBy(double angle, const KrGeVector3d& axis,
                                 const KrGePoint3d& wrtPoint = KrGePoint3d::kOrigin);
  // Reflection in the plane.
  virtual KrGeEntity3d& mirror(const KrGePlane& plane);
  virtual KrGeEntity3d& scaleBy(double scaleFactor, const KrGePoint3d& wrtPoint = KrGePoint3d::kOrigin);
  // Slot 13: the point lies on the entity within tol.equalPoint() ("<=" counts as on).
  virtual bool isOn(const KrGePoint3d& point, const KrGeTol& tol = KrGeContext::gTol) const;


protected:
  // m_pImpl null: the concrete facade allocates its implementation right after.
  KrGeEntity3d();
  // Shallow on purpose: copies the pointer, not the implementation. Only for derived classes;
  // a concrete class that used it would end with two owners of one implementation.
  KrGeEntity3d(const KrGeEntity3d& entity);

  KrEnt3dImpl* m_pImpl;

private:
  // Implementations reach the implementation of another facade (copy(), isEqualTo).
  friend class KrEnt3dImpl;
};
