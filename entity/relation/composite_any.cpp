#include "entity/relation/composite_any.h"

#include <algorithm>

#include "entity/composite/KrCompositeCurve3dImpl.h"

namespace {

constexpr double kLargest = 1.7976931348623157e308;

// The distance between two points as seen along the unit direction `along` (zero: plainly).
double across(const KrGePoint3d& a, const KrGePoint3d& b, const KrGeVector3d& along) {
  const KrGeVector3d gap = a - b;
  return (gap - along * gap.dotProduct(along)).length();
}

}  // namespace

namespace krrelation {

bool closestCompositeAny(const KrGeCurve3dImpl& composite, const KrGeCurve3dImpl& other, KrGePoint3d& onComposite,
                         KrGePoint3d& onOther, const KrGeTol& tol) {
  return projClosestCompositeAny(composite, other, KrGeVector3d(), onComposite, onOther, tol);
}

// With a zero direction the pair solver of each segment is the plain closest pair.
bool projClosestCompositeAny(const KrGeCurve3dImpl& composite, const KrGeCurve3dImpl& other,
                             const KrGeVector3d& direction, KrGePoint3d& onComposite, KrGePoint3d& onOther,
                             const KrGeTol& tol) {
  const KrCompositeCurve3dImpl* chain = KrCompositeCurve3dImpl::of(composite);
  if (!chain) return false;
  const bool projected = !direction.isZeroLength(KrGeContext::gTol);
  const KrGeVector3d along = projected ? direction.normal(KrGeContext::gTol) : KrGeVector3d();
  KrGePoint3d bestA, bestB;
  double best = kLargest;
  for (int i = 0; i < chain->count() && !(best < 1e-16); ++i) {
    const KrGeCurve3dImpl* segment = KrGeCurve3dImpl::curveImplOf(chain->segment(i));
    KrGePoint3d a, b;
    const bool solved = projected ? projClosestPair(*segment, other, direction, a, b, tol)
                                  : closestPair(*segment, other, a, b, tol);
    if (!solved) return false;
    const double distance = across(a, b, along);
    if (i > 0 && !(distance < best)) continue;
    best = distance;
    bestA = a;
    bestB = b;
  }
  if (chain->count() == 0) return false;
  onComposite = bestA;
  onOther = bestB;
  return true;
}

// The composite's neighbourhood is a range of its arc length: each segment it covers is searched
// over its share, mapped to the segment's own parameter, and the answer mapped back.
bool localClosestCompositeAny(const KrGeCurve3dImpl& composite, const KrGeCurve3dImpl& other,
                              const KrGeInterval* nbhdComposite, const KrGeInterval* nbhdOther,
                              double& paramComposite, double& paramOther, const KrGeTol& tol) {
  const KrCompositeCurve3dImpl* chain = KrCompositeCurve3dImpl::of(composite);
  if (!chain) return false;
  const double from = nbhdComposite && nbhdComposite->isBoundedBelow() ? nbhdComposite->lowerBound() : -kLargest;
  const double to = nbhdComposite && nbhdComposite->isBoundedAbove() ? nbhdComposite->upperBound() : kLargest;
  bool found = false;
  double best = kLargest, bestS = 0.0, bestT = 0.0;
  for (int i = 0; i < chain->count(); ++i) {
    const double start = chain->lengthBefore(i), end = chain->lengthBefore(i + 1);
    if (end < from || start > to) continue;
    const KrGeCurve3dImpl* segment = KrGeCurve3dImpl::curveImplOf(chain->segment(i));
    KrGeInterval own(1e-12);
    segment->getInterval(own);
    const bool bounded = own.isBounded();
    const KrGeInterval share(chain->localOf(i, std::max(from, start)), chain->localOf(i, std::min(to, end)), 1e-12);
    double s = 0.0, t = 0.0;
    if (!localClosestPair(*segment, other, bounded ? &share : nullptr, nbhdOther, s, t, tol)) return false;
    const double distance = segment->evalPoint(s).distanceTo(other.evalPoint(t));
    if (found && !(distance < best)) continue;
    found = true;
    best = distance;
    bestS = chain->globalOf(i, s);
    bestT = t;
  }
  if (!found) return false;
  paramComposite = bestS;
  paramOther = bestT;
  return true;
}

const KrCurveRelationRow kCompositeAnyRow = {closestCompositeAny, projClosestCompositeAny, localClosestCompositeAny,
                                             nullptr};

}  // namespace krrelation
