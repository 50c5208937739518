// Implementation root of every entity. A public entity is a facade (vtable + m_pImpl) that
// forwards each operation, one line each, to the slot of the same number here; the data and the
// decisions live in the implementation.
//
// Adding a new entity kind takes one implementation class and one facade, nothing else:
//
//   // entity/thing/KrThingImpl.h (internal, hidden): the kinship list, the assignment with its
//   // type check and the equality preamble come from KrEntityKind (entity/core/KrEntityKind.h)
//   class KrThingImpl final : public KrEntityKind<KrThingImpl, KrGeCurve3dImpl> {
//   public:
//     static constexpr KrGe::EntityId kKinship[] = {KrGe::kCurve3d, KrGe::kEntity3d};
//     static constexpr const char* kReportSource = "KrThingImpl";
//     static constexpr int kAssignLine = 120;
//     KrGe::EntityId type() const override;
//     KrGeEntity3d* copy() const override {              // new facade, then slot-4 assignment
//       return copyInto(new KrGeThing(), *this);
//     }
//     void assignData(const KrThingImpl& source);         // copies the kind's fields
//     bool equalData(const KrThingImpl& other, const KrGeTol& tol) const;
//     KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) override;
//     bool isOn(const KrGePoint3d& point, const KrGeTol& tol) const override;
//     ... the kind's own operations, appended after the inherited slots ...
//   };
//
//   // Operations between this kind and other curve kinds go to entity/relation/.
//
//   // include/KrGeThing.h (public): members are the vtable and m_pImpl only
//   class KRGEL_API KrGeThing : public KrGeEntity3d {
//   public:
//     KrGeThing();                      // m_pImpl = new KrThingImpl()
//     KrGeThing(const KrGeThing& src);  // m_pImpl = new KrThingImpl(*impl of src)  (deep)
//     KrGeThing& operator=(const KrGeThing& src);  // self check, then *m_pImpl = *src.m_pImpl
//     double size() const;
//   private:
//     KrThingImpl* impl() const;        // the one typed accessor
//   };
//
//   // entity/thing/KrGeThing.cpp: forwarding only, one line per operation
//   inline KrThingImpl* KrGeThing::impl() const { return krImplAs<KrThingImpl>(m_pImpl); }
//   double KrGeThing::size() const { return impl()->size(); }
//
// Operations that need the facade itself (to store it in a KrGePointOnCurve3d) receive it as
// their first argument `self` from the forwarding line.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdlib>

#include "KrGe.h"
#include "KrsHeapObject.h"
#include "KrGeEntity3d.h"
#include "KrGeMatrix3d.h"
#include "KrGePoint3d.h"
#include "KrGeTol.h"
#include "KrGeVector3d.h"
#include "entity/core/KrOwnerRegistry.h"

// The typed accessor of facades: a static_cast, checked with dynamic_cast in debug builds.
template <class Impl, class Base>
inline Impl* krImplAs(Base* impl) {
  assert(impl == nullptr || dynamic_cast<Impl*>(impl) != nullptr);
  return static_cast<Impl*>(impl);
}

// Allocated on the general heap like the facades (KrsHeapObject).
class KrEnt3dImpl : public KrsHeapObject {
public:
  // Slot 0. Reports "(isOwned())" (source KrEnt3dImpl, line 15) when a container still owns
  // this implementation; the destruction goes on in any case.
  virtual ~KrEnt3dImpl();
  // Slots 1 to 3: identity and copy (pure).
  virtual bool isKindOf(KrGe::EntityId entType) const = 0;
  virtual KrGe::EntityId type() const = 0;
  virtual KrGeEntity3d* copy() const = 0;
  // Slot 4: copies nothing and returns itself; registrations are never copied. Concrete
  // implementations override it and call this version first.
  virtual KrEnt3dImpl& operator=(const KrEnt3dImpl& entImpl);
  // Slots 5, 6: isEqualTo(entity, KrGeContext::gTol) and its negation.
  virtual bool operator==(const KrGeEntity3d& entity) const;
  virtual bool operator!=(const KrGeEntity3d& entity) const;
  // Slot 7 (pure): concrete versions answer false first for another type() or a facade
  // without implementation.
  virtual bool isEqualTo(const KrGeEntity3d& entity, const KrGeTol& tol) const = 0;
  // Slot 8 (pure) and the derived transformations 9 to 12, which build their matrix and call 8.
  virtual KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) = 0;
  virtual KrEnt3dImpl& translateBy(const KrGeVector3d& translateVec);
  virtual KrEnt3dImpl& rotateBy(double angle, const KrGeVector3d& axis, const KrGePoint3d& wrtPoint);
  virtual KrEnt3dImpl& mirror(const KrGePlane& plane);
  virtual KrEnt3dImpl& scaleBy(double scaleFactor, const KrGePoint3d& wrtPoint);
  // Slot 13 (pure).
  virtual bool isOn(const KrGePoint3d& point, const KrGeTol& tol) const = 0;

  // Owner registry (not virtual). `owner` is the address of the using container's
  // implementation.
  void setReference(const void* owner, bool owned) { m_registry.set(owner, owned); }
  bool removeReference(const void* owner) { return m_registry.remove(owner); }
  bool isReferenced() const { return !m_registry.isEmpty(); }
  bool isOwned() const { return m_registry.anyOwned(); }

  // The implementation held by a facade (null after a failed allocation).
  static KrEnt3dImpl* implOf(const KrGeEntity3d& entity) { return entity.m_pImpl; }


protected:
  KrEnt3dImpl() = default;
  // The copy starts with an empty registry.
  KrEnt3dImpl(const KrEnt3dImpl&) {}

  // Finishes copy(): assigns `source` into the implementation of the freshly made facade
  // through slot 4 and hands the facade over (null when it could not be allocated).
  static KrGeEntity3d* copyInto(KrGeEntity3d* facade, const KrEnt3dImpl& source) {
    if (facade && facade->m_pImpl) *facade->m_pImpl = source;
    return facade;
  }

private:
  KrOwnerRegistry m_registry;
};
