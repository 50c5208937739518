// Relations between two linear entities (lines and segments in any combination).
#pragma once

#include "entity/relation/KrCurveRelation.h"

namespace krrelation {
// The exact closest pair of the two spans (krClosestParams); parallel pairs start from the first
// entity's lower bound (its origin when open).
bool closestLineLine(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                     KrGePoint3d& onSecond, const KrGeTol& tol);
// The closest pair of the two spans with their components along `direction` removed. A zero or
// non-finite direction, or non-finite data, reports "(!pEntity1)" / "(!pEntity2)" and falls back
// to the closest pair in space.
bool projClosestLineLine(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                         const KrGeVector3d& direction, KrGePoint3d& onFirst, KrGePoint3d& onSecond,
                         const KrGeTol& tol);
// The closest pair over the spans cut to the neighbourhoods (a neighbourhood that misses a span
// is ignored).
bool localClosestLineLine(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                          const KrGeInterval* nbhdFirst, const KrGeInterval* nbhdSecond, double& paramFirst,
                          double& paramSecond, const KrGeTol& tol);
// One point, the midpoint of the closest pair, when the pair is within the effective tolerance
// (tol.equalPoint() raised where coordinates are too large for it: krEffectiveEqualPoint).
// Overlapping colinear entities give the one point of their closest pair.
bool intersectLineLine(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
                       KrCurveIntersections& result);
}  // namespace krrelation
