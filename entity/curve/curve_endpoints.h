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

  double d11 = DBL_MAX, d12 = DBL_MAX, d21 = DBL_MAX, d22 = DBL_MAX, m1 = DBL_MAX, m2 = DBL_MAX;
  KrGePoint3d s1, e1, a, b, s2, e2, c, d;
  if (bounded1) {
    s1 = curve1.evalPoint(range1.lowerBound());
    e1 = curve1.evalPoint(range1.upperBound());
    a = curve2.closestPointTo(s1, tol);
    b = curve2.closestPointTo(e1, tol);
    d11 = s1.distanceTo(a);
    d12 = e1.distanceTo(b);
    m1 = d11 < d12 ? d11 : d12;
  }
  if (bounded2) {
    s2 = curve2.evalPoint(range2.lowerBound());
    e2 = curve2.evalPoint(range2.upperBound());
    c = curve1.closestPointTo(s2, tol);
    d = curve1.closestPointTo(e2, tol);
    d21 = s2.distanceTo(c);
    d22 = e2.distanceTo(d);
    m2 = d21 < d22 ? d21 : d22;
  }
  if (!bounded1)
    result = m2;
  else if (!bounded2)
    result = m1;
  else
    result = m1 < m2 ? m1 : m2;

  if (result == d11) {
    point1 = s1;
    point2 = a;
  } else if (result == d12) {
    point1 = e1;
    point2 = b;
  } else if (result == d21) {
    point1 = c;
    point2 = s2;
  } else {
    point1 = d;
    point2 = e2;
  }
  return true;
}
