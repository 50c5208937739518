// Closest pairs and intersections of lines and segments: every combination reduces to the
// clamped closest parameters of two spans (linear_closest.h).
#include "entity/relation/line_line.h"

#include <cmath>

#include "KrsDiagnostics.h"
#include "entity/linear/KrLinearEnt3dImpl.h"

namespace {

const KrLinearEnt3dImpl& linear(const KrGeCurve3dImpl& curve) { return static_cast<const KrLinearEnt3dImpl&>(curve); }

}  // namespace

namespace krrelation {

bool closestLineLine(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                     KrGePoint3d& onSecond, const KrGeTol&) {
  krClosestPoints(linear(first).span(), linear(second).span(), onFirst, onSecond);
  return true;
}

bool projClosestLineLine(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                         const KrGeVector3d& direction, KrGePoint3d& onFirst, KrGePoint3d& onSecond,
                         const KrGeTol& tol) {
  const KrLinearEnt3dImpl& a = linear(first);
  const KrLinearEnt3dImpl& b = linear(second);
  KrLinearSpan seen1;
  KrLinearSpan seen2;
  const KrLinearSpan* pEntity1 = krSeenAlong(a.span(), a.origin(), direction, seen1);
  KRS_FAIL_IF(!pEntity1);
  if (!pEntity1) return closestLineLine(first, second, onFirst, onSecond, tol);
  const KrLinearSpan* pEntity2 = krSeenAlong(b.span(), a.origin(), direction, seen2);
  KRS_FAIL_IF(!pEntity2);
  if (!pEntity2) return closestLineLine(first, second, onFirst, onSecond, tol);
  double s = 0.0;
  double t = 0.0;
  krClosestParams(*pEntity1, *pEntity2, s, t);
  onFirst = a.evalPoint(s);
  onSecond = b.evalPoint(t);
  return true;
}

bool localClosestLineLine(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                          const KrGeInterval* nbhdFirst, const KrGeInterval* nbhdSecond, double& paramFirst,
                          double& paramSecond, const KrGeTol&) {
  krClosestParams(krRestrictedSpan(linear(first).span(), nbhdFirst), krRestrictedSpan(linear(second).span(), nbhdSecond),
                  paramFirst, paramSecond);
  return true;
}

bool intersectLineLine(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
                       KrCurveIntersections& result) {
  const KrLinearEnt3dImpl& a = linear(first);
  const KrLinearEnt3dImpl& b = linear(second);
  double s = 0.0;
  double t = 0.0;
  krClosestParams(a.span(), b.span(), s, t);
  const KrGePoint3d onFirst = a.evalPoint(s);
  const KrGePoint3d onSecond = b.evalPoint(t);
  if (!(onFirst.distanceTo(onSecond) <= krEffectiveEqualPoint(onFirst, onSecond, tol.equalPoint()))) return true;
  result.add(onFirst + (onSecond - onFirst) * 0.5, s, t);
  return true;
}

}  // namespace krrelation
