#include "entity/relation/composite_any.h"

#include "entity/composite/KrCompositeCurve3dImpl.h"

namespace krrelation {

bool closestCompositeAny(const KrGeCurve3dImpl& composite, const KrGeCurve3dImpl& other, KrGePoint3d& onComposite,
                         KrGePoint3d& onOther, const KrGeTol& tol) {
  const KrCompositeCurve3dImpl* chain = KrCompositeCurve3dImpl::of(composite);
  if (!chain) return false;
  bool found = false;
  double best = 1.7976931348623157e308;
  for (int i = 0; i < chain->count() && !(best < 1e-16); ++i) {
    const KrGeCurve3dImpl* segment = KrGeCurve3dImpl::curveImplOf(chain->segment(i));
    if (!segment) continue;
    KrGePoint3d a, b;
    if (!closestPair(*segment, other, a, b, tol)) continue;
    const double distance = a.distanceTo(b);
    if (!found || distance < best) {
      found = true;
      best = distance;
      onComposite = a;
      onOther = b;
    }
  }
  return found;
}

const KrCurveRelationRow kCompositeAnyRow = {closestCompositeAny, nullptr, nullptr, nullptr};

}  // namespace krrelation
