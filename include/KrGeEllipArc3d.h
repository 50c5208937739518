// The elliptical arc in 3D space; a full ellipse when its sweep is 2 pi.
#pragma once

#include "KrGe.h"
#include "KrGeCurve3d.h"

class KrEllipticArc3dImpl;

// Representation: centre; unit majorAxis and minorAxis, perpendicular; majorRadius >= minorRadius
// >= 0; start angle and sweep (0 <= sweep <= 2 pi, normalised by the circular arc's angle rule
// with the major radius). The parameter is the eccentric angle theta in radians:
//   point(theta) = center + majorRadius cos theta majorAxis + minorRadius sin theta minorAxis
// over [startAng, startAng + sweep]; normal() = majorAxis x minorAxis, about which theta turns
// counter-clockwise. type() is kEllipArc3d; isKindOf is true for kEllipArc3d, kCurve3d and
// kEntity3d. A point closer than tol.equalPoint() counts as on the curve ("<=" is within).
//
// Degenerate input is repaired, never refused, with a warning naming the fallback (source
// "KrEllipArc3dImpl"; warnings can be silenced with KrsSetWarningsEnabled(false)):
//   axes: the major axis wins, the minor axis is tilted perpendicular to it within their plane
//     (silently). Zero-length tests use KrGeContext::gTol; NaN or infinite components count as
//     zero length.
//     "KrEllipArc3dImpl::setAxes(majorAxis, minorAxis) - 0-length vectors, X,Y used"
//     "KrEllipArc3dImpl::setAxes(majorAxis, minorAxis) - 0-length majorAxis, pMinor, Minor used"
//       (the minor axis is kept, the major axis is its perpVector())
//     "KrEllipArc3dImpl::setAxes(majorAxis, minorAxis) - 0-length or parallel minorAxis, Major, pMajor used"
//   radii (set, setMajorRadius, setMinorRadius):
//     "KrEllipArc3dImpl::set - negative radius, absolute value used"
//     "KrEllipArc3dImpl::set - radius not finite, 0 used"
//     "KrEllipArc3dImpl::set - zero radius, degenerate ellipse kept" (a segment or a point)
//     "KrEllipArc3dImpl::set - minor radius above major, axes exchanged": the radii are exchanged,
//       majorAxis becomes the old minorAxis and minorAxis the old -majorAxis, and the angles
//       move by -pi/2, so the ellipse keeps every point and its direction of travel
//       (point'(theta - pi/2) = point(theta)).
//   angles: "KrEllipArc3dImpl::setAngles - angle not finite, full ellipse used" (start 0).
//
// Tolerances: distances on tol.equalPoint(), directions on tol.equalVector(), "<=" within.
//
// Curve operations, where they go beyond the generic contract:
//   transformBy(any affine map, non-uniform scales, shears and mirrors included): the image is
//     the ellipse with the mapped conjugate semi-diameters in principal form; it holds the image
//     of the point at t at the parameter t - s for one constant s (0 for similarities), so the
//     angles move by -s and the sweep is kept. A map that flattens the ellipse leaves minor radius
//     0 with "KrEllipArc3dImpl::transformBy - ellipse became degenerated, minor radius 0 used"; a
//     non-finite map changes nothing ("KrEllipArc3dImpl::transformBy - matrix not finite,
//     ellipse unchanged").
//   project(plane, dir): the image arc in the same principal form (its parameters shifted by a
//     constant), the segment it covers when it is flat within tol.equalPoint(), a point entity
//     when it is that small; null for a zero direction or one within the plane.
//   length(from, to): the exact incomplete elliptic integral, relative error ~1e-15 for every
//     ratio of the radii and every span; paramAtLength inverts it to the same accuracy.
//   closestPointTo(point): the global nearest point of the arc (the whole ellipse's when the arc
//     holds it, else the nearer end or the other local minimum), right to a few ulps of the
//     radii also at the centre, on the axes and on the evolute. The centre of a circle answers
//     the start point.
//   closestPointTo(curve) with lines, segments, circular and elliptical arcs: the global minimum
//     of the distance along this arc (branch and bound on its Lipschitz bound, then exact
//     refinement); intersections with them through KrGeCurveCurveInt3d (at most four points).
//   paramOf(point): the end's own parameter within tol.equalPoint() of an end; otherwise the
//     parameter of the whole ellipse's nearest point, placed next to the arc's range.
//   isPeriodic: true, with 2 pi, for a full ellipse. isLinear: the major axis when the minor
//     radius is within tol.equalPoint(). isDegenerate: a segment (kLineSeg3d, the part of the
//     major axis the arc covers) when the minor radius is within tol.equalPoint(), a point
//     (kPosition3d, the centre) when the major radius is too.
//   area(start, end): the segment between the arc and its chord, (a b / 2)(d - sin d) for the
//     span d <= 2 pi; false beyond a turn or for non-finite parameters.
//   getSplitCurves, explode: new arcs of the same ellipse with the same parametrisation.
//   evalPoint(param, n): the k-th derivative turns (cos, sin) by k quarter turns; a negative n
//     reports "(numDeriv<0)" and gives none, more than 1048576 give 1048576 with
//     "KrEllipArc3dImpl::evalPoint - numDeriv above 1048576, 1048576 used".
//   getSamplePoints(numSample): evenly in the parameter; below 2 "(numSamples<2)" (that many
//     given), above 1048576 "KrEllipArc3dImpl::getSamplePoints - numSamples above 1048576, 1048576
//     used". getSamplePoints(from, to, approxEps): the circular arc's count for the major radius
//     (the affine image of a chord keeps its sagitta below the circle's), "(approxEps<0)" for a
//     negative approxEps; a non-finite parameter empties both arrays with
//     "KrEllipArc3dImpl::getSamplePoints - non-finite parameter range, no points".
//   getTrimmedOffset: not provided (an ellipse's offset is no conic): the not-implemented
//     assertion, the list unchanged.
class KRGEL_API KrGeEllipArc3d : public KrGeCurve3d {
public:
  // The unit circle in the XY plane: centre origin, major axis +X, minor axis +Y, full.
  KrGeEllipArc3d();
  KrGeEllipArc3d(const KrGeEllipArc3d& ellipse);
  // set(arc): the same points at the same parameters.
  explicit KrGeEllipArc3d(const KrGeCircArc3d& arc);
  // set(center, majorAxis, minorAxis, majorRadius, minorRadius): a full ellipse.
  KrGeEllipArc3d(const KrGePoint3d& center, const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis,
                 double majorRadius, double minorRadius);
  // set(center, majorAxis, minorAxis, majorRadius, minorRadius, startAngle, endAngle).
  KrGeEllipArc3d(const KrGePoint3d& center, const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis,
                 double majorRadius, double minorRadius, double startAngle, double endAngle);

  using KrGeCurve3d::operator=;
  KrGeEllipArc3d& operator=(const KrGeEllipArc3d& ellipse);

  // The point of the arc nearest to the planar entity's plane and, in pointOnPlane, its foot on
  // it. An arc crossing the plane answers a crossing point (the first one in parameter order).
  KrGePoint3d closestPointToPlane(const KrGePlanarEnt& plane, KrGePoint3d& pointOnPlane,
                                  const KrGeTol& tol = KrGeContext::gTol) const;
  // The points where the arc meets the linear entity (within both ranges, tol.equalPoint() as the
  // gap), at most two; numInt receives the count and a tangency is one point. A line in the
  // arc's plane is solved as a quadratic in its parameter; a line crossing the plane meets the
  // arc at most at its crossing point. True when there is any point.
  bool intersectWith(const KrGeLinearEnt3d& line, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The points where the arc meets the planar entity's (unbounded) plane, at most two; an arc
  // lying in the plane (within tol.equalPoint() everywhere) gives none.
  bool intersectWith(const KrGePlanarEnt& plane, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The points where the arc and the linear entity look as if they meet when seen along projDir:
  // the arc's points in the plane through the line spanned by the line and projDir, with the
  // points of the line they cover. A line seen end-on (direction parallel to projDir) covers the
  // arc where the line through its origin along projDir meets it. At most two; false, numInt 0,
  // when there is none or projDir is of zero length.
  bool projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir, int& numInt,
                         KrGePoint3d& pntOnEllipse1, KrGePoint3d& pntOnEllipse2, KrGePoint3d& pntOnLine1,
                         KrGePoint3d& pntOnLine2, const KrGeTol& tol = KrGeContext::gTol) const;
  // majorRadius - minorRadius <= tol.equalPoint().
  bool isCircular(const KrGeTol& tol = KrGeContext::gTol) const;
  // The point lies within tol.equalPoint() of the ellipse's plane and inside the full ellipse or
  // within tol.equalPoint() of it.
  bool isInside(const KrGePoint3d& point, const KrGeTol& tol = KrGeContext::gTol) const;

  KrGePoint3d center() const;
  double majorRadius() const;
  double minorRadius() const;
  KrGeVector3d majorAxis() const;
  KrGeVector3d minorAxis() const;
  // majorAxis() x minorAxis().
  KrGeVector3d normal() const;
  double startAng() const;
  // startAng() + sweep.
  double endAng() const;
  KrGePoint3d startPoint() const;
  KrGePoint3d endPoint() const;
  // The plane through the centre with the ellipse's normal.
  void getPlane(KrGePlane& plane) const;

  // Replaces the centre only.
  KrGeEllipArc3d& setCenter(const KrGePoint3d& center);
  // Replaces one radius (repaired as described above; the angle rule is not applied again).
  KrGeEllipArc3d& setMajorRadius(double radius);
  KrGeEllipArc3d& setMinorRadius(double radius);
  // The major axis wins; the minor axis is made perpendicular to it.
  KrGeEllipArc3d& setAxes(const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis);
  // startAng = startAngle, sweep = endAngle - startAngle normalised into [0, 2 pi].
  KrGeEllipArc3d& setAngles(double startAngle, double endAngle);
  // Centre, setAxes, both radii; a full ellipse from angle 0.
  KrGeEllipArc3d& set(const KrGePoint3d& center, const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis,
                      double majorRadius, double minorRadius);
  // Centre, setAxes, both radii, setAngles(startAngle, endAngle).
  KrGeEllipArc3d& set(const KrGePoint3d& center, const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis,
                      double majorRadius, double minorRadius, double startAngle, double endAngle);
  // The circular arc as an ellipse: majorAxis = refVec, minorAxis = normal x refVec, both radii
  // its radius, the same angles.
  KrGeEllipArc3d& set(const KrGeCircArc3d& arc);

private:
  KrEllipticArc3dImpl* impl() const;
};
