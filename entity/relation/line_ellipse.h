// Relations between a linear entity (first) and an elliptical arc (second).
#pragma once

#include "entity/relation/KrCurveRelation.h"

namespace krrelation {
// The global closest pair (krEllipsePairMinimum along the ellipse, the line's nearest point by
// projection).
bool closestLineEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                        KrGePoint3d& onSecond, const KrGeTol& tol);
// The closest pair as seen along `direction`; a zero or non-finite direction reports "(!pSeen)"
// and falls back to the closest pair in space.
bool projClosestLineEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                            const KrGeVector3d& direction, KrGePoint3d& onFirst, KrGePoint3d& onSecond,
                            const KrGeTol& tol);
// The closest pair with both parameters within their neighbourhoods.
bool localClosestLineEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                             const KrGeInterval* nbhdFirst, const KrGeInterval* nbhdSecond, double& paramFirst,
                             double& paramSecond, const KrGeTol& tol);
// krEllipseLineHits: at most two points.
bool intersectLineEllipse(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
                          KrCurveIntersections& result);
}  // namespace krrelation
