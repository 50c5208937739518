#include "KrGeBoundBlock3d.h"

#include "entity/bound/KrBoundBlock3dImpl.h"

inline KrBoundBlock3dImpl* KrGeBoundBlock3d::impl() const { return krImplAs<KrBoundBlock3dImpl>(m_pImpl); }

KrGeBoundBlock3d::KrGeBoundBlock3d() { m_pImpl = new KrBoundBlock3dImpl(); }
KrGeBoundBlock3d::KrGeBoundBlock3d(const KrGeBoundBlock3d& block) : KrGeEntity3d() {
  m_pImpl = new KrBoundBlock3dImpl(*block.impl());
}
KrGeBoundBlock3d::KrGeBoundBlock3d(const KrGePoint3d& point1, const KrGePoint3d& point2) : KrGeBoundBlock3d() {
  set(point1, point2);
}
KrGeBoundBlock3d::KrGeBoundBlock3d(const KrGePoint3d& base, const KrGeVector3d& dir1, const KrGeVector3d& dir2,
                                   const KrGeVector3d& dir3) : KrGeBoundBlock3d() {
  set(base, dir1, dir2, dir3);
}

void KrGeBoundBlock3d::getMinMaxPoints(KrGePoint3d& point1, KrGePoint3d& point2) const {
  impl()->getMinMaxPoints(point1, point2);
}
void KrGeBoundBlock3d::get(KrGePoint3d& base, KrGeVector3d& dir1, KrGeVector3d& dir2, KrGeVector3d& dir3) const {
  impl()->get(base, dir1, dir2, dir3);
}
KrGeBoundBlock3d& KrGeBoundBlock3d::set(const KrGePoint3d& point1, const KrGePoint3d& point2) {
  impl()->set(point1, point2);
  return *this;
}
KrGeBoundBlock3d& KrGeBoundBlock3d::set(const KrGePoint3d& base, const KrGeVector3d& dir1, const KrGeVector3d& dir2,
                                        const KrGeVector3d& dir3) {
  impl()->set(base, dir1, dir2, dir3);
  return *this;
}
KrGeBoundBlock3d& KrGeBoundBlock3d::extend(const KrGePoint3d& point) { impl()->extend(point); return *this; }
KrGeBoundBlock3d& KrGeBoundBlock3d::swell(double distance) { impl()->swell(distance); return *this; }
bool KrGeBoundBlock3d::contains(const KrGePoint3d& point) const { return impl()->contains(point); }
bool KrGeBoundBlock3d::isDisjoint(const KrGeBoundBlock3d& block) const { return impl()->isDisjoint(*block.impl()); }
KrGeBoundBlock3d& KrGeBoundBlock3d::operator=(const KrGeBoundBlock3d& block) {
  if (this != &block) *m_pImpl = *block.m_pImpl;
  return *this;
}
bool KrGeBoundBlock3d::isBox() const { return impl()->isBox(); }
KrGeBoundBlock3d& KrGeBoundBlock3d::setToBox(bool toBox) { impl()->setToBox(toBox); return *this; }
bool KrGeBoundBlock3d::isEmpty() const { return impl()->isEmpty(); }
