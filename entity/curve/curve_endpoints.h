// The closest pair of two curves that involves an end point of a bounded one, through the public
// curve operations only (getInterval, evalPoint, closestPointTo). Shared by the closest-point
// algorithms of every curve kind.
#pragma once

#include <cfloat>

#include "KrGeCurve3d.h"

// point1 lies on curve1, point2 on curve2; *distance (when given) receives their distance. A
// curve counts as bounded when its interval is bounded on both sides; false, with the distance
// the largest double, when neither is. From a bounded curve 1 its start and end are projected on
// curve 2 (distances d11, d12), from a bounded curve 2 likewise on curve 1 (d21, d22); the
// smaller of each curve's two wins (on a tie the end), the smaller of the two curves' (on a tie
// curve 2's). The pair is then taken from the first of d11, d12, d21 equal to the result, else
// from d22: (start1, .), (end1, .), (., start2), (., end2).
inline bool krEndPointsClosestPoints(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, KrGePoint3d& point1,
                                     KrGePoint3d& point2, double* distance, const KrGeTol& tol) {
  double localDistance = 0.0;
  double& result = distance ? *distance : localDistance;
  result = DBL_MAX;
  KrGeInterval range1(1e-12);
  KrGeInterval range2(1e-12);
  curve1.getInterval(range1);
  curve2.getInterval(range2);
  const bool bounded1 = range1.isBounded();
  const bool bounded2 = range2.isBounded();
  if (!bounded1 && !bounded2) return false;

  // The ends of a bounded curve, their closest points on the other curve and the two distances.
  struct EndProjections {
    KrGePoint3d start, end, onOtherFromStart, onOtherFromEnd;
    double fromStart = DBL_MAX, fromEnd = DBL_MAX, least = DBL_MAX;
  };
  const auto project = [&tol](const KrGeCurve3d& curve, const KrGeInterval& range, const KrGeCurve3d& other) {
    EndProjections p;
    p.start = curve.evalPoint(range.lowerBound());
    p.end = curve.evalPoint(range.upperBound());
    p.onOtherFromStart = other.closestPointTo(p.start, tol);
    p.onOtherFromEnd = other.closestPointTo(p.end, tol);
    p.fromStart = p.start.distanceTo(p.onOtherFromStart);
    p.fromEnd = p.end.distanceTo(p.onOtherFromEnd);
    p.least = p.fromStart < p.fromEnd ? p.fromStart : p.fromEnd;
    return p;
  };
  const EndProjections one = bounded1 ? project(curve1, range1, curve2) : EndProjections();
  const EndProjections two = bounded2 ? project(curve2, range2, curve1) : EndProjections();
  const double m1 = one.least, m2 = two.least;
  if (!bounded1)
    result = m2;
  else if (!bounded2)
    result = m1;
  else
    result = m1 < m2 ? m1 : m2;

  if (result == one.fromStart) {
    point1 = one.start;
    point2 = one.onOtherFromStart;
  } else if (result == one.fromEnd) {
    point1 = one.end;
    point2 = one.onOtherFromEnd;
  } else if (result == two.fromStart) {
    point1 = two.onOtherFromStart;
    point2 = two.start;
  } else {
    point1 = two.onOtherFromEnd;
    point2 = two.end;
  }
  return true;
}
