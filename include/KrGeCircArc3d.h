// The circular arc in 3D space; a full circle when its sweep is 2 pi.
#pragma once

#include "KrGe.h"
#include "KrGeCurve3d.h"

class KrCircArc3dImpl;

// Representation: centre, unit normal, unit reference vector perpendicular to the normal, radius
// (never negative), start angle and sweep (0 <= sweep <= 2 pi). The parameter is the angle theta
// in radians, measured counter-clockwise about the normal from the reference vector:
//   point(theta) = center + radius * (cos theta * refVec + sin theta * (normal x refVec)),
// over [startAng, startAng + sweep]. type() is kCircArc3d; isKindOf is true for kCircArc3d,
// kCurve3d and kEntity3d. isEqualTo compares the representation: centres and radii within
// tol.equalPoint(), axes, start angles and sweeps within tol.equalVector().
//
// Tolerances: tol.equalPoint() for distances, tol.equalVector() for directions, "<=" counting as
// within; where an angle must be judged against a distance, the angle tolerance is
// tol.equalPoint() / radius (0 for a radius of 0).
//
// Degenerate input is repaired, never refused, with a warning naming the fallback (source
// "KrCircArc3dImpl"; warnings can be silenced with KrsSetWarningsEnabled(false)); zero-length
// tests use KrGeContext::gTol. Beyond the axis rule of setAxes and the rules of set and
// transformBy stated below, every setter and constructor applies these:
//   a centre with a NaN or infinite coordinate: "KrCircArc3dImpl - non-finite center, origin
//     used"; a NaN or infinite radius: "KrCircArc3dImpl - non-finite radius, 0 used"; a negative
//     radius is taken as its magnitude without a warning; a radius of 0 is kept (the arc is then
//     the point at its centre, see isDegenerate); a NaN or infinite start angle:
//     "KrCircArc3dImpl::setAngles - non-finite start angle, 0 used"; a NaN or infinite end angle:
//     "KrCircArc3dImpl::setAngles - non-finite end angle, full circle used" (end = start + 2 pi).
// transformBy scales the radius by the matrix's scale() (the longest image of a unit axis), maps
// the centre as a point and refVec as a vector, made unit (a zero or non-finite image:
// "KrCircArc3dImpl::transformBy - refVec become degenerated, use X", line 276, +X), and the normal
// as a vector made perpendicular to the new refVec and unit (a zero image or one along refVec:
// "KrCircArc3dImpl::transformBy - normal become degenerated, use pR", line 286, refVec's
// perpVector). A negative determinant turns the normal over, so that the unchanged angles still
// describe the mirrored points; a non-finite centre or radius falls back as above.
//
// The curve operations, for arcs (all exact, in closed form):
//   closestPointTo(point): the circle point in the direction of the point's projection into the
//     arc's plane when it lies within the sweep, else the nearer end (a tie gives the start). A
//     point within tol.equalPoint() of the axis (the centre included), or not finite, answers the
//     start point: every point of the circle is then within 2 tol.equalPoint() of the nearest.
//   paramOf(point): the angle of that direction within [startAng, endAng]; a point within
//     tol.equalPoint() of the start answers startAng (a full circle's point at angle 2 pi - eps
//     answers startAng + 2 pi - eps, but its start point startAng, not endAng); a point within
//     it past the end answers endAng; a direction in the gap answers the parameter just outside
//     the range on its nearer side (startAng - delta or endAng + delta). Axis: startAng.
//   isOn(point): distance to closestPointTo(point) <= tol.equalPoint().
//   evalPoint(param, n): the k-th derivative is the point's radius vector turned by k quarter
//     turns about the normal (radius * (cos(t + k pi/2) refVec + sin(t + k pi/2) (normal x refVec))).
//     A negative n reports "(numDeriv<0)" and gives none; more than 1048576 give 1048576 with the
//     warning "KrCircArc3dImpl::evalPoint - numDeriv above 1048576, 1048576 used".
//   length(from, to): radius * |to - from| (the parameters are not clamped to the range).
//   paramAtLength(datum, length, forward): datum +- length / radius; a radius of 0 answers datum.
//   area(start, end): the circular segment between the arc and its chord, r^2 / 2 (phi - sin phi)
//     with phi = |end - start| capped at 2 pi (the disc), to full relative precision for flat
//     arcs. Non-finite parameters: false with value 0.
//   boundBlock(range): the flat rectangle in the arc's plane aligned with the span's middle
//     direction: it touches the arc on all four sides. orthoBoundBlock(range): the exact
//     axis-aligned box (the ends and every axis extreme inside the span). A range with an open
//     side stands for the whole circle from startAng; an inverted range is taken in order.
//   isClosed: the sweep exceeds pi and the end points are within tol.equalPoint() (a full circle;
//     a zero-sweep arc is a point, not closed). isPeriodic: only a full circle, period 2 pi (the
//     period is left untouched otherwise). isPlanar: always, with getPlane's plane.
//   isLinear: the sagitta 2 r sin^2(sweep / 4) (the greatest distance of the arc from the line
//     through its ends) is <= tol.equalPoint(); the line then runs through the start point along
//     the chord. A sagitta that is not a number sends "GetHeightArc fail" and answers false.
//   isCoplanarWith: a linear curve lying in the arc's plane; another arc lying within
//     tol.equalPoint() of this plane (the plane returned) or this arc within it of the other's
//     plane (that plane returned); another planar curve likewise through its isPlanar plane.
//   isDegenerate: a radius <= tol.equalPoint() is the point at the centre, an arc no longer than
//     tol.equalPoint() the point at its middle; the entity form returns a new KrGePointEnt3d.
//   getSplitCurves(param): two new arcs of the same circle over [startAng, param] and [param,
//     endAng] (the parametrisation kept). A parameter within 1e-12 of an end gives only the
//     whole arc, as piece2 at the start and piece1 at the end; outside the range (or not finite)
//     none. A full circle splits at any angle (modulo 2 pi); at its start it gives only piece2.
//   reverseParam: the normal turns over and the range becomes [-endAng, -startAng]: the same
//     points, traversed from the old end; refVec, sweep and radius are kept.
//   setInterval(range): startAng and sweep from a bounded range whose span is within
//     [-eps, 2 pi + eps] (eps the angle tolerance of KrGeContext::gTol; snapped by setAngles);
//     otherwise false and nothing changes. setInterval(): the full circle from startAng.
//   getNormalPoint(point): the circle point in the direction of the point, or if that lies
//     outside the sweep the opposite one (both are feet of perpendiculars); false, the point on
//     the curve untouched, when neither lies on the arc. A point on the axis gets startAng.
//   project(plane, dir): "AUTOTEST not passed for "KrGeEntity3d* KrCircArc3dImpl::project(projPlane,
//     projDir, tol)"" once, then: null for a zero direction or one within the plane (|cos| <=
//     tol.equalVector()); a KrGePointEnt3d for a degenerate arc; a new arc, the translated copy,
//     when the arc's normal is parallel to the plane's (tol.equalVector()); a new segment (from
//     the low to the high extreme across dir) when dir lies in the arc's plane (|cos| <=
//     tol.equalVector()); otherwise a new KrGeEllipArc3d, the affine image of the arc in principal
//     form, which holds the image of the point at angle t at the parameter t - shift for one
//     constant shift (a segment or a point when it is within tol.equalPoint() of one).
//   getTrimmedOffset(distance, planeNormal): a new concentric arc of radius r + distance when the
//     arc runs counter-clockwise about planeNormal, r - distance when clockwise (to the right of
//     the direction of travel, as segments offset). A fillet or chamfer extension first sends
//     "AUTOTEST not passed for "KrCircArc3dImpl::getTrimmedOffset - fillet/chamfer"" once (a
//     single arc has no corners to close). A planeNormal that is zero, not finite or not parallel
//     to the arc's normal, an unknown extension, a non-finite distance, or a new radius <=
//     tol.equalPoint() (an offset through the centre or beyond) reports "(((HRESULT)0x80070057L))"
//     and appends nothing.
//   getSamplePoints(numSample): numSample points evenly over the range; fewer than 2 report
//     "(numSamples<2)" and give that many (1: the start point; none for 0 or less); more than
//     1048576 give 1048576 with the warning "KrCircArc3dImpl::getSamplePoints - numSamples above
//     1048576, 1048576 used".
//   getSamplePoints(from, to, approxEps): n points evenly over [from, to] with their parameters,
//     n = ceil(|to - from| / (2 acos(1 - approxEps / r))) + 1 clamped to [34, 1501] (1501 for
//     approxEps <= 0, 34 for r < approxEps); a negative approxEps reports "(approxEps<0)". A
//     non-finite parameter empties both arrays with the warning "KrCircArc3dImpl::getSamplePoints
//     - non-finite parameter range, no points".
//   closestPointTo(curve) and intersectWith(linear entity or arc) are answered by the curve
//     relation solvers; a pair of kinds without a solver reports "(((HRESULT)0x80004001L))" once
//     and answers the origin (no points).
//   Not provided yet: projClosestPointTo (point and curve), getLocalClosestPoints (point and
//     curve), projIntersectWith and explode. The first call of each sends "AUTOTEST not passed
//     for "<signature>"" with "KrGePoint3d KrCircArc3dImpl::projClosestPointTo(pnt, projDir,
//     tol)", "KrGePoint3d KrCircArc3dImpl::projClosestPointTo(curve, projDir, pntOnOtherCrv,
//     tol)", "void KrCircArc3dImpl::getLocalClosestPoints(pt, approxpt, pNbhd, tol)", "void
//     KrCircArc3dImpl::getLocalClosestPoints(otherCurve, approxPtT, approxPtO, p1, p2, tol)",
//     "bool KrCircArc3dImpl::projIntersectWith(line, dir, ni, pa1, pa2, pl1, pl2, tol)" and "bool
//     KrCircArc3dImpl::explode(curves, flags, pInterval)", and reports "(((HRESULT)0x80004001L))"
//     once; point results are the origin, counts 0, answers false, other outputs untouched.
class KRGEL_API KrGeCircArc3d : public KrGeCurve3d {
public:
  // The unit circle in the XY plane: centre origin, normal +Z, refVec +X, full sweep.
  KrGeCircArc3d();
  KrGeCircArc3d(const KrGeCircArc3d& arc);
  // set(center, normal, radius): a full circle.
  KrGeCircArc3d(const KrGePoint3d& center, const KrGeVector3d& normal, double radius);
  // set(center, normal, refVec, radius, startAngle, endAngle).
  KrGeCircArc3d(const KrGePoint3d& center, const KrGeVector3d& normal, const KrGeVector3d& refVec, double radius,
                double startAngle, double endAngle);
  // set(point1, point2, point3): the arc from point1 through point2 to point3.
  KrGeCircArc3d(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3);

  using KrGeCurve3d::operator=;
  // Copies every field.
  KrGeCircArc3d& operator=(const KrGeCircArc3d& arc);

  // The point of the arc nearest to the planar entity and, in pointOnPlane, the entity's point
  // nearest to it. An arc that reaches the plane (within tol.equalPoint()) answers its first
  // crossing; otherwise the point of least height over the range; an arc parallel to the plane
  // (normals within tol.equalVector()) its start point. A bounded entity is met as its infinite
  // plane and pointOnPlane is then its own nearest point.
  KrGePoint3d closestPointToPlane(const KrGePlanarEnt& plane, KrGePoint3d& pointOnPlane,
                                  const KrGeTol& tol = KrGeContext::gTol) const;
  // The points where the arc meets the linear entity (within their ranges), at most two; numInt
  // receives the count, a tangency is one point. True when there is any.
  bool intersectWith(const KrGeLinearEnt3d& line, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The points where the arc meets the planar entity, in increasing parameter: the plane cuts the
  // arc's plane in a line met by the circle in closed form. Two crossings closer than
  // tol.equalPoint() and a circle passing within it are one touching point; when no crossing lies
  // on the arc, its end points within tol.equalPoint() of the plane are the answer, or else its
  // point nearest the plane when that is within tol.equalPoint(). An arc lying
  // within tol.equalPoint() of the plane gives no points. A bounded entity sends "AUTOTEST not
  // passed for "bool KrCircArc3dImpl::intersectWith bounded plane"" once and keeps its own points.
  bool intersectWith(const KrGePlanarEnt& plane, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The points where the two arcs meet (within both ranges), at most two; coincident arcs give
  // no points.
  bool intersectWith(const KrGeCircArc3d& arc, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // Not provided (see the class comment): numInt 0, all four points the origin, false.
  bool projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir, int& numInt,
                         KrGePoint3d& pntOnArc1, KrGePoint3d& pntOnArc2, KrGePoint3d& pntOnLine1,
                         KrGePoint3d& pntOnLine2, const KrGeTol& tol = KrGeContext::gTol) const;
  // The tangent line at a point of the arc (isOn within tol): through the arc's point nearest to
  // it, along the unit derivative (the direction of increasing angle). Otherwise false, the line
  // untouched, and status: kDegenerateGeometry for a radius <= tol.equalPoint(),
  // kNonCoplanarGeometry for a point off the arc's plane, kArg1InsideThis for one inside the
  // circle, kSingularPoint for one outside it or on the circle beyond the arc's ends; kOk on
  // success.
  bool tangent(const KrGePoint3d& point, KrGeLine3d& line, const KrGeTol& tol = KrGeContext::gTol) const;
  bool tangent(const KrGePoint3d& point, KrGeLine3d& line, const KrGeTol& tol, KrGe::ErrorCondition& status) const;
  // Whether the point lies on the disc of the full circle, boundary included: within
  // tol.equalPoint() of the arc's plane and no farther than radius + tol.equalPoint() from the
  // centre. The sweep plays no part.
  bool isInside(const KrGePoint3d& point, const KrGeTol& tol = KrGeContext::gTol) const;

  KrGePoint3d center() const;
  double radius() const;
  double startAng() const;
  // startAng() + sweep.
  double endAng() const;
  KrGeVector3d normal() const;
  KrGeVector3d refVec() const;
  // The plane through the centre with the arc's normal.
  void getPlane(KrGePlane& plane) const;
  // point(startAng()) and point(endAng()).
  KrGePoint3d startPoint() const;
  KrGePoint3d endPoint() const;

  // Replaces the centre only (a non-finite one falls back to the origin, see above).
  KrGeCircArc3d& setCenter(const KrGePoint3d& center);
  // Replaces the radius by its magnitude (a non-finite one falls back to 0, see above).
  KrGeCircArc3d& setRadius(double radius);
  // The angle rule: startAng = startAngle; sweep = endAngle - startAngle snapped to 0 or 2 pi
  // within eps = KrGeContext::gTol.equalPoint() / radius (0 for a radius of 0), otherwise
  // reduced by fmod into (0, 2 pi), a remainder <= 0 kept when |startAngle - endAngle| <= 1e-10
  // and raised by 2 pi otherwise: (0, 4 pi) is a full circle, (1, 0.5) sweeps 2 pi - 0.5. A
  // difference that overflows is a full circle; non-finite angles fall back as above.
  KrGeCircArc3d& setAngles(double startAngle, double endAngle);
  // The axis rule: refVec keeps its direction (made unit) and the normal is projected onto the
  // plane perpendicular to it (made unit). Fallbacks: both of zero length (or not finite):
  // "KrCircArc3dImpl::setAxes(normal, refVec) - 0-length vectors, Z,X used" (+Z, +X; line 2596);
  // refVec: "... - 0-length refVec, pN, N used" (refVec the normal's perpVector; line 2600);
  // normal, or a normal along refVec: "... - 0-length normal, RV, pRV used" (normal refVec's
  // perpVector; line 2608).
  KrGeCircArc3d& setAxes(const KrGeVector3d& normal, const KrGeVector3d& refVec);
  // The full circle [0, 2 pi] about `normal` (made unit), refVec its perpVector; radius |radius|.
  // A zero normal: "KrCircArc3dImpl::set(cent, nrm, rad) fail - 0-length normal, OZ used" (line
  // 2640), normal +Z and refVec +X.
  KrGeCircArc3d& set(const KrGePoint3d& center, const KrGeVector3d& normal, double radius);
  // Centre, setAxes(normal, refVec), radius |radius|, setAngles(startAngle, endAngle).
  KrGeCircArc3d& set(const KrGePoint3d& center, const KrGeVector3d& normal, const KrGeVector3d& refVec,
                     double radius, double startAngle, double endAngle);
  // The arc from point1 through point2 to point3: normal (p3 - p2) x (p1 - p2) made unit, the
  // circumcentre, refVec towards point1, start 0 and the counter-clockwise sweep to point3 in
  // [0, 2 pi). Collinear points (p1 - p2 parallel to p3 - p2 under KrGeContext::gTol, coincident
  // or non-finite ones included) leave the arc unchanged, send "KrCircArc3dImpl::set, by 3pt -
  // kLinearlyDependentArg1Arg2Arg3" (line 2720) and set status to kLinearlyDependentArg1Arg2Arg3.
  KrGeCircArc3d& set(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3);
  KrGeCircArc3d& set(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3,
                     KrGe::ErrorCondition& status);
  // The arc of radius |radius| tangent to both curves (a fillet), from its touch point on curve1
  // (param1) to its touch point on curve2 (param2) the shorter way round. The curves must lie in
  // one plane: two crossing lines or segments, a line in the arc's plane, or two coplanar arcs
  // (KrGeContext::gTol). Every circle of that radius tangent to both is a candidate (the
  // crossings of the curves' offsets at that distance); those whose touch points lie in both
  // ranges qualify and the one with the shortest chord between them is taken (the fillet nearest
  // to where the curves meet; ties keep the first found). The arc is built through the two touch
  // points and the middle between them with set(p1, p2, p3): points too close to tell apart (a
  // zero radius) warn "KrCircArc3dImpl::set, by 3pt - kLinearlyDependentArg1Arg2Arg3" and then
  // "set() fail". On failure success is false and the arc and parameters are unchanged. Curve
  // kinds other than lines, segments and arcs report "(((HRESULT)0x80004001L))". Sends "AUTOTEST
  // not passed for "KrCircArc3dImpl& KrCircArc3dImpl::set(curve1, curve2, r, p1, p2, flag)"" once.
  KrGeCircArc3d& set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double radius, double& param1,
                     double& param2, bool& success);
  // The circle inscribed in the triangle of three coplanar, pairwise crossing lines (ranges are
  // not consulted): its centre is where the inner angle bisectors meet; the arc runs from its
  // touch point on curve1 through the one on curve2 to the one on curve3 (parameters on each).
  // Parallel lines, lines through one point or lines out of one plane fail; bisectors that do not
  // meet warn "Internal error, KrCircArc3dImpl.set() by 3 lines, bisectors must have intersection
  // point". On failure success is false and the arc and parameters are unchanged. Arcs and other
  // kinds report "(((HRESULT)0x80004001L))". Sends "AUTOTEST not passed for "KrCircArc3dImpl&
  // KrCircArc3dImpl::set(curve1, curve2, curve3, p1, p2, p3, flag)"" once.
  KrGeCircArc3d& set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeCurve3d& curve3,
                     double& param1, double& param2, double& param3, bool& success);

private:
  KrCircArc3dImpl* impl() const;
};
