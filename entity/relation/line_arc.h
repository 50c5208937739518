// Relations between a linear entity (line, segment, or one of zero length) and a circular arc.
//
// Closest pair. The squared distance f(theta, t) over the arc's angles and the entity's range
// is least either at an unconstrained local minimum inside both ranges or on an edge of the
// parameter box. The unconstrained minima are (theta, foot of the perpendicular) for the local
// minima of the distance from the circle to the infinite line, found algebraically
// (krLineCircleMinima: the closest approaches of a point to the line's shadow of the circle, an
// ellipse; the global one for a full circle and a line, also the second local minimum when a
// range is bounded); those inside both ranges are the seeds. The edges are exact: each end of a
// bounded entity against the arc, each end of a partial arc against the entity (the end-point
// closest pairs). The nearest candidate wins, the first on a tie, so the result is the global
// minimum; when it is a seed it is refined by the coordinate descent (krArcLineCoordDescent,
// stopping at the resolution of the minimum) and, if that went past its first round, a Newton
// polish, and the refinement is kept where it stays inside both ranges and is not farther. A
// line along the axis is equally near to every point: the start of the arc is taken. An arc of
// radius within 1e-15 of the coordinates' size is its centre; an entity of zero direction is its
// point.
//
// Intersection. A line whose part over the arc's disc stays within the tolerance of the arc's
// plane meets the circle in the plane: two points at the ends of the chord, or one point, the
// touching point, when the line's distance from the centre is within the tolerance of the
// radius. Otherwise the points are the local minima of the line-circle distance that are within
// the tolerance (one for a line through the circle). The tolerance is tol.equalPoint() raised
// for large coordinates (krEffectiveEqualPoint); a reported point is the midpoint of its pair,
// so within the tolerance of both, and its parameters are within the ranges: one beyond an end
// by no more than the tolerance is moved onto the end.
#pragma once

#include "entity/arc/arc_frame.h"
#include "entity/linear/linear_closest.h"
#include "entity/relation/KrCurveRelation.h"

// Parameters of a closest pair of the span and the arc: t on the span, theta in
// [startAng, startAng + sweep]. Non-finite data answers the span's fallback parameter and the
// start angle (0 when that is not finite).
void krLineArcClosestParams(const KrLinearSpan& span, const KrArcFrame& arc, double& t, double& theta);

// The intersection points of the span and the arc within `tol` (see above), with t as the first
// parameter and theta as the second. False, with no points, for non-finite data.
bool krLineArcIntersections(const KrLinearSpan& span, const KrArcFrame& arc, double tol, KrCurveIntersections& result);

namespace krrelation {
bool closestLineArc(const KrGeCurve3dImpl& line, const KrGeCurve3dImpl& arc, KrGePoint3d& onLine, KrGePoint3d& onArc,
                    const KrGeTol& tol);
bool intersectLineArc(const KrGeCurve3dImpl& line, const KrGeCurve3dImpl& arc, const KrGeTol& tol,
                      KrCurveIntersections& result);
}  // namespace krrelation
