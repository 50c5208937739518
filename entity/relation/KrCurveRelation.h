// Operations between two curves of possibly different kinds: closest pair, closest pair seen
// along a direction, closest pair near given parameter neighbourhoods, and intersection points.
// Each pair of kinds has its solvers in one file of this folder (line_line, line_arc, arc_arc,
// ...); the dispatcher finds the row of the pair, swaps the arguments (and the answers back) for
// the mirrored pair, and reports a pair without a solver once, here, as not implemented.
//
// Adding a curve kind: give it a KrCurveKind, map its type() in krCurveKindOf, write its pair
// files, and add their rows to the table in KrCurveRelation.cpp. Nothing else changes.
#pragma once

#include "KrGeInterval.h"
#include "KrGePoint3d.h"
#include "KrGeTol.h"
#include "KrGeVector3d.h"

class KrGeCurve3dImpl;

enum class KrCurveKind : unsigned char { kLinear, kCircArc, kEllipArc, kNurbs, kComposite, kOther };
constexpr int kKrCurveKindCount = 6;

KrCurveKind krCurveKindOf(const KrGeCurve3dImpl& curve);

// The intersection points of two curves in the order found, with their parameters on each curve.
// Four at most: two conics meet in at most four points.
struct KrCurveIntersections {
  static constexpr int kMax = 4;
  int count = 0;
  KrGePoint3d points[kMax];
  double params1[kMax] = {0.0, 0.0, 0.0, 0.0};
  double params2[kMax] = {0.0, 0.0, 0.0, 0.0};

  void add(const KrGePoint3d& point, double param1, double param2) {
    if (count >= kMax) return;
    points[count] = point;
    params1[count] = param1;
    params2[count] = param2;
    ++count;
  }
};

// One row per ordered pair of kinds; a missing solver is null.
struct KrCurveRelationRow {
  // The closest pair: onFirst on the first curve, onSecond on the second.
  bool (*closestPair)(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                      KrGePoint3d& onSecond, const KrGeTol& tol);
  // The closest pair as seen along `direction` (distances measured across it).
  bool (*projClosestPair)(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                          const KrGeVector3d& direction, KrGePoint3d& onFirst, KrGePoint3d& onSecond,
                          const KrGeTol& tol);
  // The closest pair with each parameter searched within its neighbourhood (whole range when
  // null); the answers are parameters.
  bool (*localClosestPair)(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                           const KrGeInterval* nbhdFirst, const KrGeInterval* nbhdSecond, double& paramFirst,
                           double& paramSecond, const KrGeTol& tol);
  // The points where the curves meet within tol.equalPoint(): isolated crossings and touchings
  // (a tangency is one point); coincident stretches give no points.
  bool (*intersect)(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
                    KrCurveIntersections& result);
};

// Each answers false, reporting "(((HRESULT)0x80004001L))" once per process for all pairs,
// when the pair of kinds has no solver for the operation; the outputs are then untouched.
namespace krrelation {
bool closestPair(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                 KrGePoint3d& onSecond, const KrGeTol& tol);
bool projClosestPair(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeVector3d& direction,
                     KrGePoint3d& onFirst, KrGePoint3d& onSecond, const KrGeTol& tol);
bool localClosestPair(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeInterval* nbhdFirst,
                      const KrGeInterval* nbhdSecond, double& paramFirst, double& paramSecond, const KrGeTol& tol);
// `result` is cleared first.
bool intersect(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
               KrCurveIntersections& result);
}  // namespace krrelation
