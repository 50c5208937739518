// A composite curve against a curve of any kind: the pair is reduced to its segments, each pair
// solved by the dispatcher (nested composites recurse the same way).
#pragma once

#include "entity/relation/KrCurveRelation.h"

namespace krrelation {

// The closest pair over all segments of `composite` against `other` (the earlier segment on a
// tie; stops once a pair is closer than 1e-16). False, outputs untouched, for an empty composite
// or when no segment pair has a solver.
bool closestCompositeAny(const KrGeCurve3dImpl& composite, const KrGeCurve3dImpl& other, KrGePoint3d& onComposite,
                         KrGePoint3d& onOther, const KrGeTol& tol);

// The row used for every pair with a composite first.
extern const KrCurveRelationRow kCompositeAnyRow;

}  // namespace krrelation
