// The dispatcher of the pairwise curve solvers: one table keyed by both kinds.
#include "entity/relation/KrCurveRelation.h"

#include <utility>

#include "KrsDiagnostics.h"
#include "entity/curve/KrGeCurve3dImpl.h"
#include "entity/relation/arc_arc.h"
#include "entity/relation/arc_ellipse.h"
#include "entity/relation/composite_any.h"
#include "entity/relation/ellipse_ellipse.h"
#include "entity/relation/generic_pair.h"
#include "entity/relation/line_arc.h"
#include "entity/relation/line_ellipse.h"
#include "entity/relation/line_line.h"

KrCurveKind krCurveKindOf(const KrGeCurve3dImpl& curve) {
  switch (curve.type()) {
    case KrGe::kLine3d:
    case KrGe::kLineSeg3d:
      return KrCurveKind::kLinear;
    case KrGe::kCircArc3d:
      return KrCurveKind::kCircArc;
    case KrGe::kEllipArc3d:
      return KrCurveKind::kEllipArc;
    case KrGe::kNurbCurve3d:
      return KrCurveKind::kNurbs;
    case KrGe::kCompositeCrv3d:
      return KrCurveKind::kComposite;
    default:
      return KrCurveKind::kOther;
  }
}

namespace {

using namespace krrelation;

// The solvers of each ordered pair of kinds. A pair that is only listed one way round is reached
// the other way round by swapping; rows are listed for the first kind not after the second.
struct Entry {
  KrCurveKind first;
  KrCurveKind second;
  KrCurveRelationRow row;
};

constexpr Entry kTable[] = {
    {KrCurveKind::kLinear, KrCurveKind::kLinear,
     {closestLineLine, projClosestLineLine, localClosestLineLine, intersectLineLine}},
    {KrCurveKind::kLinear, KrCurveKind::kCircArc, {closestLineArc, nullptr, nullptr, intersectLineArc}},
    {KrCurveKind::kCircArc, KrCurveKind::kCircArc, {closestArcArc, nullptr, nullptr, intersectArcArc}},
    {KrCurveKind::kLinear, KrCurveKind::kEllipArc,
     {closestLineEllipse, projClosestLineEllipse, localClosestLineEllipse, intersectLineEllipse}},
    {KrCurveKind::kCircArc, KrCurveKind::kEllipArc,
     {closestArcEllipse, projClosestArcEllipse, localClosestArcEllipse, intersectArcEllipse}},
    {KrCurveKind::kEllipArc, KrCurveKind::kEllipArc,
     {closestEllipseEllipse, projClosestEllipseEllipse, localClosestEllipseEllipse, intersectEllipseEllipse}},
    // Kinds without closed forms: the generic subdivision solver (generic_pair.h).
    {KrCurveKind::kLinear, KrCurveKind::kNurbs, {closestGeneric, projClosestGeneric, localClosestGeneric, intersectGeneric}},
    {KrCurveKind::kCircArc, KrCurveKind::kNurbs, {closestGeneric, projClosestGeneric, localClosestGeneric, intersectGeneric}},
    {KrCurveKind::kEllipArc, KrCurveKind::kNurbs, {closestGeneric, projClosestGeneric, localClosestGeneric, intersectGeneric}},
    {KrCurveKind::kNurbs, KrCurveKind::kNurbs, {closestGeneric, projClosestGeneric, localClosestGeneric, intersectGeneric}},
};

// The row of each ordered pair of kinds, worked out once from kTable: a direct lookup instead of
// a search on every call, which sits on the path of every closest-pair and intersection query.
struct Slot {
  const KrCurveRelationRow* row = nullptr;
  bool swapped = false;
};
struct Lookup {
  Slot slots[kKrCurveKindCount][kKrCurveKindCount];
  constexpr Lookup() : slots() {
    for (const Entry& entry : kTable) {
      const int a = static_cast<int>(entry.first), b = static_cast<int>(entry.second);
      slots[a][b] = Slot{&entry.row, false};
      if (a != b && !slots[b][a].row) slots[b][a] = Slot{&entry.row, true};
    }
    // A composite meets every kind through its segments; it is taken as the first curve.
    const int composite = static_cast<int>(KrCurveKind::kComposite);
    for (int other = 0; other < kKrCurveKindCount; ++other) {
      slots[composite][other] = Slot{&kCompositeAnyRow, false};
      if (other != composite) slots[other][composite] = Slot{&kCompositeAnyRow, true};
    }
  }
};
constexpr Lookup kLookup;

// The row of (first, second); `swapped` tells that it was found as (second, first).
inline const KrCurveRelationRow* find(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, bool& swapped) {
  const Slot& slot = kLookup.slots[static_cast<int>(krCurveKindOf(first))][static_cast<int>(krCurveKindOf(second))];
  swapped = slot.swapped;
  return slot.row;
}

// The one report of a pair of kinds without a solver.
bool unsupported() {
  KRS_NOT_IMPLEMENTED();
  return false;
}

}  // namespace

namespace krrelation {

bool closestPair(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                 KrGePoint3d& onSecond, const KrGeTol& tol) {
  bool swapped = false;
  const KrCurveRelationRow* row = find(first, second, swapped);
  if (!row || !row->closestPair) return unsupported();
  return swapped ? row->closestPair(second, first, onSecond, onFirst, tol)
                 : row->closestPair(first, second, onFirst, onSecond, tol);
}

bool projClosestPair(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeVector3d& direction,
                     KrGePoint3d& onFirst, KrGePoint3d& onSecond, const KrGeTol& tol) {
  bool swapped = false;
  const KrCurveRelationRow* row = find(first, second, swapped);
  if (!row || !row->projClosestPair) return unsupported();
  return swapped ? row->projClosestPair(second, first, direction, onSecond, onFirst, tol)
                 : row->projClosestPair(first, second, direction, onFirst, onSecond, tol);
}

bool localClosestPair(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeInterval* nbhdFirst,
                      const KrGeInterval* nbhdSecond, double& paramFirst, double& paramSecond, const KrGeTol& tol) {
  bool swapped = false;
  const KrCurveRelationRow* row = find(first, second, swapped);
  if (!row || !row->localClosestPair) return unsupported();
  return swapped ? row->localClosestPair(second, first, nbhdSecond, nbhdFirst, paramSecond, paramFirst, tol)
                 : row->localClosestPair(first, second, nbhdFirst, nbhdSecond, paramFirst, paramSecond, tol);
}

bool intersect(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
               KrCurveIntersections& result) {
  result = KrCurveIntersections();
  bool swapped = false;
  const KrCurveRelationRow* row = find(first, second, swapped);
  if (!row || !row->intersect) return unsupported();
  if (!swapped) return row->intersect(first, second, tol, result);
  const bool ok = row->intersect(second, first, tol, result);
  for (int i = 0; i < result.count; ++i) std::swap(result.params1[i], result.params2[i]);
  return ok;
}

}  // namespace krrelation
