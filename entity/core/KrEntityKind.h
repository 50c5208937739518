// The per-kind preamble of every entity implementation, written once: kinship from a fixed list,
// the in-place assignment with its type check, and the equality preamble. A kind derives from
// KrEntityKind<Kind, Base> instead of Base and supplies only what is its own:
//
//   class KrThingImpl final : public KrEntityKind<KrThingImpl, KrGeCurve3dImpl> {
//   public:
//     static constexpr KrGe::EntityId kKinship[] = {KrGe::kCurve3d, KrGe::kEntity3d};
//     static constexpr const char* kReportSource = "KrThingImpl";  // source of the type report
//     static constexpr int kAssignLine = 120;                       // its line
//     void assignData(const KrThingImpl& source);                   // copies the fields
//     bool equalData(const KrThingImpl& other, const KrGeTol& tol) const;  // same type is known
//     ...
//   };
//
// The type report is a check site of its own for each kind (once per kind and process).
#pragma once

#include "KrsDiagnostics.h"
#include "entity/core/KrEnt3dImpl.h"

template <class Kind, class Base>
class KrEntityKind : public Base {
public:
  // The own type() or one of the kind's fixed ancestors.
  bool isKindOf(KrGe::EntityId entType) const override {
    if (entType == this->type()) return true;
    for (KrGe::EntityId ancestor : Kind::kKinship)
      if (ancestor == entType) return true;
    return false;
  }

  // Self-assignment does nothing; another type() reports "(type() != entImpl.type())" at the
  // kind's source and line and changes nothing; otherwise the base part, then the kind's data.
  KrEnt3dImpl& operator=(const KrEnt3dImpl& entImpl) override {
    if (&entImpl == this) return *this;
    KRS_CHECK_TEXT_AT(this->type() == entImpl.type(), "(type() != entImpl.type())", Kind::kReportSource,
                      Kind::kAssignLine);
    if (this->type() != entImpl.type()) return *this;
    Base::operator=(entImpl);
    static_cast<Kind&>(*this).assignData(static_cast<const Kind&>(entImpl));
    return *this;
  }
  // False for a facade without implementation or of another type(); otherwise the kind's own
  // comparison.
  bool isEqualTo(const KrGeEntity3d& entity, const KrGeTol& tol) const override {
    const KrEnt3dImpl* other = KrEnt3dImpl::implOf(entity);
    if (other == nullptr || other->type() != this->type()) return false;
    return static_cast<const Kind&>(*this).equalData(static_cast<const Kind&>(*other), tol);
  }

protected:
  using Base::Base;
  KrEntityKind() = default;
  KrEntityKind(const KrEntityKind&) = default;
};
