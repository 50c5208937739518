// Relations between two circular arcs.
//
// Closest pair. The least distance is at an unconstrained local minimum inside both ranges or on
// an edge of the angle box; the edges are exact (each end of a partial arc against the other
// arc: the end-point closest pairs), the interior minima come from these seeds:
// - parallel planes (sine of their angle <= 1e-12), which include the coplanar case: exact in
//   closed form. Off the common axis the critical pairs lie on the line of the centres' shadows
//   (four sign pairs) or where the shadows cross (two); on a common axis (concentric, coaxial)
//   every pair at one angle is nearest, and the seeds are the ends of the arcs and the first
//   reference direction, so that a direction on both arcs is found when there is one;
// - otherwise the distance from a point of the arc of smaller radius to the other arc (closed
//   form) is sampled over the first arc: 32 samples per turn, plus the angles where that arc
//   passes nearest to the other's axis (krLineCircleMinima: the distance peaks sharply there)
//   and where it crosses the other's plane or is farthest from it on either side (nearly
//   meeting circles dip sharply there, the distance being at least the height). Up to four of
//   the least sampled local minima are refined by a bracketed Newton iteration on that
//   one-dimensional distance, skipping a bracket that the distance's Lipschitz bound (the
//   sampled radius) shows cannot hold a nearer pair.
// The nearest candidate wins, the first on a tie; when it is a seed inside both arcs it is
// refined by the coordinate descent (krArcArcCoordDescent, stopping at the resolution of the
// minimum) and, if that went past its first round, a Newton polish, kept where it stays inside
// both arcs and is not farther. An arc of radius within 1e-15 of the coordinates' size is its
// centre.
//
// Intersection. Arcs whose circles lie within the tolerance of each other's plane meet in that
// plane: the two crossings of the circles, or one touching point when the centres' distance is
// within the tolerance of the sum or the difference of the radii; equal circles give no points
// where the arcs overlap along a stretch longer than the tolerance, and the touching point where
// they only meet end to end. Otherwise the circles can only meet on the line common to both
// planes: the crossings of that line with each circle (one where the circle touches it within the
// tolerance) are the candidates, kept where the nearest points of the two circles are within the
// tolerance. Tolerance, reported point and parameters as for a line and an arc (line_arc.h).
#pragma once

#include "entity/arc/arc_frame.h"
#include "entity/relation/KrCurveRelation.h"

// A closest pair of the two arcs: the angles, each in [startAng, startAng + sweep], and the
// points. Non-finite data answers the start angles (0 for one that is not finite).
void krArcArcClosest(const KrArcFrame& arc1, const KrArcFrame& arc2, double& theta1, double& theta2, KrGePoint3d& on1,
                     KrGePoint3d& on2);

// The intersection points of the two arcs within `tol` (see above), with the angle on arc1 as the
// first parameter. False, with no points, for non-finite data.
bool krArcArcIntersections(const KrArcFrame& arc1, const KrArcFrame& arc2, double tol, KrCurveIntersections& result);

namespace krrelation {
bool closestArcArc(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                   KrGePoint3d& onSecond, const KrGeTol& tol);
bool intersectArcArc(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
                     KrCurveIntersections& result);
}  // namespace krrelation
