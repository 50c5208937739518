// Abstract facade of straight curves: the infinite line KrGeLine3d and the segment
// KrGeLineSeg3d, both served by one linear implementation.
#pragma once

#include "KrGeCurve3d.h"

class KrLinearEnt3dImpl;

// A linear entity is origin + t * direction over its interval: the direction is stored as given
// (a segment built from two points has the full chord as direction, parameter 0 at the start and
// 1 at the end). Tolerances: tol.equalPoint() for distances, tol.equalVector() for directions
// (a chord between unit directions for parallel tests, a cosine for perpendicular ones), "<="
// counting as within. Direction tests answer true when a direction is exactly zero.
//
// closestPointTo(curve, pntOnOtherCrv) against another linear entity is exact for every pair of
// lines, segments and zero-length segments (the clamped minimum of the distance over both
// parameter ranges, accurate to a few ulps of the inputs at any angle, nearly parallel pairs
// included); parallel segments give one of their closest pairs. Two lines parallel within
// tol.equalVector() give this origin and its foot on the other line. Against curve kinds it has
// no method for it reports "(((HRESULT)0x80004001L))" and answers the origin.
// projClosestPointTo measures distances in the plane perpendicular to the direction; a zero
// direction reports "(!pEntity)" (or "(!pEntity1)"), another entity with non-finite data
// "(!pEntity2)", and both then answer the plain closest points. An entity seen end-on (its image
// no longer than tol.equalPoint()) answers its point nearest to the given point in space.
// The curve operations that make new entities, for linear entities:
//   project: the image keeps the interval (parallel projection is affine); an entity seen end-on
//     becomes a KrGePointEnt3d; a direction within the plane (|cos| <= equalVector) gives null.
//   getSplitCurves: the pieces keep this parametrisation; a parameter at an end (interval
//     tolerance) gives only the other piece (the whole segment), outside the interval none. A
//     line would split into rays: "(pLine1->type()==kLineSeg3d)" and "(((HRESULT)0x80004001L))".
//   explode: this curve itself (flag 0), or for a narrower interval a new segment over the
//     common range (flag 1); a half-open restriction of a line reports "(((HRESULT)0x80004001L))".
//   getTrimmedOffset: a segment moved by distance along direction x planeNormal (to its right
//     seen from the normal's tip); a single segment has no corners for fillet or chamfer to close.
//     A zero normal, a segment not perpendicular to it or a non-finite distance reports
//     "(((HRESULT)0x80070057L))", a line "(((HRESULT)0x80004001L))"; nothing is appended then.
//   getLocalClosestPoints: the exact pair within the neighbourhoods (a neighbourhood that misses
//     the entity's range is ignored).
//   isCoplanarWith: two linear entities that meet or are parallel (within tol.equalPoint()).
class KRGEL_API KrGeLinearEnt3d : public KrGeCurve3d {
public:
  using KrGeCurve3d::isOn;
  using KrGeCurve3d::operator=;

  // Intersection with a planar entity, answered by the planar entity (a segment must reach it).
  // False when the direction is parallel to the plane (|direction . normal| <= equalVector).
  bool intersectWith(const KrGePlanarEnt& plane, KrGePoint3d& intPnt,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The entities meet when their closest points p1 (this) and p2 (other) are at most an
  // effective tolerance apart; intPnt is then the midpoint of p1 and p2. The effective
  // tolerance is max(tol.equalPoint(), 10^(k - 14)) with k = ceil(log10(m)) and m the largest
  // absolute coordinate of p1 and p2: fourteen significant decimal digits of the coordinates,
  // so that far from the origin rounding alone never separates crossing lines. Parallel
  // entities meet only where they share a point (colinear ones at the nearest such point).
  bool intersectWith(const KrGeLinearEnt3d& line, KrGePoint3d& intPnt,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The common part of two colinear entities, as a new entity the caller owns (a KrGeLine3d
  // when both are lines, else a KrGeLineSeg3d running along this entity's direction). False,
  // with `overlap` null, when they are not colinear (isColinearTo) or their common part is no
  // longer than tol.equalPoint() (entities touching end to end do not overlap).
  bool overlap(const KrGeLinearEnt3d& line, KrGeLinearEnt3d*& overlap,
               const KrGeTol& tol = KrGeContext::gTol) const;
  // Lies in the plane: a segment's ends within tol.equalPoint() of it; a line's origin within
  // tol.equalPoint() and its direction zero or perpendicular to the normal (cosine test).
  bool isOn(const KrGePlane& plane, const KrGeTol& tol = KrGeContext::gTol) const;
  // Direction perpendicular to the plane's normal (|cos| <= equalVector).
  bool isParallelTo(const KrGePlanarEnt& plane, const KrGeTol& tol = KrGeContext::gTol) const;
  // Directions parallel (chord test); a segment's chord must also stay within tol.equalPoint()
  // of the other's direction across its length.
  bool isParallelTo(const KrGeLinearEnt3d& line, const KrGeTol& tol = KrGeContext::gTol) const;
  // Parallel and on one line: every segment end within tol.equalPoint() of the other entity's
  // line (both origins for two lines).
  bool isColinearTo(const KrGeLinearEnt3d& line, const KrGeTol& tol = KrGeContext::gTol) const;
  // Direction parallel to the plane's normal (chord test).
  bool isPerpendicularTo(const KrGePlanarEnt& plane, const KrGeTol& tol = KrGeContext::gTol) const;
  // Directions perpendicular (|cos| <= equalVector).
  bool isPerpendicularTo(const KrGeLinearEnt3d& line, const KrGeTol& tol = KrGeContext::gTol) const;
  // The plane through `point` with this entity's direction as normal.
  void getPerpPlane(const KrGePoint3d& point, KrGePlane& plane) const;
  // The origin (the point at parameter 0).
  KrGePoint3d pointOnLine() const;
  // The unit direction (normalised with KrGeContext::gTol; a zero direction stays zero).
  KrGeVector3d direction() const;
  // The infinite line through the origin along the stored direction.
  void getLine(KrGeLine3d& line) const;
  // Closest points of the two entities seen along projDir (projClosestPointTo with gTol). True
  // when they differ only along projDir (gTol), else false with both points set to the origin.
  // tol is not used; KrGeContext::gTol is.
  bool projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir,
                         KrGePoint3d& pntOnThisLine, KrGePoint3d& pntOnOtherLine,
                         const KrGeTol& tol = KrGeContext::gTol) const;

  // In-place assignment of the implementation: across types (line and segment) it changes
  // nothing and reports "(type() != entImpl.type())".
  KrGeLinearEnt3d& operator=(const KrGeLinearEnt3d& line);

protected:
  KrGeLinearEnt3d();
  // Shallow, as KrGeEntity3d's: for derived classes only.
  KrGeLinearEnt3d(const KrGeLinearEnt3d& line);

private:
  KrLinearEnt3dImpl* impl() const;
};
