// Relations between a circular arc (first) and an elliptical arc (second).
#pragma once

#include "entity/relation/KrCurveRelation.h"

namespace krrelation {
// The global closest pair (krEllipsePairMinimum along the second curve, the first's nearest
// point by krEllipseArcNearest).
bool closestArcEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                        KrGePoint3d& onSecond, const KrGeTol& tol);
// The closest pair as seen along `direction` (both arcs' affine images); a zero or non-finite
// direction reports "(!pSeen)" and falls back to the closest pair in space.
bool projClosestArcEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                            const KrGeVector3d& direction, KrGePoint3d& onFirst, KrGePoint3d& onSecond,
                            const KrGeTol& tol);
// The closest pair with both parameters within their neighbourhoods.
bool localClosestArcEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                             const KrGeInterval* nbhdFirst, const KrGeInterval* nbhdSecond, double& paramFirst,
                             double& paramSecond, const KrGeTol& tol);
// krEllipseEllipseHits: at most four points.
bool intersectArcEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
                          KrCurveIntersections& result);
}  // namespace krrelation
