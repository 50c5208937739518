// A composite curve against a curve of any kind: each pair is reduced to the composite's segments,
// each segment pair solved by the dispatcher (nested composites recurse the same way). The best
// segment wins, the earlier one on a tie. False, outputs untouched, for an empty composite or when
// a segment's pair has no solver (the dispatcher reports that): a minimum over only some segments
// would be a wrong answer given as a right one.
#pragma once

#include "entity/relation/KrCurveRelation.h"

namespace krrelation {

// The closest pair; stops once a pair is closer than 1e-16.
bool closestCompositeAny(const KrGeCurve3dImpl& composite, const KrGeCurve3dImpl& other, KrGePoint3d& onComposite,
                         KrGePoint3d& onOther, const KrGeTol& tol);
// The closest pair as seen along `direction`, distances measured across it.
bool projClosestCompositeAny(const KrGeCurve3dImpl& composite, const KrGeCurve3dImpl& other,
                             const KrGeVector3d& direction, KrGePoint3d& onComposite, KrGePoint3d& onOther,
                             const KrGeTol& tol);
// The closest pair within the neighbourhoods; the composite's is a range of its arc-length
// parameter (the whole chain when null) and its answer is such a parameter.
bool localClosestCompositeAny(const KrGeCurve3dImpl& composite, const KrGeCurve3dImpl& other,
                              const KrGeInterval* nbhdComposite, const KrGeInterval* nbhdOther,
                              double& paramComposite, double& paramOther, const KrGeTol& tol);

// The row used for every pair with a composite, whatever the other kind.
extern const KrCurveRelationRow kCompositeAnyRow;

}  // namespace krrelation
