// Constructions of new curves tangent to given ones: the segment tangent to a curve through a
// point, the common tangent segment of two curves, the circle of a given radius tangent to two
// curves (a fillet) and the circle tangent to three lines. Each is dispatched on the kinds of the
// given curves; lines and segments (kinds of kLinearEnt3d) and circular arcs are handled, any
// other kind reports "(((HRESULT)0x80004001L))" once per process for the construction and fails.
//
// The result is written into the implementation that calls (a segment's or an arc's own set),
// only on success; on failure `success` is false and the target and the parameters are left as
// they were. Parameters are those of the given curves (a line's projection parameter, an arc's
// angle within its range). Coincidence, coplanarity and tangency are decided with
// KrGeContext::gTol ("<=" within); "inside a range" uses the range's own tolerance, widened for
// arcs by gTol.equalPoint() / radius in angle.
#pragma once

class KrGeCurve3d;
class KrGePoint3d;
class KrLinearEnt3dImpl;
class KrCircArc3dImpl;

namespace krrelation {

// The segment from `point` to where it touches `curve` (param: the touch point's parameter).
//   linear curve: its own line is its only tangent, so `point` must lie on it and the curve be
//     bounded; the segment runs from `point` to the curve's end farther from it;
//   arc: `point` must lie in the arc's plane and outside its circle (farther than equalPoint);
//     of the two touch points of the tangents from it, those inside the arc's range qualify and
//     the one of smaller parameter is taken.
void tangentSegmentThroughPoint(KrLinearEnt3dImpl& segment, const KrGeCurve3d& curve, const KrGePoint3d& point,
                                double& param, bool& success);

// The segment of a line tangent to both curves, from its touch point on curve1 (param1) to its
// touch point on curve2 (param2).
//   two linear curves: bounded and colinear; the segment bridges them from the end of curve1
//     nearest to curve2 to the end of curve2 nearest to curve1;
//   linear curve and arc (either order): the linear curve must be bounded and its line tangent to
//     the arc's circle in the arc's plane, at a point inside the arc's range; the segment runs
//     from the linear curve's end nearest to that point to the point;
//   two arcs: coplanar circles; of their outer and inner common tangents (none for concentric or
//     nested circles), those whose touch points lie inside both ranges and are distinct qualify,
//     and the shortest segment is taken (outer tangents before inner ones on a tie).
void commonTangentSegment(KrLinearEnt3dImpl& segment, const KrGeCurve3d& curve1, const KrGeCurve3d& curve2,
                          double& param1, double& param2, bool& success);

// The arc of radius |radius| tangent to both curves (a fillet), from its touch point on curve1
// (param1) to its touch point on curve2 (param2) along the shorter way round, built as the arc
// through those two points and the middle of that way with the three-point set (which warns
// "KrCircArc3dImpl::set, by 3pt - kLinearlyDependentArg1Arg2Arg3" for a radius too small to
// tell the points apart; the construction then warns "set() fail" and fails).
// The curves must lie in one plane: two intersecting (not parallel) lines, a line in the arc's
// plane, or two coplanar arcs. The centres of all circles of that radius tangent to both (the
// intersections of the curves' offsets at that distance: up to 4 for two lines, 8 for a line and
// an arc or two arcs) are candidates; those whose touch points lie inside both ranges qualify and
// the one with the shortest chord between its touch points is taken (the fillet nearest to where
// the curves meet); ties keep the first found. A non-finite radius fails; a zero radius gives
// coincident points and ends in the three-point failure above.
void arcTangentToTwoCurves(KrCircArc3dImpl& arc, const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double radius,
                           double& param1, double& param2, bool& success);

// The circle inscribed in the triangle of three coplanar, pairwise intersecting lines (their
// ranges are not consulted): its centre is where the inner angle bisectors at two corners meet,
// and the arc runs from its touch point on curve1 through the one on curve2 to the one on curve3
// (three-point set; parameters on each line). Parallel lines, lines through one point or lines
// not in one plane fail; bisectors that do not meet warn "Internal error, KrCircArc3dImpl.set()
// by 3 lines, bisectors must have intersection point" and fail. Arcs and other kinds report
// "(((HRESULT)0x80004001L))".
void arcTangentToThreeCurves(KrCircArc3dImpl& arc, const KrGeCurve3d& curve1, const KrGeCurve3d& curve2,
                             const KrGeCurve3d& curve3, double& param1, double& param2, double& param3,
                             bool& success);

}  // namespace krrelation
